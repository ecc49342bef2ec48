// Dates and the DOS date-time, the size text under both decimal separators, and the report
// of the byte-wise file comparison.
#include <gtest/gtest.h>

#include <ctime>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "rtl/dateutils.h"
#include "rtl/formatsettings.h"
#include "rtl/sysutils.h"
#include "tools/fileops.h"

namespace {

using namespace Qm_tools;
using rtl::TDateTime;

std::vector<int> Decoded(TDateTime dt) {
  int y = 0, m = 0, d = 0, h = 0, mi = 0, s = 0, ms = 0;
  rtl::DecodeDate(dt, y, m, d);
  rtl::DecodeTime(dt, h, mi, s, ms);
  return {y, m, d, h, mi, s, ms};
}

TEST(FileOpsDates, CalendarDaysCountFromTheLastDaysOf1899BothWays) {
  const struct { std::vector<int> fields; TDateTime value; } cases[] = {
      {{1899, 12, 30, 0, 0, 0, 0}, 0.0}, {{1900, 1, 1, 0, 0, 0, 0}, 2.0},
      {{1900, 3, 1, 0, 0, 0, 0}, 61.0},  // 1900 is no leap year
      {{2000, 2, 29, 12, 0, 0, 0}, 36585.5}, {{1899, 12, 29, 6, 0, 0, 0}, -1.25},
      {{9999, 12, 31, 23, 58, 33, 600}, 2958465.999},
      {{2024, 3, 1, 0, 0, 0, 0}, 45352.0}, {{2100, 3, 1, 0, 0, 0, 0}, 73110.0},
      {{1, 1, 1, 0, 0, 0, 0}, -693593.0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.value);
    const auto& f = c.fields;
    EXPECT_DOUBLE_EQ(rtl::EncodeDateTime(f[0], f[1], f[2], f[3], f[4], f[5], f[6]), c.value);
    EXPECT_EQ(Decoded(c.value), f);
  }
  // Rounded to the millisecond: the last instant of a day reads as the next midnight.
  EXPECT_EQ(Decoded(rtl::EncodeDate(2023, 12, 31) + 0.99999999999),
            (std::vector<int>{2024, 1, 1, 0, 0, 0, 0}));
  // Before year 1 the days go on in the same calendar, where year 0 is a leap year.
  EXPECT_EQ(Decoded(-693900.0), (std::vector<int>{0, 2, 29, 0, 0, 0, 0}));
  for (const auto& [y, m, d] : {std::tuple{2023, 2, 29}, {2023, 11, 31}, {2023, 13, 1}, {0, 1, 1}})
    EXPECT_THROW(rtl::EncodeDate(y, m, d), rtl::EConvertError) << y << "-" << m << "-" << d;
  for (const auto& [h, m, s] : {std::tuple{24, 0, 0}, {0, 0, 60}, {0, 60, 0}, {0, -1, 0}})
    EXPECT_THROW(rtl::EncodeTime(h, m, s, 0), rtl::EConvertError) << h << ":" << m << ":" << s;

  // Now is the local time to the minute (read again when a minute turns meanwhile).
  for (;;) {
    const std::time_t before = std::time(nullptr);
    const std::vector<int> now = Decoded(rtl::Now());
    const std::tm local = *std::localtime(&before);
    if (std::time(nullptr) / 60 != before / 60) continue;
    EXPECT_EQ(std::vector<int>(now.begin(), now.begin() + 5),
              (std::vector<int>{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                                local.tm_hour, local.tm_min}));
    break;
  }
}

TEST(FileOpsDosDate, PacksFieldsDropsOddSecondsAndRefusesWhatItCannotHold) {
  const TDateTime dt = rtl::EncodeDateTime(2024, 2, 29, 13, 45, 31, 999);
  const auto dos = static_cast<std::uint32_t>(rtl::DateTimeToFileDate(dt));
  EXPECT_EQ(dos, (44u << 25) | (2u << 21) | (29u << 16) | (13u << 11) | (45u << 5) | 15u);
  for (int sec = 0; sec < 60; ++sec) {
    const TDateTime t = rtl::EncodeDateTime(1999, 12, 31, 23, 59, sec, 0);
    EXPECT_EQ(rtl::FileDateToDateTime(rtl::DateTimeToFileDate(t)),
              rtl::EncodeDateTime(1999, 12, 31, 23, 59, sec / 2 * 2, 0));
  }
  // Years outside 1980 to 2107 and impossible fields are refused.
  EXPECT_EQ(rtl::DateTimeToFileDate(rtl::EncodeDate(1979, 12, 31)), 0);
  EXPECT_EQ(rtl::DateTimeToFileDate(rtl::EncodeDate(2108, 1, 1)), 0);
  for (const TDateTime kept : {rtl::EncodeDateTime(2107, 12, 31, 23, 59, 58, 0),  // bit 31
                               rtl::EncodeDate(1980, 1, 1)})
    EXPECT_EQ(rtl::FileDateToDateTime(rtl::DateTimeToFileDate(kept)), kept);
  EXPECT_THROW(rtl::FileDateToDateTime(0), rtl::EConvertError);
  EXPECT_THROW(rtl::FileDateToDateTime((1 << 21) | (1 << 16) | 30), rtl::EConvertError)
      << "60 seconds";
  EXPECT_THROW(rtl::FileDateToDateTime((4 << 21) | (31 << 16)), rtl::EConvertError);
}

TEST(FileOpsSizeStr, EachUnitStartsJustAboveThePreviousOneUnderBothSeparators) {
  const std::int64_t KB = 1024, MB = KB * 1024, GB = MB * 1024;
  // ',' stands for the separator in use.
  const struct { std::int64_t size; const char16_t* text; } rows[] = {
      {1023, u"1,00 kb"}, {512, u"0,50 kb"}, {1024, u"1 kb"},
      {1536, u"2 kb"}, {2560, u"2 kb"}, {2561, u"3 kb"},
      {MB - 1, u"1024 kb"}, {MB, u"1024 kb"}, {MB + 1, u"1,00 MB"},
      {MB + MB / 2, u"1,50 MB"}, {GB, u"1024,00 MB"}, {GB + 1, u"1,00 GB"},
      {1000 * GB, u"1000,00 GB"}, {1000 * GB + GB / 100, u"0,98 TB"}, {1024 * GB * 10, u"10,00 TB"},
      {-1, u"-0,00 kb"}, {-2048, u"-2,00 kb"}, {0, u"0,00 kb"},
      {6, u"0,01 kb"},  // 6/1024 rounds up by itself
  };
  const rtl::TFormatSettings saved = rtl::FormatSettings;
  for (const char16_t sep : {u',', u'.'}) {
    rtl::FormatSettings.DecimalSeparator = sep;
    rtl::FormatSettings.ThousandSeparator = sep == u',' ? u'.' : u',';
    for (const auto& row : rows) {
      std::u16string want = row.text;
      std::replace(want.begin(), want.end(), u',', sep);
      EXPECT_EQ(GetSizeStr(row.size), want) << row.size << " " << char(sep);
    }
    // A tiny file shows a hundredth only under the comma.
    for (const std::int64_t tiny : {1, 5})
      EXPECT_EQ(GetSizeStr(tiny), sep == u',' ? u"0,01 kb" : u"0.00 kb") << tiny;
  }
  rtl::FormatSettings = saved;
}

TEST(FileOpsCompareReport, EqualityOrTheFirstDifferenceWithItsContext) {
  EXPECT_EQ(CompareFilesHeader(12, u"C:\\a\\x.txt", -1, u"y.txt"),
            u"12: Größe von C:\\a\\x.txt\r-1: Größe von y.txt");
  const std::u16string same = u"\rDateien sind gleich.";
  const std::u16string at = u"\rDateien unterscheiden sich an Position: ";
  const struct { std::string one, two; std::u16string report; } cases[] = {
      {"abc", "abc", same}, {"", "", same}, {"abc", "abcd", u""}, {"abX", "abcd", u""},
      {"abc", "abX", same},  // the last byte of the shorter file is not compared
      // Context to the line end, ten characters at most, or to position n-2.
      {"line1\nabcXef\r\nzz", "line1\nabc\xE4" "ef\r\nzz",
       at + u"10\r\rX \" Wert: 88 (one.txt)\rä \" Wert: 228 (two.txt)\r\rXef\r\rä" u"ef\r"},
      {"A0123456789012345", "B0123456789012345",
       at + u"1\r\rA \" Wert: 65 (one.txt)\rB \" Wert: 66 (two.txt)\r\rA012345678\rB012345678"},
      {"xAbcde", "xBbcdf",
       at + u"2\r\rA \" Wert: 65 (one.txt)\rB \" Wert: 66 (two.txt)\r\rAbc\rBbc"},
      {"xAbcdefgh", "xBb\rdefgh",  // a line end in either file ends the context
       at + u"2\r\rA \" Wert: 65 (one.txt)\rB \" Wert: 66 (two.txt)\r\rAbc\rBb\r"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.one + " / " + c.two);
    EXPECT_EQ(CompareFilesText({c.one.begin(), c.one.end()}, u"C:\\d\\one.txt",
                               {c.two.begin(), c.two.end()}, u"two.txt"),
              c.report);
  }
}

}  // namespace
