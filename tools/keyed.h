// Named values kept inside one string ("a=1" + code 5 + "b=2") and inside a string list
// (one "name=value" line each). Strings written by one program version are read by
// another, so the matching rules below are part of the format.
//
// Lookup in a string is a plain, case-sensitive search for name + key separator,
// anywhere: "Width" also finds the entry "MaxWidth=" when that comes first. An entry runs
// from that match to the next entry separator or the end. There is no escaping.
//
// Not here: positional fields (tools/fields.h).
#pragma once

#include <string>
#include <string_view>

#include "rtl/classes.h"
#include "tools/qm_tools_api.h"

namespace Qm_tools {

// Replaces the value of the entry; without one `s` stays unchanged.
//   sns(u"b", u"9", "a=1,b=2,c=3", u',', u'=') -> "a=1,b=9,c=3"
QM_TOOLS_API void sns(std::u16string_view name, std::u16string_view value, std::u16string& s,
         char16_t es, char16_t ks);

// As sns, appending a new entry when the name is absent: with a leading entry separator
// unless `s` is empty, never with a trailing one.
//   snsadd(u"b", u"9", "a=1", u',', u'=') -> "a=1,b=9"       "" -> "b=9"
QM_TOOLS_API void snsadd(std::u16string_view name, std::u16string_view value, std::u16string& s,
            char16_t es, char16_t ks);

// Appends es + name + ks + value when the name is absent (also to an empty string).
// An existing entry is updated with the house separators, code 5 and '=', whatever was
// passed: with others the entry runs to the next code 5 or the end, or is not found.
//   SetToStr(u"b", u"9", "", u',', u'=')            -> ",b=9"
//   SetToStr(u"b", u"9", "a=1,b=2,c=3", u',', u'=') -> "a=1,b=9"
QM_TOOLS_API void SetToStr(std::u16string_view name, std::u16string_view value, std::u16string& s,
              char16_t es, char16_t ks);

// The value of the entry, or with `whole` the entry itself (name, separator, value);
// "" when absent.
//   gns(u"b", u"a=1,b=2", false, u',', u'=') == u"2"     (true: u"b=2")
//   gns(u"dth", u"width=5", false, u',', u'=') == u"5"
QM_TOOLS_API std::u16string gns(std::u16string_view name, std::u16string_view s, bool whole, char16_t es,
                   char16_t ks);

// Replaces the first line whose name (text before the first '=') matches `name` under
// AnsiLowerCase with name=value, spelled as passed; adds the line when none matches.
// A sorted list refuses the replacement as its Put does.
QM_TOOLS_API void SetVerwItem(rtl::TStringList& list, std::u16string_view name,
                 std::u16string_view value);

// Value of the first line whose name matches `name` under ASCII-only LowerCase; `def`
// when none. Non-ASCII letters in another case match SetVerwItem but not this: intended.
QM_TOOLS_API std::u16string GetVerwItem(const rtl::TStringList& list, std::u16string_view name,
                           std::u16string_view def);

}  // namespace Qm_tools
