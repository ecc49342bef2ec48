// Panels, images and timers (ui/extctrls.h).
#include <stdexcept>

#include "ui/extctrls.h"
#include "ui/winclass.h"

namespace ui {

// ---- TPanel -----------------------------------------------------------------------------

TPanel::TPanel(TComponent* owner) : TWinControl(owner) {
  bounds_ = {0, 0, 185, 41};
  // A panel shows its own colour from the start, as if Color had been set.
  ParentColor = false;
}

void TPanel::CreateParamsFor(CreateParams& params) {
  TWinControl::CreateParamsFor(params);
  params.className = L"TPanel";
  // The bevel and the centred caption depend on the whole size.
  params.classStyle |= CS_HREDRAW | CS_VREDRAW;
}

void TPanel::AdjustClientRect(TRect& rect) const {
  if (BevelOuter == bvNone) return;
  rect.Left += BevelWidth;
  rect.Top += BevelWidth;
  rect.Right -= BevelWidth;
  rect.Bottom -= BevelWidth;
}

void TPanel::PaintWindow(HDC dc) {
  const TRect client = ClientRect();
  RECT r{client.Left, client.Top, client.Right, client.Bottom};
  if (BevelOuter == bvLowered || BevelOuter == bvRaised) {
    const UINT edge = BevelOuter == bvRaised ? BDR_RAISEDINNER : BDR_SUNKENOUTER;
    for (int i = 0; i < BevelWidth; ++i) {
      DrawEdge(dc, &r, edge, BF_RECT);
      InflateRect(&r, -1, -1);
    }
  }
  if (!ShowCaption || caption_.empty()) return;
  const rtl::select_object font(dc, FontHandle());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc,
               static_cast<COLORREF>(ColorToRGB(Enabled() ? ResolvedFont().Color : clGrayText)));
  DrawTextW(dc, reinterpret_cast<const wchar_t*>(caption_.c_str()),
            static_cast<int>(caption_.size()), &r,
            DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

// ---- TImage -----------------------------------------------------------------------------

TImage::TImage(TComponent* owner) : TGraphicControl(owner) {
  bounds_ = {0, 0, 105, 105};
  Picture.OnChange = [this](TObject*) { Invalidate(); };
}

void TImage::Paint(HDC dc) {
  const TGraphic* graphic = Picture.Graphic();
  if (graphic == nullptr) return;
  const TRect dest =
      Stretch ? TRect{0, 0, Width(), Height()} : TRect{0, 0, graphic->Width(), graphic->Height()};
  graphic->Draw(dc, dest);
}

// ---- TTimer -----------------------------------------------------------------------------

namespace {
constexpr UINT_PTR kTimerId = 1;
}

TTimer::TTimer(TComponent* owner) : TComponent(owner) {
  window_ = AllocateHWnd([this](HWND window, UINT msg, WPARAM wParam, LPARAM lParam) -> LRESULT {
    if (msg != WM_TIMER) return DefWindowProcW(window, msg, wParam, lParam);
    // A tick already queued when the timer was stopped is dropped here.
    if (enabled_ && interval_ != 0 && OnTimer) OnTimer(this);
    return 0;
  });
  if (!window_) throw std::runtime_error("no window for a timer");
  UpdateTimer();
}

TTimer::~TTimer() {
  // The timer ends with its window; a tick arriving meanwhile finds it off.
  enabled_ = false;
}

void TTimer::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  UpdateTimer();
}

void TTimer::SetInterval(unsigned milliseconds) {
  if (milliseconds == interval_) return;
  interval_ = milliseconds;
  UpdateTimer();
}

void TTimer::UpdateTimer() {
  KillTimer(window_.get(), kTimerId);
  if (enabled_ && interval_ != 0 && SetTimer(window_.get(), kTimerId, interval_, nullptr) == 0)
    throw std::runtime_error("no timers left");
}

}  // namespace ui
