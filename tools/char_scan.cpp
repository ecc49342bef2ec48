// Pair scanning over UTF-16 text (tools/char_scan.h).
#include "tools/char_scan.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Qm_tools::char_scan {

#ifdef __SSE2__

std::uint64_t PairMask(const char16_t* s, char16_t a, char16_t b, std::size_t gap) {
  const __m128i va = _mm_set1_epi16(static_cast<short>(a)), vb = _mm_set1_epi16(static_cast<short>(b));
  const auto hits = [&](const char16_t* p) {
    const __m128i first = _mm_cmpeq_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)), va);
    const __m128i second =
        _mm_cmpeq_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p + gap)), vb);
    return _mm_and_si128(first, second);
  };
  std::uint64_t mask = 0;
  for (int k = 0; k < 64; k += 16) {
    // Each position's 16-bit result narrowed to a byte, so one movemask covers sixteen.
    const __m128i both = _mm_packs_epi16(hits(s + k), hits(s + k + 8));
    mask |= static_cast<std::uint64_t>(static_cast<std::uint16_t>(_mm_movemask_epi8(both))) << k;
  }
  return mask;
}

#else

std::uint64_t PairMask(const char16_t* s, char16_t a, char16_t b, std::size_t gap) {
  std::uint64_t mask = 0;
  for (std::size_t k = 0; k < 64; ++k)
    mask |= static_cast<std::uint64_t>(s[k] == a && s[k + gap] == b) << k;
  return mask;
}

#endif

std::uint64_t PairScan::Tail() const {
  std::uint64_t mask = 0;
  for (std::size_t k = next_; k < end_; ++k)
    mask |= static_cast<std::uint64_t>(text_[k] == a_ && text_[k + gap_] == b_) << (k - next_);
  return mask;
}

}  // namespace Qm_tools::char_scan
