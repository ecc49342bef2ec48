// The application object of this module: its hidden window and its message loop.
// Windows build only.
#pragma once

#include <windows.h>

#include <string>

#include "rtl/handles.h"
#include "ui/controls.h"

namespace ui {

class TCustomForm;

// Runs the thread's message loop. Every message taken from the queue is first shown to
// the TApplicationEvents of every module (ui/appevnts.h), which may swallow it; the rest
// is translated and dispatched.
class TApplication : public TComponent {
 public:
  TApplication();
  ~TApplication() override;

  // A hidden top-level window of the application, made on first use.
  HWND Handle();
  // Handles every message waiting now, then returns.
  void ProcessMessages();
  // Handles one message, waiting for one if the queue is empty.
  void HandleMessage();
  // Shows the main form (if ShowMainForm) and handles messages until Terminated().
  void Run();
  // Ends Run once the messages before it are handled (posts WM_QUIT).
  void Terminate();
  // True once WM_QUIT has been taken from the queue.
  bool Terminated() const { return terminated_; }

  // The form whose closing ends the application.
  TCustomForm* MainForm() const { return mainForm_; }
  void SetMainForm(TCustomForm* form) { mainForm_ = form; }
  bool ShowMainForm = true;
  std::u16string Title;

 private:
  // Takes and handles one message; false when there was none.
  bool ProcessMessage();

  rtl::unique_hwnd handle_;
  TCustomForm* mainForm_ = nullptr;
  bool terminated_ = false;
};

// This module's application object. Each module linking the library has its own; only the
// one whose Run drives the loop matters for messages.
extern TApplication* const Application;

}  // namespace ui
