// Slow, plain readings of the rules that the fast routines must agree with, for the
// differential tests and the fuzz targets. Each follows the rule's own wording step by
// step, with no shortcut of its own; they are slow on purpose and only fit short input
// (WordPos's is quadratic on texts full of rejected matches).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "rtl/locale.h"
#include "rtl/ustring.h"

namespace slow {

// The structural UTF-8 test: a byte below 80 stands alone, 110xxxxx takes one 10xxxxxx
// byte after it, 1110xxxx two, 11110xxx three; anything else, or a sequence cut off by the
// end, fails.
inline bool Utf8Structure(const std::uint8_t* p, std::size_t n) {
  for (std::size_t i = 0; i < n;) {
    const std::uint8_t b = p[i];
    std::size_t follow = 0;
    if (b >= 0x80) {
      if (b >> 5 == 6)
        follow = 1;
      else if (b >> 4 == 14)
        follow = 2;
      else if (b >> 3 == 30)
        follow = 3;
      else
        return false;
    }
    for (std::size_t k = 1; k <= follow; ++k)
      if (i + k >= n || p[i + k] >> 6 != 2) return false;
    i += follow + 1;
  }
  return true;
}

// The word-character sets, as the strings that membership is searched in.
inline constexpr std::u16string_view kWideLetters =
    u"abcdefghijklmnopqrstuvwxyzüäöABCDEFGHIJKLMNOPQRSTUVWXYZÖÄÜßéíúáóèìùàòâêôîûÂÊÔÎÛñÑçÇ";
inline constexpr std::u16string_view kWideLettersDigits =
    u"abcdefghijklmnopqrstuvwxyzüäöABCDEFGHIJKLMNOPQRSTUVWXYZÖÄÜßéíúáóèìùàòâêôîûÂÊÔÎÛñÑçÇ"
    u"0123456789";
inline constexpr std::u16string_view kWideLettersHyphen =
    u"abcdefghijklmnopqrstuvwxyzüäöABCDEFGHIJKLMNOPQRSTUVWXYZÖÄÜßéíúáóèìùàòâêôîûÂÊÔÎÛñÑçÇ-";

// WordPos (set and inner set Wide letters, or Wide letters with digits then Wide letters)
// and WordPos2 (Wide letters with hyphen throughout): find the lowered word in the lowered
// text; a whole word there is the answer; otherwise, if the lowered word occurs in the rest
// after it as written, search the rest on its own with the inner set and add the position.
// The recursion is written as a loop over ever shorter rests, so hostile texts cannot
// exhaust the stack; every level still lowers and copies its rest, as the rule reads.
inline int WordPos(std::u16string_view word, std::u16string_view text, std::u16string_view set,
                   std::u16string_view innerSet) {
  const std::u16string low = rtl::AnsiLowerCase(word);
  const int n = rtl::Length(word);
  std::u16string rest(text);
  int offset = 0;
  for (;;) {
    const int p = rtl::Pos(low, rtl::AnsiLowerCase(rest));
    if (p == 0) return 0;
    const int len = rtl::Length(rest);
    const bool left = p == 1 || set.find(rest[p - 2]) == std::u16string_view::npos;
    const bool right = p + n - 1 == len || set.find(rest[p + n - 1]) == std::u16string_view::npos;
    if (left && right) return offset + p;
    rest = rtl::Copy(rest, p + 1);
    if (rtl::Pos(low, rest) == 0) return 0;
    offset += p;
    set = innerSet;
  }
}

// qm_Like: walk text and pattern together, '?' taking any one character and every other
// character itself. At a '*' (several in a row act as one) the '?'s after it each take a
// character and the next literal is searched for from there. On a mismatch, or when the
// text or the pattern runs out first, go back to the pattern just after the latest '*'
// and to the text one past where its literal was last found; with no '*' behind, fail. A
// pattern that ends after a '*' (and its '?'s) matches whatever text is left.
inline bool Like(std::u16string_view text, std::u16string_view pattern) {
  constexpr std::size_t none = std::u16string_view::npos;
  std::size_t t = 0, p = 0;
  std::size_t afterStar = none, found = none;
  bool searching = false;  // at the pattern just after a '*'
  for (;;) {
    if (searching) {
      while (p < pattern.size() && (pattern[p] == u'*' || pattern[p] == u'?')) {
        if (pattern[p] == u'*') {
          afterStar = p + 1;
        } else {
          if (t == text.size()) return false;
          ++t;
        }
        ++p;
      }
      if (p == pattern.size()) return true;
      found = text.find(pattern[p], t);
      if (found == none) return false;
      t = found + 1;
      ++p;
      searching = false;
      continue;
    }
    bool mismatch;
    if (p == pattern.size()) {
      if (t == text.size()) return true;
      mismatch = true;
    } else if (pattern[p] == u'*') {
      afterStar = ++p;
      searching = true;
      continue;
    } else {
      mismatch = t == text.size() || (pattern[p] != u'?' && pattern[p] != text[t]);
    }
    if (!mismatch) {
      ++t;
      ++p;
      continue;
    }
    if (afterStar == none) return false;
    t = found + 1;
    p = afterStar;
    searching = true;
  }
}

}  // namespace slow
