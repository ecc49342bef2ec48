// The interface helpers on real windows, under Wine.
#include <windows.h>

#include <commctrl.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/uihelpers.h"
#include "ui/application.h"
#include "ui/buttons.h"
#include "win_support.h"

namespace {

using namespace Qm_tools;
using namespace ui;

// A form on the screen without caption or activation (Wine under Xvfb waits for a window
// manager whenever a managed window is hidden or destroyed).
std::unique_ptr<TForm> ShownForm() {
  auto form = std::make_unique<TForm>(nullptr);
  form->BorderStyle = bsNone;
  form->Position = poDesigned;
  form->SetBounds(100, 100, 400, 300);
  ShowWindow(form->Handle(), SW_SHOWNOACTIVATE);
  return form;
}

template <class T>
T* Child(TForm& form, const std::u16string& name, TRect bounds) {
  auto* control = new T(&form);
  control->Name = name;
  control->SetBounds(bounds.Left, bounds.Top, bounds.Width(), bounds.Height());
  control->SetParent(&form);
  return control;
}

std::u16string WindowText(HWND window) {
  wchar_t text[128] = {};
  GetWindowTextW(window, text, 128);
  return reinterpret_cast<const char16_t*>(text);
}

RECT LineRect(HWND list, int line) {
  RECT r{};
  SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(&r));
  return r;
}

// Counts what a list window receives while it is hooked.
WNDPROC listProc = nullptr;
int listMessages = 0;
LRESULT CALLBACK CountListMessages(HWND window, UINT msg, WPARAM wParam, LPARAM lParam) {
  ++listMessages;
  return CallWindowProcW(listProc, window, msg, wParam, lParam);
}

TEST(UiHelpersWin, ListLinesAreFoundWhereTheyShowAndFindingDoesNotWalkTheList) {
  auto form = ShownForm();
  auto* list = Child<TListBox>(*form, u"ListBox1", {10, 10, 150, 110});
  auto* checks = Child<TCheckListBox>(*form, u"CheckListBox1", {200, 10, 340, 110});
  const auto add = [&](int lines) {
    for (int i = 0; i < lines; ++i) {
      list->Items().Add(u"Zeile");
      checks->Items().Add(u"Zeile");
    }
  };
  const auto state = [&] { return std::pair(IsListBoxValid(*list), NoItemsAndNoSelection(*list)); };
  EXPECT_EQ(state(), std::pair(false, true));
  add(3);
  EXPECT_EQ(state(), std::pair(false, true)) << "lines but no selection";
  SendMessageW(list->Handle(), LB_SETCURSEL, 2, 0);
  EXPECT_EQ(state(), std::pair(true, false));
  for (TListBox* box : {list, static_cast<TListBox*>(checks)}) {
    const RECT last = LineRect(box->Handle(), 2);
    EXPECT_EQ(FindLbIdx(*box, last.left + 5, 2 * last.bottom - last.top), -1) << "below the last";
  }
  // A click on a line of the check list box toggles its mark.
  const RECT first = LineRect(checks->Handle(), 0);
  const LPARAM at = MAKELPARAM(first.left + 3, first.top + 3);
  SendMessageW(checks->Handle(), WM_LBUTTONDOWN, MK_LBUTTON, at);
  SendMessageW(checks->Handle(), WM_LBUTTONUP, 0, at);
  EXPECT_EQ(std::pair(checks->Checked(0), checks->Checked(1)), std::pair(true, false));

  add(47);
  for (TListBox* box : {list, static_cast<TListBox*>(checks)}) {
    const auto find = [&](int x, int y) {
      return box == list ? FindLbIdx(*list, x, y) : FindcLbIdx(*checks, x, y);
    };
    const HWND window = box->Handle();
    RECT client{};
    GetClientRect(window, &client);
    for (const int scrolled : {0, 20, 49}) {
      SendMessageW(window, LB_SETTOPINDEX, static_cast<WPARAM>(scrolled), 0);
      const int top = static_cast<int>(SendMessageW(window, LB_GETTOPINDEX, 0, 0));
      SCOPED_TRACE(testing::Message() << "from line " << top);
      // Each line that shows, at its top, its bottom and in its middle.
      int shown = 0;
      for (int i = top; i < 50; ++i) {
        const RECT line = LineRect(window, i);
        if (line.top >= client.bottom) break;
        EXPECT_EQ(find(5, line.top), i);
        if (line.bottom <= client.bottom) {
          EXPECT_EQ(find(5, line.bottom - 1), i);
        }
        EXPECT_EQ(find(client.right - 1, (line.top + line.bottom) / 2), i);
        ++shown;
      }
      EXPECT_GE(shown, 5);
      // Outside the client area, where the lines scrolled away lie, nothing is found.
      const POINT outside[] = {{5, client.bottom}, {5, client.bottom + 60}, {5, -1}, {-1, 5},
                               {client.right, 5}, {5, 0x7FFFFFFF}, {-0x7FFFFFFF - 1, 5}};
      for (const POINT p : outside) EXPECT_EQ(find(p.x, p.y), -1) << p.x << ", " << p.y;
    }
  }

  // Thousands of lines: finding takes a few messages, not one a line.
  const HWND window = list->Handle();
  SendMessageW(window, WM_SETREDRAW, FALSE, 0);  // no painting and scrolling for each line
  for (int i = 0; i < 2000; ++i) list->Items().Add(u"Zeile");
  SendMessageW(window, WM_SETREDRAW, TRUE, 0);
  SendMessageW(window, LB_SETTOPINDEX, 1000, 0);
  RECT client{};
  GetClientRect(window, &client);
  listProc = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CountListMessages)));
  for (const int y : {static_cast<int>(client.bottom) + 100000, static_cast<int>(client.bottom) - 1}) {
    listMessages = 0;
    const int found = FindLbIdx(*list, 5, y);
    EXPECT_LE(listMessages, 4) << y;
    EXPECT_TRUE(y > client.bottom ? found == -1 : found > 1000) << y << ": " << found;
  }
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(listProc));
}

TEST(UiHelpersWin, DeletingARowKeepsTheCurrentRowOrFallsBackToTheLast) {
  auto form = ShownForm();
  auto* grid = Child<TStringGrid>(*form, u"StringGrid1", {0, 0, 300, 200});
  grid->SetColCount(2);
  grid->SetRowCount(5);
  for (int r = 0; r < 5; ++r) grid->SetCells(1, r, u"row " + std::u16string(1, char16_t(u'0' + r)));
  grid->SetRow(3);

  DeleteRow(*grid, 1);
  EXPECT_EQ(grid->RowCount(), 4);
  EXPECT_EQ(grid->Cells(1, 1), u"row 2");
  EXPECT_EQ(grid->Row(), 3) << "the same row number, though the grid moved it with its line";
  DeleteRow(*grid, 2);
  EXPECT_EQ(grid->RowCount(), 3);
  EXPECT_EQ(grid->Row(), 2) << "row 3 is gone: the last row";
  EXPECT_EQ(grid->Cells(1, 2), u"row 4");
}

TEST(UiHelpersWin, HeaderSectionsStartAfterTheWidthsTheWindowHolds) {
  auto form = ShownForm();
  auto* header = Child<THeaderControl>(*form, u"HeaderControl1", {0, 0, 300, 20});
  for (const int width : {40, 55, 70}) header->Sections.Add().SetWidth(width);
  // A section the user dragged narrower: the window has the new width.
  HDITEMW item{};
  item.mask = HDI_WIDTH;
  item.cxy = 30;
  SendMessageW(header->Handle(), HDM_SETITEMW, 1, reinterpret_cast<LPARAM>(&item));
  EXPECT_EQ(GetSectionLeftPos(*header, 2), 70);
  EXPECT_EQ(GetSectionLeftPos(*header, 3), 140);
}

TEST(UiHelpersWin, CaptionsAreReplacedInTheTextsOfTheFormsOwnComponents) {
  auto form = ShownForm();
  auto* label = Child<TLabel>(*form, u"Label1", {0, 0, 100, 20});
  auto* panel = Child<TPanel>(*form, u"Panel1", {0, 30, 100, 40});
  auto* memo = Child<TMemo>(*form, u"Memo1", {0, 80, 200, 60});
  auto* check = Child<TCheckBox>(*form, u"CheckBox1", {0, 150, 150, 20});
  auto* button = Child<TSpeedButton>(*form, u"SpeedButton1", {0, 180, 120, 22});
  TPopupMenu menu(form.get());
  auto* item = new TMenuItem(form.get());
  menu.Items()->Add(item);
  label->SetCaption(u"Projekt laden");
  panel->SetCaption(u"Projekt: Projekt");
  check->SetCaption(u"Projekt sichern");
  item->Caption = u"&Projekt";
  item->Hint = u"Öffnet das Projekt";
  button->SetCaption(u"Projekt");
  button->Hint = u"Projekt";
  SetWindowTextW(memo->Handle(), L"Ein Projekt,\r\nnoch ein projekt");  // typed by the user
  auto* unowned = new TLabel(nullptr);  // on the form, owned by nobody
  unowned->SetParent(form.get());
  unowned->SetCaption(u"Projekt");

  ReplaceCaptionText(*form, u"Projekt", u"Vorhaben");
  EXPECT_EQ(label->Caption(), u"Vorhaben laden");
  EXPECT_EQ(WindowText(panel->Handle()), u"Vorhaben: Vorhaben");
  EXPECT_EQ(WindowText(check->Handle()), u"Vorhaben sichern");
  EXPECT_EQ(memo->Text(), u"Ein Vorhaben,\r\nnoch ein projekt") << "case counts";
  EXPECT_EQ(item->Caption, u"&Vorhaben");
  EXPECT_EQ(item->Hint, u"Öffnet das Vorhaben");
  EXPECT_EQ(button->Hint, u"Vorhaben");
  EXPECT_EQ(WindowText(button->Handle()), u"Projekt") << "a button's caption stays";
  EXPECT_EQ(unowned->Caption(), u"Projekt");
  delete unowned;
}

// TrackPopupMenuEx runs its own loop, which dispatches thread timers: this one notes where
// the menu's window (class "#32768") appeared and ends the menu.
RECT shownMenu;
void CALLBACK NoteAndEndMenu(HWND, UINT, UINT_PTR timer, DWORD) {
  const HWND found = nox_test::VisibleMenuWindow();
  if (found == nullptr) return;
  KillTimer(nullptr, timer);
  GetWindowRect(found, &shownMenu);
  EndMenu();
}

POINT MenuCornerFor(const std::function<void()>& popup) {
  shownMenu = {-1, -1, -1, -1};
  const UINT_PTR timer = SetTimer(nullptr, 0, 30, &NoteAndEndMenu);
  popup();
  KillTimer(nullptr, timer);
  return {shownMenu.left, shownMenu.top};
}

std::vector<std::pair<WPARAM, LPARAM>> sysMenuCalls;
LRESULT CALLBACK RecordSysMenu(HWND window, UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == 0x0313) {
    sysMenuCalls.emplace_back(wParam, lParam);
    return 0;
  }
  return DefWindowProcW(window, msg, wParam, lParam);
}

TEST(UiHelpersWin, MenusOpenAtTheControlsLeftEdgeOnePixelBelowOrAbove) {
  auto form = ShownForm();  // client area at (100, 100) on the screen
  auto* panel = Child<TPanel>(*form, u"Panel1", {50, 100, 250, 130});
  TPopupMenu menu(form.get());
  auto* item = new TMenuItem(&menu);
  item->Caption = u"Eintrag";
  menu.Items()->Add(item);
  POINT origin{0, 0};
  ClientToScreen(form->Handle(), &origin);

  const auto at = [&](const std::function<void()>& popup) {
    const POINT corner = MenuCornerFor(popup);
    return std::make_pair(corner.x - origin.x, corner.y - origin.y);
  };
  EXPECT_EQ(at([&] { qm_ShowPopUp(*panel, menu, 0); }), std::make_pair(50L, 131L));
  EXPECT_EQ(at([&] { qm_ShowPopUp(*panel, menu, 1); }), std::make_pair(50L, 99L));
  EXPECT_EQ(at([&] { qm_ShowPopUpPanel(*panel, 120, menu, 0); }), std::make_pair(120L, 131L));

  // The system menu: one undocumented message to the window, with the screen point below.
  WNDCLASSW wc{};
  wc.lpfnWndProc = &RecordSysMenu;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.lpszClassName = L"UiHelpersSysMenuTarget";
  RegisterClassW(&wc);
  const HWND target = CreateWindowExW(0, wc.lpszClassName, L"", WS_POPUP, 0, 0, 10, 10, nullptr,
                                      nullptr, wc.hInstance, nullptr);
  ASSERT_NE(target, nullptr);
  sysMenuCalls.clear();
  qm_ShowSysMenu(*panel, target);
  DestroyWindow(target);
  EXPECT_EQ(sysMenuCalls, (std::vector<std::pair<WPARAM, LPARAM>>{
                              {0, MAKELPARAM(origin.x + 50, origin.y + 131)}}));
}

TEST(UiHelpersWin, TextIsMeasuredInTheLabelsFontAndTheCanvassFont) {
  auto form = ShownForm();
  auto* label = Child<TLabel>(*form, u"Label1", {0, 0, 60, 20});
  label->SetAutoSize(false);
  label->SetBounds(0, 0, 60, 20);
  TCanvas canvas;
  canvas.Font = label->ResolvedFont();
  const std::u16string word = u"Donaudampfschifffahrtsgesellschaft";
  const std::u16string wrapped = WrapTextForLabel(*label, word);
  const size_t firstBreak = wrapped.find(u"\r\n");
  ASSERT_NE(firstBreak, std::u16string::npos);
  const std::u16string firstLine = wrapped.substr(0, firstBreak);
  EXPECT_LE(canvas.TextWidth(firstLine), 60);
  EXPECT_GT(canvas.TextWidth(word.substr(0, firstLine.size() + 1)), 60) << "as long as fits";

  const std::u16string cut = FitStrLen(80, canvas, word);
  EXPECT_EQ(cut.substr(cut.size() - 3), u"...");
  EXPECT_LE(canvas.TextWidth(cut), 78);
  EXPECT_GT(canvas.TextWidth(word.substr(0, cut.size() - 2) + u"..."), 78);
}

// The box around the pixels of a white 64x64 bitmap that DrawAttachInfo changed.
RECT IconBox(bool large) {
  const HDC dc = CreateCompatibleDC(nullptr);
  BITMAPINFO info{{sizeof(BITMAPINFOHEADER), 64, -64, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
  void* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  const HGDIOBJ old = SelectObject(dc, bitmap);
  auto* pixels = static_cast<DWORD*>(bits);
  std::fill(pixels, pixels + 64 * 64, 0xFFFFFF);
  TCanvas canvas;
  canvas.Handle = dc;
  DrawAttachInfo(canvas, u"C:\\nirgends\\brief.txt", {4, 6, 60, 60}, large, 3, 2);
  GdiFlush();
  RECT box{64, 64, -1, -1};
  for (LONG y = 0; y < 64; ++y)
    for (LONG x = 0; x < 64; ++x)
      if ((pixels[y * 64 + x] & 0xFFFFFF) != 0xFFFFFF)
        box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x),
               std::max(box.bottom, y)};
  SelectObject(dc, old);
  DeleteObject(bitmap);
  DeleteDC(dc);
  return box;
}

TEST(UiHelpersWin, AFileTypesIconIsDrawnAtTheOffsetInTheAskedSize) {
  // The file need not exist. Both start at (4 + 3, 6 + 2).
  for (const bool large : {false, true}) {
    const RECT box = IconBox(large);
    const int size = large ? 32 : 16;
    EXPECT_TRUE(box.left >= 7 && box.top >= 8 && box.right < 7 + size && box.bottom < 8 + size &&
                box.right - box.left >= (large ? 16 : 0))
        << "icon of " << size << " at " << box.left << "," << box.top << "-" << box.right << ","
        << box.bottom;
  }
}

TEST(UiHelpersWin, TheControlsUnderTheMouseAreNamedInnermostFirst) {
  nox_test::ShownMessages messages;
  auto form = ShownForm();
  form->Name = u"MainForm";
  auto* panel = Child<TPanel>(*form, u"Panel1", {20, 20, 220, 120});
  Child<TLabel>(*form, u"Label1", {10, 10, 90, 30})->SetParent(panel);
  Application->ProcessMessages();

  POINT p{15, 15};
  ClientToScreen(panel->Handle(), &p);
  SetCursorPos(p.x, p.y);
  GetControlHierarchyUnderMouse();
  SetCursorPos(1279, 1023);  // no window of this program
  GetControlHierarchyUnderMouse();
  EXPECT_EQ(messages.shown,
            (std::vector<std::u16string>{
                u"Steuerelemente unter der Maus:\r\nTLabel \"Label1\"\r\n  TPanel \"Panel1\"\r\n"
                u"    TForm \"MainForm\"",
                u"Kein Steuerelement unter der Maus (TScreen)"}));
}

}  // namespace
