// The pure rules of the streaming family: pictures as Base64 text, and where a printer's
// settings lie in its information block.
#include "tools/streaming.h"

#include <vector>

#include "rtl/classes.h"
#include "rtl/netencoding.h"
#include "rtl/ustring.h"

namespace Qm_tools {

std::u16string Base64TextOf(const std::u16string& Text) {
  rtl::TStringList lines;
  lines.SetText(Text);
  std::u16string joined;
  for (int i = 0; i < lines.Count(); ++i) {
    if (i > 0) joined += u"\r\n";
    joined += lines[i];
  }
  return rtl::Trim(joined);
}

bool SaveImgStreamToBase64Str(rtl::TStream& Stream, std::u16string& Text) {
  Stream.SetPosition(0);
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(Stream.Size()));
  if (!bytes.empty()) Stream.ReadBuffer(bytes.data(), bytes.size());
  Text = rtl::Trim(rtl::Base64Encode(bytes));
  return !Text.empty();
}

bool LoadImgStreamFromBase64Str(std::unique_ptr<rtl::TMemoryStream>& Stream,
                                const std::u16string& Text) {
  const std::u16string text = Base64TextOf(Text);
  if (text.empty()) return false;
  Stream = std::make_unique<rtl::TMemoryStream>(rtl::Base64Decode(text));
  return true;
}

TPrinterInfoRange PrinterInfoRange(std::size_t BlockSize) {
  constexpr std::size_t kFixedPart = 136;
  // The range begins after twice the fixed part but is counted from once: streams saved
  // so are in use, so the layout stays and the block is made large enough for it.
  if (BlockSize < kFixedPart) return {2 * kFixedPart, 0, BlockSize + kFixedPart};
  return {2 * kFixedPart, BlockSize - kFixedPart, BlockSize + kFixedPart};
}

}  // namespace Qm_tools
