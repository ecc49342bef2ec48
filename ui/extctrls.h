// Panels, images and timers. Windows build only.
#pragma once

#include "ui/canvas.h"
#include "ui/controls.h"

namespace ui {

enum class TBevelCut { bvNone, bvLowered, bvRaised, bvSpace };
using enum TBevelCut;

// A plain container that paints its Color (or, with ParentBackground, its parent's
// background), an outer and an inner bevel with BorderWidth between them, and its
// caption centred on one line, with "&x" underlining x. Bevels and border take their
// width off the area the aligned children share.
class TPanel : public TWinControl {
 public:
  explicit TPanel(TComponent* owner);  // 185x41, raised, clBtnFace, own colour

  TBevelCut BevelOuter = bvRaised;
  TBevelCut BevelInner = bvNone;
  int BevelWidth = 1;
  int BorderWidth = 0;
  bool ShowCaption = true;

  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

 protected:
  void CreateParamsFor(CreateParams& params) override;
  void AdjustClientRect(TRect& rect) const override;
  void PaintWindow(HDC dc) override;
  void ChangeScale(int to, int from) override;  // BorderWidth too
};

// Shows a picture: at its own size, or with Stretch scaled to the control; Proportional
// keeps the aspect ratio (and only shrinks unless Stretch); Center centres it, else it
// sits in the top left corner. A picture with alpha is blended over what lies behind;
// Transparent is kept for the code that states it. Drawn by its parent; no window.
class TImage : public TGraphicControl {
 public:
  explicit TImage(TComponent* owner);  // 105x105

  TPicture Picture;  // a change repaints the image
  bool Stretch = false;
  bool Proportional = false;
  bool Center = false;
  bool Transparent = false;

  // The picture is stored as "Picture.Data": the name of its graphic class, then its bytes.
  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

 protected:
  void Paint(HDC dc) override;
};

enum class TShapeType { stRectangle, stSquare, stRoundRect, stRoundSquare, stEllipse, stCircle };
using enum TShapeType;

// A figure drawn with Pen and Brush in the control's bounds; a wide pen draws inside
// them. After changing Pen or Brush of a visible shape, call Invalidate().
class TShape : public TGraphicControl {
 public:
  explicit TShape(TComponent* owner);  // 65x65 rectangle, black pen, white brush

  TShapeType Shape = stRectangle;
  TPen Pen;
  TBrush Brush;

  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

 protected:
  void Paint(HDC dc) override;
  void ChangeScale(int to, int from) override;  // the pen's width too
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

  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

 private:
  void UpdateTimer();

  rtl::unique_hwnd window_;
  bool enabled_ = true;
  unsigned interval_ = 1000;
};

}  // namespace ui
