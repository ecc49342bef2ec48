// Pens, brushes and text measuring (ui/canvas.h).
#include "ui/canvas.h"
#include "rtl/wide.h"

namespace ui {

using rtl::W;

rtl::unique_hpen CreatePenHandle(const TPen& pen) {
  if (pen.Style == psClear) return rtl::unique_hpen(CreatePen(PS_NULL, 0, 0));
  const int style = pen.Style == psDash ? PS_DASH : pen.Style == psDot ? PS_DOT : PS_SOLID;
  // Wide pens draw their lines inside a shape's bounds only when geometric.
  LOGBRUSH brush{BS_SOLID, static_cast<COLORREF>(ColorToRGB(pen.Color)), 0};
  if (pen.Width > 1 && style == PS_SOLID)
    return rtl::unique_hpen(
        ExtCreatePen(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_SQUARE | PS_JOIN_MITER,
                     static_cast<DWORD>(pen.Width), &brush, 0, nullptr));
  return rtl::unique_hpen(CreatePen(style, pen.Width, brush.lbColor));
}

rtl::unique_hbrush CreateBrushHandle(const TBrush& brush) {
  if (brush.Style == bsClear)
    return rtl::unique_hbrush(static_cast<HBRUSH>(GetStockObject(NULL_BRUSH)));
  return rtl::unique_hbrush(CreateSolidBrush(static_cast<COLORREF>(ColorToRGB(brush.Color))));
}

TSize TCanvas::TextExtent(const std::u16string& text) const {
  const rtl::unique_hdc dc(CreateCompatibleDC(nullptr));
  const rtl::unique_hfont font = CreateFontHandle(Font);
  const rtl::select_object selected(dc.get(), font.get());
  SIZE size{0, 0};
  GetTextExtentPoint32W(dc.get(), W(text),
                        static_cast<int>(text.size()), &size);
  return {size.cx, size.cy};
}

}  // namespace ui
