// devhost.exe: plays the IDE for a Welcome Page package. Fills the IDE's service
// globals, loads the package as the IDE does, shows its pages, runs what the command line
// schedules, and at the end destroys the views and unloads the package.
//
// Exit codes: 0 all went well, 1 bad command line, 2 the package did not load or start,
// 3 the page named by --open could not be shown.
#include <windows.h>
#include <shellapi.h>

#include <algorithm>
#include <exception>
#include <string>
#include <vector>

#include "devhost/log.h"
#include "devhost/mainform.h"
#include "devhost/options.h"
#include "devhost/package.h"
#include "devhost/screenshot.h"
#include "devhost/services.h"
#include "devhost/treedump.h"
#include "ui/application.h"

namespace devhost {

namespace {

std::vector<std::wstring> Arguments() {
  int count = 0;
  LPWSTR* argv = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::wstring> args;
  for (int i = 1; i < count; ++i) args.emplace_back(argv[i]);
  LocalFree(argv);
  return args;
}

// Runs a step of the host that calls into the package, which may throw.
template <class F>
bool Guarded(const wchar_t* what, F&& step) {
  try {
    return step();
  } catch (const std::exception& e) {
    const std::string text = e.what();
    LogLine(std::wstring(what) + L": exception: " + std::wstring(text.begin(), text.end()));
  } catch (...) {
    LogLine(std::wstring(what) + L": exception");
  }
  return false;
}

void RunScheduled(const TScheduled& action, TDevHostForm& form, const TOptions& options) {
  switch (action.kind) {
    case TScheduled::Kind::Screenshot: {
      HWND window = form.Handle();
      SetForegroundWindow(window);
      RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
      RECT r;
      GetWindowRect(window, &r);
      LogLine((SaveWindowImage(window, options.screenshot) ? L"screenshot saved path=\""
                                                           : L"screenshot failed path=\"") +
              options.screenshot + L"\" size=" + std::to_wstring(r.right - r.left) + L"x" +
              std::to_wstring(r.bottom - r.top));
      break;
    }
    case TScheduled::Kind::DumpTree:
      DumpWindowTree(form.PageArea());
      break;
    case TScheduled::Kind::Resize:
      form.SetBounds(form.Left(), form.Top(), action.width, action.height);
      LogLine(L"resized main window to " + std::to_wstring(action.width) + L"x" +
              std::to_wstring(action.height));
      break;
    case TScheduled::Kind::Exit:
      LogLine(L"exit requested");
      form.Close();
      break;
  }
}

int Run() {
  TOptions options;
  std::wstring error;
  if (!ParseOptions(Arguments(), options, error)) {
    // A run driven by a script must not stop at a message box that nobody closes.
    if (!options.logFile.empty() && OpenLog(options.logFile)) {
      LogLine(L"bad command line: " + error);
    } else {
      MessageBoxW(nullptr,
                  (error + L"\n\ndevhost --package <dll> [--log <file>] [--open <pluginID>] "
                           L"[--theming on|off] [--screenshot <file.bmp> --screenshot-at <ms>] "
                           L"[--dump-tree-at <ms>] [--resize-at <ms> <w> <h>] [--exit-after <ms>]")
                      .c_str(),
                  L"Development host", MB_ICONERROR);
    }
    return 1;
  }
  if (!options.logFile.empty()) OpenLog(options.logFile);
  int exitCode = 0;

  TIDEServices services(options.theming);
  const TColor pageColor = services.GetSystemColor(ui::clWindow);
  TWelcomePageService pages(pageColor);
  ToolsAPI::BorlandIDEServices = &services;
  ToolsAPI::WelcomePage::WelcomePagePluginService = &pages;
  auto* form = new TDevHostForm(pages, pageColor);
  ui::Application->SetMainForm(form);
  services.OnStatus = [form](const std::wstring& text) { form->SetStatus(text); };
  form->Show();
  LogLine(std::wstring(L"host started theming=") + (options.theming ? L"on" : L"off"));

  TPackage package;
  if (!options.package.empty() &&
      !Guarded(L"load", [&] { return package.Load(options.package); }))
    exitCode = 2;
  if (!options.openPlugin.empty() &&
      !Guarded(L"show", [&] { return form->ShowPlugin(options.openPlugin); }) && exitCode == 0)
    exitCode = 3;

  for (const TScheduled& action : options.schedule) {
    auto* timer = new ui::TTimer(form);
    timer->SetInterval(static_cast<unsigned>(std::max(1, action.atMs)));
    timer->OnTimer = [timer, action, form, &options](ui::TObject*) {
      timer->SetEnabled(false);
      Guarded(L"scheduled action", [&] {
        RunScheduled(action, *form, options);
        return true;
      });
    };
  }

  ui::Application->Run();

  Guarded(L"destroy views", [&] {
    form->DestroyViews();
    return true;
  });
  Guarded(L"finalize", [&] {
    package.Finalize();
    return true;
  });
  // Nothing of the package may be called once its code is gone.
  Guarded(L"release plug-ins", [&] {
    pages.ReleaseAll();
    return true;
  });
  package.Free();
  ToolsAPI::WelcomePage::WelcomePagePluginService = nullptr;
  ToolsAPI::BorlandIDEServices = nullptr;
  pages.OnPluginsChanged = nullptr;
  pages.OnViewDestroying = nullptr;
  services.OnStatus = nullptr;
  LogLine(L"references left services=" + std::to_wstring(services.References()) +
          L" welcomepage=" + std::to_wstring(pages.References()));
  delete form;
  LogLine(L"exit code=" + std::to_wstring(exitCode));
  return exitCode;
}

}  // namespace

}  // namespace devhost

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  // Aware of each monitor's density, as the IDE is (the first call may set the first
  // version where the second is unknown).
  if (!SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2))
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE);
  return devhost::Run();
}
