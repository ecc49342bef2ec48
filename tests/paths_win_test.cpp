// The tool library's start work and path routines on a real system.
#include <windows.h>

#include <shlobj.h>

#include <gtest/gtest.h>

#include <string>

#include "rtl/formatsettings.h"
#include "rtl/locale.h"
#include "rtl/sysutils.h"
#include "tools/fileops.h"
#include "tools/paths.h"
#include "tools/qm_globals.h"
#include "win_support.h"

namespace {

using namespace Qm_tools;

using nox_test::W;

std::u16string ExeName() {
  wchar_t path[MAX_PATH];
  const DWORD n = GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::u16string(reinterpret_cast<const char16_t*>(path), n);
}

// The INI file beside the test program, which the portable switch reads.
std::u16string BesideIni() { return rtl::ChangeFileExt(ExeName(), u".INI"); }

void WriteBytes(const std::u16string& name, const std::string& bytes) {
  ASSERT_TRUE(nox_test::WriteBytes(name, bytes)) << rtl::Utf16ToUtf8(name);
}

// Starts the library afresh, as a program would that loads it once more.
void Restart() {
  Finalize();
  Initialize();
}

class PathsWinStartup : public ::testing::Test {
 protected:
  void SetUp() override {
    DeleteFileW(W(BesideIni()));
    Initialize();
  }
  void TearDown() override {
    DeleteFileW(W(BesideIni()));
    Finalize();
    DiskMode = u"Fixed";
  }
};

TEST_F(PathsWinStartup, IniFileAndDataGoUnderTheRoamingFolderOnAFixedDrive) {
  const std::u16string roaming = GetSpecialFolder(CSIDL_APPDATA);
  ASSERT_FALSE(roaming.empty());
  EXPECT_EQ(DiskMode, u"Fixed");
  EXPECT_EQ(AppIniName, chkPath(roaming) + u"quillmark\\win_tests.INI");
  EXPECT_EQ(ProgDataPath, chkPath(roaming) + u"quillmark\\");
  EXPECT_TRUE(DirectoryExists(ProgDataPath)) << "made at start";
  EXPECT_EQ(SysAppIniName, chkPath(roaming) + u"win_tests.INI");
  EXPECT_EQ(SysProgDataPath, roaming);
  EXPECT_EQ(SysUserDataPath, GetSpecialFolder(CSIDL_PERSONAL));
  EXPECT_GT(CpuHard, 0);
  EXPECT_EQ(CpusOnBoard, 1);
  EXPECT_FALSE(AktOSName.empty());
  EXPECT_EQ(curOS, rtl::AnsiLowerCase(curOS));
  // German formats with the library's short forms; German month names everywhere.
  EXPECT_EQ(FMS.ShortDateFormat, u"dd.mm.yyyy");
  EXPECT_EQ(FMS.ShortTimeFormat, u"hh:mm");
  EXPECT_EQ(FMS.LongMonthNames[2], u"März");
  EXPECT_EQ(FMSEN.LongMonthNames[2], u"March");
  EXPECT_EQ(rtl::FormatSettings.LongMonthNames[2], u"März");
  EXPECT_EQ(rtl::FormatSettings.DateSeparator, u'.');
  EXPECT_EQ(rtl::FormatSettings.ThousandSeparator, u'.');
  // A second start changes nothing.
  const std::u16string before = AppIniName;
  Initialize();
  EXPECT_EQ(AppIniName, before);
  Finalize();
}

TEST_F(PathsWinStartup, ThePortableSwitchBesideTheProgramKeepsEverythingThere) {
  WriteBytes(BesideIni(), "[Optionen]\r\nMobileModus=1\r\n");
  Restart();
  EXPECT_EQ(DiskMode, u"Mobile");
  EXPECT_EQ(AppIniName, BesideIni());
  EXPECT_EQ(ProgDataPath, AppPath());
  // Switched off, garbage, or held open by another: the fixed place.
  const char* texts[] = {"[Optionen]\r\nMobileModus=0\r\n", "\x01\xFF\xFE garbage [[[\r\n=",
                         "[Andere]\r\nMobileModus=1\r\n"};
  for (const char* text : texts) {
    WriteBytes(BesideIni(), text);
    Restart();
    EXPECT_EQ(DiskMode, u"Fixed") << text;
    EXPECT_NE(AppIniName, BesideIni()) << text;
  }
  WriteBytes(BesideIni(), "[Optionen]\r\nMobileModus=1\r\n");
  HANDLE held = CreateFileW(W(BesideIni()), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  Restart();
  CloseHandle(held);
  EXPECT_EQ(DiskMode, u"Fixed") << "an unreadable file reads as no switch";
}

TEST_F(PathsWinStartup, PortableModeMapsStoredPathsOntoTheProgramsDrive) {
  DiskMode = u"Mobile";
  const std::u16string drive = AppPath().substr(0, 2);
  const std::u16string here = ExeName();
  EXPECT_EQ(GetRelativFile(here), here) << "a reachable file stays";
  EXPECT_EQ(GetRelativFile(u"Q:\\weg\\x.txt"), drive + u"\\weg\\x.txt");
  EXPECT_EQ(GetStrictRelativPath(u""), drive);
  EXPECT_EQ(GetRelativPath(u"\\\\srv\\share"), AppPath().substr(0, 1) + u":\\usbnet=srv\\share");
  DiskMode = u"Fixed";
  EXPECT_EQ(GetRelativFile(u"Q:\\weg\\x.txt"), u"Q:\\weg\\x.txt") << "only in Mobile mode";
}

TEST_F(PathsWinStartup, TemporaryFilesAndFoldersAndUniqueNames) {
  const std::u16string tmp = GetTmpDir();
  ASSERT_FALSE(tmp.empty());
  EXPECT_EQ(GetModusTmpDir(false), tmp);
  EXPECT_EQ(tmp.back(), u'\\');
  const std::u16string dataTmp = GetModusTmpDir(true);
  EXPECT_EQ(dataTmp, ProgDataPath + u"Temp") << "no trailing backslash";
  EXPECT_TRUE(DirectoryExists(dataTmp));

  const std::u16string file = GetModusTmpFile(true, u"nx");
  EXPECT_TRUE(FileExists(file));
  EXPECT_EQ(rtl::ExtractFilePath(file), dataTmp + u"\\");
  const std::u16string newDir = GetModusTmpNewDir(true);
  EXPECT_EQ(newDir.substr(0, ProgDataPath.size() + 5), ProgDataPath + u"Temp-");
  EXPECT_EQ(newDir.size(), ProgDataPath.size() + 5 + 8);
  EXPECT_TRUE(DirectoryExists(newDir));
  EXPECT_NE(GetModusTmpNewDir(true), newDir);

  const std::u16string report = newDir + u"\\Bericht.txt";
  EXPECT_EQ(GetNotExistingFilename(report), newDir + u"\\Bericht1.txt");
  WriteBytes(newDir + u"\\Bericht1.txt", "x");
  WriteBytes(newDir + u"\\Bericht2.txt", "x");
  EXPECT_EQ(GetNotExistingFilename(report), newDir + u"\\Bericht3.txt");
  EXPECT_EQ(GetNotExistingDirName(newDir), newDir + u"1");
  EXPECT_TRUE(ForceDirectories(newDir + u"\\a\\b\\c"));
  EXPECT_FALSE(ForceDirectories(file + u"\\unter")) << "a file where a folder should be";

  DeleteFileW(W(file));
  DelDir(newDir);
  EXPECT_FALSE(DirectoryExists(newDir));
}

TEST(PathsWinSystem, ShortNamesEnvironmentAndSpecialFolders) {
  const std::u16string dir = chkPath(GetTmpDir()) + u"Noxdesk langer Ordnername";
  ASSERT_TRUE(ForceDirectories(dir));
  wchar_t shortName[MAX_PATH];
  const DWORD n = GetShortPathNameW(W(dir), shortName, MAX_PATH);
  const std::u16string shortDir(reinterpret_cast<const char16_t*>(shortName), n);
  const std::u16string expanded = qm_GetExpandedFilename(shortDir + u"\\datei.txt");
  RemoveDirectoryW(W(dir));
  ASSERT_NE(shortDir.find(u'~'), std::u16string::npos) << "no short name";
  EXPECT_TRUE(rtl::AnsiSameText(expanded, dir + u"\\datei.txt"));

  const std::u16string longValue(1000, u'v');
  SetEnvironmentVariableW(L"NOX_LONG_VALUE", W(longValue));
  EXPECT_EQ(GetEnvironment(u"NOX_LONG_VALUE"), longValue);
  EXPECT_EQ(GetEnvironment(u"NOX_NOT_SET_AT_ALL"), u"");
  EXPECT_EQ(GetSpecialFolder(0x7F), u"");
  EXPECT_FALSE(GetWindowsPath().empty());
  EXPECT_EQ(rtl::ExtractFilePath(GetSystemPath()), chkPath(GetWindowsPath()));
  EXPECT_FALSE(GetUserProfilePath().empty());
  // The program the legacy extension table names, without its "^.ext" marker.
  WriteProfileStringW(L"Extensions", L"noxt", L"C:\\Tools\\view.exe ^.noxt");
  EXPECT_EQ(GetProgPath(u".noxt"), u"C:\\Tools\\view.exe");
  WriteProfileStringW(L"Extensions", L"noxt", nullptr);
  EXPECT_EQ(GetProgPath(u"noxt"), u"");
  EXPECT_EQ(AppPath(), rtl::ExtractFilePath(ExeName()));
}

}  // namespace
