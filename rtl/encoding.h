// Text encodings: the framework's TEncoding with its four shared instances (the system
// ANSI code page, UTF-8, UTF-16 little and big endian). Conversions only; reading and
// writing text through streams lives in rtl/streams.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace rtl {

class TEncoding {
 public:
  virtual ~TEncoding() = default;

  // Text to bytes, without a preamble. Characters the ANSI code page cannot hold become
  // '?'; lone surrogates become U+FFFD in UTF-8 and pass unchanged into UTF-16.
  virtual std::vector<std::uint8_t> GetBytes(std::u16string_view s) const = 0;
  // Bytes to text. Malformed UTF-8 becomes U+FFFD, as does a last odd byte of UTF-16.
  virtual std::u16string GetString(const std::uint8_t* data, std::size_t size) const = 0;
  std::u16string GetString(const std::vector<std::uint8_t>& bytes) const {
    return GetString(bytes.data(), bytes.size());
  }
  // The byte-order mark: UTF-8 EF BB BF, UTF-16LE FF FE, UTF-16BE FE FF, ANSI none.
  virtual std::vector<std::uint8_t> GetPreamble() const = 0;
  // Windows code page number: 65001, 1200, 1201, or the ANSI page (1252 natively).
  virtual int CodePage() const = 0;
  // Length of the longest prefix of `data` that ends on a whole character: a reader
  // decoding block by block keeps the rest for the next block.
  virtual std::size_t CompleteLength(const std::uint8_t* data, std::size_t size) const = 0;

  // Shared instances, alive for the whole program; callers never free them.
  // ANSI is the system ANSI code page: CP_ACP on Windows, Windows-1252 natively.
  static TEncoding* ANSI();
  static TEncoding* UTF8();
  static TEncoding* Unicode();  // UTF-16 little endian
  static TEncoding* BigEndianUnicode();

  // The encoding whose byte-order mark starts `data` (UTF-8, UTF-16LE, UTF-16BE), with
  // the mark's length in `preambleLength`; nullptr and 0 when there is none.
  static TEncoding* FromPreamble(const std::uint8_t* data, std::size_t size,
                                 std::size_t& preambleLength);
  // Whether `data` starts with the encoding's own preamble (false when it has none).
  bool StartsWithPreamble(const std::uint8_t* data, std::size_t size) const;
};

// Whether the ANSI code page holds every character of `s`: its bytes give `s` back.
bool FitsAnsi(std::u16string_view s);

// Whether `data` is well-formed UTF-8 (no overlong forms, surrogates or values past
// U+10FFFF) holding at least one character of more than one byte: text that an ANSI
// reading would garble.
bool IsMultiByteUtf8(const std::uint8_t* data, std::size_t size);

// Windows-1252 by table, the native build's ANSI code page. The five bytes the page
// leaves undefined (81 8D 8F 90 9D) map to U+0081..., as Windows maps them, so that every
// byte survives a round trip.
char16_t Windows1252ToChar(std::uint8_t b);
// The byte for `c`, or '?' when the page has none.
std::uint8_t CharToWindows1252(char16_t c);

}  // namespace rtl
