// The development host run from its command line with the tests' own package (testpackage/).
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
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

// devhost.exe started with `package` and the further arguments, logging to a file of the
// test's own.
class THost {
 public:
  THost(const std::u16string& name, const std::wstring& package, const std::wstring& args)
      : logFile_(nox_test::TempFolder() + u"devhost_" + name + u".log") {
    DeleteFileW(nox_test::W(logFile_));
    host_ = nox_test::StartProgram(L"\"" + WidePath(NOX_DEVHOST_EXE) + L"\" --package \"" +
                                   package + L"\" --log \"" + nox_test::W(logFile_) + L"\" " + args);
    if (!host_.process) ADD_FAILURE() << "devhost.exe did not start: " << GetLastError();
  }

  // The first visible top-level window of the host of that class, once it shows (at most
  // 20 s); null if none does.
  HWND Window(const wchar_t* cls) const {
    struct TSearch { DWORD id; const wchar_t* cls; HWND found; } search{host_.id, cls, nullptr};
    PumpUntil([&] {
      EnumWindows([](HWND w, LPARAM p) -> BOOL {
        auto& s = *reinterpret_cast<TSearch*>(p);
        DWORD id = 0;
        GetWindowThreadProcessId(w, &id);
        wchar_t name[64] = {};
        GetClassNameW(w, name, 64);
        if (id == s.id && IsWindowVisible(w) && std::wstring(name) == s.cls) s.found = w;
        return s.found == nullptr;
      }, reinterpret_cast<LPARAM>(&search));
      return search.found != nullptr;
    }, host_.process ? 20000 : 0);
    return search.found;
  }

  // Waits for the host to end (at most a minute) and reads its log.
  THostRun Finish() {
    THostRun run;
    if (!host_.process) return run;
    run.exitCode = ExitCodeWithin(host_.process.get(), 60000);
    if (run.exitCode == STILL_ACTIVE) {
      TerminateProcess(host_.process.get(), 99);
      ADD_FAILURE() << "devhost.exe did not end";
    }
    ParseLog(nox_test::ReadBytes(logFile_), run);
    return run;
  }

 private:
  std::u16string logFile_;
  nox_test::StartedProgram host_;
};

THostRun RunHost(const std::u16string& name, const std::wstring& package, const std::wstring& args) {
  return THost(name, package, args).Finish();
}

// Each line starts with its text, in this order; fails the test at the first that does not.
void ExpectInOrder(const THostRun& run, const std::vector<std::string>& lines) {
  int at = 0;
  for (const std::string& line : lines) {
    at = run.Find(line, at);
    ASSERT_GE(at, 0) << "missing, or out of order: " << line;
  }
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
  ExpectInOrder(run, {"host started theming=on", "loaded path=", "initialized",
                      "registered TEST \"Test page\"", "Register done",
                      "caption frame created TEST \"Test page\"", "client frame set TEST",
                      "view created TEST", "view shown TEST", "view destroyed TEST",
                      "unregistered TEST references=0", "finalized", "unloaded",
                      "references left services=0 welcomepage=0", "exit code=0"});
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

  const size_t stride = (static_cast<size_t>(info.biWidth) * 3 + 3) & ~size_t{3};
  const auto pixel = [&](int x, int y) {  // as 0xRRGGBB; rows are stored bottom-up
    const auto* px = reinterpret_cast<const unsigned char*>(
        bmp.data() + file.bfOffBits + static_cast<size_t>(info.biHeight - 1 - y) * stride +
        static_cast<size_t>(x) * 3);
    return px[2] << 16 | px[1] << 8 | px[0];
  };
  // A point inside the panel, clear of its centred caption: the panel's colour, 0x996633.
  const TTreeDump& dump = run.dumps[0];
  const TTreeLine& client = dump.Find(2, "TFrame");
  EXPECT_EQ(pixel(dump.windowX + client.x + 10, dump.windowY + client.y + 10), 0x336699);

  // The caption bar writes the page's name in its own bold font, 16 pixels high: the
  // writing spans more rows and columns than the window font's would.
  const TTreeLine& bar = dump.Find(2, "TPanel");
  const int ground = pixel(dump.windowX + bar.x + bar.w - 2, dump.windowY + bar.y + 2);
  int top = bar.h, bottom = -1, left = bar.w, right = -1;
  for (int y = 0; y < bar.h; ++y)
    for (int x = 0; x < bar.w; ++x)
      if (pixel(dump.windowX + bar.x + x, dump.windowY + bar.y + y) != ground)
        top = std::min(top, y), bottom = std::max(bottom, y), left = std::min(left, x),
        right = std::max(right, x);
  EXPECT_EQ(left, 12);
  EXPECT_GE(right - left + 1, 70);  // 54 in the window font
  EXPECT_GE(bottom - top + 1, 13);  // 11
  // The area starts where the dump puts it: the bar's ground begins there.
  EXPECT_EQ(pixel(dump.windowX, dump.windowY), ground);
  EXPECT_NE(pixel(dump.windowX - 1, dump.windowY), ground);
  EXPECT_NE(pixel(dump.windowX, dump.windowY - 1), ground);
}

TEST(DevHostFailures, AreReportedInTheLogAndTheExitCode) {
  const struct { const char16_t* name; std::wstring package; const wchar_t* args;
                 const char* logged; DWORD exitCode; const wchar_t* fail = L""; } cases[] = {
      {u"nopackage", TestPackage() + L".missing", L"--exit-after 300", "load failed", 2},
      {u"noplugin", TestPackage(), L"--open NOPE --exit-after 300",
       "show refused: no plug-in NOPE", 3},
      {u"badline", TestPackage(), L"--theming maybe --exit-after 300",
       "bad command line: --theming takes on or off", 1},
      {u"noexports", L"version.dll", L"--exit-after 300", "missing export Initialize", 2},
      {u"throws", TestPackage(), L"--exit-after 300", "exception in Register: asked to fail", 2,
       L"Register"},
      {u"noshot", TestPackage(), L"--screenshot C:\\no\\such\\folder\\shot.bmp --screenshot-at 100 --exit-after 300",
       "screenshot failed path=\"C:\\no\\such\\folder\\shot.bmp\"", 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.logged);
    SetEnvironmentVariableW(L"NOX_TESTPACKAGE_FAIL", c.fail);
    const THostRun run = RunHost(c.name, c.package, c.args);
    SetEnvironmentVariableW(L"NOX_TESTPACKAGE_FAIL", nullptr);
    EXPECT_GE(run.Find(c.logged), 0);
    EXPECT_EQ(run.exitCode, c.exitCode);
  }
}

// Without a log a bad command line is told in a message box, with the usage.
TEST(DevHostFailures, ABadCommandLineWithoutALogIsShownInAMessageBox) {
  nox_test::StartedProgram host = nox_test::StartProgram(
      L"\"" + WidePath(NOX_DEVHOST_EXE) + L"\" --package x.dll --theming maybe");
  ASSERT_TRUE(host.process);
  HWND box = nullptr;
  PumpUntil([&] {
    box = FindWindowW(L"#32770", L"Development host");
    return box != nullptr;
  }, 20000);
  ASSERT_NE(box, nullptr);
  wchar_t text[512] = {};
  GetDlgItemTextW(box, 0xFFFF, text, 512);
  const std::wstring shown = text;
  EXPECT_EQ(shown, L"--theming takes on or off\n\ndevhost --package <dll> [--log <file>] "
                   L"[--open <pluginID>] [--theming on|off] [--screenshot <file.bmp> "
                   L"--screenshot-at <ms>] [--dump-tree-at <ms>] [--resize-at <ms> <w> <h>] "
                   L"[--exit-after <ms>]");
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  EXPECT_EQ(ExitCodeWithin(host.process.get(), 20000), 1u);
}

std::vector<std::string> ListLines(HWND list) {
  std::vector<std::string> lines;
  const int count = static_cast<int>(SendMessageW(list, LB_GETCOUNT, 0, 0));
  for (int i = 0; i < count; ++i) {
    wchar_t text[128] = {};
    SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
    lines.push_back(rtl::Utf16ToUtf8(reinterpret_cast<const char16_t*>(text)));
  }
  return lines;
}

// Whether a window under `parent` shows `title`.
bool Shows(HWND parent, const wchar_t* title) {
  struct TSearch { const wchar_t* title; bool found; } search{title, false};
  EnumChildWindows(parent, [](HWND w, LPARAM p) {
    auto& s = *reinterpret_cast<TSearch*>(p);
    wchar_t text[128] = {};
    InternalGetWindowText(w, text, 128);
    s.found = s.found || (std::wstring(text) == s.title && IsWindowVisible(w));
    return TRUE;
  }, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

// The package registers "TEST", "SECOND", a "HIDDEN" page and "TEST" once more. The list
// names the visible pages; a click on a line shows that page, and its view asks the host
// for things. At the end the host destroys the views and releases what the package left.
TEST(DevHostPluginList, NamesTheVisiblePagesAndShowsTheOneClicked) {
  THost host(u"list", TestPackage(), L"--open TEST --theming off --exit-after 20000");
  const HWND main = host.Window(L"TForm");
  ASSERT_NE(main, nullptr);
  const HWND list = FindWindowExW(main, nullptr, L"LISTBOX", nullptr);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(ListLines(list), (std::vector<std::string>{"Test page", "Second page"}));
  EXPECT_EQ(SendMessageW(list, LB_GETCURSEL, 0, 0), 0);

  const LPARAM second = MAKELPARAM(8, SendMessageW(list, LB_GETITEMHEIGHT, 0, 0) * 3 / 2);
  PostMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, second);
  PostMessageW(list, WM_LBUTTONUP, 0, second);
  // The second page's client frame tells what the host answered to its OpenFile.
  EXPECT_TRUE(PumpUntil([&] { return Shows(main, L"OpenFile=no"); }, 10000));
  EXPECT_EQ(SendMessageW(list, LB_GETCURSEL, 0, 0), 1);
  EXPECT_FALSE(Shows(main, L"theming=off"));  // the first page's client frame is hidden
  PostMessageW(main, WM_CLOSE, 0, 0);

  const THostRun run = host.Finish();
  EXPECT_EQ(run.exitCode, 0u);
  ExpectInOrder(run, {"registered TEST \"Test page\"", "registered SECOND \"Second page\"",
                      "registered HIDDEN \"Hidden page\" (not visible)",
                      "register refused: TEST is registered already",
                      "status \"Showing Test page\"",
                      R"(OpenFile path="C:\Projects\Demo\Unit1.pas" (not implemented))",
                      "caption frame created SECOND", "client frame set SECOND",
                      R"(OpenProject path="C:\Projects\Second\Second.dproj" newProjGroup=false)",
                      R"(status "Open project: C:\Projects\Second\Second.dproj")",
                      "view created SECOND", "status \"Showing Second page\"", "view shown SECOND",
                      "view destroyed TEST", "status \"\"", "view destroyed SECOND",
                      "unregistered TEST references=0", "unregistered SECOND references=0",
                      "unregister ignored: NOPE is not registered",
                      "still registered at unload, released HIDDEN references=0",
                      "references left services=0 welcomepage=0"});
  // Only the shown page's going empties the status line; the package found every view
  // destroyed when it was finalized.
  EXPECT_EQ(std::count(run.log.begin(), run.log.end(), "status \"\""), 1);
  EXPECT_EQ(run.Find("CloseFile"), -1);
}

}  // namespace
