// UTF-16 string helpers with the framework's string semantics: 1-based positions,
// copies and deletes that quietly clip to the string, "not found" as 0.
// Locale-aware case and comparison live in rtl/locale.h; this header is pure.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace rtl {

// Copy of `count` characters from 1-based `index`. An index below 1 acts as 1 (the
// count is not shortened); a count of zero or less, or an index past the end, gives "".
//   Copy(u"abc", 2, 9) == u"bc"     Copy(u"abc", 0, 2) == u"ab"     Copy(u"abc", 2, 0) == u""
std::u16string Copy(std::u16string_view s, int index, int count);
// Everything from 1-based `index` to the end.
std::u16string Copy(std::u16string_view s, int index);

// 1-based position of the first `sub` in `s`, 0 when absent or when `sub` is empty.
int Pos(std::u16string_view sub, std::u16string_view s);
// As Pos, searching from 1-based `offset`; an offset below 1 or past the end gives 0.
int PosEx(std::u16string_view sub, std::u16string_view s, int offset = 1);
// 1-based position of the first character `c`, 0 when absent.
int Pos(char16_t c, std::u16string_view s);

// Removes `count` characters from 1-based `index`; an index outside 1..length or a
// count of zero or less does nothing; the count is clipped at the end.
void Delete(std::u16string& s, int index, int count);
// Inserts `sub` before 1-based `index`; below 1 inserts at the front, past the end appends.
void Insert(std::u16string_view sub, std::u16string& s, int index);

// Without leading and trailing characters up to and including the space (controls too).
std::u16string Trim(std::u16string_view s);
std::u16string TrimLeft(std::u16string_view s);
std::u16string TrimRight(std::u16string_view s);

// ASCII-only case mapping: every other character stays as it is.
std::u16string LowerCase(std::u16string_view s);
std::u16string UpperCase(std::u16string_view s);
// Ordinal comparisons: CompareText folds ASCII letters only. <0, 0, >0.
int CompareStr(std::u16string_view a, std::u16string_view b);
int CompareText(std::u16string_view a, std::u16string_view b);
bool SameText(std::u16string_view a, std::u16string_view b);

std::u16string StringOfChar(char16_t c, int count);
std::u16string IntToStr(std::int64_t value);
// Decimal integer with optional sign and surrounding blanks; `fallback` on anything else.
int StrToIntDef(std::u16string_view s, int fallback);

// Every occurrence of `from` replaced by `to`, left to right, without rescanning the
// replacement. An empty `from` leaves the text unchanged.
std::u16string StringReplaceAll(std::u16string_view s, std::u16string_view from,
                                std::u16string_view to);

// UTF-8 <-> UTF-16. Malformed input (bad bytes, lone surrogates) becomes U+FFFD.
std::string Utf16ToUtf8(std::u16string_view s);
std::u16string Utf8ToUtf16(std::string_view s);

// Length of a UTF-16 string as the framework's 32-bit integer (clipped, never negative).
inline int Length(std::u16string_view s) {
  return s.size() > 0x7fffffffu ? 0x7fffffff : static_cast<int>(s.size());
}

}  // namespace rtl
