// The align rule (ui/align.h): the framework's order of stacking and its tie-breaks.
#include "ui/align.h"

#include <algorithm>
#include <climits>
#include <cstddef>

namespace ui {

namespace {

// Whether `a` goes before `b` among children of the same alignment. Top and left compare
// strictly, so an earlier child stays first on a tie; bottom and right compare with >=,
// so on a tie the later child moves ahead of the earlier one, ending up at the edge.
bool InsertBefore(const TRect& a, const TRect& b, TAlign align) {
  switch (align) {
    case alTop: return a.Top < b.Top;
    case alBottom: return a.Bottom >= b.Bottom;
    case alLeft: return a.Left < b.Left;
    case alRight: return a.Right >= b.Right;
    default: return false;
  }
}

// Places one child in `rest` and takes its share off `rest`.
TRect Place(const TAlignChild& child, TAlign align, TRect& rest) {
  const TMargins m = child.withMargins ? child.margins : TMargins{0, 0, 0, 0};
  int width = rest.Width();
  if (width < 0 || align == alLeft || align == alRight)
    width = child.bounds.Width() + m.Left + m.Right;
  int height = rest.Height();
  if (height < 0 || align == alTop || align == alBottom)
    height = child.bounds.Height() + m.Top + m.Bottom;
  int left = rest.Left, top = rest.Top;
  switch (align) {
    case alTop: rest.Top += height; break;
    case alBottom:
      rest.Bottom -= height;
      top = rest.Bottom;
      break;
    case alLeft: rest.Left += width; break;
    case alRight:
      rest.Right -= width;
      left = rest.Right;
      break;
    default: break;
  }
  left += m.Left;
  top += m.Top;
  // A window cannot be smaller than nothing; clipping here gives the same answer with or
  // without windows behind the children.
  width = std::max(0, width - m.Left - m.Right);
  height = std::max(0, height - m.Top - m.Bottom);
  return {left, top, left + width, top + height};
}

}  // namespace

std::vector<TRect> AlignBounds(const TRect& client, const std::vector<TAlignChild>& children) {
  std::vector<TRect> result;
  result.reserve(children.size());
  for (const TAlignChild& c : children) result.push_back(c.bounds);

  TRect rest = client;
  std::vector<std::size_t> order;
  for (TAlign align : {alTop, alBottom, alLeft, alRight, alClient}) {
    order.clear();
    for (std::size_t i = 0; i < children.size(); ++i) {
      if (children[i].align != align || !children[i].visible) continue;
      auto at = order.begin();
      while (at != order.end() && !InsertBefore(children[i].bounds, children[*at].bounds, align))
        ++at;
      order.insert(at, i);
    }
    for (std::size_t i : order) result[i] = Place(children[i], align, rest);
  }
  return result;
}

int ScaleValue(int value, int to, int from) {
  if (from <= 0 || to == from) return value;
  const long long product = static_cast<long long>(value) * to;
  const long long half = from / 2;
  const long long scaled = product >= 0 ? (product + half) / from : -((-product + half) / from);
  return static_cast<int>(std::clamp<long long>(scaled, INT_MIN, INT_MAX));
}

TRect ScaleRect(const TRect& r, int to, int from) {
  return {ScaleValue(r.Left, to, from), ScaleValue(r.Top, to, from), ScaleValue(r.Right, to, from),
          ScaleValue(r.Bottom, to, from)};
}

TMargins ScaleMargins(const TMargins& m, int to, int from) {
  return {ScaleValue(m.Left, to, from), ScaleValue(m.Top, to, from), ScaleValue(m.Right, to, from),
          ScaleValue(m.Bottom, to, from)};
}

}  // namespace ui
