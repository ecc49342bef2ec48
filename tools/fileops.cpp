// The pure rules of the file operations: the size text and the comparison report.
#include "tools/fileops.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "rtl/formatsettings.h"
#include "rtl/ustring.h"

namespace Qm_tools {

namespace {

constexpr std::int64_t kKb = 1024;
constexpr std::int64_t kMb = 1048576;
constexpr std::int64_t kGb = 1073741824;

// "%.2f" with '.', as the C library writes it.
std::string Fixed2(double value) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.2f", value);
  return buf;
}

// A C-library number text with the process-wide decimal separator.
std::u16string Localised(const std::string& text) {
  std::u16string out(text.begin(), text.end());
  for (char16_t& c : out)
    if (c == u'.') c = rtl::FormatSettings.DecimalSeparator;
  return out;
}

std::u16string Latin1(std::uint8_t b) { return std::u16string(1, static_cast<char16_t>(b)); }

}  // namespace

std::u16string GetSizeStr(std::int64_t Size) {
  const double size = static_cast<double>(Size);
  if (Size > kGb) {
    const std::string gb = Fixed2(size / static_cast<double>(kGb));
    const double readBack = std::strtod(gb.c_str(), nullptr);
    if (readBack > 1000) return Localised(Fixed2(readBack / 1024)) + u" TB";
    return Localised(gb) + u" GB";
  }
  if (Size > kMb) return Localised(Fixed2(size / static_cast<double>(kMb))) + u" MB";
  if (Size >= kKb) {
    std::int64_t kb = Size / kKb;
    const std::int64_t rest = Size % kKb;
    if (rest > kKb / 2 || (rest == kKb / 2 && kb % 2 != 0)) ++kb;
    return rtl::IntToStr(kb) + u" kb";
  }
  std::u16string text = Localised(Fixed2(size / static_cast<double>(kKb))) + u" kb";
  // Only the comma text is lifted: under '.' a tiny file keeps "0.00 kb", as it always has.
  if (Size > 0 && text == u"0,00 kb") text = u"0,01 kb";
  return text;
}

std::u16string CompareFilesHeader(std::int64_t Size1, std::u16string_view File1,
                                  std::int64_t Size2, std::u16string_view File2) {
  return rtl::IntToStr(Size1) + u": Größe von " + std::u16string(File1) + u"\r" +
         rtl::IntToStr(Size2) + u": Größe von " + std::u16string(File2);
}

std::u16string CompareFilesText(const std::vector<std::uint8_t>& Data1, std::u16string_view File1,
                                const std::vector<std::uint8_t>& Data2, std::u16string_view File2) {
  const std::size_t n = Data1.size() < Data2.size() ? Data1.size() : Data2.size();
  // Positions are 1-based; the last byte of the shorter file is left out on purpose, as
  // the reports users compare against were always made that way.
  for (std::size_t p = 1; p < n; ++p) {
    const std::uint8_t b1 = Data1[p - 1];
    const std::uint8_t b2 = Data2[p - 1];
    if (b1 == b2) continue;
    const std::u16string value = u" \" Wert: ";
    std::u16string text = u"\rDateien unterscheiden sich an Position: " +
                          rtl::IntToStr(static_cast<std::int64_t>(p)) + u"\r\r" + Latin1(b1) +
                          value + rtl::IntToStr(b1) + u" (" + rtl::ExtractFileName(File1) +
                          u")\r" + Latin1(b2) + value + rtl::IntToStr(b2) + u" (" +
                          rtl::ExtractFileName(File2) + u")";
    // Context: up to ten characters from the difference on, to the end of the line.
    std::u16string context1, context2;
    std::size_t i = p;
    std::uint8_t c1 = b1, c2 = b2;
    for (int count = 0; count < 10; ++count) {
      context1 += Latin1(c1);
      context2 += Latin1(c2);
      if (c1 == 13 || c1 == 10 || c2 == 13 || c2 == 10) break;
      if (i + 2 >= n) break;
      ++i;
      c1 = Data1[i - 1];
      c2 = Data2[i - 1];
    }
    return text + u"\r\r" + context1 + u"\r" + context2;
  }
  if (Data1.size() == Data2.size()) return u"\rDateien sind gleich.";
  return u"";
}

}  // namespace Qm_tools
