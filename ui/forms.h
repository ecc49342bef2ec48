// Frames (a reusable group of controls that lives inside another control) and forms
// (top-level windows). Windows build only.
#pragma once

#include <functional>

#include "ui/controls.h"

namespace ui {

// A container made to be placed in another control, often of another module. A derived
// frame builds its children in its constructor and may override WndProc for messages
// sent to it (WM_COPYDATA...). Its window class is "TFrame" unless CreateParamsFor names
// another.
class TCustomFrame : public TWinControl {
 public:
  explicit TCustomFrame(TComponent* owner);  // 320x240

 protected:
  void CreateParamsFor(CreateParams& params) override;
};

class TFrame : public TCustomFrame {
 public:
  using TCustomFrame::TCustomFrame;
};

enum class TPosition {
  poDesigned,        // where Left and Top say
  poDefault,         // where and how large the system chooses
  poDefaultPosOnly,  // where the system chooses, at the form's size
  poScreenCenter,    // centred on the work area of the primary monitor
  poMainFormCenter,  // centred on the Application's main form (the screen if none)
};
using enum TPosition;

enum class TFormBorderStyle { bsNone, bsSingle, bsSizeable, bsDialog, bsToolWindow };
using enum TFormBorderStyle;

enum class TCloseAction { caNone, caHide, caFree, caMinimize };
using enum TCloseAction;
using TCloseEvent = std::function<void(TObject* sender, TCloseAction& action)>;

// A top-level window. Left/Top/Width/Height are its outer bounds on the screen; the
// children live in its client area. It is made hidden and appears with Show(); Position
// and BorderStyle apply when the window is made.
class TCustomForm : public TWinControl {
 public:
  explicit TCustomForm(TComponent* owner);  // hidden, 640x480, poDefaultPosOnly, sizeable
  ~TCustomForm() override;

  void SetClientSize(int width, int height);
  void SetClientWidth(int width) { SetClientSize(width, ClientHeight()); }
  void SetClientHeight(int height) { SetClientSize(ClientWidth(), height); }
  TRect ClientRect() const override;
  void SetVisible(bool visible) override;

  // Asks OnClose what to do (default caHide) and does it; closing the Application's main
  // form ends the application's message loop.
  void Close();
  // Frees the form once the messages now queued for it are handled: safe from its own
  // event handlers.
  void Release();

  TPosition Position = poDefaultPosOnly;
  TFormBorderStyle BorderStyle = bsSizeable;
  TCloseEvent OnClose;

  LRESULT WndProc(UINT msg, WPARAM wParam, LPARAM lParam) override;

 protected:
  void CreateParamsFor(CreateParams& params) override;

 private:
  DWORD Style() const;
  DWORD ExStyle() const;
};

class TForm : public TCustomForm {
 public:
  using TCustomForm::TCustomForm;
};

}  // namespace ui
