// The control model's Win32 side (ui/controls.h): ownership and parent bookkeeping,
// windows made on demand and kept in step with the bounds, the window procedure, layout
// applied from the align rule, painting of the background and of windowless children.
#include <windowsx.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <utility>

#include "rtl/ustring.h"
#include "ui/controls.h"
#include "rtl/wide.h"
#include "ui/forms.h"
#include "ui/menus.h"
#include "ui/winclass.h"

namespace ui {

using rtl::W;

namespace {

RECT ToRECT(const TRect& r) { return {r.Left, r.Top, r.Right, r.Bottom}; }

bool Contains(const TRect& r, int x, int y) {
  return x >= r.Left && x < r.Right && y >= r.Top && y < r.Bottom;
}

bool SetNormalBounds(HWND window, const TRect& r) {
  // A minimised or maximised window would only move its icon or its maximised frame, and
  // restoring it would bring back the old place; the place it restores to is the
  // placement's normal rectangle, which counts from the primary work area.
  if ((GetWindowLongW(window, GWL_STYLE) & WS_CHILD) || (!IsIconic(window) && !IsZoomed(window)))
    return false;
  WINDOWPLACEMENT wp{};
  wp.length = sizeof(wp);
  GetWindowPlacement(window, &wp);
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  wp.rcNormalPosition = {r.Left - work.left, r.Top - work.top, r.Right - work.left,
                         r.Bottom - work.top};
  wp.flags = 0;
  wp.showCmd = IsWindowVisible(window) ? SW_SHOWNA : SW_HIDE;  // the state stays, unactivated
  SetWindowPlacement(window, &wp);
  return true;
}

// BeginPaint and its EndPaint, whatever a painter does in between.
class PaintScope {
 public:
  explicit PaintScope(HWND window) : window_(window), dc_(BeginPaint(window, &ps_)) {}
  ~PaintScope() { EndPaint(window_, &ps_); }
  PaintScope(const PaintScope&) = delete;
  PaintScope& operator=(const PaintScope&) = delete;
  HDC dc() const { return dc_; }
  const RECT& area() const { return ps_.rcPaint; }

 private:
  HWND window_;
  PAINTSTRUCT ps_{};
  HDC dc_;
};

TShiftState MouseShiftState(WPARAM keys) {
  TShiftState shift;
  if (keys & MK_SHIFT) shift.insert(ssShift);
  if (keys & MK_CONTROL) shift.insert(ssCtrl);
  if (GetKeyState(VK_MENU) < 0) shift.insert(ssAlt);
  if (keys & MK_LBUTTON) shift.insert(ssLeft);
  if (keys & MK_RBUTTON) shift.insert(ssRight);
  if (keys & MK_MBUTTON) shift.insert(ssMiddle);
  return shift;
}

// The system's cursor for one of the framework's; null for crNone, which hides the pointer.
LPCWSTR CursorResource(TCursor cursor) {
  switch (cursor) {
    case crNone: return nullptr;
    case crHandPoint: return IDC_HAND;
    case crIBeam: return IDC_IBEAM;
    case crCross: return IDC_CROSS;
    case crSizeAll: return IDC_SIZEALL;
    case crSizeNESW: return IDC_SIZENESW;
    case crSizeNS: return IDC_SIZENS;
    case crSizeNWSE: return IDC_SIZENWSE;
    case crSizeWE: return IDC_SIZEWE;
    case crUpArrow: return IDC_UPARROW;
    case crHourGlass: return IDC_WAIT;
    case crNo: return IDC_NO;
    case crAppStart: return IDC_APPSTARTING;
    case crHelp: return IDC_HELP;
    default: return IDC_ARROW;
  }
}

}  // namespace

TShiftState KeyboardShiftState() {
  TShiftState shift;
  if (GetKeyState(VK_SHIFT) < 0) shift.insert(ssShift);
  if (GetKeyState(VK_CONTROL) < 0) shift.insert(ssCtrl);
  if (GetKeyState(VK_MENU) < 0) shift.insert(ssAlt);
  if (GetKeyState(VK_LBUTTON) < 0) shift.insert(ssLeft);
  if (GetKeyState(VK_RBUTTON) < 0) shift.insert(ssRight);
  if (GetKeyState(VK_MBUTTON) < 0) shift.insert(ssMiddle);
  return shift;
}

TCustomForm* GetParentForm(TControl* control) {
  for (TControl* c = control; c != nullptr; c = c->Parent())
    if (TWinControl* w = c->AsWinControl())
      if (TCustomForm* form = w->AsForm()) return form;
  return nullptr;
}

// ---- TComponent -------------------------------------------------------------------------

TComponent::TComponent(TComponent* owner) : owner_(owner) {
  if (owner_ != nullptr) owner_->InsertComponent(this);
}

TComponent::~TComponent() {
  destroying_ = true;
  while (!components_.empty()) {
    TComponent* component = components_.back();
    components_.pop_back();
    delete component;  // virtual: freed by the module that made it
  }
  if (owner_ != nullptr) owner_->RemoveComponent(this);
}

TComponent* TComponent::FindComponent(std::u16string_view name) const {
  for (TComponent* c : components_)
    if (rtl::SameText(c->Name, name)) return c;
  return nullptr;
}

void TComponent::InsertComponent(TComponent* component) { components_.push_back(component); }

void TComponent::RemoveComponent(TComponent* component) {
  // Absent when this owner is freeing it: it was taken off the list first.
  const auto it = std::find(components_.begin(), components_.end(), component);
  if (it != components_.end()) components_.erase(it);
}

// ---- TControl ---------------------------------------------------------------------------

TControl::TControl(TComponent* owner) : TComponent(owner) {}

TControl::~TControl() {
  if (parent_ != nullptr) parent_->RemoveControl(this);
}

void TControl::SetParent(TWinControl* parent) {
  if (parent == parent_) return;
  for (const TControl* above = parent; above != nullptr; above = above->Parent())
    if (above == this) throw EInvalidOperation("a control cannot lie inside itself");
  if (parent_ != nullptr) parent_->RemoveControl(this);
  parent_ = parent;
  // A control comes into a parent at the parent's density.
  if (parent_ != nullptr) ScaleForPPI(parent_->CurrentPPI());
  if (parent_ != nullptr) parent_->InsertControl(this);
}

void TControl::ScaleForPPI(int ppi) {
  if (ppi <= 0 || ppi == ppi_) return;
  ChangeScale(ppi, ppi_);
  ppi_ = ppi;
}

void TControl::ChangeScale(int to, int from) {
  const TRect r = ScaleRect(bounds_, to, from);
  SetBounds(r.Left, r.Top, r.Width(), r.Height());
  Margins = ScaleMargins(Margins, to, from);
  for (int* limit : {&Constraints.MinWidth, &Constraints.MinHeight, &Constraints.MaxWidth,
                     &Constraints.MaxHeight})
    *limit = ScaleValue(*limit, to, from);
  // A font of the parent's comes with the parent.
  if (!ParentFont) Font.Height = ScaleValue(Font.Height, to, from);
  Invalidate();
}

void TControl::SetBounds(int left, int top, int width, int height) {
  // Far edges stop at the end of the int range: sizes may come from a file.
  auto edge = [](int from, int size) {
    return static_cast<int>(std::clamp<std::int64_t>(std::int64_t{from} + size, INT_MIN, INT_MAX));
  };
  const TRect r{left, top, edge(left, width), edge(top, height)};
  if (r == bounds_) return;
  bounds_ = r;
  RequestAlign();
}

void TControl::SetAlign(TAlign align) {
  if (align == align_) return;
  align_ = align;
  // Also when the control stops aligning: the others take up its space.
  if (parent_ != nullptr) parent_->Realign();
}

void TControl::RequestAlign() {
  if (parent_ == nullptr) return;
  if (align_ != alNone) parent_->Realign();
  parent_->ControlBoundsChanged(this);
}

void TControl::SetVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  RequestAlign();
}

void TControl::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  Invalidate();
}

void TControl::SetCaption(const std::u16string& caption) {
  if (caption == caption_) return;
  caption_ = caption;
  Invalidate();
}

TColor TControl::ResolvedColor() const {
  return ParentColor && parent_ != nullptr ? parent_->ResolvedColor() : Color;
}

TFont TControl::ResolvedFont() const {
  return ParentFont && parent_ != nullptr ? parent_->ResolvedFont() : Font;
}

HFONT TControl::FontHandle() {
  TFont font = ResolvedFont();
  if (!fontHandle_ || font != fontOfHandle_) {
    fontHandle_ = CreateFontHandle(font);
    fontOfHandle_ = std::move(font);
  }
  return fontHandle_.get();
}

void TControl::Invalidate() {}

void TControl::Click() {
  if (OnClick) OnClick(this);
}

void TControl::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  if (OnMouseDown) OnMouseDown(this, button, std::move(shift), x, y);
}

void TControl::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  if (OnMouseUp) OnMouseUp(this, button, std::move(shift), x, y);
}

void TControl::MouseMove(TShiftState shift, int x, int y) {
  if (OnMouseMove) OnMouseMove(this, std::move(shift), x, y);
}

void TControl::MouseEnter() {
  if (OnMouseEnter) OnMouseEnter(this);
}

void TControl::MouseLeave() {
  if (OnMouseLeave) OnMouseLeave(this);
}

POINT TControl::ClientToScreen(POINT p) const {
  auto* self = const_cast<TControl*>(this);
  if (TWinControl* w = self->AsWinControl(); w != nullptr && w->HandleAllocated()) {
    ::ClientToScreen(w->Handle(), &p);
    return p;
  }
  if (parent_ == nullptr) return p;
  return parent_->ClientToScreen({p.x + Left(), p.y + Top()});
}

POINT TControl::ScreenToClient(POINT p) const {
  auto* self = const_cast<TControl*>(this);
  if (TWinControl* w = self->AsWinControl(); w != nullptr && w->HandleAllocated()) {
    ::ScreenToClient(w->Handle(), &p);
    return p;
  }
  if (parent_ == nullptr) return p;
  const POINT q = parent_->ScreenToClient(p);
  return {q.x - Left(), q.y - Top()};
}

// ---- TGraphicControl --------------------------------------------------------------------

TGraphicControl::TGraphicControl(TComponent* owner) : TControl(owner) {}

void TGraphicControl::SetBounds(int left, int top, int width, int height) {
  const TRect r{left, top, left + width, top + height};
  if (r == bounds_) return;
  Invalidate();  // where it was
  bounds_ = r;
  Invalidate();
  RequestAlign();
}

void TGraphicControl::SetVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  if (parent_ != nullptr) parent_->InvalidateArea(bounds_);
  RequestAlign();
}

void TGraphicControl::Invalidate() {
  if (parent_ != nullptr && visible_) parent_->InvalidateArea(bounds_);
}

// ---- TWinControl ------------------------------------------------------------------------

TWinControl::TWinControl(TComponent* owner) : TControl(owner) {}

TWinControl::~TWinControl() {
  destroying_ = true;
  // The window first: the system ends the children's windows with it, in one go.
  DestroyHandle();
  while (!controls_.empty()) {
    TControl* control = controls_.back();
    controls_.pop_back();
    delete control;
  }
}

HWND TWinControl::Handle() {
  if (!handle_ && !Destroying()) {
    CreateWnd();
    const std::vector<TControl*> children = controls_;
    for (TControl* c : children)
      if (TWinControl* w = c->AsWinControl()) w->Handle();
  }
  return handle_.get();
}

void TWinControl::ScaleForPPI(int ppi) {
  if (ppi <= 0 || ppi == ppi_) return;
  DisableAlign();
  TControl::ScaleForPPI(ppi);
  for (TControl* child : std::vector<TControl*>(controls_)) child->ScaleForPPI(ppi);
  EnableAlign();
}

int WindowPPI(HWND window) {
  // A process that is not aware of densities is drawn at 96 and stretched by the system.
  if (window == nullptr ||
      GetAwarenessFromDpiAwarenessContext(GetThreadDpiAwarenessContext()) == DPI_AWARENESS_UNAWARE)
    return 96;
  const UINT dpi = GetDpiForWindow(window);
  return dpi != 0 ? static_cast<int>(dpi) : 96;
}

void TWinControl::SetParentWindow(HWND parent) {
  // Placed in a window of another module: at that window's density.
  if (parent != nullptr && parent_ == nullptr) ScaleForPPI(WindowPPI(parent));
  parentWindow_ = parent;
  if (HandleAllocated() && parent_ == nullptr) ::SetParent(handle_.get(), parent);
}

void TWinControl::CreateParamsFor(CreateParams& params) {
  params.className = L"TWinControl";
  params.style = WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
  if (visible_) params.style |= WS_VISIBLE;
  if (!enabled_) params.style |= WS_DISABLED;
}

void TWinControl::CreateWnd() {
  HWND parent = parent_ != nullptr ? parent_->Handle() : parentWindow_;
  CreateParams params;
  params.x = bounds_.Left;
  params.y = bounds_.Top;
  params.width = std::max(0, bounds_.Width());
  params.height = std::max(0, bounds_.Height());
  CreateParamsFor(params);
  if (parent == nullptr && !(params.style & WS_CHILD)) parent = params.wndParent;
  if ((params.style & WS_CHILD) && parent == nullptr)
    throw EInvalidOperation("a child control needs a parent window");
  if (!params.systemClass) RegisterWindowClass(params.className, &MainWndProc, params.classStyle);
  // An own class picks the object up at WM_NCCREATE; a system class gets it afterwards.
  HWND window =
      CreateWindowExW(params.exStyle, params.className.c_str(), W(caption_), params.style,
                      params.x, params.y, params.width, params.height, parent, nullptr,
                      ModuleInstance(), params.systemClass ? nullptr : this);
  if (window == nullptr)
    throw rtl::EOSError(u"Das Fenster konnte nicht erstellt werden", GetLastError());
  if (params.systemClass) {
    handle_.reset(window);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    systemProc_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&MainWndProc)));
    SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(FontHandle()), FALSE);
  }
  UpdateBounds();
}

void TWinControl::DestroyHandle() { handle_.reset(); }

LRESULT CALLBACK TWinControl::MainWndProc(HWND window, UINT msg, WPARAM wParam, LPARAM lParam) {
  auto* control = reinterpret_cast<TWinControl*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (control == nullptr) {
    // Messages before WM_NCCREATE (WM_GETMINMAXINFO) have no object yet.
    if (msg != WM_NCCREATE) return DefWindowProcW(window, msg, wParam, lParam);
    control = static_cast<TWinControl*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    if (control == nullptr) return DefWindowProcW(window, msg, wParam, lParam);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(control));
    control->handle_.reset(window);
  }
  const LRESULT result = control->WndProc(msg, wParam, lParam);
  if (msg == WM_NCDESTROY) control->WindowGone(window);
  return result;
}

void TWinControl::WindowGone(HWND window) {
  SetWindowLongPtrW(window, GWLP_USERDATA, 0);
  if (systemProc_ != nullptr)
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(systemProc_));
  systemProc_ = nullptr;
  static_cast<void>(handle_.release());
}

LRESULT TWinControl::DefaultHandler(UINT msg, WPARAM wParam, LPARAM lParam) {
  HWND window = handle_.get();
  if (systemProc_ != nullptr) return CallWindowProcW(systemProc_, window, msg, wParam, lParam);
  return DefWindowProcW(window, msg, wParam, lParam);
}

LRESULT TWinControl::WndProc(UINT msg, WPARAM wParam, LPARAM lParam) {
  switch (msg) {
    case WM_ERASEBKGND:
      if (systemProc_ != nullptr) break;
      EraseBackground(reinterpret_cast<HDC>(wParam));
      return 1;
    case WM_PAINT:
      if (systemProc_ != nullptr) break;
      PaintHandler();
      return 0;
    case WM_WINDOWPOSCHANGED:
      UpdateBounds();
      break;  // DefWindowProc turns it into WM_SIZE and WM_MOVE
    case WM_SIZE: {
      const LRESULT result = DefaultHandler(msg, wParam, lParam);
      if (!Destroying()) {
        Realign();
        Resize();
      }
      return result;
    }
    case WM_COMMAND:
      // A child control's notification goes back to the child, which knows what it means.
      if (lParam != 0)
        return SendMessageW(reinterpret_cast<HWND>(lParam), CN_COMMAND, wParam, lParam);
      break;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK:
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
    case WM_MOUSEMOVE:
      MouseMessage(msg, wParam, lParam);
      break;
    case WM_MOUSELEAVE:
      mouseInside_ = false;
      MouseLeave();
      return 0;
    case WM_CAPTURECHANGED:
      captured_ = nullptr;
      clicked_ = false;
      break;
    case WM_CONTEXTMENU:
      if (ContextMenu(lParam)) return 0;
      break;  // DefWindowProc hands it to the parent
    case WM_SETCURSOR:
      if (reinterpret_cast<HWND>(wParam) == handle_.get() && LOWORD(lParam) == HTCLIENT &&
          SetCursorFor(lParam))
        return TRUE;
      break;
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
    case WM_KEYUP:
    case WM_SYSKEYUP: {
      WORD key = LOWORD(wParam);
      const TShiftState shift = KeyboardShiftState();
      const bool down = msg == WM_KEYDOWN || msg == WM_SYSKEYDOWN;
      TCustomForm* form = GetParentForm(this);
      if (form != nullptr && form != this && form->KeyPreview)
        down ? form->KeyDown(key, shift) : form->KeyUp(key, shift);
      if (key != 0) down ? KeyDown(key, shift) : KeyUp(key, shift);
      if (key == 0) return 0;
      break;
    }
    case WM_CHAR: {
      auto key = static_cast<char16_t>(wParam);
      TCustomForm* form = GetParentForm(this);
      if (form != nullptr && form != this && form->KeyPreview) form->KeyPress(key);
      if (key != 0) KeyPress(key);
      if (key == 0) return 0;
      break;
    }
    default: break;
  }
  return DefaultHandler(msg, wParam, lParam);
}

void TWinControl::UpdateBounds() {
  HWND window = handle_.get();
  if (window == nullptr || IsIconic(window)) return;
  RECT r;
  GetWindowRect(window, &r);
  if (GetWindowLongW(window, GWL_STYLE) & WS_CHILD)
    MapWindowPoints(HWND_DESKTOP, GetParent(window), reinterpret_cast<POINT*>(&r), 2);
  bounds_ = {r.left, r.top, r.right, r.bottom};
}

TRect TWinControl::ClientRect() const {
  if (!handle_) return {0, 0, Width(), Height()};
  RECT r;
  GetClientRect(handle_.get(), &r);
  return {r.left, r.top, r.right, r.bottom};
}

void TWinControl::SetParent(TWinControl* parent) {
  if (parent == parent_) return;
  if (parent == this) throw EInvalidOperation("a control cannot be its own parent");
  if (parent == nullptr && parentWindow_ == nullptr) DestroyHandle();
  TControl::SetParent(parent);
  if (parent_ == nullptr) return;
  if (HandleAllocated())
    ::SetParent(handle_.get(), parent_->Handle());
  else if (parent_->HandleAllocated())
    Handle();
}

void TWinControl::SetBounds(int left, int top, int width, int height) {
  const TRect r{left, top, left + width, top + height};
  if (r == bounds_) return;
  const bool resized = r.Width() != bounds_.Width() || r.Height() != bounds_.Height();
  bounds_ = r;
  if (HandleAllocated() && SetNormalBounds(handle_.get(), r)) {
    UpdateBounds();
  } else if (HandleAllocated()) {
    SetWindowPos(handle_.get(), nullptr, left, top, std::max(0, width), std::max(0, height),
                 SWP_NOZORDER | SWP_NOACTIVATE);  // WM_SIZE lays out and tells OnResize
  } else if (resized) {
    Realign();
  }
  RequestAlign();
}

void TWinControl::SetVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  if (HandleAllocated()) ShowWindow(handle_.get(), visible ? SW_SHOWNA : SW_HIDE);
  RequestAlign();
}

void TWinControl::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  if (HandleAllocated()) EnableWindow(handle_.get(), enabled);
}

void TWinControl::SetCaption(const std::u16string& caption) {
  if (caption == caption_) return;
  caption_ = caption;
  if (HandleAllocated()) SetWindowTextW(handle_.get(), W(caption_));
  Invalidate();
}

void TWinControl::Invalidate() {
  if (!HandleAllocated()) return;
  // A system control draws with the font it was given; a changed font must be given again.
  if (systemProc_ != nullptr)
    SendMessageW(handle_.get(), WM_SETFONT, reinterpret_cast<WPARAM>(FontHandle()), FALSE);
  RedrawWindow(handle_.get(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void TWinControl::InvalidateArea(const TRect& area) {
  if (!HandleAllocated()) return;
  const RECT r = ToRECT(area);
  InvalidateRect(handle_.get(), &r, TRUE);
}

TColor TWinControl::BackgroundColor() const {
  return ParentBackground && parent_ != nullptr ? parent_->BackgroundColor() : ResolvedColor();
}

void TWinControl::Realign() {
  if (aligning_ || alignDisabled_ > 0 || Destroying()) return;
  std::vector<TAlignChild> children;
  children.reserve(controls_.size());
  bool anyAligned = false;
  for (const TControl* c : controls_) {
    children.push_back(
        {c->Align(), c->BoundsRect(), c->Visible(), c->AlignWithMargins, c->Margins});
    anyAligned = anyAligned || c->Align() != alNone;
  }
  if (!anyAligned) return;
  TRect client = ClientRect();
  AdjustClientRect(client);
  const std::vector<TRect> bounds = AlignBounds(client, children);
  const std::vector<TControl*> list = controls_;
  // The children's SetBounds ask for a layout again; this one is it.
  aligning_ = true;
  try {
    for (size_t i = 0; i < list.size(); ++i)
      if (bounds[i] != children[i].bounds)
        list[i]->SetBounds(bounds[i].Left, bounds[i].Top, bounds[i].Width(), bounds[i].Height());
  } catch (...) {
    aligning_ = false;
    throw;
  }
  aligning_ = false;
}

void TWinControl::EnableAlign() {
  if (alignDisabled_ > 0 && --alignDisabled_ == 0) Realign();
}

void TWinControl::Resize() {
  if (OnResize) OnResize(this);
}

void TWinControl::InsertControl(TControl* control) {
  controls_.push_back(control);
  if (control->AsWinControl() == nullptr) control->Invalidate();
  Realign();
}

void TWinControl::RemoveControl(TControl* control) {
  const auto it = std::find(controls_.begin(), controls_.end(), control);
  if (it == controls_.end()) return;
  controls_.erase(it);
  if (pressed_ == control) pressed_ = nullptr;
  if (captured_ == control) captured_ = nullptr;
  if (Destroying()) return;
  InvalidateArea(control->BoundsRect());
  Realign();
}

void TWinControl::EraseBackground(HDC dc) {
  const TColor color = BackgroundColor();
  if (color == clNone) return;
  RECT r;
  GetClientRect(handle_.get(), &r);
  const rtl::unique_hbrush brush(CreateSolidBrush(static_cast<COLORREF>(ColorToRGB(color))));
  FillRect(dc, &r, brush.get());
}

void TWinControl::PaintHandler() {
  const PaintScope paint(handle_.get());
  PaintWindow(paint.dc());
  for (TControl* c : controls_) {
    if (c->AsWinControl() != nullptr || !c->Visible()) continue;
    const RECT bounds = ToRECT(c->BoundsRect());
    RECT common;
    if (!IntersectRect(&common, &bounds, &paint.area())) continue;
    const int saved = SaveDC(paint.dc());
    IntersectClipRect(paint.dc(), bounds.left, bounds.top, bounds.right, bounds.bottom);
    OffsetViewportOrgEx(paint.dc(), bounds.left, bounds.top, nullptr);
    c->Paint(paint.dc());
    RestoreDC(paint.dc(), saved);
  }
}

void TWinControl::KeyDown(WORD& key, TShiftState shift) {
  if (OnKeyDown) OnKeyDown(this, key, std::move(shift));
}

void TWinControl::KeyUp(WORD& key, TShiftState shift) {
  if (OnKeyUp) OnKeyUp(this, key, std::move(shift));
}

void TWinControl::KeyPress(char16_t& key) {
  if (OnKeyPress) OnKeyPress(this, key);
}

void TWinControl::MouseMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
  const int x = GET_X_LPARAM(lParam);
  const int y = GET_Y_LPARAM(lParam);
  const TShiftState shift = MouseShiftState(wParam);
  HWND window = handle_.get();
  // A windowless child under the pointer takes the event in its own coordinates; while it
  // holds the capture it takes every event until the button goes up.
  auto target = [&]() -> TControl* {
    return captured_ != nullptr ? captured_ : GraphicControlAt(x, y);
  };
  auto local = [&](TControl* c) -> POINT {
    return c == nullptr ? POINT{x, y} : POINT{x - c->Left(), y - c->Top()};
  };
  switch (msg) {
    case WM_MOUSEMOVE: {
      if (!mouseInside_) {
        mouseInside_ = true;
        TRACKMOUSEEVENT track{sizeof(track), TME_LEAVE, window, 0};
        TrackMouseEvent(&track);
        MouseEnter();
      }
      TControl* c = target();
      const POINT p = local(c);
      (c != nullptr ? c : this)->MouseMove(shift, p.x, p.y);
      return;
    }
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK: {
      const TMouseButton button = msg == WM_LBUTTONDOWN || msg == WM_LBUTTONDBLCLK ? mbLeft
                                  : msg == WM_RBUTTONDOWN || msg == WM_RBUTTONDBLCLK
                                      ? mbRight
                                      : mbMiddle;
      TControl* c = GraphicControlAt(x, y);
      // A system control (a button) keeps the capture to itself.
      if (systemProc_ == nullptr) SetCapture(window);
      captured_ = c;
      if (button == mbLeft) {
        pressed_ = c;
        // A system control reports its own clicks (WM_COMMAND).
        clicked_ = c == nullptr && systemProc_ == nullptr;
      }
      const POINT p = local(c);
      (c != nullptr ? c : this)->MouseDown(button, shift, p.x, p.y);
      return;
    }
    default: break;
  }
  // A button went up. A click is a press and a release on the same control.
  const TMouseButton button = msg == WM_LBUTTONUP ? mbLeft : msg == WM_RBUTTONUP ? mbRight
                                                                                : mbMiddle;
  TControl* c = target();
  const POINT p = local(c);
  const bool clicked = std::exchange(clicked_, false);
  TControl* pressed = std::exchange(pressed_, nullptr);
  if (systemProc_ == nullptr && GetCapture() == window) ReleaseCapture();
  captured_ = nullptr;
  if (button == mbLeft) {
    if (c == nullptr && clicked && Contains(ClientRect(), x, y))
      Click();
    else if (pressed != nullptr && pressed == GraphicControlAt(x, y))
      pressed->Click();
  }
  // A windowless child freed by its click has left the list and hears no release.
  if (c == nullptr || std::find(controls_.begin(), controls_.end(), c) != controls_.end())
    (c != nullptr ? c : this)->MouseUp(button, shift, p.x, p.y);
}

bool TWinControl::ContextMenu(LPARAM lParam) {
  POINT screen{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  if (screen.x == -1 && screen.y == -1) GetCursorPos(&screen);  // the menu key
  const POINT p = ScreenToClient(screen);
  TControl* c = GraphicControlAt(p.x, p.y);
  TControl* owner = c != nullptr && c->PopupMenu != nullptr ? c : this;
  if (owner->PopupMenu == nullptr) return false;
  owner->PopupMenu->PopupComponent = owner;
  owner->PopupMenu->Popup(screen.x, screen.y);
  return true;
}

bool TWinControl::SetCursorFor(LPARAM /*lParam*/) {
  POINT screen;
  GetCursorPos(&screen);
  const POINT p = ScreenToClient(screen);
  const TControl* c = captured_ != nullptr ? captured_ : GraphicControlAt(p.x, p.y);
  const TCursor cursor = c != nullptr && c->Cursor != crDefault ? c->Cursor : Cursor;
  if (cursor == crDefault) return false;
  const LPCWSTR resource = CursorResource(cursor);
  SetCursor(resource != nullptr ? LoadCursorW(nullptr, resource) : nullptr);
  return true;
}

TControl* TWinControl::GraphicControlAt(int x, int y) const {
  // The last child is painted last, so it is the one on top.
  for (auto it = controls_.rbegin(); it != controls_.rend(); ++it) {
    TControl* c = *it;
    if (c->AsWinControl() == nullptr && c->Visible() && c->Enabled() &&
        Contains(c->BoundsRect(), x, y))
      return c;
  }
  return nullptr;
}

}  // namespace ui
