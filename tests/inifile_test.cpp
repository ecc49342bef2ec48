// INI files through the profile API: round trips, numbers and flags, missing files and keys.
#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <iterator>
#include <string>

#include "rtl/encoding.h"
#include "rtl/inifiles.h"
#include "rtl/ustring.h"

namespace {

using rtl::TIniFile;
using Str = std::u16string;

class IniFileTest : public testing::Test {
 protected:
  void SetUp() override {
    wchar_t folder[MAX_PATH], name[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    GetTempFileNameW(folder, L"ini", 0, name);
    fileName_ = reinterpret_cast<const char16_t*>(name);
  }
  void TearDown() override { DeleteFileW(reinterpret_cast<const wchar_t*>(fileName_.c_str())); }
  void Write(const std::string& bytes) const {
    std::ofstream(reinterpret_cast<const wchar_t*>(fileName_.c_str()), std::ios::binary) << bytes;
  }
  std::string Read() const {
    std::ifstream in(reinterpret_cast<const wchar_t*>(fileName_.c_str()), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  // The file's text, read by its mark as the API reads it.
  Str Text() const {
    const std::string bytes = Read();
    rtl::TStringList lines;
    std::size_t mark = 0;
    rtl::TEncoding* e = rtl::TEncoding::FromPreamble(
        reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), mark);
    if (e == nullptr) e = rtl::TEncoding::ANSI();
    return e->GetString(reinterpret_cast<const std::uint8_t*>(bytes.data()) + mark, bytes.size() - mark);
  }
  Str fileName_;
};

TEST_F(IniFileTest, ValuesComeBackAsWritten) {
  const std::pair<Str, Str> cases[] = {
      {u"C:\\Program Files\\NOX\\", u"C:\\Program Files\\NOX\\"},  // no line continuation
      {u"a=b;c", u"a=b;c"}, {u"Grüße", u"Grüße"}, {u"", u""},
      {u"✓ Ω 中 \U0001F600", u"✓ Ω 中 \U0001F600"},  // a new file holds every character
      {u"  padded  ", u"padded"},  // the API trims
      {u"\"quoted\"", u"quoted"},  // and takes off one pair of quotes
  };
  const auto key = [](size_t i) { return u"Key" + rtl::IntToStr(static_cast<int>(i)); };
  {
    TIniFile ini(fileName_);
    for (size_t i = 0; i < std::size(cases); ++i) ini.WriteString(u"Values", key(i), cases[i].first);
  }
  const TIniFile ini(fileName_);
  for (size_t i = 0; i < std::size(cases); ++i)
    EXPECT_EQ(ini.ReadString(u"Values", key(i), u"-"), cases[i].second) << i;
  EXPECT_EQ(Read().substr(0, 4), std::string("\xFF\xFE[\0", 4)) << "UTF-16 with its mark";
}

// A file that older versions and other programs wrote in the ANSI code page is read as it
// is and stays ANSI for writes it can hold; the first write it cannot hold turns it into
// UTF-16 once, with everything it held.
TEST_F(IniFileTest, AnAnsiFileStaysAnsiUntilAWriteItCannotHold) {
  Write("; Notiz\r\n[Optionen]\r\nName=Gr\xFC\xDF\x65\r\n[Sek?]\r\nk=alt\r\n");
  {
    TIniFile ini(fileName_);
    EXPECT_EQ(ini.ReadString(u"Optionen", u"Name", u"-"), u"Grüße");
    EXPECT_EQ(ini.ReadString(u"Sek中", u"k", u"-"), u"-") << "not the section [Sek?]";
    EXPECT_FALSE(ini.SectionExists(u"Sek中"));
    ini.EraseSection(u"Sek中");
    ini.DeleteKey(u"Sek中", u"k");
    ini.WriteString(u"Optionen", u"Ort", u"Köln €");
  }
  EXPECT_EQ(Read(), "; Notiz\r\n[Optionen]\r\nName=Gr\xFC\xDF\x65\r\nOrt=K\xF6ln \x80\r\n"
                    "[Sek?]\r\nk=alt\r\n");
  TIniFile ini(fileName_);
  ini.WriteString(u"Sek中", u"k", u"neu Ω");
  EXPECT_EQ(Text(), u"; Notiz\r\n[Optionen]\r\nName=Grüße\r\nOrt=Köln €\r\n[Sek?]\r\nk=alt\r\n"
                    u"[Sek中]\r\nk=neu Ω\r\n");
  EXPECT_EQ(Read().substr(0, 2), "\xFF\xFE");
  EXPECT_EQ(ini.ReadString(u"Sek?", u"k", u"-"), u"alt");
  EXPECT_EQ(ini.ReadString(u"Sek中", u"k", u"-"), u"neu Ω");
  ini.EraseSection(u"Sek中");
  EXPECT_EQ(ini.ReadString(u"Sek?", u"k", u"-"), u"alt");

  // A UTF-8 mark, which not every version of the API honours, goes at the first write.
  Write("\xEF\xBB\xBF[S]\r\nk=\xC3\xBC\r\n");
  TIniFile(fileName_).WriteString(u"S", u"j", u"x");
  EXPECT_EQ(Read().substr(0, 2), "\xFF\xFE");
  EXPECT_EQ(TIniFile(fileName_).ReadString(u"S", u"k", u"-"), u"ü");
}

TEST_F(IniFileTest, NumbersAndFlagsReadLikeTheFrameworksConversion) {
  struct Case { Str text; int integer; bool flag; };  // with fallbacks 99 and true
  const Case cases[] = {{u"0", 0, false}, {u" 12 ", 12, true}, {u"-$10", -16, true},
                        {u"abc", 99, true}, {u"", 99, true}};
  TIniFile ini(fileName_);
  for (const Case& c : cases) {
    ini.WriteString(u"N", u"v", c.text);
    EXPECT_EQ(ini.ReadInteger(u"N", u"v", 99), c.integer) << rtl::Utf16ToUtf8(c.text);
    EXPECT_EQ(ini.ReadBool(u"N", u"v", true), c.flag) << rtl::Utf16ToUtf8(c.text);
  }
  ini.WriteInteger(u"N", u"i", -123);
  ini.WriteBool(u"N", u"b", false);
  EXPECT_EQ(ini.ReadString(u"N", u"i", u""), u"-123");
  EXPECT_EQ(ini.ReadString(u"N", u"b", u""), u"0");
}

TEST_F(IniFileTest, AMissingFileGivesTheDefaultsAndARefusedWriteRaises) {
  DeleteFileW(reinterpret_cast<const wchar_t*>(fileName_.c_str()));
  TIniFile ini(fileName_);
  EXPECT_EQ(ini.ReadString(u"PlugInSettings", u"Programlocation", u"C:\\NOX"), u"C:\\NOX");
  EXPECT_FALSE(ini.SectionExists(u"S"));
  EXPECT_FALSE(ini.ValueExists(u"S", u"i"));
  rtl::TStringList sections;
  sections.Add(u"stale");
  ini.ReadSections(sections);
  EXPECT_EQ(sections.Count(), 0);
  ini.DeleteKey(u"S", u"i");
  EXPECT_EQ(GetFileAttributesW(reinterpret_cast<const wchar_t*>(fileName_.c_str())),
            INVALID_FILE_ATTRIBUTES)
      << "reading and deleting create no file";
  EXPECT_THROW(TIniFile(u"Z:\\no\\such\\folder\\nox.ini").WriteString(u"S", u"k", u"v"),
               rtl::EIniFileException);
}

TEST_F(IniFileTest, SectionsAndKeysAreListedInFileOrderAndRemovable) {
  TIniFile ini(fileName_);
  ini.WriteString(u"Second", u"b", u"2");
  ini.WriteString(u"First", u"z", u"1");
  ini.WriteString(u"First", u"a", u"1");
  ini.WriteString(u"Empty", u"gone", u"x");
  ini.DeleteKey(u"Empty", u"gone");
  rtl::TStringList list;
  ini.ReadSections(list);
  EXPECT_EQ(list.CommaText(), u"Second,First,Empty");
  ini.ReadSection(u"first", list);  // names ignore case
  EXPECT_EQ(list.CommaText(), u"z,a");
  EXPECT_TRUE(ini.ValueExists(u"FIRST", u"A"));
  EXPECT_FALSE(ini.SectionExists(u"Empty")) << "a section without keys";

  ini.EraseSection(u"First");
  EXPECT_FALSE(ini.SectionExists(u"First"));
  EXPECT_EQ(ini.ReadString(u"First", u"z", u"-"), u"-");
  EXPECT_TRUE(ini.SectionExists(u"Second"));
}

}  // namespace
