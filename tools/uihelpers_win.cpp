// The interface helpers on real controls: each gathers what the control or the system
// knows, asks the rule in uihelpers.cpp and applies the answer.
#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <algorithm>
#include <typeinfo>

#include "dialog/QMMessageDlgVCL.h"
#include "rtl/wide.h"
#include "tools/search.h"
#include "tools/uihelpers.h"
#include "ui/buttons.h"
#include "ui/screen.h"
#include "ui/winclass.h"

namespace Qm_tools {

using rtl::W;

namespace {

// The list box's window for a const reader, as its own members reach it.
class TListBoxCracker : public ui::TListBox {
 public:
  using ui::TListBox::Window;
};

TTextWidth MeasureIn(const ui::TCanvas& canvas) {
  return [&canvas](const std::u16string& text) { return canvas.TextWidth(text); };
}

// The point of the parent's client area on the screen; without a parent the point is
// taken as a screen point already.
POINT ParentToScreen(const ui::TControl& control, TPoint p) {
  const POINT client{p.X, p.Y};
  return control.Parent() != nullptr ? control.Parent()->ClientToScreen(client) : client;
}

// The windowed control of this module the window belongs to, or null. Every window of
// the control model runs one window procedure, the one its own classes are registered
// with, and only such a window holds its control in GWLP_USERDATA; the hidden helper
// windows of the module never lie under the pointer.
ui::TWinControl* ControlOfWindow(HWND window) {
  // Up to the top-level window, not on to its owner.
  const auto up = [](HWND w) {
    return GetWindowLongW(w, GWL_STYLE) & WS_CHILD ? GetParent(w) : nullptr;
  };
  LONG_PTR modelProc = 0;
  for (HWND w = window; w != nullptr && modelProc == 0; w = up(w))
    if (reinterpret_cast<HINSTANCE>(GetClassLongPtrW(w, GCLP_HMODULE)) == ui::ModuleInstance())
      modelProc = static_cast<LONG_PTR>(GetClassLongPtrW(w, GCLP_WNDPROC));
  for (HWND w = window; w != nullptr && modelProc != 0; w = up(w))
    if (GetWindowLongPtrW(w, GWLP_WNDPROC) == modelProc)
      return reinterpret_cast<ui::TWinControl*>(GetWindowLongPtrW(w, GWLP_USERDATA));
  return nullptr;
}

// The topmost visible control without a window of `parent` at the screen point, or
// `parent` itself.
ui::TControl* DescendTo(ui::TWinControl& parent, POINT screen) {
  const POINT p = parent.ScreenToClient(screen);
  for (int i = parent.ControlCount() - 1; i >= 0; --i) {
    ui::TControl* child = parent.Controls(i);
    const TRect r = child->BoundsRect();
    if (child->AsWinControl() == nullptr && child->Visible() && p.x >= r.Left && p.x < r.Right &&
        p.y >= r.Top && p.y < r.Bottom)
      return child;
  }
  return &parent;
}

}  // namespace

std::u16string WrapTextForLabel(ui::TLabel& Label, const std::u16string& Text) {
  ui::TCanvas canvas;
  canvas.Font = Label.ResolvedFont();
  // A label has no border: its client width is its width.
  return WrapTextForLabel(Label.Width(), MeasureIn(canvas), Text);
}

std::u16string FitStrLen(int MaxWidth, const ui::TCanvas& Canvas, const std::u16string& Text) {
  return FitStrLen(MaxWidth, MeasureIn(Canvas), Text);
}

void ReplaceCaptionText(ui::TForm& Form, const std::u16string& OldText,
                        const std::u16string& NewText) {
  const auto replaced = [&](const std::u16string& text) {
    return ReplaceStr(text, OldText, NewText, false);
  };
  for (int i = 0; i < Form.ComponentCount(); ++i) {
    ui::TComponent* component = Form.Components(i);
    if (auto* memo = dynamic_cast<ui::TMemo*>(component)) {
      memo->SetText(replaced(memo->Text()));
    } else if (dynamic_cast<ui::TLabel*>(component) || dynamic_cast<ui::TPanel*>(component) ||
               dynamic_cast<ui::TCheckBox*>(component)) {
      auto* control = static_cast<ui::TControl*>(component);
      control->SetCaption(replaced(control->Caption()));
    } else if (auto* item = dynamic_cast<ui::TMenuItem*>(component)) {
      item->Caption = replaced(item->Caption);
      item->Hint = replaced(item->Hint);
    } else if (auto* button = dynamic_cast<ui::TSpeedButton*>(component)) {
      button->Hint = replaced(button->Hint);
    }
  }
}

void DrawAttachInfo(const ui::TCanvas& Canvas, const std::u16string& FileName, const TRect& Rect,
                    bool Large, int DX, int DY) {
  SHFILEINFOW info{};
  // By the name's attributes only: the file need not exist.
  const UINT flags = SHGFI_SYSICONINDEX | SHGFI_USEFILEATTRIBUTES | (Large ? 0 : SHGFI_SMALLICON);
  const auto images = reinterpret_cast<HIMAGELIST>(
      SHGetFileInfoW(W(FileName), FILE_ATTRIBUTE_NORMAL,
                     &info, sizeof info, flags));
  // The system image list belongs to the shell: it is not destroyed here.
  if (images != nullptr)
    ImageList_Draw(images, info.iIcon, Canvas.Handle, Rect.Left + DX, Rect.Top + DY,
                   ILD_TRANSPARENT);
}

void qm_ShowPopUp(ui::TControl& Control, ui::TPopupMenu& Menu, int Flag) {
  const POINT p =
      ParentToScreen(Control, PopupPoint(Control.Left(), Control.Top(), Control.Height(), Flag));
  Menu.Popup(p.x, p.y);
}

void qm_ShowPopUpPanel(ui::TPanel& Panel, int X, ui::TPopupMenu& Menu, int Flag) {
  const POINT p = ParentToScreen(Panel, PopupPoint(X, Panel.Top(), Panel.Height(), Flag));
  Menu.Popup(p.x, p.y);
}

void qm_ShowSysMenu(ui::TControl& Control, HWND Wnd) {
  constexpr UINT kSysMenu = 0x0313;  // undocumented: shows the window's system menu there
  const POINT p =
      ParentToScreen(Control, PopupPoint(Control.Left(), Control.Top(), Control.Height(), 0));
  SendMessageW(Wnd, kSysMenu, 0, static_cast<LPARAM>(SysMenuLParam({p.x, p.y})));
}

void GetControlHierarchyUnderMouse() {
  POINT cursor{};
  GetCursorPos(&cursor);
  ui::TWinControl* windowed = ControlOfWindow(WindowFromPoint(cursor));
  if (windowed == nullptr) {
    QMMessageDlgVCL::ShowMessage(NoControlText(rtl::TypeName(typeid(ui::TScreen))));
    return;
  }
  std::vector<std::pair<std::u16string, std::u16string>> chain;
  for (ui::TControl* c = DescendTo(*windowed, cursor); c != nullptr; c = c->Parent())
    chain.emplace_back(c->ClassName(), c->Name);
  QMMessageDlgVCL::ShowMessage(ControlHierarchyText(chain));
}

void DeleteRow(ui::TStringGrid& Grid, int Row) {
  const int current = Grid.Row();
  void (ui::TStringGrid::*deleteRow)(int) = &TGridCracker::DeleteRow;
  (Grid.*deleteRow)(Row);
  Grid.SetRow(current < Grid.RowCount() ? current : Grid.RowCount() - 1);
}

int GetSectionLeftPos(ui::THeaderControl& Header, int Index) {
  std::vector<int> widths;
  for (int i = 0; i < std::min(Index, Header.Sections.Count()); ++i)
    widths.push_back(Header.Sections[i].Width());
  return GetSectionLeftPos(widths, Index);
}

bool IsListBoxValid(const ui::TListBox& LB) { return IsListBoxValid(LB.Count(), LB.ItemIndex()); }

bool NoItemsAndNoSelection(const ui::TListBox& LB) {
  return NoItemsAndNoSelection(LB.Count(), LB.ItemIndex());
}

int FindLbIdx(const ui::TListBox& LB, int X, int Y) {
  // Without a window no line shows.
  if (!LB.HandleAllocated()) return -1;
  HWND (ui::TListBox::*window)() const = &TListBoxCracker::Window;
  const HWND list = (LB.*window)();
  RECT client{};
  GetClientRect(list, &client);
  // Outside the client area without asking the list: its lines go on below the box.
  if (X < client.left || Y < client.top || X >= client.right || Y >= client.bottom) return -1;
  // The lines of this list box are all as high as the first.
  return ListItemAtPoint({X, Y}, client.right, client.bottom,
                         static_cast<int>(SendMessageW(list, LB_GETTOPINDEX, 0, 0)),
                         static_cast<int>(SendMessageW(list, LB_GETITEMHEIGHT, 0, 0)), LB.Count());
}

int FindcLbIdx(const ui::TCheckListBox& LB, int X, int Y) { return FindLbIdx(LB, X, Y); }

std::u16string ColorToHtml(TColor Color) { return RgbToHtml(ui::ColorToRGB(Color)); }

}  // namespace Qm_tools
