// Fuzz target for named values in strings and lists. Names, values and strings come
// from an alphabet made of the separators and a few letters, so that partial matches,
// separators inside names and the house separators all turn up.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "rtl/classes.h"
#include "tools/keyed.h"
#include "fuzz/fuzz_input.h"

using namespace Qm_tools;

namespace {

using Str = std::u16string;

using fuzz::Check;

Str PickString(FuzzedDataProvider& in, char16_t es, char16_t ks, size_t most) {
  const char16_t alphabet[] = {es,      ks,   u'a',      u'b',     u'B',
                               u'\x05', u'=', u'\u00C4', u'\u00E4'};
  const size_t n = in.ConsumeIntegralInRange<size_t>(0, most);
  Str s;
  for (size_t k = 0; k < n && in.remaining_bytes() > 0; ++k)
    s += alphabet[in.ConsumeIntegralInRange<size_t>(0, std::size(alphabet) - 1)];
  return s;
}

char16_t PickSeparator(FuzzedDataProvider& in) {
  const char16_t choices[] = {u',', u'=', u'\x05', u'\0', u'a'};
  return choices[in.ConsumeIntegralInRange<size_t>(0, std::size(choices) - 1)];
}

bool Holds(const Str& s, char16_t c) { return s.find(c) != Str::npos; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  FuzzedDataProvider in(data, size);
  const char16_t es = PickSeparator(in), ks = PickSeparator(in);
  const Str s = PickString(in, es, ks, 200);
  const Str name = PickString(in, es, ks, 4);
  const Str value = PickString(in, es, ks, 4);
  Str key = name + ks;
  const bool present = s.find(key) != Str::npos;

  // The whole entry starts with the key and holds the value at its end.
  const Str entry = gns(name, s, true, es, ks), val = gns(name, s, false, es, ks);
  Check(present || (entry.empty() && val.empty()), "gns absent");
  Check(entry.size() >= val.size() &&
            entry.compare(entry.size() - val.size(), Str::npos, val) == 0,
        "gns value inside entry");

  Str a = s;
  sns(name, value, a, es, ks);
  Check(present || a == s, "sns absent");

  // Well-formed names and values read back what was written.
  const bool wellFormed =
      es != ks && !Holds(name, es) && !Holds(name, ks) && !Holds(value, es);
  Str b = s;
  snsadd(name, value, b, es, ks);
  if (wellFormed) Check(gns(name, b, false, es, ks) == value, "snsadd then gns");

  Str c = s;
  SetToStr(name, value, c, es, ks);
  if (!present) Check(c == s + es + name + ks + value, "SetToStr append");
  if (wellFormed && es == u'\x05' && ks == u'=')
    Check(gns(name, c, false, es, ks) == value, "SetToStr then gns");

  // Lists: the lines of the string, then one write and reads.
  rtl::TStringList list;
  size_t from = 0;
  for (size_t at; (at = s.find(es, from)) != Str::npos; from = at + 1)
    list.Add(s.substr(from, at - from));
  list.Add(s.substr(from));
  const int before = list.Count();
  SetVerwItem(list, name, value);
  Check(list.Count() == before || list.Count() == before + 1,
        "SetVerwItem adds at most one line");
  // An ASCII name without '=' is matched alike by both case rules.
  bool ascii = !Holds(name, u'=');
  for (char16_t ch : name) ascii = ascii && ch < 0x80;
  if (ascii)
    Check(GetVerwItem(list, name, u"\u00FF") == value, "SetVerwItem then GetVerwItem");
  GetVerwItem(list, value, name);
  return 0;
}
