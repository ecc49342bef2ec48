// Frames and forms (ui/forms.h).
#include "ui/application.h"
#include "ui/forms.h"

namespace ui {

// ---- TCustomFrame -----------------------------------------------------------------------

TCustomFrame::TCustomFrame(TComponent* owner) : TWinControl(owner) { bounds_ = {0, 0, 320, 240}; }

void TCustomFrame::CreateParamsFor(CreateParams& params) {
  TWinControl::CreateParamsFor(params);
  params.className = L"TFrame";
}

// ---- TCustomForm ------------------------------------------------------------------------

TCustomForm::TCustomForm(TComponent* owner) : TWinControl(owner) {
  bounds_ = {0, 0, 640, 480};
  visible_ = false;
  ParentColor = false;
  ParentFont = false;
  ParentBackground = false;
}

TCustomForm::~TCustomForm() {
  if (Application->MainForm() == this) Application->SetMainForm(nullptr);
}

DWORD TCustomForm::Style() const {
  switch (BorderStyle) {
    case bsNone: return WS_POPUP;
    case bsSingle: return WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
    case bsDialog: return WS_POPUP | WS_CAPTION | WS_SYSMENU;
    case bsToolWindow: return WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU;
    case bsSizeable: break;
  }
  return WS_OVERLAPPEDWINDOW;
}

DWORD TCustomForm::ExStyle() const {
  switch (BorderStyle) {
    case bsDialog: return WS_EX_DLGMODALFRAME;
    case bsToolWindow: return WS_EX_TOOLWINDOW;
    default: return 0;
  }
}

void TCustomForm::CreateParamsFor(CreateParams& params) {
  TWinControl::CreateParamsFor(params);
  params.className = L"TForm";
  params.style = Style() | WS_CLIPCHILDREN;  // shown by SetVisible once made
  if (!enabled_) params.style |= WS_DISABLED;
  params.exStyle = ExStyle();

  TPosition position = Position;
  // The system places overlapped windows only; a popup is centred instead.
  if ((params.style & WS_POPUP) && (position == poDefault || position == poDefaultPosOnly))
    position = poScreenCenter;
  TRect area;
  if (position == poMainFormCenter && Application->MainForm() != nullptr &&
      Application->MainForm() != this && Application->MainForm()->HandleAllocated()) {
    area = Application->MainForm()->BoundsRect();
  } else {
    RECT work;
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    area = {work.left, work.top, work.right, work.bottom};
  }
  switch (position) {
    case poDesigned: break;
    case poDefault: params.width = params.height = CW_USEDEFAULT; [[fallthrough]];
    case poDefaultPosOnly: params.x = params.y = CW_USEDEFAULT; break;
    case poScreenCenter:
    case poMainFormCenter:
      params.x = area.Left + (area.Width() - params.width) / 2;
      params.y = area.Top + (area.Height() - params.height) / 2;
      break;
  }
}

TRect TCustomForm::ClientRect() const {
  if (HandleAllocated()) return TWinControl::ClientRect();
  RECT frame{0, 0, 0, 0};
  AdjustWindowRectEx(&frame, Style(), FALSE, ExStyle());
  return {0, 0, Width() - (frame.right - frame.left), Height() - (frame.bottom - frame.top)};
}

void TCustomForm::SetClientSize(int width, int height) {
  RECT r{0, 0, width, height};
  AdjustWindowRectEx(&r, Style(), FALSE, ExStyle());
  SetBounds(Left(), Top(), r.right - r.left, r.bottom - r.top);
}

void TCustomForm::SetVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  if (visible)
    ShowWindow(Handle(), SW_SHOWNORMAL);
  else if (HandleAllocated())
    ShowWindow(Handle(), SW_HIDE);
}

void TCustomForm::Close() {
  TCloseAction action = caHide;
  if (OnClose) OnClose(this, action);
  if (action == caNone) return;
  if (Application->MainForm() == this) {
    Application->Terminate();
    return;
  }
  switch (action) {
    case caHide: Hide(); break;
    case caMinimize: ShowWindow(Handle(), SW_MINIMIZE); break;
    case caFree: Release(); break;
    case caNone: break;
  }
}

void TCustomForm::Release() { PostMessageW(Handle(), CM_RELEASE, 0, 0); }

LRESULT TCustomForm::WndProc(UINT msg, WPARAM wParam, LPARAM lParam) {
  switch (msg) {
    case WM_CLOSE: Close(); return 0;
    case CM_RELEASE:
      delete this;  // nothing of the form is touched after this
      return 0;
    default: return TWinControl::WndProc(msg, wParam, lParam);
  }
}

}  // namespace ui
