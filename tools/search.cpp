// Word and position search of Qm_tools. Pure: the only system fact used is the locale's
// lower-case mapping, through rtl::AnsiLowerCase.
//
// Several routines are defined by what an older, simpler procedure returned (recursion
// into the rest of the text, windows copied per candidate position). They are computed
// here in one pass with the same results; the comments say where that takes care.
#include "tools/search.h"

#include <algorithm>
#include <bit>
#include <cstddef>

#include "rtl/locale.h"
#include "rtl/ustring.h"
#include "tools/char_scan.h"
#include "tools/fields.h"

namespace Qm_tools {

namespace {

using View = std::u16string_view;
constexpr size_t npos = View::npos;

// Word-character sets. A character belongs to a word exactly when it occurs in the set's
// string (case-sensitive), so a letter missing from a set (Letters has no 'é') is a
// boundary for that set's users. All members are Latin-1, hence a table of 256 entries
// (bytes rather than bits: the whole-word searches ask once per match).
class WordChars {
 public:
  consteval explicit WordChars(View members) {
    for (const char16_t c : members) {
      if (c > 0xFF) throw "word characters must be Latin-1";
      in_[c] = true;
    }
  }
  bool Has(char16_t c) const { return c <= 0xFF && in_[c]; }

 private:
  bool in_[256] = {};
};

constexpr WordChars kLetters{u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZäöüÄÖÜß"};
constexpr WordChars kWideLetters{
    u"abcdefghijklmnopqrstuvwxyzüäöABCDEFGHIJKLMNOPQRSTUVWXYZÖÄÜßéíúáóèìùàòâêôîûÂÊÔÎÛñÑçÇ"};
constexpr WordChars kWideLettersDigits{
    u"abcdefghijklmnopqrstuvwxyzüäöABCDEFGHIJKLMNOPQRSTUVWXYZÖÄÜßéíúáóèìùàòâêôîûÂÊÔÎÛñÑçÇ"
    u"0123456789"};
constexpr WordChars kWideLettersHyphen{
    u"abcdefghijklmnopqrstuvwxyzüäöABCDEFGHIJKLMNOPQRSTUVWXYZÖÄÜßéíúáóèìùàòâêôîûÂÊÔÎÛñÑçÇ-"};

// Character at 1-based `i`, or U+0000 (in no set) outside the text: shifted positions
// from Instr may point before or after it.
char16_t At(View s, std::int64_t i) {
  return i >= 1 && i <= static_cast<std::int64_t>(s.size()) ? s[static_cast<size_t>(i - 1)]
                                                             : u'\0';
}

int ToPos(size_t zeroBased) { return static_cast<int>(zeroBased) + 1; }

bool LeftSideGood(View text, std::int64_t p, const WordChars& set) {
  return p == 1 || !set.Has(At(text, p - 1));
}

bool RightSideGood(View text, std::int64_t p, std::int64_t n, const WordChars& set) {
  return p + n - 1 == static_cast<std::int64_t>(text.size()) || !set.Has(At(text, p + n));
}

bool IsWholeWord(View text, std::int64_t p, std::int64_t n, const WordChars& set) {
  return LeftSideGood(text, p, set) && RightSideGood(text, p, n, set);
}

bool IsHighSurrogate(char16_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowSurrogate(char16_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

// The text lowered a window at a time, so that the search reads it back from the cache
// instead of from a second copy of the whole text; or cut from a text lowered whole, when
// several words are looked for. Lowering is per character, so a window's lowering is that
// part of the whole text's; windows keep surrogate pairs whole in case the system lowers a
// pair as one character.
class LoweredText {
 public:
  explicit LoweredText(View text) : text_(text) {}
  LoweredText(View text, View lowered) : text_(text), lowered_(lowered), whole_(true) {}

  // The lowered text from at most `from` to at least `to`; `*start` gets where it starts.
  View Window(size_t from, size_t to, size_t* start) {
    if (whole_) {
      *start = 0;
      return lowered_;
    }
    if (from > 0 && IsLowSurrogate(text_[from])) --from;
    if (to < text_.size() && IsHighSurrogate(text_[to - 1])) ++to;
    *start = from;
    window_ = rtl::AnsiLowerCase(text_.substr(from, to - from));
    return window_;
  }

 private:
  View text_, lowered_;
  bool whole_ = false;
  std::u16string window_;
};

constexpr size_t kWindow = 4096;

// Calls visit(base, bits) for blocks of the text, bit k of bits set where the lowered
// word occurs in the lowered text at base + k, in ascending order, until visit returns a
// place other than npos; returns that place, or npos.
template <class Visit>
size_t FindLoweredMatches(View lowWord, View text, LoweredText& lowered, Visit visit) {
  const size_t n = lowWord.size();
  const View middle = lowWord.substr(1, n - 1 - (n > 1));
  // Matches starting in [from, to), with the n - 1 characters after them in the window.
  for (size_t from = 0, to; from + n <= text.size(); from = to) {
    to = std::min(from + std::max(kWindow, n), text.size() - n + 1);
    size_t start;
    const View low = lowered.Window(from, to + n - 1, &start);
    const size_t found = char_scan::FindPairs(
        low, lowWord[0], lowWord[n - 1], n - 1, from - start, to - start,
        [&](size_t base, std::uint64_t bits) {
          if (!middle.empty()) {
            for (std::uint64_t rest = bits; rest != 0; rest &= rest - 1) {
              const size_t k = base + static_cast<size_t>(std::countr_zero(rest));
              if (low.compare(k + 1, middle.size(), middle) != 0) bits &= ~(rest & -rest);
            }
          }
          return bits != 0 ? visit(base + start, bits) : npos;
        });
    if (found != npos) return found;
  }
  return npos;
}

// The search behind WordPos and WordPos2. Its definition recurses: after a rejected match
// at p it calls itself on the rest from p+1, but only when the lower-cased word occurs in
// that rest as written (not lowered), and the inner call judges the rest on its own, so
// the rest's first position is a good left side. Results add up to absolute positions, so
// the levels are the matches of the lowered word in the lowered text, taken in order
// (lowering is per character, so a rest's lowering is a suffix of the text's). The gates
// need no pass of their own: each asks for an occurrence as written after its rejected
// match, so the gate of the last rejection before a whole word answers for all of them,
// and without a whole word the answer is 0 whatever the gates say.
int WordPosInOrder(View lowWord, View text, LoweredText& lowered, const WordChars& firstSet,
                   const WordChars& laterSet) {
  // Where a match needs no look to its left: the text's start, and after a rejected match
  // the place just past its start (the inner search's rest starts there).
  size_t freeLeft = 0;
  const WordChars* set = &firstSet;
  const auto n = static_cast<std::int64_t>(lowWord.size());
  const auto judge = [&](size_t base, std::uint64_t bits) {
    for (; bits != 0; bits &= bits - 1) {
      const size_t at = base + static_cast<size_t>(std::countr_zero(bits));
      if ((at == freeLeft || !set->Has(text[at - 1])) &&
          RightSideGood(text, static_cast<std::int64_t>(at) + 1, n, *set))
        return at;
      freeLeft = at + 1;
      set = &laterSet;
    }
    return npos;
  };
  const size_t at = FindLoweredMatches(lowWord, text, lowered, judge);
  if (at == npos) return 0;
  return freeLeft == 0 || text.find(lowWord, freeLeft) != npos ? ToPos(at) : 0;
}

// The same in bulk, for a word that cannot match at two neighbouring places (it is not one
// character repeated), so that "just past a rejected match" never meets another match and
// a later match's left side is judged by the set alone; a match whose left neighbour is an
// ASCII letter is rejected with its whole block at once. The gate is asked with the whole
// word found: an occurrence as written at or after it passes every gate. Without one the
// answer depends on where the last rejection was, and the search runs again in order.
int RepeatedWordPos(View lowWord, View text, LoweredText& lowered, const WordChars& firstSet,
                    const WordChars& laterSet) {
  if (lowWord.empty() || lowWord.size() > text.size()) return 0;
  if (lowWord.find_first_not_of(lowWord[0]) == npos)
    return WordPosInOrder(lowWord, text, lowered, firstSet, laterSet);
  const auto n = static_cast<std::int64_t>(lowWord.size());
  const auto whole = [&](size_t at, const WordChars& set) {
    return IsWholeWord(text, static_cast<std::int64_t>(at) + 1, n, set);
  };
  size_t first = npos;
  const auto judge = [&](size_t base, std::uint64_t bits) {
    if (first == npos) {
      first = base + static_cast<size_t>(std::countr_zero(bits));
      if (whole(first, firstSet)) return first;
      bits &= bits - 1;
    }
    if (base > 0 && text.size() - base >= 64)
      bits &= ~char_scan::AsciiLetterMask(text.data() + base - 1);
    for (; bits != 0; bits &= bits - 1) {
      const size_t at = base + static_cast<size_t>(std::countr_zero(bits));
      if (whole(at, laterSet)) return at;
    }
    return npos;
  };
  const size_t at = FindLoweredMatches(lowWord, text, lowered, judge);
  if (at == npos) return 0;
  if (at == first || text.find(lowWord, at) != npos) return ToPos(at);
  return WordPosInOrder(lowWord, text, lowered, firstSet, laterSet);
}

// Steps one and two of the whole-word search: the first match decides.
int FirstWordPos(View word, View text, const WordChars& set, bool rightSideToo) {
  const int p = rtl::Pos(rtl::AnsiLowerCase(word), rtl::AnsiLowerCase(text));
  if (p == 0) return 0;
  const auto n = static_cast<std::int64_t>(word.size());
  const bool good = rightSideToo ? IsWholeWord(text, p, n, set) : LeftSideGood(text, p, set);
  return good ? p : 0;
}

}  // namespace

// ---- Whole words ----

int WordPos(View word, View text, bool withDigits) {
  LoweredText lowered(text);
  return RepeatedWordPos(rtl::AnsiLowerCase(word), text, lowered,
                         withDigits ? kWideLettersDigits : kWideLetters, kWideLetters);
}

int WordPos2(View word, View text) {
  LoweredText lowered(text);
  return RepeatedWordPos(rtl::AnsiLowerCase(word), text, lowered, kWideLettersHyphen,
                         kWideLettersHyphen);
}

int WordPos3(View word, View text) { return FirstWordPos(word, text, kWideLettersDigits, true); }

int WordNumberPos(View word, View text) { return WordPos3(word, text); }

int CharsetPos(View word, View text) { return FirstWordPos(word, text, kLetters, true); }

int WordLeftPos(View word, View text) { return FirstWordPos(word, text, kLetters, false); }

int WordPosFrom(View word, View text, int start) {
  const int p = Instr(start, rtl::AnsiLowerCase(text), rtl::AnsiLowerCase(word));
  if (p <= 0) return 0;
  return IsWholeWord(text, p, static_cast<std::int64_t>(word.size()), kWideLetters) ? p : 0;
}

bool WordsInText(char16_t d, View words, View text) {
  // Lowered once for all fields; each field then searches exactly as WordPos does.
  const std::u16string lowText = rtl::AnsiLowerCase(text);
  LoweredText lowered(text, lowText);
  const int count = GetFieldsCount(d, words);
  for (int i = 1; i <= count; ++i) {
    const std::u16string field = GetFieldStr(d, words, i);
    if (RepeatedWordPos(rtl::AnsiLowerCase(field), text, lowered, kWideLetters, kWideLetters))
      return true;
  }
  return false;
}

// ---- Positions ----

int Instr(int start, View text, View needle) {
  if (needle.empty()) return 0;
  const std::int64_t from = std::max(start, 1);
  if (from > static_cast<std::int64_t>(text.size())) return 0;
  const size_t at = text.find(needle, static_cast<size_t>(from - 1));
  if (at == npos) return 0;
  // q is the match's position within the copy from `from`; the result adds the start as
  // given, which is what makes starts below 1 shift it.
  const std::int64_t q = static_cast<std::int64_t>(at) - from + 2;
  return static_cast<int>(q + start - 1);
}

int InstrLeft(int limit, View text, View needle) {
  // Growing a window k..limit leftwards first contains the needle when k is the start of
  // the rightmost occurrence ending by the limit; find that occurrence directly.
  if (needle.empty() || limit < 1) return 0;
  const size_t end = std::min(static_cast<size_t>(limit), text.size());
  const size_t n = needle.size();
  if (n > end) return 0;
  const char16_t first = needle[0];
  for (size_t k = end - n + 1; k-- > 0;) {
    if (text[k] == first && text.compare(k, n, needle) == 0) return ToPos(k);
  }
  return 0;
}

int RPosFrom(View needle, View text, int limit) { return InstrLeft(limit, text, needle); }

int RPos(View needle, View text) { return InstrLeft(rtl::Length(text), text, needle); }

int LastPos(View needle, View text) {
  const size_t n = needle.size();
  if (n == 0) return 0;
  size_t m = n;
  for (size_t i = text.size(); i-- > 0;) {
    if (text[i] == needle[m - 1]) {
      if (--m == 0) return ToPos(i);
    } else {
      // The breaking character is not compared with the needle's end again: callers'
      // results depend on the matches this misses.
      m = n;
    }
  }
  return 0;
}

bool qmxPos(View needle, View text, int& pos) {
  pos = rtl::Pos(needle, text);
  return pos > 0;
}

int ULPos(View needle, View text) {
  return rtl::Pos(rtl::AnsiLowerCase(needle), rtl::AnsiLowerCase(text));
}

int OccurNr(View needle, View text, int n) {
  // A copy of the needle's length from each position is compared with the needle; the
  // copy is shortened at the end, so only whole matches count, and "" matches anywhere.
  if (needle.empty()) return n >= 1 && static_cast<size_t>(n) <= text.size() ? n : -1;
  int count = 0;
  for (size_t at = text.find(needle); at != npos; at = text.find(needle, at + 1)) {
    if (++count == n) return ToPos(at);
  }
  return -1;
}

int FirstDifferent(char16_t c, View text) {
  for (size_t i = 0; i < text.size(); ++i)
    if (text[i] != c) return ToPos(i);
  return 0;
}

int IsTxtInList(View text, const rtl::TStrings& list) {
  const int count = list.Count();
  for (int i = 0; i < count; ++i)
    if (rtl::Pos(text, list.Get(i)) > 0) return i;
  return -1;
}

std::u16string ContentBetween(View text, View a, View b) {
  const int p = rtl::Pos(a, text);
  if (p == 0) return {};
  const std::u16string tail = rtl::Copy(text, p + rtl::Length(a), 10000);
  const int q = rtl::Pos(b, tail);
  if (q == 0) return {};
  return tail.substr(0, static_cast<size_t>(q - 1));
}

// ---- Predicates and formatters ----

bool NoAlpha(View text) {
  return std::none_of(text.begin(), text.end(), [](char16_t c) { return kLetters.Has(c); });
}

bool DigitsInStr(View text) {
  return std::any_of(text.begin(), text.end(), [](char16_t c) { return c >= u'0' && c <= u'9'; });
}

std::u16string RemoveDblSpaces(View text) {
  std::u16string r;
  r.reserve(text.size());
  for (const char16_t c : text)
    if (c != u' ' || r.empty() || r.back() != u' ') r.push_back(c);
  return r;
}

std::u16string LeadStr(View text, char16_t fill, int width) {
  const int len = rtl::Length(text);
  return width > len ? rtl::StringOfChar(fill, width - len) + std::u16string(text)
                     : std::u16string(text);
}

std::u16string GetTwoNr(int n) { return n < 10 ? u"0" + rtl::IntToStr(n) : rtl::IntToStr(n); }

std::u16string GetThreeNr(int n) {
  if (n < 10) return u"00" + rtl::IntToStr(n);
  if (n > 10 && n < 100) return u"0" + rtl::IntToStr(n);
  if (n > 100) return rtl::IntToStr(n);
  // 10 and 100 fall between the cases; stored names were made with this gap.
  return {};
}

std::u16string qm_StrInvert(View text) { return std::u16string(text.rbegin(), text.rend()); }

std::u16string qm_HexStrInvert(View text) {
  std::u16string r;
  r.reserve(text.size());
  for (size_t end = text.size(); end >= 2; end -= 2) r.append(text.substr(end - 2, 2));
  return r;
}

std::u16string ReplaceStr(View text, View from, View to, bool /*flag*/) {
  return rtl::StringReplaceAll(text, from, to);
}

// ---- Tokenizer ----

TSequntialStrSearch::TSequntialStrSearch(View text, char16_t delimiter) {
  Init(text, delimiter);
}

void TSequntialStrSearch::Init(View text, char16_t delimiter) {
  text_ = std::u16string(text);
  delimiter_ = delimiter;
  const auto len = static_cast<std::int64_t>(text_.size());
  forwardPos_ = 1;
  backwardPos_ = previousEnd_ = forwardBound_ = len;
  itemsFound_ = 0;
  started_ = false;
  currentItem_.clear();
}

bool TSequntialStrSearch::Findnext() {
  // Arriving exactly on the last character counts as the end, which is why a final item
  // of one character is never delivered.
  if (forwardPos_ == forwardBound_) {
    currentItem_.clear();
    return false;
  }
  if (forwardPos_ > forwardBound_) return false;
  const size_t from = static_cast<size_t>(forwardPos_ - 1);
  const size_t x = text_.find(delimiter_, from);
  if (x == npos) {
    currentItem_ = text_.substr(from);
    forwardPos_ = forwardBound_;
  } else {
    currentItem_ = text_.substr(from, x - from);
    forwardPos_ = static_cast<std::int64_t>(x) + 2;
  }
  ++itemsFound_;
  started_ = true;
  return true;
}

bool TSequntialStrSearch::FindPrev() {
  if (backwardPos_ == 1) {
    currentItem_.clear();
    return false;
  }
  // 1-based position of the last delimiter at or before the backward position, 0 if none.
  std::int64_t x = backwardPos_;
  while (x >= 1 && text_[static_cast<size_t>(x - 1)] != delimiter_) --x;
  if (x >= 1) {
    // The first item runs to the end of the text; later ones stop before the delimiter
    // that ended the previous item.
    const std::int64_t end = started_ ? previousEnd_ - 1 : static_cast<std::int64_t>(text_.size());
    currentItem_ = rtl::Copy(text_, static_cast<int>(x + 1), static_cast<int>(end - x));
    previousEnd_ = x;
    backwardPos_ = x - 1;
  } else {
    // No delimiter passed at all means the whole text up to where the walk began.
    const std::int64_t end = previousEnd_ == backwardPos_ ? previousEnd_ : previousEnd_ - 1;
    currentItem_ = rtl::Copy(text_, 1, static_cast<int>(end));
    backwardPos_ = 1;
  }
  started_ = true;
  return true;
}

}  // namespace Qm_tools
