// Fuzz target for the text-format family on arbitrary bytes: the UTF-8 shape test against
// its byte-at-a-time reading, the mark rules against a literal reading of them, and the
// stream reader's block-by-block decoding against decoding the whole.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "rtl/classes.h"
#include "rtl/encoding.h"
#include "rtl/streams.h"
#include "tools/textformat.h"
#include "fuzz/fuzz_input.h"
#include "tests/slow_references.h"

using fuzz::Check;
using rtl::TEncoding;

namespace {

bool Has(const std::uint8_t* p, std::size_t n, const char* mark, std::size_t length) {
  return n >= length && std::memcmp(p, mark, length) == 0;
}

void CheckMarks(const std::uint8_t* p, std::size_t n, bool shape) {
  const std::u16string format = Qm_tools::FileFormatOfBytes(p, n);
  int markLen = -1;
  bool crlf = true;
  TEncoding* checked = Qm_tools::CheckFileFormatOfBytes(p, n, markLen, crlf);

  // CR LF from the fifth byte on, the byte after every CR taken with it.
  bool pair = false;
  for (std::size_t i = 4; i < n && !pair; ++i)
    if (p[i] == 13 && i + 1 < n) pair = p[++i] == 10;
  Check(crlf == pair, "crlf");

  if (n <= 3) {
    Check(format == u"Ansi" && checked == TEncoding::ANSI() && markLen == 0, "short file");
    return;
  }
  const bool utf8 = Has(p, n, "\xEF\xBB\xBF", 3), le = Has(p, n, "\xFF\xFE", 2),
             be = Has(p, n, "\xFE\xFF", 2), be32 = Has(p, n, "\0\0\xFE\xFF", 4),
             le32 = Has(p, n, "\xFF\xFE\0\0", 4);
  const char16_t* expectedFormat = utf8 ? u"utf-8" : le ? u"utf-16" : be ? u"utf-16-big"
                                   : be32 ? u"utf-32-big" : shape ? u"utf-8" : u"Ansi";
  Check(format == expectedFormat, "format");
  // The last matching mark wins in CheckFileFormat.
  TEncoding* expected = shape ? TEncoding::UTF8() : TEncoding::ANSI();
  int expectedLen = 0;
  if (utf8) expected = TEncoding::UTF8(), expectedLen = 4;
  if (le) expected = TEncoding::Unicode(), expectedLen = 2;
  if (be) expected = TEncoding::BigEndianUnicode(), expectedLen = 2;
  if (be32) expected = TEncoding::BigEndianUnicode(), expectedLen = 4;
  if (le32) expected = TEncoding::Unicode(), expectedLen = 4;
  if (!(utf8 || le || be || be32)) expected = shape ? TEncoding::UTF8() : TEncoding::ANSI();
  Check(checked == expected && markLen == expectedLen, "checked encoding");

  TEncoding* encoding = Qm_tools::FileFormatEncodingOfBytes(p, n);
  if (utf8 || le || be || be32)
    Check(encoding == (utf8 ? TEncoding::UTF8() : be ? TEncoding::BigEndianUnicode() : TEncoding::Unicode()),
          "marked encoding");
  else if (!shape)  // not even shaped like UTF-8: read in Windows-1252, which round-trips
    Check(encoding == TEncoding::ANSI(), "unmarked encoding");
}

// Lines read block by block equal the lines of the whole text decoded at once.
void CheckReader(const std::uint8_t* p, std::size_t n, TEncoding* encoding, int block) {
  rtl::TMemoryStream stream(std::vector<std::uint8_t>(p, p + n));
  rtl::TStreamReader reader(stream, encoding, false, block);
  rtl::TStringList read;
  while (!reader.EndOfStream()) read.Add(reader.ReadLine());
  const std::size_t skip = encoding->StartsWithPreamble(p, n) ? encoding->GetPreamble().size() : 0;
  rtl::TStringList whole;
  whole.SetText(encoding->GetString(p + skip, n - skip));
  Check(read.Text() == whole.Text() && read.Count() == whole.Count(), "reader");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::uint8_t control = data[0];
  const std::uint8_t* p = data + 1;
  const std::size_t n = size - 1;

  for (std::size_t from = 0; from < 8 && from <= n; ++from)
    Check(Qm_tools::IsUtf8Structure(p + from, n - from) ==
              slow::Utf8Structure(p + from, n - from),
          "shape");
  CheckMarks(p, n, slow::Utf8Structure(p, n));

  TEncoding* const encodings[] = {TEncoding::UTF8(), TEncoding::Unicode(),
                                  TEncoding::BigEndianUnicode(), TEncoding::ANSI()};
  CheckReader(p, n, encodings[control & 3], 16 + (control >> 2));
  return 0;
}
