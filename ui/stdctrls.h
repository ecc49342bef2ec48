// Labels: text drawn by the parent, sized to the text when AutoSize. List boxes, memos and
// check boxes: system windows of their own. Windows build only.
#pragma once

#include <memory>

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
  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

 protected:
  void Paint(HDC dc) override;
  void ChangeScale(int to, int from) override;  // an auto-sized label measures again

 private:
  UINT TextFlags() const;

  bool autoSize_ = true;
  bool wordWrap_ = false;
  bool showAccelChar_ = true;
};

// A system list box of lines. Items may be filled before the window exists; the window
// takes them (and the selection) when it is made, and from then on the window holds the
// selection, so a selection the user (or LB_SETCURSEL) makes is what ItemIndex reads.
class TListBox : public TWinControl {
 public:
  explicit TListBox(TComponent* owner);  // 121x97, sunken border
  ~TListBox() override;

  rtl::TStrings& Items() const;
  int Count() const;
  // The selected line, -1 for none; an index outside the lines selects none.
  int ItemIndex() const;
  void SetItemIndex(int index);
  // The line whose rectangle holds the client point `pos`; outside every line -1 when
  // `existing`, else Count().
  int ItemAtPos(POINT pos, bool existing) const;

  // The lines are stored as "Items.Strings".
  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

 protected:
  void CreateParamsFor(CreateParams& params) override;
  void CreateWnd() override;
  // Handle() for the const readers.
  HWND Window() const;

 private:
  class TListBoxStrings;
  std::unique_ptr<TListBoxStrings> items_;
  int itemIndex_ = -1;
};

// A multi-line system edit. The text is the window's, so what the user typed is read.
class TMemo : public TWinControl {
 public:
  explicit TMemo(TComponent* owner);  // 185x89, sunken border

  std::u16string Text() const;
  void SetText(const std::u16string& text);

  // The text is stored line by line as "Lines.Strings", split at each CR LF and nowhere
  // else: a text that ends with a line break ends with an empty line, and joining the lines
  // with CR LF gives the text back as it was.
  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

 protected:
  void CreateParamsFor(CreateParams& params) override;
};

// A system check box showing its Caption at the right of the box.
class TCheckBox : public TWinControl {
 public:
  explicit TCheckBox(TComponent* owner);  // 97x17

  bool Checked() const;
  void SetChecked(bool checked);

  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

 protected:
  void CreateParamsFor(CreateParams& params) override;
  void CreateWnd() override;

 private:
  bool checked_ = false;
};

}  // namespace ui
