// Fuzz target for the field family. Strings come from a small alphabet thick with
// delimiters; indexes cluster around the field count but include the extremes. The
// fast routines are checked against each other and against character-by-character
// readings of their rules, which test the count after every character as stored lists
// have always been read.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "rtl/classes.h"
#include "rtl/locale.h"
#include "rtl/ustring.h"
#include "tools/fields.h"
#include "tools/qm_globals.h"
#include "fuzz/fuzz_input.h"

using namespace Qm_tools;

namespace {

using Str = std::u16string;

using fuzz::Check;

bool Open(char16_t d, const Str& s) { return !s.empty() && s.back() != d; }
int Wrap(int n) { return static_cast<int>(static_cast<unsigned>(n) + 1u); }

char16_t PickDelimiter(FuzzedDataProvider& in) {
  switch (in.ConsumeIntegralInRange(0, 3)) {
    case 0:
      return u';';
    case 1:
      return u'\0';
    case 2:
      return u'\x01';
    default:
      return in.ConsumeIntegral<char16_t>();
  }
}

Str PickString(FuzzedDataProvider& in, char16_t d, size_t most) {
  static const char16_t kLetters[] = {u'a',      u'A',      u'b', u'\u00C4',
                                      u'\u00E4', u'\u0130', u' '};
  const size_t n = in.ConsumeIntegralInRange<size_t>(0, most);
  Str s;
  for (size_t k = 0; k < n && in.remaining_bytes() > 0; ++k) {
    const auto b = in.ConsumeIntegral<unsigned char>();
    s += b < 100 ? d : b < 250 ? kLetters[b % 7] : static_cast<char16_t>(b * 257);
  }
  return s;
}

int PickIndex(FuzzedDataProvider& in, int fields) {
  switch (in.ConsumeIntegralInRange(0, 7)) {
    case 0:
      return INT_MIN;
    case 1:
      return INT_MAX;
    case 2:
      return in.ConsumeIntegral<int>();
    default:
      return in.ConsumeIntegralInRange(-2, fields + 3);
  }
}

// ---- The rules read literally, one character at a time ----

Str AtStartByRule(char16_t d, const Str& s, int i, int& start, int& count) {
  const long long len = static_cast<long long>(s.size());
  const long long first = std::max(start, 1);
  long long q = 0, p = first - 1;
  for (long long x = first; x <= len; ++x) {
    if (s[x - 1] == d) count = Wrap(count), q = p, p = x;
    if (count == i) {
      start = static_cast<int>(x + 1);
      return rtl::Copy(s, static_cast<int>(q + 1), static_cast<int>(p - q - 1));
    }
  }
  if (Open(d, s) && Wrap(count) == i) {
    start = static_cast<int>(len + 1);
    return p + 1 > len ? Str() : rtl::Copy(s, static_cast<int>(p + 1));
  }
  return {};
}

int IndexOfByRule(char16_t d, const Str& s, const Str& v) {
  const Str lv = rtl::AnsiLowerCase(v);
  int count = 0, q = 0, p = 0;
  for (int x = 1; x <= static_cast<int>(s.size()); ++x) {
    if (s[x - 1] == d) ++count, q = p, p = x;
    if (rtl::AnsiLowerCase(rtl::Copy(s, q + 1, p - q - 1)) == lv) return count;
  }
  if (Open(d, s) && rtl::AnsiLowerCase(rtl::Copy(s, p + 1)) == lv) return count + 1;
  return 0;
}

Str CopyByRule(char16_t d, const Str& s, int i) {
  const int len = static_cast<int>(s.size());
  int count = 0, q = 0, p = 0;
  for (int x = 1; x <= len; ++x)
    if (s[x - 1] == d) {
      ++count, q = p, p = x;
      if (count == i) return rtl::Copy(s, q + 1, len - q - 1);
    }
  return Open(d, s) && count + 1 == i ? rtl::Copy(s, p + 1) : Str();
}

void Set2ByRule(char16_t d, Str& s, const Str& v, int i) {
  const int c = GetFieldsCount(d, s);
  if (i > c) {
    s += Str(static_cast<size_t>(i - c), d) + v;
    return;
  }
  const int len = static_cast<int>(s.size());
  int count = 0, q = 0, p = 0;
  for (int x = 1; x <= len; ++x) {
    if (s[x - 1] == d) ++count, q = p, p = x;
    if (count == i) {
      rtl::Delete(s, q + 1, p - q - 1);
      rtl::Insert(v, s, q + 1);
      return;
    }
  }
  if (Open(d, s) && count + 1 == i) {
    rtl::Delete(s, p + 1, len - p);
    rtl::Insert(v, s, p + 1);
  }
}

void SetByRule(char16_t d, Str& s, const Str& v, int i) {
  const int c = GetFieldsCount(d, s);
  if (i > c) {
    if (i == 1 && s.empty()) {
      s = v;
      return;
    }
    const int n = std::max(i - c - 1, 1);
    s += Str(static_cast<size_t>(n), d) + v;
    return;
  }
  Str r;
  for (int k = 1; k <= c; ++k)
    r += (k > 1 ? Str(1, d) : Str()) + (k == i ? v : GetFieldStr(d, s, k));
  s = r;
}

void DeleteByRule(char16_t d, Str& s, int i) {
  int count = 0, q = 0, p = 0;
  for (int x = 1; x <= static_cast<int>(s.size()); ++x)
    if (s[x - 1] == d) {
      ++count, q = p, p = x;
      if (count == i) {
        q > 0 ? rtl::Delete(s, q, p - q) : rtl::Delete(s, 1, p);
        return;
      }
    }
  if (Open(d, s) && count + 1 == i) s = rtl::Copy(s, 1, p - 1);
}

// Shared by both inserters: v + d goes in after the first character where the count of
// delimiters so far equals `target`.
void InsertByRule(char16_t d, Str& s, const Str& v, int i, long long target, bool front) {
  if (rtl::Pos(d, s) == 0 || front) {
    s = v + d + s;
    return;
  }
  if (i > GetFieldsCount(d, s)) return;
  int count = 0;
  for (int x = 1; x <= static_cast<int>(s.size()); ++x) {
    if (s[x - 1] == d) ++count;
    if (count == target) {
      rtl::Insert(v + d, s, x + 1);
      return;
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  FuzzedDataProvider in(data, size);
  const char16_t d = PickDelimiter(in);
  const Str s = PickString(in, d, 400);
  const Str v = PickString(in, d, 6);
  const int c = GetFieldsCount(d, s);
  const bool plainValue = v.find(d) == Str::npos;

  Check(c == std::count(s.begin(), s.end(), d) + (Open(d, s) ? 1 : 0), "count");

  // Every field in one pass, as a list, and by index, agree.
  rtl::TStringList list;
  Check(CreateDBFields(list, s, d) == (c > 0) && list.Count() == c, "list size");
  std::vector<Str> fields;
  int start = 1, count = 0, firstMatch = -1;
  for (int k = 1; k <= c; ++k) {
    fields.push_back(GetFieldStr(d, s, k));
    Check(GetFieldStrAtStart(d, s, count + 1, start, count) == fields.back(), "one pass");
    Check(list.Get(k - 1) == fields.back(), "list line");
    if (firstMatch < 0 && fields.back() == v) firstMatch = k;
  }
  Check(GetFieldPos(d, s, v) == firstMatch, "GetFieldPos");
  Check(GetIndexOf(d, s, v) == IndexOfByRule(d, s, v), "GetIndexOf");
  // Rebuilding without a replacement joins the fields: the separated style.
  Str rebuilt = s;
  SetFieldStr(d, rebuilt, v, 0);
  Check(rebuilt == asStr(fields, d), "rebuild");

  // Resuming from anywhere follows the rule, including odd starts and counts.
  for (int round = 0; round < 3 && in.remaining_bytes() > 0; ++round) {
    int start1 = in.ConsumeBool()
                     ? in.ConsumeIntegral<int>()
                     : in.ConsumeIntegralInRange(-1, static_cast<int>(s.size()) + 2);
    int count1 =
        in.ConsumeBool() ? in.ConsumeIntegral<int>() : in.ConsumeIntegralInRange(-1, c + 1);
    int start2 = start1, count2 = count1;
    const int i = PickIndex(in, c);
    Check(GetFieldStrAtStart(d, s, i, start1, count1) ==
                  AtStartByRule(d, s, i, start2, count2) &&
              start1 == start2 && count1 == count2,
          "GetFieldStrAtStart");
  }

  const int i = PickIndex(in, c);
  Check(GetFieldStr(d, s, i) == (i >= 1 && i <= c ? fields[i - 1] : Str()), "GetFieldStr");
  Check(CopyFieldStr(d, s, i) == CopyByRule(d, s, i), "CopyFieldStr");

  // The padding writers only with indexes whose result fits in memory, or so far out
  // that the string could not hold it and must stay as it was.
  const bool tooFar = i > c + 64;
  const bool refused =
      tooFar && i == INT_MAX && s.size() + v.size() > static_cast<size_t>(c) + 1;
  if (!tooFar || refused) {
    Str a = s, b = s, ra = s, rb = s;
    SetFieldStr(d, a, v, i);
    SetFieldStr2(d, b, v, i);
    if (refused) {
      Check(a == s && b == s, "refused padding");
    } else {
      SetByRule(d, ra, v, i);
      Set2ByRule(d, rb, v, i);
      Check(a == ra, "SetFieldStr");
      Check(b == rb, "SetFieldStr2");
      if (plainValue && i >= 1 && i <= c)
        Check(GetFieldStr(d, a, i) == v && GetFieldStr(d, b, i) == v, "set then get");
    }
  }

  Str del = s, delRule = s;
  DeleteFieldStr(d, del, i);
  DeleteByRule(d, delRule, i);
  Check(del == delRule, "DeleteFieldStr");
  if (i >= 1 && i <= c) {
    // Removing the last field can expose an empty one before it as a trailing
    // delimiter, which then no longer counts.
    const int after = GetFieldsCount(d, del);
    Check(after == c - 1 || (after == c - 2 && i == c && fields[c - 2].empty()),
          "delete count");
  } else {
    Check(del == s, "delete outside");
  }

  Str ins = s, insRule = s, bef = s, befRule = s;
  InsertFieldStr(d, ins, v, i);
  InsertByRule(d, insRule, v, i, i, false);
  Check(ins == insRule, "InsertFieldStr");
  InsertFieldStrBefore(d, bef, v, i);
  InsertByRule(d, befRule, v, i, static_cast<long long>(i) - 1, !s.empty() && s[0] == d);
  Check(bef == befRule, "InsertFieldStrBefore");

  // Appending a plain, non-empty value adds exactly one field, and it reads back last.
  Str t = s, u = s, w = s;
  qm_AddFieldStr(d, t, v);
  qm_AddFieldStr2(d, u, v);
  qm_AddFieldStr_Ver2(d, w, v);
  if (plainValue && !v.empty())
    for (const Str* r : {&t, &u, &w}) {
      const int n = GetFieldsCount(d, *r);
      Check(n == c + 1 && GetFieldStr(d, *r, n) == v, "append");
    }

  ToolsLanguage = rtl::Copy(v, 1, 2);
  std::vector<Str> texts = {s, v, rebuilt};
  Str want;
  for (const Str& text : texts)
    if (rtl::Copy(text, 1, 2) == ToolsLanguage) {
      want = rtl::Copy(text, 4, 5000);
      break;
    }
  Check(GLT(texts) == want, "GLT");
  ToolsLanguage = u"DE";
  return 0;
}
