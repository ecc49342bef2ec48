// Readers for IDE project files (MSBuild-style XML written one element per line). They
// scan the lines with plain case-sensitive substring tests, not with an XML parser: the
// IDE writes these files in one fixed shape, and callers rely on exactly these matching
// rules, odd corners included. No entity decoding beyond the one "&amp;" noted below.
//
// Tags are passed with their angle brackets as they stand in the file ("<DCC_ExeOutput>");
// a group is the text that identifies the group's opening line. "</PropertyGroup>" ends a
// property group, "</ItemGroup>" an item group, and "</" begins a value's closing tag. An
// empty tag or group matches no line. Every reader returns "" when nothing is found and
// none raises.
//
// Not here: named values inside strings (tools/keyed.h), delimited fields (tools/fields.h).
#pragma once

#include <string>
#include <string_view>

#include "rtl/classes.h"
#include "tools/qm_tools_api.h"

namespace Qm_tools {

// Value of the first line holding `tag` and a "</": the text after the tag (at most 1255
// characters of it) up to the first "</" in that text; "" when that text holds none.
// Lines with the tag but no "</" are passed over.
// "<DCC_ExeOutput>" alone reads on past values holding the generic "$(Platform)\$(Config)",
// so a later concrete output folder wins; when every one is generic, the last one counts.
//   {"<A>x</A>", "<A>y</A>"}, "<A>"    -> "x"
//   {"<DCC_ExeOutput>.\$(Platform)\$(Config)</DCC_ExeOutput>",
//    "<DCC_ExeOutput>..\bin</DCC_ExeOutput>"}, "<DCC_ExeOutput>"   -> "..\bin"
QM_TOOLS_API std::u16string GetXMLValue(const rtl::TStrings& lines, std::u16string_view tag);

// Property `prop` of the first line holding `group` (only that group is searched): the first
// following line holding `prop`, with every `prop` and its closing tag ("<Foo>" ->
// "</Foo>") removed and "&amp;" turned into "&". Not trimmed. "" when the group ends
// ("</PropertyGroup>") or the lines run out first.
//   "    <Foo>A &amp; B</Foo>"  -> "    A & B"
QM_TOOLS_API std::u16string GetXMLProperty(const rtl::TStrings& lines, std::u16string_view group,
                              std::u16string_view prop);

// Items of every group holding `group`: each line holding `item` after a group line, up to
// and including the group's "</ItemGroup>" line, gives the text between its first two
// double quotes. Sorted and de-duplicated the way a default TStringList does it (case-
// insensitive, locale-aware); each entry followed by ";".
//   two groups with Include="b.pas", one with Include="A.pas"   -> "A.pas;b.pas;"
QM_TOOLS_API std::u16string GetXMLItems(const rtl::TStrings& lines, std::u16string_view group,
                           std::u16string_view item);

// The group lines, as they stand, of every item group holding at least one `item` line.
// Unlike GetXMLItems the group line itself counts as the group's first line. Sorted and
// de-duplicated as above; each entry followed by u'\x01'.
QM_TOOLS_API std::u16string GetXMLItemGroups(const rtl::TStrings& lines, std::u16string_view group,
                                std::u16string_view item);

// The group line, as it stands, once for every `prop` line in the property group it opens
// (up to and including its "</PropertyGroup>" line), in file order and not de-duplicated;
// each entry followed by u'\x01'.
QM_TOOLS_API std::u16string GetXMLPropertyGroups(const rtl::TStrings& lines, std::u16string_view group,
                                    std::u16string_view prop);

// The text between the first "-->" and the next "<!--" after it. Without a "-->" the text
// from position 3 is taken; a "<!--" right where the text starts is not seen.
//   "<!--a-->VALUE<!--b-->" -> "VALUE"    "x-->y<!--z" -> "y"    "no markers" -> ""
//   "ab<!--c" -> ""    "abcd<!--" -> "cd"
QM_TOOLS_API std::u16string GetInnerValue(std::u16string_view text);

}  // namespace Qm_tools
