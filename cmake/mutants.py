#!/usr/bin/env python3
"""Planted faults: how many small faults in a family's sources its tests notice.

    mutants.py [family...] [--count N] [--seed S] [--list] [--build native|windows]

One fault at a time is written into a source file, the family's tests are built and run,
and the source is put back. Each family's report goes to build/mutants/<family>.md.

A source file holding a fault has its original under build/mutants/backup/ together with a
note of the fault; whatever ends the run (a failed build, an exception, SIGINT, SIGTERM,
SIGHUP) puts the original back, and a run that was killed outright is repaired by the next
start. Faults that cannot change behaviour are listed by id, one a line with a reason, in
tests/mutants_equivalent.txt and do not count.

--root, --sources, --build-cmd and --test-cmd run the same machinery over any tree with
commands of one's own (shell commands run in the root; NOX_MUTANT holds the fault's id,
empty for the unmutated run).

--matrix runs every test of the family for each fault (no stop at the first failure) and
adds to the report which test cases failed it: for each test case, the faults it catches and
those no other test case catches. A test case that catches nothing of its own over a large
sample is a candidate for merging or dropping.
"""
import argparse
import difflib
import fcntl
import hashlib
import json
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

DEFAULT_SEED = 14
DEFAULT_COUNT = 40
TIMEOUT_FACTOR = 5          # of the slowest unmutated test
TIMEOUT_FLOOR = {"native": 20, "windows": 30, "custom": 10}

# The family's own sources, in the order faults are numbered. A family whose label has
# tests in the native build runs the faults of its natively compiled code there; code only
# the windows build compiles (*_win.cpp, #ifdef _WIN32, the Windows-only folders) runs in
# the windows build under Wine.
FAMILIES = {
    "rtl": ["rtl/classes.cpp", "rtl/ustring.cpp", "rtl/unicase.cpp", "rtl/locale_posix.cpp",
            "rtl/locale_win.cpp"],
    "fields": ["tools/fields.cpp"],
    "keyed": ["tools/keyed.cpp"],
    "search": ["tools/search.cpp", "tools/like.cpp", "tools/char_scan.cpp"],
    "align": ["ui/align.cpp"],
    "interapp-rule": ["tools/interapp.cpp"],
    "interapp": ["tools/interapp.cpp", "tools/interapp_win.cpp"],
    "inifile": ["rtl/inifiles.cpp", "rtl/inifiles_win.cpp", "rtl/meminifile.cpp"],
    "messaging": ["rtl/messaging.cpp"],
    "dialog-plan": ["dialog/dialog_plan.cpp"],
    "dialog": ["dialog/dialog_plan.cpp", "dialog/settings.cpp", "dialog/msgdlg_form_win.cpp",
               "dialog/msgdlg_win.cpp"],
    "paths": ["tools/paths.cpp", "tools/paths_win.cpp", "tools/qm_globals.cpp",
              "tools/qm_startup_win.cpp", "rtl/sysutils.cpp", "rtl/sysutils_win.cpp",
              "rtl/formatsettings.cpp", "rtl/formatsettings_win.cpp"],
    "sysinfo": ["tools/sysinfo.cpp", "tools/sysinfo_win.cpp", "rtl/osversion.cpp",
                "rtl/osversion_win.cpp"],
    "encoding": ["tools/textformat.cpp", "tools/utf8_structure.cpp", "rtl/encoding.cpp",
                 "rtl/encoding_win.cpp", "rtl/streams.cpp", "rtl/filestream_posix.cpp",
                 "rtl/filestream_win.cpp"],
    "projectfile": ["tools/projectfile.cpp"],
    "fileops": ["tools/fileops.cpp", "tools/fileops_win.cpp", "rtl/dateutils.cpp",
                "rtl/dateutils_win.cpp"],
    "process": ["tools/process.cpp", "tools/process_win.cpp"],
    "inisettings": ["tools/inisettings.cpp", "tools/inisettings_win.cpp"],
    "uihelpers": ["tools/uihelpers.cpp", "tools/uihelpers_win.cpp"],
    "streaming": ["tools/streaming.cpp", "tools/streaming_win.cpp", "rtl/filer.cpp",
                  "rtl/netencoding.cpp", "ui/persist_rules.cpp", "ui/persist_win.cpp",
                  "ui/picture_rules.cpp", "ui/picture_win.cpp"],
    "catalogue": ["data/catalogue.cpp", "data/catalogue_win.cpp", "rtl/registry_win.cpp"],
    "shareddata": ["data/globals.cpp", "data/project_text.cpp", "data/startup.cpp",
                   "data/startup_win.cpp"],
    "ui": ["ui/controls_win.cpp", "ui/forms_win.cpp", "ui/stdctrls_win.cpp",
           "ui/extctrls_win.cpp", "ui/buttons_win.cpp", "ui/appevnts_win.cpp",
           "ui/application_win.cpp", "ui/winclass_win.cpp", "ui/canvas_win.cpp",
           "ui/graphics_win.cpp", "ui/screen_win.cpp", "ui/comctrls_win.cpp",
           "ui/checklst_win.cpp", "ui/grids_win.cpp"],
    "menus": ["ui/menus_win.cpp", "ui/clipbrd_win.cpp"],
    "imglist": ["ui/imglist_win.cpp"],
    "companion": ["companion/main.cpp"],
    "devhost": ["devhost/options.cpp", "devhost/main_win.cpp", "devhost/log_win.cpp",
                "devhost/package_win.cpp", "devhost/services_win.cpp",
                "devhost/mainform_win.cpp", "devhost/treedump_win.cpp"],
    "spine-rules": ["host/view_rules.cpp", "package/unit_order.cpp"],
    "spine": ["host/view_rules.cpp", "host/WNOXView_win.cpp", "package/WNOXD13_64_win.cpp",
              "package/WNOXConstants_win.cpp", "package/WNOXCreator_win.cpp"],
}
# Labels with tests in the native build (pure tests, registered in both builds).
NATIVE_LABELS = {
    "rtl", "fields", "keyed", "search", "align", "interapp-rule", "inifile", "messaging",
    "dialog-plan", "paths", "sysinfo", "encoding", "projectfile", "fileops", "process",
    "inisettings", "uihelpers", "streaming", "catalogue", "shareddata", "spine-rules",
}
WINDOWS_ONLY_DIRS = ("companion/", "devhost/", "package/", "ide/")


class Interrupted(BaseException):
    def __init__(self, signum):
        super().__init__(signum)
        self.signum = signum


def on_signal(signum, _frame):
    raise Interrupted(signum)


STOP_SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)


def say(*args):
    print(*args, flush=True)


# ---- reading C++ ---------------------------------------------------------------------------

STRING_PREFIXES = ("u8R", "uR", "UR", "LR", "R", "u8", "u", "U", "L")


def scan(text):
    """Masks comments (blanks) and the insides of string and character literals ('_'),
    keeping every offset. Returns the masked text and the string literals as
    (open quote offset, offset after the closing quote, content start, raw)."""
    out = list(text)
    strings = []
    i, n = 0, len(text)
    while i < n:
        c = text[i]
        if c == "/" and text.startswith("//", i):
            j = text.find("\n", i)
            j = n if j < 0 else j
            out[i:j] = " " * (j - i)
            i = j
        elif c == "/" and text.startswith("/*", i):
            j = text.find("*/", i + 2)
            j = n if j < 0 else j + 2
            for k in range(i, j):
                if text[k] != "\n":
                    out[k] = " "
            i = j
        elif c == '"':
            k = i
            while k > 0 and (text[k - 1].isalnum() or text[k - 1] == "_"):
                k -= 1
            word = text[k:i]
            raw = word in STRING_PREFIXES and word.endswith("R")
            if raw:
                open_paren = text.find("(", i)
                delim = text[i + 1:open_paren]
                close = text.find(")" + delim + '"', open_paren)
                end = n if close < 0 else close + len(delim) + 2
                body = open_paren + 1
                for k in range(body, end - len(delim) - 2):
                    if text[k] != "\n":
                        out[k] = "_"
                strings.append((i, end, body, True))
            else:
                j = i + 1
                while j < n and text[j] != '"' and text[j] != "\n":
                    j += 2 if text[j] == "\\" else 1
                end = min(j + 1, n)
                for k in range(i + 1, end - 1):
                    out[k] = "_"
                strings.append((i, end, i + 1, False))
            i = end
        elif c == "'":
            k = i
            while k > 0 and (text[k - 1].isalnum() or text[k - 1] == "_"):
                k -= 1
            if k < i and text[k].isdigit():  # a digit separator
                i += 1
                continue
            j = i + 1
            while j < n and text[j] != "'" and text[j] != "\n":
                j += 2 if text[j] == "\\" else 1
            for k in range(i + 1, min(j, n)):
                out[k] = "_"
            i = j + 1
        else:
            i += 1
    return "".join(out), strings


def matching(s, open_at, pair="()"):
    depth = 0
    for k in range(open_at, len(s)):
        if s[k] == pair[0]:
            depth += 1
        elif s[k] == pair[1]:
            depth -= 1
            if depth == 0:
                return k
    return -1


def top_level(s, ch):
    depth = 0
    for c in s:
        if c in "([{":
            depth += 1
        elif c in ")]}":
            depth -= 1
        elif c == ch and depth == 0:
            return True
    return False


SWAPS = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">",
         "&&": "||", "||": "&&", "+": "-", "-": "+", "+=": "-=", "-=": "+="}
OP_KIND = {"==": "cmp", "!=": "cmp", "<": "cmp", "<=": "cmp", ">": "cmp", ">=": "cmp",
           "&&": "logic", "||": "logic", "+": "arith", "-": "arith", "+=": "arith",
           "-=": "arith"}
BINARY_RE = re.compile(r"(?<= )(==|!=|<=|>=|<|>|&&|\|\||\+=|-=|\+|-)(?= )")
INT_RE = re.compile(r"(?<![\w.'])(0[xX][0-9a-fA-F']+|[1-9][0-9']*|0)"
                    r"([uU]?[lL]{0,2}|[lL]{1,2}[uU])(?![\w.'])")
STRING_START_RE = re.compile(r'(?:u8|u|U|L)?R?"')
BOOL_RE = re.compile(r"\b(true|false)\b")
IF_RE = re.compile(r"(?<![\w#])if\s*\(")
DECL_RE = re.compile(r"^\s*(?:const\s+)?(?:auto|[A-Za-z_][\w:]*(?:<[^()]*>)?)[\s*&]+"
                     r"[A-Za-z_]\w*\s*(?:=[^=]|\{)")
CALL_RE = re.compile(r"^(\s*)((?:::)?[A-Za-z_]\w*(?:(?:::|\.|->)~?[A-Za-z_]\w*)*)"
                     r"(?:<[\w:, *&]*>)?\s*\(")
KEYWORDS = {"return", "throw", "delete", "new", "case", "goto", "co_return", "co_await",
            "co_yield", "static_assert", "if", "while", "for", "switch", "do", "else",
            "using", "typedef", "sizeof", "alignof", "decltype", "catch", "try", "default",
            "operator", "template", "typename", "noexcept", "requires", "static_cast",
            "const_cast", "reinterpret_cast", "dynamic_cast", "explicit", "alignas", "assert"}
STATEMENT_ENDS = (";", "{", "}", ":", ")")


def platform_of_lines(lines):
    """'win' for lines inside #ifdef _WIN32, 'posix' inside #ifndef _WIN32, else 'both'."""
    stack, result = [], []
    for line in lines:
        s = line.strip()
        m = re.match(r"#\s*(ifdef|ifndef|if|elif|else|endif)\b(.*)", s)
        if m:
            word, rest = m.group(1), m.group(2).strip()
            if word == "ifdef":
                stack.append("win" if rest == "_WIN32" else "")
            elif word == "ifndef":
                stack.append("posix" if rest == "_WIN32" else "")
            elif word == "if":
                stack.append("win" if rest in ("defined(_WIN32)", "defined _WIN32") else
                             "posix" if rest in ("!defined(_WIN32)", "!defined _WIN32") else "")
            elif word == "elif" and stack:
                stack[-1] = ""
            elif word == "else" and stack:
                stack[-1] = {"win": "posix", "posix": "win"}.get(stack[-1], "")
            elif word == "endif" and stack:
                stack.pop()
        kinds = set(stack)
        result.append("win" if "win" in kinds else "posix" if "posix" in kinds else "both")
    return result


def label_regex(label):
    """A ctest -L pattern for exactly this label (-L takes a regular expression)."""
    return "^" + re.sub(r"([.^$*+?()\[\]{}|\\])", r"\\\1", label) + "$"


# Families whose code other suites run as well: the stand-in companion program is started
# and driven by the page's tests and the development host's.
# Suites besides the family's own that run its code: the companion is driven by the page's
# and the development host's tests, and the framework's controls by the dialog's and the
# component streams' tests, which read back what the controls show and hold.
TESTED_ALSO_BY = {"companion": ["spine", "devhost"], "ui": ["dialog", "streaming"]}


def tests_regex(family):
    """A ctest -L pattern for the family's label and the labels of the suites that also run
    its code."""
    labels = [family] + TESTED_ALSO_BY.get(family, [])
    return "|".join(label_regex(label) for label in labels)


def file_platform(rel):
    base = os.path.basename(rel)
    if base.endswith("_win.cpp") or rel.startswith(WINDOWS_ONLY_DIRS):
        return "win"
    if base.endswith("_posix.cpp"):
        return "posix"
    return "both"


def faults_in(rel, text):
    """Every fault this file can carry, in order of line and column."""
    masked, strings = scan(text)
    lines = text.split("\n")
    mlines = masked.split("\n")
    starts = [0]
    for line in lines[:-1]:
        starts.append(starts[-1] + len(line) + 1)

    skip = [False] * len(lines)
    continued = False
    for i, m in enumerate(mlines):  # preprocessor lines with their continuations
        if continued or m.lstrip().startswith("#"):
            skip[i] = True
            continued = m.rstrip().endswith("\\")
        else:
            continued = False
    for m in re.finditer(r"\bstatic_assert\b", masked):
        open_at = masked.find("(", m.end())
        close = matching(masked, open_at) if open_at >= 0 else -1
        first = masked.count("\n", 0, m.start())
        last = masked.count("\n", 0, close if close >= 0 else len(masked))
        for i in range(first, last + 1):
            skip[i] = True
    line_platform = platform_of_lines(mlines)
    fplat = file_platform(rel)

    def line_of(offset):
        lo, hi = 0, len(starts) - 1
        while lo < hi:
            mid = (lo + hi + 1) // 2
            if starts[mid] <= offset:
                lo = mid
            else:
                hi = mid - 1
        return lo

    by_line = {}
    for (q, end, body, raw) in strings:
        li = line_of(q)
        if line_of(end - 1) != li:
            continue
        before = masked[starts[li]:q].rstrip()
        if re.search(r"\b(extern|operator|asm)\s*\w*$", before):
            continue
        by_line.setdefault(li, []).append(body - starts[li])

    seen_text = {}
    result = []
    previous_code = ""
    for i, (o, m) in enumerate(zip(lines, mlines)):
        stripped = o.strip()
        dup = seen_text.get(stripped, 0)
        seen_text[stripped] = dup + 1
        if skip[i] or not m.strip():
            continue
        plat = line_platform[i] if line_platform[i] != "both" else fplat
        found = []  # (column, op, new line, description)

        templ = "template" in m
        for mo in BINARY_RE.finditer(m):
            tok = mo.group(1)
            if tok in ("<", ">") and templ:
                continue
            if tok in ("+", "-", "+=", "-=") and (m[:mo.start() - 1].endswith('"') or
                                      STRING_START_RE.match(m, mo.end() + 1)):
                continue  # text joined to a literal: "-" would not compile
            a = mo.start()
            new = o[:a] + SWAPS[tok] + o[a + len(tok):]
            found.append((a, OP_KIND[tok], new, f"{tok} -> {SWAPS[tok]}"))
        for mo in BOOL_RE.finditer(m):
            a, tok = mo.start(), mo.group(1)
            other = "false" if tok == "true" else "true"
            found.append((a, "bool", o[:a] + other + o[mo.end():], f"{tok} -> {other}"))
        for mo in INT_RE.finditer(m):
            digits, suffix = mo.group(1), mo.group(2)
            plain = digits.replace("'", "")
            if plain[:2] in ("0x", "0X"):
                value = int(plain[2:], 16)
                hexdigits = plain[2:]
                upper = hexdigits != hexdigits.lower()
                fmt = lambda v: plain[:2] + format(v, f"0{len(hexdigits)}{'X' if upper else 'x'}")
            else:
                value = int(plain)
                fmt = str
            rep = fmt(value + 1) + suffix
            found.append((mo.start(), "int", o[:mo.start()] + rep + o[mo.end():],
                          f"{digits}{suffix} -> {rep}"))
        for mo in IF_RE.finditer(m):
            open_at = mo.end() - 1
            close = matching(m, open_at)
            if close < 0:
                continue
            cond = m[open_at + 1:close]
            if top_level(cond, ";") or DECL_RE.match(cond) or not cond.strip():
                continue
            new = o[:open_at + 1] + "!(" + o[open_at + 1:close] + ")" + o[close:]
            found.append((open_at, "negate", new, "if (X) -> if (!(X))"))
        cm = CALL_RE.match(m)
        starts_statement = previous_code.endswith(STATEMENT_ENDS) or \
            re.search(r"\b(else|do)$", previous_code) is not None
        if cm and starts_statement and \
                re.split(r"::|\.|->", cm.group(2).lstrip(":"))[0] not in KEYWORDS:
            close = matching(m, cm.end() - 1)
            if close >= 0 and m[close + 1:].strip() == ";":
                semi = m.index(";", close)
                new = o[:len(cm.group(1))] + "{}" + o[semi + 1:]
                found.append((len(cm.group(1)), "call", new, "call statement removed"))
        for col in by_line.get(i, []):
            new = o[:col] + "~" + o[col:]
            found.append((col, "string", new, 'string literal: "~" put in front'))

        occurrences = {}
        for col, op, new, desc in sorted(found, key=lambda f: (f[0], f[1])):
            if new == o:
                continue
            occ = occurrences.get(op, 0)
            occurrences[op] = occ + 1
            digest = hashlib.sha1(f"{stripped}\n{dup}\n{op}\n{occ}".encode()).hexdigest()[:10]
            result.append({
                "id": f"{rel}:{op}:{digest}", "file": rel, "line": i + 1, "col": col,
                "op": op, "desc": desc, "old": o, "new": new, "platform": plat,
            })
        previous_code = m.strip()
    return result


# ---- running -------------------------------------------------------------------------------

class Runner:
    def __init__(self, args):
        self.args = args
        self.root = os.path.abspath(args.root)
        self.work = os.path.join(self.root, "build", "mutants")
        self.backup = os.path.join(self.work, "backup")
        self.state = os.path.join(self.backup, "fault.json")
        self.custom = bool(args.build_cmd or args.test_cmd)
        self.configured = set()
        self.wine = None
        self.cases = None
        self.log = None

    # -- sources and their restore --

    def write_atomically(self, path, data):
        try:
            fd, tmp = tempfile.mkstemp(dir=self.work, prefix=".write-")
            with os.fdopen(fd, "wb") as f:
                f.write(data)
                f.flush()
                os.fsync(f.fileno())
            try:
                os.chmod(tmp, os.stat(path).st_mode & 0o7777)
            except FileNotFoundError:
                pass
            os.replace(tmp, path)
        except OSError:
            if "tmp" in locals() and os.path.exists(tmp):
                os.unlink(tmp)
            with open(path, "wb") as f:
                f.write(data)

    def plant(self, fault, original, mutated):
        """The copy first, then the note (written whole or not at all), then the fault: a
        note always means a backup that is complete."""
        copy = os.path.join(self.backup, fault["file"])
        os.makedirs(os.path.dirname(copy), exist_ok=True)
        with open(copy, "wb") as f:
            f.write(original)
            f.flush()
            os.fsync(f.fileno())
        with open(self.state + ".tmp", "w") as f:
            json.dump({"file": fault["file"], "line": fault["line"], "old": fault["old"],
                       "new": fault["new"]}, f)
            f.flush()
            os.fsync(f.fileno())
        os.replace(self.state + ".tmp", self.state)
        self.write_atomically(os.path.join(self.root, fault["file"]), mutated)

    def restore(self):
        """Puts back the file named by the backup's note; the backup goes once it is back.
        Without a note no fault was written yet, and the copies are simply dropped."""
        for name in os.listdir(self.work) if os.path.isdir(self.work) else []:
            if name.startswith(".write-"):
                os.unlink(os.path.join(self.work, name))
        if not os.path.exists(self.state):
            if os.path.isdir(self.backup):
                shutil.rmtree(self.backup)
            return
        with open(self.state) as f:
            note = json.load(f)
        path = os.path.join(self.root, note["file"])
        copy = os.path.join(self.backup, note["file"])
        with open(copy, "rb") as f:
            original = f.read()
        try:
            with open(path, "rb") as f:
                current = f.read()
        except FileNotFoundError:
            current = None
        if current is not None and current != original:
            text = current.decode("utf-8", "surrogateescape")
            lines = text.split("\n")
            want = original.decode("utf-8", "surrogateescape").split("\n")
            at = note["line"] - 1
            if len(lines) == len(want) and lines[at] == note["new"] and \
                    lines[:at] + lines[at + 1:] == want[:at] + want[at + 1:]:
                self.write_atomically(path, original)
            else:
                # Somebody edited the file while it held the fault: take back only the
                # fault's line, the nearest one that still reads as the fault.
                hits = [k for k, line in enumerate(lines) if line == note["new"]]
                if hits:
                    k = min(hits, key=lambda h: abs(h - at))
                    lines[k] = note["old"]
                    self.write_atomically(path, "\n".join(lines).encode("utf-8", "surrogateescape"))
                    say(f"mutants: {note['file']} was edited while it held a fault; "
                        f"only line {k + 1} was put back")
                else:
                    keep = os.path.join(self.work, os.path.basename(note["file"]) + ".edited")
                    shutil.copyfile(path, keep)
                    self.write_atomically(path, original)
                    say(f"mutants: {note['file']} was edited while it held a fault; the "
                        f"original is back, the edited file is kept as {keep}")
        elif current is None:
            self.write_atomically(path, original)
        shutil.rmtree(self.backup)

    # -- processes --

    def call(self, cmd, env=None, timeout=None, shell=False, quiet=False):
        """Runs a command in a session of its own; returns (exit code or None on timeout,
        output). On interruption the session is ended before the exception goes on.
        quiet: no output is read, for programs that leave daemons behind (wineserver,
        wineboot), which would hold a pipe open for ever."""
        self.log.write(f"$ {cmd if shell else ' '.join(cmd)}\n")
        self.log.flush()
        out = subprocess.DEVNULL if quiet else subprocess.PIPE
        proc = subprocess.Popen(cmd, cwd=self.root, env=env, shell=shell,
                                stdout=out, stderr=subprocess.STDOUT,
                                stdin=subprocess.DEVNULL, start_new_session=True)
        try:
            out, _ = proc.communicate(timeout=timeout)
            code = proc.returncode
        except subprocess.TimeoutExpired:
            self.end_session(proc)
            out, code = b"", None
        except BaseException:
            self.end_session(proc)
            raise
        text = (out or b"").decode("utf-8", "replace")
        self.log.write(text)
        self.log.flush()
        return code, text

    @staticmethod
    def end_session(proc):
        for sig, wait in ((signal.SIGTERM, 5), (signal.SIGKILL, 5)):
            try:
                os.killpg(proc.pid, sig)
            except ProcessLookupError:
                pass
            try:
                proc.wait(timeout=wait)
                return
            except subprocess.TimeoutExpired:
                continue

    # -- builds --

    def build_dir(self, build):
        return os.path.join(self.root, "build", "mutants-" + build)

    def configure(self, build):
        if build in self.configured or build == "custom":
            return
        preset = "native-san" if build == "native" else "windows"
        say(f"configure {preset} in build/mutants-{build}")
        built_before = os.path.exists(os.path.join(self.build_dir(build), "build.ninja"))
        code, out = self.call(["cmake", "--preset", preset, "-B", self.build_dir(build)])
        if code != 0:
            raise SystemExit(f"mutants: configuring {preset} failed:\n{out[-3000:]}")
        self.refresh_stamps(build, built_before)
        self.configured.add(build)

    def refresh_stamps(self, build, built_before):
        """A tree copied with its files' times (rsync -a, cp -p) may hold a source older
        than the object built from its previous content, which the build would keep. The
        digests of the last run tell which sources changed since; those get the present
        time. A build folder of unknown history has every source touched once."""
        manifest = os.path.join(self.build_dir(build), ".mutants-sources.json")
        try:
            with open(manifest) as f:
                seen = json.load(f)
        except (OSError, ValueError):
            seen = None
        digests = {}
        for folder, dirs, files in os.walk(self.root):
            dirs[:] = [d for d in dirs if d not in ("build", ".git")]
            for name in files:
                if not name.endswith((".cpp", ".h", ".rc", ".txt", ".cmake", ".json")):
                    continue
                path = os.path.join(folder, name)
                with open(path, "rb") as f:
                    digests[os.path.relpath(path, self.root)] = hashlib.sha1(f.read()).hexdigest()
        for rel, digest in digests.items():
            if (seen is None and built_before) or (seen is not None and seen.get(rel) != digest):
                os.utime(os.path.join(self.root, rel))
        with open(manifest, "w") as f:
            json.dump(digests, f)

    def tests_of(self, family, build):
        code, out = self.call(["ctest", "--test-dir", self.build_dir(build), "--show-only=json-v1",
                               "-L", tests_regex(family)])
        if code != 0:
            raise SystemExit(f"mutants: ctest cannot list the tests of {family}")
        return json.loads(out[out.index("{"):])["tests"]

    def targets_of(self, family, build):
        """The executables the family's native tests run, which are the targets to build.
        ctest leaves out the command of a test whose program is not built yet, so the
        commands come from the CTestTestfile.cmake files."""
        if build == "windows":
            return []
        bdir = self.build_dir(build)
        commands = {}
        for folder, _, files in os.walk(bdir):
            if "CTestTestfile.cmake" in files:
                with open(os.path.join(folder, "CTestTestfile.cmake")) as f:
                    for name, exe in re.findall(r'add_test\(\[=\[(.+?)\]=\]\s+"([^"]+)"', f.read()):
                        commands[name] = exe
        names = []
        for t in self.tests_of(family, build):
            exe = t.get("command", [commands.get(t["name"], "")])[0]
            if os.path.abspath(exe).startswith(bdir + os.sep):
                names.append(os.path.basename(exe))
        return sorted(set(names))

    def env(self, build, fault_id, tests=False):
        env = dict(os.environ, NOX_MUTANT=fault_id)
        if build == "windows" and tests:
            env.update(self.wine_env())
            if self.wine["xvfb"].poll() is not None:
                raise SystemExit("mutants: the X server of the windows tests has ended")
        return env

    def build(self, build, targets, fault_id):
        if build == "custom":
            return self.call(self.args.build_cmd or "true", env=self.env(build, fault_id),
                             shell=True)
        cmd = ["cmake", "--build", self.build_dir(build), "-j", str(self.args.jobs)]
        for t in targets:
            cmd += ["--target", t]
        return self.call(cmd, env=self.env(build, fault_id))

    def gtest_folder(self):
        folder = os.path.join(self.work, "gtest-out")
        shutil.rmtree(folder, ignore_errors=True)
        os.makedirs(folder)
        return folder

    def failed_cases(self, folder):
        """(every test case run, those that failed, the checks that failed) from GoogleTest's
        JSON reports. A check is its test case, file and line, and the traces in scope."""
        ran, failed, checks = set(), set(), set()
        for name in sorted(os.listdir(folder)):
            try:
                with open(os.path.join(folder, name)) as f:
                    report = json.load(f)
            except (OSError, ValueError):
                continue
            for suite in report.get("testsuites", []):
                for case in suite.get("testsuite", []):
                    full = f"{suite['name']}.{case['name']}"
                    if case.get("result", "COMPLETED") == "SUPPRESSED" or \
                            case.get("status") == "NOTRUN":
                        continue
                    ran.add(full)
                    for failure in case.get("failures", []):
                        failed.add(full)
                        text = failure.get("failure", "")
                        where = os.path.basename(text.split("\n", 1)[0])
                        traces = re.findall(r"^\S+:\d+: (.*)$",
                                            text.partition("Google Test trace:")[2], re.M)
                        checks.add(" ".join([full, "@", where] + traces))
        return ran, failed, checks

    def test(self, family, build, fault_id, timeout):
        """(passed, timed out, seconds, slowest test's seconds)"""
        start = time.monotonic()
        self.cases = None
        if build == "custom":
            code, out = self.call(self.args.test_cmd or "true", env=self.env(build, fault_id, True),
                                  shell=True, timeout=timeout)
            spent = time.monotonic() - start
            return code == 0, code is None, spent, spent
        cmd = ["ctest", "--test-dir", self.build_dir(build), "-L", tests_regex(family),
               "--no-tests=error"]
        env = self.env(build, fault_id, True)
        if self.args.matrix:
            folder = self.gtest_folder()
            where = folder if build == "native" else "Z:" + folder.replace("/", "\\")
            env["GTEST_OUTPUT"] = "json:" + where + ("/" if build == "native" else "\\")
        else:
            cmd.append("--stop-on-failure")
        outer = None
        if timeout:
            cmd += ["--timeout", str(int(timeout))]
            outer = timeout * 20 + 120
        code, out = self.call(cmd, env=env, timeout=outer)
        if self.args.matrix:
            self.cases = self.failed_cases(folder)
        spent = time.monotonic() - start
        times = [float(t) for t in re.findall(r"Test +#\d+: .* ([0-9.]+) sec", out)]
        timed_out = code is None or "***Timeout" in out
        if timed_out and build == "windows":
            self.end_wine_processes()
        return code == 0, timed_out, spent, max(times, default=spent)

    # -- the Wine session of the windows build: its own X server, prefix and wineserver --

    def wine_env(self):
        if self.wine is None:
            self.start_wine()
        return self.wine["env"]

    def start_wine(self):
        for tool in ("Xvfb", "wine", "wineserver"):
            if shutil.which(tool) is None:
                raise SystemExit(f"mutants: {tool} is missing (./run mutants installs it)")
        prefix = os.path.join(self.build_dir("windows"), "wineprefix")
        os.makedirs(prefix, exist_ok=True)
        self.wine = {"xvfb": None, "env": None}
        display = self.start_xvfb()
        env = {"WINEPREFIX": prefix, "WINEDEBUG": "-all", "WINEDLLOVERRIDES": "mscoree,mshtml=",
               "DISPLAY": f":{display}"}
        self.wine["env"] = env
        full = dict(os.environ, **env)
        say(f"Wine session on :{display}, prefix build/mutants-windows/wineprefix")
        self.call(["wineserver", "-p"], env=full, quiet=True)
        self.call(["wineboot"], env=full, timeout=300, quiet=True)
        # No window manager runs on Xvfb: Wine manages its windows itself.
        self.call(["wine", "reg", "add", r"HKCU\Software\Wine\X11 Driver", "/v", "Managed",
                   "/t", "REG_SZ", "/d", "N", "/f"], env=full, timeout=120, quiet=True)
        # A crashing test ends at once instead of waiting behind a crash dialog.
        self.call(["wine", "reg", "add", r"HKCU\Software\Wine\WineDbg", "/v",
                   "ShowCrashDialog", "/t", "REG_DWORD", "/d", "0", "/f"], env=full,
                  timeout=120, quiet=True)

    def start_xvfb(self):
        """An X server on a display number of its own, from --display on: one with a lock
        file is somebody else's. (-displayfd would pick the lowest free number, which other
        sessions on this machine pick as well.)"""
        for n in range(self.args.display, self.args.display + 20):
            lock = f"/tmp/.X{n}-lock"
            if os.path.exists(lock):
                continue
            xvfb = subprocess.Popen(["Xvfb", f":{n}", "-screen", "0", "1280x1024x24",
                                     "-nolisten", "tcp", "-ac"],
                                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                    stdin=subprocess.DEVNULL, start_new_session=True)
            self.wine["xvfb"] = xvfb
            deadline = time.monotonic() + 15
            while time.monotonic() < deadline and xvfb.poll() is None:
                try:
                    with open(lock) as f:
                        owner = int(f.read().strip() or 0)
                except (OSError, ValueError):
                    owner = 0
                if owner == xvfb.pid and os.path.exists(f"/tmp/.X11-unix/X{n}"):
                    time.sleep(0.3)
                    return n
                time.sleep(0.1)
            self.end_session(xvfb)
            self.wine["xvfb"] = None
        raise SystemExit(f"mutants: no X server could start on :{self.args.display} "
                         f"to :{self.args.display + 19}")

    def end_wine_processes(self):
        """ctest ends a test program that runs out of time, not the programs it started: a
        host left running would hold its log files open and fail every later fault's tests."""
        full = dict(os.environ, **self.wine["env"])
        subprocess.run(["wineserver", "-k"], env=full, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)
        subprocess.run(["wineserver", "-w"], env=full, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=60)
        self.call(["wineserver", "-p"], env=full, quiet=True)

    def stop_wine(self):
        if self.wine is None:
            return
        if self.wine["env"]:
            subprocess.run(["wineserver", "-k"], env=dict(os.environ, **self.wine["env"]),
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        if self.wine["xvfb"] is not None:
            self.end_session(self.wine["xvfb"])
        self.wine = None

    # -- faults --

    def sources_of(self, family):
        if self.args.sources:
            return [s for arg in self.args.sources for s in arg.split(",") if s]
        return FAMILIES[family]

    def where(self, family, platform):
        if self.custom:
            return "custom"
        native = family in NATIVE_LABELS
        if platform == "win":
            return "windows"
        if platform == "posix":
            return "native" if native else None
        return "native" if native else "windows"

    def candidates(self, family):
        result = []
        for rel in self.sources_of(family):
            path = os.path.join(self.root, rel)
            if not os.path.exists(path):
                say(f"mutants: {rel} does not exist, left out")
                continue
            with open(path, "rb") as f:
                text = f.read().decode("utf-8", "surrogateescape")
            for fault in faults_in(rel, text):
                fault["build"] = self.where(family, fault["platform"])
                if fault["build"] is None:
                    continue
                if self.args.build and fault["build"] != self.args.build:
                    continue
                result.append(fault)
        return result

    def sample(self, family):
        every = self.candidates(family)
        picked = random.Random(self.args.seed).sample(every, min(self.args.count, len(every)))
        order = {rel: k for k, rel in enumerate(self.sources_of(family))}
        picked.sort(key=lambda f: (order[f["file"]], f["line"], f["col"], f["op"]))
        return every, picked

    def equivalents(self):
        path = self.args.equivalent or os.path.join(self.root, "tests", "mutants_equivalent.txt")
        known = {}
        if os.path.exists(path):
            with open(path) as f:
                for line in f:
                    line = line.strip()
                    if line and not line.startswith("#"):
                        fid, _, reason = line.partition(" ")
                        known[fid] = reason.strip()
        return known

    def run_family(self, family):
        every, picked = self.sample(family)
        known = self.equivalents()
        say(f"\n== {family}: {len(picked)} of {len(every)} faults (seed {self.args.seed})")
        builds = sorted({f["build"] for f in picked if f["id"] not in known})
        baseline = {}
        every_case = set()
        for build in builds:
            self.configure(build)
            targets = self.targets_of(family, build) if build != "custom" else []
            if build == "native" and not targets:
                raise SystemExit(f"mutants: {family} has no native tests in build/mutants-native")
            say(f"unmutated {family} ({build}): build and test")
            code, out = self.build(build, targets, "")
            if code != 0:
                raise SystemExit(f"mutants: the unmutated {family} does not build ({build}):\n"
                                 f"{out[-3000:]}")
            ok, _, spent, slowest = self.test(family, build, "", 1500)
            if self.cases:
                every_case.update(self.cases[0])
            if not ok:
                raise SystemExit(f"mutants: the tests of {family} fail unmutated ({build}); "
                                 f"see {self.log.name}")
            timeout = max(TIMEOUT_FLOOR[build], TIMEOUT_FACTOR * slowest)
            baseline[build] = (targets, timeout)
            say(f"  passed in {spent:.1f} s; a test counts as killed after {timeout:.0f} s")

        results = []
        try:
            for n, fault in enumerate(picked, 1):
                tag = f"[{n}/{len(picked)}] {fault['file']}:{fault['line']} {fault['desc']}"
                if fault["id"] in known:
                    results.append(dict(fault, result="equivalent", seconds=0.0,
                                        reason=known[fault["id"]]))
                    say(f"{tag}: equivalent")
                    continue
                build = fault["build"]
                targets, timeout = baseline[build]
                start = time.monotonic()
                path = os.path.join(self.root, fault["file"])
                with open(path, "rb") as f:
                    original = f.read()
                lines = original.decode("utf-8", "surrogateescape").split("\n")
                at = fault["line"] - 1
                if at >= len(lines) or lines[at] != fault["old"]:
                    # Edited since the faults were drawn: the line may have moved.
                    hits = [k for k, line in enumerate(lines) if line == fault["old"]]
                    if not hits:
                        results.append(dict(fault, result="skipped", seconds=0.0,
                                            reason="its line was edited during the run"))
                        say(f"{tag}: skipped, its line was edited during the run")
                        continue
                    at = min(hits, key=lambda k: abs(k - at))
                    fault["line"] = at + 1
                lines[at] = fault["new"]
                mutated = "\n".join(lines).encode("utf-8", "surrogateescape")
                self.log.write(f"\n==== {fault['id']} {fault['file']}:{fault['line']}\n")
                try:
                    self.plant(fault, original, mutated)
                    code, _ = self.build(build, targets, fault["id"])
                    if code != 0:
                        result = "not compiling"
                    else:
                        ok, timed_out, _, _ = self.test(family, build, fault["id"], timeout)
                        result = "survived" if ok else "killed (timeout)" if timed_out else "killed"
                finally:
                    self.restore_quietly()
                seconds = time.monotonic() - start
                caught = self.args.matrix and self.cases and result.startswith("killed")
                results.append(dict(fault, result=result, seconds=seconds,
                                    failed=sorted(self.cases[1]) if caught else [],
                                    checks=sorted(self.cases[2]) if caught else []))
                say(f"{tag}: {result} ({seconds:.1f} s)")
        except Interrupted:
            self.report(family, every, picked, results, interrupted=True)
            self.report_matrix(family, every_case, results)
            raise
        self.report(family, every, picked, results, interrupted=False)
        self.report_matrix(family, every_case, results)
        return results

    def restore_quietly(self):
        old = signal.pthread_sigmask(signal.SIG_BLOCK, STOP_SIGNALS)
        try:
            self.restore()
        finally:
            signal.pthread_sigmask(signal.SIG_SETMASK, old)

    def report(self, family, every, picked, results, interrupted):
        count = lambda *names: sum(1 for r in results if r["result"] in names)
        killed = count("killed", "killed (timeout)")
        survived = count("survived")
        broken = count("not compiling")
        equivalent = count("equivalent")
        planted = len(results) - count("skipped")
        judged = planted - broken - equivalent
        score = f"{100.0 * killed / judged:.1f}% ({killed}/{judged})" if judged else "n/a"
        timed = {}
        for r in results:
            if r["result"] != "equivalent":
                timed.setdefault(r["build"], []).append(r["seconds"])
        out = [f"# Planted faults: {family}", ""]
        if interrupted:
            out += [f"**Interrupted** after {planted} of {len(picked)} faults.", ""]
        out += [f"Seed {self.args.seed}, {len(picked)} faults sampled from {len(every)} "
                f"candidates in {', '.join(self.sources_of(family))}.", "",
                "| planted | killed | survived | not compiling | equivalent | score |",
                "|---|---|---|---|---|---|",
                f"| {planted} | {killed} | {survived} | {broken} | {equivalent} | {score} |", ""]
        for build, secs in sorted(timed.items()):
            out.append(f"Time per fault, {build} build: {sum(secs) / len(secs):.1f} s "
                       f"(over {len(secs)}).")
        out += ["", "## Survivors", ""]
        survivors = [r for r in results if r["result"] == "survived"]
        if not survivors:
            out += ["None.", ""]
        for r in survivors:
            diff = difflib.unified_diff([r["old"]], [r["new"]], f"a/{r['file']}",
                                        f"b/{r['file']}", lineterm="", n=0)
            diff = [line if not line.startswith("@@") else
                    f"@@ -{r['line']} +{r['line']} @@" for line in diff]
            out += [f"### `{r['id']}`", "", f"{r['file']} line {r['line']}: {r['desc']}", "",
                    "```diff", *diff, "```", ""]
        out += ["## Every fault", "", "| id | line | fault | result |", "|---|---|---|---|"]
        for r in results:
            note = f" ({r['reason']})" if r.get("reason") else ""
            desc = r["desc"].replace("|", "\\|")
            out.append(f"| `{r['id']}` | {r['line']} | {desc} | {r['result']}{note} |")
        path = os.path.join(self.work, f"{family}.md")
        with open(path, "w") as f:
            f.write("\n".join(out) + "\n")
        say(f"{family}: {planted} planted, {killed} killed, {survived} survived, {broken} not "
            f"compiling, {equivalent} equivalent; score {score}; report {path}")


    def report_matrix(self, family, every_case, results):
        if not self.args.matrix:
            return
        killed = [r for r in results if r["result"].startswith("killed")]
        catches = {case: [] for case in every_case}
        for r in killed:
            for case in r["failed"]:
                catches.setdefault(case, []).append(r["id"])
        alone = {case: [r["id"] for r in killed if r["failed"] == [case]] for case in catches}
        unknown = [r["id"] for r in killed if not r["failed"]]
        out = [f"# Which test cases catch the planted faults: {family}", "",
               f"{len(killed)} faults killed; {len(unknown)} of them by no test case on record "
               "(a crash or a timeout ends a program before it reports).", "",
               "| test case | faults caught | caught by it alone |", "|---|---|---|"]
        for case in sorted(catches, key=lambda c: (len(alone[c]), len(catches[c]), c)):
            out.append(f"| {case} | {len(catches[case])} | {len(alone[case])} "
                       f"{' '.join(alone[case])} |")
        path = os.path.join(self.work, f"{family}.matrix.md")
        with open(path, "w") as f:
            f.write("\n".join(out) + "\n")
        with open(os.path.join(self.work, f"{family}.matrix.json"), "w") as f:
            json.dump({"cases": sorted(every_case),
                       "faults": {r["id"]: r["failed"] for r in killed},
                       "checks": {r["id"]: r["checks"] for r in killed},
                       "survived": [r["id"] for r in results if r["result"] == "survived"]},
                      f, indent=1)
        say(f"{family}: matrix {path}")


def parse(argv):
    p = argparse.ArgumentParser(prog="./run mutants", description=__doc__.split("\n")[0])
    p.add_argument("families", nargs="*", help="ctest labels (default: every family)")
    p.add_argument("--count", type=int, default=DEFAULT_COUNT, help="faults per family")
    p.add_argument("--seed", type=int, default=DEFAULT_SEED)
    p.add_argument("--list", action="store_true", help="print the sampled faults and stop")
    p.add_argument("--build", choices=("native", "windows"), help="only faults run in this build")
    p.add_argument("--jobs", type=int, default=2)
    p.add_argument("--display", type=int, default=59,
                   help="first X display number tried for the windows tests (default 59)")
    p.add_argument("--root", default=os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
    p.add_argument("--sources", action="append", help="source files (comma-separated) in "
                   "place of the family's table entry")
    p.add_argument("--build-cmd", help="shell command in place of the build")
    p.add_argument("--test-cmd", help="shell command in place of the family's tests")
    p.add_argument("--equivalent", help="file of equivalent faults "
                   "(default tests/mutants_equivalent.txt)")
    p.add_argument("--matrix", action="store_true",
                   help="run every test for each fault and report which test cases catch it")
    p.add_argument("--which-builds", action="store_true",
                   help="print the builds the faults would need and stop")
    args = p.parse_args(argv)
    if args.sources and len(args.families) != 1:
        p.error("--sources needs one family name, which names the report")
    if not args.families:
        args.families = list(FAMILIES)
    for family in args.families:
        if family not in FAMILIES and not args.sources:
            p.error(f"unknown family {family}; known: {' '.join(FAMILIES)}")
    return args


def main(argv):
    args = parse(argv)
    runner = Runner(args)
    os.makedirs(runner.work, exist_ok=True)
    lock = open(os.path.join(runner.work, ".lock"), "w")
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        # Its backup is not a leftover, and a listing would read its faults.
        raise SystemExit(f"mutants: another run is using {runner.work}")
    for sig in STOP_SIGNALS:
        signal.signal(sig, on_signal)
    code = 0
    try:
        runner.restore_quietly()  # what a run killed outright left behind
        if args.list or args.which_builds:
            builds = set()
            for family in args.families:
                every, picked = runner.sample(family)
                builds |= {f["build"] for f in picked}
                if not args.which_builds:
                    print(f"# {family}: {len(picked)} of {len(every)} (seed {args.seed})")
                    for f in picked:
                        print(f"{f['id']}  {f['file']}:{f['line']}  {f['build']}  {f['desc']}")
            if args.which_builds:
                print(" ".join(sorted(builds)))
            return 0
        with open(os.path.join(runner.work, "mutants.log"), "w") as runner.log:
            for family in args.families:
                runner.run_family(family)
    except Interrupted as e:
        say(f"\nmutants: stopped by signal {e.signum}; the sources are as they were")
        code = 128 + e.signum
    finally:
        for sig in STOP_SIGNALS:
            signal.signal(sig, signal.SIG_IGN)
        runner.restore()
        runner.stop_wine()
    return code


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
