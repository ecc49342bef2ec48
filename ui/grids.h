// String grids: a table of texts in cells, drawn by the control itself. Only what this
// system uses: the sizes, the current row, the cells and the protected row deletion.
// Windows build only.
#pragma once

#include <string>
#include <vector>

#include "ui/controls.h"

namespace ui {

// Columns and rows of equal size; the first FixedRows rows and FixedCols columns are
// drawn as headings. A click picks the row under the pointer as the current Row.
class TStringGrid : public TWinControl {
 public:
  explicit TStringGrid(TComponent* owner);  // 320x120, 5x5 cells, one fixed row and column

  int ColCount() const { return colCount_; }
  void SetColCount(int count);
  int RowCount() const { return static_cast<int>(cells_.size()); }
  // New rows are empty; rows cut off are lost. At least one row is kept.
  void SetRowCount(int count);
  // The current row; setting one outside the rows is ignored.
  int Row() const { return row_; }
  void SetRow(int row);
  // "" outside the grid; writing outside it is ignored.
  std::u16string Cells(int col, int row) const;
  void SetCells(int col, int row, const std::u16string& text);

  int FixedRows = 1;
  int FixedCols = 1;
  int DefaultColWidth = 64;
  int DefaultRowHeight = 24;

  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  // The counts, fixed rows and columns and default sizes are stored; the cells are not.
  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

 protected:
  // Takes the row out, moving the later ones up. The current row follows its line (one up
  // when a row above it goes); when its own line goes it stays, within the rows left.
  void DeleteRow(int row);
  void CreateParamsFor(CreateParams& params) override;
  void PaintWindow(HDC dc) override;

 private:
  int colCount_ = 5;
  int row_ = 1;
  std::vector<std::vector<std::u16string>> cells_;
};

}  // namespace ui
