// Locale-free Unicode rules that stand in for the user locale where the system offers
// none: simple case mapping of one UTF-16 code unit, and a linguistic order of strings
// modelled on the Windows default sort (German and English share it).
// Holds no state and calls no system; rtl/locale.h is built on it.
#pragma once

#include <string_view>

namespace rtl {

// One-to-one case mapping for ASCII, Latin-1, Latin Extended-A (and the regular pairs of
// Extended-B), Greek, Cyrillic, Armenian, Latin Extended Additional and the fullwidth
// Latin letters. A character without a single-character counterpart stays as it is.
//   ToLowerChar(u'Ä') == u'ä'     ToLowerChar(u'İ') == u'i'     ToUpperChar(u'ÿ') == u'Ÿ'
//   ToUpperChar(u'ß') == u'ß'     ToUpperChar(u'ı') == u'I'
char16_t ToLowerChar(char16_t c);
char16_t ToUpperChar(char16_t c);

// Linguistic order, <0, 0, >0. Levels, each consulted only when the ones before tie:
//  1. base letters, accents ignored: "Äpfel" < "Birne"; "ß" weighs as "ss", "æ" as "ae".
//     Punctuation and symbols < digits < Latin < Greek < Cyrillic < anything else.
//     Hyphens, apostrophes and control characters weigh nothing here:
//     "co-op" and "coop" tie, "coop" < "co-pilot".
//  2. accents, unaccented first: "Apfel" < "Äpfel".
//  3. case, lower first: "apfel" < "Apfel"; skipped when `ignoreCase`.
//  4. the hyphens, apostrophes and controls set aside at level 1: "coop" < "co-op".
// Strings that tie at every level are equal even when their code units differ, as the
// system says: "Straße" == "Strasse", and a soft hyphen is invisible.
int CollateCompare(std::u16string_view a, std::u16string_view b, bool ignoreCase);

}  // namespace rtl
