// The process routines on a real system, under Wine: the shell's error message, starting
// recordargs.exe and waiting for it, shell links, file types and the program behind a
// document.
#include <windows.h>

#include <objbase.h>
#include <shlobj.h>
#include <tlhelp32.h>

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <sstream>
#include <string>
#include <vector>

#include "rtl/handles.h"
#include "rtl/registry.h"
#include "rtl/sysutils.h"
#include "rtl/ustring.h"
#include "tools/process.h"
#include "win_support.h"

namespace {

using namespace Qm_tools;
using nox_test::ShownMessages;
using nox_test::TempFolder;
using nox_test::W;

const std::u16string kRecordArgs = nox_test::WinPath(NOX_RECORDARGS_EXE);

// Ids of the running recordargs.exe processes.
std::vector<DWORD> RunningRecorders() {
  std::vector<DWORD> ids;
  const rtl::unique_hfile snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  if (!snapshot) return ids;
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof(entry);
  for (BOOL more = Process32FirstW(snapshot.get(), &entry); more;
       more = Process32NextW(snapshot.get(), &entry))
    if (lstrcmpiW(entry.szExeFile, L"recordargs.exe") == 0) ids.push_back(entry.th32ProcessID);
  return ids;
}

// ExecAndWait waits without end; a recorder that hangs is ended after 30 s so that the
// test fails instead of hanging.
bool ExecAndWaitBounded(const std::u16string& program, const std::u16string& params) {
  auto run = std::async(std::launch::async, [&] { return ExecAndWait(program, params, SW_HIDE); });
  if (run.wait_for(std::chrono::seconds(30)) == std::future_status::timeout) {
    for (const DWORD id : RunningRecorders()) {
      const rtl::unique_handle p(OpenProcess(PROCESS_TERMINATE, FALSE, id));
      if (p) TerminateProcess(p.get(), 1);
    }
    run.wait();
    ADD_FAILURE() << "recordargs.exe did not end within 30 s";
    return false;
  }
  return run.get();
}

// Starts recordargs.exe with `params` and returns its two record lines.
std::vector<std::string> Record(const std::u16string& params) {
  const std::u16string file = TempFolder() + u"nox_process_record.txt";
  DeleteFileW(W(file));
  SetEnvironmentVariableW(L"NOX_RECORD_FILE", W(file));
  EXPECT_TRUE(ExecAndWaitBounded(kRecordArgs, params));
  SetEnvironmentVariableW(L"NOX_RECORD_FILE", nullptr);
  const std::string text = nox_test::ReadBytes(file);
  DeleteFileW(W(file));
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

TEST(ProcessWinShell, MissingFileShowsTheShellsReasonAndStillSucceeds) {
  ShownMessages messages;
  EXPECT_TRUE(qm_ShellExecute(0, u"open", u"C:\\nox_missing_folder\\missing.nox", u"", u"",
                              SW_SHOWNORMAL));
  ASSERT_EQ(messages.shown.size(), 1u);
  EXPECT_EQ(messages.shown[0], u"Datei wurde nicht gefunden.");
}

TEST(ProcessWinShell, ACodeWithoutATextShowsAnEmptyMessage) {
  // An existing file of a type nothing is registered for: "no association".
  const std::u16string file = TempFolder() + u"nox_process_test.noxnoassoc";
  ASSERT_TRUE(nox_test::WriteBytes(file, ""));
  ShownMessages messages;
  EXPECT_TRUE(qm_ShellExecute(0, u"open", file, u"", u"", SW_SHOWNORMAL));
  DeleteFileW(W(file));
  ASSERT_EQ(messages.shown.size(), 1u);
  EXPECT_EQ(messages.shown[0], u"");
}

TEST(ProcessWinShell, AQuotedProgramAloneGetsTwoQuotesAsParameters) {
  const std::u16string record = TempFolder() + u"nox_process_shell.txt";
  DeleteFileW(W(record));
  SetEnvironmentVariableW(L"NOX_RECORD_FILE", W(record));
  ShownMessages messages;
  Shellparaline(u"\"" + kRecordArgs + u"\"");
  SetEnvironmentVariableW(L"NOX_RECORD_FILE", nullptr);
  // The shell starts the program and returns: wait for its record.
  std::string text;
  for (int i = 0; i < 300 && text.find('\n') == std::string::npos; ++i) {
    Sleep(100);
    text = nox_test::ReadBytes(record);
  }
  DeleteFileW(W(record));
  EXPECT_TRUE(messages.shown.empty());
  EXPECT_TRUE(text.substr(0, text.find('\n')).ends_with(R"(recordargs.exe" "")")) << text;
}

TEST(ProcessWinExec, StartsTheProgramQuotedInItsFolder) {
  const std::string program = rtl::Utf16ToUtf8(kRecordArgs);
  std::string folder = rtl::Utf16ToUtf8(rtl::ExtractFilePath(kRecordArgs));
  folder.pop_back();  // the working folder comes without its final backslash

  const auto empty = Record(u"");
  ASSERT_EQ(empty.size(), 2u);
  EXPECT_EQ(empty[0], "\"" + program + "\" \"\"");
  EXPECT_EQ(rtl::Utf8ToUtf16(empty[1]), rtl::Utf8ToUtf16(folder));

  const auto spaced = Record(u"a b");
  ASSERT_EQ(spaced.size(), 2u);
  EXPECT_EQ(spaced[0], "\"" + program + "\" \"a b\"");
}

TEST(ProcessWinExec, MissingProgramIsNotStarted) {
  EXPECT_FALSE(ExecAndWait(u"C:\\nox_missing_folder\\missing.exe", u"", SW_HIDE));
}

// This process's open handles. Wine's GetProcessHandleCount reports 0 always, so they are
// counted in the system's handle table, which Wine does keep.
DWORD OwnHandleCount() {
  struct Entry {
    ULONG ProcessId;
    BYTE ObjectTypeNumber, Flags;
    USHORT Handle;
    void* Object;
    ACCESS_MASK GrantedAccess;
  };
  using Query = LONG(WINAPI*)(ULONG, void*, ULONG, ULONG*);
  const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
  std::vector<BYTE> buffer(1 << 16);
  ULONG needed = 0;
  const ULONG kSystemHandleInformation = 16;
  while (query(kSystemHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size()),
               &needed) == static_cast<LONG>(0xC0000004))  // STATUS_INFO_LENGTH_MISMATCH
    buffer.resize(buffer.size() * 2);
  const ULONG count = *reinterpret_cast<const ULONG*>(buffer.data());
  const auto* entries = reinterpret_cast<const Entry*>(buffer.data() + sizeof(void*));
  DWORD own = 0;
  for (ULONG i = 0; i < count; ++i)
    if (entries[i].ProcessId == GetCurrentProcessId()) ++own;
  return own;
}

TEST(ProcessWinExec, RepeatedStartsLeaveNoHandlesOrProcessesBehind) {
  ASSERT_TRUE(ExecAndWaitBounded(kRecordArgs, u"warm-up"));
  const DWORD before = OwnHandleCount();
  ASSERT_GT(before, 0u);
  for (int i = 0; i < 20; ++i) ASSERT_TRUE(ExecAndWaitBounded(kRecordArgs, u"x"));
  const DWORD after = OwnHandleCount();
  // Two handles a start were left open before; a few may come and go with the thread pool.
  EXPECT_LE(after, before + 5) << before;
  EXPECT_TRUE(RunningRecorders().empty());
}

TEST(ProcessWinLink, ReadsTargetAndArgumentsOfALink) {
  ASSERT_TRUE(SUCCEEDED(CoInitialize(nullptr)));
  const std::u16string link = TempFolder() + u"nox_process_test.lnk";
  {
    IShellLinkW* shellLink = nullptr;
    ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                               reinterpret_cast<void**>(&shellLink)),
              S_OK);
    shellLink->SetPath(W(kRecordArgs));
    shellLink->SetArguments(L"-a \"b c\"");
    IPersistFile* file = nullptr;
    ASSERT_EQ(shellLink->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file)), S_OK);
    EXPECT_EQ(file->Save(W(link), TRUE), S_OK);
    file->Release();
    shellLink->Release();
  }
  std::u16string arguments;
  EXPECT_TRUE(rtl::SameText(GetExeFromLink(link, arguments), kRecordArgs));
  EXPECT_EQ(arguments, u"-a \"b c\"");
  DeleteFileW(W(link));

  arguments = u"kept";
  EXPECT_EQ(GetExeFromLink(TempFolder() + u"nox_no_such_link.lnk", arguments), u"");
  EXPECT_EQ(arguments, u"kept");
  CoUninitialize();
}

TEST(ProcessWinFileType, WritesTheThreeKeys) {
  const std::string ext = "noxt" + std::to_string(GetCurrentProcessId());
  const std::u16string ext16 = rtl::Utf8ToUtf16(ext);
  // The 8-bit texts are ANSI (code page 1252 under Wine): 0xFC is a u-umlaut.
  RegisterFileType("C:\\N\xFCx\\nox.exe", "ignored", ext, "C:\\Nox\\nox.exe,1");

  rtl::TRegistry registry(KEY_READ);
  registry.SetRootKey(HKEY_CLASSES_ROOT);
  ASSERT_TRUE(registry.OpenKeyReadOnly(u"\\." + ext16));
  EXPECT_EQ(registry.ReadString(u""), ext16 + u"_file");
  ASSERT_TRUE(registry.OpenKeyReadOnly(u"\\" + ext16 + u"_file\\DefaultIcon"));
  EXPECT_EQ(registry.ReadString(u""), u"C:\\Nox\\nox.exe,1");
  ASSERT_TRUE(registry.OpenKeyReadOnly(u"\\" + ext16 + u"_file\\shell\\open\\command"));
  EXPECT_EQ(registry.ReadString(u""), u"\"C:\\Nüx\\nox.exe\" \"%1\"");
  registry.CloseKey();

  rtl::TRegistry cleanup;
  cleanup.SetRootKey(HKEY_CLASSES_ROOT);
  EXPECT_TRUE(cleanup.DeleteKey(u"\\." + ext16));
  EXPECT_TRUE(cleanup.DeleteKey(u"\\" + ext16 + u"_file"));
}

TEST(ProcessWinFileType, TextFilesOpenWithAProgram) {
  const std::u16string file = TempFolder() + u"nox_process_test.txt";
  ASSERT_TRUE(nox_test::WriteBytes(file, ""));
  // Whatever the system associates (Wine's notepad, or nothing in a bare prefix), the answer
  // is a program that exists.
  const std::u16string program = GetExeForFile(file);
  DeleteFileW(W(file));
  if (!program.empty()) {
    EXPECT_NE(GetFileAttributesW(W(program)), INVALID_FILE_ATTRIBUTES)
        << rtl::Utf16ToUtf8(program);
  }
  EXPECT_EQ(GetExeForFile(u"C:\\nox_missing_folder\\missing.txt"), u"");
}

}  // namespace
