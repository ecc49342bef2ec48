// The message dialog unit: its settings record, the framework's dialog kinds, button sets
// and modal results, and the button words. The form that shows a dialog is not here; it
// reads StdDlgSettings and applies the plan of dialog_plan.h.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace QMMessageDlgVCL {

// Colours are 0x00BBGGRR, as the framework's TColor.
using TColor = std::int32_t;

struct TDlgSettings {
  std::int32_t lang;  // 1 German, 2 English
  TColor btnColor;
  TColor btnTextColor;
  TColor btnStrokeColor;  // marking frame of the current button
  TColor btnClickColor;
  TColor recColor;
  TColor HeadBack;
  TColor HeadText;
  std::int32_t AddMaxHeight;  // most a form may grow to fit its message
  TColor MsgTextColor;
  bool HelpButtonNoReturn;
  bool UseFixedFont;
  // Kept for the callers, who reset UseFixedFont themselves; the dialog ignores it.
  bool AutoResetFixedFont;
  std::u16string StyleName;
  TColor DialogCaptionColor;
  std::u16string DialogCaptionText;  // empty: the program's file name
};

// The values every program starts with; Initialize puts them back.
TDlgSettings StartDlgSettings();

// Read by every dialog when it is built; any caller may change it at any time.
extern TDlgSettings StdDlgSettings;

enum TMsgDlgType { mtWarning = 0, mtError, mtInformation, mtConfirmation, mtCustom };

// Bit numbers within TMsgDlgButtons.
enum TMsgDlgBtn {
  mbYes = 0, mbNo, mbOK, mbCancel, mbAbort, mbRetry,
  mbIgnore, mbAll, mbNoToAll, mbYesToAll, mbHelp, mbClose
};

// A set of buttons, written as the framework writes it: TMsgDlgButtons{mbYes, mbNo}.
class TMsgDlgButtons {
 public:
  constexpr TMsgDlgButtons() = default;
  constexpr TMsgDlgButtons(std::initializer_list<TMsgDlgBtn> buttons) {
    for (TMsgDlgBtn b : buttons) Include(b);
  }
  constexpr bool Contains(TMsgDlgBtn b) const { return (bits_ >> b) & 1u; }
  constexpr void Include(TMsgDlgBtn b) { bits_ = static_cast<std::uint16_t>(bits_ | (1u << b)); }
  constexpr void Exclude(TMsgDlgBtn b) { bits_ = static_cast<std::uint16_t>(bits_ & ~(1u << b)); }
  constexpr std::uint16_t Bits() const { return bits_; }
  friend constexpr bool operator==(TMsgDlgButtons, TMsgDlgButtons) = default;

 private:
  std::uint16_t bits_ = 0;
};

// Modal results; 1 to 7 coincide with the system's IDOK to IDNO.
constexpr int mrNone = 0;
constexpr int mrOk = 1;
constexpr int mrCancel = 2;
constexpr int mrAbort = 3;
constexpr int mrRetry = 4;
constexpr int mrIgnore = 5;
constexpr int mrYes = 6;
constexpr int mrNo = 7;
constexpr int mrClose = 8;
constexpr int mrHelp = 9;
constexpr int mrAll = 12;
constexpr int mrNoToAll = 13;
constexpr int mrYesToAll = 14;

// Button and header words, position by position. Split on commas only: blanks belong to
// the words. German gives "&Abbruch" to both "cancel" and "abort" on purpose.
inline constexpr std::u16string_view ButtonKeys =
    u"yes,yes all,no,no all,cancel,ok,ignore,abort,retry,close,all,help,"
    u"warning,confirmation,information,error";
inline constexpr std::u16string_view ButtonCaptionsGerman =
    u"&Ja,Ja A&lle,&Nein,Nein Alle,&Abbruch,&OK,&Ignorieren,&Abbruch,&Wiederholen,"
    u"&Schließen,Alle,&Hilfe,Warnung,Bestätigung,Information,Fehler";
inline constexpr std::u16string_view ButtonCaptionsEnglish =
    u"&Yes,Yes a&ll,&No,No all,&Cancel,&OK,&Ignore,&Abort,&Retry,"
    u"&Close,All,&Help,Warning,Confirmation,Information,Error";

// Start and stop work of the unit, counter-guarded: only the outermost pair acts. Start
// puts StdDlgSettings to its start values; stop releases its strings.
void Initialize();
void Finalize();

}  // namespace QMMessageDlgVCL
