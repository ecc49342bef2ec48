// Pure rules of the message dialog; the form's Win32 side applies them.
#include "dialog/dialog_plan.h"

#include <algorithm>
#include <array>

#include "rtl/classes.h"
#include "rtl/locale.h"

namespace QMMessageDlgVCL {

TMsgDlgType MessageBoxKind(unsigned flags) {
  switch (flags & 0xF0u) {
    case 0x10: return mtError;
    case 0x20: return mtConfirmation;
    case 0x30: return mtWarning;
    case 0x40: return mtInformation;
    default: return mtCustom;
  }
}

TMsgDlgButtons MessageBoxButtons(unsigned flags) {
  switch (flags & 0x0Fu) {
    case 1: return {mbOK, mbCancel};
    case 2: return {mbAbort, mbRetry, mbIgnore};
    case 3: return {mbYes, mbNo, mbCancel};
    case 4: return {mbYes, mbNo};
    case 5: return {mbRetry, mbCancel};
    default: return {mbOK};
  }
}

void FillWordList(rtl::TStringList& list, std::u16string_view words) {
  list.StrictDelimiter = true;
  list.Delimiter = u',';
  list.SetDelimitedText(words);
}

void FillCaptionList(rtl::TStringList& list, int lang) {
  // Only German and English exist; English is the readable choice for anything else.
  FillWordList(list, lang == 1 ? ButtonCaptionsGerman : ButtonCaptionsEnglish);
}

namespace {

// The key list and one caption list, split as the stored lists expect: commas only.
class TWordTable {
 public:
  explicit TWordTable(int lang) {
    FillWordList(keys_, ButtonKeys);
    FillCaptionList(captions_, lang);
  }

  std::u16string Caption(std::u16string_view key) const {
    int i = keys_.IndexOf(key);
    return i < 0 || i >= captions_.Count() ? std::u16string() : captions_[i];
  }

 private:
  rtl::TStringList keys_;
  rtl::TStringList captions_;
};

struct TCreatedButton {
  TMsgDlgBtn Button;
  std::u16string_view Key;
  int Tag;
};

// The row's order after the template OK button, whatever order the caller listed.
constexpr std::array<TCreatedButton, 10> CreatedButtons{{
    {mbYes, u"yes", mrYes},
    {mbYesToAll, u"yes all", mrYesToAll},
    {mbNo, u"no", mrNo},
    {mbNoToAll, u"no all", mrNoToAll},
    {mbCancel, u"cancel", mrCancel},
    {mbIgnore, u"ignore", mrIgnore},
    {mbAbort, u"abort", mrAbort},
    {mbRetry, u"retry", mrRetry},
    {mbClose, u"close", mrClose},
    {mbAll, u"all", mrAll},
}};

// The template button keeps the caption the form was designed with; the word lists are
// never asked for "ok", so its accelerator stays "K" in both languages.
constexpr std::u16string_view TemplateOkCaption = u"O&K";

std::u16string ProgramName(std::u16string_view path) {
  std::size_t slash = path.find_last_of(u"\\/:");
  std::u16string_view name = slash == path.npos ? path : path.substr(slash + 1);
  std::size_t dot = name.rfind(u'.');
  return std::u16string(dot == name.npos ? name : name.substr(0, dot));
}

}  // namespace

std::u16string ButtonCaption(std::u16string_view key, int lang) {
  return TWordTable(lang).Caption(key);
}

TDialogPlan PlanDialog(std::u16string_view msg, TMsgDlgType type, TMsgDlgButtons buttons,
                       int helpCtx, const TDlgSettings& settings,
                       std::u16string_view programFileName) {
  TWordTable words(settings.lang);
  TDialogPlan plan{};

  if (buttons.Contains(mbOK))
    plan.Buttons.push_back({u"ok", std::u16string(TemplateOkCaption), mrOk, true});
  for (const TCreatedButton& b : CreatedButtons)
    if (buttons.Contains(b.Button))
      plan.Buttons.push_back({std::u16string(b.Key), words.Caption(b.Key), b.Tag, false});

  // The trailing breaks and blank keep the last line clear of the label's bottom edge.
  plan.Text = std::u16string(msg) + u"\r\n\r\n ";
  plan.WindowCaption = ProgramName(programFileName);
  plan.CaptionBarText =
      settings.DialogCaptionText.empty() ? plan.WindowCaption : settings.DialogCaptionText;

  // Header word and glyph by kind; mtCustom keeps what the form has.
  struct KindLook { TMsgDlgType type; std::u16string_view word, suffix; int glyph; };
  static constexpr KindLook kLooks[] = {
      {mtWarning, u"warning", u" !", 0},
      {mtConfirmation, u"confirmation", u"", 1},
      {mtInformation, u"information", u"", 2},
      {mtError, u"error", u"", 3},
  };
  plan.GlyphIndex = -1;
  for (const KindLook& look : kLooks)
    if (look.type == type) {
      plan.HeaderText = words.Caption(look.word) + std::u16string(look.suffix);
      plan.GlyphIndex = look.glyph;
    }
  plan.HelpCtx = helpCtx;
  return plan;
}

int ButtonWidth(int measuredCaptionWidth) { return std::max(measuredCaptionWidth + 30, 130); }

TFormBounds FormHeightFor(int labelHeight, int scrollBoxHeight, int formHeight, int formTop,
                          int addMaxHeight) {
  if (labelHeight + 20 <= scrollBoxHeight) return {formHeight, formTop};
  int grow = std::min(labelHeight - scrollBoxHeight + 40, addMaxHeight);
  return {formHeight + grow, formTop - grow / 2};
}

std::u16string PlainCaption(std::u16string_view caption) {
  std::u16string plain;
  for (size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == u'&' && i + 1 < caption.size()) ++i;  // "&&" leaves one "&"
    else if (caption[i] == u'&') continue;
    plain.push_back(caption[i]);
  }
  return plain;
}

char16_t AcceleratorKey(std::u16string_view caption) {
  for (size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != u'&') continue;
    if (caption[i + 1] != u'&') return rtl::AnsiLowerCase(caption.substr(i + 1, 1))[0];
    ++i;
  }
  return 0;
}

std::u16string DialogCopyText(std::u16string_view captionBarText, std::u16string_view message,
                              const std::vector<std::u16string>& buttonCaptions) {
  const std::u16string dashes = u"---------------------------\r\n";
  std::u16string row;
  for (size_t i = 0; i < buttonCaptions.size(); ++i)
    row += (i == 0 ? u"" : u"   ") + PlainCaption(buttonCaptions[i]);
  return dashes + std::u16string(captionBarText) + u"\r\n" + dashes + std::u16string(message) +
         u"\r\n" + dashes + row + u"\r\n" + dashes;
}

}  // namespace QMMessageDlgVCL
