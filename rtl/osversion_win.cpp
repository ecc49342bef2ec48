// TOSVersion::Current: the true version from ntdll's RtlGetVersion, which, unlike
// GetVersionEx, does not pretend to be Windows 8 to programs without a manifest.
#include "rtl/osversion.h"

#include <windows.h>

namespace rtl {
namespace {

TOSVersion Ask() {
  RTL_OSVERSIONINFOW info{};
  info.dwOSVersionInfoSize = sizeof(info);
  using TRtlGetVersion = LONG(WINAPI*)(RTL_OSVERSIONINFOW*);
  // ntdll is in every process, so it needs neither loading nor freeing.
  const auto rtlGetVersion = reinterpret_cast<TRtlGetVersion>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
  if (rtlGetVersion == nullptr || rtlGetVersion(&info) != 0) info = RTL_OSVERSIONINFOW{};
  SYSTEM_INFO system{};
  GetNativeSystemInfo(&system);
  return TOSVersion::Of(static_cast<int>(info.dwMajorVersion),
                        static_cast<int>(info.dwMinorVersion),
                        static_cast<int>(info.dwBuildNumber),
                        ArchitectureOf(system.wProcessorArchitecture));
}

}  // namespace

const TOSVersion& TOSVersion::Current() {
  static const TOSVersion current = Ask();
  return current;
}

}  // namespace rtl
