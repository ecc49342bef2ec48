// Base64 (rtl/netencoding.h).
#include "rtl/netencoding.h"

#include <array>

namespace rtl {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kCharsPerLine = 76;

constexpr std::array<std::int8_t, 128> DecodeTable() {
  std::array<std::int8_t, 128> table{};
  for (auto& v : table) v = -1;
  for (int i = 0; i < 64; ++i)
    table[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::int8_t>(i);
  return table;
}
constexpr std::array<std::int8_t, 128> kDecode = DecodeTable();

}  // namespace

std::u16string Base64Encode(const std::uint8_t* data, std::size_t size) {
  std::u16string out;
  const std::size_t chars = (size + 2) / 3 * 4;
  out.reserve(chars + chars / kCharsPerLine * 2);
  std::size_t column = 0;
  auto put = [&](char c) {
    if (column == kCharsPerLine) {
      out += u"\r\n";
      column = 0;
    }
    out += static_cast<char16_t>(c);
    ++column;
  };
  std::size_t i = 0;
  for (; i + 3 <= size; i += 3) {
    const unsigned v = unsigned(data[i]) << 16 | unsigned(data[i + 1]) << 8 | data[i + 2];
    put(kAlphabet[v >> 18]);
    put(kAlphabet[v >> 12 & 63]);
    put(kAlphabet[v >> 6 & 63]);
    put(kAlphabet[v & 63]);
  }
  if (size - i == 1) {
    const unsigned v = unsigned(data[i]) << 16;
    put(kAlphabet[v >> 18]);
    put(kAlphabet[v >> 12 & 63]);
    put('=');
    put('=');
  } else if (size - i == 2) {
    const unsigned v = unsigned(data[i]) << 16 | unsigned(data[i + 1]) << 8;
    put(kAlphabet[v >> 18]);
    put(kAlphabet[v >> 12 & 63]);
    put(kAlphabet[v >> 6 & 63]);
    put('=');
  }
  return out;
}

std::vector<std::uint8_t> Base64Decode(std::u16string_view text) {
  std::vector<std::uint8_t> out;
  out.reserve(text.size() / 4 * 3);
  unsigned bits = 0;
  int count = 0;    // sextets in `bits`
  int padding = 0;  // '=' seen: only more '=' and blanks may follow
  for (const char16_t c : text) {
    if (c == u'\r' || c == u'\n' || c == u' ' || c == u'\t') continue;
    if (c == u'=') {
      if (count < 2 || count + padding >= 4) throw EEncodingError(u"Ungültige Base64-Daten");
      ++padding;
      continue;
    }
    if (padding > 0 || c >= 128 || kDecode[c] < 0) throw EEncodingError(u"Ungültige Base64-Daten");
    bits = bits << 6 | static_cast<unsigned>(kDecode[c]);
    if (++count == 4) {
      out.push_back(static_cast<std::uint8_t>(bits >> 16));
      out.push_back(static_cast<std::uint8_t>(bits >> 8));
      out.push_back(static_cast<std::uint8_t>(bits));
      bits = 0;
      count = 0;
    }
  }
  // The rest: two sextets give one byte, three give two; one alone is no byte at all.
  if (count == 1) throw EEncodingError(u"Ungültige Base64-Daten");
  if (count == 2) out.push_back(static_cast<std::uint8_t>(bits >> 4));
  if (count == 3) {
    out.push_back(static_cast<std::uint8_t>(bits >> 10));
    out.push_back(static_cast<std::uint8_t>(bits >> 2));
  }
  if (padding > 0 && count + padding != 4) throw EEncodingError(u"Ungültige Base64-Daten");
  return out;
}

}  // namespace rtl
