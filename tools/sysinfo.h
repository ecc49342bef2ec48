// System information: the names and version texts of the running Windows, the kind of
// system (NT line, 64-bit, administrator), names of the computer and its user, the taskbar,
// the screen saver, the printer's resolution, dark mode, the touch keyboard, a stopwatch
// and waiting with or without handling messages.
//
// The name and version texts are pure functions of what the two version sources report,
// built everywhere; the routines that ask the system are Windows only. The two sources do
// not agree on purpose: the version query (GetVersionExW) is what the callers always
// read, and it tells a program without a compatibility manifest that it runs on Windows 8;
// the run-time record (rtl::TOSVersion) has the true version and decides "Windows 11".
#pragma once

#include <cstdint>
#include <string>

#include "rtl/osversion.h"
#include "tools/qm_tools_api.h"

namespace ui {
class TCustomForm;
}

namespace Qm_tools {

// ---- Pure rules ---------------------------------------------------------------------------

// What the version query reports (OSVERSIONINFOW).
struct TVersionQuery {
  std::uint32_t MajorVersion = 0;
  std::uint32_t MinorVersion = 0;
  // On the consumer line the high word holds major and minor; the build is the low word.
  std::uint32_t BuildNumber = 0;
  // 1 the old consumer line (95, 98, ME), 2 the NT line.
  std::uint32_t PlatformId = 0;
  std::u16string CSDVersion;  // service-pack text, at most 128 characters
};

// The system's name for GetOSName: "Windows 95", "Windows 98SE" (4.10 whose service-pack
// text has 'A' as its second character), "Windows XP" (5.1 and 5.2), "Windows Seven",
// "Windows Eight" (6.2 and 6.3), "Windows Ten"... and "Unknown" for anything else or when
// the query failed (`ok` false). On the NT line "Windows Ten" becomes "Windows 11" when the
// run-time record's build is 22000 or more; the query's build does not count.
QM_TOOLS_API std::u16string OSNameOf(const TVersionQuery& query, bool ok, const rtl::TOSVersion& os);

// The name for GetOSNameEx: as OSNameOf, but with digits from 6.1 on ("Windows 7",
// "Windows 8", "Windows 8.1", "Windows 10" or "Windows 11") and "Unknown:6.4" for an
// unknown NT version. On the NT line only, WithBuild appends ", Build " and the query's
// build and WithServicePack appends a blank and the service-pack text (the blank also
// when the text is empty).
//   OSNameExOf({10, 0, 19045, 2, u""}, true, os, true, true) == u"Windows 10, Build 19045 "
QM_TOOLS_API std::u16string OSNameExOf(const TVersionQuery& query, bool ok, const rtl::TOSVersion& os,
                          bool WithBuild, bool WithServicePack);

// The name for GetOSNameEx2, from the run-time record only. Short: "WIN 10.0". Long: below
// build 22000 the name and build with two blanks before "Build", as callers have always
// shown it; from 22000 on the record's description with "Windows 11" for "Windows 10".
//   Long, 10.0.19045 -> u"Windows 10  Build 19045"
//   Long, 10.0.22631 -> u"Windows 11 (Version 10.0, Build 22631, 64-bit Edition)"
QM_TOOLS_API std::u16string OSNameEx2Of(const rtl::TOSVersion& os, bool Long);

// The text for GetWindowsVersion, with the query's major, minor and low word of the build;
// "GetVersionEx() Error" when the query failed. Here the query's own build decides
// between Windows 10 and 11. Generic "Windows Version 5.0 Build 2195" for what has no row
// of its own (Windows 2000 and any platform other than 1 and 2 included).
//   {4, 10, 0x040A08AE, 1} -> u"Windows 98 - Version 4.10.2222"
//   {4, 0, 950, 2}         -> u"Windows NT Version 4.0. Build 950"
QM_TOOLS_API std::u16string WindowsVersionOf(const TVersionQuery& query, bool ok);

// Platform 1, not a 4.x with minor other than 0, and a build (low word) above 1000.
QM_TOOLS_API bool IsWin95OSR2Of(const TVersionQuery& query);

// "%f ms" of (stop - start) / frequency * 1000 as the framework formats it: two decimals
// after `decimalSeparator`, rounded half away from zero. A frequency of 0 (the stopwatch
// was never started) reads as 0 ms.
//   TimerTextOf(0, 1234567, 1000000, u',') == u"1234,57 ms"
QM_TOOLS_API std::u16string TimerTextOf(std::int64_t start, std::int64_t stop, std::int64_t frequency,
                           char16_t decimalSeparator);

// ---- Stopwatch ----------------------------------------------------------------------------

// Performance-counter values of TestTimerStart and TestTimerStop, process-wide.
extern QM_TOOLS_API std::int64_t iTimerStart;  // start value 0
extern QM_TOOLS_API std::int64_t iTimerStop;   // start value 0
extern QM_TOOLS_API std::int64_t iTimerFreq;   // start value 0

// ---- The system (windows build) -----------------------------------------------------------

#ifdef _WIN32
// OSNameOf, OSNameExOf, OSNameEx2Of and WindowsVersionOf for the running system.
QM_TOOLS_API std::u16string GetOSName();
QM_TOOLS_API std::u16string GetOSNameEx(bool WithBuild, bool WithServicePack);
QM_TOOLS_API std::u16string GetOSNameEx2(bool Long);
QM_TOOLS_API std::u16string GetWindowsVersion();

// The version query's platform is the NT line.
QM_TOOLS_API bool IsWindowsNT();
QM_TOOLS_API bool IsWin95OSR2();
// The system (not this process) is 64-bit: x64 or ARM64.
QM_TOOLS_API bool IsWindows64();
// shell32's IsUserAnAdmin says so; false where shell32 lacks it.
QM_TOOLS_API bool IsVistaAdmin();
// The [386ENH] key 32BitDiskAccess of System.INI reads "on" in any case (default "off").
QM_TOOLS_API bool Bit32On();
// The user's apps are in dark mode: AppsUseLightTheme under HKCU's
// Software\Microsoft\Windows\CurrentVersion\Themes\Personalize is a DWORD 0. A missing
// key or value, or another type, is light mode.
QM_TOOLS_API bool DarkModeIsEnabled();

// The computer's NetBIOS name; "" when it cannot be read.
QM_TOOLS_API std::u16string GetThisComputerName();
// The user of this process; "All Users" when it cannot be read.
QM_TOOLS_API std::u16string GetComputerUserName();

// Screen height less the taskbar's top edge, and the taskbar's width; -1 without taskbar
// (no window of class Shell_TrayWnd).
QM_TOOLS_API int GetTaskbarHeight();
QM_TOOLS_API int GetTaskbarWidth();

// Up to Windows 7 (NT line, major 6 or less): -1 when the "Screen-saver" desktop can be
// opened, else 0. Later: what SPI_GETSCREENSAVERRUNNING gives (non-zero when running), 0
// when the system does not answer.
QM_TOOLS_API int IsScreenSaverRunning();

// Dots per inch of the default printer, across and down; 0 without printer.
QM_TOOLS_API int GetPixelsPerInchX();
QM_TOOLS_API int GetPixelsPerInchY();

// Calls user32's DisableProcessWindowsGhosting where the system has it.
QM_TOOLS_API void DisableProcessWindowsGhosting();

// The touch keyboard (TabTip.exe), whose window has the class IPTip_Main_Window.
// Show starts the program; Close asks its window to close (SC_CLOSE); it is visible when
// the window exists, is visible and enabled; Toggle closes a visible one and shows it
// otherwise.
QM_TOOLS_API void ShowMetroKeyboard();
QM_TOOLS_API void CloseMetroKeyboard();
QM_TOOLS_API bool MetroKeyBoardIsVisible();
QM_TOOLS_API void ToggleMetroKeyboard();
// Fits the form's height above the keyboard: with KeyboardShown, the top edge of the
// keyboard's window (nothing changes without one); otherwise the screen's height.
QM_TOOLS_API void SetWindowMetroHeight(ui::TCustomForm* Form, bool KeyboardShown);

// Stopwatch: Start reads the counter's frequency and start count; Stop reads the stop
// count and gives TimerTextOf in the process-wide decimal separator, shown in a message
// when Show; GetTime gives the same text up to now without storing a stop count.
QM_TOOLS_API void TestTimerStart();
QM_TOOLS_API std::u16string TestTimerStop(bool Show);
QM_TOOLS_API std::u16string TestTimerGetTime();

struct QM_TOOLS_API Keys {
  // The shift key is down at the moment of the message being handled (GetKeyState).
  static bool IsShiftKeypressed();
};

// Returns once more than `Milliseconds` have passed by the tick count (whose wrap does no
// harm), handling the thread's messages meanwhile when ProcessMessages. qm_Delay(0, ...)
// returns once the tick count has moved on.
QM_TOOLS_API void qm_Delay(std::uint32_t Milliseconds, bool ProcessMessages);
// Handles the thread's messages until more than `Milliseconds` have passed or `Done` is
// true; Done is read after each round, so a message handler run here may set it. At least
// one round is made, even when Done is true already.
QM_TOOLS_API void qm_WaitFor(std::uint32_t Milliseconds, bool& Done);
#endif

}  // namespace Qm_tools
