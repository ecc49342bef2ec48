// The message dialog's form: a borderless, stay-on-top window with its own caption bar
// (dragged with the left button), a coloured header with the kind's glyph and word, a
// scrolling white message area with a copy menu, and a row of flat buttons that colour
// on hover and press and are driven by Enter, Tab and accelerator letters. MessageDlgEx
// builds one per message from StdDlgSettings. Windows build only.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>

#include "dialog/QMMessageDlgVCL.h"
#include "rtl/classes.h"
#include "ui/extctrls.h"
#include "ui/forms.h"
#include "ui/imglist.h"
#include "ui/menus.h"
#include "ui/stdctrls.h"
#include "dialog/qmmessagedlg_api.h"

namespace QMMessageDlgVCL {

class TMsgDlgAccess;

class QMMESSAGEDLG_API TF_MsgDlg : public ui::TForm {
 public:
  // The form as designed: 630 x 415, the template OK button alone in the row.
  explicit TF_MsgDlg(ui::TComponent* owner);
  ~TF_MsgDlg() override;

  ui::TPanel* RecFrame;
  ui::TPanel* Layout1;
  ui::TPanel* bnOK;
  ui::TPanel* RecHeader;
  ui::TLabel* lbInfo;
  ui::TPanel* RecLine;
  ui::TScrollBox* VertScrollBox1;
  ui::TLabel* lbText;
  ui::TPanel* RecCaption;
  ui::TLabel* lblCaption;
  ui::TPopupMenu* PopupCopy;
  ui::TMenuItem* mnu_CopyStrToClipb;
  ui::TImage* Glyph1;
  ui::TImageList* IL;
  ui::TShape* Shape1;
  ui::TShape* Shape2;

  // Adds a button for `Key` to the row, after those already there, closing the dialog with
  // `ModalRes`. Its caption is the entry of Captions at Key's position in Keys.
  void CreateButton(const std::u16string& Key, int ModalRes, const rtl::TStringList& Captions,
                    const rtl::TStringList& Keys);
  // Gives a button its marking frame: one hidden shape per alignment, which must be exactly
  // four (left, right, top, bottom); otherwise raises rtl::Exception.
  void CreateFrameShapes(ui::TWinControl* Control, std::initializer_list<ui::TAlign> Alignments);

  void FormShow(ui::TObject* Sender);
  void FormDestroy(ui::TObject* Sender);
  void FormKeyDown(ui::TObject* Sender, WORD& Key, ui::TShiftState Shift);
  void FormKeyPress(ui::TObject* Sender, char16_t& Key);
  void FormKeyUp(ui::TObject* Sender, WORD& Key, ui::TShiftState Shift);
  void bnOKClick(ui::TObject* Sender);
  void bnOKMouseDown(ui::TObject* Sender, ui::TMouseButton Button, ui::TShiftState Shift, int X,
                     int Y);
  void bnOKMouseUp(ui::TObject* Sender, ui::TMouseButton Button, ui::TShiftState Shift, int X,
                   int Y);
  void bnOKMouseEnter(ui::TObject* Sender);
  void bnOKMouseLeave(ui::TObject* Sender);
  void bnSendHelpMessageClick(ui::TObject* Sender);
  void lblCaptionMouseDown(ui::TObject* Sender, ui::TMouseButton Button, ui::TShiftState Shift,
                           int X, int Y);
  void lblCaptionMouseMove(ui::TObject* Sender, ui::TShiftState Shift, int X, int Y);
  void lblCaptionMouseUp(ui::TObject* Sender, ui::TMouseButton Button, ui::TShiftState Shift,
                         int X, int Y);
  void mnu_CopyStrToClipbClick(ui::TObject* Sender);

  // The index of the current button in the button list.
  int CurrentButton() const { return currentButton_; }
  void SetCurrentButton(int index) { currentButton_ = index; }
  // The message as the caller gave it, for the copy of the whole dialog.
  void SetMessage(const std::u16string& message) { message_ = message; }
  const std::u16string& Message() const { return message_; }
  int HelpCtx() const { return helpCtx_; }
  void SetHelpCtx(int helpCtx) { helpCtx_ = helpCtx; }
  // Shows or hides the marking frame of the button at `index` of the button list.
  void MarkButton(int index, bool marked);
  // The button at `index` of the button list, or null.
  ui::TPanel* ButtonAt(int index) const;
  // Hands the form the list its buttons are entered in; FormDestroy frees it.
  void SetButtonList(rtl::TStringList* buttons);
  rtl::TStringList* ButtonList() const { return buttons_; }

  LRESULT WndProc(UINT msg, WPARAM wParam, LPARAM lParam) override;

 private:
  // A size designed at 96 DPI, at the form's density now.
  int Scaled(int pixels) const { return ui::ScaleValue(pixels, CurrentPPI(), 96); }

  std::unique_ptr<TMsgDlgAccess> access_;
  rtl::TStringList* buttons_ = nullptr;
  bool dragging_ = false;
  int anchorX_ = 0;
  int anchorY_ = 0;
  int currentButton_ = 0;
  int helpCtx_ = 0;
  std::u16string message_;
};

// The dialog shown now, or the last one (stale once it is freed).
extern QMMESSAGEDLG_API TF_MsgDlg* F_MsgDlg;
// The buttons of the current dialog in row order: caption, with the button panel as object.
// Made by MessageDlgEx, freed by the form's FormDestroy.
extern QMMESSAGEDLG_API rtl::TStringList* DlgButtons;

}  // namespace QMMessageDlgVCL
