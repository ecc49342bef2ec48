// Align layout: where the aligned children of a control go inside its client area. Pure;
// the control classes (ui/controls.h) gather their children, ask AlignBounds and move the
// children to the answer.
#pragma once

#include <vector>

namespace ui {

enum class TAlign { alNone, alTop, alBottom, alLeft, alRight, alClient };
using enum TAlign;

// A rectangle by its edges; Right and Bottom lie just outside, as in the window system.
struct TRect {
  int Left = 0, Top = 0, Right = 0, Bottom = 0;
  int Width() const { return Right - Left; }
  int Height() const { return Bottom - Top; }
  bool operator==(const TRect&) const = default;
};

// Space kept free around a child that aligns with margins.
struct TMargins {
  int Left = 3, Top = 3, Right = 3, Bottom = 3;
  bool operator==(const TMargins&) const = default;
};

// What the rule needs to know of one child.
struct TAlignChild {
  TAlign align = alNone;
  TRect bounds;  // current bounds in the parent's client coordinates
  bool visible = true;
  bool withMargins = false;
  TMargins margins;
};

// New bounds of every child, in the order given (creation order). alTop children are
// stacked first, in the order of their current Top (ties: the earlier child first), then
// alBottom upwards from the bottom edge (ties: the later child lowest), then alLeft, alRight
// (ties: the later child rightmost), and every alClient child takes what is left.
// A stacked child keeps its height (alTop/alBottom) or width (alLeft/alRight) and spans
// the rest; a child with margins is placed as if it were larger by them and then shrunk
// inside. Invisible and alNone children keep their bounds. When nothing is left, a child
// keeps its own size for the exhausted direction.
//   client {0,0,100,50}, alTop of height 10, alClient  ->  {0,0,100,10}, {0,10,100,50}
std::vector<TRect> AlignBounds(const TRect& client, const std::vector<TAlignChild>& children);

// Sizes from one pixel density to another (dots per inch `to` over `from`), rounded half
// away from zero. Edges are scaled rather than sizes, so that controls that touch at 96
// DPI still touch at any other.
//   ScaleValue(130, 144, 96) == 195    ScaleValue(-15, 144, 96) == -23
int ScaleValue(int value, int to, int from);
TRect ScaleRect(const TRect& r, int to, int from);
TMargins ScaleMargins(const TMargins& m, int to, int from);

}  // namespace ui
