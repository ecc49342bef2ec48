// The unit's shared state and its project text helpers.
#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <string>
#include <variant>

#include "data/NOXEData.h"
#include "data/startup.h"

namespace {

using namespace NOXEData;
using Str = std::u16string;

std::string Narrow(std::u16string_view s) { return std::string(s.begin(), s.end()); }

// What the shared code finds in every global before any code of the unit has run. Texts
// and lists not named here start empty and without a list (the lists come with the unit's
// start-up; slPosInfo with the companion's code).
TEST(SharedDataGlobals, StartValues) {
  using Value = std::variant<bool, std::int64_t, Str>;
  const auto I = [](std::int64_t v) { return Value(v); };
  const struct { const char* name; Value value, start; } rows[] = {
      {"DiffDblClick", DiffDblClick, false}, {"IsDark", IsDark, false},
      {"IDESlave", IDESlave, false}, {"ShowLastProject", ShowLastProject, false},
      {"StopAfterExec", StopAfterExec, false}, {"SecondInstanz", SecondInstanz, false},
      {"DelphiUsesEnglishIDE", DelphiUsesEnglishIDE, true},
      {"ShowBookmarksToolbar", ShowBookmarksToolbar, true},
      {"ShowFilePathPanel", ShowFilePathPanel, true},
      {"DVersions", DVersions,
       Str(u"Delphi 1,Delphi 2,Delphi 3,Delphi 4,Delphi 5,Delphi 6,Delphi 7,Delphi 8,"
           u"Delphi 2005,Delphi 2006,Delphi 2007,Delphi 2009,Delphi 2010,Delphi XE,Delphi XE2,"
           u"Delphi XE3,Delphi XE4,Delphi XE5,Delphi XE6,Delphi XE7,Delphi XE8,"
           u"Delphi 10 Seattle,Delphi 10.1 Berlin,Delphi 10.2 Tokyo,Delphi 10.3 Rio,"
           u"Delphi 10.4 Sydney,Delphi 11 Alexandria,Delphi 12 Athens,Delphi 13 Florence")},
      {"StdFontName", StdFontName, Str(u"Courier New")},
      {"StdFontNameUni", StdFontNameUni, Str(u"Arial Unicode MS")},
      {"OpenProjIn", I(OpenProjIn), I(100000)}, {"StdFontSize", I(StdFontSize), I(10)},
      {"MaxUndo", I(MaxUndo), I(10)}, {"StdFontTextColor", I(StdFontTextColor), I(0)},
      {"StdFontBackColor", I(StdFontBackColor), I(0x00FFFFFF)},  // white
      {"PrevNextPosition", I(PrevNextPosition), I(0)}, {"FMXCounter", I(FMXCounter), I(0)},
      {"VCLCounter", I(VCLCounter), I(0)}, {"stvNoUpdate", I(stvNoUpdate), I(0)},
      {"AktUndo", I(AktUndo), I(0)}, {"Multistart", I(Multistart), I(0)},
      {"UsedProjectColumns", I(UsedProjectColumns), I(0)},
      {"StdFontStyle", I(std::ssize(StdFontStyle)), I(0)},
  };
  for (const auto& r : rows) EXPECT_EQ(r.value, r.start) << r.name;
}

TEST(SharedDataText, LeadingBlanksAndParentFolders) {
  const std::pair<Str, int> blanks[] = {
      {u"", 0}, {u"   ", 3}, {u"  x y", 2}, {u"  \t x", 2}, {u"\t  x", 0}};  // a tab is no blank
  for (const auto& [text, count] : blanks) EXPECT_EQ(GetSpaceCount(text), count) << Narrow(text);

  const std::pair<Str, Str> dirs[] = {
      {u"C:\\a\\b", u"C:\\a\\"}, {u"C:\\a\\b\\", u"C:\\a\\"}, {u"C:\\a", u"C:\\"},
      {u"C:\\", u"C:\\"}, {u"abc", u"abc"}, {u"abcd", u"abcd"},
      {u"\\\\\\\\", u"\\\\\\"},  // the last character is never the cut
  };
  for (const auto& [dir, prev] : dirs) EXPECT_EQ(GetPrevDir(dir), prev) << Narrow(dir);
}

class SharedDataFileName : public testing::Test {
 protected:
  void SetUp() override { Project = &project_; }
  void TearDown() override { Project = nullptr; }
  TProject project_;
};

TEST_F(SharedDataFileName, MadeAbsoluteAgainstTheProjectFolder) {
  struct Case { Str path, name, result, pathAfter; };
  const Case cases[] = {
      {u"C:\\p\\src\\", u"..\\lib\\u.pas", u"C:\\p\\lib\\u.pas", u"C:\\p\\src"},
      {u"C:\\p\\src\\", u"u.pas", u"C:\\p\\src\\u.pas", u"C:\\p\\src\\"},  // Path kept
      {u"C:\\p\\src", u"u.pas", u"C:\\p\\src\\u.pas", u"C:\\p\\src"},
      {u"", u"u.pas", u"u.pas", u""},
      {u"C:\\p\\src\\", u"D:\\x\\u.pas", u"D:\\x\\u.pas", u"C:\\p\\src\\"},
      {u"C:\\p\\src\\", u"\\\\srv\\share\\u.pas", u"\\\\srv\\share\\u.pas", u"C:\\p\\src\\"},
      {u"C:\\p\\src\\", u"sub\\u.pas", u"C:\\p\\src\\sub\\u.pas", u"C:\\p\\src"},
      {u"C:\\p\\src\\", u"sub/u.pas", u"C:\\p\\src\\sub/u.pas", u"C:\\p\\src"},
      {u"C:\\p\\src\\", u"..u.pas", u"C:\\p\\src\\..u.pas", u"C:\\p\\src"},
      {u"C:\\p\\src\\", u"lib\\..\\u.pas", u"C:\\p\\lib\\u.pas", u"C:\\p\\src"},
      {u"C:\\p\\src\\", u"..\\..\\..\\..\\u.pas", u"C:\\u.pas", u"C:\\p\\src"},
      // Taking one "..\" out makes another: both climb.
      {u"C:\\p\\src\\", u"...\\.\\u.pas", u"C:\\u.pas", u"C:\\p\\src"},
  };
  for (const Case& c : cases) {
    project_.Path = c.path;
    EXPECT_EQ(GetFileName(c.name), c.result) << Narrow(c.name);
    EXPECT_EQ(project_.Path, c.pathAfter) << Narrow(c.name);
  }
  Project = nullptr;  // unchanged without a project
  for (const Str name : {u"..\\u.pas", u"u.pas"}) EXPECT_EQ(GetFileName(name), name);
}

TEST_F(SharedDataFileName, HostileNamesStayLinear) {
  Str flat, nested(100000, u'.');
  nested += u"..\\";
  for (int i = 0; i < 100000; ++i) {
    flat += u"..\\";
    nested += u".\\";  // each removal uncovers the next "..\" around it
  }
  project_.Path = u"C:\\p\\src\\";
  EXPECT_EQ(GetFileName(flat + u"u.pas"), u"C:\\u.pas");
  EXPECT_EQ(GetFileName(nested + u"u.pas"), u"C:\\u.pas");
}

TEST(SharedDataPosInfo, ReplacesTheFirstMatchingRecordOrAppends) {
  SetPosChanges(rtl::TStringList(), u"a.pas");  // no list yet: nothing happens

  rtl::TStringList info, lines;
  info.Add(u"a.pas\x01old");
  info.Add(u"b.pas\x01old");
  slPosInfo = &info;
  lines.Add(u"10,2");
  lines.Add(u"12,5");

  SetPosChanges(lines, u"b.pas");
  SetPosChanges(lines, u"a");  // a prefix of the first record takes its place
  SetPosChanges(lines, u"c.pas");
  slPosInfo = nullptr;

  ASSERT_EQ(info.Count(), 3);
  EXPECT_EQ(info[0], u"a\x01" u"10,2\x03" u"12,5\x03");
  EXPECT_EQ(info[1], u"b.pas\x01" u"10,2\x03" u"12,5\x03");
  EXPECT_EQ(info[2], u"c.pas\x01" u"10,2\x03" u"12,5\x03");
}

TEST(SharedDataPaths, BesideTheProgramOnlyInMobileMode) {
  using NOXEData::DataPaths;
  const auto fixed = DataPaths(u"Fixed", u"C:\\IDE\\bin\\", u"C:\\Users\\u\\AppData\\Roaming",
                               u"C:\\Users\\u\\Documents\\", u"C:\\Users\\u\\AppData\\Roaming",
                               u"C:\\IDE\\bin\\bds.exe");
  EXPECT_EQ(fixed.MyAppIniName, u"C:\\Users\\u\\AppData\\Roaming\\quillmark\\NOX\\bds.INI");
  EXPECT_EQ(fixed.MyProgDataPath, u"C:\\Users\\u\\AppData\\Roaming\\quillmark\\NOX");
  EXPECT_EQ(fixed.MyUserDataPath, u"C:\\Users\\u\\Documents\\quillmark\\NOX");
  EXPECT_TRUE(fixed.CreateProgDataPath);
  const auto mobile = DataPaths(u"Mobile", u"E:\\Nox", u"C:\\R", u"C:\\D", u"C:\\R",
                                u"E:\\Nox\\NOXPlugIn.exe");
  EXPECT_EQ(mobile.MyAppIniName, u"E:\\Nox\\NOXPlugIn.ini");
  EXPECT_EQ(mobile.MyProgDataPath, u"E:\\Nox\\");
  EXPECT_EQ(mobile.MyUserDataPath, u"E:\\Nox\\");
  EXPECT_FALSE(mobile.CreateProgDataPath);
  EXPECT_EQ(DataPaths(u"mobile", u"E:\\Nox\\", u"C:\\R", u"C:\\D", u"C:\\R", u"p.exe").MyAppIniName,
            u"C:\\R\\quillmark\\NOX\\p.INI")
      << "the mode is compared exactly";
}

}  // namespace
