#include "rtl/osversion.h"

#include "rtl/ustring.h"

namespace rtl {

TArchitecture ArchitectureOf(unsigned processorArchitecture) {
  switch (processorArchitecture) {
    case 9: return TArchitecture::arIntelX64;
    case 5: return TArchitecture::arARM32;
    case 12: return TArchitecture::arARM64;
    default: return TArchitecture::arIntelX86;
  }
}

std::u16string OSVersionName(int major, int minor) {
  struct Entry {
    int major, minor;
    const char16_t* name;
  };
  static constexpr Entry names[] = {
      {5, 0, u"Windows 2000"},  {5, 1, u"Windows XP"}, {5, 2, u"Windows Server 2003"},
      {6, 0, u"Windows Vista"}, {6, 1, u"Windows 7"},  {6, 2, u"Windows 8"},
      {6, 3, u"Windows 8.1"},   {10, 0, u"Windows 10"},
  };
  for (const Entry& e : names)
    if (e.major == major && e.minor == minor) return e.name;
  return u"Windows";
}

TOSVersion TOSVersion::Of(int major, int minor, int build, TArchitecture architecture) {
  return {major, minor, build, OSVersionName(major, minor), architecture};
}

std::u16string TOSVersion::ToString() const {
  const char16_t* edition = u"32-bit Edition";
  switch (Architecture) {
    case TArchitecture::arIntelX86: break;
    case TArchitecture::arIntelX64: edition = u"64-bit Edition"; break;
    case TArchitecture::arARM32: edition = u"ARM 32-bit Edition"; break;
    case TArchitecture::arARM64: edition = u"ARM 64-bit Edition"; break;
  }
  return Name + u" (Version " + IntToStr(Major) + u"." + IntToStr(Minor) + u", Build " +
         IntToStr(Build) + u", " + edition + u")";
}

}  // namespace rtl
