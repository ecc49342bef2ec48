// Interface helpers of the tool library: text fitted to a width, captions replaced across a
// form, popup and system menus placed under a control, a file type's shell icon drawn,
// list-box and grid conveniences, colour arithmetic and pictures scaled into a container.
// The rules (measuring loops, colours, rectangles, points, counts) build everywhere; the
// routines on real controls are in uihelpers_win.cpp (windows build).
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ui/align.h"
#include "ui/color.h"
#include "tools/qm_tools_api.h"

#ifdef _WIN32
#include <windows.h>

#include "ui/canvas.h"
#include "ui/checklst.h"
#include "ui/comctrls.h"
#include "ui/extctrls.h"
#include "ui/forms.h"
#include "ui/grids.h"
#include "ui/menus.h"
#include "ui/stdctrls.h"
#endif

namespace Qm_tools {

using ui::TColor;
using ui::TRect;

// A point in some window's coordinates, or the screen's.
struct TPoint {
  int X = 0, Y = 0;
  bool operator==(const TPoint&) const = default;
};

// The pixel width of a text in some font.
using TTextWidth = std::function<int(const std::u16string& text)>;

// ---- Pure rules ---------------------------------------------------------------------------

// A text without spaces broken into lines (CR LF) whose width stays within Width; a text
// with a space comes back unchanged, since a word-wrapping label breaks it itself. When
// the last character overflows, the line it would open is not written; a character wider
// than Width is preceded by an empty line.
//   "abcdef" with 3 pixels a character and Width 10  ->  "abc\r\ndef"
//   "abcd"                                          ->  "abc\r\n"
//   "ab" with Width 2                                ->  "\r\na\r\n"
QM_TOOLS_API std::u16string WrapTextForLabel(int Width, const TTextWidth& TextWidth, const std::u16string& Text);

// Text that fits within MaxWidth as it is; otherwise cut from the end until it with "..."
// fits within MaxWidth - 2, then "..." appended (only "..." when nothing fits).
QM_TOOLS_API std::u16string FitStrLen(int MaxWidth, const TTextWidth& TextWidth, const std::u16string& Text);

// Each of red, green and blue moved by its own value / 255 * Amount, up when Lighter,
// clamped to 0..255 and rounded (halves to even). The top byte is dropped, so a system
// colour must be resolved first. Black stays black when lightened.
//   ChangeColor(0x0000FF, true, 255) == 0x0000FF   (red doubled and clamped)
//   ChangeColor(0x808080, false, 255) == 0x000000
QM_TOOLS_API TColor ChangeColor(TColor Color, bool Lighter, double Amount);

// A colour already resolved to 0x00BBGGRR as "#RRGGBB", upper-case hex:
//   RgbToHtml(0x0080FF) == "#FF8000"
QM_TOOLS_API std::u16string RgbToHtml(TColor Rgb);

// The selection colour for the system in curOS: 0x4677F0 when it names "ubuntu", 0x72B392
// when it names "mint" (this wins when both occur), else Default. Case-sensitive.
QM_TOOLS_API TColor GetSysSelColor(TColor Default);

// The rectangle shrunk by N on every side; a negative N grows it.
QM_TOOLS_API TRect DecRect(const TRect& Rect, int N);

// Scales W x H so that it just fits CW x CH with its aspect ratio kept, up or down; the
// results are whole numbers (halves to even). A zero W or H is left alone.
//   FitPictureToContainer(200, 100, w = 50, h = 50)  ->  w = 100, h = 100
QM_TOOLS_API void FitPictureToContainer(double CW, double CH, double& W, double& H);
// The same on integers, without the zero test: a zero container or picture gives a
// quotient that is not finite, and a side whose quotient is not finite is left as it was
// (the callers avoid such sizes).
QM_TOOLS_API void FitPictureToContainerInt(int CW, int CH, int& W, int& H);

// The left edge of section Index of a header whose sections have these widths: the sum of
// the widths before it (0 for the first; an Index past the end sums them all).
QM_TOOLS_API int GetSectionLeftPos(const std::vector<int>& Widths, int Index);

// A list with Count lines and ItemIndex selected (-1 none): it has lines and a selection.
QM_TOOLS_API bool IsListBoxValid(int Count, int ItemIndex);
// True when there are no lines, else when nothing is selected: the name's "and" is "or".
QM_TOOLS_API bool NoItemsAndNoSelection(int Count, int ItemIndex);

// The line of a list box at the client point P, from the top line's index and the line
// height: -1 when P lies outside the ClientWidth x ClientHeight client area (whatever
// lines are scrolled away there), below the last of Count lines, or when the window
// refused the top index or the height (LB_ERR, 0).
//   16-pixel lines from line 20, P = (5, 40)  ->  22
QM_TOOLS_API int ListItemAtPoint(TPoint P, int ClientWidth, int ClientHeight, int TopIndex, int ItemHeight,
                    int Count);

// Where a popup menu opens for a control at Left/Top of height Height, in the parent's
// client coordinates: one pixel above its top when Flag is non-zero (the menu's top left
// corner there), else one pixel below its bottom.
QM_TOOLS_API TPoint PopupPoint(int Left, int Top, int Height, int Flag);
// The lParam of the system-menu message for a screen point: x in the low 16 bits, y in
// the high 16 bits, each cut to 16 bits as the window system packs it.
QM_TOOLS_API std::uint32_t SysMenuLParam(TPoint Screen);

// The message of GetControlHierarchyUnderMouse for the controls found, innermost first,
// each as (class name, component name).
QM_TOOLS_API std::u16string ControlHierarchyText(
    const std::vector<std::pair<std::u16string, std::u16string>>& Controls);
// Its message when no control of this program is under the pointer.
QM_TOOLS_API std::u16string NoControlText(const std::u16string& ScreenClassName);

// ---- The system (windows build) -----------------------------------------------------------

#ifdef _WIN32
// The framework's string grid, only to reach its protected row deletion from outside.
class QM_TOOLS_API TGridCracker : public ui::TStringGrid {
 public:
  using ui::TStringGrid::DeleteRow;
};

// WrapTextForLabel measured in the label's font over its client width.
QM_TOOLS_API std::u16string WrapTextForLabel(ui::TLabel& Label, const std::u16string& Text);
// FitStrLen measured in the canvas's font.
QM_TOOLS_API std::u16string FitStrLen(int MaxWidth, const ui::TCanvas& Canvas, const std::u16string& Text);

// Replaces OldText by NewText (case-sensitive) in every component the form owns: the text
// of labels, panels, memos and check boxes, the caption and hint of menu items, the hint
// of speed buttons. Other buttons keep theirs.
QM_TOOLS_API void ReplaceCaptionText(ui::TForm& Form, const std::u16string& OldText,
                        const std::u16string& NewText);

// Draws the shell's icon for the file's type (the file need not exist), 32 pixels when
// Large, else 16, transparent, at (Rect.Left + DX, Rect.Top + DY) on Canvas.Handle.
QM_TOOLS_API void DrawAttachInfo(const ui::TCanvas& Canvas, const std::u16string& FileName, const TRect& Rect,
                    bool Large, int DX, int DY);

// Pops Menu up at the control's left edge, below the control (Flag 0) or with its top
// one pixel above it; returns when the menu has closed.
QM_TOOLS_API void qm_ShowPopUp(ui::TControl& Control, ui::TPopupMenu& Menu, int Flag);
// The same at X (in the parent's client coordinates) instead of the panel's left edge.
QM_TOOLS_API void qm_ShowPopUpPanel(ui::TPanel& Panel, int X, ui::TPopupMenu& Menu, int Flag);
// Sends Wnd the message that shows its system menu (0x0313), at the point one pixel below
// the control's bottom left corner on the screen.
QM_TOOLS_API void qm_ShowSysMenu(ui::TControl& Control, HWND Wnd);

// Shows in a message which controls of this program lie under the mouse pointer, the
// innermost first, then its parents (a developer's aid).
QM_TOOLS_API void GetControlHierarchyUnderMouse();

// Deletes the row; the current row stays where it was, or goes to the last row when that
// one is gone.
QM_TOOLS_API void DeleteRow(ui::TStringGrid& Grid, int Row);
// The left pixel position of a section of the header.
QM_TOOLS_API int GetSectionLeftPos(ui::THeaderControl& Header, int Index);

QM_TOOLS_API bool IsListBoxValid(const ui::TListBox& LB);
QM_TOOLS_API bool NoItemsAndNoSelection(const ui::TListBox& LB);
// The line at the client point (X, Y), -1 when the point is on no line.
QM_TOOLS_API int FindLbIdx(const ui::TListBox& LB, int X, int Y);
QM_TOOLS_API int FindcLbIdx(const ui::TCheckListBox& LB, int X, int Y);

// "#RRGGBB" of the colour, a system colour resolved first.
QM_TOOLS_API std::u16string ColorToHtml(TColor Color);
#endif

}  // namespace Qm_tools
