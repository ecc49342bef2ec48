// Check list boxes (ui/checklst.h).
#include "ui/checklst.h"

#include <windowsx.h>

#include <algorithm>

#include "rtl/handles.h"
#include "rtl/wide.h"

namespace ui {

using rtl::W;

namespace {

// The box is as high as a line and square, with a little room on its right.
int BoxWidth(const RECT& line) { return line.bottom - line.top + 2; }

}  // namespace

bool TCheckListBox::Checked(int index) const {
  return index >= 0 && static_cast<size_t>(index) < checked_.size() &&
         checked_[static_cast<size_t>(index)];
}

void TCheckListBox::SetChecked(int index, bool checked) {
  if (index < 0 || index >= Count()) return;
  if (checked_.size() <= static_cast<size_t>(index))
    checked_.resize(static_cast<size_t>(index) + 1);
  checked_[static_cast<size_t>(index)] = checked;
  Invalidate();
}

void TCheckListBox::Toggle(int index) {
  SetChecked(index, !Checked(index));
  if (OnClickCheck) OnClickCheck(this);
}

LRESULT TCheckListBox::WndProc(UINT msg, WPARAM wParam, LPARAM lParam) {
  switch (msg) {
    case WM_PAINT:
      PaintLines();
      return 0;
    case WM_LBUTTONDOWN: {
      const POINT p{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
      const int index = ItemAtPos(p, true);
      RECT line{};
      if (index >= 0 &&
          SendMessageW(Handle(), LB_GETITEMRECT, static_cast<WPARAM>(index),
                       reinterpret_cast<LPARAM>(&line)) != LB_ERR &&
          p.x < line.left + BoxWidth(line))
        Toggle(index);
      break;
    }
    case WM_KEYDOWN:
      if (wParam == VK_SPACE && ItemIndex() >= 0) Toggle(ItemIndex());
      break;
    case CN_COMMAND:
      // The list box draws a new selection itself, over the boxes: paint it all again.
      if (HIWORD(wParam) == LBN_SELCHANGE) Invalidate();
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_VSCROLL:
    case WM_MOUSEWHEEL: {
      const LRESULT result = TListBox::WndProc(msg, wParam, lParam);
      Invalidate();
      return result;
    }
    default:
      break;
  }
  return TListBox::WndProc(msg, wParam, lParam);
}

void TCheckListBox::PaintLines() {
  const HWND window = Handle();
  PAINTSTRUCT ps;
  const HDC dc = BeginPaint(window, &ps);
  RECT client;
  GetClientRect(window, &client);
  {
    const rtl::unique_hbrush back(
        CreateSolidBrush(static_cast<COLORREF>(ColorToRGB(ResolvedColor()))));
    FillRect(dc, &client, back.get());
  }
  const rtl::select_object font(dc, FontHandle());
  SetBkMode(dc, TRANSPARENT);
  const int selected = ItemIndex();
  const int top = static_cast<int>(SendMessageW(window, LB_GETTOPINDEX, 0, 0));
  for (int i = std::max(top, 0); i < Count(); ++i) {
    RECT line{};
    if (SendMessageW(window, LB_GETITEMRECT, static_cast<WPARAM>(i),
                     reinterpret_cast<LPARAM>(&line)) == LB_ERR ||
        line.top >= client.bottom)
      break;
    RECT box{line.left + 1, line.top + 1, line.left + BoxWidth(line) - 2, line.bottom - 1};
    DrawFrameControl(dc, &box, DFC_BUTTON,
                     DFCS_BUTTONCHECK | DFCS_FLAT | (Checked(i) ? DFCS_CHECKED : 0));
    RECT text{line.left + BoxWidth(line), line.top, line.right, line.bottom};
    if (i == selected) FillRect(dc, &text, GetSysColorBrush(COLOR_HIGHLIGHT));
    SetTextColor(dc, GetSysColor(i == selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    const std::u16string s = Items().Get(i);
    text.left += 2;
    DrawTextW(dc, W(s), static_cast<int>(s.size()), &text,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
  }
  EndPaint(window, &ps);
}

}  // namespace ui
