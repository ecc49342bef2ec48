// Scanning UTF-16 text for two characters at a fixed distance, 64 positions at a time: the
// filter in front of the substring searches of tools/search.cpp and tools/like.cpp. With
// SSE2 (always there on x86-64) eight positions are compared at once, elsewhere one.
// Not exported from the package.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Qm_tools::char_scan {

// Bit k set when s[k] == a and s[k + gap] == b, for k from 0 to 63; reads s[0] to
// s[63 + gap].
std::uint64_t PairMask(const char16_t* s, char16_t a, char16_t b, std::size_t gap);

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

// First position at or after `from` that holds c; npos if none.
inline std::size_t FindChar(std::u16string_view text, char16_t c, std::size_t from) {
  return PairScan(text, c, c, 0, from).Next();
}

}  // namespace Qm_tools::char_scan
