// The path routines that ask the system (tools/paths.h): the program's folder and drive,
// shell folders and the folder dialog, the environment, temporary files and folders.
#include <windows.h>

#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

#include <string>

#include "rtl/handles.h"
#include "rtl/locale.h"
#include "rtl/sysutils.h"
#include "rtl/ustring.h"
#include "rtl/wide.h"
#include "tools/paths.h"
#include "tools/qm_globals.h"

namespace Qm_tools {

using rtl::W;

namespace {

std::u16string U(const wchar_t* s) {
  return s == nullptr ? u"" : reinterpret_cast<const char16_t*>(s);
}
std::u16string U(const wchar_t* s, size_t n) {
  return std::u16string(reinterpret_cast<const char16_t*>(s), n);
}

// An item list from the shell, freed with the task allocator.
struct TItemList {
  LPITEMIDLIST pidl = nullptr;
  ~TItemList() { CoTaskMemFree(pidl); }
};

bool IsMobile() { return DiskMode == u"Mobile"; }

std::u16string Mapped(std::u16string_view arg, TPortableMapping mapping) {
  if (!IsMobile()) return std::u16string(arg);
  return MapPortable(arg, AppPath(), mapping, &FileExists, &DirectoryExists);
}

std::u16string PathFromItemList(LPCITEMIDLIST pidl) {
  wchar_t path[MAX_PATH] = {};
  if (!SHGetPathFromIDListW(pidl, path)) return {};
  return U(path);
}

int CALLBACK BrowseCallback(HWND window, UINT msg, LPARAM /*lParam*/, LPARAM /*data*/) {
  if (msg == BFFM_INITIALIZED && !InitFolder.empty()) {
    // A bare drive ("D:") is selected as its root.
    std::u16string folder = InitFolder.size() == 2 ? InitFolder + u"\\" : InitFolder;
    SendMessageW(window, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(W(folder)));
  }
  return 0;
}

}  // namespace

bool FileExists(const std::u16string& FileName) {
  const DWORD a = GetFileAttributesW(W(FileName));
  return a != INVALID_FILE_ATTRIBUTES && !(a & FILE_ATTRIBUTE_DIRECTORY);
}

bool DirectoryExists(const std::u16string& Dir) {
  const DWORD a = GetFileAttributesW(W(Dir));
  return a != INVALID_FILE_ATTRIBUTES && (a & FILE_ATTRIBUTE_DIRECTORY);
}

bool ForceDirectories(const std::u16string& Dir) {
  const std::u16string dir = RemoveSlash(Dir);
  if (dir.empty()) return false;
  if (DirectoryExists(dir)) return true;
  // Every missing level from the top down; each attempt's failure shows in the last test.
  for (size_t at = dir.find(u'\\'); ; at = dir.find(u'\\', at + 1)) {
    const std::u16string level = at == std::u16string::npos ? dir : dir.substr(0, at);
    if (!level.empty() && level.back() != u':' && !DirectoryExists(level))
      CreateDirectoryW(W(level), nullptr);
    if (at == std::u16string::npos) break;
  }
  return DirectoryExists(dir);
}

std::u16string AppPath() { return rtl::ExtractFilePath(rtl::GetModuleName(nullptr)); }

std::u16string GetDiskMode() {
  const std::u16string app = AppPath();
  if (app.empty()) return u"Fixed";
  const std::u16string root = rtl::AnsiLowerCase(app.substr(0, 1)) + u":\\";
  return DiskModeForDriveType(GetDriveTypeW(W(root)));
}

std::u16string GetRelativFile(std::u16string_view FileName) {
  return Mapped(FileName, TPortableMapping::File);
}
std::u16string GetStrictRelativFile(std::u16string_view FileName) {
  return Mapped(FileName, TPortableMapping::StrictFile);
}
std::u16string GetRelativPath(std::u16string_view Path) {
  return Mapped(Path, TPortableMapping::Path);
}
std::u16string GetStrictRelativPath(std::u16string_view Path) {
  return Mapped(Path, TPortableMapping::StrictPath);
}

std::u16string qm_GetExpandedFilename(std::u16string_view FileName) {
  return ExpandedFilename(FileName, [](const std::u16string& partial) -> std::u16string {
    SHFILEINFOW info{};
    if (SHGetFileInfoW(W(partial), 0, &info, sizeof(info), SHGFI_DISPLAYNAME) == 0) return {};
    return U(info.szDisplayName);
  });
}

std::u16string GetWindowsPath() {
  wchar_t path[MAX_PATH + 1] = {};
  const UINT n = GetWindowsDirectoryW(path, MAX_PATH);
  return n > MAX_PATH ? std::u16string() : U(path, n);
}

std::u16string GetSystemPath() {
  wchar_t path[MAX_PATH + 1] = {};
  const UINT n = GetSystemDirectoryW(path, MAX_PATH);
  return n > MAX_PATH ? std::u16string() : U(path, n);
}

std::u16string GetEnvironment(std::u16string_view Name) {
  const std::u16string name(Name);
  std::wstring buffer(255, L'\0');
  DWORD n = GetEnvironmentVariableW(W(name), buffer.data(), 255);
  if (n > 255) {
    // Too long for the first buffer: n is the size it needs.
    buffer.assign(n + 1, L'\0');
    n = GetEnvironmentVariableW(W(name), buffer.data(), n + 1);
    if (n > buffer.size()) n = 0;
  }
  return U(buffer.c_str(), n);
}

std::u16string GetSpecialFolder(int CSIDL) {
  TItemList items;
  if (FAILED(SHGetSpecialFolderLocation(nullptr, CSIDL, &items.pidl))) return {};
  return PathFromItemList(items.pidl);
}

std::u16string Getfolder(int Root, std::u16string_view Title) {
  TItemList root;
  if (FAILED(SHGetSpecialFolderLocation(nullptr, Root, &root.pidl))) root.pidl = nullptr;
  const std::u16string title(Title);
  wchar_t display[MAX_PATH] = {};
  BROWSEINFOW info{};
  info.hwndOwner = GetActiveWindow();
  info.pidlRoot = root.pidl;
  info.pszDisplayName = display;
  info.lpszTitle = W(title);
  info.ulFlags = 0x41;  // file-system folders only, new dialog style
  info.lpfn = &BrowseCallback;
  TItemList chosen;
  chosen.pidl = SHBrowseForFolderW(&info);
  if (chosen.pidl == nullptr) return {};
  std::u16string result;
  // In the network neighbourhood a computer has a name but no path.
  if (Root == CSIDL_NETWORK) result = U(display);
  const std::u16string path = PathFromItemList(chosen.pidl);
  if (!path.empty()) result = path;
  return result;
}

std::u16string GetInitfolder(std::u16string_view Init, int Root, std::u16string_view Title) {
  InitFolder = Init.size() > 3 ? RemoveSlash(Init) : std::u16string(Init);
  return Getfolder(Root, Title);
}

std::u16string GetUserProfilePath() {
  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof(version);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  const bool nt = GetVersionExW(&version) && version.dwPlatformId == VER_PLATFORM_WIN32_NT;
#pragma GCC diagnostic pop
  const wchar_t* key = nt ? L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList"
                          : L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\ProfileList";
  HKEY opened = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, key, 0, KEY_READ, &opened) != ERROR_SUCCESS) return {};
  wchar_t value[1024] = {};
  DWORD size = sizeof(value) - sizeof(wchar_t);
  DWORD type = 0;
  std::u16string dir;
  if (RegQueryValueExW(opened, L"ProfilesDirectory", nullptr, &type,
                       reinterpret_cast<BYTE*>(value), &size) == ERROR_SUCCESS &&
      (type == REG_SZ || type == REG_EXPAND_SZ))
    dir = U(value);
  RegCloseKey(opened);
  const std::u16string windows = GetWindowsPath();
  dir = rtl::StringReplaceAll(dir, u"%SystemDrive%", windows.substr(0, 2));
  if (dir.empty()) dir = chkPath(windows) + u"Profiles";
  return dir;
}

std::u16string GetProgPath(std::u16string_view Ext) {
  std::u16string ext(Ext);
  if (!ext.empty() && ext[0] == u'.') ext.erase(0, 1);
  wchar_t value[MAX_PATH] = {};
  const DWORD n = GetProfileStringW(L"Extensions", W(ext), L"", value, MAX_PATH);
  std::u16string program = U(value, n);
  // Entries read "program ^.ext": the program is what comes before the marker.
  const size_t marker = program.find(u'^');
  if (marker != std::u16string::npos) program = rtl::Trim(program.substr(0, marker));
  return program;
}

std::u16string GetTmpDir() {
  wchar_t path[256] = {};
  const DWORD n = GetTempPathW(255, path);
  return n > 255 ? std::u16string() : U(path, n);
}

std::u16string GetmyTmpFile(std::u16string_view Prefix) {
  const std::u16string prefix(Prefix);
  wchar_t name[MAX_PATH] = {};
  if (GetTempFileNameW(W(GetTmpDir()), W(prefix), 0, name) == 0) return {};
  return U(name);
}

std::u16string GetModusTmpFile(bool InDataFolder, std::u16string_view Prefix) {
  if (!InDataFolder) return GetmyTmpFile(Prefix);
  const std::u16string folder = chkPath(ProgDataPath) + u"Temp";
  if (!DirectoryExists(folder)) ForceDirectories(folder);
  if (!DirectoryExists(folder)) return GetmyTmpFile(Prefix);
  const std::u16string prefix(Prefix);
  wchar_t name[MAX_PATH] = {};
  if (GetTempFileNameW(W(folder), W(prefix), 0, name) == 0) return {};
  return U(name);
}

std::u16string GetModusTmpDir(bool InDataFolder) {
  if (!InDataFolder) return GetTmpDir();
  const std::u16string folder = chkPath(ProgDataPath) + u"Temp";
  if (!DirectoryExists(folder)) ForceDirectories(folder);
  return DirectoryExists(folder) ? folder : GetTmpDir();
}

std::u16string GetModusTmpNewDir(bool InDataFolder) {
  GUID guid{};
  CoCreateGuid(&guid);
  wchar_t text[40] = {};
  StringFromGUID2(guid, text, 40);
  const std::u16string tag = U(text).substr(1, 8);
  const std::u16string folder =
      InDataFolder ? chkPath(ProgDataPath) + u"Temp-" + tag : chkPath(GetTmpDir()) + tag;
  ForceDirectories(folder);
  return DirectoryExists(folder) ? folder : GetTmpDir();
}

std::u16string GetNotExistingFilename(std::u16string_view FileName) {
  return GetNotExistingFilename(FileName, u"1");
}

std::u16string GetNotExistingFilename(std::u16string_view FileName,
                                      std::u16string_view StartNr) {
  return NotExistingFilename(FileName, StartNr, &FileExists);
}

std::u16string GetNotExistingDirName(std::u16string_view Dir) {
  return NotExistingDirName(Dir, &DirectoryExists);
}

}  // namespace Qm_tools
