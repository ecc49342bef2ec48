// recordargs.exe: writes the command line it was started with and its working folder, one
// per line in UTF-8, to the file named by NOX_RECORD_FILE, so that a test can see exactly
// how a program was started. Writes nothing when the variable is missing.
#include <windows.h>

#include <string>

namespace {

std::string Utf8(const wchar_t* s, int n) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, s, n, nullptr, 0, nullptr, nullptr);
  std::string r(static_cast<size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, s, n, r.data(), size, nullptr, nullptr);
  return r;
}

}  // namespace

int wmain() {
  wchar_t target[MAX_PATH] = {};
  if (GetEnvironmentVariableW(L"NOX_RECORD_FILE", target, MAX_PATH) == 0) return 1;
  wchar_t folder[MAX_PATH] = {};
  const DWORD folderLength = GetCurrentDirectoryW(MAX_PATH, folder);
  const wchar_t* line = GetCommandLineW();
  const std::string record = Utf8(line, lstrlenW(line)) + "\n" +
                             Utf8(folder, static_cast<int>(folderLength)) + "\n";
  const HANDLE file = CreateFileW(target, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return 2;
  DWORD written = 0;
  WriteFile(file, record.data(), static_cast<DWORD>(record.size()), &written, nullptr);
  CloseHandle(file);
  return 0;
}
