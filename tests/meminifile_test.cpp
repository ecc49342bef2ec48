// The in-memory INI file: read as the profile API would, written back in its own encoding.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "rtl/encoding.h"
#include "rtl/inifiles.h"
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
  // The bytes of ASCII text in UTF-16LE with its mark.
  static std::string Utf16File(const std::string& ascii) {
    std::string bytes = "\xFF\xFE";
    for (char c : ascii) bytes += std::string{c, '\0'};
    return bytes;
  }
  const std::string path_ = ::testing::TempDir() + "meminifile_" +
                            ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".ini";
};

TEST_F(IniFileMem, ReadsAFileAsTheProfileApiDoes) {
  Write("top=ignored\r\n; comment\r\n  [ Main ]  \r\nName = Wert mit Blanks \r\nzahl=$1F\r\n"
        "bare line\r\n\r\n[other]\nx=1\n[MAIN]\nlater=2\n[]\ne=1\n");
  const TMemIniFile ini(Name());
  EXPECT_EQ(ini.ReadString(u"main", u"NAME", u"-"), u"Wert mit Blanks");
  EXPECT_EQ(ini.ReadInteger(u"Main", u"zahl", 0), 31);
  EXPECT_EQ(ini.ReadString(u"main", u"later", u"-"), u"2") << "a repeated section adds to the first";
  EXPECT_EQ(ini.ReadString(u"main", u"top", u"-"), u"-");
  EXPECT_TRUE(ini.ReadBool(u"other", u"x", false));
  rtl::TStringList list;
  ini.ReadSections(list);
  EXPECT_EQ(list.CommaText(), u"Main,other,");
  EXPECT_EQ(ini.ReadString(u"", u"e", u"-"), u"1");
  EXPECT_TRUE(ini.SectionExists(u"OTHER")) << "one key is enough";
  EXPECT_FALSE(ini.SectionExists(u"missing"));
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
  // The key takes the spelling of the last write; a new file is UTF-16 with its mark.
  EXPECT_EQ(Read(), Utf16File("[S]\r\nA=2\r\nb=\r\n\r\n[T]\r\non=1\r\nn=-5\r\n\r\n"));
  TMemIniFile again(Name());
  EXPECT_TRUE(again.ValueExists(u"S", u"b")) << "an empty value is still a key";
  again.DeleteKey(u"S", u"a");
  again.EraseSection(u"t");
  again.UpdateFile();
  EXPECT_EQ(Read(), Utf16File("[S]\r\nb=\r\n\r\n"));
  // The same lines into a list that is shown: its old content goes, one change is told.
  rtl::TStringList shown;
  shown.Add(u"stale");
  int changes = 0;
  shown.OnChange = [&](rtl::TObject*) { ++changes; };
  again.GetStrings(shown);
  EXPECT_EQ(shown.Text(), u"[S]\r\nb=\r\n\r\n");
  EXPECT_EQ(changes, 1);
}

// Written back in the encoding it was read in, as long as that holds every character; an
// ANSI file that cannot becomes UTF-16 once, with all it held.
TEST_F(IniFileMem, KeepsTheEncodingItWasReadInUnlessThatLosesACharacter) {
  const struct { std::string file; std::u16string read, write; std::string written; } cases[] = {
      {"\xEF\xBB\xBF[S]\r\nk=Gr\xC3\xBC\xC3\x9F\x65\r\n", u"Grüße", u"€",
       "\xEF\xBB\xBF[S]\r\nk=\xE2\x82\xAC\r\n\r\n"},
      {"[S]\r\nk=Gr\xFC\xDF\x65\r\n", u"Grüße", u"Grüße €", "[S]\r\nk=Gr\xFC\xDF\x65 \x80\r\n\r\n"},
      {"[S]\r\nk=Gr\xFC\xDF\x65\r\n", u"Grüße", u"\u03A9", Utf16File("[S]\r\nk=") + "\xA9\x03" +
       Utf16File("\r\n\r\n").substr(2)},
      // UTF-8 without a mark is UTF-8, not ANSI, and stays so.
      {"[S]\r\nk=\xC5\x81ukasz\r\n", u"Łukasz", u"\u4E2D", "[S]\r\nk=\xE4\xB8\xAD\r\n\r\n"},
      {"[S]\r\nk=\xC0\x80\r\n", u"À€", u"x", "[S]\r\nk=x\r\n\r\n"},  // overlong: ANSI
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.file);
    Write(c.file);
    {
      // The encoding the file has, given by the caller, keeps its mark too.
      TMemIniFile given(Name(), c.file.starts_with("\xEF") ? rtl::TEncoding::UTF8() : nullptr);
      given.UpdateFile();
      EXPECT_EQ(Read().substr(0, 3), c.file.substr(0, 3));
      TMemIniFile ini(Name());
      EXPECT_EQ(ini.ReadString(u"S", u"k", u""), c.read);
      ini.WriteString(u"S", u"k", c.write);
      ini.UpdateFile();
    }
    EXPECT_EQ(Read(), c.written);
    EXPECT_EQ(TMemIniFile(Name()).ReadString(u"S", u"k", u""), c.write);
  }
}

TEST(IniFileMemNumbers, ReadLikeTheFrameworksConversion) {
  const std::pair<std::u16string, int> cases[] = {
      {u" 42 ", 42}, {u"-0x10", -16}, {u"$FFFFFFFF", -1}, {u"$ff", 255}, {u"0XA0", 160},
      {u"$9aF", 2479}, {u"$123456789", 7}, {u"$1G", 7}, {u"0x", 7}, {u"4 2", 7}, {u"", 7},
      {u"true", 7}};
  for (const auto& [text, want] : cases)
    EXPECT_EQ(rtl::IniStrToInt(text, 7), want) << rtl::Utf16ToUtf8(text);
}

}  // namespace

// What decides a file's handling, its mark; and its conversion to UTF-16, which keeps every
// line.
TEST(IniFileMemText, KindsAndTheConversionToUtf16) {
  const auto kind = [](const std::string& b) {
    return rtl::IniFileKindOf(reinterpret_cast<const std::uint8_t*>(b.data()), b.size());
  };
  using enum rtl::TIniFileKind;
  EXPECT_EQ(kind("\xFF\xFE["), Utf16LE);
  EXPECT_EQ(std::pair(kind("\xFE\xFF"), kind("\xEF\xBB\xBF[")), std::pair(OtherMark, OtherMark));
  EXPECT_EQ(std::pair(kind("\xEF\xBB"), kind("")), std::pair(Ansi, Ansi));

  const std::string ansi = "; Kommentar\r\n[Optionen]\r\nName=Gr\xFC\xDF\x65\r\n\r\n";
  const std::vector<std::uint8_t> converted = rtl::IniFileAsUtf16({ansi.begin(), ansi.end()});
  const std::u16string text = u"\uFEFF; Kommentar\r\n[Optionen]\r\nName=Grüße\r\n\r\n";
  ASSERT_EQ(converted.size(), text.size() * 2);
  for (size_t i = 0; i < text.size(); ++i)
    EXPECT_EQ(converted[2 * i] | converted[2 * i + 1] << 8, text[i]) << i;
  const std::string marked = "\xEF\xBB\xBFk=\xE2\x82\xAC";
  const std::vector<std::uint8_t> fromUtf8 = rtl::IniFileAsUtf16({marked.begin(), marked.end()});
  EXPECT_EQ(fromUtf8, (std::vector<std::uint8_t>{0xFF, 0xFE, 'k', 0, '=', 0, 0xAC, 0x20}));
}
