// Pens, brushes and a canvas that measures text in a font: what the controls that paint
// themselves (shapes, labels) and the code that sizes controls to their text use.
// Windows build only.
#pragma once

#include <windows.h>

#include <string>

#include "ui/graphics.h"

namespace ui {

enum class TPenStyle { psSolid, psDash, psDot, psClear };
using enum TPenStyle;

struct TPen {
  TColor Color = clBlack;
  int Width = 1;
  TPenStyle Style = psSolid;
  bool operator==(const TPen&) const = default;
};

enum class TBrushStyle { bsSolid, bsClear };
using enum TBrushStyle;

struct TBrush {
  TColor Color = clWhite;
  TBrushStyle Style = bsSolid;
  bool operator==(const TBrush&) const = default;
};

// GDI objects for a pen and a brush; the caller owns them.
rtl::unique_hpen CreatePenHandle(const TPen& pen);
rtl::unique_hbrush CreateBrushHandle(const TBrush& brush);

struct TSize {
  int cx = 0;
  int cy = 0;
};

// Measures text as it would be drawn in Font, on a memory device context of the screen.
// Prefix characters ("&") are measured as the characters they are.
class TCanvas {
 public:
  TFont Font;
  // The device context drawn on, when the canvas stands for one (a paint, a bitmap);
  // measuring does not use it.
  HDC Handle = nullptr;

  TSize TextExtent(const std::u16string& text) const;
  int TextWidth(const std::u16string& text) const { return TextExtent(text).cx; }
  int TextHeight(const std::u16string& text) const { return TextExtent(text).cy; }
};

}  // namespace ui
