// Panels, images and timers (ui/extctrls.h).
#include <algorithm>
#include <stdexcept>

#include "rtl/wide.h"
#include "ui/extctrls.h"
#include "ui/winclass.h"

namespace ui {

using rtl::W;

// ---- TPanel -----------------------------------------------------------------------------

TPanel::TPanel(TComponent* owner) : TWinControl(owner) {
  bounds_ = {0, 0, 185, 41};
  // A panel shows its own colour from the start, as if Color had been set.
  ParentColor = false;
  KeepDefaults();
}

void TPanel::CreateParamsFor(CreateParams& params) {
  TWinControl::CreateParamsFor(params);
  params.className = L"TPanel";
  // The bevel and the centred caption depend on the whole size.
  params.classStyle |= CS_HREDRAW | CS_VREDRAW;
}

void TPanel::AdjustClientRect(TRect& rect) const {
  int inset = BorderWidth;
  if (BevelOuter != bvNone) inset += BevelWidth;
  if (BevelInner != bvNone) inset += BevelWidth;
  rect.Left += inset;
  rect.Top += inset;
  rect.Right -= inset;
  rect.Bottom -= inset;
}

void TPanel::PaintWindow(HDC dc) {
  const TRect client = ClientRect();
  RECT r{client.Left, client.Top, client.Right, client.Bottom};
  auto bevel = [&](TBevelCut cut) {
    if (cut == bvNone) return;
    if (cut == bvSpace) {
      InflateRect(&r, -BevelWidth, -BevelWidth);
      return;
    }
    const UINT edge = cut == bvRaised ? BDR_RAISEDINNER : BDR_SUNKENOUTER;
    for (int i = 0; i < BevelWidth; ++i) {
      DrawEdge(dc, &r, edge, BF_RECT);
      InflateRect(&r, -1, -1);
    }
  };
  bevel(BevelOuter);
  InflateRect(&r, -BorderWidth, -BorderWidth);
  bevel(BevelInner);
  if (!ShowCaption || caption_.empty()) return;
  const rtl::select_object font(dc, FontHandle());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc,
               static_cast<COLORREF>(ColorToRGB(Enabled() ? ResolvedFont().Color : clGrayText)));
  DrawTextW(dc, W(caption_),
            static_cast<int>(caption_.size()), &r,
            DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_EXPANDTABS);
}

// ---- TImage -----------------------------------------------------------------------------

TImage::TImage(TComponent* owner) : TGraphicControl(owner) {
  bounds_ = {0, 0, 105, 105};
  Picture.OnChange = [this](TObject*) { Invalidate(); };
}

void TImage::Paint(HDC dc) {
  const TGraphic* graphic = Picture.Graphic();
  if (graphic == nullptr) return;
  int w = graphic->Width();
  int h = graphic->Height();
  if (Proportional && (Stretch || w > Width() || h > Height())) {
    // The largest size of the picture's shape that fits.
    if (static_cast<long long>(Width()) * h <= static_cast<long long>(Height()) * w) {
      h = static_cast<int>(static_cast<long long>(h) * Width() / w);
      w = Width();
    } else {
      w = static_cast<int>(static_cast<long long>(w) * Height() / h);
      h = Height();
    }
  } else if (Stretch) {
    w = Width();
    h = Height();
  }
  const int left = Center ? (Width() - w) / 2 : 0;
  const int top = Center ? (Height() - h) / 2 : 0;
  graphic->Draw(dc, TRect{left, top, left + w, top + h});
}

// ---- TShape -----------------------------------------------------------------------------

TShape::TShape(TComponent* owner) : TGraphicControl(owner) { bounds_ = {0, 0, 65, 65}; }

void TShape::Paint(HDC dc) {
  // The pen's line runs in the middle of its width, so the figure is inset by half of it.
  const int x = Pen.Width / 2;
  int w = Width() - Pen.Width + 1;
  int h = Height() - Pen.Width + 1;
  if (Pen.Width == 0) {
    --w;
    --h;
  }
  if (Shape == stSquare || Shape == stRoundSquare || Shape == stCircle) w = h = std::min(w, h);
  const rtl::unique_hpen pen = CreatePenHandle(Pen);
  const rtl::unique_hbrush brush = CreateBrushHandle(Brush);
  const rtl::select_object selectedPen(dc, pen.get());
  const rtl::select_object selectedBrush(dc, brush.get());
  switch (Shape) {
    case stRectangle:
    case stSquare: Rectangle(dc, x, x, x + w, x + h); break;
    case stRoundRect:
    case stRoundSquare: {
      const int corner = std::min(w, h) / 4;
      RoundRect(dc, x, x, x + w, x + h, corner, corner);
      break;
    }
    case stEllipse:
    case stCircle: Ellipse(dc, x, x, x + w, x + h); break;
  }
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
  if (!window_) throw rtl::EOSError(u"Kein Fenster für einen Zeitgeber", GetLastError());
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
    throw rtl::EOSError(u"Keine Zeitgeber mehr verfügbar", GetLastError());
}

void TPanel::ChangeScale(int to, int from) {
  BorderWidth = ScaleValue(BorderWidth, to, from);
  TWinControl::ChangeScale(to, from);
}

void TShape::ChangeScale(int to, int from) {
  Pen.Width = ScaleValue(Pen.Width, to, from);
  TGraphicControl::ChangeScale(to, from);
}

}  // namespace ui
