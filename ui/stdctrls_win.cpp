// Labels (ui/stdctrls.h).
#include "ui/stdctrls.h"

namespace ui {

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

void TLabel::AdjustBounds() {
  if (!autoSize_ || Destroying()) return;
  // An empty caption (or a lone prefix) still takes the height of one line.
  std::u16string text = caption_;
  if (text.empty() || (showAccelChar_ && text == u"&")) text += u' ';
  const rtl::unique_hdc dc(CreateCompatibleDC(nullptr));
  const rtl::select_object font(dc.get(), FontHandle());
  RECT r{0, 0, Width(), 0};
  DrawTextW(dc.get(), reinterpret_cast<const wchar_t*>(text.c_str()),
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
  DrawTextW(dc, reinterpret_cast<const wchar_t*>(caption_.c_str()),
            static_cast<int>(caption_.size()), &r, TextFlags());
}

}  // namespace ui
