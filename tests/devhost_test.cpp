// The development host run from its command line with the tests' own package (testpackage/).
#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "rtl/ustring.h"
#include "tests/message_pump.h"
#include "win_support.h"

namespace {

using nox_test::WidePath;

struct TTreeLine { int depth; std::string cls, title; int x, y, w, h; bool border; };

struct TTreeDump {
  int w = 0, h = 0;              // the Welcome Page area
  int windowX = 0, windowY = 0;  // its origin in the main window's picture
  std::vector<TTreeLine> lines;
  // The first window of that class at that depth; fails the test when there is none.
  const TTreeLine& Find(int depth, const std::string& cls) const {
    for (const TTreeLine& l : lines)
      if (l.depth == depth && l.cls == cls) return l;
    ADD_FAILURE() << "no " << cls << " at depth " << depth;
    static const TTreeLine none{};
    return none;
  }
};

struct THostRun {
  DWORD exitCode = STILL_ACTIVE;
  std::vector<std::string> log;  // without the time column
  std::vector<TTreeDump> dumps;

  // The first line from `from` on that starts with `text`.
  int Find(const std::string& text, int from = 0) const {
    for (int i = from; i < static_cast<int>(log.size()); ++i)
      if (log[static_cast<size_t>(i)].starts_with(text)) return i;
    return -1;
  }
};

void ParseLog(const std::string& text, THostRun& run) {
  std::istringstream in(text);
  static const std::regex area(R"(tree area size=(\d+)x(\d+) window-at=(\d+),(\d+))");
  static const std::regex window(
      R"re(tree( +)class=(.*) title="(.*)" at=(-?\d+),(-?\d+) size=(\d+)x(\d+) border=(\w+) .*)re");
  std::string line;
  while (std::getline(in, line)) {
    const size_t text = line.find_first_not_of(' ');
    line = line.substr(line.find(' ', text) + 1);
    std::smatch m;
    if (std::regex_match(line, m, area)) {
      run.dumps.push_back({std::stoi(m[1]), std::stoi(m[2]), std::stoi(m[3]), std::stoi(m[4]), {}});
    } else if (std::regex_match(line, m, window) && !run.dumps.empty()) {
      run.dumps.back().lines.push_back({static_cast<int>(m[1].length()) / 2, m[2], m[3],
                                        std::stoi(m[4]), std::stoi(m[5]), std::stoi(m[6]),
                                        std::stoi(m[7]), m[8] == "yes"});
    }
    run.log.push_back(line);
  }
}

// Runs devhost.exe with `package` and the further arguments, waits for it to end (at
// most a minute) and reads its log.
THostRun RunHost(const std::u16string& name, const std::wstring& package, const std::wstring& args) {
  const std::u16string logFile = nox_test::TempFolder() + u"devhost_" + name + u".log";
  DeleteFileW(nox_test::W(logFile));
  const nox_test::StartedProgram host = nox_test::StartProgram(
      L"\"" + WidePath(NOX_DEVHOST_EXE) + L"\" --package \"" + package + L"\" --log \"" +
      nox_test::W(logFile) + L"\" " + args);
  THostRun run;
  if (!host.process) {
    ADD_FAILURE() << "devhost.exe did not start: " << GetLastError();
    return run;
  }
  run.exitCode = ExitCodeWithin(host.process.get(), 60000);
  if (run.exitCode == STILL_ACTIVE) {
    TerminateProcess(host.process.get(), 99);
    ADD_FAILURE() << "devhost.exe did not end";
  }
  ParseLog(nox_test::ReadBytes(logFile), run);
  return run;
}

std::wstring TestPackage() { return WidePath(NOX_TEST_PACKAGE); }
std::u16string ScreenshotFile() { return nox_test::TempFolder() + u"devhost_themed.bmp"; }

// One themed run serves most tests: Wine makes every start cost seconds.
const THostRun& ThemedRun() {
  static const THostRun run = RunHost(
      u"themed", TestPackage(),
      L"--open TEST --theming on --screenshot \"" + std::wstring(nox_test::W(ScreenshotFile())) +
          L"\" --screenshot-at 1500 --dump-tree-at 1500 --resize-at 2000 800 600 "
          L"--dump-tree-at 2800 --exit-after 3200");
  return run;
}

TEST(DevHostLifecycle, LogsThePackageLifeInOrder) {
  const THostRun& run = ThemedRun();
  // "references=0": the service held the creator's last reference.
  const char* const steps[] = {
      "host started theming=on", "loaded path=", "initialized", "registered TEST \"Test page\"", "Register done",
      "caption frame created TEST \"Test page\"", "client frame set TEST", "view created TEST",
      "view shown TEST", "view destroyed TEST", "unregistered TEST references=0", "finalized",
      "unloaded", "references left services=0 welcomepage=0", "exit code=0"};
  int at = 0;
  for (const char* step : steps) {
    at = run.Find(step, at);
    ASSERT_GE(at, 0) << "missing, or out of order: " << step;
  }
  EXPECT_EQ(run.exitCode, 0u);
  EXPECT_GE(run.Find(R"(OpenProject path="C:\Projects\Demo\Demo.dproj" newProjGroup=true)"), 0);
}

// The caption frame fills the area, its bar on top and the client frame below it, before
// and after the main window shrinks by 200 x 100.
TEST(DevHostPage, ClientFrameFillsThePageBelowTheCaptionAndFollowsAResize) {
  const THostRun& run = ThemedRun();
  ASSERT_EQ(run.dumps.size(), 2u);
  EXPECT_EQ(run.dumps[1].w, run.dumps[0].w - 200);
  EXPECT_EQ(run.dumps[1].h, run.dumps[0].h - 100);
  for (const TTreeDump& dump : run.dumps) {
    SCOPED_TRACE("area " + std::to_string(dump.w) + "x" + std::to_string(dump.h));
    const TTreeLine& frame = dump.Find(1, "TWelcomePageCaptionFrame");
    EXPECT_EQ(frame.title, "Test page");
    EXPECT_EQ((std::vector{frame.x, frame.y, frame.w, frame.h}),
              (std::vector{0, 0, dump.w, dump.h}));
    const TTreeLine& bar = dump.Find(2, "TPanel");
    EXPECT_EQ(bar.title, "Test page");
    const TTreeLine& client = dump.Find(2, "TFrame");
    EXPECT_GT(bar.h, 0);
    EXPECT_EQ((std::vector{client.x, client.y, client.w, client.h}),
              (std::vector{0, bar.h, dump.w, dump.h - bar.h}));
    EXPECT_FALSE(client.border);
  }
}

// The package asks the theming services and writes what it saw on its panel.
TEST(DevHostTheming, PackageSeesTheThemingChosenOnTheCommandLine) {
  const struct { bool themed; const char* panelTitle; } cases[] = {
      {true, "theming=on clWindow=00F4F0EE"}, {false, "theming=off"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.panelTitle);
    const THostRun run =
        c.themed ? ThemedRun()
                 : RunHost(u"plain", TestPackage(),
                           L"--open TEST --theming off --dump-tree-at 500 --exit-after 800");
    ASSERT_FALSE(run.dumps.empty());
    EXPECT_EQ(run.dumps[0].Find(3, "TPanel").title, c.panelTitle);
    EXPECT_EQ(run.exitCode, 0u);
  }
}

TEST(DevHostScreenshot, ShowsTheClientFramePaintedInTheWindow) {
  const THostRun& run = ThemedRun();
  ASSERT_GE(run.Find("screenshot saved"), 0);
  ASSERT_FALSE(run.dumps.empty());
  const std::string bmp = nox_test::ReadBytes(ScreenshotFile());
  ASSERT_GT(bmp.size(), 54u);
  BITMAPFILEHEADER file;
  BITMAPINFOHEADER info;
  memcpy(&file, bmp.data(), sizeof file);
  memcpy(&info, bmp.data() + sizeof file, sizeof info);
  ASSERT_EQ(file.bfType, 0x4D42);
  ASSERT_EQ(info.biBitCount, 24);
  // The log names the file and the window's size, which the picture has.
  EXPECT_EQ(run.log[static_cast<size_t>(run.Find("screenshot saved"))],
            "screenshot saved path=\"" + rtl::Utf16ToUtf8(ScreenshotFile()) + "\" size=" +
                std::to_string(info.biWidth) + "x" + std::to_string(info.biHeight));
  EXPECT_GE(run.Find("resized main window to 800x600"), 0);
  EXPECT_GE(run.Find("exit requested"), 0);

  // A point inside the panel, clear of its centred caption: the panel's colour, 0x996633.
  const TTreeDump& dump = run.dumps[0];
  const TTreeLine& client = dump.Find(2, "TFrame");
  const int x = dump.windowX + client.x + 10, y = dump.windowY + client.y + 10;
  const size_t stride = (static_cast<size_t>(info.biWidth) * 3 + 3) & ~size_t{3};
  const size_t row = static_cast<size_t>(info.biHeight - 1 - y);  // rows are stored bottom-up
  const auto* px = reinterpret_cast<const unsigned char*>(bmp.data() + file.bfOffBits +
                                                          row * stride + static_cast<size_t>(x) * 3);
  EXPECT_EQ((std::vector<int>{px[2], px[1], px[0]}), (std::vector<int>{0x33, 0x66, 0x99}));
}

TEST(DevHostFailures, AreReportedInTheLogAndTheExitCode) {
  const struct { const char16_t* name; std::wstring package; const wchar_t* args;
                 const char* logged; DWORD exitCode; } cases[] = {
      {u"nopackage", TestPackage() + L".missing", L"--exit-after 300", "load failed", 2},
      {u"noplugin", TestPackage(), L"--open NOPE --exit-after 300",
       "show refused: no plug-in NOPE", 3},
      {u"badline", TestPackage(), L"--theming maybe --exit-after 300",
       "bad command line: --theming takes on or off", 1}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.logged);
    const THostRun run = RunHost(c.name, c.package, c.args);
    EXPECT_GE(run.Find(c.logged), 0);
    EXPECT_EQ(run.exitCode, c.exitCode);
  }
}

}  // namespace
