// Delimited field strings: small lists of values kept in one string, separated by one
// caller-chosen character, numbered from 1, without escaping. Stored strings written by
// one routine are read back by another, so every edge below is part of the format.
//
// A delimiter ends the field before it; the text after the last delimiter is a field
// only when it is non-empty. So "a;b" (separated style) and "a;b;" (terminated style)
// both hold two fields, ";" holds one empty field and "" holds none.
//
// Not here: named values inside strings (tools/keyed.h).
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "rtl/classes.h"
#include "tools/qm_tools_api.h"

namespace Qm_tools {

// ---- Reading ----

// Number of fields: the delimiters, plus one when the string does not end with one.
//   GetFieldsCount(u';', u"a;b") == 2     GetFieldsCount(u';', u"a;b;") == 2
//   GetFieldsCount(u';', u";")   == 1     GetFieldsCount(u';', u"")     == 0
QM_TOOLS_API int GetFieldsCount(char16_t d, std::u16string_view s);

// Field `index` (1-based); "" when there is no such field.
QM_TOOLS_API std::u16string GetFieldStr(char16_t d, std::u16string_view s, int index);

// The string from field `index` on, less the string's last character.
//   CopyFieldStr(u';', u"a;b;c;", 2) == u"b;c"
//   CopyFieldStr(u';', u"a;b;c", 2)  == u"b;"   (the last character goes in any case)
//   CopyFieldStr(u';', u"a;b;c", 3)  == u"c"    (the open last field comes whole)
QM_TOOLS_API std::u16string CopyFieldStr(char16_t d, std::u16string_view s, int index);

// Resumable GetFieldStr for one pass over many fields: start with start = 1, count = 0
// and ask for index = count + 1 each time. Advances `start` past the field returned and
// counts the delimiters passed in `count`, which it never resets. A start below 1 reads
// from 1. Asking for index == count when s[start] is no delimiter returns the text
// before `start` (less its last character) and advances start by one.
QM_TOOLS_API std::u16string GetFieldStrAtStart(char16_t d, std::u16string_view s, int index, int& start,
                                  int& count);

// Number of the first field equal to `value` (case-sensitive), -1 if none.
QM_TOOLS_API int GetFieldPos(char16_t d, std::u16string_view s, std::u16string_view value);

// Number of the first field equal to `value` ignoring case (AnsiLowerCase on both), 0
// if none. An empty value gives 1 when `s` begins with the delimiter and 0 otherwise.
QM_TOOLS_API int GetIndexOf(char16_t d, std::u16string_view s, std::u16string_view value);

// Appends every field as a line (empty fields as empty lines); the list is not cleared.
QM_TOOLS_API void AddFieldsToStrList(char16_t d, std::u16string_view s, rtl::TStrings& list);

// Clears the list and fills it with the fields; true when it holds any line afterwards.
QM_TOOLS_API bool CreateDBFields(rtl::TStringList& list, std::u16string_view s, char16_t d);

// ---- Writing (the string is changed in place) ----

// Rebuilds the string with `value` as field `index`, always in separated style. Past the
// end it pads with index-count-1 delimiters (at least one): one field early on separated
// strings two or more out, one late on terminated strings one out. A result beyond the
// framework's 2^31-1 characters leaves `s` unchanged (both setters).
//   SetFieldStr(u';', "a;b;", u"x", 1) -> "x;b"     SetFieldStr(u';', "", u"x", 3) -> ";;x"
//   SetFieldStr(u';', "a;b", u"x", 4)  -> "a;b;x"
QM_TOOLS_API void SetFieldStr(char16_t d, std::u16string& s, std::u16string_view value, int index);

// Edits field `index` in place, leaving everything else (trailing delimiter included).
// Past the end it pads with index-count delimiters; index 0 prefixes the first field.
//   SetFieldStr2(u';', "a;b;", u"x", 1) -> "x;b;"   SetFieldStr2(u';', "", u"x", 1) -> ";x"
//   SetFieldStr2(u';', "a;b", u"x", 0)  -> "xa;b"
QM_TOOLS_API void SetFieldStr2(char16_t d, std::u16string& s, std::u16string_view value, int index);

// Removes field `index`; beyond the last field, or index <= 0, nothing changes.
//   "a;b;c", 2 -> "a;c"     "a;b;c", 1 -> "b;c"     "a;b;c", 3 -> "a;b"
QM_TOOLS_API void DeleteFieldStr(char16_t d, std::u16string& s, int index);

// Inserts `value` after field `index`. Without any delimiter in `s` the value goes in
// front whatever the index; past the last delimiter nothing happens.
//   "a;b;c", "x", 1 -> "a;x;b;c"     "abc", "x", 9 -> "x;abc"
QM_TOOLS_API void InsertFieldStr(char16_t d, std::u16string& s, std::u16string_view value, int index);

// Inserts `value` before field `index`; index 1 inserts after the first character.
// Without any delimiter, or with one in front, the value goes in front whatever the index.
//   "a;b;c", "x", 2 -> "a;x;b;c"     "ab;c", "x", 1 -> "ax;b;c"     ";b", "x", 2 -> "x;;b"
QM_TOOLS_API void InsertFieldStrBefore(char16_t d, std::u16string& s, std::u16string_view value,
                          int index);

// Appenders: terminated style ("a;b;"), separated style ("a;b") and the mixed one that
// ends with a delimiter only when the old string did not.
QM_TOOLS_API void qm_AddFieldStr(char16_t d, std::u16string& s, std::u16string_view value);
QM_TOOLS_API void qm_AddFieldStr2(char16_t d, std::u16string& s, std::u16string_view value);
QM_TOOLS_API void qm_AddFieldStr_Ver2(char16_t d, std::u16string& s, std::u16string_view value);

// ---- Array helpers ----

// The items joined by the delimiter; "" for no items.
QM_TOOLS_API std::u16string asStr(std::span<const std::u16string> items, char16_t d);
QM_TOOLS_API std::u16string asStr(std::initializer_list<std::u16string> items, char16_t d);

// Text for the current ToolsLanguage out of items written as "DE:Datei", "EN:File":
// the text from the fourth character (at most 5000) of the first item whose first two
// characters equal ToolsLanguage exactly; "" when none does.
QM_TOOLS_API std::u16string GLT(std::span<const std::u16string> texts);
QM_TOOLS_API std::u16string GLT(std::initializer_list<std::u16string> texts);

}  // namespace Qm_tools
