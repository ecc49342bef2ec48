// Fuzz target for what reads untrusted bytes in the streaming family: Base64 text (what
// decodes must encode and decode to the same bytes), picture headers as the picture loader
// judges them before decoding (what passes is within the limit), and the in-memory INI
// file's reading of lines (reading what it writes changes nothing). Component files have
// their own target (components_fuzz.cpp).
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "rtl/meminifile.h"
#include "rtl/netencoding.h"
#include "rtl/streams.h"
#include "ui/picture_rules.h"

using fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::uint8_t mode = data[0] % 3;
  ++data;
  --size;

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
