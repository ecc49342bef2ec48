// The process routines under Wine, with recordargs.exe as the program started.
#include <windows.h>

#include <objbase.h>
#include <shlobj.h>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <sstream>
#include <string>
#include <utility>
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

// ExecAndWait waits without end: a recorder that hangs is ended after 30 s.
bool ExecAndWaitBounded(const std::u16string& program, const std::u16string& params) {
  auto run = std::async(std::launch::async, [&] { return ExecAndWait(program, params, SW_HIDE); });
  if (run.wait_for(std::chrono::seconds(30)) == std::future_status::timeout) {
    nox_test::EndProcesses(L"recordargs.exe");
    run.wait();
    ADD_FAILURE() << "recordargs.exe did not end within 30 s";
    return false;
  }
  return run.get();
}

// The record lines of the recordargs.exe that `start` starts (through the shell: later).
std::vector<std::string> Record(const std::function<void()>& start) {
  const std::u16string file = TempFolder() + u"nox_process_record.txt";
  DeleteFileW(W(file));
  SetEnvironmentVariableW(L"NOX_RECORD_FILE", W(file));
  start();
  SetEnvironmentVariableW(L"NOX_RECORD_FILE", nullptr);
  std::string text = nox_test::ReadBytes(file);
  for (int i = 0; i < 300 && text.find('\n') == std::string::npos; ++i, Sleep(100))
    text = nox_test::ReadBytes(file);
  DeleteFileW(W(file));
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> Record(const std::u16string& params) {
  return Record([&] { EXPECT_TRUE(ExecAndWaitBounded(kRecordArgs, params)); });
}

TEST(ProcessWinShell, AFailureShowsTheShellsReasonOrNothingAndStillSucceeds) {
  // The second is an existing file of a type nothing is registered for: no text for its code.
  const std::u16string noAssoc = TempFolder() + u"nox_process_test.noxnoassoc";
  ASSERT_TRUE(nox_test::WriteBytes(noAssoc, ""));
  const std::pair<std::u16string, std::u16string> cases[] = {
      {u"C:\\nox_missing_folder\\missing.nox", u"Datei wurde nicht gefunden."}, {noAssoc, u""}};
  for (const auto& [file, text] : cases) {
    ShownMessages messages;
    EXPECT_TRUE(qm_ShellExecute(0, u"open", file, u"", u"", SW_SHOWNORMAL));
    EXPECT_EQ(messages.shown, std::vector{text});
  }
  DeleteFileW(W(noAssoc));
}

TEST(ProcessWinExec, StartsTheProgramQuotedInItsFolder) {
  const std::string program = rtl::Utf16ToUtf8(kRecordArgs);
  std::string folder = rtl::Utf16ToUtf8(rtl::ExtractFilePath(kRecordArgs));
  folder.pop_back();  // the working folder comes without its final backslash

  EXPECT_EQ(Record(u""), (std::vector<std::string>{"\"" + program + "\" \"\"", folder}));
  EXPECT_EQ(Record(u"a b"), (std::vector<std::string>{"\"" + program + "\" \"a b\"", folder}));
  EXPECT_FALSE(ExecAndWait(u"C:\\nox_missing_folder\\missing.exe", u"", SW_HIDE));

  // Through the shell, a quoted program alone gets two quotes as parameters.
  ShownMessages messages;
  const auto lines = Record([] { Shellparaline(u"\"" + kRecordArgs + u"\""); });
  EXPECT_TRUE(messages.shown.empty());
  ASSERT_FALSE(lines.empty());
  EXPECT_TRUE(lines[0].ends_with(R"(recordargs.exe" "")")) << lines[0];
}

// This process's open handles, from the system's table (Wine's GetProcessHandleCount is 0).
DWORD OwnHandleCount() {
  struct Entry { ULONG ProcessId; BYTE ObjectTypeNumber, Flags; USHORT Handle; void* Object;
                 ACCESS_MASK GrantedAccess; };
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
  EXPECT_EQ(nox_test::CountProcesses(L"recordargs.exe"), 0);
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

  const std::pair<std::u16string, std::u16string> keys[] = {
      {u"\\." + ext16, ext16 + u"_file"},
      {u"\\" + ext16 + u"_file\\DefaultIcon", u"C:\\Nox\\nox.exe,1"},
      {u"\\" + ext16 + u"_file\\shell\\open\\command", u"\"C:\\Nüx\\nox.exe\" \"%1\""}};
  rtl::TRegistry registry(KEY_READ);
  registry.SetRootKey(HKEY_CLASSES_ROOT);
  for (const auto& [key, value] : keys) {
    EXPECT_TRUE(registry.OpenKeyReadOnly(key)) << rtl::Utf16ToUtf8(key);
    EXPECT_EQ(registry.ReadString(u""), value);
  }
  registry.CloseKey();

  rtl::TRegistry cleanup;
  cleanup.SetRootKey(HKEY_CLASSES_ROOT);
  EXPECT_TRUE(cleanup.DeleteKey(u"\\." + ext16));
  EXPECT_TRUE(cleanup.DeleteKey(u"\\" + ext16 + u"_file"));
}

TEST(ProcessWinFileType, TextFilesOpenWithAProgram) {
  const std::u16string file = TempFolder() + u"nox_process_test.txt";
  ASSERT_TRUE(nox_test::WriteBytes(file, ""));
  // Whatever the system associates (maybe nothing in a bare prefix) is a program that exists.
  const std::u16string program = GetExeForFile(file);
  DeleteFileW(W(file));
  if (!program.empty()) {
    EXPECT_NE(GetFileAttributesW(W(program)), INVALID_FILE_ATTRIBUTES)
        << rtl::Utf16ToUtf8(program);
  }
  EXPECT_EQ(GetExeForFile(u"C:\\nox_missing_folder\\missing.txt"), u"");
}

}  // namespace
