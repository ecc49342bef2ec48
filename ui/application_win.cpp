// The application object of this module (ui/application.h).
#include "ui/application.h"
#include "rtl/wide.h"
#include "ui/forms.h"
#include "ui/screen.h"
#include "ui/winclass.h"

namespace ui {

using rtl::W;

namespace {
TApplication TheApplication;
}  // namespace

TApplication* const Application = &TheApplication;

namespace {
TScreen TheScreen;
}  // namespace

TScreen* const Screen = &TheScreen;

TApplication::TApplication() : TComponent(nullptr) {
  // Its window lives until the module's statics go; the classes must outlast it.
  HoldWindowClasses();
}

TApplication::~TApplication() = default;

HWND TApplication::Handle() {
  if (!handle_) {
    handle_ = AllocateHWnd(&DefWindowProcW, L"TApplication", true);
    SetWindowTextW(handle_.get(), W(Title));
  }
  return handle_.get();
}

bool TApplication::ProcessMessage() {
  MSG msg;
  // The TApplicationEvents hooks see the message inside PeekMessage and may have made it
  // WM_NULL; dispatching that does nothing.
  if (!PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) return false;
  if (msg.message == WM_QUIT) {
    terminated_ = true;
    return true;
  }
  TranslateMessage(&msg);
  DispatchMessageW(&msg);
  return true;
}

void TApplication::ProcessMessages() {
  while (ProcessMessage()) {
  }
}

void TApplication::HandleMessage() {
  if (!ProcessMessage()) WaitMessage();
}

void TApplication::Run() {
  if (mainForm_ != nullptr && ShowMainForm) mainForm_->Show();
  while (!terminated_) HandleMessage();
}

void TApplication::Terminate() { PostQuitMessage(0); }

}  // namespace ui
