// The message dialog on real windows: each test shows a dialog with MessageDlgEx (or one of
// the routines leading to it) and drives it from a thread timer with the window messages a
// user's keyboard and mouse would send, while the dialog runs its modal loop.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "dialog/QMMessageDlgVCL.h"
#include "dialog/msgdlg_form.h"
#include "rtl/messaging.h"
#include "rtl/sysutils.h"
#include "ui/application.h"
#include "ui/clipbrd.h"

namespace {

using namespace QMMessageDlgVCL;

// One step of a script; false asks for the step again at the next tick.
using TStep = std::function<bool()>;

// Plays the steps from a thread timer, which the dialog's modal loop dispatches. A script
// that does not finish within 15 s closes the dialog (as cancelled) and fails the test.
class TScript {
 public:
  explicit TScript(std::vector<TStep> steps) : steps_(std::move(steps)) {
    current_ = this;
    start_ = GetTickCount64();
    timer_ = SetTimer(nullptr, 0, 15, &Tick);
  }
  ~TScript() {
    KillTimer(nullptr, timer_);
    current_ = nullptr;
  }
  TScript(const TScript&) = delete;
  TScript& operator=(const TScript&) = delete;
  bool Finished() const { return next_ == steps_.size(); }

 private:
  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
    TScript* s = current_;
    if (s == nullptr || s->busy_) return;
    s->busy_ = true;
    if (GetTickCount64() - s->start_ > 15000) {
      ADD_FAILURE() << "script stopped at step " << s->next_;
      s->next_ = s->steps_.size();
      if (F_MsgDlg != nullptr && F_MsgDlg->HandleAllocated())
        PostMessageW(F_MsgDlg->Handle(), WM_CLOSE, 0, 0);
    }
    // One step a tick: what a step posted is handled before the next tick comes.
    if (s->next_ < s->steps_.size() && s->steps_[s->next_]()) ++s->next_;
    s->busy_ = false;
  }

  static inline TScript* current_ = nullptr;
  std::vector<TStep> steps_;
  size_t next_ = 0;
  ULONGLONG start_ = 0;
  UINT_PTR timer_ = 0;
  bool busy_ = false;
};

TF_MsgDlg* Dialog() { return F_MsgDlg; }

// The first step of every script: the dialog is on the screen.
TStep Shown() {
  return [] {
    return F_MsgDlg != nullptr && F_MsgDlg->HandleAllocated() &&
           IsWindowVisible(F_MsgDlg->Handle());
  };
}

// Posts a message to a window of the dialog (chosen when the step runs).
TStep Post(std::function<HWND()> window, UINT msg, WPARAM wParam = 0, LPARAM lParam = 0) {
  return [=] {
    PostMessageW(window(), msg, wParam, lParam);
    return true;
  };
}

// Runs a check inside the dialog's lifetime.
TStep Check(std::function<void()> check) {
  return [=] {
    check();
    return true;
  };
}

HWND FormWindow() { return F_MsgDlg->Handle(); }
// Keys reach the dialog through the focused control; the message area stands for any.
HWND MessageArea() { return F_MsgDlg->VertScrollBox1->Handle(); }

TStep Key(WORD key) { return Post(MessageArea, WM_KEYDOWN, key); }
TStep KeyUp(WORD key) { return Post(MessageArea, WM_KEYUP, key, 0xC0000001); }
TStep Char(char16_t c) { return Post(MessageArea, WM_CHAR, c); }

// Which buttons of the row show their marking frame.
std::vector<bool> Marked() {
  std::vector<bool> marked;
  for (int i = 0; i < DlgButtons->Count(); ++i) {
    ui::TPanel* button = F_MsgDlg->ButtonAt(i);
    bool any = false, all = true;
    for (int c = 0; c < button->ControlCount(); ++c) {
      any = any || button->Controls(c)->Visible();
      all = all && button->Controls(c)->Visible();
    }
    EXPECT_EQ(any, all) << "a marking frame shown in part";
    marked.push_back(all);
  }
  return marked;
}

std::vector<std::u16string> Captions() {
  std::vector<std::u16string> captions;
  for (int i = 0; i < DlgButtons->Count(); ++i) captions.push_back((*DlgButtons)[i]);
  return captions;
}

class DialogTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Initialize();
    StdDlgSettings = StartDlgSettings();
  }
  void TearDown() override { Finalize(); }

  // Shows the dialog with `show` while the script plays; the dialog's result.
  int Run(const std::function<int()>& show, std::vector<TStep> steps) {
    TScript script(std::move(steps));
    const int result = show();
    EXPECT_TRUE(script.Finished());
    return result;
  }
  int Run(TMsgDlgType type, TMsgDlgButtons buttons, std::vector<TStep> steps,
          const std::u16string& msg = u"Eine Meldung") {
    return Run([&] { return MessageDlgEx(msg, type, buttons, 0); }, std::move(steps));
  }
};

TEST_F(DialogTest, EnterAndTabChooseTheButtonThatClosesTheDialog) {
  // Enter presses the first button; Tab moves the marking on, from the last to the first.
  EXPECT_EQ(Run(mtConfirmation, {mbYes, mbNo}, {Shown(), Key(VK_RETURN)}), mrYes);
  EXPECT_EQ(Run(mtConfirmation, {mbYes, mbNo}, {Shown(), KeyUp(VK_TAB), Key(VK_RETURN)}), mrNo);
  EXPECT_EQ(Run(mtWarning, {mbOK, mbYes, mbNo},
                {Shown(), Check([] { EXPECT_EQ(Marked(), (std::vector{true, false, false})); }),
                 KeyUp(VK_TAB), KeyUp(VK_TAB),
                 Check([] { EXPECT_EQ(Marked(), (std::vector{false, false, true})); }),
                 KeyUp(VK_TAB),
                 Check([] {
                   EXPECT_EQ(Dialog()->CurrentButton(), 0);
                   EXPECT_EQ(Marked(), (std::vector{true, false, false}));
                 }),
                 Key(VK_RETURN)}),
            mrOk);
  // Shift is not looked at: Shift+Tab moves forward too.
  EXPECT_EQ(Run(mtConfirmation, {mbYes, mbNo},
                {Shown(), Post(MessageArea, WM_KEYDOWN, VK_SHIFT), KeyUp(VK_TAB),
                 Post(MessageArea, WM_KEYUP, VK_SHIFT, 0xC0000001), Key(VK_RETURN)}),
            mrNo);
}

TEST_F(DialogTest, AcceleratorLettersSelectWithoutPressing) {
  const int result = Run(
      mtConfirmation, {mbYes, mbNo, mbCancel},
      {Shown(), Check([] { EXPECT_EQ(Captions(), (std::vector<std::u16string>{u"&Ja", u"&Nein",
                                                                              u"&Abbruch"})); }),
       Char(u'N'),  // upper case never matches
       Check([] { EXPECT_EQ(Dialog()->CurrentButton(), 0); }), Char(u'n'),
       Check([] {
         EXPECT_EQ(Dialog()->CurrentButton(), 1);
         EXPECT_EQ(Marked(), (std::vector{false, true, false}));
         EXPECT_EQ(Dialog()->ModalResult, 0) << "a letter pressed the button";
       }),
       Char(u'a'), Check([] { EXPECT_EQ(Marked(), (std::vector{false, false, true})); }),
       Char(u'x'), Key(VK_RETURN)});
  EXPECT_EQ(result, mrCancel);
  // The first caption holding "&a" wins: "&Abbruch" serves cancel and abort alike.
  EXPECT_EQ(Run(mtError, {mbAbort, mbCancel}, {Shown(), Char(u'a'), Key(VK_RETURN)}), mrCancel);
}

TEST_F(DialogTest, ButtonsColourUnderTheMouseAndClickWithTheirResult) {
  auto buttonWindow = [] { return Dialog()->ButtonAt(1)->Handle(); };
  const int result =
      Run(mtConfirmation, {mbYes, mbNo},
          {Shown(), Check([&] {
             ui::TPanel* no = Dialog()->ButtonAt(1);
             EXPECT_EQ(no->Color, StdDlgSettings.btnColor);
             SendMessageW(buttonWindow(), WM_MOUSEMOVE, 0, MAKELPARAM(10, 10));
             EXPECT_EQ(no->Color, 0x0000A5FF);
             SendMessageW(buttonWindow(), WM_MOUSELEAVE, 0, 0);
             EXPECT_EQ(no->Color, StdDlgSettings.btnColor);
             SendMessageW(buttonWindow(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
             EXPECT_EQ(no->Color, StdDlgSettings.btnClickColor);
             EXPECT_EQ(Dialog()->ModalResult, 0);
           }),
           Post(buttonWindow, WM_LBUTTONUP, 0, MAKELPARAM(10, 10))});
  EXPECT_EQ(result, mrNo);
}

TEST_F(DialogTest, CaptionBarDragsWithTheLeftButtonOnly) {
  HWND bar = nullptr;
  RECT before{}, afterRight{}, afterLeft{};
  auto send = [&](UINT msg, WPARAM w, int x, int y) {
    SendMessageW(bar, msg, w, MAKELPARAM(x, y));
  };
  Run(mtInformation, {mbOK},
      {Shown(), Check([&] {
         bar = Dialog()->RecCaption->Handle();
         GetWindowRect(FormWindow(), &before);
         send(WM_RBUTTONDOWN, MK_RBUTTON, 20, 12);
         send(WM_MOUSEMOVE, MK_RBUTTON, 60, 32);
         send(WM_RBUTTONUP, 0, 60, 32);
         GetWindowRect(FormWindow(), &afterRight);
         send(WM_LBUTTONDOWN, MK_LBUTTON, 20, 12);
         send(WM_MOUSEMOVE, MK_LBUTTON, 50, 32);
         send(WM_LBUTTONUP, 0, 50, 32);
         GetWindowRect(FormWindow(), &afterLeft);
         // After the release a move drags nothing.
         send(WM_MOUSEMOVE, 0, 90, 90);
       }),
       Check([&] {
         RECT now;
         GetWindowRect(FormWindow(), &now);
         EXPECT_TRUE(EqualRect(&now, &afterLeft));
       }),
       Key(VK_RETURN)});
  EXPECT_TRUE(EqualRect(&before, &afterRight));
  EXPECT_EQ(afterLeft.left - before.left, 30);
  EXPECT_EQ(afterLeft.top - before.top, 20);
  EXPECT_EQ(afterLeft.right - afterLeft.left, before.right - before.left);
}

TEST_F(DialogTest, CopyItemPutsTheMessageAsShownOnTheClipboard) {
  ui::Clipboard().SetAsText(u"vorher");
  auto menu = [] { return FindWindowW(L"#32768", nullptr); };
  Run(mtInformation, {mbOK},
      {Shown(), Check([] {
         POINT p = Dialog()->lbText->ClientToScreen({5, 5});
         PostMessageW(MessageArea(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(MessageArea()),
                      MAKELPARAM(p.x, p.y));
       }),
       [&] { return menu() != nullptr && IsWindowVisible(menu()); },
       Post(menu, WM_KEYDOWN, VK_DOWN), Post(menu, WM_KEYDOWN, VK_RETURN),
       [] { return ui::Clipboard().AsText() != u"vorher"; }, Key(VK_RETURN)},
      u"Zeile 1\r\nZeile 2 mit Ä");
  EXPECT_EQ(ui::Clipboard().AsText(), u"Zeile 1\r\nZeile 2 mit Ä\r\n\r\n ");
}

TEST_F(DialogTest, MessageBoxMapsFlagsToKindButtonsAndResult) {
  auto box = [](UINT flags) {
    return [flags] { return MessageBox(nullptr, L"Weiter?", L"ignored", flags); };
  };
  EXPECT_EQ(Run(box(0x24),
                {Shown(), Check([] {
                   EXPECT_EQ(Dialog()->lbInfo->Caption(), u"Bestätigung");
                   EXPECT_EQ(Captions(), (std::vector<std::u16string>{u"&Ja", u"&Nein"}));
                   EXPECT_FALSE(Dialog()->bnOK->Visible());
                 }),
                 Key(VK_RETURN)}),
            IDYES);
  EXPECT_EQ(Run(box(0x24), {Shown(), KeyUp(VK_TAB), Key(VK_RETURN)}), IDNO);
  EXPECT_EQ(Run(box(0x06),
                {Shown(), Check([] {
                   EXPECT_EQ(Captions(), (std::vector<std::u16string>{u"O&K"}));
                   EXPECT_TRUE(Dialog()->bnOK->Visible());
                 }),
                 Key(VK_RETURN)}),
            IDOK);
  // English words; a kind without an icon keeps the header the form was designed with.
  StdDlgSettings.lang = 2;
  EXPECT_EQ(Run(box(0x03),
                {Shown(), Check([] {
                   EXPECT_EQ(Dialog()->lbInfo->Caption(), u"Warnung");
                   EXPECT_EQ(Captions(),
                             (std::vector<std::u16string>{u"&Yes", u"&No", u"&Cancel"}));
                 }),
                 Char(u'c'), Key(VK_RETURN)}),
            IDCANCEL);
}

TEST_F(DialogTest, DialogTakesItsLookFromTheSettings) {
  StdDlgSettings.DialogCaptionText = u"Noxdesk";
  StdDlgSettings.btnColor = 0x00112233;
  StdDlgSettings.HeadBack = 0x00445566;
  Run(mtWarning, {mbYes, mbNo},
      {Shown(), Check([] {
         TF_MsgDlg* d = Dialog();
         EXPECT_EQ(d->lblCaption->Caption(), u"Noxdesk");
         EXPECT_EQ(d->Caption(), u"win_tests");
         EXPECT_EQ(d->lbInfo->Caption(), u"Warnung !");
         EXPECT_EQ(d->lbText->Caption(), u"Eine Meldung\r\n\r\n ");
         EXPECT_EQ(d->RecHeader->Color, 0x00445566);
         EXPECT_EQ(d->ButtonAt(0)->Color, 0x00112233);
         EXPECT_EQ(d->ButtonAt(0)->Width(), 130) << "a short caption still gets 130 pixels";
         EXPECT_TRUE(GetWindowLongW(FormWindow(), GWL_EXSTYLE) & WS_EX_TOPMOST);
         EXPECT_FALSE(GetWindowLongW(FormWindow(), GWL_STYLE) & (WS_CAPTION | WS_THICKFRAME));
         // The row: the template OK button hidden, "yes" then "no" from the left.
         EXPECT_LT(d->ButtonAt(0)->Left(), d->ButtonAt(1)->Left());
         EXPECT_EQ(d->ButtonAt(0)->Left(), 15 + 1);  // its margin, inside the row's bevel
       }),
       Key(VK_RETURN)});
}

TEST_F(DialogTest, FormGrowsWithTheMessageUpToTheAllowance) {
  struct Sizes {
    int formHeight, formTop, scrollBoxHeight, labelHeight, range;
  };
  auto measure = [](Sizes& out) {
    return Check([&out] {
      TF_MsgDlg* d = Dialog();
      out = {d->Height(), d->Top(), d->VertScrollBox1->ClientHeight(), d->lbText->Height(),
             d->VertScrollBox1->VertRange()};
    });
  };
  std::u16string tall;
  for (int i = 0; i < 200; ++i) tall += u"Zeile " + rtl::IntToStr(i) + u"\r\n";
  Sizes shortOne{}, tallOne{};
  Run(mtInformation, {mbOK}, {Shown(), measure(shortOne), Key(VK_RETURN)});
  Run(mtInformation, {mbOK}, {Shown(), measure(tallOne), Key(VK_RETURN)}, tall);
  EXPECT_EQ(shortOne.formHeight, 415);
  EXPECT_EQ(shortOne.range, 0) << "a short message does not scroll";
  EXPECT_EQ(tallOne.formHeight, 415 + StdDlgSettings.AddMaxHeight);
  EXPECT_EQ(shortOne.formTop - tallOne.formTop, StdDlgSettings.AddMaxHeight / 2);
  EXPECT_GT(tallOne.range, tallOne.scrollBoxHeight) << "the rest scrolls";

  // Somewhat taller than the box: it grows by the overflow plus 40.
  std::u16string medium;
  for (int i = 0; i < 16; ++i) medium += u"Zeile " + rtl::IntToStr(i) + u"\r\n";
  Sizes mediumOne{};
  Run(mtInformation, {mbOK}, {Shown(), measure(mediumOne), Key(VK_RETURN)}, medium);
  const int grow = mediumOne.formHeight - 415;
  EXPECT_GT(grow, 0);
  EXPECT_LT(grow, StdDlgSettings.AddMaxHeight);
  EXPECT_EQ(grow, mediumOne.labelHeight - shortOne.scrollBoxHeight + 40);
}

TEST_F(DialogTest, FixedFontShowsUnwrappedAndStaysAsTheCallerChose) {
  std::u16string line(300, u'x');
  bool wrapped = true;
  std::u16string fontName;
  Run([&] {
        ShowMessageEx(line, 0, true);
        return 0;
      },
      {Shown(), Check([&] {
         wrapped = Dialog()->lbText->WordWrap();
         fontName = Dialog()->lbText->Font.Name;
         EXPECT_GT(Dialog()->lbText->Width(), Dialog()->VertScrollBox1->ClientWidth());
       }),
       Key(VK_RETURN)});
  EXPECT_FALSE(wrapped);
  EXPECT_EQ(fontName, u"Courier New");
  EXPECT_TRUE(StdDlgSettings.UseFixedFont) << "AutoResetFixedFont is not acted on";
  Run([&] {
        ShowMessageEx(line, 0, false);
        return 0;
      },
      {Shown(), Check([&] { EXPECT_TRUE(Dialog()->lbText->WordWrap()); }), Key(VK_RETURN)});
  EXPECT_FALSE(StdDlgSettings.UseFixedFont);
}

TEST_F(DialogTest, ModalLoopDisablesTheOtherWindowsAndGivesThemBack) {
  ui::TForm owner(nullptr);
  owner.BorderStyle = ui::bsNone;
  owner.Position = ui::poDesigned;
  owner.SetBounds(100, 100, 800, 600);
  owner.Show();
  SetActiveWindow(owner.Handle());
  bool enabledDuring = true;
  RECT dialogRect{};
  bool ownedByForm = false;
  std::u16string helpMessage;
  const int subscription =
      rtl::TMessageManager::DefaultManager().SubscribeToMessage<rtl::TMessage<std::u16string>>(
          [&](const rtl::TObject*, const rtl::TMessageBase& m) {
            helpMessage = static_cast<const rtl::TMessage<std::u16string>&>(m).Value();
          });
  const int result = Run(
      [] { return MessageDlg(u"Hilfe?", mtInformation, {mbOK, mbHelp}, 120); },
      {Shown(), Check([&] {
         enabledDuring = IsWindowEnabled(owner.Handle());
         GetWindowRect(FormWindow(), &dialogRect);
         ownedByForm = GetWindow(FormWindow(), GW_OWNER) == owner.Handle();
         EXPECT_EQ(DlgButtons->Count(), 1) << "mbHelp makes no button";
         Dialog()->bnSendHelpMessageClick(Dialog()->bnOK);
         EXPECT_EQ(Dialog()->ModalResult, 0) << "the help request closed the dialog";
       }),
       Key(VK_RETURN)});
  rtl::TMessageManager::DefaultManager().Unsubscribe(subscription);
  EXPECT_EQ(result, mrOk);
  EXPECT_FALSE(enabledDuring);
  // Centred on the window it was shown over, when the system let that window be active
  // (without a window manager it may not).
  if (ownedByForm) {
    EXPECT_NEAR((dialogRect.left + dialogRect.right) / 2, 100 + 400, 1);
    EXPECT_NEAR((dialogRect.top + dialogRect.bottom) / 2, 100 + 300, 1);
  }
  EXPECT_TRUE(IsWindowEnabled(owner.Handle()));
  EXPECT_EQ(helpMessage, u"ShowHelp=120");
  // Closing the window as the system would cancels.
  EXPECT_EQ(Run(mtConfirmation, {mbYes, mbNo}, {Shown(), Post(FormWindow, WM_CLOSE)}), mrCancel);
}

TEST_F(DialogTest, FrameShapesNeedExactlyFourAlignments) {
  TF_MsgDlg form(nullptr);
  try {
    form.CreateFrameShapes(form.bnOK, {ui::alLeft, ui::alRight, ui::alTop});
    FAIL() << "three alignments accepted";
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
