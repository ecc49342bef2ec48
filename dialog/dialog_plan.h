// What one message dialog shows, decided without the system: the system message-box flag
// tables, the button words, the button row, the texts and the sizing rules. The form
// gathers what only the system knows (the program's file name, measured text sizes) and
// applies the result; it does not decide anything these functions decide.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "dialog/QMMessageDlgVCL.h"
#include "rtl/classes.h"

namespace QMMessageDlgVCL {

// Dialog kind for system message-box flags, by the icon nibble (flags & 0xF0):
// 0x10 error, 0x20 confirmation (the question icon), 0x30 warning, 0x40 information;
// anything else, 0 included, mtCustom.
TMsgDlgType MessageBoxKind(unsigned flags);

// Button set for system message-box flags, by the low nibble: 0 OK, 1 OK Cancel,
// 2 Abort Retry Ignore, 3 Yes No Cancel, 4 Yes No, 5 Retry Cancel; 6 to 15 OK alone.
TMsgDlgButtons MessageBoxButtons(unsigned flags);

// Fills `list` from a comma list of words as the dialog keeps them: split on commas only
// (blanks belong to the words). With `lang` the words of that language: 1 German, any
// other value English.
void FillWordList(rtl::TStringList& list, std::u16string_view words);
void FillCaptionList(rtl::TStringList& list, int lang);

// Caption of a button or header word in a language: lang 1 German, any other value
// English. A key outside ButtonKeys gives "".
//   ButtonCaption(u"abort", 1) == u"&Abbruch"   (the same as "cancel")
std::u16string ButtonCaption(std::u16string_view key, int lang);

struct TPlannedButton {
  std::u16string Key;      // its word in ButtonKeys ("ok" for the template)
  std::u16string Caption;  // holds the accelerator as "&x"
  int Tag;                 // the modal result the button closes the dialog with
  bool Template;           // the form's own OK button rather than a created one
};

struct TDialogPlan {
  // In row order; the first is the current button when the dialog opens. The template OK
  // button comes first when mbOK is in the set, and is hidden otherwise.
  std::vector<TPlannedButton> Buttons;
  std::u16string Text;           // the message as shown and as copied to the clipboard
  std::u16string WindowCaption;  // the form's title: always the program's name
  std::u16string CaptionBarText;
  // Header word and image of the form's image list; for mtCustom "" and -1, meaning the
  // form keeps what it has.
  std::u16string HeaderText;
  int GlyphIndex;
  int HelpCtx;
};

// The plan of one dialog. `programFileName` is the running program's full path; its name
// without folder and extension titles the window, and the caption bar unless
// settings.DialogCaptionText is set. mbHelp makes no button.
//   PlanDialog(u"Saved", mtInformation, {mbOK}, 0, s, u"C:\\x\\NOXPlugIn.exe")
//     .Text == u"Saved\r\n\r\n "   .WindowCaption == u"NOXPlugIn"
TDialogPlan PlanDialog(std::u16string_view msg, TMsgDlgType type, TMsgDlgButtons buttons,
                       int helpCtx, const TDlgSettings& settings,
                       std::u16string_view programFileName);

// A caption as it is read out and copied: each "&" that marks the accelerator dropped,
// "&&" kept as one "&".
//   PlainCaption(u"Ja A&lle") == u"Ja Alle"    PlainCaption(u"A&&B") == u"A&B"
std::u16string PlainCaption(std::u16string_view caption);

// The key that marks the button: the character after the first single "&", lower-cased as
// the dialog compares it; 0 when there is none.
//   AcceleratorKey(u"&Nein") == u'n'           AcceleratorKey(u"Nein Alle") == 0
char16_t AcceleratorKey(std::u16string_view caption);

// What Ctrl+C puts on the clipboard, laid out as the system's message boxes copy
// themselves: a line of dashes, the caption bar's text, dashes, the message, dashes, the
// plain button captions separated by three blanks, dashes; every line ends with CR LF.
std::u16string DialogCopyText(std::u16string_view captionBarText, std::u16string_view message,
                              const std::vector<std::u16string>& buttonCaptions);

// Width of a created button for the measured width of its caption: 30 pixels of padding,
// and never narrower than 130.
int ButtonWidth(int measuredCaptionWidth);

struct TFormBounds {
  int Height;
  int Top;
};

// The form's height and top once the message label has sized itself to its text. A label
// that no longer fits the scroll box with 20 pixels to spare grows the form by the
// overflow plus 40, at most addMaxHeight, and moves it up by half the growth so it stays
// centred; the scroll box shows the rest.
TFormBounds FormHeightFor(int labelHeight, int scrollBoxHeight, int formHeight, int formTop,
                          int addMaxHeight);

}  // namespace QMMessageDlgVCL
