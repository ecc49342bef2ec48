#!/usr/bin/env python3
"""The planted-fault tool on a scratch tree of two small sources, with build and test
commands of the test's own: the sources come back byte for byte after failed builds, after
SIGINT in the middle of a test run and after a run killed outright; an edit made while a
file holds a fault survives its restore; the sample depends on the seed alone; comments,
preprocessor lines and static_assert never carry a fault; a source copied in with an old
time but new content is given the present time before a build.

    mutants_test.py <path of mutants.py>
"""
import os
import re
import signal
import subprocess
import sys
import tempfile
import time

TOOL = sys.argv[1]

SOURCES = {
    "lib/count.cpp": """\
// Counting helpers.
#include <string>
#define LIMIT(a, b) ((a) < (b) ? 1 : 0)

static_assert(sizeof(int) >= 4 &&
              true, "ints of 32 bits");

int CountAbove(const int* v, int n, int limit) {
  int k = 0;
  for (int i = 0; i < n; ++i) {
    // if (v[i] == limit) k = k + 1;
    if (v[i] > limit) k = k + 1;
  }
  return k;
}

bool Any(int n) { return n > 0 ? true : false; }
""",
    "lib/name.cpp": """\
#include <string>

/* Joins a name: if (a == b) stays in this comment,
   as does "a string" and 42. */
std::string Join(const std::string& a, const std::string& b, bool spaced) {
  std::string r = a;
  if (spaced && !b.empty()) r += " ";
  r.append(b);
  return r.size() > 0 ? r : std::string("none");
}
""",
}
# Lines that must never carry a fault: comments, preprocessor lines, static_assert.
NO_FAULT = {"lib/count.cpp": {1, 2, 3, 5, 6, 11}, "lib/name.cpp": {1, 3, 4}}

failures = []


def check(ok, what):
    if not ok:
        failures.append(what)
        print("FAILED:", what, flush=True)


def make_tree(root):
    for rel, text in SOURCES.items():
        os.makedirs(os.path.join(root, os.path.dirname(rel)), exist_ok=True)
        with open(os.path.join(root, rel), "w") as f:
            f.write(text)


def tree_intact(root, when):
    for rel, text in SOURCES.items():
        with open(os.path.join(root, rel)) as f:
            check(f.read() == text, f"{rel} is as it was {when}")
    backup = os.path.join(root, "build", "mutants", "backup")
    check(not os.path.exists(backup), f"no backup is left {when}")


def tool(root, *args):
    return [sys.executable, TOOL, "scratch", "--root", root,
            "--sources", ",".join(SOURCES), *args]


def listing(root, *args):
    out = subprocess.run(tool(root, "--list", *args), capture_output=True, text=True,
                         timeout=60)
    check(out.returncode == 0, f"--list {' '.join(args)} exits 0: {out.stderr}")
    return [line for line in out.stdout.splitlines() if not line.startswith("#")]


def wait_for(path, seconds):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if os.path.exists(path):
            return True
        time.sleep(0.05)
    return False


def test_listing(root):
    first = listing(root, "--seed", "3", "--count", "5")
    check(len(first) == 5, "five faults are listed")
    check(first == listing(root, "--seed", "3", "--count", "5"), "the same seed, the same faults")
    check(first != listing(root, "--seed", "4", "--count", "5"), "another seed, another sample")
    every = listing(root, "--count", "1000")
    kinds = {line.split()[0].split(":")[1] for line in every}
    check({"cmp", "arith", "logic", "int", "bool", "negate", "call", "string"} <= kinds,
          f"every kind of fault is found: {sorted(kinds)}")
    for line in every:
        rel, number = re.search(r"\s(\S+):(\d+)\s", line).groups()
        check(int(number) not in NO_FAULT[rel], f"no fault on {rel}:{number}: {line}")


def test_failed_builds(root):
    # Every build with a fault fails; the first sampled fault is declared equivalent.
    first = listing(root, "--count", "3")[0].split()[0]
    os.makedirs(os.path.join(root, "tests"), exist_ok=True)
    with open(os.path.join(root, "tests", "mutants_equivalent.txt"), "w") as f:
        f.write(f"# id reason\n{first} cannot change what the test sees\n")
    run = subprocess.run(tool(root, "--count", "3", "--build-cmd", 'test -z "$NOX_MUTANT"',
                              "--test-cmd", "true"), capture_output=True, text=True, timeout=120)
    check(run.returncode == 0, f"a run with failing builds ends normally: {run.stdout[-2000:]}")
    tree_intact(root, "after failed builds")
    with open(os.path.join(root, "build", "mutants", "scratch.md")) as f:
        report = f.read()
    check("| 3 | 0 | 0 | 2 | 1 | n/a |" in report, "two faults do not compile, one is equivalent")
    os.unlink(os.path.join(root, "tests", "mutants_equivalent.txt"))


# Run as the test command: a colleague edits the file that holds the fault, once.
EDIT_ONCE = """
import json, os
if os.environ["NOX_MUTANT"] and not os.path.exists("edited"):
    note = json.load(open("build/mutants/backup/fault.json"))
    text = open(note["file"]).read()
    open(note["file"], "w").write("// edited\\n" + text)
    open("edited", "w").close()
"""


def test_edited_meanwhile(root):
    # The edit stays, the fault goes; the next fault finds its line one further down.
    rel = "lib/count.cpp"
    with open(os.path.join(root, "edit_once.py"), "w") as f:
        f.write(EDIT_ONCE)
    run = subprocess.run([sys.executable, TOOL, "scratch", "--root", root, "--sources", rel,
                          "--count", "2", "--test-cmd", f"{sys.executable} edit_once.py"],
                         capture_output=True, text=True, timeout=120)
    check(run.returncode == 0, f"a run with an edit in between ends normally: {run.stdout}")
    with open(os.path.join(root, rel)) as f:
        check(f.read() == "// edited\n" + SOURCES[rel], "the edit is kept, both faults are gone")
    with open(os.path.join(root, "build", "mutants", "scratch.md")) as f:
        check("| 2 | 0 | 2 | 0 | 0 | 0.0% (0/2) |" in f.read(), "both faults were run")
    with open(os.path.join(root, rel), "w") as f:
        f.write(SOURCES[rel])


def test_interrupted(root, signum):
    marker = os.path.join(root, "planted")
    if os.path.exists(marker):
        os.unlink(marker)
    # The test command leaves its process id, which leads its process group.
    test_cmd = 'if [ -n "$NOX_MUTANT" ]; then echo $$ >p.tmp && mv p.tmp planted; exec sleep 5; fi'
    proc = subprocess.Popen(tool(root, "--count", "2", "--test-cmd", test_cmd),
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        check(wait_for(marker, 30), "the tests of a fault start")
        changed = any(open(os.path.join(root, rel)).read() != text
                      for rel, text in SOURCES.items())
        check(changed, "a fault is in a source while its tests run")
        proc.send_signal(signum)
        code = proc.wait(timeout=30)
    finally:
        if proc.poll() is None:
            proc.kill()
            proc.wait()
        if signum == signal.SIGKILL:  # nobody is left to end the test command
            with open(marker) as f:
                try:
                    os.killpg(int(f.read()), signal.SIGKILL)
                except ProcessLookupError:
                    pass
    return code


def test_stale_objects(root):
    """A source copied in with an old time but new content gets the present time before the
    build, so that the build cannot keep the object of its old content; one whose content
    is as last seen keeps its time."""
    import importlib.util
    spec = importlib.util.spec_from_file_location("mutants_tool", TOOL)
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    runner = module.Runner(module.parse(["--root", root, "fields"]))
    os.makedirs(runner.build_dir("native"), exist_ok=True)
    runner.refresh_stamps("native", built_before=False)  # first sight: digests only
    old = time.time() - 3600
    changed, same = os.path.join(root, "lib/count.cpp"), os.path.join(root, "lib/name.cpp")
    with open(changed, "a") as f:
        f.write("// more\n")
    for path in (changed, same):
        os.utime(path, (old, old))
    runner.refresh_stamps("native", built_before=True)
    check(os.path.getmtime(changed) > old + 3000, "a changed source keeps its old time")
    check(abs(os.path.getmtime(same) - old) < 2, "an unchanged source got a new time")


def main():
    with tempfile.TemporaryDirectory(prefix="mutants-test-") as scratch:
        make_tree(scratch)
        test_stale_objects(scratch)
    with tempfile.TemporaryDirectory(prefix="mutants-test-") as root:
        make_tree(root)
        intact = listing(root, "--count", "1000")
        test_listing(root)
        test_failed_builds(root)
        test_edited_meanwhile(root)

        code = test_interrupted(root, signal.SIGINT)
        check(code == 128 + signal.SIGINT, f"SIGINT ends the run with 130, not {code}")
        tree_intact(root, "after SIGINT")

        # Killed outright the tool cannot clean up; its next start puts the source back.
        code = test_interrupted(root, signal.SIGKILL)
        check(os.path.exists(os.path.join(root, "build", "mutants", "backup")),
              "a run killed outright leaves its backup")
        check(listing(root, "--count", "1000") == intact,
              "the start after a killed run lists the faults of the intact sources")
        tree_intact(root, "after the start that follows a killed run")
    if failures:
        print(f"{len(failures)} checks failed")
        return 1
    print("all checks passed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
