// rtl/locale.h for builds without the Windows locale API: the rules of rtl/unicase.h,
// which follow the Windows default sort, so that both builds order lists alike.
#include "rtl/locale.h"

#include "rtl/unicase.h"

namespace rtl {

std::u16string AnsiLowerCase(std::u16string_view s) {
  std::u16string r(s);
  // Searches lower whole texts; most of their characters are ASCII.
  for (auto& c : r) {
    if (c < 0x80) {
      if (static_cast<unsigned>(c - u'A') < 26u) c = static_cast<char16_t>(c + 32);
    } else {
      c = ToLowerChar(c);
    }
  }
  return r;
}

std::u16string AnsiUpperCase(std::u16string_view s) {
  std::u16string r(s);
  for (auto& c : r) c = ToUpperChar(c);
  return r;
}

int AnsiCompareStr(std::u16string_view a, std::u16string_view b) {
  return CollateCompare(a, b, false);
}

int AnsiCompareText(std::u16string_view a, std::u16string_view b) {
  return CollateCompare(a, b, true);
}

bool AnsiSameText(std::u16string_view a, std::u16string_view b) {
  return AnsiCompareText(a, b) == 0;
}

}  // namespace rtl
