// Frames (a reusable group of controls that lives inside another control) and forms
// (top-level windows). Windows build only.
#pragma once

#include <functional>
#include <stdexcept>
#include <vector>

#include "ui/canvas.h"
#include "ui/controls.h"
#include "ui/screen.h"

namespace ui {

// A container made to be placed in another control, often of another module. A derived
// frame builds its children in its constructor and may override WndProc for messages
// sent to it (WM_COPYDATA...). Its window class is "TFrame" unless CreateParamsFor names
// another.
class TCustomFrame : public TWinControl {
 public:
  explicit TCustomFrame(TComponent* owner);  // 320x240

  // Its non-visual components are stored too, as a form's are.
  void GetChildren(const std::function<void(TComponent*)>& proc, TComponent* root) override;
  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

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

enum class TFormStyle { fsNormal, fsStayOnTop };
using enum TFormStyle;

enum class TWindowState { wsNormal, wsMinimized, wsMaximized };
using enum TWindowState;

// A modal result: the value a modal form closes with. 0 keeps it open.
using TModalResult = int;
constexpr TModalResult mrNone = 0;
constexpr TModalResult mrOk = IDOK;
constexpr TModalResult mrCancel = IDCANCEL;

// A top-level window. Left/Top/Width/Height are its outer bounds on the screen; the
// children live in its client area. It is made hidden and appears with Show(); Position
// and BorderStyle apply when the window is made. Its sizes are given at 96 DPI: when it
// first appears, and when its window moves to a monitor of another density, it scales
// itself and its controls to the monitor's density (in a process aware of densities).
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

  // Shows the form and handles messages until ModalResult is set (or the application is
  // terminated: mrCancel), with every other window of the thread disabled; then hides the
  // form, enables the windows again and returns ModalResult.
  TModalResult ShowModal();
  TModalResult ModalResult = mrNone;

  // The canvas of the form, measuring in the form's font.
  TCanvas& Canvas();

  // Normal, minimised or maximised, as the window is now; setting it shows the window in
  // that state when it is visible, and applies it when it appears otherwise.
  TWindowState WindowState() const;
  void SetWindowState(TWindowState state);
  // The monitor the form lies on most (the nearest when on none).
  TMonitor Monitor();

  TPosition Position = poDefaultPosOnly;
  TFormBorderStyle BorderStyle = bsSizeable;
  TFormStyle FormStyle = fsNormal;
  // The form hears the keys of its controls before they do.
  bool KeyPreview = false;
  TCloseEvent OnClose;
  // Before the form's window appears.
  TNotifyEvent OnShow;

  TCustomForm* AsForm() override { return this; }
  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;
  void GetChildren(const std::function<void(TComponent*)>& proc, TComponent* root) override;
  LRESULT WndProc(UINT msg, WPARAM wParam, LPARAM lParam) override;

 protected:
  void CreateParamsFor(CreateParams& params) override;
  // The client area is scaled; a centred form stays centred where it is.
  void ChangeScale(int to, int from) override;

 private:
  DWORD Style() const;
  DWORD ExStyle() const;

  TCanvas canvas_;
  bool modal_ = false;
  TWindowState windowState_ = wsNormal;
};

class TForm : public TCustomForm {
 public:
  using TCustomForm::TCustomForm;
};

// A control whose children may reach beyond its client area: scroll bars appear for the
// extent of the children that are not aligned (with their bottom and right margins) and
// scroll them. Aligned children fill the client area as elsewhere.
class TScrollBox : public TWinControl {
 public:
  explicit TScrollBox(TComponent* owner);  // 185x41, single border

  TFormBorderStyle BorderStyle = bsSingle;  // bsNone or bsSingle
  // How far the children are scrolled, and the extent scrolled over.
  int VertScrollPos() const { return pos_[1]; }
  int HorzScrollPos() const { return pos_[0]; }
  int VertRange() const { return range_[1]; }
  int HorzRange() const { return range_[0]; }
  void SetVertScrollPos(int pos) { ScrollTo(1, pos); }
  void SetHorzScrollPos(int pos) { ScrollTo(0, pos); }

  void Realign() override;
  LRESULT WndProc(UINT msg, WPARAM wParam, LPARAM lParam) override;
  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

 protected:
  void CreateParamsFor(CreateParams& params) override;
  void ControlBoundsChanged(TControl* control) override;

 private:
  // Axis 0 horizontal, 1 vertical.
  void ScrollTo(int axis, int pos);
  void UpdateScrollBars();
  void ScrollMessage(int axis, WORD code);

  int pos_[2] = {0, 0};
  int range_[2] = {0, 0};
  bool updating_ = false;
};

}  // namespace ui
