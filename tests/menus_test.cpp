// Popup menus chosen from with real keyboard messages while the system tracks them, the
// item tree, and the clipboard's text.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "ui/clipbrd.h"
#include "ui/menus.h"
#include "ui/winclass.h"
#include "win_support.h"

namespace {

using namespace ui;
using Clicks = std::vector<std::u16string>;

// TrackPopupMenuEx runs a message loop of its own, which dispatches thread timers: one
// waits for the menu's window (class "#32768"), notes the items the system holds and posts
// the keys to it (VK_xxx as WM_KEYDOWN, a small letter as WM_CHAR). Another ends the menu
// after 5 s in any case, so that an ignored key cannot hang the test.
struct Driver {
  std::vector<WPARAM> keys;
  std::vector<std::pair<std::wstring, UINT>> shown;  // text with "&", MF_ state
};
Driver* driver = nullptr;

using nox_test::VisibleMenuWindow;

void CALLBACK PressKeys(HWND, UINT, UINT_PTR timer, DWORD) {
  const HWND window = VisibleMenuWindow();
  if (window == nullptr) return;
  KillTimer(nullptr, timer);
  const auto menu = reinterpret_cast<HMENU>(SendMessageW(window, MN_GETHMENU, 0, 0));
  for (UINT i = 0; i < static_cast<UINT>(GetMenuItemCount(menu)); ++i) {
    wchar_t text[64] = {};
    GetMenuStringW(menu, i, text, 64, MF_BYPOSITION);
    driver->shown.emplace_back(text, GetMenuState(menu, i, MF_BYPOSITION));
  }
  for (const WPARAM key : driver->keys)
    PostMessageW(window, key >= 'a' && key <= 'z' ? WM_CHAR : WM_KEYDOWN, key, 1);
}

void CALLBACK GiveUp(HWND, UINT, UINT_PTR timer, DWORD) {
  KillTimer(nullptr, timer);
  EndMenu();
}

// Pops `menu` up, presses `keys` in it and returns what it showed.
Driver PopupAndPress(TPopupMenu& menu, std::vector<WPARAM> keys) {
  Driver d{std::move(keys), {}};
  driver = &d;
  const UINT_PTR press = SetTimer(nullptr, 0, 30, &PressKeys),
                 giveUp = SetTimer(nullptr, 0, 5000, &GiveUp);
  menu.Popup(200, 150);
  KillTimer(nullptr, press), KillTimer(nullptr, giveUp);
  driver = nullptr;
  return d;
}

TMenuItem* AddItem(TPopupMenu& menu, TMenuItem* parent, const std::u16string& caption,
                   Clicks* clicks = nullptr) {
  auto* item = new TMenuItem(&menu);
  item->Caption = caption;
  if (clicks != nullptr)
    item->OnClick = [clicks, caption](TObject*) { clicks->push_back(caption); };
  parent->Add(item);
  return item;
}

TEST(MenusPopup, AKeyboardChoiceClicksTheItemOnceAfterTheMenuHasClosed) {
  auto menu = std::make_unique<TPopupMenu>(nullptr);
  Clicks clicks;
  TMenuItem* hidden = AddItem(*menu, menu->Items(), u"Hidden", &clicks);
  AddItem(*menu, menu->Items(), u"&Open", &clicks);
  AddItem(*menu, menu->Items(), u"-");
  TMenuItem* save = AddItem(*menu, menu->Items(), u"&Save && close");
  save->Checked = true;
  save->OnClick = [&](TObject*) {
    clicks.push_back(VisibleMenuWindow() ? u"while shown" : u"save");
  };
  menu->OnPopup = [&](TObject*) { hidden->Visible = false; };  // before the menu is made

  const Driver d = PopupAndPress(*menu, {VK_DOWN, VK_DOWN, VK_RETURN});
  ASSERT_EQ(d.shown.size(), 3u);
  EXPECT_EQ(d.shown[0].first + d.shown[2].first, L"&Open&Save && close");
  EXPECT_NE(d.shown[1].second & MF_SEPARATOR, 0u);
  EXPECT_NE(d.shown[2].second & MF_CHECKED, 0u);
  EXPECT_EQ(clicks, Clicks{u"save"});  // the separator was passed over
  EXPECT_NE(FindWindowW(L"TPopupList", nullptr), nullptr) << "the menus' owner window";

  // Access keys choose too, here inside a submenu; the handler may free the menu.
  clicks.clear();
  TMenuItem* more = AddItem(*menu, menu->Items(), u"&More");
  AddItem(*menu, more, u"&First", &clicks);
  AddItem(*menu, more, u"&Last")->OnClick = [&](TObject*) {
    clicks.push_back(u"last");
    menu.reset();
  };
  PopupAndPress(*menu, {'m', 'l'});
  EXPECT_EQ(clicks, Clicks{u"last"});
}

TEST(MenusPopup, EscapeOrADisabledItemChoosesNothing) {
  TPopupMenu menu(nullptr);
  Clicks clicks;
  TMenuItem* off = AddItem(menu, menu.Items(), u"&Delete", &clicks);
  off->Enabled = false;
  AddItem(menu, menu.Items(), u"&Rename", &clicks);

  const Driver escaped = PopupAndPress(menu, {VK_DOWN, VK_DOWN, VK_ESCAPE});
  ASSERT_EQ(escaped.shown.size(), 2u);
  EXPECT_NE(escaped.shown[0].second & MF_GRAYED, 0u);
  PopupAndPress(menu, {VK_HOME, VK_RETURN, VK_ESCAPE});
  PopupAndPress(menu, {'d', VK_ESCAPE});
  off->Click();
  EXPECT_TRUE(clicks.empty());

  PopupAndPress(menu, {'r'});
  EXPECT_EQ(clicks, Clicks{u"&Rename"});
}

TEST(MenusItems, FreeingAnItemFreesItsSubitemsAndLeavesItsParent) {
  TPopupMenu menu(nullptr);
  TMenuItem* file = AddItem(menu, menu.Items(), u"File");
  TMenuItem* open = AddItem(menu, file, u"Open");
  AddItem(menu, file, u"Recent");
  TMenuItem* other = AddItem(menu, menu.Items(), u"Other");
  EXPECT_THROW(menu.Items()->Add(open), EMenuError);  // has a parent already
  EXPECT_THROW(open->Add(file), EMenuError);          // would hold itself
  EXPECT_EQ(file->Items(1)->Caption, u"Recent");
  EXPECT_THROW(file->Items(2), EMenuError) << "one past the last";
  EXPECT_THROW(file->Items(-1), EMenuError);

  const int owned = menu.ComponentCount();
  delete file;
  EXPECT_EQ(menu.ComponentCount(), owned - 3);
  ASSERT_EQ(menu.Items()->Count(), 1);
  EXPECT_EQ(menu.Items()->Items(0), other);
}

TEST(MenusClipboard, TextRoundTripsAndOtherFormatsReadAsNoText) {
  for (const std::u16string text : {u"line 1\r\nline 2\nline 3\r\n", u"trailing blank ",
                                    u"Größe, Übermaß, äöü ÄÖÜ ß", u"a \U0001F600 inside", u""}) {
    Clipboard().SetAsText(text);
    EXPECT_TRUE(Clipboard().HasFormat(CF_UNICODETEXT));
    EXPECT_EQ(Clipboard().AsText(), text);
  }
  // What other programs see: the owner's window class, and the text in a block of its own
  // size (terminator included) that nobody holds locked.
  Clipboard().SetAsText(u"abc");
  wchar_t owner[64] = {};
  GetClassNameW(GetClipboardOwner(), owner, 64);
  EXPECT_STREQ(owner, L"TClipboardWindow");
  ASSERT_TRUE(OpenClipboard(nullptr));
  const HANDLE block = GetClipboardData(CF_UNICODETEXT);
  EXPECT_EQ(GlobalSize(block), 4 * sizeof(wchar_t));
  EXPECT_EQ(GlobalFlags(block) & GMEM_LOCKCOUNT, 0u);
  CloseClipboard();

  const UINT format = RegisterClipboardFormatW(L"Noxdesk test data");
  const auto window = AllocateHWnd(&DefWindowProcW);
  ASSERT_TRUE(OpenClipboard(window.get()));
  EmptyClipboard();
  rtl::unique_hglobal data(GlobalAlloc(GMEM_MOVEABLE, 4));
  if (SetClipboardData(format, data.get()) != nullptr) (void)data.release();
  CloseClipboard();
  EXPECT_TRUE(Clipboard().HasFormat(format));
  EXPECT_FALSE(Clipboard().HasFormat(CF_UNICODETEXT));
  EXPECT_EQ(Clipboard().AsText(), u"");
}

TEST(MenusClipboard, ABriefHoldByAnotherIsWaitedForAndALongOneRaises) {
  // Another thread holds the clipboard open for `ms`, or until `release` is signalled.
  const auto withClipboardHeld = [](DWORD ms, auto&& action) {
    const rtl::unique_handle opened(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const rtl::unique_handle release(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    std::thread holder([&] {
      const bool held = OpenClipboard(nullptr) != 0;
      SetEvent(opened.get());
      WaitForSingleObject(release.get(), ms);
      if (held) CloseClipboard();
    });
    WaitForSingleObject(opened.get(), 5000);
    action();
    SetEvent(release.get());
    holder.join();
  };
  withClipboardHeld(30, [] { Clipboard().SetAsText(u"after a wait"); });
  EXPECT_EQ(Clipboard().AsText(), u"after a wait");
  withClipboardHeld(INFINITE, [] {
    try {
      Clipboard().SetAsText(u"never");
      ADD_FAILURE() << "no exception";
    } catch (const EClipboardException& e) {
      // The system's reason follows, on the same line.
      const std::string what = e.what(), prefix = "Cannot open clipboard: ";
      EXPECT_EQ(what.rfind(prefix, 0), 0u) << what;
      EXPECT_GT(what.size(), prefix.size() + 1) << what;
      EXPECT_EQ(what.find_first_of("\r\n"), std::string::npos) << what;
    }
  });
  EXPECT_EQ(Clipboard().AsText(), u"after a wait");
}

}  // namespace
