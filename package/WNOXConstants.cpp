#include "package/WNOXConstants.h"

#include <windows.h>

#include "package/resource_ids.h"
#include "rtl/unitinit.h"

namespace WNOXConstants {

const unsigned sPluginName = IDS_PLUGIN_NAME;

namespace {
rtl::TUnitCounter Counter;  // no start or stop work: counted only

// The module that holds this code: the package, also when a host links it in statically.
HMODULE ThisModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                         GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&ThisModule), &module);
  return module;
}
}  // namespace

std::u16string LoadResString(unsigned id) {
  // With a zero buffer size LoadStringW hands out a pointer into the resource itself.
  const wchar_t* text = nullptr;
  const int length = LoadStringW(ThisModule(), id, reinterpret_cast<LPWSTR>(&text), 0);
  if (length <= 0 || text == nullptr) return {};
  return std::u16string(reinterpret_cast<const char16_t*>(text), static_cast<size_t>(length));
}

void Initialize() { Counter.Start(); }
void Finalize() { Counter.Stop(); }

}  // namespace WNOXConstants
