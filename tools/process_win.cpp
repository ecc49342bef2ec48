// The process routines that call the shell and the process API (tools/process.h). The
// rules they follow (splits, command lines, texts, registry entries) are in process.cpp.
#include <windows.h>

#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

#include <string>

#include "dialog/QMMessageDlgVCL.h"
#include "rtl/com.h"
#include "rtl/encoding.h"
#include "rtl/handles.h"
#include "rtl/registry.h"
#include "rtl/sysutils.h"
#include "rtl/ustring.h"
#include "rtl/wide.h"
#include "tools/process.h"

namespace Qm_tools {

using rtl::W;

namespace {

// Null for "": the shell and the process API read an empty text differently from none.
const wchar_t* WOrNull(const std::u16string& s) { return s.empty() ? nullptr : W(s); }
std::u16string U(const wchar_t* s) { return reinterpret_cast<const char16_t*>(s); }
HWND Hwnd(std::uintptr_t wnd) { return reinterpret_cast<HWND>(wnd); }

// An 8-bit text of the ANSI code page as UTF-16.
std::u16string Widened(const std::string& s) {
  return rtl::TEncoding::ANSI()->GetString(reinterpret_cast<const std::uint8_t*>(s.data()),
                                           s.size());
}

int ShellCode(HINSTANCE result) { return static_cast<int>(reinterpret_cast<INT_PTR>(result)); }

}  // namespace

bool qm_ShellExecute(std::uintptr_t Wnd, const std::u16string& Operation,
                     const std::u16string& FileName, const std::u16string& Params,
                     const std::u16string& DefaultDir, int ShowCmd) {
  const int code = ShellCode(ShellExecuteW(Hwnd(Wnd), W(Operation), W(FileName), W(Params),
                                           W(DefaultDir), ShowCmd));
  if (code <= 32) QMMessageDlgVCL::ShowMessage(ShellErrorText(code));
  return true;
}

void Shellparaline(const std::u16string& line) {
  if (line.empty()) return;
  const TShellLine split = SplitShellLine(line);
  const int code = ShellCode(ShellExecuteW(nullptr, L"open", W(split.File),
                                           WOrNull(split.Params), nullptr, SW_SHOW));
  if (code <= 32) QMMessageDlgVCL::ShowMessage(ShellOpenFailedText(split.File));
}

void RunFileWith(const std::u16string& file) {
  const std::u16string params = u"shell32.dll,OpenAs_RunDLL " + file;
  const std::u16string folder = rtl::ExtractFilePath(file);
  ShellExecuteW(nullptr, L"open", L"rundll32.exe", W(params), WOrNull(folder), SW_SHOW);
}

bool ShowProperties(std::uintptr_t Wnd, const std::u16string& file, const wchar_t* params) {
  SHELLEXECUTEINFOW info{};
  info.cbSize = sizeof(info);
  info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_INVOKEIDLIST | SEE_MASK_FLAG_NO_UI;
  info.hwnd = Hwnd(Wnd);
  info.lpVerb = L"properties";
  info.lpFile = W(file);
  info.lpParameters = params;
  info.nShow = SW_HIDE;
  const bool ok = ShellExecuteExW(&info) != FALSE;
  rtl::unique_handle process(info.hProcess);
  return ok;
}

bool ExecAndWait(const std::u16string& program, const std::u16string& parameters, WORD show) {
  std::u16string commandLine = ExecCommandLine(program, parameters);
  const std::u16string folder = rtl::ExtractFilePath(program);
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = show;
  PROCESS_INFORMATION info{};
  if (!CreateProcessW(nullptr, W(commandLine), nullptr, nullptr,
                      FALSE, CREATE_NEW_CONSOLE | NORMAL_PRIORITY_CLASS, nullptr,
                      WOrNull(folder), &startup, &info))
    return false;
  // The library this replaces left both handles open, one pair per call; callers that
  // start a program in a loop ran out of handles, so they are closed after the wait.
  rtl::unique_handle process(info.hProcess);
  rtl::unique_handle thread(info.hThread);
  WaitForSingleObject(process.get(), INFINITE);
  return true;
}

bool RunFileAsAdminUser(std::uintptr_t Wnd, const std::u16string& file,
                        const std::u16string& parameters) {
  std::u16string target = file;
  std::u16string params = parameters;
  if (RunsThroughAssociation(file, parameters)) {
    const std::u16string program = GetExeForFile(file);
    if (!program.empty()) {
      params = file;
      target = program;
    }
  }
  SHELLEXECUTEINFOW info{};
  info.cbSize = sizeof(info);
  info.hwnd = Hwnd(Wnd);
  info.lpVerb = L"runas";
  info.lpFile = W(target);
  info.lpParameters = WOrNull(params);
  info.nShow = SW_SHOWNORMAL;
  return ShellExecuteExW(&info) != FALSE;
}

std::uint32_t CreateProcessAsLogon(const std::u16string& user, const std::u16string& password,
                                   const std::u16string& program,
                                   const std::u16string& parameters) {
  std::u16string commandLine = LogonCommandLine(program, parameters);
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = SW_SHOWNORMAL;
  PROCESS_INFORMATION info{};
  SetLastError(0);
  const BOOL created = CreateProcessWithLogonW(
      W(user), nullptr, W(password), 0, nullptr, W(commandLine),
      CREATE_DEFAULT_ERROR_MODE, nullptr, nullptr, &startup, &info);
  const DWORD error = GetLastError();
  if (created) {
    rtl::unique_handle process(info.hProcess);
    rtl::unique_handle thread(info.hThread);
  }
  return error;
}

std::u16string GetExeForFile(const std::u16string& file) {
  wchar_t buffer[MAX_PATH] = {};
  // 32 itself counts as found, as it always has for the callers.
  if (ShellCode(FindExecutableW(W(file), nullptr, buffer)) >= 32) return U(buffer);
  return u"";
}

std::u16string GetExeFromLink(const std::u16string& link, std::u16string& arguments) {
  const rtl::TComScope com;
  rtl::TComPtr<IShellLinkW> shellLink;
  if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                              shellLink.put_void())))
    return u"";
  rtl::TComPtr<IPersistFile> file;
  if (FAILED(shellLink->QueryInterface(IID_IPersistFile, file.put_void()))) return u"";
  if (file->Load(W(link), STGM_READ) != S_OK) return u"";
  wchar_t path[MAX_PATH] = {};
  wchar_t args[MAX_PATH] = {};
  WIN32_FIND_DATAW data{};
  shellLink->GetPath(path, MAX_PATH, &data, SLGP_UNCPRIORITY);
  shellLink->GetArguments(args, MAX_PATH);
  arguments = U(args);
  // The icon location is read as the callers' link readers do, but not returned.
  wchar_t icon[MAX_PATH] = {};
  int iconIndex = 0;
  shellLink->GetIconLocation(icon, MAX_PATH, &iconIndex);
  return U(path);
}

void RegisterFileType(const std::string& program, const std::string& /*unused*/,
                      const std::string& extension, const std::string& icon) {
  rtl::TRegistry registry;
  registry.SetRootKey(HKEY_CLASSES_ROOT);
  for (const TRegistryEntry& entry :
       FileTypeEntries(Widened(program), Widened(extension), Widened(icon))) {
    if (registry.OpenKey(u"\\" + entry.Key, true)) registry.WriteString(u"", entry.Value);
    registry.CloseKey();
  }
}

}  // namespace Qm_tools
