// What every fuzz target needs: UTF-16 text made from the fuzzer's bytes, and a failed
// invariant that stops the run where it can be seen.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace fuzz {

// Raw: byte pairs as UTF-16 units (any unit, surrogates included). Otherwise each byte
// picks a character of `alphabet`, so that short inputs still meet the interesting cases.
inline std::u16string DecodeText(const std::uint8_t* data, std::size_t size, bool raw,
                                 std::u16string_view alphabet) {
  std::u16string s;
  if (raw) {
    for (std::size_t i = 0; i + 1 < size; i += 2)
      s.push_back(static_cast<char16_t>(data[i] | data[i + 1] << 8));
  } else {
    for (std::size_t i = 0; i < size; ++i) s.push_back(alphabet[data[i] % alphabet.size()]);
  }
  return s;
}

inline void Check(bool ok, const char* what = "invariant") {
  if (ok) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

}  // namespace fuzz
