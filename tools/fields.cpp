// Delimited field strings: counting, reading, writing and searching the fields of one
// string, and the array helpers asStr and GLT. Named values inside strings are in
// keyed.cpp.
//
// Stored strings are written by one routine and read back by another, so the odd edges
// (the cut last character of CopyFieldStr, the uneven padding of the two setters, the
// insert after the first character) are kept exactly as they have always behaved.
// Every reader and writer is one pass over the string; the delimiter search uses
// find() so that long lists run at the speed of a plain character search.
#include "tools/fields.h"

#include <algorithm>
#include <functional>

#include "rtl/locale.h"
#include "rtl/ustring.h"
#include "tools/qm_globals.h"

namespace Qm_tools {
namespace {

constexpr size_t npos = std::u16string_view::npos;

// The framework's strings are limited to a 32-bit length. A padding writer asked for a
// longer string leaves it as it was rather than fail half-way through.
constexpr long long kMaxLength = 0x7fffffff;

// Whether the text after the last delimiter counts as a field of its own.
bool EndsOpen(char16_t d, std::u16string_view s) { return !s.empty() && s.back() != d; }

// Delimiter counts wrap as the framework's integers do, so that a hostile count handed
// to GetFieldStrAtStart cannot overflow.
int Inc(int n) { return static_cast<int>(static_cast<unsigned>(n) + 1u); }

// Copy with 1-based position and count, as rtl::Copy, on 64-bit arithmetic: positions
// derived from a caller's start value may lie anywhere.
std::u16string Sub(std::u16string_view s, long long pos, long long count) {
  if (count <= 0) return {};
  if (pos < 1) pos = 1;
  if (pos > static_cast<long long>(s.size())) return {};
  return std::u16string(s.substr(static_cast<size_t>(pos - 1), static_cast<size_t>(count)));
}

// A value may be a view of the very string being written (qm_AddFieldStr(d, s, s));
// growing `s` would free the text under it, so such a value is copied first.
std::u16string_view Detach(std::u16string_view v, const std::u16string& s,
                           std::u16string& keep) {
  const std::less_equal<const char16_t*> le;
  if (!v.empty() && le(s.data(), v.data()) && le(v.data(), s.data() + s.capacity())) {
    keep.assign(v);
    return keep;
  }
  return v;
}

// `s` + n delimiters + `v`, unless that outgrows the framework's string.
void Pad(std::u16string& s, long long n, char16_t d, std::u16string_view v) {
  if (static_cast<long long>(s.size()) + n + static_cast<long long>(v.size()) > kMaxLength)
    return;
  std::u16string keep;
  v = Detach(v, s, keep);
  s.append(static_cast<size_t>(n), d);
  s.append(v);
}

// The fields in order, in one pass: what GetFieldStr gives for 1, 2, ... count.
class FieldWalk {
 public:
  FieldWalk(char16_t d, std::u16string_view s) : d_(d), s_(s) {}
  bool Next(std::u16string_view& field) {
    if (from_ >= s_.size()) return false;
    const size_t at = s_.find(d_, from_);
    if (at == npos) {
      field = s_.substr(from_);
      from_ = s_.size();
      return true;
    }
    field = s_.substr(from_, at - from_);
    from_ = at + 1;
    // A delimiter as the last character ends its field and opens no further one.
    if (from_ == s_.size()) from_ = npos;
    return true;
  }

 private:
  char16_t d_;
  std::u16string_view s_;
  size_t from_ = 0;
};

}  // namespace

// ---- Reading ----

int GetFieldsCount(char16_t d, std::u16string_view s) {
  const auto delimiters = std::count(s.begin(), s.end(), d);
  return static_cast<int>(
      std::min<long long>(delimiters + (EndsOpen(d, s) ? 1 : 0), kMaxLength));
}

std::u16string GetFieldStr(char16_t d, std::u16string_view s, int index) {
  if (index <= 0) return {};
  size_t from = 0;
  int n = 0;
  for (size_t at; (at = s.find(d, from)) != npos; from = at + 1)
    if (++n == index) return std::u16string(s.substr(from, at - from));
  if (EndsOpen(d, s) && n + 1 == index) return std::u16string(s.substr(from));
  return {};
}

std::u16string CopyFieldStr(char16_t d, std::u16string_view s, int index) {
  if (index <= 0) return {};
  size_t from = 0;
  int n = 0;
  for (size_t at; (at = s.find(d, from)) != npos; from = at + 1)
    // The string's last character goes whatever it is: callers built on terminated
    // lists expect the trailing delimiter dropped, and the same cut applies to the rest.
    if (++n == index) return std::u16string(s.substr(from, s.size() - from - 1));
  if (EndsOpen(d, s) && n + 1 == index) return std::u16string(s.substr(from));
  return {};
}

std::u16string GetFieldStrAtStart(char16_t d, std::u16string_view s, int index, int& start,
                                  int& count) {
  const long long len = static_cast<long long>(s.size());
  const long long first = std::max(start, 1);
  long long q = 0, p = first - 1;
  // The index test runs after every character, not only at delimiters. Between
  // delimiters the count stands still, so apart from the first character examined it can
  // only fire at a delimiter; that first character fires when the caller asks for the
  // field it has already counted, and then yields the text before `start`.
  if (first <= len && s[first - 1] != d && count == index) {
    start = static_cast<int>(first + 1);
    return Sub(s, 1, p - 1);
  }
  for (long long x = first; x <= len;) {
    const size_t at = s.find(d, static_cast<size_t>(x - 1));
    if (at == npos) break;
    count = Inc(count);
    q = p;
    p = static_cast<long long>(at) + 1;
    if (count == index) {
      start = static_cast<int>(p + 1);
      return Sub(s, q + 1, p - q - 1);
    }
    x = p + 1;
  }
  if (EndsOpen(d, s) && Inc(count) == index) {
    start = static_cast<int>(std::min(len + 1, kMaxLength));
    return Sub(s, p + 1, len);
  }
  return {};
}

int GetFieldPos(char16_t d, std::u16string_view s, std::u16string_view value) {
  FieldWalk walk(d, s);
  std::u16string_view field;
  for (int n = 1; walk.Next(field); ++n)
    if (field == value) return n;
  return -1;
}

int GetIndexOf(char16_t d, std::u16string_view s, std::u16string_view value) {
  if (s.empty()) return 0;
  const std::u16string wanted = rtl::AnsiLowerCase(value);
  // The comparison has always run after every character, also before the first
  // delimiter, where the compared text is still empty: an empty value stops there with 0.
  if (s.front() != d && wanted.empty()) return 0;
  FieldWalk walk(d, s);
  std::u16string_view field;
  for (int n = 1; walk.Next(field); ++n)
    if (rtl::AnsiLowerCase(field) == wanted) return n;
  return 0;
}

void AddFieldsToStrList(char16_t d, std::u16string_view s, rtl::TStrings& list) {
  FieldWalk walk(d, s);
  for (std::u16string_view field; walk.Next(field);) list.Add(field);
}

bool CreateDBFields(rtl::TStringList& list, std::u16string_view s, char16_t d) {
  list.Clear();
  AddFieldsToStrList(d, s, list);
  return list.Count() > 0;
}

// ---- Writing ----

void SetFieldStr(char16_t d, std::u16string& s, std::u16string_view value, int index) {
  const int c = GetFieldsCount(d, s);
  if (index > c) {
    if (index == 1 && s.empty()) {
      s = std::u16string(value);
      return;
    }
    // One delimiter fewer than the distance, but at least one: exact for terminated
    // strings two or more fields out and for separated strings one field out. Lists on
    // disk were padded this way, so the uneven result stays.
    long long n = static_cast<long long>(index) - c - 1;
    if (n == 0) n = 1;
    Pad(s, n, d, value);
    return;
  }
  // Rebuilt field by field: always separated style, so a trailing delimiter goes even
  // when no field is replaced (index <= 0).
  std::u16string r;
  r.reserve(s.size() + value.size());
  FieldWalk walk(d, s);
  std::u16string_view field;
  for (int n = 1; walk.Next(field); ++n) {
    if (n > 1) r += d;
    r += n == index ? value : field;
  }
  s = std::move(r);
}

void SetFieldStr2(char16_t d, std::u16string& s, std::u16string_view value, int index) {
  const int c = GetFieldsCount(d, s);
  if (index > c) {
    // As many delimiters as the distance: exact for separated strings only, and an
    // empty string gets a leading delimiter (v lands in field 2). Kept as written.
    Pad(s, static_cast<long long>(index) - c, d, value);
    return;
  }
  if (index < 0) return;
  std::u16string keep;
  value = Detach(value, s, keep);
  if (index == 0) {
    // The field test runs at every character; with no delimiter counted yet it fires at
    // the first one and puts the value in front of it.
    if (!s.empty() && s.front() != d) s.insert(0, value);
    return;
  }
  size_t from = 0;
  int n = 0;
  for (size_t at; (at = s.find(d, from)) != npos; from = at + 1)
    if (++n == index) {
      s.replace(from, at - from, value);
      return;
    }
  if (EndsOpen(d, s) && n + 1 == index) s.replace(from, npos, value);
}

void DeleteFieldStr(char16_t d, std::u16string& s, int index) {
  if (index <= 0) return;
  size_t from = 0;
  int n = 0;
  for (size_t at; (at = s.find(d, from)) != npos; from = at + 1)
    if (++n == index) {
      // The delimiter before the field goes with it; only the first field takes its
      // own delimiter instead.
      if (from > 0)
        s.erase(from - 1, at - from + 1);
      else
        s.erase(0, at + 1);
      return;
    }
  if (EndsOpen(d, s) && n + 1 == index) s.erase(from == 0 ? 0 : from - 1);
}

void InsertFieldStr(char16_t d, std::u16string& s, std::u16string_view value, int index) {
  std::u16string ins(value);
  ins += d;
  if (s.find(d) == npos) {
    s.insert(0, ins);
    return;
  }
  // Past the last field nothing happens: the padded string is worked out and then
  // dropped, so callers have always seen a no-op here.
  if (index < 0 || index > GetFieldsCount(d, s)) return;
  if (index == 0) {
    // The count test fires at the first character when it is not a delimiter.
    if (s.front() != d) s.insert(1, ins);
    return;
  }
  size_t from = 0;
  int n = 0;
  for (size_t at; (at = s.find(d, from)) != npos; from = at + 1)
    if (++n == index) {
      s.insert(at + 1, ins);
      return;
    }
}

void InsertFieldStrBefore(char16_t d, std::u16string& s, std::u16string_view value,
                          int index) {
  std::u16string ins(value);
  ins += d;
  if (s.find(d) == npos || s.front() == d) {
    s.insert(0, ins);
    return;
  }
  if (index <= 0 || index > GetFieldsCount(d, s)) return;
  if (index == 1) {
    // The count already equals index-1 at the first character, so the value goes in
    // after it ("ab;c", "x" -> "ax;b;c"); stored lists were written that way.
    s.insert(1, ins);
    return;
  }
  size_t from = 0;
  int n = 0;
  for (size_t at; (at = s.find(d, from)) != npos; from = at + 1)
    if (++n == index - 1) {
      s.insert(at + 1, ins);
      return;
    }
}

void qm_AddFieldStr(char16_t d, std::u16string& s, std::u16string_view value) {
  std::u16string keep;
  value = Detach(value, s, keep);
  if (EndsOpen(d, s)) s += d;
  s.append(value);
  s += d;
}

void qm_AddFieldStr2(char16_t d, std::u16string& s, std::u16string_view value) {
  std::u16string keep;
  value = Detach(value, s, keep);
  if (EndsOpen(d, s)) s += d;
  s.append(value);
}

void qm_AddFieldStr_Ver2(char16_t d, std::u16string& s, std::u16string_view value) {
  std::u16string keep;
  value = Detach(value, s, keep);
  if (s.empty()) {
    s.assign(value);
  } else if (s.back() == d) {
    s.append(value);
  } else {
    // Closing delimiter only when the old string had none: lists written by older
    // versions alternate that way and are read back with it.
    s += d;
    s.append(value);
    s += d;
  }
}

// ---- Array helpers ----

std::u16string asStr(std::span<const std::u16string> items, char16_t d) {
  if (items.empty()) return {};
  std::u16string r = items.front();
  for (const auto& item : items.subspan(1)) {
    r += d;
    r += item;
  }
  return r;
}

std::u16string asStr(std::initializer_list<std::u16string> items, char16_t d) {
  return asStr(std::span<const std::u16string>(items.begin(), items.size()), d);
}

std::u16string GLT(std::span<const std::u16string> texts) {
  for (const auto& text : texts)
    if (rtl::Copy(text, 1, 2) == ToolsLanguage) return rtl::Copy(text, 4, 5000);
  return {};
}

std::u16string GLT(std::initializer_list<std::u16string> texts) {
  return GLT(std::span<const std::u16string>(texts.begin(), texts.size()));
}

}  // namespace Qm_tools
