// The message dialog unit: its settings record, the framework's dialog kinds, button sets
// and modal results, and the button words. The form that shows a dialog is not here; it
// reads StdDlgSettings and applies the plan of dialog_plan.h.
#pragma once


#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include "dialog/qmmessagedlg_api.h"

#ifdef _WIN32
#include <windows.h>
// The unit's MessageBox replaces the system's: the system header's name for it goes.
#undef MessageBox
#endif

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
QMMESSAGEDLG_API TDlgSettings StartDlgSettings();

// Read by every dialog when it is built; any caller may change it at any time.
extern QMMESSAGEDLG_API TDlgSettings StdDlgSettings;

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

#ifdef _WIN32
// Shows Msg in the dialog, with a header and glyph for DlgType and a button for each member
// of Buttons (mbHelp makes none), and returns the result of the button that closed it.
// Modal: the program's other windows are disabled until it closes. Main thread only.
QMMESSAGEDLG_API int MessageDlgEx(const std::u16string& Msg, TMsgDlgType DlgType, TMsgDlgButtons Buttons,
                 int HelpCtx);
// The same as MessageDlgEx.
QMMESSAGEDLG_API int MessageDlg(const std::u16string& Msg, TMsgDlgType DlgType, TMsgDlgButtons Buttons,
               int HelpCtx);
// Msg as information with an OK button.
QMMESSAGEDLG_API void ShowMessage(const std::u16string& Msg);
// Msg as information with an OK button, in the fixed-pitch font when FixedFont; leaves
// StdDlgSettings.UseFixedFont at FixedFont.
QMMESSAGEDLG_API void ShowMessageEx(const std::u16string& Msg, int HelpCtx, bool FixedFont);
// The system's message box, shown as this dialog: kind and buttons from Flags (see
// MessageBoxKind and MessageBoxButtons), the result as the system's IDOK..IDNO. hWnd and
// Caption are not used.
QMMESSAGEDLG_API int MessageBox(HWND hWnd, const wchar_t* Text, const wchar_t* Caption, UINT Flags);
#endif

// What MessageDlgEx shows instead of the dialog while one is installed: it gets the
// message, kind, buttons and help context as the caller gave them and returns the modal
// result. For automated runs, which must not wait for a person.
using TDlgPresenter = std::function<int(const std::u16string& Msg, TMsgDlgType DlgType,
                                        TMsgDlgButtons Buttons, int HelpCtx)>;
// Installs `presenter` (empty: the dialog again) and returns the one it replaces.
QMMESSAGEDLG_API TDlgPresenter SetDlgPresenter(TDlgPresenter presenter);

// Start and stop work of the unit, counter-guarded: only the outermost pair acts. Start
// puts StdDlgSettings to its start values; stop releases its strings.
QMMESSAGEDLG_API void Initialize();
QMMESSAGEDLG_API void Finalize();

}  // namespace QMMessageDlgVCL
