// Labels, list boxes, memos and check boxes (ui/stdctrls.h).
#include "ui/stdctrls.h"
#include "rtl/wide.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace ui {

using rtl::W;

TLabel::TLabel(TComponent* owner) : TGraphicControl(owner) { bounds_ = {0, 0, 65, 17}; }

void TLabel::SetAutoSize(bool autoSize) {
  if (autoSize == autoSize_) return;
  autoSize_ = autoSize;
  AdjustBounds();
}

void TLabel::SetWordWrap(bool wordWrap) {
  if (wordWrap == wordWrap_) return;
  wordWrap_ = wordWrap;
  AdjustBounds();
  Invalidate();
}

void TLabel::SetShowAccelChar(bool show) {
  if (show == showAccelChar_) return;
  showAccelChar_ = show;
  AdjustBounds();
  Invalidate();
}

void TLabel::SetCaption(const std::u16string& caption) {
  if (caption == caption_) return;
  TGraphicControl::SetCaption(caption);
  AdjustBounds();
}

UINT TLabel::TextFlags() const {
  UINT flags = DT_EXPANDTABS | DT_LEFT;
  if (wordWrap_) flags |= DT_WORDBREAK;
  if (!showAccelChar_) flags |= DT_NOPREFIX;
  return flags;
}

void TLabel::ChangeScale(int to, int from) {
  TGraphicControl::ChangeScale(to, from);
  AdjustBounds();
}

void TLabel::AdjustBounds() {
  if (!autoSize_ || Destroying()) return;
  // An empty caption (or a lone prefix) still takes the height of one line.
  std::u16string text = caption_;
  if (text.empty() || (showAccelChar_ && text == u"&")) text += u' ';
  const rtl::unique_hdc dc(CreateCompatibleDC(nullptr));
  const rtl::select_object font(dc.get(), FontHandle());
  RECT r{0, 0, Width(), 0};
  DrawTextW(dc.get(), W(text),
            static_cast<int>(text.size()), &r, TextFlags() | DT_CALCRECT);
  SetBounds(Left(), Top(), r.right, r.bottom);
}

void TLabel::Paint(HDC dc) {
  RECT r{0, 0, Width(), Height()};
  if (!Transparent) {
    const rtl::unique_hbrush brush(
        CreateSolidBrush(static_cast<COLORREF>(ColorToRGB(ResolvedColor()))));
    FillRect(dc, &r, brush.get());
  }
  const rtl::select_object font(dc, FontHandle());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc,
               static_cast<COLORREF>(ColorToRGB(Enabled() ? ResolvedFont().Color : clGrayText)));
  DrawTextW(dc, W(caption_),
            static_cast<int>(caption_.size()), &r, TextFlags());
}

// ---- TListBox ----------------------------------------------------------------------------

// The lines are kept here as well as in the window: the window may not exist yet, or be
// made again, and it cannot hold the objects.
class TListBox::TListBoxStrings : public rtl::TStrings {
 public:
  explicit TListBoxStrings(TListBox& box) : box_(box) {}

  int Count() const override { return static_cast<int>(lines_.size()); }
  std::u16string Get(int index) const override { return lines_.at(Check(index)).first; }
  void Put(int index, std::u16string_view s) override {
    rtl::TObject* object = GetObject(index);
    const int selected = box_.ItemIndex();
    Delete(index);
    InsertObject(index, s, object);
    box_.SetItemIndex(selected);
  }
  rtl::TObject* GetObject(int index) const override { return lines_.at(Check(index)).second; }
  void PutObject(int index, rtl::TObject* object) override {
    lines_.at(Check(index)).second = object;
  }
  void Insert(int index, std::u16string_view s) override { InsertObject(index, s, nullptr); }
  void InsertObject(int index, std::u16string_view s, rtl::TObject* object) override {
    if (index < 0 || index > Count()) Error("List index out of bounds (%d)", index);
    lines_.insert(lines_.begin() + index, {std::u16string(s), object});
    if (box_.HandleAllocated())
      SendMessageW(box_.Window(), LB_INSERTSTRING, static_cast<WPARAM>(index),
                   reinterpret_cast<LPARAM>(W(lines_[static_cast<size_t>(index)].first)));
  }
  void Delete(int index) override {
    lines_.erase(lines_.begin() + Check(index));
    if (box_.HandleAllocated())
      SendMessageW(box_.Window(), LB_DELETESTRING, static_cast<WPARAM>(index), 0);
  }
  void Clear() override {
    lines_.clear();
    box_.itemIndex_ = -1;
    if (box_.HandleAllocated()) SendMessageW(box_.Window(), LB_RESETCONTENT, 0, 0);
  }
  // Hands every line to a window just made.
  void Fill(HWND window) const {
    for (const auto& line : lines_)
      SendMessageW(window, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(W(line.first)));
  }

 private:
  size_t Check(int index) const {
    if (index < 0 || index >= Count()) Error("List index out of bounds (%d)", index);
    return static_cast<size_t>(index);
  }

  TListBox& box_;
  std::vector<std::pair<std::u16string, rtl::TObject*>> lines_;
};

TListBox::TListBox(TComponent* owner)
    : TWinControl(owner), items_(std::make_unique<TListBoxStrings>(*this)) {
  bounds_ = {0, 0, 121, 97};
  ParentColor = false;
  Color = clWindow;
  KeepDefaults();
}

TListBox::~TListBox() = default;

rtl::TStrings& TListBox::Items() const { return *items_; }

int TListBox::Count() const { return items_->Count(); }

HWND TListBox::Window() const { return const_cast<TListBox*>(this)->Handle(); }

void TListBox::CreateParamsFor(CreateParams& params) {
  TWinControl::CreateParamsFor(params);
  params.className = L"LISTBOX";
  params.systemClass = true;
  params.style = (params.style & ~WS_CLIPCHILDREN) | WS_VSCROLL | WS_TABSTOP | LBS_NOTIFY |
                 LBS_NOINTEGRALHEIGHT;
  params.exStyle |= WS_EX_CLIENTEDGE;
}

void TListBox::CreateWnd() {
  TWinControl::CreateWnd();
  items_->Fill(Window());
  SendMessageW(Window(), LB_SETCURSEL, static_cast<WPARAM>(itemIndex_), 0);
}

int TListBox::ItemIndex() const {
  if (!HandleAllocated()) return itemIndex_;
  return static_cast<int>(SendMessageW(Window(), LB_GETCURSEL, 0, 0));
}

void TListBox::SetItemIndex(int index) {
  itemIndex_ = index >= 0 && index < Count() ? index : -1;
  if (HandleAllocated()) SendMessageW(Window(), LB_SETCURSEL, static_cast<WPARAM>(itemIndex_), 0);
}

int TListBox::ItemAtPos(POINT pos, bool existing) const {
  // Each line's own rectangle is asked: LB_ITEMFROMPOINT names the nearest line for a
  // point below the last one.
  // Only the lines in view: the walk ends at the client area's bottom edge.
  RECT client{};
  if (HandleAllocated() && GetClientRect(Window(), &client) && PtInRect(&client, pos)) {
    const int top = static_cast<int>(SendMessageW(Window(), LB_GETTOPINDEX, 0, 0));
    for (int i = std::max(top, 0); i < Count(); ++i) {
      RECT r{};
      if (SendMessageW(Window(), LB_GETITEMRECT, static_cast<WPARAM>(i),
                       reinterpret_cast<LPARAM>(&r)) == LB_ERR ||
          r.top >= client.bottom)
        break;
      if (PtInRect(&r, pos)) return i;
    }
  }
  return existing ? -1 : Count();
}

// ---- TMemo -------------------------------------------------------------------------------

TMemo::TMemo(TComponent* owner) : TWinControl(owner) {
  bounds_ = {0, 0, 185, 89};
  ParentColor = false;
  Color = clWindow;
  KeepDefaults();
}

void TMemo::CreateParamsFor(CreateParams& params) {
  TWinControl::CreateParamsFor(params);
  params.className = L"EDIT";
  params.systemClass = true;
  params.style = (params.style & ~WS_CLIPCHILDREN) | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE |
                 ES_AUTOVSCROLL | ES_WANTRETURN;
  params.exStyle |= WS_EX_CLIENTEDGE;
}

std::u16string TMemo::Text() const {
  if (!HandleAllocated()) return caption_;
  const HWND window = const_cast<TMemo*>(this)->Handle();
  std::u16string text(static_cast<size_t>(GetWindowTextLengthW(window)) + 1, u'\0');
  text.resize(static_cast<size_t>(GetWindowTextW(window, W(text),
                                                 static_cast<int>(text.size()))));
  return text;
}

void TMemo::SetText(const std::u16string& text) {
  // What the user typed is not in caption_, so the base's "unchanged" test must not see it.
  caption_ = Text();
  SetCaption(text);
}

// ---- TCheckBox ---------------------------------------------------------------------------

TCheckBox::TCheckBox(TComponent* owner) : TWinControl(owner) { bounds_ = {0, 0, 97, 17}; }

void TCheckBox::CreateParamsFor(CreateParams& params) {
  TWinControl::CreateParamsFor(params);
  params.className = L"BUTTON";
  params.systemClass = true;
  params.style = (params.style & ~WS_CLIPCHILDREN) | WS_TABSTOP | BS_AUTOCHECKBOX;
}

void TCheckBox::CreateWnd() {
  TWinControl::CreateWnd();
  SendMessageW(Handle(), BM_SETCHECK, checked_ ? BST_CHECKED : BST_UNCHECKED, 0);
}

bool TCheckBox::Checked() const {
  if (!HandleAllocated()) return checked_;
  return SendMessageW(const_cast<TCheckBox*>(this)->Handle(), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void TCheckBox::SetChecked(bool checked) {
  checked_ = checked;
  if (HandleAllocated())
    SendMessageW(Handle(), BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

}  // namespace ui
