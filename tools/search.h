// Word and position search: whole-word search with fixed word-character sets, forward,
// reverse and n-th occurrence search, a wildcard matcher, a resumable tokenizer and a
// few small text predicates and formatters. Positions are 1-based; "none" is 0 unless a
// routine says -1. Callers rely on the odd results noted below, so they are kept.
//
// Case-insensitive routines find the lower-cased needle (rtl::AnsiLowerCase) in the
// lower-cased text, but always judge word boundaries on the text as passed in.
//
// Not here: delimited fields (tools/fields.h), named values (tools/keyed.h).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "rtl/classes.h"
#include "tools/qm_tools_api.h"

namespace Qm_tools {

// ---- Whole words ----
//
// A match is a whole word when the characters just before and after it (if any) are not
// in the routine's word-character set. The sets: Letters (a-z, A-Z, äöüÄÖÜß), Wide
// letters (Letters plus éíúáóèìùàòâêôîûÂÊÔÎÛñÑçÇ), Wide letters with digits, Wide letters
// with the hyphen. Anything outside the set, digits included where they are not in it,
// is a boundary.

// First whole-word match, case-insensitive; Wide letters, or Wide letters with digits when
// `withDigits`. After a rejected match it looks further only when the word occurs written
// in lower case later on; that later search uses Wide letters and takes the position
// right after the rejected match's start as a good left side, whatever precedes it.
//   WordPos(u"ab", u"xab ab", false)  == 5     WordPos(u"ab", u"xab AB", false) == 0
//   WordPos(u"ab", u"ab1", true)      == 0     WordPos(u"ab", u"ab1", false)    == 1
//   WordPos(u"ab", u"xab ab1", true)  == 5     (the later search ignores digits)
//   WordPos(u"aa", u"xaaa", false)    == 3     (not a word in the whole text)
QM_TOOLS_API int WordPos(std::u16string_view word, std::u16string_view text, bool withDigits);

// As WordPos with Wide letters and the hyphen throughout.
//   WordPos2(u"ab", u"ab-c") == 0             WordPos(u"ab", u"ab-c", false) == 1
QM_TOOLS_API int WordPos2(std::u16string_view word, std::u16string_view text);

// The first match only, Wide letters with digits: a first match that is not a whole word
// gives 0 even when a later one is. WordNumberPos is the same routine under another name.
//   WordPos3(u"ab", u"xab ab") == 0
QM_TOOLS_API int WordPos3(std::u16string_view word, std::u16string_view text);
QM_TOOLS_API int WordNumberPos(std::u16string_view word, std::u16string_view text);

// The first match only, Letters.
//   CharsetPos(u"ab", u"xab ab") == 0
QM_TOOLS_API int CharsetPos(std::u16string_view word, std::u16string_view text);

// The first match only, Letters, and only its left side is checked.
//   WordLeftPos(u"ab", u"ab1") == 1           WordLeftPos(u"ab", u"abc") == 1
QM_TOOLS_API int WordLeftPos(std::u16string_view word, std::u16string_view text);

// The first match found by Instr(start, ...) on the lower-cased strings, if it is a whole
// word (Wide letters). A start below 1 shifts the position as Instr does; the shifted
// position is then tested, and one below 1 is never a word.
QM_TOOLS_API int WordPosFrom(std::u16string_view word, std::u16string_view text, int start);

// True when some field of the delimited string `words` is found by WordPos(field, text,
// false). Empty fields never match.
QM_TOOLS_API bool WordsInText(char16_t d, std::u16string_view words, std::u16string_view text);

// ---- Positions (case-sensitive unless noted) ----

// First `needle` in `text` at or after `start`. A start below 1 searches the whole text
// but still shifts the result by start - 1.
//   Instr(2, u"abab", u"ab") == 3     Instr(0, u"xab", u"ab") == 1     Instr(0, u"ab", u"ab") == 0
QM_TOOLS_API int Instr(int start, std::u16string_view text, std::u16string_view needle);

// Start of the last occurrence lying wholly within positions 1..limit, 0 if none.
//   InstrLeft(5, u"banana", u"a") == 4     InstrLeft(5, u"banana", u"na") == 3
QM_TOOLS_API int InstrLeft(int limit, std::u16string_view text, std::u16string_view needle);
// InstrLeft with its arguments in another order.
QM_TOOLS_API int RPosFrom(std::u16string_view needle, std::u16string_view text, int limit);
// Start of the last occurrence: RPos(u"a", u"banana") == 6.
QM_TOOLS_API int RPos(std::u16string_view needle, std::u16string_view text);

// Last occurrence by a backward walk that, after a partial match breaks, does not test
// the breaking character again; so it misses matches that overlap a false start.
//   LastPos(u"na", u"banana") == 5     LastPos(u"ab", u"abb") == 0
QM_TOOLS_API int LastPos(std::u16string_view needle, std::u16string_view text);

// `pos` := first occurrence or 0; true when found.
QM_TOOLS_API bool qmxPos(std::u16string_view needle, std::u16string_view text, int& pos);

// First occurrence ignoring case (both lower-cased), 0 if none.
QM_TOOLS_API int ULPos(std::u16string_view needle, std::u16string_view text);

// Start of the n-th occurrence, overlapping ones counted; -1 if there are fewer. An empty
// needle occurs at every position of the text.
//   OccurNr(u"aa", u"aaaa", 3) == 3     OccurNr(u"", u"abc", 2) == 2
QM_TOOLS_API int OccurNr(std::u16string_view needle, std::u16string_view text, int n);

// Position of the first character other than `c`; 0 when there is none.
QM_TOOLS_API int FirstDifferent(char16_t c, std::u16string_view text);

// 0-based index of the first line that contains `text`, -1 if none (also for "").
QM_TOOLS_API int IsTxtInList(std::u16string_view text, const rtl::TStrings& list);

// Text between the first `a` and the next `b` after it; "" when either is missing. Only
// the first 10000 characters after `a` are searched for `b`.
//   ContentBetween(u"x<a>y</a>", u"<a>", u"</a>") == u"y"
QM_TOOLS_API std::u16string ContentBetween(std::u16string_view text, std::u16string_view a,
                              std::u16string_view b);

// Case-sensitive wildcard match of the whole text: '*' any run, '?' one character. A
// mismatch goes back to the latest '*' only, resuming one character after where the
// literal following that '*' was last found; so '?'s right after a '*' are consumed again
// from there and can miss a match. The time grows linearly with the text.
//   qm_Like(u"abc", u"a*c") == true      qm_Like(u"abc", u"A*") == false
//   qm_Like(u"xbb", u"*?b") == false     (would need the '?' on the first 'b')
QM_TOOLS_API bool qm_Like(std::u16string_view text, std::u16string_view pattern);

// ---- Predicates and formatters ----

// True when no character is a Letter (a-z, A-Z, äöüÄÖÜß); true for "".
QM_TOOLS_API bool NoAlpha(std::u16string_view text);
// True when some character is '0'..'9'.
QM_TOOLS_API bool DigitsInStr(std::u16string_view text);
// Every run of spaces (U+0020 only) shortened to one.
QM_TOOLS_API std::u16string RemoveDblSpaces(std::u16string_view text);
// Left-padded with `fill` to `width`; a longer text stays as it is.
QM_TOOLS_API std::u16string LeadStr(std::u16string_view text, char16_t fill, int width);

// Two-digit number: GetTwoNr(7) == u"07", GetTwoNr(-3) == u"0-3", GetTwoNr(123) == u"123".
QM_TOOLS_API std::u16string GetTwoNr(int n);
// Three-digit number, with a gap at exactly 10 and 100 that callers have to live with:
//   GetThreeNr(5) == u"005"   GetThreeNr(42) == u"042"   GetThreeNr(-1) == u"00-1"
//   GetThreeNr(10) == u""     GetThreeNr(100) == u""
QM_TOOLS_API std::u16string GetThreeNr(int n);

// Characters (UTF-16 code units) in reverse order.
QM_TOOLS_API std::u16string qm_StrInvert(std::u16string_view text);
// Two-character groups in reverse order, as for the bytes of a hex number; with an odd
// length the first character is lost.
//   qm_HexStrInvert(u"A1B2C3") == u"C3B2A1"     qm_HexStrInvert(u"ABC") == u"BC"
QM_TOOLS_API std::u16string qm_HexStrInvert(std::u16string_view text);

// Every `from` replaced by `to`, case-sensitive. `flag` is accepted for old callers and
// has no effect.
QM_TOOLS_API std::u16string ReplaceStr(std::u16string_view text, std::u16string_view from,
                          std::u16string_view to, bool flag);

// ---- Tokenizer ----

// Walks the items of a delimited text forwards (Findnext) or backwards (FindPrev), one
// direction per Init. Both walks lose an outermost item of one character:
//   "ab;cd;ef": Findnext -> "ab", "cd", "ef", false; FindPrev -> "ef", "cd", "ab", false
//   "a;b":      Findnext -> "a", false;              FindPrev -> "b", false
// An item between adjacent delimiters comes as "". A false result clears CurrentItem,
// except for a forward walk over a text ending in the delimiter, which keeps the last.
class QM_TOOLS_API TSequntialStrSearch {
 public:
  TSequntialStrSearch(std::u16string_view text, char16_t delimiter);

  // Starts over on a new text, in either direction.
  void Init(std::u16string_view text, char16_t delimiter);
  bool Findnext();
  bool FindPrev();

  const std::u16string& CurrentItem() const { return currentItem_; }
  // Items delivered by Findnext since Init.
  std::int64_t ItemsFound() const { return itemsFound_; }

 private:
  std::u16string text_;
  std::u16string currentItem_;
  bool started_ = false;
  std::int64_t previousEnd_ = 0;
  std::int64_t forwardBound_ = 0;
  std::int64_t itemsFound_ = 0;
  char16_t delimiter_ = u';';
  std::int64_t backwardPos_ = 0;
  std::int64_t forwardPos_ = 1;
};

}  // namespace Qm_tools
