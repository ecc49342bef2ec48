// Loading and unloading a package as the IDE does it: LoadLibrary, then its Initialize
// and Register; at the end Finalize and FreeLibrary. Every step is logged.
#pragma once

#include <string>

#include "rtl/handles.h"

namespace devhost {

class TPackage {
 public:
  // False when the library does not load or lacks Initialize or Register (the steps
  // that could be done are done and logged).
  bool Load(const std::wstring& fileName);
  // Calls Finalize; what the package left registered must be let go of before Free.
  void Finalize();
  // FreeLibrary; nothing when nothing is loaded.
  void Free();
  bool Loaded() const { return static_cast<bool>(module_); }

 private:
  // Calls the exported procedure `name`; false when it is missing or throws.
  bool Call(const char* name);
  rtl::unique_hmodule module_;
};

}  // namespace devhost
