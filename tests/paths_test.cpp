// Path rules of the tool library that need no system, the start-up rules and the globals.
#include <gtest/gtest.h>

#include <set>
#include <utility>
#include <string>

#include "rtl/formatsettings.h"
#include "rtl/sysutils.h"
#include "tools/paths.h"
#include "tools/qm_globals.h"

namespace {

using namespace Qm_tools;

TEST(PathsSlashes, TrailingBackslashesAndParents) {
  const std::u16string longName = std::u16string(300, u'x') + u"\\y";
  const std::u16string deep = u"C:\\" + std::u16string(260, u'x') + u"\\y";
  const std::pair<std::u16string, std::u16string> cases[] = {
      {chkPath(u"C:\\a"), u"C:\\a\\"}, {chkPath(u"C:\\a\\"), u"C:\\a\\"},
      {chkPath(u""), u""}, {RemoveSlash(u"C:\\a\\"), u"C:\\a"},
      {RemoveSlash(u"C:\\a\\\\"), u"C:\\a\\"}, {RemoveSlash(u""), u""},
      {prevDir(u"C:\\a\\b\\"), u"C:\\a"}, {prevDir(u"C:\\a\\b"), u"C:\\a"},
      {prevDir(u"C:\\a"), u"C:"}, {prevDir(u"C:\\"), u""},
      {prevDir(u""), u""}, {prevDir(u"abc"), u""},
      {prevDir(longName), u""},  // only the first 255 characters count
      {prevDir(deep), u"C:"},
  };
  for (const auto& [got, want] : cases) EXPECT_EQ(got, want);
}

TEST(PathsSanitising, FileAndFolderNames) {
  EXPECT_EQ(qm_GetValidFilename(u"a'b\"c*d/e:f<g>h?i\\j|k\x01l\x1Fm"),
            u"a_b\"c_d_e_f_g_h_i_j_k_l_m");
  EXPECT_EQ(qm_GetValidFilename(u"Bericht~1 (ÄÖÜ).txt"), u"Bericht~1 (ÄÖÜ).txt");
  EXPECT_EQ(qm_GetValidDirName(u"C:\\a:b\\\"c*?|<>/\x02"), u"C:\\a_b\\_c_______");
  EXPECT_EQ(qm_GetValidDirName(u"\\\\server\\share\\\\x"), u"\\\\server\\share\\_x");
  EXPECT_EQ(qm_GetValidDirName(u"C:\\a'b"), u"C:\\a'b");
  EXPECT_EQ(GetValidDataDir(u"C:\\Program Files\\X", u"alt"), u"alt");
  EXPECT_EQ(GetValidDataDir(u"c:\\PROGRAMME\\X", u"alt"), u"alt");
  EXPECT_EQ(GetValidDataDir(u"D:\\Program Files\\X", u"alt"), u"D:\\Program Files\\X");
}

TEST(PathsPortable, StoredPathsMoveToTheProgramsDriveWhenUnreachable) {
  std::set<std::u16string> files{u"C:\\x\\y.txt"};
  std::set<std::u16string> dirs{u"C:\\x\\", u"C:\\x"};
  auto file = [&](const std::u16string& p) { return files.contains(p); };
  auto dir = [&](const std::u16string& p) { return dirs.contains(p); };
  using enum TPortableMapping;
  const struct { std::u16string arg; TPortableMapping mapping; std::u16string want; } cases[] = {
      {u"C:\\x\\y.txt", File, u"C:\\x\\y.txt"},  // reachable: kept
      {u"C:\\x\\z.txt", File, u"F:\\x\\z.txt"}, {u"C:\\x\\y.txt", StrictFile, u"F:\\x\\y.txt"},
      {u"C:\\x", Path, u"C:\\x"}, {u"C:\\q", Path, u"F:\\q"},
      {u"C:\\x", StrictPath, u"F:\\x"}, {u"", File, u""}, {u"", StrictFile, u""}, {u"", Path, u""},
      {u"", StrictPath, u"F:"},  // the bare drive
      {u"\\\\server\\share\\x", File, u"F:\\usbnet=server\\share\\x"},
      {u"\\\\server\\share", StrictPath, u"F:\\usbnet=server\\share"},
      {u"C:\\" + std::u16string(3000, u'a'), StrictFile, u"F:\\" + std::u16string(1999, u'a')},
  };
  for (const auto& c : cases)
    EXPECT_EQ(MapPortable(c.arg, u"F:\\Tools\\", c.mapping, file, dir), c.want)
        << rtl::Utf16ToUtf8(c.arg.substr(0, 20)) << " " << static_cast<int>(c.mapping);
}

TEST(PathsUniqueNames, NumberedSeriesSkipTakenNames) {
  std::set<std::u16string> taken;
  auto exists = [&](const std::u16string& p) { return taken.contains(p); };
  EXPECT_EQ(NotExistingFilename(u"C:\\d\\Bericht.txt", u"1", exists), u"C:\\d\\Bericht1.txt");
  EXPECT_EQ(NotExistingFilename(u"C:\\d\\Bericht70.txt", u"1", exists), u"C:\\d\\Bericht1.txt")
      << "trailing digits belong to the number";
  EXPECT_EQ(NotExistingFilename(u"C:\\d\\Bericht.txt", u"", exists), u"C:\\d\\Bericht.txt");
  taken = {u"C:\\d\\Bericht.txt", u"C:\\d\\Bericht1.txt", u"C:\\d\\Bericht2.txt"};
  EXPECT_EQ(NotExistingFilename(u"C:\\d\\Bericht.txt", u"", exists), u"C:\\d\\Bericht3.txt");
  EXPECT_EQ(NotExistingFilename(u"C:\\d\\Bericht.txt", u"2", exists), u"C:\\d\\Bericht3.txt");
  EXPECT_EQ(NotExistingFilename(u"C:\\v1.2\\log", u"5", exists), u"C:\\v1.2\\log5")
      << "a dot in a folder is no extension";
  EXPECT_EQ(NotExistingFilename(u"C:\\d\\Bericht.txt", u"x", exists), u"C:\\d\\Berichtx.txt");
  taken.insert(u"C:\\d\\Berichtx.txt");
  try {
    NotExistingFilename(u"C:\\d\\Bericht.txt", u"x", exists);
    ADD_FAILURE() << "the number is read once the first candidate is taken";
  } catch (const rtl::EConvertError& e) {
    EXPECT_EQ(e.Message(), u"'x' is not a valid integer value");
  }
  taken = {u"C:\\d\\Neu", u"C:\\d\\Neu1"};
  EXPECT_EQ(NotExistingDirName(u"C:\\d\\Neu", exists), u"C:\\d\\Neu2");
  EXPECT_EQ(NotExistingDirName(u"C:\\d\\Alt", exists), u"C:\\d\\Alt");
}

TEST(PathsExpansion, ShortComponentsTakeTheirDisplayNames) {
  std::u16string asked;
  auto shell = [&](const std::u16string& partial) -> std::u16string {
    asked += partial + u"|";
    if (partial == u"C:\\PROGRA~1") return u"Program Files";
    if (partial == u"C:\\PROGRA~1\\NOXDES~1") return u"Noxdesk Tools";
    if (partial == u"NOXD~JC1") return u"Noxdesk Data";
    return u"";
  };
  EXPECT_EQ(ExpandedFilename(u"C:\\PROGRA~1\\NOXDES~1\\a.txt", shell),
            u"C:\\Program Files\\Noxdesk Tools\\a.txt");
  EXPECT_EQ(asked, u"C:\\PROGRA~1|C:\\PROGRA~1\\NOXDES~1|C:\\PROGRA~1\\NOXDES~1\\a.txt|")
      << "every partial path after the first '~' is asked";
  EXPECT_EQ(ExpandedFilename(u"C:\\GONE~1\\x", shell), u"C:\\GONE~1\\x");
  EXPECT_EQ(ExpandedFilename(u"NOXD~JC1\\x.txt", shell), u"Noxdesk Data\\x.txt")
      << "a relative name's first field is asked too";
  EXPECT_EQ(ExpandedFilename(u"C:\\plain\\x\\", shell), u"C:\\plain\\x");
  asked.clear();
  EXPECT_EQ(ExpandedFilename(u"\\\\srv\\PROGRA~1", shell), u"\\\\srv\\PROGRA~1");
  EXPECT_EQ(asked, u"");
}

TEST(PathsStartup, IniFileAndDataFolderByDiskMode) {
  const TStartupPaths fixed = StartupPaths(u"C:\\Program Files\\IDE\\bin\\bds.exe",
                                           u"C:\\Program Files\\IDE\\bin\\",
                                           u"C:\\Users\\u\\AppData\\Roaming", u"Fixed");
  EXPECT_EQ(fixed.AppIniName, u"C:\\Users\\u\\AppData\\Roaming\\quillmark\\bds.INI");
  EXPECT_EQ(fixed.ProgDataPath, u"C:\\Users\\u\\AppData\\Roaming\\quillmark\\");
  EXPECT_EQ(fixed.FolderToCreate, fixed.ProgDataPath);
  EXPECT_EQ(fixed.SysAppIniName, u"C:\\Users\\u\\AppData\\Roaming\\bds.INI");
  const TStartupPaths mobile =
      StartupPaths(u"E:\\Nox\\NOXPlugIn.exe", u"E:\\Nox\\", u"C:\\Roaming\\", u"Mobile");
  EXPECT_EQ(mobile.AppIniName, u"E:\\Nox\\NOXPlugIn.INI");
  EXPECT_EQ(mobile.ProgDataPath, u"E:\\Nox\\");
  EXPECT_EQ(mobile.FolderToCreate, u"");
  EXPECT_EQ(StartupPaths(u"E:\\n\\p.exe", u"E:\\n\\", u"C:\\R", u"mobile").AppIniName,
            u"C:\\R\\quillmark\\p.INI")
      << "the mode is compared exactly";
  EXPECT_EQ(DiskModeForDriveType(2), u"Mobile");
  for (unsigned type : {0u, 1u, 3u, 4u, 5u, 6u}) EXPECT_EQ(DiskModeForDriveType(type), u"Fixed");
}

TEST(PathsStartup, LocaleFormatsTakeTheLibrarysSeparatorsAndGermanMonths) {
  rtl::TFormatSettings processWide, fms, org;
  processWide.DecimalSeparator = u',';
  fms.LongMonthNames[2] = u"März";
  fms.ShortMonthNames[2] = u"Mrz";
  fms.ShortDateFormat = u"dd.MM.yyyy";
  org.ShortDateFormat = u"M/D/YYYY";
  EXPECT_TRUE(AdjustStartupFormats(processWide, fms, org));
  EXPECT_EQ(org.ShortDateFormat, u"M/d/yyyy");
  EXPECT_EQ(processWide.DateSeparator, u'.');
  EXPECT_EQ(processWide.ThousandSeparator, u'.');
  EXPECT_EQ(processWide.DecimalSeparator, u',') << "left as the locale has it";
  EXPECT_EQ(processWide.LongMonthNames[2], u"März");
  EXPECT_EQ(processWide.ShortMonthNames[2], u"Mrz");
  EXPECT_EQ(fms.ShortDateFormat, u"dd.mm.yyyy");
  EXPECT_EQ(fms.ShortTimeFormat, u"hh:mm");
  org.ShortDateFormat = u"dd.MM.yyyy";
  EXPECT_FALSE(AdjustStartupFormats(processWide, fms, org));
  EXPECT_EQ(org.ShortDateFormat, u"dd.MM.yyyy");
  org.ShortDateFormat = u"MM/dd/yy";
  EXPECT_TRUE(AdjustStartupFormats(processWide, fms, org));
  EXPECT_EQ(org.ShortDateFormat, u"MM/dd/yy");
}

TEST(PathsStartup, UsEnglishFormatsAreTheOnesAmericansWrite) {
  const rtl::TFormatSettings en = rtl::GetLocaleFormatSettings(0x0409);
  EXPECT_EQ(en.ShortDateFormat, u"M/d/yyyy");
  EXPECT_EQ(en.LongDateFormat, u"dddd, MMMM d, yyyy");
  EXPECT_EQ(en.TimeAMString + en.TimePMString, u"AMPM");
  std::u16string names;
  for (const auto& n : en.LongMonthNames) names += n + u" ";
  for (const auto& n : en.ShortMonthNames) names += n + u" ";
  for (const auto& n : en.LongDayNames) names += n + u" ";
  for (const auto& n : en.ShortDayNames) names += n + u" ";
  EXPECT_EQ(names,
            u"January February March April May June July August September October November "
            u"December Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec Sunday Monday Tuesday "
            u"Wednesday Thursday Friday Saturday Sun Mon Tue Wed Thu Fri Sat ");
}

TEST(PathsStartup, GlobalsHoldTheirStartValuesUntilAssigned) {
  EXPECT_EQ(LinesToRead, 0);
  EXPECT_EQ(sBuildHour, u"00:00");
  EXPECT_EQ(DiskMode, u"Fixed");
  EXPECT_EQ(CPULogical, CpuHard) << "the logical count is the hardware count, unstarted too";
}

}  // namespace
