// Locale-aware case mapping and comparison, as the framework's Ansi* routines.
// Windows build: the user's locale through CharLowerBuffW / CompareStringW.
// Native build: the same rules from rtl/unicase.h (simple Unicode case mapping and a
// linguistic collation that sorts accented letters with their base letters).
#pragma once

#include <string>
#include <string_view>

namespace rtl {

std::u16string AnsiLowerCase(std::u16string_view s);
std::u16string AnsiUpperCase(std::u16string_view s);
// <0, 0, >0. Letters sort alphabetically whatever their accents: "Äpfel" < "Birne".
int AnsiCompareStr(std::u16string_view a, std::u16string_view b);
int AnsiCompareText(std::u16string_view a, std::u16string_view b);
bool AnsiSameText(std::u16string_view a, std::u16string_view b);

}  // namespace rtl
