// Fuzz target for the project file readers. The input becomes the lines of a file and a
// few tags, all from an alphabet of tag fragments, so that groups, items, closing lines
// and the generic output folder turn up often. The group readers are checked against
// their plain definition (a scan from every group line), which they compute faster.
#include <fuzzer/FuzzedDataProvider.h>

#include <string>
#include <vector>

#include "rtl/classes.h"
#include "rtl/ustring.h"
#include "tools/fields.h"
#include "tools/projectfile.h"
#include "fuzz/fuzz_input.h"

using namespace Qm_tools;

namespace {

using Str = std::u16string;

using fuzz::Check;

const char16_t* const kPieces[] = {
    u"<G>",          u"<I ",       u"</ItemGroup>", u"</PropertyGroup>", u"<P>", u"</P>",
    u"</",           u"\"",        u"a",            u"B",                u" ",   u"&amp;",
    u"<DCC_ExeOutput>", u"$(Platform)\\$(Config)", u"-->", u"<!--",     u"\u00C4", u"\u00E4",
};

Str PickText(FuzzedDataProvider& in, size_t most) {
  const size_t n = in.ConsumeIntegralInRange<size_t>(0, most);
  Str s;
  for (size_t k = 0; k < n && in.remaining_bytes() > 0; ++k)
    s += kPieces[in.ConsumeIntegralInRange<size_t>(0, std::size(kPieces) - 1)];
  return s;
}

bool Has(const Str& s, const Str& sub) { return rtl::Pos(sub, s) > 0; }

// The readers' definitions, scan by scan.
Str PlainItems(const rtl::TStrings& lines, const Str& group, const Str& item, bool groups) {
  rtl::TStringList found;
  found.SetSorted(true);
  found.Duplicates = rtl::TDuplicates::dupIgnore;
  for (int i = 0; i < lines.Count(); ++i) {
    if (!Has(lines[i], group)) continue;
    for (int j = groups ? i : i + 1; j < lines.Count(); ++j) {
      if (Has(lines[j], item))
        found.Add(groups ? lines[i] : GetFieldStr(u'"', rtl::Trim(lines[j]), 2));
      if (Has(lines[j], u"</ItemGroup>")) break;
    }
  }
  Str out;
  for (int i = 0; i < found.Count(); ++i) out += found[i] + (groups ? u'\x01' : u';');
  return out;
}

Str PlainPropertyGroups(const rtl::TStrings& lines, const Str& group, const Str& prop) {
  Str out;
  for (int i = 0; i < lines.Count(); ++i) {
    if (!Has(lines[i], group)) continue;
    for (int j = i + 1; j < lines.Count(); ++j) {
      if (Has(lines[j], prop)) out += lines[i] + u'\x01';
      if (Has(lines[j], u"</PropertyGroup>")) break;
    }
  }
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  FuzzedDataProvider in(data, size);
  const Str group = PickText(in, 2), item = PickText(in, 2), tag = PickText(in, 2);
  rtl::TStringList lines;
  const size_t count = in.ConsumeIntegralInRange<size_t>(0, 64);
  for (size_t k = 0; k < count && in.remaining_bytes() > 0; ++k) lines.Add(PickText(in, 8));
  // Now and then one huge line, so that the value cut and long scans are reached.
  if (in.ConsumeBool())
    lines.Add(Str(in.ConsumeIntegralInRange<size_t>(0, 5000), u'x') + tag + u"</");

  const Str value = GetXMLValue(lines, tag);
  Check(value.size() <= 1255, "value cut");
  Check(value.find(u"</") == Str::npos, "value before close");
  GetXMLValue(lines, u"<DCC_ExeOutput>");
  GetXMLProperty(lines, group, item);
  GetXMLProperty(lines, group, tag);
  Check(GetXMLItems(lines, group, item) == PlainItems(lines, group, item, false), "items");
  Check(GetXMLItemGroups(lines, group, item) == PlainItems(lines, group, item, true),
        "item groups");
  Check(GetXMLPropertyGroups(lines, group, item) == PlainPropertyGroups(lines, group, item),
        "property groups");
  for (int i = 0; i < lines.Count(); ++i) {
    const Str inner = GetInnerValue(lines[i]);
    Check(inner.size() <= lines[i].size(), "inner value inside text");
  }
  return 0;
}
