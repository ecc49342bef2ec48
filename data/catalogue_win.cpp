// The registry look-ups of the IDE version catalogue: whether a version's key is there and
// what its values hold. Failures of any kind answer false; nothing escapes to the caller.
#include "data/NOXEData.h"
#include "rtl/registry.h"

namespace NOXEData {

bool RegKeyExists(const std::u16string& Key, HKEY RootKey) {
  try {
    rtl::TRegistry reg;
    reg.SetRootKey(RootKey);
    return reg.KeyExists(Key);
  } catch (...) {
    return false;
  }
}

bool RegReadStr(const std::u16string& Key, const std::u16string& Name, std::u16string& Value,
                HKEY RootKey) {
  try {
    rtl::TRegistry reg;
    reg.SetRootKey(RootKey);
    if (!reg.OpenKeyReadOnly(Key)) return false;
    Value = reg.ReadString(Name);
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace NOXEData
