// The file operations on a real system: Win32 file and attribute calls, the shell's file
// operation, version resources, the network connection dialog and the clipboard.
#include <windows.h>

#include <shellapi.h>
#include <winnetwk.h>

#include <algorithm>
#include <string>
#include <vector>

#include "dialog/QMMessageDlgVCL.h"
#include "rtl/encoding.h"
#include "rtl/handles.h"
#include "rtl/sysutils.h"
#include "rtl/wide.h"
#include "tools/fileops.h"
#include "tools/paths.h"
#include "ui/application.h"
#include "ui/forms.h"

namespace Qm_tools {

using rtl::W;

namespace {

std::u16string FullPath(const std::u16string& name) {
  wchar_t buf[MAX_PATH * 4];
  const DWORD n = GetFullPathNameW(W(name), static_cast<DWORD>(std::size(buf)), buf, nullptr);
  if (n == 0 || n >= std::size(buf)) return name;
  return std::u16string(reinterpret_cast<const char16_t*>(buf), n);
}

// The first folder entry matching the expanded name.
bool FindEntry(const std::u16string& name, WIN32_FIND_DATAW& data) {
  const HANDLE h = FindFirstFileW(W(FullPath(name)), &data);
  if (h == INVALID_HANDLE_VALUE) return false;
  FindClose(h);
  return true;
}

rtl::TDateTime FromFileTime(const FILETIME& utc) {
  FILETIME local;
  WORD date = 0, time = 0;
  FileTimeToLocalFileTime(&utc, &local);
  FileTimeToDosDateTime(&local, &date, &time);
  return rtl::FileDateToDateTime(static_cast<std::int32_t>(static_cast<DWORD>(date) << 16 | time));
}

FILETIME ToFileTime(rtl::TDateTime value) {
  const auto dos = static_cast<DWORD>(rtl::DateTimeToFileDate(value));
  FILETIME local{}, utc{};
  DosDateTimeToFileTime(HIWORD(dos), LOWORD(dos), &local);
  LocalFileTimeToFileTime(&local, &utc);
  return utc;
}

std::vector<std::uint8_t> ReadBytes(const std::u16string& name) {
  std::vector<std::uint8_t> bytes;
  rtl::unique_hfile f(CreateFileW(W(name), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, OPEN_EXISTING, 0, nullptr));
  LARGE_INTEGER size{};
  if (!f || !GetFileSizeEx(f.get(), &size)) return bytes;
  bytes.resize(static_cast<std::size_t>(size.QuadPart));
  std::size_t done = 0;
  while (done < bytes.size()) {
    DWORD got = 0;
    const DWORD want = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - done, 1u << 30));
    if (!ReadFile(f.get(), bytes.data() + done, want, &got, nullptr) || got == 0) break;
    done += got;
  }
  bytes.resize(done);
  return bytes;
}

bool ShellDelete(const std::u16string& name, FILEOP_FLAGS flags) {
  std::u16string from = name;
  from.push_back(u'\0');  // the list ends with an empty name
  SHFILEOPSTRUCTW op{};
  op.wFunc = FO_DELETE;
  op.pFrom = W(from);
  op.fFlags = flags;
  return SHFileOperationW(&op) == 0;
}

std::u16string SystemErrorText(DWORD code) {
  wchar_t buf[256];
  const DWORD n = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                 nullptr, code, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), buf,
                                 255, nullptr);
  return std::u16string(reinterpret_cast<const char16_t*>(buf), n);
}

}  // namespace

bool qm_CopyFile(const std::u16string& Source, const std::u16string& Dest) {
  const std::u16string destDir = rtl::ExtractFilePath(Dest);
  if (!destDir.empty() && !ForceDirectories(destDir)) return false;
  const DWORD attr = GetFileAttributesW(W(Source));
  const bool unlocked = attr != INVALID_FILE_ATTRIBUTES && (attr & FILE_ATTRIBUTE_READONLY);
  if (unlocked) SetFileAttributesW(W(Source), attr & ~FILE_ATTRIBUTE_READONLY);
  if (attr != INVALID_FILE_ATTRIBUTES) {
    if (!CopyFileW(W(Source), W(Dest), FALSE)) {
      // A locked or read-only Dest, a full disk: the caller learns why. Source gets its
      // read-only bit back first.
      const DWORD code = GetLastError();
      if (unlocked) SetFileAttributesW(W(Source), attr);
      throw rtl::EInOutError(u"Kopieren von " + Source + u" nach " + Dest +
                                 u" fehlgeschlagen: " + SystemErrorText(code),
                             code);
    }
    if (GetFileAttributesW(W(Dest)) == INVALID_FILE_ATTRIBUTES) {
      if (unlocked) SetFileAttributesW(W(Source), attr);
      return false;
    }
    if (unlocked) SetFileAttributesW(W(Source), attr);
    SetFileAttributesW(W(Dest), attr);
  }
  // A missing Source is not an error for the callers, which copy optional files.
  return true;
}

bool qm_MoveFile(const std::u16string& Source, const std::u16string& Dest) {
  const std::u16string destDir = rtl::ExtractFilePath(Dest);
  if (!destDir.empty() && !ForceDirectories(destDir)) return false;
  const DWORD attr = GetFileAttributesW(W(Source));
  if (MoveFileW(W(Source), W(Dest))) return true;
  if (!qm_CopyFile(Source, Dest)) return false;
  // A read-only Source is not deleted: the move reports false and both copies stay.
  if (!DeleteFileW(W(Source))) return false;
  return SetFileAttributesW(W(Dest), attr) != 0;
}

bool DelDir(const std::u16string& Dir) { return ShellDelete(Dir, 0x14); }

bool RecycleFile(const std::u16string& FileName) { return ShellDelete(FileName, 0x50); }

bool SetWriteProtect(const std::u16string& FileName) {
  const DWORD attr = GetFileAttributesW(W(FileName));
  if (attr != INVALID_FILE_ATTRIBUTES && !(attr & FILE_ATTRIBUTE_READONLY))
    SetFileAttributesW(W(FileName), attr | FILE_ATTRIBUTE_READONLY);
  return true;
}

bool RemoveWriteProtect(const std::u16string& FileName) {
  const DWORD attr = GetFileAttributesW(W(FileName));
  if (attr != INVALID_FILE_ATTRIBUTES && (attr & FILE_ATTRIBUTE_READONLY))
    SetFileAttributesW(W(FileName), attr & ~FILE_ATTRIBUTE_READONLY);
  return true;
}

bool IsWriteProtect(const std::u16string& FileName) {
  const DWORD attr = GetFileAttributesW(W(FileName));
  return attr != INVALID_FILE_ATTRIBUTES && (attr & FILE_ATTRIBUTE_READONLY);
}

void SetFileHiddenAttribute(const std::u16string& FileName) {
  const std::u16string name = FullPath(FileName);
  const DWORD attr = GetFileAttributesW(W(name));
  if (attr == INVALID_FILE_ATTRIBUTES)
    throw EFileAttributeError(u"Datei nicht gefunden: " + name);
  SetFileAttributesW(W(name), attr | FILE_ATTRIBUTE_HIDDEN);
}

bool SetFileTimes(const std::u16string& FileName, rtl::TDateTime Created,
                  rtl::TDateTime Accessed, rtl::TDateTime Written) {
  rtl::unique_hfile f(CreateFileW(W(FileName), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, OPEN_EXISTING, 0, nullptr));
  if (!f) return false;
  const FILETIME created = ToFileTime(Created);
  const FILETIME accessed = ToFileTime(Accessed);
  const FILETIME written = ToFileTime(Written);
  SetFileTime(f.get(), &created, nullptr, nullptr);
  SetFileTime(f.get(), nullptr, &accessed, nullptr);
  SetFileTime(f.get(), nullptr, nullptr, &written);
  return true;
}

bool GetFileTimes(const std::u16string& FileName, rtl::TDateTime& Created,
                  rtl::TDateTime& Accessed, rtl::TDateTime& Written) {
  WIN32_FIND_DATAW data;
  const HANDLE h = FindFirstFileW(W(FileName), &data);
  if (h == INVALID_HANDLE_VALUE) return false;
  FindClose(h);
  Created = FromFileTime(data.ftCreationTime);
  Accessed = FromFileTime(data.ftLastAccessTime);
  Written = FromFileTime(data.ftLastWriteTime);
  return true;
}

rtl::TDateTime GetModifyDate(const std::u16string& FileName) {
  rtl::unique_hfile f(CreateFileW(W(FileName), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, 0, nullptr));
  FILETIME written;
  if (!f || !GetFileTime(f.get(), nullptr, nullptr, &written)) return rtl::Now();
  return FromFileTime(written);
}

rtl::TDateTime GetFileDateTime(const std::u16string& FileName) {
  WIN32_FIND_DATAW data;
  if (!FindEntry(FileName, data)) return rtl::Now();
  return FromFileTime(data.ftLastWriteTime);
}

rtl::TDateTime qm_GetFileAge(const std::u16string& FileName) {
  // Opening without FILE_FLAG_OPEN_REPARSE_POINT reaches the file a link points to.
  rtl::unique_hfile f(CreateFileW(W(FileName), FILE_READ_ATTRIBUTES,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  FILETIME written, local;
  SYSTEMTIME st;
  if (!f || !GetFileTime(f.get(), nullptr, nullptr, &written) ||
      !FileTimeToLocalFileTime(&written, &local) || !FileTimeToSystemTime(&local, &st))
    return rtl::Now();
  return rtl::EncodeDateTime(st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond,
                             st.wMilliseconds);
}

std::int64_t qm_GetFileSize(const std::u16string& FileName) {
  WIN32_FIND_DATAW data;
  if (!FindEntry(FileName, data)) return -1;
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(data.nFileSizeHigh) << 32 |
                                   data.nFileSizeLow);
}

bool qm_FileExists(const std::u16string& FileName) { return FileExists(FileName); }

void SaveAnsiStringToFile(const std::u16string& Text, const std::u16string& FileName) {
  const std::vector<std::uint8_t> bytes = rtl::TEncoding::ANSI()->GetBytes(Text);
  rtl::unique_hfile f(CreateFileW(W(FileName), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  // A file that cannot be made or written is not reported, as the family's failures are not.
  if (!f) return;
  DWORD written = 0;
  if (!bytes.empty())
    WriteFile(f.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

void CompareThisFiles(const std::u16string& File1, const std::u16string& File2) {
  const std::u16string header =
      CompareFilesHeader(qm_GetFileSize(File1), File1, qm_GetFileSize(File2), File2);
  const std::u16string text = CompareFilesText(ReadBytes(File1), File1, ReadBytes(File2), File2);
  QMMessageDlgVCL::ShowMessage(header + u"\r" + text);
}

std::u16string GetBuildNumber(const std::u16string& FileName) {
  DWORD dummy = 0;
  const DWORD size = GetFileVersionInfoSizeW(W(FileName), &dummy);
  if (size == 0) return u"";
  // The numbers are read from the running program whatever FileName is: callers ask for
  // their own build with their own name.
  wchar_t exe[MAX_PATH];
  if (GetModuleFileNameW(nullptr, exe, MAX_PATH) == 0) return u"";
  std::vector<std::uint8_t> data(size);
  if (!GetFileVersionInfoW(exe, 0, size, data.data())) return u"";
  VS_FIXEDFILEINFO* info = nullptr;
  UINT len = 0;
  if (!VerQueryValueW(data.data(), L"\\", reinterpret_cast<void**>(&info), &len) || !info ||
      len < sizeof(VS_FIXEDFILEINFO))
    return u"";
  const std::u16string version =
      rtl::IntToStr(HIWORD(info->dwFileVersionMS)) + u"." +
      rtl::IntToStr(LOWORD(info->dwFileVersionMS)) + u"." +
      rtl::IntToStr(HIWORD(info->dwFileVersionLS)) + u"." +
      rtl::IntToStr(LOWORD(info->dwFileVersionLS));
  return version.substr(version.rfind(u'.') + 1);
}

bool DiskinDrive(const std::u16string& Path) {
  if (Path.empty()) return false;
  if (Path.starts_with(u"\\\\")) return true;
  const UINT oldMode = SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  WIN32_FIND_DATAW data;
  const std::u16string pattern = chkPath(rtl::ExtractFilePath(Path)) + u"*.*";
  const HANDLE h = FindFirstFileW(W(pattern), &data);
  const DWORD code = h == INVALID_HANDLE_VALUE ? GetLastError() : 0;
  if (h != INVALID_HANDLE_VALUE) FindClose(h);
  SetErrorMode(oldMode);
  return code == 0 || code == ERROR_FILE_NOT_FOUND || code == ERROR_NO_MORE_FILES;
}

bool ConnectWithNetPath(const std::u16string& RemotePath) {
  std::u16string remote = RemotePath;
  NETRESOURCEW res{};
  res.dwType = RESOURCETYPE_DISK;
  res.lpRemoteName = const_cast<wchar_t*>(W(remote));
  ui::TCustomForm* mainForm = ui::Application->MainForm();
  const HWND owner = mainForm ? mainForm->Handle() : ui::Application->Handle();
  return WNetAddConnection3W(owner, &res, nullptr, nullptr, CONNECT_INTERACTIVE) == NO_ERROR;
}

bool GetFileListFromClipBoard(rtl::TStrings& List) {
  if (!IsClipboardFormatAvailable(CF_HDROP)) return false;
  ui::TCustomForm* mainForm = ui::Application->MainForm();
  if (!OpenClipboard(mainForm ? mainForm->Handle() : nullptr)) return false;
  if (const auto drop = static_cast<HDROP>(GetClipboardData(CF_HDROP))) {
    const UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
      wchar_t name[MAX_PATH + 1];
      const UINT n = DragQueryFileW(drop, i, name, MAX_PATH);
      List.Add(std::u16string(reinterpret_cast<const char16_t*>(name), n));
    }
  }
  CloseClipboard();
  return List.Count() > 0;
}

std::u16string GetlastErrorDesc() {
  const DWORD code = GetLastError();
  return u"Fehlernummer: " + rtl::IntToStr(code) + u": " + SystemErrorText(code);
}

std::uint32_t GetlastErrorInfo(std::u16string& Text) {
  const DWORD code = GetLastError();
  Text = u"Fehlernummer: " + rtl::IntToStr(code) + u"\r\n" + SystemErrorText(code);
  return code;
}

}  // namespace Qm_tools
