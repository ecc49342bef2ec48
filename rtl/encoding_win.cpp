// The ANSI encoding of the windows build: the system's ANSI code page (CP_ACP) through
// MultiByteToWideChar / WideCharToMultiByte, without best-fit mapping, so that a character
// the page lacks becomes '?' instead of a look-alike.
#include <windows.h>

#include "rtl/encoding.h"

namespace rtl {

namespace {

class AnsiEncoding final : public TEncoding {
 public:
  std::vector<std::uint8_t> GetBytes(std::u16string_view s) const override {
    if (s.empty()) return {};
    const auto* w = reinterpret_cast<const wchar_t*>(s.data());
    const int n = static_cast<int>(s.size());
    const int size = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, w, n, nullptr, 0, "?", nullptr);
    std::vector<std::uint8_t> r(static_cast<std::size_t>(size));
    WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, w, n, reinterpret_cast<char*>(r.data()),
                        size, "?", nullptr);
    return r;
  }
  std::u16string GetString(const std::uint8_t* data, std::size_t size) const override {
    if (size == 0) return {};
    const auto* a = reinterpret_cast<const char*>(data);
    const int n = static_cast<int>(size);
    const int length = MultiByteToWideChar(CP_ACP, 0, a, n, nullptr, 0);
    std::u16string r(static_cast<std::size_t>(length), u'\0');
    MultiByteToWideChar(CP_ACP, 0, a, n, reinterpret_cast<wchar_t*>(r.data()), length);
    return r;
  }
  std::vector<std::uint8_t> GetPreamble() const override { return {}; }
  int CodePage() const override { return static_cast<int>(GetACP()); }
  // A double-byte page's lead byte at the very end waits for its trail byte.
  std::size_t CompleteLength(const std::uint8_t* data, std::size_t size) const override {
    std::size_t i = 0;
    while (i < size) {
      if (!IsDBCSLeadByteEx(CP_ACP, data[i])) {
        ++i;
      } else if (i + 1 < size) {
        i += 2;
      } else {
        return i;
      }
    }
    return size;
  }
};

}  // namespace

TEncoding* TEncoding::ANSI() {
  static AnsiEncoding instance;
  return &instance;
}

}  // namespace rtl
