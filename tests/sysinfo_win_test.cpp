// The system-information routines against the running system, System.INI, the registry
// and windows the test makes.
#include "tools/sysinfo.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "rtl/formatsettings.h"
#include "rtl/handles.h"
#include "rtl/registry.h"
#include "rtl/ustring.h"
#include "ui/extctrls.h"
#include "ui/forms.h"
#include "win_support.h"

using namespace Qm_tools;
using std::u16string;

namespace {

// A top-level window of class `cls` at the given place. Without a window manager Wine takes
// two seconds to take a visible window down, so only the keyboard's is shown.
rtl::unique_hwnd MakeWindow(const wchar_t* cls, int left, int top, int width, int height,
                            bool visible) {
  WNDCLASSW wc{};
  wc.lpfnWndProc = DefWindowProcW;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.lpszClassName = cls;
  RegisterClassW(&wc);
  return rtl::unique_hwnd(CreateWindowExW(0, cls, L"", WS_POPUP | (visible ? WS_VISIBLE : 0), left,
                                          top, width, height, nullptr, nullptr, wc.hInstance,
                                          nullptr));
}

TEST(SysInfoWinSystem, TheRunningSystemIsNamedAndDescribed) {
  EXPECT_EQ(GetOSName().rfind(u"Windows ", 0), 0u) << rtl::Utf16ToUtf8(GetOSName());
  EXPECT_EQ(GetOSNameEx(false, false).rfind(u"Windows ", 0), 0u);
  EXPECT_NE(GetOSNameEx(true, false).find(u", Build "), u16string::npos);
  EXPECT_NE(GetWindowsVersion(), u"GetVersionEx() Error");
  const rtl::TOSVersion& os = rtl::TOSVersion::Current();
  EXPECT_GE(os.Major, 6);
  EXPECT_GT(os.Build, 0);
  EXPECT_EQ(GetOSNameEx2(false),
            u"WIN " + rtl::IntToStr(os.Major) + u"." + rtl::IntToStr(os.Minor));
  EXPECT_TRUE(IsWindowsNT());
  EXPECT_FALSE(IsWin95OSR2());
  EXPECT_TRUE(IsWindows64()) << "a 64-bit process runs on a 64-bit system";
  EXPECT_FALSE(GetThisComputerName().empty());
  EXPECT_FALSE(GetComputerUserName().empty());
  EXPECT_NE(GetComputerUserName(), u"All Users");
  EXPECT_FALSE(Keys::IsShiftKeypressed());
  EXPECT_EQ(IsScreenSaverRunning(), 0);
  EXPECT_EQ(GetPixelsPerInchX() > 0, GetPixelsPerInchY() > 0) << "a printer has both or none";
  EXPECT_TRUE(IsVistaAdmin()) << "Wine's user is an administrator";
  Qm_tools::DisableProcessWindowsGhosting();
}

TEST(SysInfoWinSystem, DarkModeFollowsTheUsersLightThemeValue) {
  const std::u16string themes = u"Software\\Microsoft\\Windows\\CurrentVersion\\Themes";
  const std::u16string personalize = themes + u"\\Personalize";
  const wchar_t* value = L"AppsUseLightTheme";
  rtl::TRegistry reg;
  const bool hadThemes = reg.KeyExists(themes), hadKey = reg.KeyExists(personalize);
  ASSERT_TRUE(reg.OpenKey(personalize, true));
  const HKEY key = reg.CurrentKey();
  // The value as it was, put back at the end.
  BYTE old[64];
  DWORD oldType = 0, oldSize = sizeof old;
  const bool hadValue = RegQueryValueExW(key, value, nullptr, &oldType, old, &oldSize) == 0;
  const DWORD zero = 0, one = 1;
  const struct { DWORD type; const void* data; bool dark; } cases[] = {
      {REG_DWORD, &zero, true}, {REG_DWORD, &one, false}, {REG_SZ, L"0", false}};
  for (const auto& c : cases) {
    RegSetValueExW(key, value, 0, c.type, static_cast<const BYTE*>(c.data), 4);
    EXPECT_EQ(DarkModeIsEnabled(), c.dark) << c.type << " (only a DWORD counts)";
  }
  RegDeleteValueW(key, value);
  EXPECT_FALSE(DarkModeIsEnabled());
  if (hadValue) RegSetValueExW(key, value, 0, oldType, old, oldSize);
  reg.CloseKey();
  if (!hadThemes || !hadKey) reg.DeleteKey(hadThemes ? personalize : themes);
}

TEST(SysInfoWinSystem, Bit32OnReadsSystemIniInAnyCase) {
  const auto write = [](const wchar_t* value) {
    WritePrivateProfileStringW(L"386ENH", L"32BitDiskAccess", value, L"System.INI");
  };
  EXPECT_FALSE(Bit32On()) << "missing reads as off";
  write(L"on");  // upper-cased before comparing
  EXPECT_TRUE(Bit32On());
  write(L"onx");
  EXPECT_FALSE(Bit32On());
  write(nullptr);
}

TEST(SysInfoWinScreen, TaskbarAndTouchKeyboardAreFoundByTheirWindowClasses) {
  const int screen = GetSystemMetrics(SM_CYSCREEN);
  // Wine's own tray window is a hidden one of no size at the top of the screen.
  RECT r;
  if (GetWindowRect(FindWindowW(L"Shell_TrayWnd", nullptr), &r)) {
    EXPECT_EQ(GetTaskbarHeight(), screen - r.top);
    EXPECT_EQ(GetTaskbarWidth(), r.right - r.left);
  } else {
    EXPECT_EQ(GetTaskbarHeight(), -1);
    EXPECT_EQ(GetTaskbarWidth(), -1);
    const rtl::unique_hwnd tray = MakeWindow(L"Shell_TrayWnd", 0, screen - 40, 800, 40, false);
    EXPECT_EQ(GetTaskbarHeight(), 40);
    EXPECT_EQ(GetTaskbarWidth(), 800);
  }

  ASSERT_EQ(FindWindowW(L"IPTip_Main_Window", nullptr), nullptr);
  EXPECT_FALSE(MetroKeyBoardIsVisible());
  rtl::unique_hwnd keyboard = MakeWindow(L"IPTip_Main_Window", 0, 300, 400, 200, true);
  EXPECT_TRUE(MetroKeyBoardIsVisible());
  ui::TForm form(nullptr);
  SetWindowMetroHeight(&form, true);
  EXPECT_EQ(form.Height(), 300);
  SetWindowMetroHeight(&form, false);
  EXPECT_EQ(form.Height(), screen);
  EnableWindow(keyboard.get(), FALSE);
  EXPECT_FALSE(MetroKeyBoardIsVisible()) << "a disabled keyboard does not count";
  EnableWindow(keyboard.get(), TRUE);
  ToggleMetroKeyboard();  // visible: closes it
  bool never = false;
  qm_WaitFor(200, never);
  EXPECT_FALSE(IsWindow(keyboard.get())) << "SC_CLOSE ends a window without handler";
  (void)keyboard.release();
}

TEST(SysInfoWinWait, WaitForEndsOnTheFlagOrTheTimeAndDelayHandlesMessagesOnlyWhenAsked) {
  ui::TTimer timer(nullptr);
  timer.SetInterval(20);
  bool done = false;
  int ticks = 0;
  timer.OnTimer = [&](rtl::TObject*) { done = true; ++ticks; };
  DWORD start = GetTickCount();
  qm_WaitFor(5000, done);
  EXPECT_TRUE(done);
  EXPECT_LT(GetTickCount() - start, 2000u);

  ticks = 0;
  start = GetTickCount();
  qm_Delay(0, false);
  EXPECT_NE(GetTickCount(), start) << "the tick count has moved on";
  qm_Delay(100, false);
  EXPECT_GT(GetTickCount() - start, 100u);
  EXPECT_EQ(ticks, 0);
  qm_Delay(100, true);
  EXPECT_GT(ticks, 0);

  timer.SetEnabled(false);
  done = false;
  start = GetTickCount();
  qm_WaitFor(100, done);
  EXPECT_GT(GetTickCount() - start, 100u);
  EXPECT_LT(GetTickCount() - start, 2000u);
}

TEST(SysInfoWinTimer, StopwatchTextIsMillisecondsAndShownWhenAsked) {
  const char16_t separator = rtl::FormatSettings.DecimalSeparator;
  rtl::FormatSettings.DecimalSeparator = u',';
  nox_test::ShownMessages messages;
  TestTimerStart();
  Sleep(20);
  const u16string quiet = TestTimerStop(false);
  EXPECT_EQ(quiet, TimerTextOf(iTimerStart, iTimerStop, iTimerFreq, u','));
  EXPECT_GE(rtl::StrToIntDef(quiet.substr(0, quiet.find(u',')), -1), 15) << rtl::Utf16ToUtf8(quiet);
  EXPECT_TRUE(messages.shown.empty());
  const u16string text = TestTimerStop(true);
  EXPECT_EQ(messages.shown, std::vector{text});
  const std::int64_t stop = iTimerStop;
  EXPECT_TRUE(TestTimerGetTime().ends_with(u" ms"));
  EXPECT_EQ(iTimerStop, stop) << "GetTime stores no stop count";
  rtl::FormatSettings.DecimalSeparator = separator;
}

}  // namespace
