// Frames, forms and scroll boxes (ui/forms.h).
#include <algorithm>
#include <utility>

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
  KeepDefaults();
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
  DWORD exStyle = FormStyle == fsStayOnTop ? WS_EX_TOPMOST : 0;
  switch (BorderStyle) {
    case bsDialog: return exStyle | WS_EX_DLGMODALFRAME;
    case bsToolWindow: return exStyle | WS_EX_TOOLWINDOW;
    default: return exStyle;
  }
}

void TCustomForm::CreateParamsFor(CreateParams& params) {
  TWinControl::CreateParamsFor(params);
  params.className = L"TForm";
  params.style = Style() | WS_CLIPCHILDREN;  // shown by SetVisible once made
  if (!enabled_) params.style |= WS_DISABLED;
  params.exStyle = ExStyle();
  // A form shown over others belongs to the window active now, so that it stays above it
  // and goes with it.
  if (modal_) {
    HWND active = GetActiveWindow();
    params.wndParent = active != nullptr ? active : Application->Handle();
  }

  TPosition position = Position;
  // The system places overlapped windows only; a popup is centred instead.
  if ((params.style & WS_POPUP) && (position == poDefault || position == poDefaultPosOnly))
    position = poScreenCenter;
  TRect area;
  // A module without a main form of its own (a package in its host) centres on the
  // top-level window the form belongs to.
  HWND ownerRoot = params.wndParent != nullptr && params.wndParent != Application->Handle()
                       ? GetAncestor(params.wndParent, GA_ROOT)
                       : nullptr;
  RECT ownerRect;
  if (position == poMainFormCenter && Application->MainForm() != nullptr &&
      Application->MainForm() != this && Application->MainForm()->HandleAllocated()) {
    area = Application->MainForm()->BoundsRect();
  } else if (position == poMainFormCenter && ownerRoot != nullptr &&
             IsWindowVisible(ownerRoot) && GetWindowRect(ownerRoot, &ownerRect)) {
    area = {ownerRect.left, ownerRect.top, ownerRect.right, ownerRect.bottom};
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

namespace {

int ShowCommand(TWindowState state) {
  switch (state) {
    case wsMinimized: return SW_MINIMIZE;
    case wsMaximized: return SW_SHOWMAXIMIZED;
    default: return SW_SHOWNORMAL;
  }
}

}  // namespace

void TCustomForm::ChangeScale(int to, int from) {
  const TRect before = BoundsRect();
  const TRect client = ClientRect();
  TWinControl::ChangeScale(to, from);
  RECT r{0, 0, ScaleValue(client.Width(), to, from), ScaleValue(client.Height(), to, from)};
  AdjustWindowRectEx(&r, Style(), FALSE, ExStyle());
  const int width = r.right - r.left, height = r.bottom - r.top;
  const bool centred = Position == poScreenCenter || Position == poMainFormCenter ||
                       ((Style() & WS_POPUP) && Position != poDesigned);
  if (centred)
    SetBounds(before.Left - (width - before.Width()) / 2, before.Top - (height - before.Height()) / 2,
              width, height);
  else
    SetBounds(before.Left, before.Top, width, height);
}

void TCustomForm::SetClientSize(int width, int height) {
  RECT r{0, 0, width, height};
  AdjustWindowRectEx(&r, Style(), FALSE, ExStyle());
  SetBounds(Left(), Top(), r.right - r.left, r.bottom - r.top);
}

void TCustomForm::SetVisible(bool visible) {
  if (visible == visible_) return;
  if (visible) {
    ScaleForPPI(WindowPPI(Handle()));
    if (OnShow) OnShow(this);
  }
  visible_ = visible;
  if (visible)
    ShowWindow(Handle(), ShowCommand(windowState_));
  else if (HandleAllocated())
    ShowWindow(Handle(), SW_HIDE);
}

TWindowState TCustomForm::WindowState() const {
  if (!HandleAllocated()) return windowState_;
  // The window exists, so asking for it makes nothing.
  const HWND wnd = const_cast<TCustomForm*>(this)->Handle();
  if (!IsWindowVisible(wnd)) return windowState_;
  if (IsIconic(wnd)) return wsMinimized;
  if (IsZoomed(wnd)) return wsMaximized;
  return wsNormal;
}

void TCustomForm::SetWindowState(TWindowState state) {
  windowState_ = state;
  // Shown by the form or by anyone else: the window takes the state now.
  if (HandleAllocated() && IsWindowVisible(Handle())) ShowWindow(Handle(), ShowCommand(state));
}

TMonitor TCustomForm::Monitor() { return Screen->MonitorFromWindow(Handle()); }

TCanvas& TCustomForm::Canvas() {
  canvas_.Font = ResolvedFont();
  return canvas_;
}

namespace {

// The windows of this thread that a modal form disables, and enables again after it.
struct TDisabledWindows {
  HWND except;
  std::vector<HWND> windows;
};

BOOL CALLBACK DisableWindow(HWND window, LPARAM data) {
  auto* disabled = reinterpret_cast<TDisabledWindows*>(data);
  if (window != disabled->except && IsWindowVisible(window) && IsWindowEnabled(window)) {
    disabled->windows.push_back(window);
    EnableWindow(window, FALSE);
  }
  return TRUE;
}

}  // namespace

TModalResult TCustomForm::ShowModal() {
  if (Visible() || !Enabled() || modal_)
    throw EInvalidOperation("Cannot make a visible window modal");
  if (GetCapture() != nullptr) SendMessageW(GetCapture(), WM_CANCELMODE, 0, 0);
  ReleaseCapture();
  HWND active = GetActiveWindow();
  modal_ = true;
  ModalResult = mrNone;
  TDisabledWindows disabled{Handle(), {}};
  EnumThreadWindows(GetCurrentThreadId(), &DisableWindow, reinterpret_cast<LPARAM>(&disabled));
  auto restore = [&] {
    // Enabled before the form hides, so that activation can go back to them.
    for (HWND window : disabled.windows)
      if (IsWindow(window)) EnableWindow(window, TRUE);
    if (HandleAllocated()) {
      SetWindowPos(Handle(), nullptr, 0, 0, 0, 0,
                   SWP_HIDEWINDOW | SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
      visible_ = false;
    }
    if (active != nullptr && IsWindow(active)) SetActiveWindow(active);
    modal_ = false;
  };
  try {
    Show();
    SetActiveWindow(Handle());
    SetFocus(Handle());
    while (ModalResult == mrNone) {
      Application->HandleMessage();
      if (Application->Terminated()) ModalResult = mrCancel;
    }
  } catch (...) {
    restore();
    throw;
  }
  restore();
  return ModalResult;
}

void TCustomForm::Close() {
  // Closing a modal form ends its loop, as if cancelled.
  if (modal_) {
    ModalResult = mrCancel;
    return;
  }
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
    case WM_DPICHANGED: {
      ScaleForPPI(LOWORD(wParam));
      const RECT* r = reinterpret_cast<const RECT*>(lParam);
      SetBounds(r->left, r->top, r->right - r->left, r->bottom - r->top);
      return 0;
    }
    case CM_RELEASE:
      delete this;  // nothing of the form is touched after this
      return 0;
    default: return TWinControl::WndProc(msg, wParam, lParam);
  }
}

// ---- TScrollBox -------------------------------------------------------------------------

TScrollBox::TScrollBox(TComponent* owner) : TWinControl(owner) {
  bounds_ = {0, 0, 185, 41};
  ParentColor = false;
  Color = clWindow;
  ParentBackground = false;
  KeepDefaults();
}

void TScrollBox::CreateParamsFor(CreateParams& params) {
  TWinControl::CreateParamsFor(params);
  params.className = L"TScrollBox";
  params.style |= WS_VSCROLL | WS_HSCROLL;
  if (BorderStyle != bsNone) params.exStyle |= WS_EX_CLIENTEDGE;
}

void TScrollBox::Realign() {
  TWinControl::Realign();
  UpdateScrollBars();
}

void TScrollBox::ControlBoundsChanged(TControl* /*control*/) { UpdateScrollBars(); }

void TScrollBox::UpdateScrollBars() {
  if (updating_ || !HandleAllocated() || Destroying()) return;
  updating_ = true;
  // Showing one bar narrows the client area, which may call for the other: twice at most.
  for (int round = 0; round < 2; ++round) {
    int extent[2] = {0, 0};
    for (int i = 0; i < ControlCount(); ++i) {
      const TControl* c = Controls(i);
      if (!c->Visible() || c->Align() != alNone) continue;
      extent[0] = std::max(extent[0], c->BoundsRect().Right + pos_[0] + c->Margins.Right);
      extent[1] = std::max(extent[1], c->BoundsRect().Bottom + pos_[1] + c->Margins.Bottom);
    }
    const TRect client = ClientRect();
    const int page[2] = {client.Width(), client.Height()};
    for (int axis = 0; axis < 2; ++axis) {
      range_[axis] = extent[axis] > page[axis] ? extent[axis] : 0;
      SCROLLINFO info{sizeof(info), SIF_RANGE | SIF_PAGE, 0, 0, 0, 0, 0};
      info.nMax = std::max(0, range_[axis] - 1);
      info.nPage = range_[axis] > 0 ? static_cast<UINT>(page[axis]) : 0;
      SetScrollInfo(Handle(), axis == 0 ? SB_HORZ : SB_VERT, &info, TRUE);
    }
    // A smaller extent or a larger page may leave the children scrolled too far.
    for (int axis = 0; axis < 2; ++axis) {
      const int most = std::max(0, range_[axis] - page[axis]);
      if (pos_[axis] > most) ScrollTo(axis, most);
    }
    const TRect after = ClientRect();
    if (after == client) break;
  }
  updating_ = false;
}

void TScrollBox::ScrollTo(int axis, int pos) {
  const TRect client = ClientRect();
  const int page = axis == 0 ? client.Width() : client.Height();
  pos = std::clamp(pos, 0, std::max(0, range_[axis] - page));
  const int delta = pos_[axis] - pos;
  if (delta == 0) return;
  pos_[axis] = pos;
  const bool updating = std::exchange(updating_, true);
  for (int i = 0; i < ControlCount(); ++i) {
    TControl* c = Controls(i);
    if (c->Align() != alNone) continue;
    if (axis == 0)
      c->SetBounds(c->Left() + delta, c->Top(), c->Width(), c->Height());
    else
      c->SetBounds(c->Left(), c->Top() + delta, c->Width(), c->Height());
  }
  updating_ = updating;
  if (HandleAllocated()) {
    SetScrollPos(Handle(), axis == 0 ? SB_HORZ : SB_VERT, pos, TRUE);
    InvalidateRect(Handle(), nullptr, TRUE);
  }
}

void TScrollBox::ScrollMessage(int axis, WORD code) {
  SCROLLINFO info{sizeof(info), SIF_ALL, 0, 0, 0, 0, 0};
  GetScrollInfo(Handle(), axis == 0 ? SB_HORZ : SB_VERT, &info);
  const int page = static_cast<int>(info.nPage);
  const int line = 8;
  int pos = pos_[axis];
  switch (code) {
    case SB_LINEUP: pos -= line; break;
    case SB_LINEDOWN: pos += line; break;
    case SB_PAGEUP: pos -= page; break;
    case SB_PAGEDOWN: pos += page; break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: pos = info.nTrackPos; break;
    case SB_TOP: pos = 0; break;
    case SB_BOTTOM: pos = range_[axis]; break;
    default: return;
  }
  ScrollTo(axis, pos);
}

LRESULT TScrollBox::WndProc(UINT msg, WPARAM wParam, LPARAM lParam) {
  switch (msg) {
    case WM_VSCROLL: ScrollMessage(1, LOWORD(wParam)); return 0;
    case WM_HSCROLL: ScrollMessage(0, LOWORD(wParam)); return 0;
    case WM_MOUSEWHEEL: {
      const int notches = GET_WHEEL_DELTA_WPARAM(wParam) / WHEEL_DELTA;
      const int axis = range_[1] > 0 ? 1 : 0;
      ScrollTo(axis, pos_[axis] - notches * 3 * 8);
      return 0;
    }
    default: return TWinControl::WndProc(msg, wParam, lParam);
  }
}

}  // namespace ui
