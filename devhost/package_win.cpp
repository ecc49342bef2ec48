#include "devhost/package.h"

#include <exception>
#include <string_view>

#include "devhost/log.h"

namespace devhost {

namespace {
std::wstring Wide(std::string_view s) { return std::wstring(s.begin(), s.end()); }
}  // namespace

bool TPackage::Call(const char* name) {
  using TProc = void (*)();
  const auto proc = reinterpret_cast<TProc>(GetProcAddress(module_.get(), name));
  const std::wstring wname = Wide(name);
  if (proc == nullptr) {
    LogLine(L"missing export " + wname);
    return false;
  }
  // The package is foreign code: an exception from it is the package's fault, reported
  // like one, and must not take the host down with it.
  try {
    proc();
    return true;
  } catch (const std::exception& e) {
    LogLine(L"exception in " + wname + L": " + Wide(e.what()));
  } catch (...) {
    LogLine(L"exception in " + wname);
  }
  return false;
}

bool TPackage::Load(const std::wstring& fileName) {
  module_.reset(LoadLibraryW(fileName.c_str()));
  if (!module_) {
    const DWORD error = GetLastError();
    LogLine(L"load failed path=\"" + fileName + L"\" error=" + std::to_wstring(error));
    return false;
  }
  LogLine(L"loaded path=\"" + fileName + L"\"");
  if (!Call("Initialize")) return false;
  LogLine(L"initialized");
  if (!Call("Register")) return false;
  LogLine(L"Register done");
  return true;
}

void TPackage::Finalize() {
  if (module_ && Call("Finalize")) LogLine(L"finalized");
}

void TPackage::Free() {
  if (!module_) return;
  module_.reset();
  LogLine(L"unloaded");
}

}  // namespace devhost
