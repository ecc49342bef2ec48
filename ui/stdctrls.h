// Labels: text drawn by the parent, sized to the text when AutoSize. Windows build only.
#pragma once

#include "ui/controls.h"

namespace ui {

// A caption drawn in the label's font, top left, wrapped at the label's width when
// WordWrap. With AutoSize the label takes the size of its text whenever the caption, the
// wrapping or the prefix rule changes, or AdjustBounds is called after a font change:
// wrapped text keeps the left edge and at most the current width; unwrapped text takes
// its own width. "&x" underlines x when ShowAccelChar, and shows "&x" otherwise.
class TLabel : public TGraphicControl {
 public:
  explicit TLabel(TComponent* owner);  // 65x17, auto-size, no wrapping

  bool AutoSize() const { return autoSize_; }
  void SetAutoSize(bool autoSize);
  bool WordWrap() const { return wordWrap_; }
  void SetWordWrap(bool wordWrap);
  bool ShowAccelChar() const { return showAccelChar_; }
  void SetShowAccelChar(bool show);
  // Without it the label fills its bounds with its colour first.
  bool Transparent = false;

  void SetCaption(const std::u16string& caption) override;
  // Sizes the label to its text now, when AutoSize.
  void AdjustBounds();

 protected:
  void Paint(HDC dc) override;

 private:
  UINT TextFlags() const;

  bool autoSize_ = true;
  bool wordWrap_ = false;
  bool showAccelChar_ = true;
};

}  // namespace ui
