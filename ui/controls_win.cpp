// The control model's Win32 side (ui/controls.h): ownership and parent bookkeeping,
// windows made on demand and kept in step with the bounds, the window procedure, layout
// applied from the align rule, painting of the background and of windowless children.
#include <windowsx.h>

#include <algorithm>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "rtl/ustring.h"
#include "ui/controls.h"
#include "ui/winclass.h"

namespace ui {

namespace {

const wchar_t* Wide(const std::u16string& s) { return reinterpret_cast<const wchar_t*>(s.c_str()); }

RECT ToRECT(const TRect& r) { return {r.Left, r.Top, r.Right, r.Bottom}; }

bool Contains(const TRect& r, int x, int y) {
  return x >= r.Left && x < r.Right && y >= r.Top && y < r.Bottom;
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

}  // namespace

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
  if (parent_ != nullptr) parent_->RemoveControl(this);
  parent_ = parent;
  if (parent_ != nullptr) parent_->InsertControl(this);
}

void TControl::SetBounds(int left, int top, int width, int height) {
  const TRect r{left, top, left + width, top + height};
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
  if (parent_ != nullptr && align_ != alNone) parent_->Realign();
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

void TWinControl::SetParentWindow(HWND parent) {
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
  if ((params.style & WS_CHILD) && parent == nullptr)
    throw std::logic_error("a child control needs a parent window");
  if (!params.systemClass) RegisterWindowClass(params.className, &MainWndProc, params.classStyle);
  // An own class picks the object up at WM_NCCREATE; a system class gets it afterwards.
  HWND window =
      CreateWindowExW(params.exStyle, params.className.c_str(), Wide(caption_), params.style,
                      params.x, params.y, params.width, params.height, parent, nullptr,
                      ModuleInstance(), params.systemClass ? nullptr : this);
  if (window == nullptr)
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                            "CreateWindowEx");
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
      pressed_ = GraphicControlAt(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
      break;
    case WM_LBUTTONUP:
      // A click is a press and a release on the same windowless child.
      if (TControl* pressed = std::exchange(pressed_, nullptr);
          pressed != nullptr &&
          pressed == GraphicControlAt(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)))
        pressed->Click();
      break;
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
  if (parent == this) throw std::invalid_argument("a control cannot be its own parent");
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
  if (HandleAllocated())
    SetWindowPos(handle_.get(), nullptr, left, top, std::max(0, width), std::max(0, height),
                 SWP_NOZORDER | SWP_NOACTIVATE);  // WM_SIZE lays out and tells OnResize
  else if (resized)
    Realign();
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
  if (HandleAllocated()) SetWindowTextW(handle_.get(), Wide(caption_));
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
