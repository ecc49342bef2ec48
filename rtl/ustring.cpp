// The framework's string primitives over std::u16string. Pure: no locale, no system.
#include "rtl/ustring.h"

#include <algorithm>
#include <limits>

namespace rtl {

std::u16string Copy(std::u16string_view s, int index, int count) {
  const int len = Length(s);
  if (count <= 0) return {};
  if (index < 1) index = 1;
  if (index > len) return {};
  const int avail = len - index + 1;
  return std::u16string(s.substr(static_cast<size_t>(index - 1),
                                 static_cast<size_t>(std::min(count, avail))));
}

std::u16string Copy(std::u16string_view s, int index) {
  return Copy(s, index, std::numeric_limits<int>::max());
}

int Pos(std::u16string_view sub, std::u16string_view s) { return PosEx(sub, s, 1); }

int PosEx(std::u16string_view sub, std::u16string_view s, int offset) {
  if (sub.empty() || offset < 1 || offset > Length(s)) return 0;
  const size_t at = s.find(sub, static_cast<size_t>(offset - 1));
  return at == std::u16string_view::npos ? 0 : static_cast<int>(at) + 1;
}

int Pos(char16_t c, std::u16string_view s) {
  const size_t at = s.find(c);
  return at == std::u16string_view::npos ? 0 : static_cast<int>(at) + 1;
}

void Delete(std::u16string& s, int index, int count) {
  const int len = Length(s);
  if (index < 1 || index > len || count <= 0) return;
  s.erase(static_cast<size_t>(index - 1),
          static_cast<size_t>(std::min(count, len - index + 1)));
}

void Insert(std::u16string_view sub, std::u16string& s, int index) {
  const int len = Length(s);
  index = std::clamp(index, 1, len + 1);
  s.insert(static_cast<size_t>(index - 1), sub);
}

namespace {
bool IsBlank(char16_t c) { return c <= u' '; }
}  // namespace

std::u16string TrimLeft(std::u16string_view s) {
  size_t b = 0;
  while (b < s.size() && IsBlank(s[b])) ++b;
  return std::u16string(s.substr(b));
}

std::u16string TrimRight(std::u16string_view s) {
  size_t e = s.size();
  while (e > 0 && IsBlank(s[e - 1])) --e;
  return std::u16string(s.substr(0, e));
}

std::u16string Trim(std::u16string_view s) {
  size_t b = 0, e = s.size();
  while (b < e && IsBlank(s[b])) ++b;
  while (e > b && IsBlank(s[e - 1])) --e;
  return std::u16string(s.substr(b, e - b));
}

std::u16string LowerCase(std::u16string_view s) {
  std::u16string r(s);
  for (auto& c : r)
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + 32);
  return r;
}

std::u16string UpperCase(std::u16string_view s) {
  std::u16string r(s);
  for (auto& c : r)
    if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - 32);
  return r;
}

int CompareStr(std::u16string_view a, std::u16string_view b) {
  const int c = a.compare(b);
  return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

int CompareText(std::u16string_view a, std::u16string_view b) {
  const size_t n = std::min(a.size(), b.size());
  for (size_t i = 0; i < n; ++i) {
    char16_t x = a[i], y = b[i];
    if (x >= u'a' && x <= u'z') x = static_cast<char16_t>(x - 32);
    if (y >= u'a' && y <= u'z') y = static_cast<char16_t>(y - 32);
    if (x != y) return x < y ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

bool SameText(std::u16string_view a, std::u16string_view b) {
  return a.size() == b.size() && CompareText(a, b) == 0;
}

std::u16string StringOfChar(char16_t c, int count) {
  return count > 0 ? std::u16string(static_cast<size_t>(count), c) : std::u16string();
}

std::u16string IntToStr(std::int64_t value) {
  char16_t buf[24];
  char16_t* p = buf + 24;
  // Work in unsigned so that the most negative value does not overflow.
  std::uint64_t v = value < 0 ? 0 - static_cast<std::uint64_t>(value)
                              : static_cast<std::uint64_t>(value);
  do {
    *--p = static_cast<char16_t>(u'0' + v % 10);
    v /= 10;
  } while (v != 0);
  if (value < 0) *--p = u'-';
  return std::u16string(p, buf + 24);
}

int StrToIntDef(std::u16string_view s, int fallback) {
  size_t i = 0, e = s.size();
  while (i < e && s[i] == u' ') ++i;
  while (e > i && s[e - 1] == u' ') --e;
  bool neg = false;
  if (i < e && (s[i] == u'-' || s[i] == u'+')) neg = s[i++] == u'-';
  if (i == e) return fallback;
  std::int64_t v = 0;
  for (; i < e; ++i) {
    if (s[i] < u'0' || s[i] > u'9') return fallback;
    v = v * 10 + (s[i] - u'0');
    if (v > 2147483648LL) return fallback;
  }
  if (neg) v = -v;
  if (v > 2147483647LL || v < -2147483648LL) return fallback;
  return static_cast<int>(v);
}

std::u16string StringReplaceAll(std::u16string_view s, std::u16string_view from,
                                std::u16string_view to) {
  if (from.empty()) return std::u16string(s);
  std::u16string r;
  r.reserve(s.size());
  size_t at = 0;
  for (;;) {
    const size_t hit = s.find(from, at);
    if (hit == std::u16string_view::npos) break;
    r.append(s.substr(at, hit - at)).append(to);
    at = hit + from.size();
  }
  r.append(s.substr(at));
  return r;
}

std::string Utf16ToUtf8(std::u16string_view s) {
  std::string r;
  r.reserve(s.size());
  for (size_t i = 0; i < s.size(); ++i) {
    char32_t c = s[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < s.size() && s[i + 1] >= 0xDC00 &&
        s[i + 1] <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (s[i + 1] - 0xDC00);
      ++i;
    } else if (c >= 0xD800 && c <= 0xDFFF) {
      c = 0xFFFD;
    }
    if (c < 0x80) {
      r += static_cast<char>(c);
    } else if (c < 0x800) {
      r += static_cast<char>(0xC0 | (c >> 6));
      r += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      r += static_cast<char>(0xE0 | (c >> 12));
      r += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      r += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      r += static_cast<char>(0xF0 | (c >> 18));
      r += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
      r += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      r += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return r;
}

std::u16string Utf8ToUtf16(std::string_view s) {
  std::u16string r;
  r.reserve(s.size());
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(s[i]); };
  size_t i = 0;
  while (i < s.size()) {
    const unsigned b = byte(i);
    if (b < 0x80) {
      r += static_cast<char16_t>(b);
      ++i;
      continue;
    }
    int extra;
    char32_t c, min;
    if (b >= 0xC2 && b <= 0xDF) {
      extra = 1, c = b & 0x1F, min = 0x80;
    } else if (b >= 0xE0 && b <= 0xEF) {
      extra = 2, c = b & 0x0F, min = 0x800;
    } else if (b >= 0xF0 && b <= 0xF4) {
      extra = 3, c = b & 0x07, min = 0x10000;
    } else {
      r += u'\xFFFD';
      ++i;
      continue;
    }
    size_t k = 1;
    for (; k <= static_cast<size_t>(extra); ++k) {
      if (i + k >= s.size() || (byte(i + k) & 0xC0) != 0x80) break;
      c = (c << 6) | (byte(i + k) & 0x3F);
    }
    if (k <= static_cast<size_t>(extra) || c < min || c > 0x10FFFF ||
        (c >= 0xD800 && c <= 0xDFFF)) {
      // One replacement for the lead byte; the bytes after it are looked at again.
      r += u'\xFFFD';
      ++i;
      continue;
    }
    if (c >= 0x10000) {
      c -= 0x10000;
      r += static_cast<char16_t>(0xD800 + (c >> 10));
      r += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
    } else {
      r += static_cast<char16_t>(c);
    }
    i += static_cast<size_t>(extra) + 1;
  }
  return r;
}

}  // namespace rtl
