// The file operations on a real system, under Wine. Every file lives in one folder under
// the temporary folder, removed after each test.
#include <windows.h>

#include <shlobj.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "rtl/classes.h"
#include "rtl/dateutils.h"
#include "tools/fileops.h"
#include "tools/paths.h"
#include "win_support.h"

namespace {

using namespace Qm_tools;
using nox_test::ReadBytes;
using nox_test::W;

// Fails the test when the file cannot be written.
void WriteBytes(const std::u16string& name, const std::string& bytes) {
  ASSERT_TRUE(nox_test::WriteBytes(name, bytes)) << rtl::Utf16ToUtf8(name);
}

DWORD Attributes(const std::u16string& name) { return GetFileAttributesW(W(name)); }

// Removes a tree whatever its attributes, without the routines under test.
void RemoveTree(const std::u16string& dir) {
  WIN32_FIND_DATAW data;
  HANDLE h = FindFirstFileW(W(dir + u"\\*"), &data);
  if (h != INVALID_HANDLE_VALUE) {
    do {
      const std::u16string name(reinterpret_cast<const char16_t*>(data.cFileName));
      if (name == u"." || name == u"..") continue;
      const std::u16string full = dir + u"\\" + name;
      SetFileAttributesW(W(full), FILE_ATTRIBUTE_NORMAL);
      if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
        RemoveTree(full);
      else
        DeleteFileW(W(full));
    } while (FindNextFileW(h, &data));
    FindClose(h);
  }
  RemoveDirectoryW(W(dir));
}

class FileOpsWin : public ::testing::Test {
 protected:
  void SetUp() override {
    root_ = nox_test::TempFolder() + u"fileops_test_" + rtl::IntToStr(GetCurrentProcessId());
    RemoveTree(root_);
    ASSERT_TRUE(ForceDirectories(root_));
  }
  void TearDown() override { RemoveTree(root_); }
  std::u16string In(const std::u16string& name) const { return root_ + u"\\" + name; }

  std::u16string root_;
  nox_test::ShownMessages messages_;
};

TEST_F(FileOpsWin, CopyOfAReadOnlyFileIsReadOnlyAndTheSourceStaysSo) {
  WriteBytes(In(u"src.txt"), "payload");
  SetFileAttributesW(W(In(u"src.txt")), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE);
  ASSERT_TRUE(qm_CopyFile(In(u"src.txt"), In(u"new\\deeper\\copy.txt")));
  EXPECT_EQ(ReadBytes(In(u"new\\deeper\\copy.txt")), "payload");
  EXPECT_TRUE(IsWriteProtect(In(u"src.txt")));
  EXPECT_TRUE(IsWriteProtect(In(u"new\\deeper\\copy.txt")));
  EXPECT_EQ(Attributes(In(u"new\\deeper\\copy.txt")) & FILE_ATTRIBUTE_ARCHIVE, FILE_ATTRIBUTE_ARCHIVE);
  // A copy the system refuses (here: the copy is held open by someone) reaches the
  // caller; the source is locked again all the same.
  WriteBytes(In(u"src2.txt"), "other");
  SetFileAttributesW(W(In(u"src2.txt")), FILE_ATTRIBUTE_READONLY);
  SetFileAttributesW(W(In(u"new\\deeper\\copy.txt")), FILE_ATTRIBUTE_NORMAL);
  {
    const HANDLE held = CreateFileW(W(In(u"new\\deeper\\copy.txt")), GENERIC_READ, 0, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    EXPECT_THROW(qm_CopyFile(In(u"src2.txt"), In(u"new\\deeper\\copy.txt")), rtl::EInOutError);
    CloseHandle(held);
  }
  EXPECT_TRUE(IsWriteProtect(In(u"src2.txt")));
  EXPECT_EQ(ReadBytes(In(u"new\\deeper\\copy.txt")), "payload");
  // Nothing to copy is no failure.
  EXPECT_TRUE(qm_CopyFile(In(u"none.txt"), In(u"other\\none.txt")));
  EXPECT_FALSE(qm_FileExists(In(u"other\\none.txt")));
}

TEST_F(FileOpsWin, MoveAcrossFoldersKeepsContentAndAttributes) {
  ASSERT_TRUE(ForceDirectories(In(u"a")));
  WriteBytes(In(u"a\\m.txt"), "moved");
  SetFileAttributesW(W(In(u"a\\m.txt")), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
  ASSERT_TRUE(qm_MoveFile(In(u"a\\m.txt"), In(u"b\\c\\m.txt")));
  EXPECT_FALSE(qm_FileExists(In(u"a\\m.txt")));
  EXPECT_EQ(ReadBytes(In(u"b\\c\\m.txt")), "moved");
  EXPECT_EQ(Attributes(In(u"b\\c\\m.txt")) & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN),
            static_cast<DWORD>(FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN));
  // Where the rename fails (Dest is there), the copy is made; a read-only Source cannot be
  // deleted, so the move fails and the Source stays.
  WriteBytes(In(u"a\\r.txt"), "kept");
  SetFileAttributesW(W(In(u"a\\r.txt")), FILE_ATTRIBUTE_READONLY);
  WriteBytes(In(u"b\\r.txt"), "old");
  EXPECT_FALSE(qm_MoveFile(In(u"a\\r.txt"), In(u"b\\r.txt")));
  EXPECT_EQ(ReadBytes(In(u"a\\r.txt")), "kept");
  EXPECT_EQ(ReadBytes(In(u"b\\r.txt")), "kept");
}

TEST_F(FileOpsWin, WriteProtectionAndHiddenAttribute) {
  WriteBytes(In(u"p.txt"), "x");
  EXPECT_FALSE(IsWriteProtect(In(u"p.txt")));
  EXPECT_TRUE(SetWriteProtect(In(u"p.txt")));
  EXPECT_TRUE(IsWriteProtect(In(u"p.txt")));
  EXPECT_TRUE(RemoveWriteProtect(In(u"p.txt")));
  EXPECT_FALSE(IsWriteProtect(In(u"p.txt")));
  EXPECT_FALSE(IsWriteProtect(In(u"missing.txt")));
  SetFileHiddenAttribute(In(u"p.txt"));
  EXPECT_TRUE(Attributes(In(u"p.txt")) & FILE_ATTRIBUTE_HIDDEN);
  try {
    SetFileHiddenAttribute(In(u"missing.txt"));
    ADD_FAILURE() << "no exception";
  } catch (const EFileAttributeError& e) {
    EXPECT_EQ(e.Message(), u"Datei nicht gefunden: " + In(u"missing.txt"));
  }
}

TEST_F(FileOpsWin, FileTimesRoundTripAtTwoSecondPrecision) {
  WriteBytes(In(u"t.txt"), "times");
  const rtl::TDateTime created = rtl::EncodeDateTime(2001, 2, 3, 4, 5, 7, 0);
  const rtl::TDateTime accessed = rtl::EncodeDateTime(2010, 6, 15, 12, 0, 0, 0);
  const rtl::TDateTime written = rtl::EncodeDateTime(2020, 12, 24, 18, 30, 59, 0);
  ASSERT_TRUE(SetFileTimes(In(u"t.txt"), created, accessed, written));
  rtl::TDateTime c = 0, a = 0, w = 0;
  ASSERT_TRUE(GetFileTimes(In(u"t.txt"), c, a, w));
  // Wine keeps no creation time on the host's file system (it reports another time there),
  // so only a date-time as such is expected for it.
  EXPECT_GT(c, rtl::EncodeDate(1980, 1, 1));
  EXPECT_EQ(w, rtl::EncodeDateTime(2020, 12, 24, 18, 30, 58, 0));
  int y = 0, m = 0, d = 0;
  rtl::DecodeDate(a, y, m, d);
  EXPECT_EQ(y * 10000 + m * 100 + d, 20100615) << "file systems may keep only the day";
  EXPECT_EQ(GetModifyDate(In(u"t.txt")), w);
  EXPECT_EQ(GetFileDateTime(In(u"t.txt")), w);
  EXPECT_NEAR(qm_GetFileAge(In(u"t.txt")), written, 2.0 / 86400);
  EXPECT_FALSE(GetFileTimes(In(u"missing.txt"), c, a, w));
  EXPECT_FALSE(SetFileTimes(In(u"missing.txt"), created, accessed, written));
  // A missing file has the age of now.
  const rtl::TDateTime before = rtl::Now();
  for (auto* age : {&qm_GetFileAge, &GetModifyDate, &GetFileDateTime})
    EXPECT_GE(age(In(u"missing.txt")), before);
}

TEST_F(FileOpsWin, SizesAndAnsiText) {
  SaveAnsiStringToFile(u"Grüße €", In(u"ansi.txt"));
  EXPECT_EQ(ReadBytes(In(u"ansi.txt")), "Gr\xFC\xDF" "e \x80") << "code page 1252 under Wine";
  EXPECT_EQ(qm_GetFileSize(In(u"ansi.txt")), 7);
  SaveAnsiStringToFile(u"ab", In(u"ansi.txt"));
  EXPECT_EQ(qm_GetFileSize(In(u"ansi.txt")), 2) << "replaced";
  EXPECT_NO_THROW(SaveAnsiStringToFile(u"x", In(u"no\\such\\a.txt"))) << "not reported";
  EXPECT_EQ(qm_GetFileSize(In(u"no\\such\\a.txt")), -1);
  EXPECT_EQ(qm_GetFileSize(In(u"missing.txt")), -1);
}

TEST_F(FileOpsWin, CompareShowsEqualityOrTheFirstDifference) {
  WriteBytes(In(u"one.txt"), "same text\r\n");
  WriteBytes(In(u"two.txt"), "same text\r\n");
  WriteBytes(In(u"three.txt"), "same tExt\r\n");
  CompareThisFiles(In(u"one.txt"), In(u"two.txt"));
  CompareThisFiles(In(u"one.txt"), In(u"three.txt"));
  const auto& shown = messages_.shown;
  ASSERT_EQ(shown.size(), 2u);
  EXPECT_EQ(shown[0], u"11: Größe von " + In(u"one.txt") + u"\r11: Größe von " + In(u"two.txt") +
                           u"\r\rDateien sind gleich.");
  EXPECT_TRUE(shown[1].ends_with(u"\r\rDateien unterscheiden sich an Position: 7\r\r"
                                  u"e \" Wert: 101 (one.txt)\rE \" Wert: 69 (three.txt)\r\r"
                                  u"ext\rExt"));
}

TEST_F(FileOpsWin, DeletingAFolderTree) {
  ASSERT_TRUE(ForceDirectories(In(u"tree\\sub\\subsub")));
  WriteBytes(In(u"tree\\a.txt"), "a");
  WriteBytes(In(u"tree\\sub\\subsub\\b.txt"), "b");
  EXPECT_TRUE(DelDir(In(u"tree")));
  EXPECT_FALSE(DirectoryExists(In(u"tree")));
}

TEST_F(FileOpsWin, ErrorTextsNameTheNumber) {
  std::u16string text;
  SetLastError(ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(GetlastErrorInfo(text), 2u);
  EXPECT_TRUE(text.starts_with(u"Fehlernummer: 2\r\n")) << rtl::Utf16ToUtf8(text);
  EXPECT_GT(text.size(), std::u16string(u"Fehlernummer: 2\r\n").size());
  SetLastError(ERROR_FILE_NOT_FOUND);
  const std::u16string desc = GetlastErrorDesc();
  EXPECT_EQ(desc, u"Fehlernummer: 2: " + text.substr(17));
}

TEST_F(FileOpsWin, BuildNumberComesFromTheRunningProgram) {
  wchar_t exe[MAX_PATH];
  GetModuleFileNameW(nullptr, exe, MAX_PATH);
  // The test program's version record says 3.1.4.1592. Any file that has a version record
  // gives the running program's build; one without gives none.
  EXPECT_EQ(GetBuildNumber(reinterpret_cast<const char16_t*>(exe)), u"1592");
  EXPECT_EQ(GetBuildNumber(u"C:\\windows\\system32\\kernel32.dll"), u"1592");
  WriteBytes(In(u"plain.dll"), "no resources");
  EXPECT_EQ(GetBuildNumber(In(u"plain.dll")), u"");
  EXPECT_EQ(GetBuildNumber(In(u"missing.dll")), u"");
}

TEST_F(FileOpsWin, DrivesThatCanBeRead) {
  EXPECT_TRUE(DiskinDrive(u"C:\\"));
  EXPECT_TRUE(DiskinDrive(root_ + u"\\nothing.txt")) << "an empty search still reads the drive";
  EXPECT_TRUE(DiskinDrive(u"\\\\server\\share\\x"));
  EXPECT_FALSE(DiskinDrive(u""));
  EXPECT_FALSE(DiskinDrive(u"Q:\\folder\\x.txt"));
}

TEST_F(FileOpsWin, FileListFromTheClipboard) {
  const std::u16string names[] = {In(u"one.txt"), In(u"zwei ä.txt")};
  const std::u16string list = names[0] + u'\0' + names[1] + u'\0' + u'\0';
  HGLOBAL mem = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + list.size() * 2);
  auto* drop = static_cast<DROPFILES*>(GlobalLock(mem));
  drop->pFiles = sizeof(DROPFILES);
  drop->fWide = TRUE;
  std::memcpy(drop + 1, list.data(), list.size() * 2);
  GlobalUnlock(mem);
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  ASSERT_NE(SetClipboardData(CF_HDROP, mem), nullptr);
  CloseClipboard();

  rtl::TStringList files;
  files.Add(u"kept");
  EXPECT_TRUE(GetFileListFromClipBoard(files));
  EXPECT_EQ(files.Text(), u"kept\r\n" + names[0] + u"\r\n" + names[1] + u"\r\n");

  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  CloseClipboard();
  rtl::TStringList none;
  EXPECT_FALSE(GetFileListFromClipBoard(none));
  EXPECT_EQ(none.Count(), 0);
}

}  // namespace
