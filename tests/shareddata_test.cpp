// The unit's shared state and its project text helpers: start values, leading blanks, parent
// folders, file names made absolute against the current project, position records.
#include <gtest/gtest.h>

#include <string>

#include "data/NOXEData.h"
#include "data/startup.h"

namespace {

using namespace NOXEData;
using Str = std::u16string;

std::string Narrow(std::u16string_view s) { return std::string(s.begin(), s.end()); }

TEST(SharedDataGlobals, StartValues) {
  EXPECT_TRUE(DelphiUsesEnglishIDE);
  EXPECT_FALSE(IDESlave || IsDark || SecondInstanz || ShowLastProject || StopAfterExec);
  EXPECT_TRUE(ShowBookmarksToolbar && ShowFilePathPanel);
  EXPECT_EQ(OpenProjIn, 100000);
  EXPECT_EQ(MaxUndo, 10);
  EXPECT_EQ(StdFontName, u"Courier New");
  EXPECT_EQ(StdFontNameUni, u"Arial Unicode MS");
  EXPECT_EQ(StdFontSize, 10);
  EXPECT_EQ(StdFontTextColor, 0x000000);
  EXPECT_EQ(StdFontBackColor, 0xFFFFFF);
  EXPECT_TRUE(StdFontStyle.empty());
  EXPECT_EQ(Project, nullptr);
  EXPECT_EQ(slPosInfo, nullptr);
  EXPECT_EQ(PlugInHandle, nullptr);
}

TEST(SharedDataText, LeadingBlanksAndParentFolders) {
  EXPECT_EQ(GetSpaceCount(u""), 0);
  EXPECT_EQ(GetSpaceCount(u"   "), 3);
  EXPECT_EQ(GetSpaceCount(u"  x y"), 2);
  EXPECT_EQ(GetSpaceCount(u"  \t x"), 2);  // a tab is not a blank
  EXPECT_EQ(GetSpaceCount(u"\t  x"), 0);

  const std::pair<Str, Str> dirs[] = {
      {u"C:\\a\\b", u"C:\\a\\"}, {u"C:\\a\\b\\", u"C:\\a\\"}, {u"C:\\a", u"C:\\"},
      {u"C:\\", u"C:\\"},        {u"abc", u"abc"},             {u"abcd", u"abcd"},
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
  struct Case {
    Str path, name, result, pathAfter;
  };
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
}

TEST_F(SharedDataFileName, UnchangedWithoutAProject) {
  Project = nullptr;
  EXPECT_EQ(GetFileName(u"..\\u.pas"), u"..\\u.pas");
  EXPECT_EQ(GetFileName(u"u.pas"), u"u.pas");
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
