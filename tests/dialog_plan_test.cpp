// The message dialog's decisions: message-box flags, button words and row order, texts, sizes.
#include "dialog/dialog_plan.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using namespace QMMessageDlgVCL;
using Str = std::u16string;
using Row = std::vector<std::pair<Str, int>>;

std::string Narrow(const Str& s) { return std::string(s.begin(), s.end()); }

Row RowOf(const TDialogPlan& plan) {
  Row row;
  for (const auto& b : plan.Buttons) row.emplace_back(b.Caption, b.Tag);
  return row;
}

TDialogPlan Plan(TMsgDlgType type, TMsgDlgButtons buttons, int lang = 1) {
  TDlgSettings s = StartDlgSettings();
  s.lang = lang;
  return PlanDialog(u"m", type, buttons, 0, s, u"C:\\x\\NOXPlugIn.exe");
}

TEST(DialogPlanMessageBox, FlagsGiveKindAndButtons) {
  // Bits above the two nibbles don't matter; button codes it has no row for give OK.
  const struct { unsigned flags; TMsgDlgType kind; TMsgDlgButtons buttons; } cases[] = {
      {0x24, mtConfirmation, {mbYes, mbNo}}, {0x10, mtError, {mbOK}}, {0x06, mtCustom, {mbOK}},
      {0x31, mtWarning, {mbOK, mbCancel}}, {0x42, mtInformation, {mbAbort, mbRetry, mbIgnore}},
      {0x03, mtCustom, {mbYes, mbNo, mbCancel}}, {0x55, mtCustom, {mbRetry, mbCancel}},
      {0x0F, mtCustom, {mbOK}}, {0x124, mtConfirmation, {mbYes, mbNo}}};
  for (const auto& c : cases) {
    EXPECT_EQ(MessageBoxKind(c.flags), c.kind) << std::hex << c.flags;
    EXPECT_EQ(MessageBoxButtons(c.flags), c.buttons) << std::hex << c.flags;
  }
}

TEST(DialogPlanWords, CaptionByLanguage) {
  const struct { Str key; int lang; Str caption; } cases[] = {
      {u"cancel", 1, u"&Abbruch"}, {u"abort", 1, u"&Abbruch"}, {u"yes all", 1, u"Ja A&lle"},
      {u"close", 1, u"&Schließen"}, {u"error", 1, u"Fehler"}, {u"cancel", 2, u"&Cancel"},
      {u"no all", 2, u"No all"}, {u"abort", 7, u"&Abort"}, {u"yes", 0, u"&Yes"}, {u"maybe", 1, u""},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ButtonCaption(c.key, c.lang), c.caption) << Narrow(c.key) << " " << c.lang;
}

TEST(DialogPlanButtons, RowOrderIsFixedWithOkOrElseYesFirst) {
  TMsgDlgButtons all{mbAll, mbClose, mbRetry, mbAbort, mbIgnore, mbCancel,
                     mbNoToAll, mbNo, mbYesToAll, mbYes, mbOK, mbHelp};
  EXPECT_EQ(RowOf(Plan(mtCustom, all, 2)),
            (Row{{u"O&K", mrOk}, {u"&Yes", mrYes}, {u"Yes a&ll", mrYesToAll}, {u"&No", mrNo},
                 {u"No all", mrNoToAll}, {u"&Cancel", mrCancel}, {u"&Ignore", mrIgnore},
                 {u"&Abort", mrAbort}, {u"&Retry", mrRetry}, {u"&Close", mrClose},
                 {u"All", mrAll}}));
  EXPECT_TRUE(Plan(mtCustom, all).Buttons.front().Template);
  // Without OK the first button is Yes; Help makes none.
  EXPECT_EQ(RowOf(Plan(mtConfirmation, {mbNo, mbYes})), (Row{{u"&Ja", mrYes}, {u"&Nein", mrNo}}));
  EXPECT_TRUE(Plan(mtInformation, {mbHelp}).Buttons.empty());
}

TEST(DialogPlanHeader, KindGivesWordAndGlyph) {
  const struct { TMsgDlgType type; int lang; Str header; int glyph; } cases[] = {
      {mtWarning, 2, u"Warning !", 0}, {mtConfirmation, 2, u"Confirmation", 1},
      {mtInformation, 2, u"Information", 2}, {mtError, 2, u"Error", 3}, {mtCustom, 1, u"", -1}};
  for (const auto& c : cases) {
    const TDialogPlan plan = Plan(c.type, {mbOK}, c.lang);
    EXPECT_EQ(std::pair(plan.HeaderText, plan.GlyphIndex), std::pair(c.header, c.glyph)) << c.type;
  }
}

TEST(DialogPlanText, MessageGetsBreaksAndCaptionsTheProgramName) {
  const struct { Str path, captionText, window, bar; } cases[] = {
      {u"C:\\x\\NOXPlugIn.exe", u"", u"NOXPlugIn", u"NOXPlugIn"},
      {u"C:\\x.d\\tool", u"", u"tool", u"tool"},
      {u"C:\\x\\my.app.exe", u"Noxdesk", u"my.app", u"Noxdesk"}};
  for (const auto& c : cases) {
    TDlgSettings s = StartDlgSettings();
    s.DialogCaptionText = c.captionText;
    TDialogPlan plan = PlanDialog(u"m", mtInformation, {mbOK}, 120, s, c.path);
    EXPECT_EQ(plan.WindowCaption, c.window) << Narrow(c.path);
    EXPECT_EQ(plan.CaptionBarText, c.bar) << Narrow(c.path);
    EXPECT_EQ(plan.Text, u"m\r\n\r\n ");
    EXPECT_EQ(plan.HelpCtx, 120);
  }
}

// Read out and copied without the accelerator marks; the copy is laid out as the system's
// message boxes copy themselves.
TEST(DialogPlanCopy, CaptionsLoseTheirMarksAndTheCopyIsFramedByDashes) {
  const struct { const char16_t* caption; const char16_t* plain; char16_t key; } cases[] = {
      {u"&Nein", u"Nein", u'n'}, {u"Ja A&lle", u"Ja Alle", u'l'}, {u"Nein Alle", u"Nein Alle", 0},
      {u"A&&B &Öffnen", u"A&B Öffnen", u'ö'}, {u"Ende&", u"Ende", 0}, {u"", u"", 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(PlainCaption(c.caption), c.plain) << Narrow(c.caption);
    EXPECT_EQ(AcceleratorKey(c.caption), c.key) << Narrow(c.caption);
  }
  const Str dashes = u"---------------------------\r\n";
  EXPECT_EQ(DialogCopyText(u"NOXPlugIn", u"Zeile 1\r\nZeile 2", {u"&Ja", u"Ja A&lle", u"&Nein"}),
            dashes + u"NOXPlugIn\r\n" + dashes + u"Zeile 1\r\nZeile 2\r\n" + dashes +
                u"Ja   Ja Alle   Nein\r\n" + dashes);
  EXPECT_EQ(DialogCopyText(u"", u"", {}), dashes + u"\r\n" + dashes + u"\r\n" + dashes + u"\r\n" + dashes);
}

TEST(DialogPlanSize, ButtonsAtLeast130WideAndFormGrowsToTheMessageUpToTheAllowance) {
  EXPECT_EQ((std::vector<int>{ButtonWidth(40), ButtonWidth(100), ButtonWidth(101)}),
            (std::vector<int>{130, 130, 131}));
  // Scroll box 200, form 415 high at top 300, allowance 400.
  // 180 fits with 20 to spare; 181 grows by 21 and moves up by 10; 560 takes exactly the
  // allowance, and of 900 the rest scrolls.
  const struct { int label, height, top; } cases[] = {
      {180, 415, 300}, {181, 436, 290}, {300, 555, 230}, {560, 815, 100}, {900, 815, 100}};
  for (const auto& c : cases) {
    const TFormBounds b = FormHeightFor(c.label, 200, 415, 300, 400);
    EXPECT_EQ(std::pair(b.Height, b.Top), std::pair(c.height, c.top)) << c.label;
  }
}

TEST(DialogPlanSettings, OnlyTheOutermostStartAndStopWork) {
  Initialize();
  Initialize();
  StdDlgSettings.lang = 2;
  StdDlgSettings.DialogCaptionText.assign(3, u'x');
  Finalize();  // the inner pair does nothing
  EXPECT_EQ(StdDlgSettings.DialogCaptionText.size(), 3u);
  Finalize();
  EXPECT_TRUE(StdDlgSettings.DialogCaptionText.empty());
  Initialize();
  EXPECT_EQ(StdDlgSettings.lang, 1) << "a new start begins from the start values";
  Finalize();
}

}  // namespace
