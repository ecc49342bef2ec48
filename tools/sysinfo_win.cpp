// The Win32 side of the system-information family: asks the system, hands the version
// facts to the rules in sysinfo.cpp.
#include "tools/sysinfo.h"

#include <windows.h>
#include <shellapi.h>
#include <winspool.h>

#include <algorithm>

#include "dialog/QMMessageDlgVCL.h"
#include "rtl/formatsettings.h"
#include "rtl/handles.h"
#include "rtl/osversion.h"
#include "rtl/registry.h"
#include "rtl/ustring.h"
#include "ui/application.h"
#include "ui/forms.h"

namespace Qm_tools {
namespace {

// Numbers are written with the process-wide format settings' decimal separator.
char16_t DecimalSeparator() { return rtl::FormatSettings.DecimalSeparator; }

void CloseDesk(HDESK desk) { ::CloseDesktop(desk); }
using unique_hdesk = rtl::unique_any<HDESK, &CloseDesk>;

std::u16string Text(const wchar_t* s, std::size_t n) {
  return std::u16string(reinterpret_cast<const char16_t*>(s), n);
}

// GetVersionExW with the 276-byte record; `ok` false when it fails.
static_assert(sizeof(OSVERSIONINFOW) == 276);
TVersionQuery QueryVersion(bool& ok) {
  OSVERSIONINFOW info{};
  info.dwOSVersionInfoSize = sizeof(info);
  ok = GetVersionExW(&info) != FALSE;
  TVersionQuery query;
  if (!ok) return query;
  query.MajorVersion = info.dwMajorVersion;
  query.MinorVersion = info.dwMinorVersion;
  query.BuildNumber = info.dwBuildNumber;
  query.PlatformId = info.dwPlatformId;
  query.CSDVersion = Text(info.szCSDVersion, wcsnlen(info.szCSDVersion, 128));
  return query;
}

// A function of a system DLL that older systems lack, or null.
template <typename F>
F Export(HMODULE module, const char* name) {
  return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

bool TaskbarRect(RECT& r) {
  return GetWindowRect(FindWindowW(L"Shell_TrayWnd", nullptr), &r) != FALSE;
}

int PrinterCaps(int index) {
  DWORD size = 0;
  GetDefaultPrinterW(nullptr, &size);
  if (size == 0) return 0;
  std::wstring name(size, L'\0');
  if (!GetDefaultPrinterW(name.data(), &size)) return 0;
  const rtl::unique_hdc ic(CreateICW(L"WINSPOOL", name.c_str(), nullptr, nullptr));
  return ic ? GetDeviceCaps(ic.get(), index) : 0;
}

HWND KeyboardWindow() { return FindWindowW(L"IPTip_Main_Window", nullptr); }

std::int64_t Counter() {
  LARGE_INTEGER count;
  QueryPerformanceCounter(&count);
  return count.QuadPart;
}

// Waits for the rest of a span of `ms` of which `elapsed` have passed, so that the next
// look at the tick count finds more than `ms`; a message arriving cuts the wait short.
// Capped, so that a message left queued by a filtered peek inside a handler (which wakes
// nothing) holds up the next round only briefly.
void WaitRound(std::uint32_t ms, std::uint32_t elapsed) {
  const DWORD rest = std::min<std::uint32_t>(ms - elapsed, 9) + 1;
  MsgWaitForMultipleObjects(0, nullptr, FALSE, rest, QS_ALLINPUT);
}

}  // namespace

std::u16string GetOSName() {
  bool ok;
  const TVersionQuery query = QueryVersion(ok);
  return OSNameOf(query, ok, rtl::TOSVersion::Current());
}

std::u16string GetOSNameEx(bool WithBuild, bool WithServicePack) {
  bool ok;
  const TVersionQuery query = QueryVersion(ok);
  return OSNameExOf(query, ok, rtl::TOSVersion::Current(), WithBuild, WithServicePack);
}

std::u16string GetOSNameEx2(bool Long) { return OSNameEx2Of(rtl::TOSVersion::Current(), Long); }

std::u16string GetWindowsVersion() {
  bool ok;
  const TVersionQuery query = QueryVersion(ok);
  return WindowsVersionOf(query, ok);
}

bool IsWindowsNT() {
  bool ok;
  return QueryVersion(ok).PlatformId == VER_PLATFORM_WIN32_NT;
}

bool IsWin95OSR2() {
  bool ok;
  return IsWin95OSR2Of(QueryVersion(ok));
}

bool IsWindows64() {
  const rtl::TArchitecture a = rtl::TOSVersion::Current().Architecture;
  return a == rtl::TArchitecture::arIntelX64 || a == rtl::TArchitecture::arARM64;
}

bool IsVistaAdmin() {
  const rtl::unique_hmodule shell(LoadLibraryW(L"shell32.dll"));
  if (!shell) return false;
  const auto isUserAnAdmin = Export<BOOL(WINAPI*)()>(shell.get(), "IsUserAnAdmin");
  return isUserAnAdmin != nullptr && isUserAnAdmin() != FALSE;
}

bool Bit32On() {
  wchar_t value[256];
  const DWORD n = GetPrivateProfileStringW(L"386ENH", L"32BitDiskAccess", L"off", value, 256,
                                           L"System.INI");
  return rtl::UpperCase(Text(value, n)) == u"ON";
}

bool DarkModeIsEnabled() {
  HKEY raw = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER,
                    L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize\\", 0,
                    KEY_READ, &raw) != ERROR_SUCCESS)
    return false;
  const rtl::unique_hkey key(raw);
  DWORD type = 0, value = 1, size = sizeof(value);
  if (RegQueryValueExW(key.get(), L"AppsUseLightTheme", nullptr, &type,
                       reinterpret_cast<BYTE*>(&value), &size) != ERROR_SUCCESS)
    return false;
  return type == REG_DWORD && size == sizeof(value) && value == 0;
}

std::u16string GetThisComputerName() {
  wchar_t name[255];
  DWORD size = 255;
  return GetComputerNameW(name, &size) ? Text(name, size) : std::u16string();
}

std::u16string GetComputerUserName() {
  wchar_t name[255] = {};
  DWORD size = 255;
  GetUserNameW(name, &size);
  const std::size_t length = wcsnlen(name, 255);
  return length == 0 ? u"All Users" : Text(name, length);
}

int GetTaskbarHeight() {
  RECT r;
  return TaskbarRect(r) ? GetSystemMetrics(SM_CYSCREEN) - r.top : -1;
}

int GetTaskbarWidth() {
  RECT r;
  return TaskbarRect(r) ? r.right - r.left : -1;
}

int IsScreenSaverRunning() {
  bool ok;
  const TVersionQuery query = QueryVersion(ok);
  if (query.PlatformId == VER_PLATFORM_WIN32_NT && query.MajorVersion <= 6) {
    const unique_hdesk desk(OpenDesktopW(L"Screen-saver", 0, FALSE, DESKTOP_READOBJECTS));
    return desk ? -1 : 0;
  }
  BOOL running = FALSE;
  if (!SystemParametersInfoW(SPI_GETSCREENSAVERRUNNING, 0, &running, 0)) return 0;
  return running;
}

int GetPixelsPerInchX() { return PrinterCaps(LOGPIXELSX); }
int GetPixelsPerInchY() { return PrinterCaps(LOGPIXELSY); }

void DisableProcessWindowsGhosting() {
  const auto disable =
      Export<void(WINAPI*)()>(GetModuleHandleW(L"user32.dll"), "DisableProcessWindowsGhosting");
  if (disable != nullptr) disable();
}

void ShowMetroKeyboard() {
  ShellExecuteW(nullptr, L"open",
                L"\"C:\\Program Files\\Common Files\\Microsoft Shared\\ink\\TabTip.exe\"",
                nullptr, nullptr, SW_SHOWNORMAL);
}

void CloseMetroKeyboard() { PostMessageW(KeyboardWindow(), WM_SYSCOMMAND, SC_CLOSE, 0); }

bool MetroKeyBoardIsVisible() {
  const HWND keyboard = KeyboardWindow();
  return keyboard != nullptr && IsWindowVisible(keyboard) && IsWindowEnabled(keyboard);
}

void ToggleMetroKeyboard() {
  if (MetroKeyBoardIsVisible())
    CloseMetroKeyboard();
  else
    ShowMetroKeyboard();
}

void SetWindowMetroHeight(ui::TCustomForm* Form, bool KeyboardShown) {
  if (!KeyboardShown) {
    Form->SetHeight(GetSystemMetrics(SM_CYSCREEN));
    return;
  }
  RECT r;
  if (const HWND keyboard = KeyboardWindow(); keyboard != nullptr && GetWindowRect(keyboard, &r))
    Form->SetHeight(r.top);
}

void TestTimerStart() {
  LARGE_INTEGER frequency;
  QueryPerformanceFrequency(&frequency);
  iTimerFreq = frequency.QuadPart;
  iTimerStart = Counter();
}

std::u16string TestTimerStop(bool Show) {
  iTimerStop = Counter();
  const std::u16string text = TimerTextOf(iTimerStart, iTimerStop, iTimerFreq, DecimalSeparator());
  if (Show) QMMessageDlgVCL::ShowMessage(text);
  return text;
}

std::u16string TestTimerGetTime() {
  return TimerTextOf(iTimerStart, Counter(), iTimerFreq, DecimalSeparator());
}

bool Keys::IsShiftKeypressed() { return (GetKeyState(VK_SHIFT) & 0x8000) != 0; }

void qm_Delay(std::uint32_t Milliseconds, bool ProcessMessages) {
  const std::uint32_t start = GetTickCount();
  for (;;) {
    if (ProcessMessages) ui::Application->ProcessMessages();
    const std::uint32_t elapsed = GetTickCount() - start;
    if (elapsed > Milliseconds) return;
    if (ProcessMessages)
      WaitRound(Milliseconds, elapsed);
    else
      Sleep(std::min<std::uint32_t>(Milliseconds - elapsed, INFINITE - 2) + 1);
  }
}

void qm_WaitFor(std::uint32_t Milliseconds, bool& Done) {
  const std::uint32_t start = GetTickCount();
  for (;;) {
    ui::Application->ProcessMessages();
    const std::uint32_t elapsed = GetTickCount() - start;
    if (elapsed > Milliseconds || Done) return;
    WaitRound(Milliseconds, elapsed);
  }
}

}  // namespace Qm_tools
