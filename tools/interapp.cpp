// The pure rules of the inter-application family: which window a title search accepts,
// and what a wide-character call reads from a short string. The Win32 side that applies
// them is interapp_win.cpp.
#include "tools/interapp.h"

#include "rtl/locale.h"
#include "rtl/ustring.h"

namespace Qm_tools {
namespace {

// Titles and class names are read into buffers of 79 characters, terminator included.
constexpr std::size_t kSeenLength = 78;

std::u16string_view Seen(std::u16string_view s) { return s.substr(0, kSeenLength); }

}  // namespace

bool WindowTitleMatches(std::u16string_view wantClass, std::u16string_view titlePart,
                        std::u16string_view windowClass, std::u16string_view windowTitle) {
  const std::u16string_view title = Seen(windowTitle);
  if (title.empty()) return false;
  if (!wantClass.empty() && !rtl::SameText(Seen(windowClass), wantClass)) return false;
  return rtl::Pos(rtl::AnsiLowerCase(titlePart), rtl::AnsiLowerCase(title)) > 0;
}

std::u16string WideReadingOf(const ShortString& s) {
  // The bytes go on with the appended zero (a single byte, lost when the string is full)
  // and whatever follows. Three zero bytes stand for both: at either parity of the length
  // they hold a zero pair, so the reading ends there.
  std::string bytes = s.bytes();
  bytes.append(3, '\0');
  std::u16string wide;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto unit = static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                            static_cast<unsigned char>(bytes[i + 1]) << 8);
    if (unit == 0) break;
    wide += unit;
  }
  return wide;
}

}  // namespace Qm_tools
