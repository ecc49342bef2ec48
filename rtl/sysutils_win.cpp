// The file-name helpers that ask the system (rtl/sysutils.h).
#include <windows.h>

#include "rtl/sysutils.h"

namespace rtl {

std::u16string GetModuleName(HMODULE module) {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD n = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (n == 0) return {};
    if (n < path.size()) return std::u16string(path.begin(), path.begin() + n);
    path.resize(path.size() * 2);  // cut off: ask again with more room
  }
}

HINSTANCE HInstance() {
  static const HINSTANCE instance = [] {
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&HInstance), &module);
    return module;
  }();
  return instance;
}

}  // namespace rtl
