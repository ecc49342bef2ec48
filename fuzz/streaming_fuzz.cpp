// Fuzz target for what reads untrusted bytes in the streaming family: Base64 text (what
// decodes must encode and decode to the same bytes), picture headers as the picture loader
// judges them before decoding (what passes is within the limit), and the in-memory INI
// file's reading of lines (reading what it writes changes nothing), and an INI file's bytes
// as they are judged and turned into UTF-16 (nothing lost). Component files have
// their own target (components_fuzz.cpp).
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "rtl/encoding.h"
#include "rtl/inifiles.h"
#include "rtl/meminifile.h"
#include "rtl/netencoding.h"
#include "rtl/streams.h"
#include "rtl/ustring.h"
#include "ui/picture_rules.h"

using fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::uint8_t mode = data[0] % 4;
  ++data;
  --size;

  if (mode == 3) {
    // An INI file's bytes: its conversion to UTF-16 keeps the text it is read as, and what
    // passes as UTF-8 beyond ASCII is UTF-8 that decodes and encodes to the same bytes.
    const std::vector<std::uint8_t> bytes(data, data + size);
    const std::vector<std::uint8_t> converted = rtl::IniFileAsUtf16(bytes);
    Check(converted.size() >= 2 && converted.size() % 2 == 0 && converted[0] == 0xFF &&
              converted[1] == 0xFE,
          "a conversion without the UTF-16 mark");
    Check(rtl::IniFileKindOf(converted.data(), converted.size()) == rtl::TIniFileKind::Utf16LE,
          "a converted file not seen as UTF-16");
    std::size_t mark = 0;
    rtl::TEncoding* encoding = rtl::TEncoding::FromPreamble(data, size, mark);
    if (encoding == nullptr) encoding = rtl::TEncoding::ANSI();
    Check(rtl::TEncoding::Unicode()->GetString(converted.data() + 2, converted.size() - 2) ==
              encoding->GetString(data + mark, size - mark),
          "the conversion changed the text");
    if (rtl::IsMultiByteUtf8(data, size)) {
      const std::string utf8(reinterpret_cast<const char*>(data), size);
      Check(rtl::Utf16ToUtf8(rtl::Utf8ToUtf16(utf8)) == utf8, "UTF-8 that does not read back");
    }
    return 0;
  }

  if (mode == 2) {
    try {
      const ui::TPictureClaim claim = ui::CheckPictureBytes({data, size});
      Check(std::uint64_t{claim.Width} * claim.Height <= ui::MaxPicturePixels,
            "a picture beyond the limit passed");
      Check(claim.Format == ui::pfOther || (claim.Width > 0 && claim.Height > 0),
            "a picture of no size passed");
    } catch (const rtl::Exception&) {
    }
    return 0;
  }

  if (mode == 0) {
    const std::u16string text =
        fuzz::DecodeText(data, size, false,
                         u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/= \r\n#");
    std::vector<std::uint8_t> bytes;
    try {
      bytes = rtl::Base64Decode(text);
    } catch (const rtl::EEncodingError&) {
      return 0;
    }
    const std::u16string encoded = rtl::Base64Encode(bytes);
    Check(rtl::Base64Decode(encoded) == bytes, "Base64 round trip");
    for (std::size_t at = 0; at < encoded.size();) {
      const std::size_t end = std::min(encoded.find(u"\r\n", at), encoded.size());
      Check(end - at <= 76, "a line longer than 76");
      at = end + 2;
    }
    return 0;
  }

  const std::u16string text = fuzz::DecodeText(data, size, false, u"[]=; ab\r\nAB");
  rtl::TStringList lines;
  lines.SetText(text);
  rtl::TMemIniFile ini(u"");
  ini.SetStrings(lines);
  rtl::TStringList once, twice;
  ini.GetStrings(once);
  ini.SetStrings(once);
  ini.GetStrings(twice);
  Check(once.Text() == twice.Text(), "INI lines read back differently");
  return 0;
}
