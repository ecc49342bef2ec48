// Pair scanning over UTF-16 text (tools/char_scan.h).
#include "tools/char_scan.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Qm_tools::char_scan {

std::uint64_t PairMaskByChar(const char16_t* s, char16_t a, char16_t b, std::size_t gap) {
  std::uint64_t mask = 0;
  for (std::size_t k = 0; k < 64; ++k)
    mask |= static_cast<std::uint64_t>(s[k] == a && s[k + gap] == b) << k;
  return mask;
}

std::uint64_t AsciiLetterMaskByChar(const char16_t* s) {
  std::uint64_t mask = 0;
  for (std::size_t k = 0; k < 64; ++k)
    mask |= static_cast<std::uint64_t>(static_cast<char16_t>((s[k] | 0x20) - u'a') < 26) << k;
  return mask;
}

#ifdef __SSE2__

std::uint64_t PairMask(const char16_t* s, char16_t a, char16_t b, std::size_t gap) {
  const __m128i va = _mm_set1_epi16(static_cast<short>(a));
  const __m128i vb = _mm_set1_epi16(static_cast<short>(b));
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

std::uint64_t AsciiLetterMask(const char16_t* s) {
  std::uint64_t mask = 0;
  for (int k = 0; k < 64; k += 16) {
    const auto letters = [&](const char16_t* p) {
      // (c | 20) - 'a' below 26, with the subtraction wrapping for everything else.
      const __m128i c = _mm_or_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)),
                                     _mm_set1_epi16(0x20));
      const __m128i offset = _mm_sub_epi16(c, _mm_set1_epi16(u'a'));
      return _mm_cmpeq_epi16(_mm_subs_epu16(offset, _mm_set1_epi16(25)), _mm_setzero_si128());
    };
    const __m128i both = _mm_packs_epi16(letters(s + k), letters(s + k + 8));
    mask |= static_cast<std::uint64_t>(static_cast<std::uint16_t>(_mm_movemask_epi8(both))) << k;
  }
  return mask;
}

#else

std::uint64_t PairMask(const char16_t* s, char16_t a, char16_t b, std::size_t gap) {
  return PairMaskByChar(s, a, b, gap);
}

std::uint64_t AsciiLetterMask(const char16_t* s) { return AsciiLetterMaskByChar(s); }

#endif

std::uint64_t PairScan::Tail() const {
  std::uint64_t mask = 0;
  for (std::size_t k = next_; k < end_; ++k)
    mask |= static_cast<std::uint64_t>(text_[k] == a_ && text_[k + gap_] == b_) << (k - next_);
  return mask;
}

}  // namespace Qm_tools::char_scan
