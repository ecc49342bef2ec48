// Scanning UTF-16 text for two characters at a fixed distance, 64 positions at a time: the
// filter in front of the substring searches of tools/search.cpp and tools/like.cpp. With
// SSE2 (always there on x86-64) eight positions are compared at once, elsewhere one.
// Not exported from the package.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Qm_tools::char_scan {

// Bit k set when s[k] == a and s[k + gap] == b, for k from 0 to 63; reads s[0] to
// s[63 + gap]. ByChar: the same one position at a time, what processors without SSE2 run.
std::uint64_t PairMask(const char16_t* s, char16_t a, char16_t b, std::size_t gap);
std::uint64_t PairMaskByChar(const char16_t* s, char16_t a, char16_t b, std::size_t gap);

// The positions k, ascending from `from`, where text[k] == a and text[k + gap] == b.
class PairScan {
 public:
  static constexpr std::size_t npos = std::u16string_view::npos;

  PairScan(std::u16string_view text, char16_t a, char16_t b, std::size_t gap, std::size_t from)
      : text_(text), a_(a), b_(b), gap_(gap),
        end_(text.size() > gap ? text.size() - gap : 0), next_(from) {}

  // The next position, npos after the last.
  std::size_t Next() {
    while (bits_ == 0) {
      if (next_ >= end_) return npos;
      base_ = next_;
      bits_ = end_ - next_ >= 64 ? PairMask(text_.data() + next_, a_, b_, gap_) : Tail();
      next_ += 64;
    }
    const std::size_t k = base_ + static_cast<std::size_t>(std::countr_zero(bits_));
    bits_ &= bits_ - 1;
    return k;
  }

 private:
  std::uint64_t Tail() const;

  std::u16string_view text_;
  char16_t a_, b_;
  std::size_t gap_, end_, next_, base_ = 0;
  std::uint64_t bits_ = 0;
};

// Calls visit(base, bits) for blocks of up to 64 positions from `from` to `to`, bit k of
// bits set when text[base + k] == a and text[base + k + gap] == b (inside the text), until
// visit returns something other than npos; returns that, or npos. For scans that look at
// many positions: the caller takes the bits as they come.
template <class Visit>
std::size_t FindPairs(std::u16string_view text, char16_t a, char16_t b, std::size_t gap,
                      std::size_t from, std::size_t to, Visit visit) {
  if (text.size() <= gap) return PairScan::npos;
  to = std::min(to, text.size() - gap);
  for (std::size_t base = from; base < to; base += 64) {
    std::uint64_t bits = 0;
    if (to - base >= 64) {
      bits = PairMask(text.data() + base, a, b, gap);
    } else {
      for (std::size_t k = base; k < to; ++k)
        bits |= static_cast<std::uint64_t>(text[k] == a && text[k + gap] == b) << (k - base);
    }
    if (bits == 0) continue;
    const std::size_t found = visit(base, bits);
    if (found != PairScan::npos) return found;
  }
  return PairScan::npos;
}

// Bit k set when s[k] is an ASCII letter, for k from 0 to 63.
std::uint64_t AsciiLetterMask(const char16_t* s);
std::uint64_t AsciiLetterMaskByChar(const char16_t* s);

// First position at or after `from` that holds c; npos if none.
inline std::size_t FindChar(std::u16string_view text, char16_t c, std::size_t from) {
  return PairScan(text, c, c, 0, from).Next();
}

}  // namespace Qm_tools::char_scan
