// rtl/locale.h on Windows: the user's locale, through the same calls the framework makes.
#include "rtl/locale.h"

#include <windows.h>

#include <algorithm>
#include <limits>

namespace rtl {

namespace {

// wchar_t is UTF-16 here, so the buffers are handed over as they are. A view of nothing
// may hold a null pointer, which CompareStringW rejects even with a length of 0.
const wchar_t* Wide(std::u16string_view s) {
  return s.data() != nullptr ? reinterpret_cast<const wchar_t*>(s.data()) : L"";
}
wchar_t* Wide(std::u16string& s) { return reinterpret_cast<wchar_t*>(s.data()); }

DWORD Units(std::u16string_view s) { return static_cast<DWORD>(s.size()); }

int Compare(std::u16string_view a, std::u16string_view b, DWORD flags) {
  // Lengths beyond int never occur in practice; clip rather than wrap.
  constexpr size_t kMax = std::numeric_limits<int>::max();
  const int r = CompareStringW(LOCALE_USER_DEFAULT, flags, Wide(a),
                               static_cast<int>(std::min(a.size(), kMax)), Wide(b),
                               static_cast<int>(std::min(b.size(), kMax)));
  return r - CSTR_EQUAL;
}

}  // namespace

std::u16string AnsiLowerCase(std::u16string_view s) {
  std::u16string r(s);
  if (!r.empty()) CharLowerBuffW(Wide(r), Units(r));
  return r;
}

std::u16string AnsiUpperCase(std::u16string_view s) {
  std::u16string r(s);
  if (!r.empty()) CharUpperBuffW(Wide(r), Units(r));
  return r;
}

int AnsiCompareStr(std::u16string_view a, std::u16string_view b) {
  return Compare(a, b, 0);
}

int AnsiCompareText(std::u16string_view a, std::u16string_view b) {
  return Compare(a, b, NORM_IGNORECASE);
}

bool AnsiSameText(std::u16string_view a, std::u16string_view b) {
  return AnsiCompareText(a, b) == 0;
}

}  // namespace rtl
