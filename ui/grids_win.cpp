// String grids (ui/grids.h).
#include "ui/grids.h"

#include <algorithm>

#include "rtl/handles.h"
#include "rtl/wide.h"

namespace ui {

using rtl::W;

TStringGrid::TStringGrid(TComponent* owner)
    : TWinControl(owner), cells_(5, std::vector<std::u16string>(5)) {
  bounds_ = {0, 0, 320, 120};
  ParentColor = false;
  Color = clWindow;
  KeepDefaults();
}

void TStringGrid::SetColCount(int count) {
  colCount_ = std::max(count, 1);
  for (auto& cells : cells_) cells.resize(static_cast<size_t>(colCount_));
  Invalidate();
}

void TStringGrid::SetRowCount(int count) {
  cells_.resize(static_cast<size_t>(std::max(count, 1)),
                std::vector<std::u16string>(static_cast<size_t>(colCount_)));
  row_ = std::min(row_, RowCount() - 1);
  Invalidate();
}

void TStringGrid::SetRow(int row) {
  if (row < 0 || row >= RowCount()) return;
  row_ = row;
  Invalidate();
}

std::u16string TStringGrid::Cells(int col, int row) const {
  if (col < 0 || col >= colCount_ || row < 0 || row >= RowCount()) return {};
  return cells_[static_cast<size_t>(row)][static_cast<size_t>(col)];
}

void TStringGrid::SetCells(int col, int row, const std::u16string& text) {
  if (col < 0 || col >= colCount_ || row < 0 || row >= RowCount()) return;
  cells_[static_cast<size_t>(row)][static_cast<size_t>(col)] = text;
  Invalidate();
}

void TStringGrid::DeleteRow(int row) {
  if (row < 0 || row >= RowCount() || RowCount() == 1) return;
  cells_.erase(cells_.begin() + row);
  if (row_ > row) --row_;
  row_ = std::min(row_, RowCount() - 1);
  Invalidate();
}

void TStringGrid::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  if (button == mbLeft && DefaultRowHeight > 0 && y >= 0) {
    const int row = y / DefaultRowHeight;
    if (row >= FixedRows) SetRow(row);
  }
  TWinControl::MouseDown(button, shift, x, y);
}

void TStringGrid::CreateParamsFor(CreateParams& params) {
  TWinControl::CreateParamsFor(params);
  params.className = L"TStringGrid";
  params.style |= WS_TABSTOP;
  params.exStyle |= WS_EX_CLIENTEDGE;
}

void TStringGrid::PaintWindow(HDC dc) {
  const rtl::select_object font(dc, FontHandle());
  SetBkMode(dc, TRANSPARENT);
  const rtl::unique_hpen line(CreatePen(PS_SOLID, 1, GetSysColor(COLOR_BTNSHADOW)));
  const rtl::select_object pen(dc, line.get());
  for (int r = 0; r < RowCount(); ++r) {
    for (int c = 0; c < colCount_; ++c) {
      RECT cell{c * DefaultColWidth, r * DefaultRowHeight, (c + 1) * DefaultColWidth,
                (r + 1) * DefaultRowHeight};
      const bool fixed = r < FixedRows || c < FixedCols;
      const int back = fixed ? COLOR_BTNFACE : r == row_ ? COLOR_HIGHLIGHT : COLOR_WINDOW;
      FillRect(dc, &cell, GetSysColorBrush(back));
      MoveToEx(dc, cell.right - 1, cell.top, nullptr);
      LineTo(dc, cell.right - 1, cell.bottom - 1);
      LineTo(dc, cell.left - 1, cell.bottom - 1);
      SetTextColor(dc,
                   GetSysColor(back == COLOR_HIGHLIGHT ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
      const std::u16string& text = cells_[static_cast<size_t>(r)][static_cast<size_t>(c)];
      cell.left += 2;
      DrawTextW(dc, W(text), static_cast<int>(text.size()),
                &cell, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    }
  }
}

}  // namespace ui
