// The Unicode encodings, the Windows-1252 table and, in the native build, the ANSI
// encoding built on it (rtl/encoding.h). The windows build's ANSI encoding asks the system
// (encoding_win.cpp).
#include "rtl/encoding.h"

#include <algorithm>
#include <cstring>

#include "rtl/ustring.h"

namespace rtl {

namespace {

// 0x80..0x9F of Windows-1252; the page's holes keep their own code points.
constexpr char16_t kHigh1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

class Utf8Encoding final : public TEncoding {
 public:
  std::vector<std::uint8_t> GetBytes(std::u16string_view s) const override {
    const std::string u = Utf16ToUtf8(s);
    return {u.begin(), u.end()};
  }
  std::u16string GetString(const std::uint8_t* data, std::size_t size) const override {
    return Utf8ToUtf16({reinterpret_cast<const char*>(data), size});
  }
  std::vector<std::uint8_t> GetPreamble() const override { return {0xEF, 0xBB, 0xBF}; }
  int CodePage() const override { return 65001; }
  std::size_t CompleteLength(const std::uint8_t* data, std::size_t size) const override {
    // Only a lead byte among the last three can start a sequence that is cut off.
    for (std::size_t back = 1; back <= std::min<std::size_t>(3, size); ++back) {
      const std::uint8_t b = data[size - back];
      if ((b & 0xC0) == 0x80) continue;
      const std::size_t length = b >= 0xF0 ? 4 : b >= 0xE0 ? 3 : b >= 0xC0 ? 2 : 1;
      return length > back ? size - back : size;
    }
    return size;
  }
};

class Utf16Encoding final : public TEncoding {
 public:
  explicit Utf16Encoding(bool bigEndian) : big_(bigEndian) {}

  std::vector<std::uint8_t> GetBytes(std::u16string_view s) const override {
    std::vector<std::uint8_t> r;
    r.reserve(s.size() * 2);
    for (const char16_t c : s) {
      const auto lo = static_cast<std::uint8_t>(c & 0xFF), hi = static_cast<std::uint8_t>(c >> 8);
      r.push_back(big_ ? hi : lo);
      r.push_back(big_ ? lo : hi);
    }
    return r;
  }
  std::u16string GetString(const std::uint8_t* data, std::size_t size) const override {
    std::u16string r;
    r.reserve(size / 2 + 1);
    for (std::size_t i = 0; i + 1 < size; i += 2) r.push_back(Unit(data + i));
    if (size % 2) r.push_back(u'\xFFFD');
    return r;
  }
  std::vector<std::uint8_t> GetPreamble() const override {
    return big_ ? std::vector<std::uint8_t>{0xFE, 0xFF} : std::vector<std::uint8_t>{0xFF, 0xFE};
  }
  int CodePage() const override { return big_ ? 1201 : 1200; }
  std::size_t CompleteLength(const std::uint8_t* data, std::size_t size) const override {
    const std::size_t even = size & ~std::size_t{1};
    if (even >= 2) {
      const char16_t last = Unit(data + even - 2);
      if (last >= 0xD800 && last <= 0xDBFF) return even - 2;
    }
    return even;
  }

 private:
  char16_t Unit(const std::uint8_t* p) const {
    return static_cast<char16_t>(big_ ? (p[0] << 8 | p[1]) : (p[1] << 8 | p[0]));
  }
  bool big_;
};

#ifndef _WIN32
class Windows1252Encoding final : public TEncoding {
 public:
  std::vector<std::uint8_t> GetBytes(std::u16string_view s) const override {
    std::vector<std::uint8_t> r(s.size());
    std::transform(s.begin(), s.end(), r.begin(), CharToWindows1252);
    return r;
  }
  std::u16string GetString(const std::uint8_t* data, std::size_t size) const override {
    std::u16string r(size, u'\0');
    std::transform(data, data + size, r.begin(), Windows1252ToChar);
    return r;
  }
  std::vector<std::uint8_t> GetPreamble() const override { return {}; }
  int CodePage() const override { return 1252; }
  std::size_t CompleteLength(const std::uint8_t*, std::size_t size) const override { return size; }
};
#endif

}  // namespace

char16_t Windows1252ToChar(std::uint8_t b) {
  return b >= 0x80 && b < 0xA0 ? kHigh1252[b - 0x80] : static_cast<char16_t>(b);
}

std::uint8_t CharToWindows1252(char16_t c) {
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<std::uint8_t>(c);
  const auto* at = std::find(std::begin(kHigh1252), std::end(kHigh1252), c);
  return at == std::end(kHigh1252) ? std::uint8_t{'?'}
                                   : static_cast<std::uint8_t>(0x80 + (at - kHigh1252));
}

TEncoding* TEncoding::UTF8() {
  static Utf8Encoding instance;
  return &instance;
}

TEncoding* TEncoding::Unicode() {
  static Utf16Encoding instance(false);
  return &instance;
}

TEncoding* TEncoding::BigEndianUnicode() {
  static Utf16Encoding instance(true);
  return &instance;
}

#ifndef _WIN32
TEncoding* TEncoding::ANSI() {
  static Windows1252Encoding instance;
  return &instance;
}
#endif

bool TEncoding::StartsWithPreamble(const std::uint8_t* data, std::size_t size) const {
  const std::vector<std::uint8_t> mark = GetPreamble();
  return !mark.empty() && size >= mark.size() && std::memcmp(data, mark.data(), mark.size()) == 0;
}

TEncoding* TEncoding::FromPreamble(const std::uint8_t* data, std::size_t size,
                                   std::size_t& preambleLength) {
  for (TEncoding* e : {UTF8(), Unicode(), BigEndianUnicode()}) {
    if (e->StartsWithPreamble(data, size)) {
      preambleLength = e->GetPreamble().size();
      return e;
    }
  }
  preambleLength = 0;
  return nullptr;
}

bool FitsAnsi(std::u16string_view s) {
  TEncoding* ansi = TEncoding::ANSI();
  return ansi->GetString(ansi->GetBytes(s)) == s;
}

bool IsMultiByteUtf8(const std::uint8_t* data, std::size_t size) {
  bool multi = false;
  for (std::size_t i = 0; i < size;) {
    const std::uint8_t b = data[i];
    if (b < 0x80) {
      ++i;
      continue;
    }
    std::size_t n;
    std::uint32_t c;
    if (b >= 0xC2 && b <= 0xDF) {
      n = 1, c = b & 0x1Fu;
    } else if (b >= 0xE0 && b <= 0xEF) {
      n = 2, c = b & 0x0Fu;
    } else if (b >= 0xF0 && b <= 0xF4) {
      n = 3, c = b & 0x07u;
    } else {
      return false;
    }
    if (size - i <= n) return false;
    for (std::size_t k = 1; k <= n; ++k) {
      if ((data[i + k] & 0xC0) != 0x80) return false;
      c = (c << 6) | (data[i + k] & 0x3Fu);
    }
    if ((n == 2 && (c < 0x800 || (c >= 0xD800 && c <= 0xDFFF))) ||
        (n == 3 && (c < 0x10000 || c > 0x10FFFF)))
      return false;
    multi = true;
    i += n + 1;
  }
  return multi;
}

}  // namespace rtl
