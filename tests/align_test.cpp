// The align rule: stacking order, tie-breaks, margins, and what it leaves alone.
#include "ui/align.h"

#include <gtest/gtest.h>

#include <climits>

#include <string>
#include <vector>

namespace {

using namespace ui;  // the alXxx enumerators, as layout code names them

TAlignChild Child(TAlign align, TRect bounds, bool visible = true) {
  return {align, bounds, visible, false, {}};
}
TAlignChild WithMargins(TAlign align, TRect bounds, TMargins margins) {
  return {align, bounds, true, true, margins};
}

std::string Describe(const std::vector<TRect>& rects) {
  std::string s;
  for (const TRect& r : rects)
    for (int v : {r.Left, r.Top, r.Right, r.Bottom}) s += std::to_string(v) + " ";
  return s;
}

TEST(AlignBounds, ChildrenTakeTheirSharesInTheFrameworksOrder) {
  struct Case { const char* name; std::vector<TAlignChild> children; std::vector<TRect> expected;
                TRect client{0, 0, 200, 100}; };
  const Case cases[] = {
      {"each side once, created in reverse order of stacking",
       {Child(alClient, {}), Child(alRight, {0, 0, 40, 5}), Child(alLeft, {0, 0, 30, 5}),
        Child(alBottom, {0, 0, 5, 20}), Child(alTop, {0, 0, 5, 10})},
       {{30, 10, 160, 80}, {160, 10, 200, 80}, {0, 10, 30, 80}, {0, 80, 200, 100},
        {0, 0, 200, 10}}},
      {"alTop by current Top, not by creation",
       {Child(alTop, {0, 50, 9, 60}), Child(alTop, {0, 0, 9, 5})},
       {{0, 5, 200, 15}, {0, 0, 200, 5}}},
      {"alTop tie: the earlier child stays on top",
       {Child(alTop, {0, 0, 9, 10}), Child(alTop, {0, 0, 9, 5})},
       {{0, 0, 200, 10}, {0, 10, 200, 15}}},
      {"alBottom by current bottom: the lowest stays lowest",
       {Child(alBottom, {0, 80, 9, 90}), Child(alBottom, {0, 45, 9, 50})},
       {{0, 90, 200, 100}, {0, 85, 200, 90}}},
      {"alBottom tie: the later child goes to the bottom edge",
       {Child(alBottom, {0, 90, 9, 100}), Child(alBottom, {0, 95, 9, 100})},
       {{0, 85, 200, 95}, {0, 95, 200, 100}}},
      {"alLeft by current Left; on a tie the earlier child stays left",
       {Child(alLeft, {50, 0, 60, 9}), Child(alLeft, {0, 0, 20, 9}), Child(alLeft, {0, 0, 5, 9})},
       {{25, 0, 35, 100}, {0, 0, 20, 100}, {20, 0, 25, 100}}},
      {"alRight tie: the later child goes to the right edge",
       {Child(alRight, {0, 0, 10, 9}), Child(alRight, {-10, 0, 10, 9})},
       {{170, 0, 180, 100}, {180, 0, 200, 100}}},
      {"every alClient child gets the same rest",
       {Child(alTop, {0, 0, 9, 30}), Child(alClient, {}), Child(alClient, {5, 5, 6, 6})},
       {{0, 0, 200, 30}, {0, 30, 200, 100}, {0, 30, 200, 100}}},
      {"invisible and alNone children keep their bounds and leave the space",
       {Child(alTop, {1, 2, 3, 40}, false), Child(alNone, {600, 128, 649, 177}),
        Child(alClient, {})},
       {{1, 2, 3, 40}, {600, 128, 649, 177}, {0, 0, 200, 100}}},
      {"margins enlarge the share and shrink the child inside it",
       {WithMargins(alTop, {0, 0, 9, 10}, {}), WithMargins(alLeft, {0, 0, 10, 9}, {1, 2, 3, 4}),
        Child(alClient, {})},
       {{3, 3, 197, 13}, {1, 18, 11, 96}, {14, 16, 200, 100}}},
      {"shares that fill the client exactly leave alClient nothing, margins and all",
       {Child(alTop, {0, 0, 9, 100}), Child(alLeft, {0, 0, 200, 9}),
        WithMargins(alClient, {0, 0, 9, 7}, {1, 1, 1, 1})},
       {{0, 0, 200, 100}, {0, 100, 200, 100}, {201, 101, 201, 101}}},
      {"overfilled: alClient keeps its own height below, margins shrink it to nothing",
       {Child(alTop, {0, 0, 9, 15}), Child(alTop, {0, 0, 9, 15}),
        WithMargins(alClient, {0, 0, 9, 7}, {60, 0, 60, 0})},
       {{0, 0, 100, 15}, {0, 15, 100, 30}, {60, 30, 60, 37}},
       {0, 0, 100, 20}},
      {"a bevel of one pixel: the layout starts at the client origin",
       {Child(alTop, {0, 0, 9, 28}), Child(alLeft, {0, 0, 97, 26})},
       {{1, 1, 99, 29}, {1, 29, 98, 49}},
       {1, 1, 99, 49}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::vector<TRect> got = AlignBounds(c.client, c.children);
    EXPECT_EQ(got, c.expected) << Describe(got);
  }
}

// From 96 DPI to another density and back: half a pixel rounds away from zero, edges are
// scaled so that touching controls keep touching, and 96 to 96 changes nothing.
TEST(AlignScale, PixelSizesFollowTheDensity) {
  const struct { int value, to, from, scaled; } values[] = {
      {130, 144, 96, 195}, {35, 144, 96, 53}, {-15, 144, 96, -23}, {1, 120, 96, 1},
      {3, 120, 96, 4},     {-3, 120, 96, -4}, {5, 96, 96, 5},      {195, 96, 144, 130},
      {7, 96, 0, 7},       {2000000000, 192, 96, INT_MAX}};
  for (const auto& v : values)
    EXPECT_EQ(ScaleValue(v.value, v.to, v.from), v.scaled) << v.value << " " << v.to << "/" << v.from;
  // Two buttons side by side, 106 and 130 wide: at 150% they still touch.
  const TRect a = ScaleRect({15, 10, 121, 45}, 144, 96), b = ScaleRect({121, 10, 251, 45}, 144, 96);
  EXPECT_EQ(a, (TRect{23, 15, 182, 68}));
  EXPECT_EQ(b.Left, a.Right);
  EXPECT_EQ(ScaleMargins({15, 10, 2, 11}, 144, 96), (TMargins{23, 15, 3, 17}));
}

}  // namespace
