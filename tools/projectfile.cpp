// Project file readers: substring scans over the lines of a project file.
//
// The group readers are defined as "for every group line, scan on from it until the
// group's closing line", which is quadratic when groups pile up without closing lines.
// They are computed here from per-line facts gathered in one pass instead: every scan
// ends at the first closing line at or after its start, so the scans of two groups are
// either disjoint or end on the same line, and walking their union in line order adds
// the items to the sorted list in the same order (first occurrence first) as the
// group-by-group scans would.
#include "tools/projectfile.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "rtl/ustring.h"
#include "tools/fields.h"

namespace Qm_tools {

namespace {

using Str = std::u16string;
using View = std::u16string_view;

constexpr View kCloseTag = u"</";
constexpr View kPropertyGroupEnd = u"</PropertyGroup>";
constexpr View kItemGroupEnd = u"</ItemGroup>";
constexpr View kExeOutput = u"<DCC_ExeOutput>";
constexpr View kGenericOutput = u"$(Platform)\\$(Config)";
constexpr int kValueMax = 1255;

// Empty needles match nothing, as with the framework's Pos.
bool Holds(View s, View sub) { return !sub.empty() && s.find(sub) != View::npos; }

std::vector<Str> LinesOf(const rtl::TStrings& lines) {
  std::vector<Str> out;
  const int n = lines.Count();
  out.reserve(static_cast<size_t>(std::max(n, 0)));
  for (int i = 0; i < n; ++i) out.push_back(lines.Get(i));
  return out;
}

// For every line k, the first line at or after k that closes a group; the last line
// when none does (a scan also stops when the lines run out).
std::vector<size_t> ScanEnds(const std::vector<Str>& lines, View groupEnd) {
  const size_t n = lines.size();
  std::vector<size_t> end(n);
  for (size_t k = n; k-- > 0;)
    end[k] = (Holds(lines[k], groupEnd) || k + 1 == n) ? k : end[k + 1];
  return end;
}

Str Joined(const rtl::TStringList& list, char16_t separator) {
  Str out;
  for (int i = 0; i < list.Count(); ++i) {
    out += list.Get(i);
    out += separator;
  }
  return out;
}

}  // namespace

Str GetXMLValue(const rtl::TStrings& lines, View tag) {
  Str result;
  const int n = lines.Count();
  for (int i = 0; i < n; ++i) {
    const Str line = lines.Get(i);
    const size_t p = tag.empty() ? View::npos : line.find(tag);
    if (p == View::npos || !Holds(line, kCloseTag)) continue;
    const View rest = View(line).substr(p + tag.size());
    const View v = rest.substr(0, std::min<size_t>(rest.size(), kValueMax));
    const size_t close = v.find(kCloseTag);
    // Copy(v, 1, Pos("</", v) - 1): no closing tag within the value leaves it empty.
    result = close == View::npos ? Str() : Str(v.substr(0, close));
    if (tag != kExeOutput || !Holds(result, kGenericOutput)) break;
  }
  return result;
}

Str GetXMLProperty(const rtl::TStrings& lines, View group, View prop) {
  const int n = lines.Count();
  int i = 0;
  while (i < n && !Holds(lines.Get(i), group)) ++i;
  for (++i; i < n; ++i) {
    const Str line = lines.Get(i);
    if (Holds(line, prop)) {
      Str closing(prop.substr(0, 1));
      closing += u'/';
      closing += prop.substr(1);
      Str value = rtl::StringReplaceAll(line, prop, u"");
      value = rtl::StringReplaceAll(value, closing, u"");
      return rtl::StringReplaceAll(value, u"&amp;", u"&");
    }
    if (Holds(line, kPropertyGroupEnd) || i == n - 1) break;
  }
  return {};
}

Str GetXMLItems(const rtl::TStrings& lines, View group, View item) {
  const std::vector<Str> text = LinesOf(lines);
  const std::vector<size_t> end = ScanEnds(text, kItemGroupEnd);
  rtl::TStringList found;  // TStringList defaults: case-insensitive, locale-aware
  found.Duplicates = rtl::TDuplicates::dupIgnore;
  found.SetSorted(true);
  size_t next = 0;  // first line no earlier scan has reached
  for (size_t i = 0; i + 1 < text.size(); ++i) {
    if (!Holds(text[i], group)) continue;
    const size_t last = end[i + 1];
    for (size_t j = std::max(i + 1, next); j <= last; ++j)
      if (Holds(text[j], item)) found.Add(GetFieldStr(u'"', rtl::Trim(text[j]), 2));
    next = std::max(next, last + 1);
  }
  return Joined(found, u';');
}

Str GetXMLItemGroups(const rtl::TStrings& lines, View group, View item) {
  const std::vector<Str> text = LinesOf(lines);
  const size_t n = text.size();
  const std::vector<size_t> end = ScanEnds(text, kItemGroupEnd);
  // For every line, the first item line at or after it (n when none).
  std::vector<size_t> nextItem(n + 1, n);
  for (size_t k = n; k-- > 0;) nextItem[k] = Holds(text[k], item) ? k : nextItem[k + 1];
  rtl::TStringList found;
  found.Duplicates = rtl::TDuplicates::dupIgnore;
  found.SetSorted(true);
  // Further items of the same group would only add the same line again.
  for (size_t i = 0; i < n; ++i)
    if (Holds(text[i], group) && nextItem[i] <= end[i]) found.Add(text[i]);
  return Joined(found, u'\x01');
}

Str GetXMLPropertyGroups(const rtl::TStrings& lines, View group, View prop) {
  const std::vector<Str> text = LinesOf(lines);
  const size_t n = text.size();
  const std::vector<size_t> end = ScanEnds(text, kPropertyGroupEnd);
  // before[k]: property lines among the first k lines.
  std::vector<size_t> before(n + 1, 0);
  for (size_t k = 0; k < n; ++k) before[k + 1] = before[k] + (Holds(text[k], prop) ? 1 : 0);
  Str out;
  for (size_t i = 0; i + 1 < n; ++i) {
    if (!Holds(text[i], group)) continue;
    const size_t last = end[i + 1];
    for (size_t count = before[last + 1] - before[i + 1]; count > 0; --count) {
      out += text[i];
      out += u'\x01';
    }
  }
  return out;
}

Str GetInnerValue(View text) {
  // Pos("-->") + 3 whether found or not: without it the value starts at position 3.
  const int p = rtl::Pos(u"-->", text) + 3;
  const int q = rtl::PosEx(u"<!--", text, p + 1);
  return q >= 1 ? rtl::Copy(text, p, q - p) : Str();
}

}  // namespace Qm_tools
