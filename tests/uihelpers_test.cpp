// The interface helpers' rules; lists, grids and headers are tested on real windows.
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>
#include <vector>

#include "tools/qm_globals.h"
#include "tools/uihelpers.h"

namespace {

using namespace Qm_tools;

// Every character `pixels` wide, as in a fixed-pitch font.
TTextWidth Fixed(int pixels) {
  return [pixels](const std::u16string& text) { return pixels * static_cast<int>(text.size()); };
}

TEST(UiHelpersText, AWordWithoutSpacesIsBrokenWhereItOverrunsTheWidth) {
  struct Case { std::u16string text; int width; std::u16string wrapped; } const cases[] = {
      {u"", 10, u""}, {u"abcdef", 10, u"abc\r\ndef"}, {u"abcd", 10, u"abc\r\n"},
      {u"a b", 1, u"a b"},                 // the label's own word wrap breaks at the space
      {u"abcdefg", 9, u"abc\r\ndef\r\n"},  // the overflowing last character is dropped
      {u"abc", 9, u"abc"},                 // exactly the width fits
      {u"ab", 2, u"\r\na\r\n"},            // a character wider than the label: an empty line first
  };
  for (const Case& c : cases)
    EXPECT_EQ(WrapTextForLabel(c.width, Fixed(3), c.text), c.wrapped)
        << std::string(c.text.begin(), c.text.end()) << " in " << c.width;
}

TEST(UiHelpersText, TextTooWideIsCutUntilItFitsWithDotsAndTwoPixelsToSpare) {
  struct Case { std::u16string text; int width; std::u16string fitted; } const cases[] = {
      {u"abcdefghijkl", 60, u"abcdefghijkl"},  // 60 pixels fit: no dots
      {u"abcdefghijkl", 52, u"abcdefg..."},    // 50 <= 52 - 2
      {u"abcdefghijkl", 51, u"abcdef..."},     // 50 would fit but for the spare pixels
      {u"abcdefghijkl", 30, u"ab..."},         {u"abcdefghijkl", 16, u"..."},  // nothing fits
      {u"", 0, u""}, {u"abcdefghijkl", INT_MAX, u"abcdefghijkl"},
      // Not even "..." fits: the dots are what is left.
      {u"", -1, u"..."}, {u"a", -1, u"..."}, {u"", INT_MIN, u"..."}, {u"abc", INT_MIN + 1, u"..."},
  };
  for (const Case& c : cases)
    EXPECT_EQ(FitStrLen(c.width, Fixed(5), c.text), c.fitted)
        << std::string(c.text.begin(), c.text.end()) << " in " << c.width;
}

TEST(UiHelpersText, ControlsUnderTheMouseAreListedInnermostFirstWithParentsIndented) {
  EXPECT_EQ(ControlHierarchyText({{u"TButton", u"OK"}, {u"TPanel", u"Bar"}, {u"TForm", u"Main"}}),
            u"Steuerelemente unter der Maus:\r\nTButton \"OK\"\r\n  TPanel \"Bar\"\r\n"
            u"    TForm \"Main\"");
}

TEST(UiHelpersColor, ChannelsMoveInProportionToThemselvesAndStayInRange) {
  struct Case { TColor color; bool lighter; double amount; TColor changed; } const cases[] = {
      {0x000000, true, 50, 0x000000},    // black stays black
      {0x0000FF, true, 255, 0x0000FF},   // red doubled and clamped
      {0x808080, false, 255, 0x000000},  // darkened to nothing
      {0x336699, false, 0, 0x336699},
      {0x0000FF, false, 0.5, 0x0000FE},  // 254.5 goes down to the even 254
      {0x0000FF, false, 1.5, 0x0000FE},  // 253.5 goes up to the even 254
      {0x00FF00, false, 127.5, 0x008000},
      {static_cast<TColor>(0xFF808080u), true, 0, 0x808080},  // the top byte is not kept
      {0x4080C0, true, 51, 0x4D9AE6},  // red, green and blue each on its own
  };
  for (const Case& c : cases)
    EXPECT_EQ(ChangeColor(c.color, c.lighter, c.amount), c.changed)
        << std::hex << c.color << (c.lighter ? " lighter " : " darker ") << c.amount;
}

TEST(UiHelpersColor, HtmlTextIsRedGreenBlueInUpperCaseHex) {
  for (auto [rgb, html] : {std::pair<TColor, std::u16string>{0x0080FF, u"#FF8000"},
                           {0x0A0B0C, u"#0C0B0A"}, {0xFFFFFF, u"#FFFFFF"}})
    EXPECT_EQ(RgbToHtml(rgb), html);
}

TEST(UiHelpersColor, SelectionColourFollowsTheSystemDescription) {
  const std::u16string saved = curOS;
  const TColor given = ui::SystemColor(13);
  struct Case { std::u16string os; TColor color; } const cases[] = {
      {u"linux ubuntu 22.04 lts", 0x4677F0}, {u"linux mint 21", 0x72B392},
      {u"ubuntu mint", 0x72B392},  // the second test wins
      {u"Ubuntu 22.04", given},    // case counts
      {u"windows 10 (version 10.0)", given}, {u"", given},
  };
  for (const Case& c : cases) {
    curOS = c.os;
    EXPECT_EQ(GetSysSelColor(given), c.color) << std::string(c.os.begin(), c.os.end());
  }
  curOS = saved;
}

TEST(UiHelpersGeometry, PicturesFitTheirContainerWithTheAspectRatioKept) {
  // In doubles and in integers, halves to the even side. The integer routine alone: a zero
  // container makes nothing; a zero picture or a huge quotient keeps its side.
  struct Case { int cw, ch, w, h, fitW, fitH; bool intOnly = false; } const cases[] = {
      {200, 100, 50, 50, 100, 100},   // scaled up to the height
      {200, 100, 400, 100, 200, 50},  // scaled down to the width
      {100, 100, 3, 2, 100, 67},      // 66.67
      {16, 16, 32, 5, 16, 2},         // 2.5 to the even 2
      {16, 16, 32, 7, 16, 4},         // 3.5 to the even 4
      {0, 100, 40, 30, 0, 0, true}, {100, 100, 0, 0, 0, 0, true},
      {-1, 2, INT_MAX, 1, INT_MAX, 2, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.w << "x" << c.h << " into " << c.cw << "x" << c.ch);
    int w = c.w, h = c.h;
    FitPictureToContainerInt(c.cw, c.ch, w, h);
    EXPECT_EQ(std::pair(w, h), std::pair(c.fitW, c.fitH));
    if (c.intOnly) continue;
    double dw = c.w, dh = c.h;
    FitPictureToContainer(c.cw, c.ch, dw, dh);
    EXPECT_EQ(std::pair(dw, dh), (std::pair<double, double>(c.fitW, c.fitH)));
  }
  double w = 0, h = 50;  // a zero side leaves both alone
  FitPictureToContainer(100, 100, w, h);
  EXPECT_EQ(std::pair(w, h), std::pair(0.0, 50.0));
}

TEST(UiHelpersGeometry, HeaderSectionsStartWhereTheOnesBeforeThemEnd) {
  const std::vector<int> widths{40, 55, 70};
  const std::pair<int, int> cases[] = {{0, 0}, {1, 40}, {2, 95}, {3, 165}, {9, 165}, {-1, 0}};
  for (const auto& [index, left] : cases)
    EXPECT_EQ(GetSectionLeftPos(widths, index), left) << "section " << index;
}

TEST(UiHelpersGeometry, ListLinesAreFoundOnlyInsideTheClientArea) {
  // A 100 x 96 client area of 16-pixel lines: six show, the sixth down to its last pixel.
  struct Case { TPoint p; int top, height, count; int line; } const cases[] = {
      {{50, 0}, 0, 16, 50, 0}, {{50, 15}, 0, 16, 50, 0}, {{50, 16}, 0, 16, 50, 1},
      {{0, 95}, 0, 16, 50, 5}, {{50, 47}, 47, 16, 50, 49},
      {{99, 40}, 20, 16, 50, 22},  // scrolled: counted from the top line
      {{50, 48}, 47, 16, 50, -1},  // below the last line
      {{50, 0}, 0, 16, 0, -1},     // no lines at all
      // Outside the client area, where lines scrolled out of view would lie.
      {{50, 96}, 0, 16, 50, -1}, {{50, 200}, 0, 16, 50, -1}, {{50, -1}, 20, 16, 50, -1},
      {{100, 10}, 0, 16, 50, -1}, {{-1, 10}, 0, 16, 50, -1},
      {{INT_MIN, INT_MIN}, 0, 16, 50, -1}, {{INT_MAX, INT_MAX}, 0, 16, 50, -1},
      // What the window says when it refuses, and counts at the end of the integers.
      {{50, 10}, -1, 16, 50, -1}, {{50, 10}, 0, 0, 50, -1}, {{50, 10}, 0, -16, 50, -1},
      {{50, 95}, INT_MAX - 1, 16, INT_MAX, -1}, {{50, 95}, INT_MAX - 6, 16, INT_MAX, INT_MAX - 1},
  };
  for (const Case& c : cases)
    EXPECT_EQ(ListItemAtPoint(c.p, 100, 96, c.top, c.height, c.count), c.line)
        << "(" << c.p.X << ", " << c.p.Y << ") from line " << c.top << " of " << c.count;
  EXPECT_EQ(ListItemAtPoint({0, 0}, 0, 0, 0, 16, 50), -1) << "a list box without a client area";
  EXPECT_EQ(ListItemAtPoint({0, 0}, -5, -5, 0, 16, 50), -1);
}

TEST(UiHelpersGeometry, RectanglesShrinkAndMenusOpenOnePixelAboveOrBelowTheControl) {
  EXPECT_EQ(DecRect({10, 20, 110, 70}, 3), (TRect{13, 23, 107, 67}));
  EXPECT_EQ(DecRect({10, 20, 110, 70}, -2), (TRect{8, 18, 112, 72}));
  EXPECT_EQ(PopupPoint(10, 50, 20, 0), (TPoint{10, 71}));
  EXPECT_EQ(PopupPoint(10, 50, 20, 1), (TPoint{10, 49}));
  EXPECT_EQ(PopupPoint(10, 50, 20, -7), (TPoint{10, 49}));
  EXPECT_EQ(SysMenuLParam({300, 200}), 0x00C8012Cu);
  EXPECT_EQ(SysMenuLParam({-5, 10}), 0x000AFFFBu) << "a point left of the screen";
}

}  // namespace
