// The message dialog's form (dialog/msgdlg_form.h): its design, its buttons and their
// marking, keyboard and mouse handling, sizing to the message and the copy menu.
#include "dialog/msgdlg_form.h"

#include "dialog/dialog_plan.h"
#include "dialog/msgdlg_access.h"
#include "rtl/locale.h"
#include "rtl/messaging.h"
#include "rtl/sysutils.h"
#include "rtl/ustring.h"
#include "ui/clipbrd.h"

namespace QMMessageDlgVCL {

using namespace ui;

TF_MsgDlg* F_MsgDlg = nullptr;
rtl::TStringList* DlgButtons = nullptr;

namespace {

// The colour a button shows while the pointer is over it, whatever the settings say.
constexpr TColor HoverColor = 0x0000A5FF;

TFont MakeFont(const char16_t* name, int pixels, bool bold = false) {
  TFont font;
  font.Name = name;
  font.Height = -pixels;
  if (bold) font.Style.insert(fsBold);
  return font;
}

template <class T>
T* Make(TComponent* owner, TWinControl* parent, int left, int top, int width, int height) {
  T* control = new T(owner);
  control->SetParent(parent);
  control->SetBounds(left, top, width, height);
  return control;
}

// A panel that shows its own colour, without a bevel unless asked.
TPanel* MakePanel(TComponent* owner, TWinControl* parent, int left, int top, int width,
                  int height, TBevelCut bevel = bvNone) {
  TPanel* panel = Make<TPanel>(owner, parent, left, top, width, height);
  panel->BevelOuter = bevel;
  panel->ParentBackground = false;
  panel->ParentColor = false;
  return panel;
}

TLabel* MakeLabel(TComponent* owner, TWinControl* parent, int left, int top, int width,
                  int height, TFont font) {
  TLabel* label = Make<TLabel>(owner, parent, left, top, width, height);
  label->SetAutoSize(false);
  label->Transparent = true;
  label->ParentFont = false;
  label->Font = std::move(font);
  return label;
}

}  // namespace

TF_MsgDlg::TF_MsgDlg(TComponent* owner) : TForm(owner) {
  BorderStyle = bsNone;
  FormStyle = fsStayOnTop;
  KeyPreview = true;
  Position = poMainFormCenter;
  Color = clBlack;
  Font = MakeFont(u"Segoe UI", 12);
  StyleElements = {seFont};
  SetClientSize(630, 415);

  // The frame first, so that everything else lies above it.
  Shape1 = Make<TShape>(this, this, 0, 35, 630, 380);
  Shape1->Pen.Width = 5;
  Shape1->SetAlign(alClient);

  RecCaption = MakePanel(this, this, 1, 1, 628, 34);
  RecCaption->AlignWithMargins = true;
  RecCaption->Margins = {1, 1, 1, 0};
  RecCaption->SetAlign(alTop);
  lblCaption = MakeLabel(this, RecCaption, 6, 6, 619, 27, MakeFont(u"Segoe UI", 15, true));
  lblCaption->Cursor = crHandPoint;
  lblCaption->SetWordWrap(true);
  lblCaption->AlignWithMargins = true;
  lblCaption->Margins = {6, 6, 3, 1};
  lblCaption->SetAlign(alClient);

  RecFrame = MakePanel(this, this, 5, 40, 620, 370);
  RecFrame->AlignWithMargins = true;
  RecFrame->Margins = {5, 5, 5, 5};
  RecFrame->SetAlign(alClient);

  // The button row keeps the panel's raised bevel: 58 less the bevel and the button's
  // margins leaves the button its 35 pixels.
  Layout1 = MakePanel(this, RecFrame, 0, 312, 620, 58, bvRaised);
  Layout1->Color = clWhite;
  Layout1->SetAlign(alBottom);
  bnOK = MakePanel(this, Layout1, 16, 11, 106, 35);
  bnOK->SetCaption(u"O&K");
  bnOK->ParentFont = false;
  bnOK->Font = MakeFont(u"Segoe UI", 15, true);
  bnOK->AlignWithMargins = true;
  bnOK->Margins = {15, 10, 2, 11};
  bnOK->SetAlign(alLeft);

  Shape2 = Make<TShape>(this, RecFrame, 0, 311, 620, 1);
  Shape2->SetAlign(alBottom);

  RecHeader = MakePanel(this, RecFrame, 0, 0, 620, 72);
  RecHeader->SetAlign(alTop);
  lbInfo = MakeLabel(this, RecHeader, 54, 17, 549, 38, MakeFont(u"Segoe UI", 27));
  lbInfo->SetWordWrap(true);
  lbInfo->SetCaption(u"Warnung");
  RecLine = MakePanel(this, RecHeader, 0, 71, 620, 1);
  RecLine->SetAlign(alBottom);
  Glyph1 = Make<TImage>(this, RecHeader, 16, 20, 32, 32);
  Glyph1->Center = true;
  Glyph1->Proportional = true;
  Glyph1->Stretch = true;
  Glyph1->Transparent = true;

  VertScrollBox1 = Make<TScrollBox>(this, RecFrame, 0, 72, 620, 239);
  VertScrollBox1->BorderStyle = bsNone;
  VertScrollBox1->Color = clWhite;
  VertScrollBox1->SetAlign(alClient);
  lbText = MakeLabel(this, VertScrollBox1, 20, 15, 579, 17, MakeFont(u"Consolas", 15));
  lbText->SetWordWrap(true);
  lbText->SetShowAccelChar(false);
  lbText->Margins = {22, 3, 20, 20};

  PopupCopy = new TPopupMenu(this);
  mnu_CopyStrToClipb = new TMenuItem(PopupCopy);
  mnu_CopyStrToClipb->Caption = u"Meldung in die Zwischenablage kopieren";
  mnu_CopyStrToClipb->OnClick = [this](TObject* sender) { mnu_CopyStrToClipbClick(sender); };
  PopupCopy->Items()->Add(mnu_CopyStrToClipb);
  VertScrollBox1->PopupMenu = PopupCopy;
  lbText->PopupMenu = PopupCopy;

  IL = new TImageList(this);
  IL->SetWidth(32);
  IL->SetHeight(32);
  AddMessageGlyphs(*IL);

  bnOK->OnClick = [this](TObject* s) { bnOKClick(s); };
  bnOK->OnMouseDown = [this](TObject* s, TMouseButton b, TShiftState sh, int x, int y) {
    bnOKMouseDown(s, b, std::move(sh), x, y);
  };
  bnOK->OnMouseUp = [this](TObject* s, TMouseButton b, TShiftState sh, int x, int y) {
    bnOKMouseUp(s, b, std::move(sh), x, y);
  };
  bnOK->OnMouseEnter = [this](TObject* s) { bnOKMouseEnter(s); };
  bnOK->OnMouseLeave = [this](TObject* s) { bnOKMouseLeave(s); };
  lblCaption->OnMouseDown = [this](TObject* s, TMouseButton b, TShiftState sh, int x, int y) {
    lblCaptionMouseDown(s, b, std::move(sh), x, y);
  };
  lblCaption->OnMouseMove = [this](TObject* s, TShiftState sh, int x, int y) {
    lblCaptionMouseMove(s, std::move(sh), x, y);
  };
  lblCaption->OnMouseUp = [this](TObject* s, TMouseButton b, TShiftState sh, int x, int y) {
    lblCaptionMouseUp(s, b, std::move(sh), x, y);
  };
  OnShow = [this](TObject* s) { FormShow(s); };
  OnKeyDown = [this](TObject* s, WORD& key, TShiftState sh) { FormKeyDown(s, key, sh); };
  OnKeyUp = [this](TObject* s, WORD& key, TShiftState sh) { FormKeyUp(s, key, sh); };
  OnKeyPress = [this](TObject* s, char16_t& key) { FormKeyPress(s, key); };
}

TF_MsgDlg::~TF_MsgDlg() { FormDestroy(this); }

LRESULT TF_MsgDlg::WndProc(UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == WM_GETOBJECT) {
    if (!access_) access_ = std::make_unique<TMsgDlgAccess>(this);
    if (const LRESULT answer = access_->Answer(wParam, lParam)) return answer;
  }
  return TForm::WndProc(msg, wParam, lParam);
}

void TF_MsgDlg::FormDestroy(TObject* /*Sender*/) {
  if (buttons_ == nullptr) return;
  if (DlgButtons == buttons_) DlgButtons = nullptr;
  delete buttons_;
  buttons_ = nullptr;
}

void TF_MsgDlg::SetButtonList(rtl::TStringList* buttons) { buttons_ = buttons; }

TPanel* TF_MsgDlg::ButtonAt(int index) const {
  if (buttons_ == nullptr || index < 0 || index >= buttons_->Count()) return nullptr;
  return static_cast<TPanel*>(buttons_->Objects(index));
}

void TF_MsgDlg::MarkButton(int index, bool marked) {
  TPanel* button = ButtonAt(index);
  if (button == nullptr) return;
  for (int i = 0; i < button->ControlCount(); ++i)
    if (auto* shape = dynamic_cast<TShape*>(button->Controls(i))) shape->SetVisible(marked);
  // Screen readers follow the marking as the focus.
  if (marked && HandleAllocated() && IsWindowVisible(Handle()))
    TMsgDlgAccess::FocusMoved(Handle(), index);
}

void TF_MsgDlg::CreateFrameShapes(TWinControl* Control, std::initializer_list<TAlign> Alignments) {
  if (Alignments.size() != 4)
    throw rtl::Exception(u"Es müssen genau 4 Alignments angegeben werden.");
  for (TAlign alignment : Alignments) {
    auto* shape = new TShape(Control);
    shape->SetVisible(false);
    shape->SetParent(Control);
    shape->Pen.Width = ScaleValue(2, Control->CurrentPPI(), 96);
    const int side = ScaleValue(4, Control->CurrentPPI(), 96);
    shape->SetBounds(0, 0, side, side);
    shape->SetAlign(alignment);
    shape->Pen.Style = psSolid;
    shape->Pen.Color = StdDlgSettings.btnStrokeColor;
  }
}

void TF_MsgDlg::CreateButton(const std::u16string& Key, int ModalRes,
                             const rtl::TStringList& Captions, const rtl::TStringList& Keys) {
  auto* button = new TPanel(this);
  button->SetVisible(false);
  button->SetParent(Layout1);
  button->SetBounds(button->Left(), button->Top(), Scaled(130), bnOK->Height());
  button->ParentColor = false;
  button->ParentBackground = false;
  button->Color = StdDlgSettings.btnColor;
  CreateFrameShapes(button, {alLeft, alRight, alTop, alBottom});

  button->OnMouseEnter = bnOK->OnMouseEnter;
  button->OnMouseLeave = bnOK->OnMouseLeave;
  button->OnMouseDown = bnOK->OnMouseDown;
  button->OnMouseUp = bnOK->OnMouseUp;
  button->Tag = ModalRes;
  button->BorderWidth = 0;
  button->BevelOuter = bvNone;
  button->BevelInner = bvNone;

  if (ModalRes == mrHelp && StdDlgSettings.HelpButtonNoReturn)
    button->OnClick = [this](TObject* s) { bnSendHelpMessageClick(s); };
  else
    button->OnClick = [this](TObject* s) { bnOKClick(s); };
  // Every created button closes the dialog with its result, the help button included.
  button->OnClick = [this](TObject* s) { bnOKClick(s); };

  button->Margins = bnOK->Margins;
  button->AlignWithMargins = true;
  const int at = Keys.IndexOf(Key);
  const std::u16string caption =
      at >= 0 && at < Captions.Count() ? Captions[at] : std::u16string();
  button->SetCaption(caption);
  button->ParentFont = false;
  button->Font = bnOK->Font;
  button->Font.Color = StdDlgSettings.btnTextColor;
  // The rule is in 96-DPI pixels.
  button->SetWidth(Scaled(ButtonWidth(ScaleValue(Canvas().TextWidth(caption), 96, CurrentPPI()))));

  button->SetVisible(true);
  button->SetLeft(2000);
  button->SetAlign(alLeft);
  if (buttons_ != nullptr) buttons_->AddObject(caption, button);
}

void TF_MsgDlg::FormShow(TObject* /*Sender*/) {
  if (StdDlgSettings.UseFixedFont) {
    lbText->SetWordWrap(false);
    lbText->Font.Pitch = fpFixed;
    lbText->Font.Name = u"Courier New";
  }
  lbText->SetAutoSize(true);
  lbText->AdjustBounds();
  const TFormBounds bounds = FormHeightFor(lbText->Height(), VertScrollBox1->Height(), Height(),
                                           Top(), Scaled(StdDlgSettings.AddMaxHeight));
  SetBounds(Left(), bounds.Top, Width(), bounds.Height);
}

void TF_MsgDlg::FormKeyDown(TObject* /*Sender*/, WORD& Key, TShiftState Shift) {
  // Ctrl+C copies the whole dialog, as the system's message boxes do.
  if (Key == 'C' && Shift.contains(ssCtrl)) {
    std::vector<std::u16string> captions;
    for (int i = 0; buttons_ != nullptr && i < buttons_->Count(); ++i)
      captions.push_back((*buttons_)[i]);
    Clipboard().SetAsText(DialogCopyText(lblCaption->Caption(), message_, captions));
    return;
  }
  if (Key != VK_RETURN) return;
  if (TPanel* button = ButtonAt(currentButton_)) bnOKClick(button);
}

void TF_MsgDlg::FormKeyUp(TObject* /*Sender*/, WORD& Key, TShiftState /*Shift*/) {
  if (Key != VK_TAB || buttons_ == nullptr || buttons_->Count() == 0) return;
  MarkButton(currentButton_, false);
  ++currentButton_;
  if (currentButton_ >= buttons_->Count()) currentButton_ = 0;
  MarkButton(currentButton_, true);
}

void TF_MsgDlg::FormKeyPress(TObject* /*Sender*/, char16_t& Key) {
  if (buttons_ == nullptr) return;
  const std::u16string accelerator{u'&', Key};
  for (int i = 0; i < buttons_->Count(); ++i) {
    if (rtl::AnsiLowerCase((*buttons_)[i]).find(accelerator) == std::u16string::npos) continue;
    MarkButton(currentButton_, false);
    currentButton_ = i;
    MarkButton(currentButton_, true);
    return;
  }
}

void TF_MsgDlg::bnOKClick(TObject* Sender) {
  ModalResult = static_cast<int>(static_cast<TComponent*>(Sender)->Tag);
}

void TF_MsgDlg::bnOKMouseDown(TObject* Sender, TMouseButton /*Button*/, TShiftState /*Shift*/,
                              int /*X*/, int /*Y*/) {
  auto* button = static_cast<TControl*>(Sender);
  button->Color = StdDlgSettings.btnClickColor;
  button->Invalidate();
}

void TF_MsgDlg::bnOKMouseUp(TObject* Sender, TMouseButton /*Button*/, TShiftState /*Shift*/,
                            int /*X*/, int /*Y*/) {
  auto* button = static_cast<TControl*>(Sender);
  button->Color = StdDlgSettings.btnColor;
  button->Invalidate();
}

void TF_MsgDlg::bnOKMouseEnter(TObject* Sender) {
  auto* button = static_cast<TControl*>(Sender);
  button->Color = HoverColor;
  button->Invalidate();
}

void TF_MsgDlg::bnOKMouseLeave(TObject* Sender) {
  auto* button = static_cast<TControl*>(Sender);
  button->Color = StdDlgSettings.btnColor;
  button->Invalidate();
}

void TF_MsgDlg::bnSendHelpMessageClick(TObject* /*Sender*/) {
  rtl::TMessageManager::DefaultManager().SendMessage(
      this, rtl::TMessage<std::u16string>(u"ShowHelp=" + rtl::IntToStr(helpCtx_)));
}

void TF_MsgDlg::lblCaptionMouseDown(TObject* /*Sender*/, TMouseButton Button,
                                    TShiftState /*Shift*/, int X, int Y) {
  if (Button != mbLeft) return;
  dragging_ = true;
  anchorX_ = X;
  anchorY_ = Y;
}

void TF_MsgDlg::lblCaptionMouseMove(TObject* /*Sender*/, TShiftState /*Shift*/, int X, int Y) {
  if (!dragging_) return;
  SetBounds(Left() + X - anchorX_, Top() + Y - anchorY_, Width(), Height());
}

void TF_MsgDlg::lblCaptionMouseUp(TObject* /*Sender*/, TMouseButton /*Button*/,
                                  TShiftState /*Shift*/, int /*X*/, int /*Y*/) {
  dragging_ = false;
}

void TF_MsgDlg::mnu_CopyStrToClipbClick(TObject* /*Sender*/) {
  Clipboard().SetAsText(lbText->Caption());
}

}  // namespace QMMessageDlgVCL
