// Panels, images and timers. Windows build only.
#pragma once

#include "ui/controls.h"

namespace ui {

enum class TBevelCut { bvNone, bvLowered, bvRaised, bvSpace };
using enum TBevelCut;

// A plain container that paints its Color (or, with ParentBackground, its parent's
// background), an outer bevel and its caption centred. The bevel takes its width off
// the area the aligned children share.
class TPanel : public TWinControl {
 public:
  explicit TPanel(TComponent* owner);  // 185x41, raised, clBtnFace, own colour

  TBevelCut BevelOuter = bvRaised;
  int BevelWidth = 1;
  bool ShowCaption = true;

 protected:
  void CreateParamsFor(CreateParams& params) override;
  void AdjustClientRect(TRect& rect) const override;
  void PaintWindow(HDC dc) override;
};

// Shows a picture, at its own size from the top left corner or, with Stretch, scaled to
// the control. Drawn by its parent; it has no window.
class TImage : public TGraphicControl {
 public:
  explicit TImage(TComponent* owner);  // 105x105

  TPicture Picture;  // a change repaints the image
  bool Stretch = false;

 protected:
  void Paint(HDC dc) override;
};

// Calls OnTimer every Interval milliseconds while Enabled, through WM_TIMER on a hidden
// window of its own; the calls come from the message loop, whichever module runs it.
// Turning it on (or changing Interval) starts a full interval afresh.
class TTimer : public TComponent {
 public:
  explicit TTimer(TComponent* owner);  // enabled, 1000 ms
  ~TTimer() override;

  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  unsigned Interval() const { return interval_; }
  // 0 stops the timer while keeping it enabled.
  void SetInterval(unsigned milliseconds);

  TNotifyEvent OnTimer;

 private:
  void UpdateTimer();

  rtl::unique_hwnd window_;
  bool enabled_ = true;
  unsigned interval_ = 1000;
};

}  // namespace ui
