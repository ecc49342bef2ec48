// Dates and the DOS date-time, the size text under both decimal separators, and the report
// of the byte-wise file comparison.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rtl/dateutils.h"
#include "rtl/formatsettings.h"
#include "rtl/sysutils.h"
#include "tools/fileops.h"

namespace {

using namespace Qm_tools;
using rtl::TDateTime;

TEST(FileOpsDates, CalendarDaysCountFromTheLastDaysOf1899) {
  EXPECT_EQ(rtl::EncodeDate(1899, 12, 30), 0.0);
  EXPECT_EQ(rtl::EncodeDate(1900, 1, 1), 2.0);
  EXPECT_EQ(rtl::EncodeDate(1900, 3, 1), 61.0) << "1900 is no leap year";
  EXPECT_EQ(rtl::EncodeDate(2000, 2, 29), 36585.0);
  EXPECT_EQ(rtl::EncodeDateTime(1899, 12, 29, 6, 0, 0, 0), -1.25);
  for (const TDateTime dt : {-1.25, 0.0, 36585.5, 2958465.999}) {
    int y = 0, m = 0, d = 0, h = 0, mi = 0, s = 0, ms = 0;
    rtl::DecodeDate(dt, y, m, d);
    rtl::DecodeTime(dt, h, mi, s, ms);
    EXPECT_DOUBLE_EQ(rtl::EncodeDateTime(y, m, d, h, mi, s, ms), dt) << dt;
  }
  int h = 0, mi = 0, s = 0, ms = 0, y = 0, m = 0, d = 0;
  // Rounded to the millisecond: the last instant of a day reads as the next midnight.
  const TDateTime late = rtl::EncodeDate(2023, 12, 31) + 0.99999999999;
  rtl::DecodeDate(late, y, m, d);
  rtl::DecodeTime(late, h, mi, s, ms);
  EXPECT_EQ((std::vector<int>{y, m, d, h, mi, s, ms}), (std::vector<int>{2024, 1, 1, 0, 0, 0, 0}));
}

TEST(FileOpsDates, DaysAndTimesThatDoNotExistRaise) {
  EXPECT_THROW(rtl::EncodeDate(2023, 2, 29), rtl::EConvertError);
  EXPECT_THROW(rtl::EncodeDate(2023, 13, 1), rtl::EConvertError);
  EXPECT_THROW(rtl::EncodeDate(0, 1, 1), rtl::EConvertError);
  EXPECT_THROW(rtl::EncodeTime(24, 0, 0, 0), rtl::EConvertError);
  EXPECT_THROW(rtl::EncodeTime(0, 0, 60, 0), rtl::EConvertError);
  EXPECT_NO_THROW(rtl::EncodeDate(2024, 2, 29));
}

TEST(FileOpsDosDate, PacksFieldsAndDropsOddSeconds) {
  const TDateTime dt = rtl::EncodeDateTime(2024, 2, 29, 13, 45, 31, 999);
  const auto dos = static_cast<std::uint32_t>(rtl::DateTimeToFileDate(dt));
  EXPECT_EQ(dos, (44u << 25) | (2u << 21) | (29u << 16) | (13u << 11) | (45u << 5) | 15u);
  // Every second of a minute maps to the even second below it.
  for (int sec = 0; sec < 60; ++sec) {
    const TDateTime t = rtl::EncodeDateTime(1999, 12, 31, 23, 59, sec, 0);
    EXPECT_EQ(rtl::FileDateToDateTime(rtl::DateTimeToFileDate(t)),
              rtl::EncodeDateTime(1999, 12, 31, 23, 59, sec / 2 * 2, 0));
  }
}

TEST(FileOpsDosDate, YearsOutside1980To2107AndBadFieldsAreRefused) {
  EXPECT_EQ(rtl::DateTimeToFileDate(rtl::EncodeDate(1979, 12, 31)), 0);
  EXPECT_EQ(rtl::DateTimeToFileDate(rtl::EncodeDate(2108, 1, 1)), 0);
  const TDateTime last = rtl::EncodeDateTime(2107, 12, 31, 23, 59, 58, 0);
  EXPECT_EQ(rtl::FileDateToDateTime(rtl::DateTimeToFileDate(last)), last) << "uses bit 31";
  EXPECT_EQ(rtl::FileDateToDateTime(rtl::DateTimeToFileDate(rtl::EncodeDate(1980, 1, 1))),
            rtl::EncodeDate(1980, 1, 1));
  EXPECT_THROW(rtl::FileDateToDateTime(0), rtl::EConvertError);
  EXPECT_THROW(rtl::FileDateToDateTime((1 << 21) | (1 << 16) | 30), rtl::EConvertError)
      << "60 seconds";
  EXPECT_THROW(rtl::FileDateToDateTime((4 << 21) | (31 << 16)), rtl::EConvertError);
}

class FileOpsSizeStr : public ::testing::TestWithParam<char16_t> {
 protected:
  void SetUp() override {
    saved_ = rtl::FormatSettings;
    rtl::FormatSettings.DecimalSeparator = GetParam();
    rtl::FormatSettings.ThousandSeparator = GetParam() == u',' ? u'.' : u',';
  }
  void TearDown() override { rtl::FormatSettings = saved_; }
  // The expected text with ',' written for the separator in use.
  static std::u16string Sep(std::u16string s) {
    for (char16_t& c : s)
      if (c == u',') c = GetParam();
    return s;
  }
  rtl::TFormatSettings saved_;
};

TEST_P(FileOpsSizeStr, EachUnitStartsJustAboveThePreviousOne) {
  const std::int64_t KB = 1024, MB = KB * 1024, GB = MB * 1024;
  const struct {
    std::int64_t size;
    const char16_t* text;
  } rows[] = {
      {1023, u"1,00 kb"},      {512, u"0,50 kb"},       {1024, u"1 kb"},
      {1536, u"2 kb"},         {2560, u"2 kb"},         {2561, u"3 kb"},
      {MB - 1, u"1024 kb"},    {MB, u"1024 kb"},        {MB + 1, u"1,00 MB"},
      {MB + MB / 2, u"1,50 MB"}, {GB, u"1024,00 MB"},   {GB + 1, u"1,00 GB"},
      {1000 * GB, u"1000,00 GB"}, {1000 * GB + GB / 100, u"0,98 TB"}, {1024 * GB * 3, u"3,00 TB"},
      {-1, u"-0,00 kb"},       {-2048, u"-2,00 kb"},    {0, u"0,00 kb"},
      {6, u"0,01 kb"},  // 6/1024 rounds up by itself
  };
  for (const auto& row : rows) EXPECT_EQ(GetSizeStr(row.size), Sep(row.text)) << row.size;
}

TEST_P(FileOpsSizeStr, ATinyFileShowsAHundredthOnlyUnderTheComma) {
  const std::u16string tiny = GetParam() == u',' ? u"0,01 kb" : u"0.00 kb";
  EXPECT_EQ(GetSizeStr(1), tiny);
  EXPECT_EQ(GetSizeStr(5), tiny);
}

INSTANTIATE_TEST_SUITE_P(FileOps, FileOpsSizeStr, ::testing::Values(u',', u'.'),
                         [](const auto& info) {
                           return std::string(info.param == u',' ? "Comma" : "Point");
                         });

std::vector<std::uint8_t> Bytes(const std::string& s) { return {s.begin(), s.end()}; }

TEST(FileOpsCompareReport, HeaderAndEqualFilesAndFilesDifferingOnlyInSize) {
  EXPECT_EQ(CompareFilesHeader(12, u"C:\\a\\x.txt", -1, u"y.txt"),
            u"12: Größe von C:\\a\\x.txt\r-1: Größe von y.txt");
  EXPECT_EQ(CompareFilesText(Bytes("abc"), u"a", Bytes("abc"), u"b"), u"\rDateien sind gleich.");
  EXPECT_EQ(CompareFilesText({}, u"a", {}, u"b"), u"\rDateien sind gleich.");
  // The last byte of the shorter file is not compared.
  EXPECT_EQ(CompareFilesText(Bytes("abc"), u"a", Bytes("abX"), u"b"), u"\rDateien sind gleich.");
  EXPECT_EQ(CompareFilesText(Bytes("abc"), u"a", Bytes("abcd"), u"b"), u"");
  EXPECT_EQ(CompareFilesText(Bytes("abX"), u"a", Bytes("abcd"), u"b"), u"");
}

TEST(FileOpsCompareReport, FirstDifferenceWithContextToTheLineEnd) {
  const std::u16string report = CompareFilesText(
      Bytes("line1\nabcXef\r\nzz"), u"C:\\d\\one.txt", Bytes("line1\nabc\xE4" "ef\r\nzz"),
      u"two.txt");
  EXPECT_EQ(report,
            u"\rDateien unterscheiden sich an Position: 10\r\r"
            u"X \" Wert: 88 (one.txt)\r"
            u"ä \" Wert: 228 (two.txt)\r\r"
            u"Xef\r\rä" u"ef\r");
}

TEST(FileOpsCompareReport, ContextStopsAfterTenCharactersOrBeforeTheComparedEnd) {
  const std::u16string longer = CompareFilesText(Bytes("A0123456789012345"), u"a",
                                                 Bytes("B0123456789012345"), u"b");
  EXPECT_TRUE(longer.ends_with(u"\r\rA012345678\rB012345678")) << rtl::Utf16ToUtf8(longer);
  // n = 6: the context reads up to position n-2.
  const std::u16string shortEnd = CompareFilesText(Bytes("xAbcde"), u"a", Bytes("xBbcdf"), u"b");
  EXPECT_TRUE(shortEnd.ends_with(u"\r\rAbc\rBbc")) << rtl::Utf16ToUtf8(shortEnd);
}

}  // namespace
