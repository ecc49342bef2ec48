// Helpers the Win32 tests share: build paths, temporary files, shown messages, the popup
// menu, other programs (started, walked, timed, ended) and stand-ins for their windows.
#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <tlhelp32.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <string_view>
#include <vector>

#include "dialog/QMMessageDlgVCL.h"
#include "rtl/handles.h"
#include "tests/message_pump.h"
#include "ui/winclass.h"

namespace nox_test {

inline const wchar_t* W(const std::u16string& s) {
  return reinterpret_cast<const wchar_t*>(s.c_str());
}

// Build paths come in Unix form; Wine's drive Z: is the Unix root.
inline std::u16string WinPath(std::string_view unixPath) {
  std::u16string r = u"Z:";
  for (const char c : unixPath) r += c == '/' ? u'\\' : static_cast<char16_t>(c);
  return r;
}

// The same, wide, for command lines and the system's calls.
inline std::wstring WidePath(std::string_view unixPath) { return W(WinPath(unixPath)); }

// With its final backslash.
inline std::u16string TempFolder() {
  wchar_t path[MAX_PATH] = {};
  const DWORD n = GetTempPathW(MAX_PATH, path);
  return std::u16string(reinterpret_cast<const char16_t*>(path), n);
}

inline bool WriteBytes(const std::u16string& name, const std::string& bytes) {
  const rtl::unique_hfile f(
      CreateFileW(W(name), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  DWORD written = 0;
  return f && WriteFile(f.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written,
                        nullptr) &&
         written == bytes.size();
}

// "<missing>" for a file that cannot be opened.
inline std::string ReadBytes(const std::u16string& name) {
  const rtl::unique_hfile f(CreateFileW(W(name), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, 0, nullptr));
  if (!f) return "<missing>";
  std::string text;
  char buffer[4096];
  DWORD got = 0;
  while (ReadFile(f.get(), buffer, sizeof buffer, &got, nullptr) && got > 0) text.append(buffer, got);
  return text;
}

// Collects what the library shows while it lives, answering OK.
class ShownMessages {
 public:
  ShownMessages()
      : previous_(QMMessageDlgVCL::SetDlgPresenter(
            [this](const std::u16string& msg, QMMessageDlgVCL::TMsgDlgType,
                   QMMessageDlgVCL::TMsgDlgButtons, int) {
              shown.push_back(msg);
              return QMMessageDlgVCL::mrOk;
            })) {}
  ~ShownMessages() { QMMessageDlgVCL::SetDlgPresenter(previous_); }
  ShownMessages(const ShownMessages&) = delete;
  ShownMessages& operator=(const ShownMessages&) = delete;
  std::vector<std::u16string> shown;

 private:
  QMMessageDlgVCL::TDlgPresenter previous_;
};

// The system density for the processes started while it is set (a process reads it when it
// starts); the old one comes back afterwards. Tests that set it run alone.
class TSystemDensity {
 public:
  explicit TSystemDensity(DWORD dpi) {
    DWORD size = sizeof old_;
    hadOld_ = RegGetValueW(HKEY_CURRENT_USER, kKey, L"LogPixels", RRF_RT_REG_DWORD, nullptr, &old_,
                           &size) == ERROR_SUCCESS;
    RegSetKeyValueW(HKEY_CURRENT_USER, kKey, L"LogPixels", REG_DWORD, &dpi, sizeof dpi);
  }
  ~TSystemDensity() {
    if (hadOld_)
      RegSetKeyValueW(HKEY_CURRENT_USER, kKey, L"LogPixels", REG_DWORD, &old_, sizeof old_);
    else
      RegDeleteKeyValueW(HKEY_CURRENT_USER, kKey, L"LogPixels");
  }
  TSystemDensity(const TSystemDensity&) = delete;
  TSystemDensity& operator=(const TSystemDensity&) = delete;

 private:
  static constexpr const wchar_t* kKey = L"Control Panel\\Desktop";
  DWORD old_ = 96;
  bool hadOld_ = false;
};

// Runs the disabled tests of `filter` of this program in a new process that is told to
// expect `dpi`; its exit code and what it printed.
inline std::pair<DWORD, std::string> RunSelfAt(int dpi, const char* filter) {
  const std::u16string out = TempFolder() + u"dpi_run.txt";
  SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
  HANDLE file = CreateFileW(W(out), GENERIC_WRITE, FILE_SHARE_READ, &inherit, CREATE_ALWAYS, 0,
                            nullptr);
  wchar_t self[MAX_PATH];
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::wstring line = L"\"" + std::wstring(self) + L"\" --gtest_also_run_disabled_tests --gtest_filter=";
  for (const char* c = filter; *c != 0; ++c) line += static_cast<wchar_t>(*c);
  STARTUPINFOW si{};
  si.cb = sizeof si;
  si.dwFlags = STARTF_USESTDHANDLES;
  si.hStdOutput = si.hStdError = file;
  PROCESS_INFORMATION pi{};
  SetEnvironmentVariableW(L"NOX_EXPECTED_DPI", std::to_wstring(dpi).c_str());
  const BOOL started = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                      nullptr, &si, &pi);
  SetEnvironmentVariableW(L"NOX_EXPECTED_DPI", nullptr);
  CloseHandle(file);
  if (!started) return {STILL_ACTIVE, "did not start"};
  const rtl::unique_handle process(pi.hProcess), thread(pi.hThread);
  const DWORD code = ExitCodeWithin(process.get(), 120000);
  if (code == STILL_ACTIVE) TerminateProcess(process.get(), 99);
  return {code, ReadBytes(out)};
}

// Runs the disabled measuring tests of `filter` at 96 and at 144 DPI, each in a process of
// its own started while the system has that density; each run must pass.
inline void ExpectPassesAtEachDensity(const char* filter) {
  for (const int dpi : {96, 144}) {
    SCOPED_TRACE(dpi);
    const TSystemDensity density(static_cast<DWORD>(dpi));
    const auto [code, printed] = RunSelfAt(dpi, filter);
    EXPECT_EQ(code, 0u) << printed;
    EXPECT_NE(printed.find("[  PASSED  ] 1 test"), std::string::npos) << printed;
  }
}

// In a process started by RunSelfAt: makes this thread aware of each monitor's density, as
// the IDE is, and gives the density the process was told to expect (0 outside such a run).
inline int AwareOfDensities() {
  // The second version of per-monitor awareness where the system knows it.
  if (!SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2))
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE);
  if (GetAwarenessFromDpiAwarenessContext(GetThreadDpiAwarenessContext()) !=
      DPI_AWARENESS_PER_MONITOR_AWARE)
    return 0;
  wchar_t expected[16] = {};
  GetEnvironmentVariableW(L"NOX_EXPECTED_DPI", expected, 16);
  return _wtoi(expected);
}

// The visible popup menu of this thread (window class "#32768"), or null.
inline HWND VisibleMenuWindow() {
  HWND found = nullptr;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND window, LPARAM found) -> BOOL {
        wchar_t name[16] = {};
        GetClassNameW(window, name, 16);
        if (std::wstring(name) != L"#32768" || !IsWindowVisible(window)) return TRUE;
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&found));
  return found;
}

// ---- Other programs -------------------------------------------------------------------

// A program started with `commandLine`; `process` is empty when it did not start.
struct StartedProgram {
  rtl::unique_handle process;
  DWORD id = 0;
};

inline StartedProgram StartProgram(std::wstring commandLine) {
  STARTUPINFOW si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  StartedProgram started;
  if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &si, &pi))
    return started;
  const rtl::unique_handle thread(pi.hThread);
  started.process.reset(pi.hProcess);
  started.id = pi.dwProcessId;
  return started;
}

// Calls visit(process id) for every running process of the executable `exeName`.
template <class Visit>
void ForEachProcess(const wchar_t* exeName, Visit visit) {
  const rtl::unique_handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof(entry);
  for (BOOL ok = Process32FirstW(snapshot.get(), &entry); ok;
       ok = Process32NextW(snapshot.get(), &entry))
    if (lstrcmpiW(entry.szExeFile, exeName) == 0) visit(entry.th32ProcessID);
}

inline int CountProcesses(const wchar_t* exeName) {
  int count = 0;
  ForEachProcess(exeName, [&](DWORD) { ++count; });
  return count;
}

// Ends every running process of `exeName` and waits until each has gone.
inline void EndProcesses(const wchar_t* exeName) {
  ForEachProcess(exeName, [](DWORD id) {
    const rtl::unique_handle p(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, id));
    if (!p) return;
    TerminateProcess(p.get(), 1);
    WaitForSingleObject(p.get(), 5000);
  });
}

inline ULONGLONG Milliseconds(const FILETIME& t) {
  return ((static_cast<ULONGLONG>(t.dwHighDateTime) << 32) | t.dwLowDateTime) / 10000;
}

// The system clock in milliseconds, the scale of StartedAt.
inline ULONGLONG ClockMs() {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  return Milliseconds(now);
}

// When process `id` was created, on the scale of ClockMs; 0 when it is not known.
inline ULONGLONG StartedAt(DWORD id) {
  const rtl::unique_handle p(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
  FILETIME created, exited, kernel, user;
  if (!p || !GetProcessTimes(p.get(), &created, &exited, &kernel, &user)) return 0;
  return Milliseconds(created);
}

// Whether `ancestor` is on the parent chain of `wnd`, WS_CHILD or not (unlike IsChild).
inline bool IsDescendant(HWND ancestor, HWND wnd) {
  for (HWND p = GetAncestor(wnd, GA_PARENT); p != nullptr; p = GetAncestor(p, GA_PARENT))
    if (p == ancestor) return true;
  return false;
}

// A window of this thread in place of another program's, found by class and title, shown or
// hidden; it records what it receives, and a WM_CLOSE is only noted.
class StandInWindow {
 public:
  // For a WM_COPYDATA: its number, its cbData bytes and the class of the window that sent it.
  struct Message { UINT id; ULONG_PTR dwData = 0; std::wstring payload, fromClass; };

  StandInWindow(const wchar_t* className, const wchar_t* title, bool shown)
      : window_(ui::AllocateHWnd(
            [this](HWND w, UINT m, WPARAM wp, LPARAM lp) { return Receive(w, m, wp, lp); },
            className, true)) {
    SetWindowTextW(window_.get(), title);
    if (!shown) return;
    SetWindowLongW(window_.get(), GWL_STYLE, WS_OVERLAPPEDWINDOW);
    SetWindowLongW(window_.get(), GWL_EXSTYLE, 0);
    SetWindowPos(window_.get(), HWND_TOP, 40, 40, 640, 400,
                 SWP_FRAMECHANGED | SWP_SHOWWINDOW | SWP_NOACTIVATE);
  }
  StandInWindow(const StandInWindow&) = delete;
  StandInWindow& operator=(const StandInWindow&) = delete;

  HWND get() const { return window_.get(); }
  // What came of one kind, in order.
  std::vector<Message> Received(UINT id) const {
    std::vector<Message> these;
    for (const Message& m : received)
      if (m.id == id) these.push_back(m);
    return these;
  }
  int Count(UINT id) const { return static_cast<int>(Received(id).size()); }
  std::vector<Message> received;

 private:
  LRESULT Receive(HWND w, UINT m, WPARAM wp, LPARAM lp) {
    if (m == WM_COPYDATA) {
      const auto* cds = reinterpret_cast<const COPYDATASTRUCT*>(lp);
      wchar_t from[64] = L"";
      GetClassNameW(reinterpret_cast<HWND>(wp), from, 64);
      received.push_back({m, cds->dwData,
                          std::wstring(static_cast<const wchar_t*>(cds->lpData),
                                       cds->cbData / sizeof(wchar_t)),
                          from});
      return TRUE;
    }
    received.push_back({m, 0, {}, {}});
    return m == WM_CLOSE ? 0 : DefWindowProcW(w, m, wp, lp);
  }

  rtl::unique_hwnd window_;
};

}  // namespace nox_test
