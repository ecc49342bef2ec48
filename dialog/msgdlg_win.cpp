// The routines that show a message: MessageDlgEx builds the form from StdDlgSettings and the
// plan of the message, shows it modally and returns the button's result; the others lead to
// it.
#include <memory>
#include <utility>

#include "dialog/QMMessageDlgVCL.h"
#include "dialog/dialog_plan.h"
#include "dialog/msgdlg_form.h"
#include "rtl/sysutils.h"
#include "ui/application.h"

namespace QMMessageDlgVCL {

const TDlgPresenter& CurrentDlgPresenter();

namespace {

// A dialog opened from within a dialog takes the globals over while it is shown; the outer
// one gets them back afterwards.
class TCurrentDialog {
 public:
  TCurrentDialog() : form_(F_MsgDlg), buttons_(DlgButtons) {}
  ~TCurrentDialog() {
    F_MsgDlg = form_;
    DlgButtons = buttons_;
  }
  TCurrentDialog(const TCurrentDialog&) = delete;
  TCurrentDialog& operator=(const TCurrentDialog&) = delete;

 private:
  TF_MsgDlg* form_;
  rtl::TStringList* buttons_;
};

}  // namespace

int MessageDlgEx(const std::u16string& Msg, TMsgDlgType DlgType, TMsgDlgButtons Buttons,
                 int HelpCtx) {
  if (const TDlgPresenter& presenter = CurrentDlgPresenter())
    return presenter(Msg, DlgType, Buttons, HelpCtx);
  const TDlgSettings& s = StdDlgSettings;
  // The word lists take the language of the moment; the rest of the settings (caption bar
  // text and colours alike) are read once the waiting messages are handled.
  const int lang = s.lang;
  rtl::TStringList keys;
  rtl::TStringList captions;
  FillWordList(keys, ButtonKeys);
  FillCaptionList(captions, lang);
  const TCurrentDialog outer;

  ui::Application->ProcessMessages();
  TDlgSettings now = s;
  now.lang = lang;
  const TDialogPlan plan = PlanDialog(Msg, DlgType, Buttons, HelpCtx, now, rtl::GetModuleName(nullptr));
  auto form = std::make_unique<TF_MsgDlg>(nullptr);
  F_MsgDlg = form.get();
  DlgButtons = new rtl::TStringList;
  form->SetButtonList(DlgButtons);
  form->SetCurrentButton(0);

  form->Color = ui::clBlack;
  form->lbInfo->Font.Color = s.HeadText;
  form->lbText->Font.Color = s.MsgTextColor;
  form->bnOK->Tag = mrOk;
  form->bnOK->SetVisible(Buttons.Contains(mbOK));
  if (Buttons.Contains(mbOK)) {
    form->CreateFrameShapes(form->bnOK, {ui::alLeft, ui::alRight, ui::alTop, ui::alBottom});
    DlgButtons->AddObject(form->bnOK->Caption(), form->bnOK);
    form->bnOK->Color = s.btnColor;
    form->bnOK->Font.Color = s.btnTextColor;
  }

  form->SetHelpCtx(HelpCtx);
  form->RecCaption->SetVisible(true);
  form->lblCaption->SetCaption(plan.CaptionBarText);
  form->RecCaption->Font.Color = s.HeadBack;
  form->RecCaption->ParentFont = false;
  form->lblCaption->Font.Color = s.HeadText;
  form->RecCaption->Color = s.DialogCaptionColor;

  for (const TPlannedButton& button : plan.Buttons)
    if (!button.Template) form->CreateButton(button.Key, button.Tag, captions, keys);
  form->MarkButton(0, true);

  form->lbText->SetCaption(plan.Text);
  form->SetMessage(Msg);
  form->SetCaption(plan.WindowCaption);
  form->RecHeader->Color = s.HeadBack;
  if (plan.GlyphIndex >= 0) {
    form->IL->GetBitmap(plan.GlyphIndex, form->Glyph1->Picture.Bitmap());
    form->Glyph1->Invalidate();
    form->lbInfo->SetCaption(plan.HeaderText);
  }

  form->Layout1->SetWidth(form->Layout1->Width() + 1);
  const int result = form->ShowModal();
  form.reset();
  return result;
}

int MessageDlg(const std::u16string& Msg, TMsgDlgType DlgType, TMsgDlgButtons Buttons,
               int HelpCtx) {
  return MessageDlgEx(Msg, DlgType, Buttons, HelpCtx);
}

void ShowMessage(const std::u16string& Msg) {
  static_cast<void>(MessageDlgEx(Msg, mtInformation, {mbOK}, 0));
}

void ShowMessageEx(const std::u16string& Msg, int HelpCtx, bool FixedFont) {
  StdDlgSettings.UseFixedFont = FixedFont;
  static_cast<void>(MessageDlgEx(Msg, mtInformation, {mbOK}, HelpCtx));
  StdDlgSettings.UseFixedFont = FixedFont;
}

int MessageBox(HWND /*hWnd*/, const wchar_t* Text, const wchar_t* /*Caption*/, UINT Flags) {
  std::u16string text;
  if (Text != nullptr)
    for (const wchar_t* p = Text; *p != L'\0'; ++p) text.push_back(static_cast<char16_t>(*p));
  return MessageDlg(text, MessageBoxKind(Flags), MessageBoxButtons(Flags), 0);
}

}  // namespace QMMessageDlgVCL
