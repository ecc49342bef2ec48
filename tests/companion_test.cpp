// The stand-in companion program, started for a window of this process as the frame does.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "tests/message_pump.h"
#include "win_support.h"

namespace {

// How long a wait for the companion may take on a loaded machine; the waits end as soon as
// what they wait for has happened.
constexpr DWORD kPatience = 15000;

constexpr const wchar_t* kTitle = L"NOXPlugIn Slave Delphi 13 Florence";

class Companion : public testing::Test {
 protected:
  void SetUp() override {
    log_ = nox_test::W(nox_test::TempFolder() + u"nox_companion_test.log");
    DeleteFileW(log_.c_str());
  }

  void TearDown() override {
    if (companion_.process && WaitForSingleObject(companion_.process.get(), 0) == WAIT_TIMEOUT)
      TerminateProcess(companion_.process.get(), 1);
  }

  void Start(const std::wstring& options) {
    companion_ = nox_test::StartProgram(
        L"\"" NOX_COMPANION_EXE "\" Slave \"Delphi 13 Florence\" \"" +
        std::to_wstring(reinterpret_cast<std::uintptr_t>(host_.get())) + L"\" --log \"" + log_ +
        L"\" " + options);
    ASSERT_TRUE(companion_.process);
  }

  // The companion's window of class `cls`, once it is there (and shown, if so asked).
  HWND WindowOfCompanion(const wchar_t* cls, bool shown = false) {
    HWND found = nullptr;
    PumpUntil(
        [&] {
          for (HWND w = nullptr; (w = FindWindowExW(nullptr, w, cls, kTitle));) {
            DWORD pid = 0;
            GetWindowThreadProcessId(w, &pid);
            if (pid == companion_.id && (!shown || IsWindowVisible(w)))
              return (found = w) != nullptr;
          }
          return false;
        },
        kPatience);
    return found;
  }

  DWORD ExitCode() { return ExitCodeWithin(companion_.process.get(), kPatience); }

  std::string Log() const {
    std::ifstream in{std::filesystem::path(log_)};
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
  }

  std::string HostNumber() const {
    return std::to_string(reinterpret_cast<std::uintptr_t>(host_.get()));
  }

  // The frame the companion is started for: it sees the open-project messages.
  nox_test::StandInWindow host_{L"NoxCompanionHost", L"Nox companion host", false};
  nox_test::StartedProgram companion_;
  std::wstring log_;
};

TEST_F(Companion, ShowsItsWindowsIsDockedAndEndsOnClose) {
  for (bool closeApp : {true, false}) {
    SCOPED_TRACE(closeApp ? "WM_CLOSE to the application window" : "WM_CLOSE to the main window");
    DeleteFileW(log_.c_str());
    Start(L"--show-after 100");
    HWND app = WindowOfCompanion(L"TApplication");
    HWND main = WindowOfCompanion(L"TMainForm", true);
    ASSERT_TRUE(app && main);
    EXPECT_FALSE(IsWindowVisible(app));

    SetParent(main, host_.get());
    const std::string docked = "parent changed to " + HostNumber();
    EXPECT_TRUE(PumpUntil([&] { return Log().find(docked) != std::string::npos; }, kPatience));

    PostMessageW(closeApp ? app : main, WM_CLOSE, 0, 0);
    EXPECT_EQ(ExitCode(), 0u);
    const std::string log = Log();
    EXPECT_NE(log.find("started with handle " + HostNumber() + "\n"), std::string::npos) << log;
    EXPECT_NE(log.find("closed\n"), std::string::npos) << log;
    // The units it shares from the package started in it: their settings file is set.
    EXPECT_NE(log.find("shared units started, settings in "), std::string::npos) << log;
    EXPECT_NE(log.find("NOXPlugIn.INI\n"), std::string::npos) << log;
  }
}

TEST_F(Companion, SendsTheOpenProjectMessage) {
  // doubleClicked: a list item, or -1; fromClass: the main window once it is there.
  struct Case { const wchar_t* options; int doubleClicked; ULONG_PTR dwData; std::wstring payload;
                const wchar_t* fromClass; } cases[] = {
      {L"", 1, 10023, std::wstring(L"C:\\Projects\\Ledger\\Ledger.dproj") + L'\0', L"TMainForm"},
      {L"--send-after 600", -1, 10023, std::wstring(L"C:\\Projects\\Demo\\Demo.dproj") + L'\0',
       L"TMainForm"},
      {L"--send-after 50 \"C:\\My Projects\\P.dproj\" --dwdata 7 --no-terminator", -1, 7,
       L"C:\\My Projects\\P.dproj", L"TApplication"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.options);
    host_.received.clear();
    Start(c.options);
    if (c.doubleClicked >= 0) {
      HWND list =
          FindWindowExW(WindowOfCompanion(L"TMainForm", true), nullptr, L"ListBox", nullptr);
      ASSERT_NE(list, nullptr);
      const auto h = static_cast<int>(SendMessageW(list, LB_GETITEMHEIGHT, 0, 0));
      const LPARAM at = MAKELPARAM(10, h * c.doubleClicked + h / 2);
      for (UINT m : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP})
        PostMessageW(list, m, m == WM_LBUTTONUP ? 0 : MK_LBUTTON, at);
    }
    ASSERT_TRUE(PumpUntil([&] { return host_.Count(WM_COPYDATA) > 0; }, kPatience));
    const nox_test::StandInWindow::Message sent = host_.Received(WM_COPYDATA)[0];
    EXPECT_EQ(sent.dwData, c.dwData);
    EXPECT_EQ(sent.payload, c.payload);
    EXPECT_EQ(sent.fromClass, c.fromClass);

    PostMessageW(WindowOfCompanion(L"TApplication"), WM_CLOSE, 0, 0);
    EXPECT_EQ(ExitCode(), 0u);
    EXPECT_EQ(host_.Count(WM_COPYDATA), 1);
  }
}

}  // namespace
