// The system-information rules (tools/sysinfo.h, rtl/osversion.h): every version the names
// and version texts know, the Windows 11 rule with its two deciding builds, and the
// stopwatch's text.
#include "tools/sysinfo.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "rtl/ustring.h"

using namespace Qm_tools;
using rtl::TArchitecture;
using rtl::TOSVersion;
using std::u16string;

namespace {

const TOSVersion kWin10 = TOSVersion::Of(10, 0, 19045, TArchitecture::arIntelX64);
const TOSVersion kWin11 = TOSVersion::Of(10, 0, 22631, TArchitecture::arIntelX64);

TVersionQuery Query(std::uint32_t platform, std::uint32_t major, std::uint32_t minor,
                    std::uint32_t build = 0, u16string servicePack = u"") {
  return {major, minor, build, platform, servicePack};
}

TEST(SysInfoRuntimeRecord, NamesEachVersionAndDescribesItInOneLine) {
  const std::tuple<int, int, const char16_t*> names[] = {
      {5, 0, u"Windows 2000"}, {5, 1, u"Windows XP"}, {5, 2, u"Windows Server 2003"},
      {6, 0, u"Windows Vista"}, {6, 1, u"Windows 7"}, {6, 2, u"Windows 8"},
      {6, 3, u"Windows 8.1"}, {10, 0, u"Windows 10"}, {6, 4, u"Windows"}};
  for (const auto& [major, minor, name] : names)
    EXPECT_EQ(rtl::OSVersionName(major, minor), name) << major << "." << minor;
  EXPECT_EQ(kWin11.Name, u"Windows 10") << "the framework knows no Windows 11";
  EXPECT_EQ(kWin10.ToString(), u"Windows 10 (Version 10.0, Build 19045, 64-bit Edition)");
  EXPECT_EQ(TOSVersion::Of(6, 1, 7601, rtl::ArchitectureOf(0)).ToString(),
            u"Windows 7 (Version 6.1, Build 7601, 32-bit Edition)");
  EXPECT_EQ(TOSVersion::Of(10, 0, 1, rtl::ArchitectureOf(12)).ToString(),
            u"Windows 10 (Version 10.0, Build 1, ARM 64-bit Edition)");
}

TEST(SysInfoOSName, EveryVersionInBothSpellingsWithBuildAndServicePack) {
  const TOSVersion first11 = TOSVersion::Of(10, 0, 22000, TArchitecture::arIntelX64);
  const TOSVersion last10 = TOSVersion::Of(10, 0, 21999, TArchitecture::arIntelX64);
  const TVersionQuery xp = Query(2, 5, 1, 2600, u"Service Pack 3");
  struct Case { TVersionQuery query; TOSVersion os; const char16_t *name, *nameEx;
                bool build = false, servicePack = false, ok = true; } cases[] = {
      {Query(1, 4, 0), kWin11, u"Windows 95", u"Windows 95"},
      {Query(1, 4, 10, 2222, u" A "), kWin11, u"Windows 98SE", u"Windows 98SE", true, true},
      {Query(1, 4, 10, 1998, u"A"), kWin11, u"Windows 98", u"Windows 98"},
      {Query(1, 4, 10, 1998, u" B"), kWin11, u"Windows 98", u"Windows 98"},
      {Query(1, 4, 90), kWin11, u"Windows ME", u"Windows ME"},
      {Query(1, 4, 3), kWin11, u"Unknown", u"Unknown"},
      {Query(1, 5, 0), kWin11, u"Unknown", u"Unknown"},
      {Query(2, 4, 0), kWin11, u"Windows NT", u"Windows NT"},
      {Query(2, 5, 0), kWin11, u"Windows 2000", u"Windows 2000"},
      {Query(2, 5, 2), kWin11, u"Windows XP", u"Windows XP"},
      {Query(2, 6, 0), kWin11, u"Windows Vista", u"Windows Vista"},
      {Query(2, 6, 1), kWin11, u"Windows Seven", u"Windows 7"},
      {Query(2, 6, 2, 9200), kWin11, u"Windows Eight", u"Windows 8"},
      {Query(2, 6, 3), kWin11, u"Windows Eight", u"Windows 8.1"},
      {Query(2, 6, 4, 9841), kWin10, u"Unknown", u"Unknown:6.4, Build 9841", true},
      {Query(3, 10, 0, 1), kWin11, u"Unknown", u"Unknown", true, true},
      {xp, kWin10, u"Windows XP", u"Windows XP, Build 2600", true},
      {xp, kWin10, u"Windows XP", u"Windows XP Service Pack 3", false, true},
      {xp, kWin10, u"Windows XP", u"Windows XP, Build 2600 Service Pack 3", true, true},
      // Windows 11 is decided by the run-time record's build, whose build is not appended.
      {Query(2, 10, 0, 19045), kWin10, u"Windows Ten", u"Windows 10"},
      {Query(2, 10, 0, 19045), kWin11, u"Windows 11", u"Windows 11, Build 19045 ", true, true},
      {Query(2, 10, 0, 19045), first11, u"Windows 11", u"Windows 11"},
      {Query(2, 10, 0, 22631), last10, u"Windows Ten", u"Windows 10"},
      {Query(2, 10, 0, 19045, u"Service Pack 1"), kWin11, u"Unknown", u"Unknown", true, true,
       false},
  };
  for (const Case& c : cases) {
    const TVersionQuery& q = c.query;
    SCOPED_TRACE(testing::Message() << "platform " << q.PlatformId << ", " << q.MajorVersion
                                    << "." << q.MinorVersion << ", build " << c.os.Build);
    EXPECT_EQ(OSNameOf(q, c.ok, c.os), c.name);
    EXPECT_EQ(OSNameExOf(q, c.ok, c.os, c.build, c.servicePack), c.nameEx);
  }
  EXPECT_EQ(WindowsVersionOf(Query(2, 10, 0, 19045), false), u"GetVersionEx() Error");
}

TEST(SysInfoOSNameEx2, ShortAndLongFormsFromTheRuntimeRecord) {
  EXPECT_EQ(OSNameEx2Of(kWin10, false), u"WIN 10.0");
  EXPECT_EQ(OSNameEx2Of(kWin10, true), u"Windows 10  Build 19045");
  EXPECT_EQ(OSNameEx2Of(TOSVersion::Of(6, 1, 7601, TArchitecture::arIntelX86), true),
            u"Windows 7  Build 7601");
  EXPECT_EQ(OSNameEx2Of(kWin11, true), u"Windows 11 (Version 10.0, Build 22631, 64-bit Edition)");
}

TEST(SysInfoWindowsVersion, EveryRowWithTheLowWordOfTheBuildAndTheSecondNinetyFive) {
  struct Case { TVersionQuery query; const char16_t* text; bool osr2 = false; } cases[] = {
      {Query(1, 4, 10, 0x040A08AE), u"Windows 98 - Version 4.10.2222"},
      {Query(1, 4, 90, 0x045A0BB8), u"Windows 98 - Version 4.90.3000"},
      {Query(1, 4, 3, 0x04030001), u"Windows 98 - Version 4.03.1"},
      {Query(1, 4, 0, 0x04000457), u"Windows 95 - Version 4.0 Build 1111", true},
      {Query(1, 4, 0, 0x040003E8), u"Windows 95 - Version 4.0 Build 1000"},
      {Query(1, 3, 10, 0), u"Windows 95 - Version 3.10 Build 0"},
      {Query(2, 4, 0, 1381), u"Windows NT Version 4.0. Build 1381"},
      {Query(2, 5, 0, 2195), u"Windows Version 5.0 Build 2195"},
      {Query(2, 5, 1, 2600), u"Windows XP Version 5.1 Build 2600"},
      {Query(2, 5, 2, 3790), u"Windows XP Server 5.2 Build 3790"},
      {Query(2, 6, 0, 6002), u"Windows Vista Version 6.0 Build 6002"},
      {Query(2, 6, 1, 7601), u"Windows 7 Version 6.1 Build 7601"},
      {Query(2, 6, 2, 9200), u"Windows 8 Version 6.2 Build 9200"},
      {Query(2, 6, 3, 9600), u"Windows 8.1 Version 6.3 Build 9600"},
      {Query(2, 10, 0, 19045), u"Windows 10 Version 10.0 Build 19045"},
      {Query(2, 10, 0, 22000), u"Windows 11 Version 10.0 Build 22000"},
      {Query(2, 6, 4, 9841), u"Windows Version 6.4 Build 9841"},
      {Query(0, 4, 10, 0x10001), u"Windows Version 4.10 Build 1"},
      {Query(3, 10, 0, 22631), u"Windows Version 10.0 Build 22631"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(rtl::Utf16ToUtf8(c.text));
    EXPECT_EQ(WindowsVersionOf(c.query, true), c.text);
    EXPECT_EQ(IsWin95OSR2Of(c.query), c.osr2);
  }
}

TEST(SysInfoTimer, TwoDecimalsOfMillisecondsWithTheGivenSeparator) {
  EXPECT_EQ(TimerTextOf(0, 1234567, 1000000, u','), u"1234,57 ms");
  EXPECT_EQ(TimerTextOf(0, 15120, 1000000, u'.'), u"15.12 ms");
  EXPECT_EQ(TimerTextOf(500, 1500, 10000000, u'.'), u"0.10 ms");
  // Rounded at the second decimal: 1/3 ms, 2/3 ms, and a half goes up.
  EXPECT_EQ(TimerTextOf(0, 1, 3000, u','), u"0,33 ms");
  EXPECT_EQ(TimerTextOf(0, 2, 3000, u','), u"0,67 ms");
  EXPECT_EQ(TimerTextOf(0, 1, 8000, u','), u"0,13 ms") << "0.125";
  EXPECT_EQ(TimerTextOf(0, 99999, 10000000, u','), u"10,00 ms") << "9.9999 carries";
  EXPECT_EQ(TimerTextOf(0, 3600LL * 10000000, 10000000, u','), u"3600000,00 ms");
  EXPECT_EQ(TimerTextOf(0, 12345, 0, u','), u"0,00 ms") << "never started";
  EXPECT_EQ(TimerTextOf(10, 0, 1000, u','), u"-10,00 ms");
}

}  // namespace
