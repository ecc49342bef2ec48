// The INI settings rules: section names, record texts and where a saved window comes back.
#include <gtest/gtest.h>

#include "rtl/sysutils.h"
#include "tools/inisettings.h"

namespace {

using namespace Qm_tools;

TEST(IniSettingsRecord, TextsAndTheirReading) {
  EXPECT_EQ(WindowPosSection(1920, 1080, u"BUILDPC"), u"1920x1080:BUILDPC:WinPos");
  EXPECT_EQ(WindowPosValue({10, 20, 810, 620, 1}), u"10^20^810^620^1^");
  EXPECT_EQ(WindowPosValue({-8, -8, 1928, 1048, 3}), u"-8^-8^1928^1048^3^");

  TWindowPosRecord rec{1, 2, 3, 4, 5};
  EXPECT_FALSE(ReadWindowPosValue(u"", rec));
  EXPECT_EQ(rec.ShowCmd, 5) << "untouched";
  ASSERT_TRUE(ReadWindowPosValue(u"-8^-8^1928^1048^3^", rec));
  EXPECT_EQ(WindowPosValue(rec), u"-8^-8^1928^1048^3^");
}

TEST(IniSettingsRecord, SectionNamedAfterThePrimaryMonitorOrTheFormsOwn) {
  // SaveWindowPos, RestoreWindowPos and RestoreWindowNotMinPos take the primary monitor's;
  // SaveWindowPosMIni, IniSaveWindowPos, RestoreWindowLeftTopPos and its Ini variants the form's.
  using enum TWindowPosUser;
  EXPECT_TRUE(SectionOfPrimaryMonitor(wpSave) && SectionOfPrimaryMonitor(wpRestore));
  EXPECT_FALSE(SectionOfPrimaryMonitor(wpSaveMemIni) || SectionOfPrimaryMonitor(wpRestoreCorner));
}

TEST(IniSettingsRecord, SavedRectangleMovesByTheFormsOffsetWhenCorrected) {
  // Work area starting 40 pixels down: the placement says 100, the form stands at 140.
  EXPECT_EQ(WindowPosValue(SavedWindowPos({50, 100, 450, 400}, 1, 50, 140, true)),
            u"50^140^450^440^1^");
  EXPECT_EQ(WindowPosValue(SavedWindowPos({50, 100, 450, 400}, 3, -8, -8, false)),
            u"50^100^450^400^3^");
}

// One 1280x1024 monitor with a 30-pixel task bar at the bottom.
TRestoreScreen Single() {
  return {.MonitorWidth = 1280, .MonitorHeight = 1024, .MonitorWorkArea = {0, 0, 1280, 994},
          .PrimaryWorkArea = {0, 0, 1280, 994}, .DesktopWidth = 1280,
          .VirtualScreen = {0, 0, 1280, 1024}, .PrimaryWidth = 1280};
}

using B = std::tuple<int, int, int, int>;  // left, top, width, height
B Of(const TRestoredBounds& b) { return {b.Left, b.Top, b.Width, b.Height}; }

TEST(IniSettingsRestore, FullRestoreKeepsTheFormOnTheWorkArea) {
  const TRestoreScreen one = Single();
  TRestoreScreen top = Single();  // a task bar at the top
  top.PrimaryWorkArea = top.MonitorWorkArea = {0, 40, 1280, 1024};
  TRestoreScreen none = top, strip = top;  // no monitor: the virtual screen bounds the form
  none.MonitorFound = strip.MonitorFound = false;
  none.VirtualScreen = {0, 0, 640, 480};
  strip.VirtualScreen = {0, 0, 640, 30};
  struct Case { const TRestoreScreen* s; TWindowPosRecord rec; int minW, minH; bool notMin;
                B bounds; } const cases[] = {
      {&one, {10, 20, 810, 620, 1}, 0, 0, false, {10, 20, 800, 600}},     // fits
      {&one, {300, 20, 1800, 620, 1}, 0, 0, false, {0, 20, 1280, 600}},   // wider: from the left
      {&one, {10, 200, 810, 1033, 1}, 0, 0, false, {10, 0, 800, 994}},    // over 8 too tall
      {&one, {488, 20, 1288, 620, 1}, 0, 0, false, {480, 20, 800, 600}},  // 8 beyond: pushed in
      {&one, {10, 200, 810, 1032, 1}, 0, 0, false, {10, 162, 800, 832}},
      {&one, {10, 20, 30, 30, 1}, 0, 0, false, {10, 20, 100, 60}},        // 100 x 60 at the least
      {&one, {10, 20, 30, 30, 1}, 300, 50, false, {10, 20, 300, 60}},     // or the form's minimum
      {&one, {-500, 20, -100, 320, 1}, 0, 0, false, {0, 20, 400, 300}},   // left of the desktop
      {&one, {10, 990, 810, 1000, 1}, 0, 10, false, {10, 934, 800, 60}},  // pushed up to fit
      {&top, {10, 10, 410, 310, 1}, 0, 0, false, {10, 41, 400, 300}},     // over 15 above: below it
      {&top, {10, 30, 410, 330, 1}, 0, 0, false, {10, 40, 400, 300}},     // else just pushed inside
      {&top, {300, 100, 1800, 400, 1}, 0, 0, true, {300, 100, 980, 300}},  // not min: corner kept
      {&none, {10, 100, 810, 700, 1}, 0, 0, false, {0, 0, 640, 480}},
      {&strip, {10, 100, 810, 700, 1}, 0, 0, false, {0, 0, 640, 30}},  // under 40 high: from its top
  };
  for (const Case& c : cases)
    EXPECT_EQ(Of(RestoreWindowBounds(c.rec, *c.s, c.minW, c.minH, c.notMin)), c.bounds)
        << rtl::Utf16ToUtf8(WindowPosValue(c.rec));
}

TEST(IniSettingsRestore, CornerOnlyRules) {
  TRestoreScreen s = Single();
  auto corner = [&](TWindowPosRecord r, bool ini) {
    const ui::TRect c =
        ini ? RestoreWindowCornerIni(r, s, 400, 300) : RestoreWindowCorner(r, s, 400, 300);
    EXPECT_EQ(std::pair(c.Width(), c.Height()), std::pair(400, 300)) << "the size stays";
    return std::pair(c.Left, c.Top);
  };
  // Beyond the desktop or the monitor by more than 8: to that edge.
  EXPECT_EQ(corner({100, 50, 1289, 1033, 1}, false), std::pair(0, 0));
  EXPECT_EQ(corner({100, 50, 1288, 1032, 1}, false), std::pair(100, 50));
  EXPECT_EQ(corner({-3000, 50, 0, 100, 1}, false), std::pair(0, 50));
  // A corner right of the desktop goes to the work area's left; one on its edge stays.
  EXPECT_EQ(corner({1281, 50, 1285, 100, 1}, false), std::pair(0, 50));
  EXPECT_EQ(corner({1280, 50, 1285, 100, 1}, false), std::pair(1280, 50));
  s.PrimaryWorkArea = {60, 40, 1280, 1024};
  EXPECT_EQ(corner({100, 10, 400, 300, 1}, false), std::pair(100, 41));
  // The Ini variant counts from the work area and tests only the primary width.
  EXPECT_EQ(corner({100, 10, 9999, 9999, 1}, true), std::pair(160, 50));
  EXPECT_EQ(corner({1250, 10, 0, 0, 1}, true), std::pair(60, 50));
  s.PrimaryWorkArea = {1, 1, 1280, 1024};
  EXPECT_EQ(corner({100, 10, 0, 0, 1}, true), std::pair(101, 11));
}

TEST(IniSettingsRestore, ShowCommandTwoDependsOnTheRoutine) {
  using enum TRestoreState;
  const std::tuple<int, bool, TRestoreState> cases[] = {
      {2, false, rsNormal}, {2, true, rsMinimized}, {3, false, rsMaximized},
      {1, true, rsNormal}, {7, false, rsKeep}};
  for (const auto& [cmd, notMin, state] : cases)
    EXPECT_EQ(RestoredWindowState(cmd, notMin), state) << cmd << " " << notMin;
}

TEST(IniSettingsFiles, ListBoundsProbesAndMessage) {
  for (auto [count, max, kept] : {std::tuple{3, 1, 2}, {3, 5, 3}, {0, 5, 0}, {3, -1, 0}})
    EXPECT_EQ(PersistItemCount(count, max), kept) << count << " " << max;
  EXPECT_EQ(DriveProbeFile(u"D:\\Daten\\x"), u"D:\\jjhhuu.ini");
  EXPECT_EQ(DriveProbeFile(u"D:"), u"D:\\jjhhuu.ini");
  EXPECT_EQ(DriveProbeFile(u"\\\\srv\\share"), u"\\\\jjhhuu.ini") << "the first two, whatever";
  EXPECT_EQ(AppIniFolder(u"C:\\P\\app.INI"), u"C:\\P\\");
  // Where the profile API keeps the file a probe writes, and so where it is deleted.
  // No folder: the Windows folder; a folder counts from the current one, a drive from its own.
  const std::pair<const char16_t*, const char16_t*> probes[] = {
      {u"IniTest", u"C:\\windows\\IniTest"}, {u"jjhhuu.ini", u"C:\\windows\\jjhhuu.ini"},
      {u"C:\\jjhhuu.ini", u"C:\\jjhhuu.ini"}, {u"sub\\IniTest", u"sub\\IniTest"},
      {u"sub/IniTest", u"sub/IniTest"}, {u"C:IniTest", u"C:IniTest"},
      {u"\\\\jjhhuu.ini", u"\\\\jjhhuu.ini"}};
  for (const auto& [name, file] : probes) {
    EXPECT_EQ(ProfileFilePath(name, u"C:\\windows"), file);
    EXPECT_EQ(ProfileFilePath(name, u"C:\\windows\\"), file) << "one backslash between";
  }
  EXPECT_EQ(AppIniFolder(u""), u"");
  EXPECT_EQ(WritePosFailedText(u"C:\\x.ini"),
            u"Nach C:\\x.ini konnte nicht geschrieben werden!\r\r"
            u"Möglicherweise bestehen keine Schreibrechte des Anwenders.");
}

}  // namespace
