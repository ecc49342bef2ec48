// The file operations on a real system, under Wine. Every file lives in one folder under
// the temporary folder, removed after each test.
#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

#include <gtest/gtest.h>

#include <cmath>
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

// Removes a tree whatever its attributes, through the shell rather than the routines under test.
void RemoveTree(const std::u16string& dir) {
  const std::u16string from = dir + u'\0';
  SHFILEOPSTRUCTW op{};
  op.wFunc = FO_DELETE;
  op.pFrom = W(from);
  op.fFlags = FOF_NO_UI;
  SHFileOperationW(&op);
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
  const std::u16string src = In(u"src.txt"), src2 = In(u"src2.txt"), copy = In(u"new\\deep\\c.txt");
  WriteBytes(src, "payload");
  SetFileAttributesW(W(src), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE);
  ASSERT_TRUE(qm_CopyFile(src, copy));
  EXPECT_EQ(ReadBytes(copy), "payload");
  EXPECT_TRUE(IsWriteProtect(src));
  EXPECT_TRUE(IsWriteProtect(copy));
  EXPECT_EQ(Attributes(copy) & FILE_ATTRIBUTE_ARCHIVE, FILE_ATTRIBUTE_ARCHIVE);
  // A copy the system refuses (the target is held open) reaches the caller; the source is
  // locked again all the same.
  WriteBytes(src2, "other");
  SetFileAttributesW(W(src2), FILE_ATTRIBUTE_READONLY);
  SetFileAttributesW(W(copy), FILE_ATTRIBUTE_NORMAL);
  const HANDLE held = CreateFileW(W(copy), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  try {
    qm_CopyFile(src2, copy);
    ADD_FAILURE() << "no exception";
  } catch (const rtl::EInOutError& e) {
    const std::u16string start = u"Kopieren von " + src2 + u" nach " + copy + u" fehlgeschlagen: ";
    EXPECT_EQ(e.Message().substr(0, start.size()), start);
    EXPECT_GT(e.Message().size(), start.size()) << "the system's reason follows";
  }
  CloseHandle(held);
  EXPECT_TRUE(IsWriteProtect(src2));
  EXPECT_EQ(ReadBytes(copy), "payload");
  // A target folder that cannot be made (a file is in its way) is a failure.
  EXPECT_FALSE(qm_CopyFile(src, In(u"src.txt\\sub\\c.txt")));
  // Nothing to copy is no failure.
  EXPECT_TRUE(qm_CopyFile(In(u"none.txt"), In(u"other\\none.txt")));
  EXPECT_FALSE(qm_FileExists(In(u"other\\none.txt")));
}

TEST_F(FileOpsWin, MoveKeepsContentAndAttributesAndDeletionTakesTheTree) {
  const DWORD kept = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN;
  ASSERT_TRUE(ForceDirectories(In(u"a")));
  WriteBytes(In(u"a\\m.txt"), "moved");
  SetFileAttributesW(W(In(u"a\\m.txt")), kept);
  ASSERT_TRUE(qm_MoveFile(In(u"a\\m.txt"), In(u"b\\c\\m.txt")));
  EXPECT_FALSE(qm_FileExists(In(u"a\\m.txt")));
  EXPECT_EQ(ReadBytes(In(u"b\\c\\m.txt")), "moved");
  EXPECT_EQ(Attributes(In(u"b\\c\\m.txt")) & kept, kept);
  // Dest there: the system does not move onto it, so Source is copied over it and deleted,
  // and Dest takes Source's attributes.
  WriteBytes(In(u"a\\w.txt"), "new");
  SetFileAttributesW(W(In(u"a\\w.txt")), FILE_ATTRIBUTE_HIDDEN);
  WriteBytes(In(u"b\\w.txt"), "old");
  EXPECT_TRUE(qm_MoveFile(In(u"a\\w.txt"), In(u"b\\w.txt")));
  EXPECT_FALSE(qm_FileExists(In(u"a\\w.txt")));
  EXPECT_EQ(ReadBytes(In(u"b\\w.txt")), "new");
  EXPECT_EQ(Attributes(In(u"b\\w.txt")) & FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_HIDDEN);
  // Dest there: copied, but a read-only Source cannot be deleted, so the move fails.
  WriteBytes(In(u"a\\r.txt"), "kept");
  SetFileAttributesW(W(In(u"a\\r.txt")), FILE_ATTRIBUTE_READONLY);
  WriteBytes(In(u"b\\r.txt"), "old");
  EXPECT_FALSE(qm_MoveFile(In(u"a\\r.txt"), In(u"b\\r.txt")));
  EXPECT_EQ(ReadBytes(In(u"a\\r.txt")), "kept");
  EXPECT_EQ(ReadBytes(In(u"b\\r.txt")), "kept");
  // A whole tree goes.
  ASSERT_TRUE(ForceDirectories(In(u"tree\\sub\\subsub")));
  WriteBytes(In(u"tree\\a.txt"), "a");
  WriteBytes(In(u"tree\\sub\\subsub\\b.txt"), "b");
  EXPECT_TRUE(DelDir(In(u"tree")));
  EXPECT_FALSE(DirectoryExists(In(u"tree")));
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
  // Wine keeps no creation time on the host's file system.
  EXPECT_GT(c, rtl::EncodeDate(1980, 1, 1));
  EXPECT_EQ(w, rtl::EncodeDateTime(2020, 12, 24, 18, 30, 58, 0));
  EXPECT_EQ(std::floor(a), rtl::EncodeDate(2010, 6, 15)) << "file systems may keep only the day";
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

TEST_F(FileOpsWin, ErrorTextsNameTheNumber) {
  std::u16string text;
  SetLastError(ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(GetlastErrorInfo(text), 2u);
  EXPECT_TRUE(text.starts_with(u"Fehlernummer: 2\r\n")) << rtl::Utf16ToUtf8(text);
  EXPECT_GT(text.size(), 17u) << "the system's text follows";
  SetLastError(ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(GetlastErrorDesc(), u"Fehlernummer: 2: " + text.substr(17));
}

TEST_F(FileOpsWin, BuildNumberComesFromTheRunningProgram) {
  wchar_t exe[MAX_PATH];
  GetModuleFileNameW(nullptr, exe, MAX_PATH);
  // The test program's record says 3.1.4.1592; any file with a record gives the running
  // program's build, one without gives none.
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
  const auto publish = [](HGLOBAL mem) {
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    if (mem) {
      EXPECT_NE(SetClipboardData(CF_HDROP, mem), nullptr);
    }
    CloseClipboard();
  };
  const std::u16string names[] = {In(u"one.txt"), In(u"zwei ä.txt")};
  const std::u16string list = names[0] + u'\0' + names[1] + u'\0' + u'\0';
  HGLOBAL mem = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + list.size() * 2);
  auto* drop = static_cast<DROPFILES*>(GlobalLock(mem));
  drop->pFiles = sizeof(DROPFILES);
  drop->fWide = TRUE;
  std::memcpy(drop + 1, list.data(), list.size() * 2);
  GlobalUnlock(mem);
  publish(mem);
  rtl::TStringList files;
  files.Add(u"kept");
  EXPECT_TRUE(GetFileListFromClipBoard(files));
  EXPECT_EQ(files.Text(), u"kept\r\n" + names[0] + u"\r\n" + names[1] + u"\r\n");
  publish(nullptr);
  rtl::TStringList none;
  EXPECT_FALSE(GetFileListFromClipBoard(none));
  EXPECT_EQ(none.Count(), 0);
}

}  // namespace
