#include "package/WNOXConstants.h"

#include <windows.h>

#include "package/resource_ids.h"
#include "rtl/sysutils.h"
#include "rtl/unitinit.h"

namespace WNOXConstants {

const unsigned sPluginName = IDS_PLUGIN_NAME;

namespace {
rtl::TUnitCounter Counter;  // no start or stop work: counted only
}  // namespace

std::u16string LoadResString(unsigned id) {
  // With a zero buffer size LoadStringW hands out a pointer into the resource itself.
  const wchar_t* text = nullptr;
  const int length = LoadStringW(rtl::HInstance(), id, reinterpret_cast<LPWSTR>(&text), 0);
  if (length <= 0 || text == nullptr) return {};
  return std::u16string(reinterpret_cast<const char16_t*>(text), static_cast<size_t>(length));
}

void Initialize() { Counter.Start(); }
void Finalize() { Counter.Stop(); }

}  // namespace WNOXConstants
