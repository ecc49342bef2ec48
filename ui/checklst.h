// Check list boxes: a list box with a check box before each line. Windows build only.
#pragma once

#include <vector>

#include "ui/stdctrls.h"

namespace ui {

// The system list box does the selecting, scrolling and hit testing; this class paints
// the lines with their boxes and toggles a box clicked on (or the selected line's box on
// the space key). The marks belong to the lines' positions: inserting or deleting lines
// does not move them.
class TCheckListBox : public TListBox {
 public:
  using TListBox::TListBox;

  bool Checked(int index) const;
  void SetChecked(int index, bool checked);
  TNotifyEvent OnClickCheck;

  // The marks are no property of the framework's; they are stored as "Checks" of our own:
  // binary, one byte per line, 1 for a checked box and 0 for an empty one (any other byte
  // reads as checked), after the lines, and only when a box is checked.
  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

  LRESULT WndProc(UINT msg, WPARAM wParam, LPARAM lParam) override;

 private:
  void Toggle(int index);
  void PaintLines();

  std::vector<bool> checked_;
};

}  // namespace ui
