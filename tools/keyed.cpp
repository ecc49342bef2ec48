// Named values inside strings and string lists. Positional fields are in fields.cpp.
#include "tools/keyed.h"

#include "rtl/locale.h"
#include "rtl/ustring.h"

namespace Qm_tools {
namespace {

constexpr size_t npos = std::u16string_view::npos;

struct Entry {
  size_t at = npos;  // where the name + key separator match starts; npos when absent
  size_t length = 0;
};

// Unanchored on purpose: stored strings have always been searched this way, and
// callers pick names that are no suffixes of each other.
Entry FindEntry(std::u16string_view name, std::u16string_view s, char16_t es, char16_t ks) {
  std::u16string key(name);
  key += ks;
  Entry e;
  e.at = s.find(key);
  if (e.at == npos) return e;
  const size_t end = s.find(es, e.at);
  e.length = (end == npos ? s.size() : end) - e.at;
  return e;
}

// The entry up to and including its first key separator; "" when a name holding the
// entry separator cut the entry short of it.
std::u16string_view NamePart(std::u16string_view entry, char16_t ks) {
  const size_t k = entry.find(ks);
  return k == npos ? std::u16string_view() : entry.substr(0, k + 1);
}

// Text before the first '=', or false for a line without one.
bool LineName(std::u16string_view line, std::u16string_view& name) {
  const size_t eq = line.find(u'=');
  if (eq == npos) return false;
  name = line.substr(0, eq);
  return true;
}

}  // namespace

void sns(std::u16string_view name, std::u16string_view value, std::u16string& s,
         char16_t es, char16_t ks) {
  const Entry e = FindEntry(name, s, es, ks);
  if (e.at == npos) return;
  const std::u16string_view text(s);
  // Built aside: name and value may be views of `s` itself.
  std::u16string r(text.substr(0, e.at));
  r += NamePart(text.substr(e.at, e.length), ks);
  r += value;
  r += text.substr(e.at + e.length);
  s = std::move(r);
}

void snsadd(std::u16string_view name, std::u16string_view value, std::u16string& s,
            char16_t es, char16_t ks) {
  // Copies: name and value may be views of `s`, which grows below.
  const std::u16string n(name), v(value);
  if (FindEntry(n, s, es, ks).at == npos) {
    if (!s.empty()) s += es;
    s += n;
    s += ks;
  }
  sns(n, v, s, es, ks);
}

void SetToStr(std::u16string_view name, std::u16string_view value, std::u16string& s,
              char16_t es, char16_t ks) {
  const std::u16string n(name), v(value);
  if (FindEntry(n, s, es, ks).at != npos) {
    // The update has always used the house separators, not the ones passed in; strings
    // in the wild were written that way, so it stays.
    sns(n, v, s, u'\x05', u'=');
    return;
  }
  s += es;
  s += n;
  s += ks;
  s += v;
}

std::u16string gns(std::u16string_view name, std::u16string_view s, bool whole, char16_t es,
                   char16_t ks) {
  const Entry e = FindEntry(name, s, es, ks);
  if (e.at == npos) return {};
  const std::u16string_view entry = s.substr(e.at, e.length);
  if (whole) return std::u16string(entry);
  return std::u16string(entry.substr(NamePart(entry, ks).size()));
}

void SetVerwItem(rtl::TStringList& list, std::u16string_view name,
                 std::u16string_view value) {
  std::u16string line(name);
  line += u'=';
  line += value;
  const std::u16string wanted = rtl::AnsiLowerCase(name);
  for (int i = 0; i < list.Count(); ++i) {
    const std::u16string current = list.Get(i);
    std::u16string_view n;
    if (LineName(current, n) && rtl::AnsiLowerCase(n) == wanted) {
      list.Put(i, line);
      return;
    }
  }
  list.Add(line);
}

std::u16string GetVerwItem(const rtl::TStringList& list, std::u16string_view name,
                           std::u16string_view def) {
  // ASCII-only here, unlike SetVerwItem: readers have always matched this way.
  const std::u16string wanted = rtl::LowerCase(name);
  for (int i = 0; i < list.Count(); ++i) {
    const std::u16string current = list.Get(i);
    std::u16string_view n;
    if (LineName(current, n) && rtl::LowerCase(n) == wanted)
      return current.substr(n.size() + 1);
  }
  return std::u16string(def);
}

}  // namespace Qm_tools
