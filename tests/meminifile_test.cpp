// The in-memory INI file: read as the profile API would, written back in its own encoding.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "rtl/meminifile.h"
#include "rtl/ustring.h"

namespace {

using rtl::TMemIniFile;

class IniFileMem : public ::testing::Test {
 protected:
  void SetUp() override { std::remove(path_.c_str()); }
  void TearDown() override { std::remove(path_.c_str()); }
  std::u16string Name() const { return rtl::Utf8ToUtf16(path_); }
  void Write(const std::string& bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }
  std::string Read() const {
    std::ifstream in(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  const std::string path_ = ::testing::TempDir() + "meminifile_" +
                            ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".ini";
};

TEST_F(IniFileMem, ReadsAFileAsTheProfileApiDoes) {
  Write("top=ignored\r\n; comment\r\n  [ Main ]  \r\nName = Wert mit Blanks \r\nzahl=$1F\r\n"
        "bare line\r\n\r\n[other]\nx=1\n[MAIN]\nlater=2\n");
  const TMemIniFile ini(Name());
  EXPECT_EQ(ini.ReadString(u"main", u"NAME", u"-"), u"Wert mit Blanks");
  EXPECT_EQ(ini.ReadInteger(u"Main", u"zahl", 0), 31);
  EXPECT_EQ(ini.ReadString(u"main", u"later", u"-"), u"2") << "a repeated section adds to the first";
  EXPECT_EQ(ini.ReadString(u"main", u"top", u"-"), u"-");
  EXPECT_TRUE(ini.ReadBool(u"other", u"x", false));
  rtl::TStringList list;
  ini.ReadSections(list);
  EXPECT_EQ(list.CommaText(), u"Main,other");
  ini.ReadSection(u"main", list);
  EXPECT_EQ(list.CommaText(), u"Name,zahl,later") << "a bare line is no key";
  EXPECT_FALSE(ini.ValueExists(u"main", u"bare line"));
}

TEST_F(IniFileMem, ChangesReachTheFileOnlyWithUpdateFile) {
  {
    TMemIniFile ini(Name());
    ini.WriteString(u"S", u"a", u"1");
    ini.WriteString(u"S", u"b", u"");
    ini.WriteString(u"s", u"A", u"2");
    ini.WriteBool(u"T", u"on", true);
    ini.WriteInteger(u"T", u"n", -5);
    EXPECT_EQ(Read(), "");
    ini.UpdateFile();
  }
  // The key takes the spelling of the last write.
  EXPECT_EQ(Read(), "[S]\r\nA=2\r\nb=\r\n\r\n[T]\r\non=1\r\nn=-5\r\n\r\n");
  TMemIniFile again(Name());
  EXPECT_TRUE(again.ValueExists(u"S", u"b")) << "an empty value is still a key";
  again.DeleteKey(u"S", u"a");
  again.EraseSection(u"t");
  again.UpdateFile();
  EXPECT_EQ(Read(), "[S]\r\nb=\r\n\r\n");
  // The same lines into a list that is shown: its old content goes, one change is told.
  rtl::TStringList shown;
  shown.Add(u"stale");
  int changes = 0;
  shown.OnChange = [&](rtl::TObject*) { ++changes; };
  again.GetStrings(shown);
  EXPECT_EQ(shown.Text(), u"[S]\r\nb=\r\n\r\n");
  EXPECT_EQ(changes, 1);
}

TEST_F(IniFileMem, KeepsTheEncodingAndMarkItWasReadIn) {
  Write("\xEF\xBB\xBF[S]\r\nk=Gr\xC3\xBC\xC3\x9F\x65\r\n");
  {
    TMemIniFile ini(Name());
    EXPECT_EQ(ini.ReadString(u"S", u"k", u""), u"Grüße");
    ini.WriteString(u"S", u"k", u"€");
    ini.UpdateFile();
  }
  EXPECT_EQ(Read(), "\xEF\xBB\xBF[S]\r\nk=\xE2\x82\xAC\r\n\r\n");
  Write("[S]\r\nk=Gr\xFC\xDF\x65\r\n");  // no mark: the ANSI code page
  TMemIniFile ansi(Name());
  EXPECT_EQ(ansi.ReadString(u"S", u"k", u""), u"Grüße");
  ansi.UpdateFile();
  EXPECT_EQ(Read(), "[S]\r\nk=Gr\xFC\xDF\x65\r\n\r\n");
}

TEST(IniFileMemNumbers, ReadLikeTheFrameworksConversion) {
  struct Case { std::u16string text; int want; };
  for (const auto& c : std::vector<Case>{{u" 42 ", 42}, {u"-0x10", -16}, {u"$FFFFFFFF", -1},
                                         {u"$ff", 255}, {u"0XA0", 160}, {u"$9aF", 2479},
                                         {u"$123456789", 7}, {u"$1G", 7}, {u"0x", 7}, {u"4 2", 7},
                                         {u"", 7}, {u"true", 7}})
    EXPECT_EQ(rtl::IniStrToInt(c.text, 7), c.want) << rtl::Utf16ToUtf8(c.text);
}

}  // namespace
