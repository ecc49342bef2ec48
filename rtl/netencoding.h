// Base64 as the framework's TNetEncoding.Base64 writes it: the RFC 4648 alphabet with '='
// padding, in lines of 76 characters joined by CR LF, no line break at the end. Reading
// skips line breaks and blanks; any other character outside the alphabet, or text that
// ends in the middle of a byte, raises EEncodingError. Pure.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rtl/sysutils.h"

namespace rtl {

class EEncodingError : public Exception {
 public:
  using Exception::Exception;
};

// 57 bytes make one full line of 76 characters.
//   Base64Encode({'M','a','n'}) == u"TWFu"
std::u16string Base64Encode(const std::uint8_t* data, std::size_t size);
inline std::u16string Base64Encode(const std::vector<std::uint8_t>& bytes) {
  return Base64Encode(bytes.data(), bytes.size());
}
std::vector<std::uint8_t> Base64Decode(std::u16string_view text);

}  // namespace rtl
