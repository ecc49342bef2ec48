// The framework's run-time record of the operating system: the true version (not the one
// a program without a compatibility manifest is told), its name and the processor
// architecture of the system (not of the process). The naming and the one-line
// description are pure and built everywhere; Current() asks the system (windows build).
#pragma once

#include <string>

namespace rtl {

enum class TArchitecture { arIntelX86, arIntelX64, arARM32, arARM64 };

// The system's PROCESSOR_ARCHITECTURE_* number as a TArchitecture: 0 x86, 9 x64, 5 ARM,
// 12 ARM64; any other number counts as x86.
TArchitecture ArchitectureOf(unsigned processorArchitecture);

// The framework's name for a version, by major.minor. It knows no "Windows 11": every
// 10.0 is "Windows 10", whatever the build.
//   OSVersionName(6, 3) == u"Windows 8.1"   OSVersionName(10, 0) == u"Windows 10"
//   OSVersionName(6, 4) == u"Windows"
std::u16string OSVersionName(int major, int minor);

struct TOSVersion {
  int Major = 0;
  int Minor = 0;
  int Build = 0;
  std::u16string Name;  // OSVersionName(Major, Minor)
  TArchitecture Architecture = TArchitecture::arIntelX86;

  // The record of a version, its Name filled in.
  static TOSVersion Of(int major, int minor, int build, TArchitecture architecture);

  // Name (Version Major.Minor, Build Build, Edition), the edition being "32-bit Edition",
  // "64-bit Edition", "ARM 32-bit Edition" or "ARM 64-bit Edition":
  //   u"Windows 10 (Version 10.0, Build 19045, 64-bit Edition)"
  std::u16string ToString() const;

#ifdef _WIN32
  // The running system, asked once (RtlGetVersion, GetNativeSystemInfo).
  static const TOSVersion& Current();
#endif
};

}  // namespace rtl
