// Window-position records as somebody may have edited them in the INI file, through the
// record reader and every restoring rule: none may overflow on the way.
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <tuple>
#include <utility>

#include "rtl/sysutils.h"
#include "tools/inisettings.h"

namespace {

using namespace Qm_tools;
using namespace std::string_literals;

using Bounds = std::tuple<int, int, int, int>;  // left, top, width, height
using Corner = std::pair<int, int>;

// One 1280x1024 monitor with task bars on the left (60) and at the top (40).
TRestoreScreen TaskBarsLeftAndTop() {
  return {.MonitorWidth = 1280, .MonitorHeight = 1024, .MonitorWorkArea = {60, 40, 1280, 1024},
          .PrimaryWorkArea = {60, 40, 1280, 1024}, .DesktopWidth = 1280,
          .VirtualScreen = {0, 0, 1280, 1024}, .PrimaryWidth = 1280};
}

Bounds Of(const TRestoredBounds& b) { return {b.Left, b.Top, b.Width, b.Height}; }

std::string Narrow(const std::u16string& s) { return std::string(s.begin(), s.end()); }

// The corner rules move a 400 x 300 form.
constexpr int kFormWidth = 400, kFormHeight = 300;

TEST(IniSettingsHostile, RecordsAtTheEndsOfTheIntegersRestoreInsideTheWorkArea) {
  const TRestoreScreen s = TaskBarsLeftAndTop();
  struct Case { const char16_t* record; Bounds full, notMin; Corner corner, iniCorner; };
  const Case cases[] = {
      // Blanks and a plus sign are read; a sixth field or no last caret change nothing.
      {u" +100 ^ 100^500 ^400^ 1 ^junk^", {100, 100, 400, 300}, {100, 100, 400, 300},
       {100, 100}, {160, 140}},
      {u"100^100^500^400^1", {100, 100, 400, 300}, {100, 100, 400, 300}, {100, 100}, {160, 140}},
      // A width beyond the integers: the work area's width from its left edge.
      {u"-2147483648^0^100^100^1^", {60, 41, 1220, 100}, {60, 41, 1220, 100}, {60, 41},
       {-2147483588, 40}},
      {u"0^-2147483648^100^100^1^", {60, 40, 100, 984}, {60, 40, 100, 984}, {0, 41}, {60, 41}},
      {u"-2147483648^-2147483648^2147483647^2147483647^3^", {60, 40, 1220, 984},
       {60, 40, 1220, 984}, {0, 41}, {-2147483588, 41}},
      // All at the top: the monitor's size, or (keeping the corner) the least, low down.
      {u"2147483647^2147483647^2147483647^2147483647^1^", {60, 40, 1220, 984},
       {60, 964, 100, 60}, {0, 41}, {60, INT_MAX - kFormHeight}},
      // A corner at the top of the integers: the far edge must be one too.
      {u"2147483647^2147483647^0^0^1^", {60, 964, 100, 60}, {60, 964, 100, 60},
       {60, INT_MAX - kFormHeight}, {60, INT_MAX - kFormHeight}},
      // Right and bottom far left of and above the corner: the smallest form.
      {u"100^100^-2147483648^-2147483648^2^", {100, 100, 100, 60}, {100, 100, 100, 60},
       {100, 100}, {160, 140}},
      {u"-2147483648^-2147483648^-2147483648^-2147483648^1^", {60, 41, 100, 60},
       {60, 41, 100, 60}, {60, 41}, {-2147483588, 41}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Narrow(c.record));
    TWindowPosRecord rec;
    ASSERT_TRUE(ReadWindowPosValue(c.record, rec));
    EXPECT_EQ(Of(RestoreWindowBounds(rec, s, 0, 0, false)), c.full);
    EXPECT_EQ(Of(RestoreWindowBounds(rec, s, 0, 0, true)), c.notMin);
    const ui::TRect corner = RestoreWindowCorner(rec, s, kFormWidth, kFormHeight);
    const ui::TRect ini = RestoreWindowCornerIni(rec, s, kFormWidth, kFormHeight);
    EXPECT_EQ(Corner(corner.Left, corner.Top), c.corner);
    EXPECT_EQ(Corner(ini.Left, ini.Top), c.iniCorner);
    for (const ui::TRect& r : {corner, ini})
      EXPECT_EQ(Corner(r.Width(), r.Height()), Corner(kFormWidth, kFormHeight));
  }
}

TEST(IniSettingsHostile, FieldsThatAreNoIntegersRaiseTheConversionErrorAndChangeNothing) {
  const std::u16string records[] = {
      u"2147483648^0^100^100^1^"s, u"0^-2147483649^100^100^1^"s,  // beyond the integers
      u"99999999999999999999999999999999^0^0^0^1^"s,
      u"1^2^3^4^"s,  // the show command is missing
      u"^"s, u"^^^^^"s, u"x"s, u"1^2^3^4^x^"s, u"1.5^2^3^4^1^"s, u"1e3^2^3^4^1^"s,
      u"--1^2^3^4^1^"s, u"1 2^2^3^4^1^"s, u"1\0^2^3^4^1^"s,
      u"\uFF11^2^3^4^1^"s,  // a full-width digit
  };
  for (const std::u16string& record : records) {
    TWindowPosRecord rec{7, 7, 7, 7, 7};
    EXPECT_THROW(ReadWindowPosValue(record, rec), rtl::EConvertError) << Narrow(record);
    EXPECT_EQ(WindowPosValue(rec), u"7^7^7^7^7^") << Narrow(record);
  }
}

TEST(IniSettingsHostile, SizesAndScreensAtTheEndsOfTheIntegers) {
  TRestoreScreen s = TaskBarsLeftAndTop();
  const TWindowPosRecord ordinary{100, 100, 500, 400, 1};
  // A form that insists on more than any screen: the work area, and inside it.
  EXPECT_EQ(Of(RestoreWindowBounds(ordinary, s, INT_MAX, INT_MAX, false)),
            Bounds(60, 40, 1220, 984));
  // A form of no or negative size keeps its corner as far as its far edge stays an integer.
  struct { int width, height; TWindowPosRecord rec; Corner corner, iniCorner; } const forms[] = {
      {0, 0, {INT_MAX, INT_MAX, 0, 0, 1}, {60, INT_MAX}, {60, INT_MAX}},
      {-100, -100, {INT_MAX, INT_MAX, 0, 0, 1}, {60, INT_MAX}, {60, INT_MAX}},
      {-100, -100, {INT_MIN, INT_MIN, 0, 0, 1}, {60, 41}, {INT_MIN + 100, 41}},
  };
  for (const auto& f : forms) {
    SCOPED_TRACE(Narrow(WindowPosValue(f.rec)) + " " + std::to_string(f.width));
    const ui::TRect corner = RestoreWindowCorner(f.rec, s, f.width, f.height);
    const ui::TRect ini = RestoreWindowCornerIni(f.rec, s, f.width, f.height);
    EXPECT_EQ(Corner(corner.Left, corner.Top), f.corner);
    EXPECT_EQ(Corner(ini.Left, ini.Top), f.iniCorner);
    for (const ui::TRect& r : {corner, ini})
      EXPECT_EQ(Corner(r.Width(), r.Height()), Corner(f.width, f.height));
  }
  // No monitor and a virtual screen as large as the integers: the far edge stays one.
  s.MonitorFound = false;
  s.VirtualScreen = {INT_MIN, INT_MIN, INT_MAX, INT_MAX};
  const TWindowPosRecord all{INT_MIN, INT_MIN, INT_MAX, INT_MAX, 1};
  EXPECT_EQ(Of(RestoreWindowBounds(all, s, 0, 0, false)), Bounds(0, 41, 1280, 1024));
  EXPECT_EQ(Of(RestoreWindowBounds(all, s, 0, 0, true)), Bounds(0, 0, INT_MAX, INT_MAX));
  // A placement at the ends of the integers saves a record that reads back.
  const TWindowPosRecord saved = SavedWindowPos({INT_MIN, INT_MIN, INT_MAX, INT_MAX}, 1, INT_MAX,
                                                INT_MAX, true);
  EXPECT_EQ(WindowPosValue(saved), u"2147483647^2147483647^2147483647^2147483647^1^");
  TWindowPosRecord back;
  ASSERT_TRUE(ReadWindowPosValue(WindowPosValue(saved), back));
  EXPECT_EQ(WindowPosValue(back), WindowPosValue(saved));
}

}  // namespace
