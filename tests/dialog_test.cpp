// The message dialog on real windows, driven by the messages a user's keys and mouse send
// while its modal loop runs; what it shows is read back from its windows' pixels and places.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "dialog/QMMessageDlgVCL.h"
#include "dialog/msgdlg_form.h"
#include "tests/dialog_script.h"
#include "rtl/handles.h"
#include "rtl/messaging.h"
#include "rtl/sysutils.h"
#include "ui/application.h"
#include "ui/appevnts.h"
#include "ui/clipbrd.h"

namespace {

using namespace nox_dialog_test;

TEST_F(DialogTest, KeysMarkAndPressTheButtons) {
  // Tab moves the marking on, from the last to the first, and Shift is not looked at; Enter
  // presses the marked button.
  EXPECT_EQ(Run(mtWarning, {mbOK, mbYes, mbNo},
                {KeyUp(VK_TAB), KeyUp(VK_TAB), MarkedAre({false, false, true}), Held(VK_SHIFT, true),
                 KeyUp(VK_TAB), Held(VK_SHIFT, false), MarkedAre({true, false, false}), Key(VK_RETURN)}),
            mrOk);
  // Lower-case accelerators mark without pressing; upper case never matches.
  EXPECT_EQ(Run(mtConfirmation, {mbYes, mbNo, mbCancel},
                {Check([] { EXPECT_EQ(Captions(), (Strs{u"&Ja", u"&Nein", u"&Abbruch"})); }),
                 Char(u'N'), Check([] { EXPECT_EQ(Dialog()->CurrentButton(), 0); }), Char(u'n'),
                 MarkedAre({false, true, false}), Char(u'a'), MarkedAre({false, false, true}),
                 Char(u'x'), Key(VK_RETURN)}),
            mrCancel);
  // The first caption holding "&a" wins: "&Abbruch" serves cancel and abort alike.
  EXPECT_EQ(Run(mtError, {mbAbort, mbCancel}, {Char(u'a'), Key(VK_RETURN)}), mrCancel);
}

TEST_F(DialogTest, CaptionBarDragsWithTheLeftButtonOnly) {
  RECT before{}, afterRight{}, afterLeft{}, afterRelease{};
  auto send = [](UINT msg, WPARAM w, int x, int y) {
    SendMessageW(Dialog()->RecCaption->Handle(), msg, w, MAKELPARAM(x, y));
  };
  auto drag = [&](UINT down, UINT up, WPARAM held, int x, int y) {
    send(down, held, 20, 12), send(WM_MOUSEMOVE, held, x, y), send(up, 0, x, y);
  };
  Run(mtInformation, {mbOK},
      {Check([&] {
         GetWindowRect(FormWindow(), &before);
         drag(WM_RBUTTONDOWN, WM_RBUTTONUP, MK_RBUTTON, 60, 32);
         GetWindowRect(FormWindow(), &afterRight);
         drag(WM_LBUTTONDOWN, WM_LBUTTONUP, MK_LBUTTON, 50, 32);
         GetWindowRect(FormWindow(), &afterLeft);
         send(WM_MOUSEMOVE, 0, 90, 20);  // after the release a move drags nothing
       }),
       Check([&] { GetWindowRect(FormWindow(), &afterRelease); }), Key(VK_RETURN)});
  EXPECT_TRUE(EqualRect(&before, &afterRight));
  EXPECT_TRUE(EqualRect(&afterLeft, &afterRelease));
  EXPECT_EQ(afterLeft.left - before.left, 30);
  EXPECT_EQ(afterLeft.top - before.top, 20);
  EXPECT_EQ(afterLeft.right - afterLeft.left, before.right - before.left);
}

TEST_F(DialogTest, CopyItemAndCtrlCPutTheMessageOnTheClipboard) {
  ui::Clipboard().SetAsText(u"vorher");
  auto menu = [] { return FindWindowW(L"#32768", nullptr); };
  Run(mtInformation, {mbOK},
      {Check([] {
         POINT p = Dialog()->lbText->ClientToScreen({5, 5});
         PostMessageW(MessageArea(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(MessageArea()),
                      MAKELPARAM(p.x, p.y));
       }),
       [&] { return menu() != nullptr && IsWindowVisible(menu()); },
       Post(menu, WM_KEYDOWN, VK_DOWN), Post(menu, WM_KEYDOWN, VK_RETURN),
       [] { return ui::Clipboard().AsText() != u"vorher"; }, Key(VK_RETURN)},
      u"Zeile 1\r\nZeile 2 mit Ä");
  EXPECT_EQ(ui::Clipboard().AsText(), u"Zeile 1\r\nZeile 2 mit Ä\r\n\r\n ");

  // Ctrl+C copies the whole dialog as the system's message boxes do; C alone copies nothing.
  ui::Clipboard().SetAsText(u"vorher");
  StdDlgSettings.DialogCaptionText = u"Kopfzeile";
  Run(mtConfirmation, {mbYes, mbNo, mbYesToAll},
      {Key('C'), Check([] { EXPECT_EQ(ui::Clipboard().AsText(), u"vorher"); }), Held(VK_CONTROL, true),
       Key('C'), Held(VK_CONTROL, false), [] { return ui::Clipboard().AsText() != u"vorher"; },
       Key(VK_RETURN)},
      u"Zeile 1\r\nZeile 2");
  const std::u16string dashes = u"---------------------------\r\n";
  EXPECT_EQ(ui::Clipboard().AsText(), dashes + u"Kopfzeile\r\n" + dashes + u"Zeile 1\r\nZeile 2\r\n" +
                                          dashes + u"Ja   Ja Alle   Nein\r\n" + dashes);
}

TEST_F(DialogTest, MessageBoxShowsItsTextFlagsAndButtonsAndReturnsTheResult) {
  // English words; a kind without an icon keeps the header the form was designed with.
  StdDlgSettings.lang = 2;
  EXPECT_EQ(Run([] { return MessageBox(nullptr, L"Weiter?", L"ignored", 0x03); },
                {Check([] {
                   EXPECT_EQ(Dialog()->lbText->Caption(), u"Weiter?\r\n\r\n ");
                   EXPECT_EQ(Dialog()->lbInfo->Caption(), u"Warnung");
                   EXPECT_EQ(Captions(), (Strs{u"&Yes", u"&No", u"&Cancel"}));
                   EXPECT_EQ(ShownCaptions(), Captions());
                   EXPECT_FALSE(IsWindowVisible(Dialog()->bnOK->Handle()));
                 }),
                 Char(u'c'), Key(VK_RETURN)}),
            IDCANCEL);
}

TEST_F(DialogTest, LookComesFromTheSettingsAndButtonsColourUnderTheMouse) {
  StdDlgSettings.DialogCaptionText = u"Noxdesk";
  StdDlgSettings.DialogCaptionColor = 0x00203040;
  StdDlgSettings.HeadBack = 0x00445566;
  StdDlgSettings.btnColor = 0x00112233;
  StdDlgSettings.btnStrokeColor = 0x0000C0C0;
  StdDlgSettings.MsgTextColor = 0x000000C0;
  auto no = [] { return Dialog()->ButtonAt(1)->Handle(); };
  auto shows = [](HWND window, int x, int y) { return TOnScreen(window).At(x, y); };
  const int result = Run(
      mtWarning, {mbYes, mbNo},
      {Check([&] {
         TF_MsgDlg* d = Dialog();
         EXPECT_EQ(d->lblCaption->Caption(), u"Noxdesk");
         EXPECT_EQ(d->Caption(), u"win_tests");
         EXPECT_TRUE(GetWindowLongW(FormWindow(), GWL_EXSTYLE) & WS_EX_TOPMOST);
         EXPECT_FALSE(GetWindowLongW(FormWindow(), GWL_STYLE) & (WS_CAPTION | WS_THICKFRAME));
         EXPECT_EQ(shows(d->RecCaption->Handle(), 2, 2), 0x00203040) << "caption bar";
         EXPECT_EQ(shows(d->RecHeader->Handle(), 5, 5), 0x00445566) << "header strip";
         EXPECT_EQ(Marked(), (std::vector{true, false})) << "the frame in the stroke colour";
         EXPECT_GT(TOnScreen(MessageArea()).Count(0x000000C0), 0) << "the message's colour";
         EXPECT_EQ(shows(no(), 8, 8), 0x00112233);
         SendMessageW(no(), WM_MOUSEMOVE, 0, MAKELPARAM(10, 10));
         EXPECT_EQ(shows(no(), 8, 8), 0x0000A5FF) << "orange under the mouse, whatever the colour";
         SendMessageW(no(), WM_MOUSELEAVE, 0, 0);
         EXPECT_EQ(shows(no(), 8, 8), 0x00112233);
         SendMessageW(no(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
         EXPECT_EQ(shows(no(), 8, 8), 0x0060A4F4);
         EXPECT_EQ(d->ModalResult, 0);
       }),
       Post(no, WM_LBUTTONUP, 0, MAKELPARAM(10, 10))});
  EXPECT_EQ(result, mrNo);
}

TEST_F(DialogTest, TheFormKeepsItsDesignedPlacesAndFonts) {
  // Where each part of a one-button dialog lies in its parent, in the form's client area of
  // 630 pixels width, and the caption bar's font; after the dialog the button list is gone.
  Inspect(mtWarning, {mbOK}, [] {
    TF_MsgDlg& d = *Dialog();
    const int height = d.ClientHeight();
    const struct { const char* what; const ui::TControl* control; ui::TRect bounds; } cases[] = {
        {"frame shape", d.Shape1, {0, 35, 630, height}},
        {"caption bar", d.RecCaption, {1, 1, 629, 35}},
        {"caption", d.lblCaption, {6, 6, 625, 33}},
        {"message frame", d.RecFrame, {5, 40, 625, height - 5}},
        {"kind word", d.lbInfo, {54, 17, 603, 55}},
        {"glyph", d.Glyph1, {16, 20, 48, 52}},
    };
    for (const auto& c : cases) {
      const ui::TRect r = c.control->BoundsRect();
      EXPECT_EQ((std::vector<int>{r.Left, r.Top, r.Right, r.Bottom}),
                (std::vector<int>{c.bounds.Left, c.bounds.Top, c.bounds.Right, c.bounds.Bottom}))
          << c.what;
    }
    EXPECT_TRUE(d.lblCaption->WordWrap());
    EXPECT_EQ(d.lblCaption->Font.Style, ui::TFontStyles{ui::fsBold});
    EXPECT_EQ(d.lblCaption->Font.Height, -15);
    EXPECT_EQ(Captions(), Strs{u"O&K"});
    EXPECT_EQ(ShownCaptions(), Strs{u"O&K"});
  });
  EXPECT_EQ(DlgButtons, nullptr);
}

TEST_F(DialogTest, HeaderShowsTheWordAndGlyphOfTheKind) {
  auto dlg = [](TMsgDlgType type) { return [type] { MessageDlgEx(u"m", type, {mbOK}, 0); }; };
  const struct {
    const char* what;
    std::function<void()> show;
    std::u16string word;
  } cases[] = {
      {"warning", dlg(mtWarning), u"Warnung !"},
      {"error", dlg(mtError), u"Fehler"},
      {"confirmation", dlg(mtConfirmation), u"Bestätigung"},
      {"information", dlg(mtInformation), u"Information"},
      {"ShowMessage", [] { ShowMessage(u"m"); }, u"Information"},
      {"ShowMessageEx", [] { ShowMessageEx(u"m", 0, false); }, u"Information"},
  };
  std::vector<std::vector<TColor>> glyphs;
  for (const auto& c : cases)
    Run([&] { return c.show(), 0; },
        {Check([&] {
           EXPECT_EQ(Dialog()->lbInfo->Caption(), c.word) << c.what;
           glyphs.push_back(TOnScreen(Dialog()->RecHeader->Handle()).Area(16, 20, 32, 32));
         }),
         Key(VK_RETURN)});
  ASSERT_EQ(glyphs.size(), 6u);
  // Each kind its own glyph, and the information glyph for both ShowMessage routines.
  for (size_t i = 1; i < glyphs.size(); ++i)
    for (size_t j = 0; j < i; ++j)
      EXPECT_EQ(glyphs[i] == glyphs[j], j >= 3) << cases[i].what << " / " << cases[j].what;
}

TEST_F(DialogTest, ButtonsLineUpAtLeast130WideOrTheirCaptionPlus30) {
  // In the form's font (Segoe UI, 12 pixels) this caption is wider than 100 pixels.
  const std::u16string longCaption = u"Alle Dateien &überschreiben";
  rtl::TStringList keys, captions;
  keys.Add(u"overwrite");
  captions.Add(longCaption);
  std::vector<RECT> row;
  Run(mtConfirmation, {mbOK, mbYes, mbNo},
      {Check([&] { Dialog()->CreateButton(u"overwrite", mrAll, captions, keys); }),
       Check([&] {
         for (int i = 0; i < DlgButtons->Count(); ++i) {
           RECT& r = row.emplace_back();
           GetWindowRect(Dialog()->ButtonAt(i)->Handle(), &r);
           MapWindowPoints(nullptr, Dialog()->Layout1->Handle(), reinterpret_cast<POINT*>(&r), 2);
         }
       }),
       Key(VK_RETURN)});
  const rtl::unique_hfont font(CreateFontW(-12, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                                           DEFAULT_CHARSET, 0, 0, 0, 0, L"Segoe UI"));
  const rtl::unique_screen_dc dc(GetDC(nullptr));
  const rtl::select_object selected(dc.get(), font.get());
  SIZE caption{};
  GetTextExtentPoint32W(dc.get(), reinterpret_cast<const wchar_t*>(longCaption.c_str()),
                        static_cast<int>(longCaption.size()), &caption);
  ASSERT_GT(caption.cx, 100);

  // The template OK button keeps its designed 106; short captions get 130.
  const std::vector<int> widths{106, 130, 130, static_cast<int>(caption.cx) + 30};
  ASSERT_EQ(row.size(), widths.size());
  int left = 1 + 15;  // inside the row's bevel, after the button's margin
  for (size_t i = 0; i < row.size(); ++i) {
    EXPECT_EQ(row[i].left, left) << i;
    EXPECT_EQ(row[i].right - row[i].left, widths[i]) << i;
    EXPECT_EQ(row[i].top, 1 + 10) << i;
    EXPECT_EQ(row[i].bottom - row[i].top, 35) << i;
    left = row[i].right + 2 + 15;
  }
}

TEST_F(DialogTest, FormGrowsWithTheMessageUpToTheAllowance) {
  struct Sizes {
    int height, top, box, label, range;
  };
  auto measure = [this](int lines) {
    std::u16string msg = lines == 0 ? u"Eine Meldung" : u"";
    for (int i = 0; i < lines; ++i) msg += u"Zeile " + rtl::IntToStr(i) + u"\r\n";
    Sizes s{};
    Inspect(mtInformation, {mbOK}, [&] {
      TF_MsgDlg* d = Dialog();
      s = {d->Height(), d->Top(), d->VertScrollBox1->ClientHeight(), d->lbText->Height(),
           d->VertScrollBox1->VertRange()};
    }, msg);
    return s;
  };
  const Sizes small = measure(0), medium = measure(16), tall = measure(200);
  EXPECT_EQ(small.height, 415);
  EXPECT_EQ(small.range, 0) << "a short message does not scroll";
  // Somewhat taller than the box: it grows by the overflow plus 40.
  EXPECT_GT(medium.height, 415);
  EXPECT_EQ(medium.height - 415, medium.label - small.box + 40);
  EXPECT_EQ(tall.height, 415 + 400);
  EXPECT_EQ(small.top - tall.top, 400 / 2);
  EXPECT_GT(tall.range, tall.box) << "the rest scrolls";
}

TEST_F(DialogTest, FixedFontShowsUnwrappedAndStaysAsTheCallerChose) {
  // In a fixed-pitch font twenty narrow letters take as much room as twenty wide ones.
  const std::u16string narrowAndWide = u"llllllllllllllllllll\r\nMMMMMMMMMMMMMMMMMMMM\r\n";
  const std::u16string line(300, u'x');
  auto show = [&](const std::u16string& msg, bool fixed) {
    return [&msg, fixed] { return ShowMessageEx(msg, 0, fixed), 0; };
  };
  std::vector<int> lengths;
  Run(show(narrowAndWide + line, true),
      {Check([&] {
         EXPECT_FALSE(Dialog()->lbText->WordWrap());
         EXPECT_EQ(Dialog()->lbText->Font.Name, u"Courier New");
         EXPECT_GT(Dialog()->lbText->Width(), Dialog()->VertScrollBox1->ClientWidth());
         lengths = TOnScreen(MessageArea()).LineLengths();
       }),
       Key(VK_RETURN)});
  ASSERT_GE(lengths.size(), 2u);
  EXPECT_GT(lengths[0] * 10, lengths[1] * 9) << "narrow letters take less room than wide ones";
  EXPECT_TRUE(StdDlgSettings.UseFixedFont) << "AutoResetFixedFont is not acted on";
  Run(show(line, false),
      {Check([] { EXPECT_TRUE(Dialog()->lbText->WordWrap()); }), Key(VK_RETURN)});
  EXPECT_FALSE(StdDlgSettings.UseFixedFont);
}

TEST_F(DialogTest, ModalLoopComesAfterWaitingMessagesAndDisablesTheOtherWindows) {
  ui::TForm owner(nullptr);
  owner.BorderStyle = ui::bsNone;
  owner.Position = ui::poDesigned;
  owner.SetBounds(100, 100, 800, 600);
  owner.Show();
  SetActiveWindow(owner.Handle());
  // A message already waiting is handled before the dialog is made, and what it changes in
  // the settings shows: the caption bar's text as its colours.
  ui::TApplicationEvents events(nullptr);
  bool dialogBeforeWaitingMessage = true;
  events.OnMessage = [&](MSG& m, bool&) {
    if (m.message != WM_APP + 1) return;
    dialogBeforeWaitingMessage = F_MsgDlg != nullptr;
    StdDlgSettings.DialogCaptionText = u"Neu";
  };
  F_MsgDlg = nullptr;
  PostMessageW(owner.Handle(), WM_APP + 1, 0, 0);
  const int result = Run(
      [] { return MessageDlg(u"Weiter?", mtInformation, {mbOK}, 0); },
      {Check([&] {
         EXPECT_EQ(F_MsgDlg->lblCaption->Caption(), u"Neu");
         EXPECT_FALSE(IsWindowEnabled(owner.Handle()));
         // Centred on the window it was shown over, when the system let that window be
         // active (without a window manager it may not).
         RECT r{};
         GetWindowRect(FormWindow(), &r);
         if (GetWindow(FormWindow(), GW_OWNER) == owner.Handle()) {
           EXPECT_NEAR((r.left + r.right) / 2, 100 + 400, 1);
           EXPECT_NEAR((r.top + r.bottom) / 2, 100 + 300, 1);
         }
       }),
       Key(VK_RETURN)});
  EXPECT_EQ(result, mrOk);
  EXPECT_FALSE(dialogBeforeWaitingMessage);
  EXPECT_TRUE(IsWindowEnabled(owner.Handle()));
  // Closing the window as the system would cancels.
  EXPECT_EQ(Run(mtConfirmation, {mbYes, mbNo}, {Post(FormWindow, WM_CLOSE)}), mrCancel);
}

TEST_F(DialogTest, HelpRequestGoesToTheMessageManagerButAHelpButtonCloses) {
  Strs requests;
  const int subscription =
      rtl::TMessageManager::DefaultManager().SubscribeToMessage<rtl::TMessage<std::u16string>>(
          [&](const rtl::TObject*, const rtl::TMessageBase& m) {
            requests.push_back(static_cast<const rtl::TMessage<std::u16string>&>(m).Value());
          });
  rtl::TStringList keys, captions;
  keys.Add(u"help");
  captions.Add(u"&Hilfe");
  const int result = Run(
      [] { return MessageDlg(u"Hilfe?", mtInformation, {mbOK, mbHelp}, 120); },
      {Check([&] {
         EXPECT_EQ(DlgButtons->Count(), 1) << "mbHelp makes no button";
         Dialog()->bnSendHelpMessageClick(Dialog()->bnOK);
         EXPECT_EQ(requests, (Strs{u"ShowHelp=120"}));
         EXPECT_EQ(Dialog()->ModalResult, 0) << "the help request closed the dialog";
         // Even with HelpButtonNoReturn a button of result 9 closes rather than asks for help.
         Dialog()->CreateButton(u"help", mrHelp, captions, keys);
       }),
       Check([] {
         HWND help = Dialog()->ButtonAt(1)->Handle();
         SendMessageW(help, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
         SendMessageW(help, WM_LBUTTONUP, 0, MAKELPARAM(10, 10));
         if (Dialog()->ModalResult == 0) PostMessageW(FormWindow(), WM_CLOSE, 0, 0);
       })});
  rtl::TMessageManager::DefaultManager().Unsubscribe(subscription);
  EXPECT_EQ(result, mrHelp);
  EXPECT_EQ(requests.size(), 1u) << "the help button asked for help";
}

TEST_F(DialogTest, FrameShapesNeedExactlyFourAlignments) {
  TF_MsgDlg form(nullptr);
  try {
    form.CreateFrameShapes(form.bnOK, {ui::alLeft, ui::alRight, ui::alTop});
    ADD_FAILURE() << "three alignments accepted";
  } catch (const rtl::Exception& e) {
    EXPECT_EQ(e.Message(), u"Es müssen genau 4 Alignments angegeben werden.");
  }
  EXPECT_EQ(form.bnOK->ControlCount(), 0);
  form.CreateFrameShapes(form.bnOK, {ui::alLeft, ui::alRight, ui::alTop, ui::alBottom});
  EXPECT_EQ(form.bnOK->ControlCount(), 4);
}

TEST_F(DialogTest, PresenterAnswersInsteadOfTheForm) {
  std::u16string seen;
  TMsgDlgButtons seenButtons;
  auto previous = SetDlgPresenter([&](const std::u16string& msg, TMsgDlgType type,
                                      TMsgDlgButtons buttons, int helpCtx) {
    seen = msg;
    seenButtons = buttons;
    EXPECT_EQ(type, mtInformation);
    EXPECT_EQ(helpCtx, 7);
    return mrIgnore;
  });
  F_MsgDlg = nullptr;
  EXPECT_EQ(MessageDlg(u"Text", mtInformation, {mbOK, mbIgnore}, 7), mrIgnore);
  EXPECT_EQ(seen, u"Text");
  EXPECT_EQ(seenButtons, (TMsgDlgButtons{mbOK, mbIgnore}));
  EXPECT_EQ(F_MsgDlg, nullptr) << "a form was made";
  SetDlgPresenter(std::move(previous));
}

}  // namespace
