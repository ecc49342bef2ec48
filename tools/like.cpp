// qm_Like (tools/search.h), the wildcard matcher, in time linear in the text.
//
// The rule walks text and pattern together and, on a mismatch, goes back to the pattern
// after the latest '*' and to the text one past where that star's literal was last found.
// Read as a whole, that places the pattern's stretches (the runs between stars) one after
// another, each at the first place the walk reaches where it matches:
//  - Before the first '*' there is nothing to go back to: the stretch must match at the
//    start, and a pattern without '*' must match the whole text.
//  - After a star, the '?'s up to the stretch's first literal c take a character each; then
//    the walk tries the c's it finds in turn. The '?'s between the last '*' and c are taken
//    again before each new search, so after trying the c at f the next one tried is the
//    first at or after f + 1 + q, with q those '?'s: with q > 0 some c's are skipped.
//  - A stretch that runs out of text fails the whole match: every later try has less text
//    still. So a stretch followed by a star is placed at the first try where it matches.
//  - The last stretch must also end with the text; a try that matches short of the end is
//    given up like a mismatch. So it matches only when the try landing on the one place
//    where it would end with the text is reached and matches there.
// The tries are found with a search for c (each one starts past the last); the first match
// of a stretch at or after a try comes from a stream of its matches (StretchMatches), so
// each piece of text is read a bounded number of times per stretch that reaches it.
//
// Time: each stretch reads the text from where the one before it was placed to where it is
// placed itself, so the stretches share one pass. Within it, the comparisons after the
// pair filter cost at most a few times the text passed over, and the bit-parallel matcher
// that takes over from them costs ceil(stretch / 64) word steps a character: O(text +
// pattern) for stretches of up to 64 characters, O(text x ceil(stretch / 64)) at worst
// for longer ones (see StretchMatches). Memory: O(pattern).
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "tools/char_scan.h"
#include "tools/search.h"

namespace Qm_tools {

namespace {

using View = std::u16string_view;
constexpr size_t npos = View::npos;

// Whether the stretch matches the text at `at` ('?' taking any character), counting the
// characters compared in `work`. The stretch must fit.
bool MatchesAt(View text, size_t at, View stretch, size_t& work) {
  for (size_t k = 0; k < stretch.size(); ++k) {
    const char16_t c = stretch[k];
    if (c != u'?' && c != text[at + k]) {
      work += k + 1;
      return false;
    }
  }
  work += stretch.size();
  return true;
}

// The places where a stretch matches, ascending. First a filter: places where its first
// character and its last literal both match, found 64 at a time (tools/char_scan.h), each
// compared in full. Text made to pass the filter but fail the comparison (long runs of one
// letter) could make that O(text x stretch); so once the comparisons have cost more than a
// few times the text passed over, the rest of the text goes through a bit-parallel matcher
// (shift-and): one 64-bit word per 64 characters of the stretch holds which of its
// prefixes end at the current character, and each character costs one shift and one mask
// per word. The tables for that are only made when needed.
class StretchMatches {
 public:
  StretchMatches(View text, View stretch) : text_(text), stretch_(stretch) {
    last_ = stretch.find_last_not_of(u'?');
  }

  // The first match starting at or after `from`, npos if there is none. `from` must not
  // decrease from one call to the next.
  size_t Next(size_t from) {
    // The match found last is still the first one for any `from` up to it.
    if (found_ == npos || from > found_) found_ = Find(from);
    return found_;
  }

 private:
  size_t Find(size_t from) {
    const size_t m = stretch_.size();
    if (m > text_.size() || from > text_.size() - m) return npos;
    if (!words_.empty()) return Shifted(from);
    if (!filtering_ || from > filtered_) {
      scan_ = char_scan::PairScan(text_, stretch_[0], stretch_[last_], last_, from);
      filtering_ = true;
      if (origin_ == npos) origin_ = from;
    }
    for (size_t at; (at = scan_.Next()) != npos;) {
      if (at > text_.size() - m) break;
      filtered_ = at + 1;
      if (MatchesAt(text_, at, stretch_, work_)) return at;
      if (work_ > 4 * (at - origin_) + 8 * m + 256) {
        // Again from `from`: no more than the filter has just passed over.
        Tabulate();
        return Shifted(from);
      }
    }
    filtered_ = text_.size();
    return npos;
  }

  // The masks of the bit-parallel matcher: bit j of a character's mask is set when the
  // stretch's character j is that character or '?'. Characters go to classes through a
  // table per 256 code units (page 0 stands for every page without a stretch character);
  // class 0 is every character that does not occur in the stretch.
  void Tabulate() {
    const size_t m = stretch_.size();
    words_.assign((m + 63) / 64, 0);
    pages_.assign(256, 0);
    classes_.assign(256, 0);
    masks_.assign(words_.size(), 0);
    for (size_t j = 0; j < m; ++j)
      if (stretch_[j] == u'?') masks_[j / 64] |= std::uint64_t{1} << (j % 64);
    for (size_t j = 0; j < m; ++j) {
      const char16_t c = stretch_[j];
      if (c == u'?') continue;
      std::uint32_t& page = pages_[c >> 8];
      if (page == 0) {
        page = static_cast<std::uint32_t>(classes_.size());
        classes_.resize(classes_.size() + 256, 0);
      }
      std::uint32_t& cls = classes_[page + (c & 0xFF)];
      if (cls == 0) {
        // A new class starts from the mask of '?'s, class 0's.
        const size_t count = words_.size(), at = masks_.size();
        cls = static_cast<std::uint32_t>(at / count);
        masks_.resize(at + count);
        std::copy_n(masks_.begin(), count, masks_.begin() + static_cast<std::ptrdiff_t>(at));
      }
      masks_[cls * words_.size() + j / 64] |= std::uint64_t{1} << (j % 64);
    }
    fed_ = 0;
  }

  const std::uint64_t* Mask(char16_t c) const {
    return &masks_[classes_[pages_[c >> 8] + (c & 0xFF)] * words_.size()];
  }

  // Feeds the text from where it stopped (or from `from`, when that is further on) until a
  // match starting at or after `from` ends. A jump needs no fresh state: what the words
  // still hold would only make matches that start before `from`, and those are passed by.
  size_t Shifted(size_t from) {
    const size_t m = stretch_.size(), count = words_.size();
    fed_ = std::max(fed_, from);
    const std::uint64_t top = std::uint64_t{1} << ((m - 1) % 64);
    if (count == 1) {
      std::uint64_t d = words_[0];
      while (fed_ < text_.size()) {
        d = (d << 1 | 1) & *Mask(text_[fed_++]);
        if ((d & top) != 0 && fed_ - m >= from) {
          words_[0] = d;
          return fed_ - m;
        }
      }
      words_[0] = d;
      return npos;
    }
    while (fed_ < text_.size()) {
      const std::uint64_t* mask = Mask(text_[fed_++]);
      std::uint64_t carry = 1;
      for (size_t w = 0; w < count; ++w) {
        const std::uint64_t d = words_[w];
        words_[w] = (d << 1 | carry) & mask[w];
        carry = d >> 63;
      }
      if ((words_[count - 1] & top) != 0 && fed_ - m >= from) return fed_ - m;
    }
    return npos;
  }

  View text_, stretch_;
  size_t last_;  // the stretch's last literal
  // The filter.
  char_scan::PairScan scan_{View(), 0, 0, 0, 0};
  bool filtering_ = false;
  size_t filtered_ = 0, origin_ = npos, work_ = 0;
  // The bit-parallel matcher, once it has taken over.
  std::vector<std::uint64_t> words_, masks_;
  std::vector<std::uint32_t> pages_, classes_;
  size_t fed_ = 0;
  size_t found_ = npos;
};

// The first try, counting from `t` with `q` '?'s taken again before each new search, at
// which a stretch followed by a star matches; npos if none.
size_t PlaceStretch(View text, size_t t, View stretch, size_t q) {
  StretchMatches matches(text, stretch);
  if (q == 0) return matches.Next(t);
  for (size_t f = char_scan::FindChar(text, stretch[0], t); f != npos;) {
    const size_t m = matches.Next(f);
    if (m == npos) return npos;
    if (m == f) return f;
    while (f < m) {
      f = char_scan::FindChar(text, stretch[0], f + 1 + q);
      if (f == npos) return npos;
    }
  }
  return npos;
}

// Whether the last stretch matches, ending with the text, at a try counted from `t`.
bool LastStretchMatches(View text, size_t t, View stretch, size_t q) {
  if (stretch.size() > text.size()) return false;
  const size_t end = text.size() - stretch.size();
  if (end < t) return false;
  size_t f = end;
  if (q == 0) {
    if (text[end] != stretch[0]) return false;
  } else {
    f = char_scan::FindChar(text, stretch[0], t);
    while (f < end) f = char_scan::FindChar(text, stretch[0], f + 1 + q);
  }
  size_t work = 0;
  return f == end && MatchesAt(text, end, stretch, work);
}

}  // namespace

bool qm_Like(View text, View pattern) {
  const size_t tn = text.size(), pn = pattern.size();
  size_t t = 0, p = 0;
  for (; p < pn && pattern[p] != u'*'; ++p, ++t) {
    if (t == tn || (pattern[p] != u'?' && pattern[p] != text[t])) return false;
  }
  if (p == pn) return t == tn;
  for (;;) {
    // Stars and '?'s; q counts the '?'s after the last star, which each try takes again.
    size_t q = 0;
    for (; p < pn && (pattern[p] == u'*' || pattern[p] == u'?'); ++p) {
      if (pattern[p] == u'*') {
        q = 0;
        continue;
      }
      if (t == tn) return false;
      ++t;
      ++q;
    }
    if (p == pn) return true;
    const size_t end = std::min(pattern.find(u'*', p), pn);
    const View stretch = pattern.substr(p, end - p);
    if (end == pn) return LastStretchMatches(text, t, stretch, q);
    const size_t at = PlaceStretch(text, t, stretch, q);
    if (at == npos) return false;
    t = at + stretch.size();
    p = end;
  }
}

}  // namespace Qm_tools
