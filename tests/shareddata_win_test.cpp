// The shared data unit's start and stop work on a real system, after the tool library's.
#include <windows.h>

#include <shlobj.h>

#include <gtest/gtest.h>

#include <string>

#include "data/NOXEData.h"
#include "rtl/inifiles.h"
#include "rtl/sysutils.h"
#include "tools/paths.h"
#include "tools/qm_globals.h"
#include "win_support.h"

namespace {

using nox_test::W;

class SharedDataWinStartup : public ::testing::Test {
 protected:
  void SetUp() override { Qm_tools::Initialize(); }
  void TearDown() override {
    DeleteFileW(W(IniName()));
    Qm_tools::Finalize();
  }
  static std::u16string IniName() {
    return Qm_tools::chkPath(Qm_tools::GetSpecialFolder(CSIDL_APPDATA)) +
           u"quillmark\\NOX\\win_tests.INI";
  }
};

TEST_F(SharedDataWinStartup, SettlesFoldersAndIniFileAndMakesTheLists) {
  using namespace Qm_tools;
  DeleteFileW(W(IniName()));
  NOXEData::Initialize();
  EXPECT_EQ(MyAppIniName, IniName());
  EXPECT_EQ(AppIniName, MyAppIniName) << "the shared unit's INI file is the program's";
  EXPECT_EQ(MyProgDataPath, chkPath(SysProgDataPath) + u"quillmark\\NOX");
  EXPECT_EQ(MyUserDataPath, chkPath(SysUserDataPath) + u"quillmark\\NOX");
  EXPECT_TRUE(DirectoryExists(MyProgDataPath));
  EXPECT_TRUE(DirectoryExists(MyUserDataPath));
  ASSERT_NE(NOXEData::slMethods, nullptr);
  EXPECT_TRUE(NOXEData::slMethods->Sorted());
  EXPECT_FALSE(NOXEData::slMethodsClass->Sorted());
  EXPECT_EQ(NOXEData::slMethodsClass->Duplicates, rtl::TDuplicates::dupIgnore);
  ASSERT_NE(NOXEData::slDelFilesAtEnd, nullptr);
  EXPECT_FALSE(NOXEData::slUnits->Sorted());
  EXPECT_EQ(NOXEData::slPosInfo, nullptr) << "not this unit's to make";
  // A second start changes nothing; the outer stop frees the lists and releases strings.
  rtl::TStringList* methods = NOXEData::slMethods;
  NOXEData::Initialize();
  EXPECT_EQ(NOXEData::slMethods, methods);
  NOXEData::Finalize();
  EXPECT_EQ(NOXEData::slMethods, methods);
  NOXEData::Finalize();
  EXPECT_EQ(NOXEData::slMethods, nullptr);
  EXPECT_EQ(NOXEData::slDelFilesAtEnd, nullptr);
  EXPECT_EQ(NOXEData::DVersions, u"");
  EXPECT_EQ(NOXEData::StdFontName, u"");
}

TEST_F(SharedDataWinStartup, UserDataFolderComesFromTheIniFileAndIsMade) {
  using namespace Qm_tools;
  const std::u16string wanted = chkPath(GetTmpDir()) + u"NoxUserData\\\u0141ukasz \u4E2D\U0001F600";
  RemoveDirectoryW(W(wanted));
  ForceDirectories(rtl::ExtractFilePath(IniName()));
  rtl::TIniFile(IniName()).WriteString(u"Optionen", u"UserDatapath", wanted);
  NOXEData::Initialize();
  EXPECT_EQ(MyUserDataPath, wanted);
  EXPECT_TRUE(DirectoryExists(wanted)) << "made with its parents";
  NOXEData::Finalize();
  RemoveDirectoryW(W(wanted));

  // A folder that cannot be made: start work goes on without a word.
  const std::u16string impossible = u"Q:\\gibt es nicht\\x";
  rtl::TIniFile(IniName()).WriteString(u"Optionen", u"UserDatapath", impossible);
  NOXEData::Initialize();
  EXPECT_EQ(MyUserDataPath, impossible);
  EXPECT_FALSE(DirectoryExists(impossible));
  EXPECT_NE(NOXEData::slMethods, nullptr);
  NOXEData::Finalize();
}

}  // namespace
