// NOXPlugIn.exe as the host frame meets it: a program started as
//   NOXPlugIn.exe Slave "<IDE name>" "<frame window handle>"
// whose main window the frame docks into its page, and which asks the frame to open a
// project with one WM_COPYDATA message when a project in its list is double-clicked.
// It keeps a Delphi program's window shape (a hidden "TApplication" window owning the
// "TMainForm") because the frame finds the window by class and title.
//
// Options after the three arguments, for tests of the frame:
//   --show-after <ms>          create and show the main window that late (default 300)
//   --send-after <ms> [path]   send the open-project message once by itself (default path
//                              the first project of the list)
//   --dwdata <n>               send another message number than the open-project one
//   --no-terminator            send the path without its zero, ending where memory ends
//   --log <file>               append one UTF-8 line per event
// The environment variable NOXPLUGIN_OPTIONS is read as more of these options, for a
// companion that the frame starts with a command line of its own making.
//
// Like the real program it shares the package's units from the package DLL: it starts
// them through the package's entry point, logs where their start work put the settings
// file, and stops them at its end.
#include <windows.h>
#include <shellapi.h>

#include <cstdint>
#include <cstring>
#include <cwchar>
#include <fstream>
#include <filesystem>
#include <string>

#include "rtl/handles.h"
#include "rtl/ustring.h"
#include "tools/qm_globals.h"

// The package's entry points: every unit's start work, each after the units it uses, and
// the stop work the other way round.
extern "C" __declspec(dllimport) void Initialize();
extern "C" __declspec(dllimport) void Finalize();

namespace {

constexpr ULONG_PTR kOpenProject = 10023;
constexpr UINT_PTR kShowTimer = 1, kSendTimer = 2, kParentTimer = 3;
constexpr UINT kParentPollMs = 100;

const wchar_t* const kProjects[] = {
    L"C:\\Projects\\Demo\\Demo.dproj",
    L"C:\\Projects\\Ledger\\Ledger.dproj",
    L"C:\\Projects\\Weather Station\\WeatherStation.dproj",
    L"D:\\Work\\Invoices\\Invoices.dproj",
};

struct Options {
  HWND host = nullptr;
  std::wstring title = L"NOXPlugIn";
  UINT showAfter = 300;
  bool send = false;
  UINT sendAfter = 0;
  std::wstring sendPath = kProjects[0];
  ULONG_PTR dwData = kOpenProject;
  bool terminator = true;
  std::wstring logFile;
};

struct State {
  Options options;
  rtl::unique_hwnd app;
  HWND main = nullptr;  // owned by the application window, or docked into the frame
  HWND list = nullptr;
  HWND parent = nullptr;  // the main window's parent as last logged; 0 while top-level
} g;

void Log(const std::wstring& line) {
  if (g.options.logFile.empty()) return;
  std::ofstream out(std::filesystem::path(g.options.logFile), std::ios::app | std::ios::binary);
  out << rtl::Utf16ToUtf8(
             std::u16string_view(reinterpret_cast<const char16_t*>(line.data()), line.size()))
      << '\n';
}

std::wstring Number(const void* handle) {
  return std::to_wstring(reinterpret_cast<std::uintptr_t>(handle));
}

void FreeArgv(LPWSTR* argv) { LocalFree(argv); }
void FreePages(void* p) { VirtualFree(p, 0, MEM_RELEASE); }

Options ParseCommandLine() {
  Options o;
  int argc = 0;
  // The host builds our command line itself; test options reach a companion started by
  // it through the environment, appended as if they had been given.
  std::wstring line = GetCommandLineW();
  wchar_t extra[1024];
  const DWORD n = GetEnvironmentVariableW(L"NOXPLUGIN_OPTIONS", extra, 1024);
  if (n > 0 && n < 1024) line += L" " + std::wstring(extra, n);
  const rtl::unique_any<LPWSTR*, &FreeArgv> owned(CommandLineToArgvW(line.c_str(), &argc));
  LPWSTR* argv = owned.get();
  if (!argv) return o;
  int i = 1;
  if (argc >= 4 && std::wcscmp(argv[1], L"Slave") == 0) {
    o.title = std::wstring(L"NOXPlugIn Slave ") + argv[2];
    o.host =
        reinterpret_cast<HWND>(static_cast<std::uintptr_t>(std::wcstoull(argv[3], nullptr, 10)));
    i = 4;
  }
  auto number = [&](unsigned long long fallback) {
    return i + 1 < argc ? std::wcstoull(argv[++i], nullptr, 10) : fallback;
  };
  for (; i < argc; ++i) {
    const std::wstring a = argv[i];
    if (a == L"--show-after") {
      o.showAfter = static_cast<UINT>(number(o.showAfter));
    } else if (a == L"--send-after") {
      o.send = true;
      o.sendAfter = static_cast<UINT>(number(0));
      if (i + 1 < argc && std::wcsncmp(argv[i + 1], L"--", 2) != 0) o.sendPath = argv[++i];
    } else if (a == L"--dwdata") {
      o.dwData = static_cast<ULONG_PTR>(number(kOpenProject));
    } else if (a == L"--no-terminator") {
      o.terminator = false;
    } else if (a == L"--log" && i + 1 < argc) {
      o.logFile = argv[++i];
    }
  }
  return o;
}

// A copy of `bytes` that ends where a no-access page begins: whatever reads it here (the
// system copying it to the receiver included) faults past the payload instead of finding
// a stray zero there.
class GuardedCopy {
 public:
  GuardedCopy(const void* bytes, std::size_t size) {
    SYSTEM_INFO si;
    GetSystemInfo(&si);
    const std::size_t page = si.dwPageSize;
    const std::size_t pages = size / page + 1;
    pages_.reset(
        VirtualAlloc(nullptr, (pages + 1) * page, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    if (!pages_) return;
    char* guard = static_cast<char*>(pages_.get()) + pages * page;
    DWORD old;
    VirtualProtect(guard, page, PAGE_NOACCESS, &old);
    data_ = guard - size;
    std::memcpy(data_, bytes, size);
  }
  void* data() const { return data_; }

 private:
  rtl::unique_any<void*, &FreePages> pages_;
  char* data_ = nullptr;
};

void SendOpenProject(const std::wstring& path) {
  if (!g.options.host) return;
  const std::size_t bytes = (path.size() + (g.options.terminator ? 1 : 0)) * sizeof(wchar_t);
  GuardedCopy payload(path.c_str(), bytes);
  COPYDATASTRUCT cds{g.options.dwData, static_cast<DWORD>(bytes), payload.data()};
  const HWND from = g.main ? g.main : g.app.get();
  SendMessageW(g.options.host, WM_COPYDATA, reinterpret_cast<WPARAM>(from),
               reinterpret_cast<LPARAM>(&cds));
  Log(L"sent " + path);
}

// GetAncestor rather than GetParent: a frame may re-parent the window without making it
// a WS_CHILD, and GetParent reports no parent for such a window.
void NoteParent() {
  if (!g.main) return;
  HWND p = GetAncestor(g.main, GA_PARENT);
  if (p == GetDesktopWindow()) p = nullptr;
  if (p == g.parent) return;
  g.parent = p;
  Log(L"parent changed to " + Number(p));
}

void CreateMainWindow() {
  g.main = CreateWindowExW(0, L"TMainForm", g.options.title.c_str(), WS_OVERLAPPEDWINDOW,
                           CW_USEDEFAULT, CW_USEDEFAULT, 640, 400, g.app.get(), nullptr,
                           GetModuleHandleW(nullptr), nullptr);
  if (!g.main) return;
  ShowWindow(g.main, SW_SHOWNORMAL);
  Log(L"window created " + Number(g.main));
  // The frame docks the window from its own process; no message tells this one.
  SetTimer(g.app.get(), kParentTimer, kParentPollMs, nullptr);
}

LRESULT CALLBACK MainProc(HWND w, UINT m, WPARAM wp, LPARAM lp) {
  switch (m) {
    case WM_CREATE: {
      g.list =
          CreateWindowExW(WS_EX_CLIENTEDGE, L"LISTBOX", nullptr,
                          WS_CHILD | WS_VISIBLE | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, 0,
                          0, 0, 0, w, nullptr, GetModuleHandleW(nullptr), nullptr);
      SendMessageW(g.list, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)),
                   FALSE);
      for (const wchar_t* p : kProjects)
        SendMessageW(g.list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(p));
      return 0;
    }
    case WM_SIZE:
      MoveWindow(g.list, 0, 0, LOWORD(lp), HIWORD(lp), TRUE);
      return 0;
    case WM_COMMAND:
      if (reinterpret_cast<HWND>(lp) == g.list && HIWORD(wp) == LBN_DBLCLK) {
        const LRESULT item = SendMessageW(g.list, LB_GETCURSEL, 0, 0);
        if (item == LB_ERR) return 0;
        std::wstring path(SendMessageW(g.list, LB_GETTEXTLEN, item, 0), L'\0');
        SendMessageW(g.list, LB_GETTEXT, item, reinterpret_cast<LPARAM>(path.data()));
        SendOpenProject(path);
      }
      return 0;
    case WM_WINDOWPOSCHANGED:
      NoteParent();
      break;
    case WM_DESTROY:
      // Closed, or destroyed with the frame's page it is docked in: either way the program
      // ends, and the application window goes after the message loop.
      g.main = nullptr;
      PostQuitMessage(0);
      return 0;
  }
  return DefWindowProcW(w, m, wp, lp);
}

LRESULT CALLBACK AppProc(HWND w, UINT m, WPARAM wp, LPARAM lp) {
  switch (m) {
    case WM_TIMER:
      if (wp == kParentTimer) {
        NoteParent();
      } else {
        KillTimer(w, wp);
        if (wp == kShowTimer) CreateMainWindow();
        if (wp == kSendTimer) SendOpenProject(g.options.sendPath);
      }
      return 0;
    case WM_CLOSE:
      g.app.reset();
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
  }
  return DefWindowProcW(w, m, wp, lp);
}

void RegisterWindowClass(const wchar_t* name, WNDPROC proc) {
  WNDCLASSW wc{};
  wc.lpfnWndProc = proc;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  wc.lpszClassName = name;
  RegisterClassW(&wc);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int) {
  g.options = ParseCommandLine();
  // Aware of each monitor's density, as the IDE that docks the window is: sizes pass
  // between the two unchanged. (Where the second version is unknown, the first call may
  // already have set the first.)
  if (!SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2))
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE);
  RegisterWindowClass(L"TApplication", AppProc);
  RegisterWindowClass(L"TMainForm", MainProc);
  // The application window of a Delphi program: captioned, never shown, sized 0.
  g.app.reset(CreateWindowExW(0, L"TApplication", g.options.title.c_str(),
                              WS_POPUP | WS_CAPTION | WS_CLIPSIBLINGS | WS_SYSMENU | WS_MINIMIZEBOX,
                              0, 0, 0, 0, nullptr, nullptr, instance, nullptr));
  if (!g.app) return 1;
  Log(L"started with handle " + Number(g.options.host));
  Initialize();
  Log(L"shared units started, settings in " +
      std::wstring(Qm_tools::AppIniName.begin(), Qm_tools::AppIniName.end()));
  SetTimer(g.app.get(), kShowTimer, g.options.showAfter, nullptr);
  if (g.options.send) SetTimer(g.app.get(), kSendTimer, g.options.sendAfter, nullptr);

  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  g.app.reset();
  Finalize();
  Log(L"closed");
  return 0;
}
