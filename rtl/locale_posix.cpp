// rtl/locale.h for builds without the Windows locale API: the rules of rtl/unicase.h,
// which follow the Windows default sort, so that both builds order lists alike.
#include "rtl/locale.h"

#include "rtl/unicase.h"

namespace rtl {

std::u16string AnsiLowerCase(std::u16string_view s) {
  std::u16string r(s);
  // Searches lower whole texts, mostly ASCII: blocks without other characters take a
  // branch-free loop that the compiler vectorises.
  constexpr size_t kBlock = 64;
  char16_t* p = r.data();
  const size_t n = r.size();
  size_t i = 0;
  for (; i + kBlock <= n; i += kBlock) {
    char16_t high = 0;
    for (size_t k = 0; k < kBlock; ++k) high |= p[i + k];
    if (high < 0x80) {
      for (size_t k = 0; k < kBlock; ++k) {
        const char16_t c = p[i + k];
        p[i + k] = static_cast<char16_t>(c + (static_cast<char16_t>(c - u'A') < 26u ? 32 : 0));
      }
    } else {
      for (size_t k = 0; k < kBlock; ++k) p[i + k] = ToLowerChar(p[i + k]);
    }
  }
  for (; i < n; ++i) p[i] = ToLowerChar(p[i]);
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
