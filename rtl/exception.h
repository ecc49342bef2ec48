// The root of every exception the libraries raise, so that one catch is enough for a
// caller. Kept apart from rtl/sysutils.h, which brings in the system's headers.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "rtl/ustring.h"

namespace rtl {

// A message in UTF-16 that what() gives as UTF-8.
class Exception : public std::runtime_error {
 public:
  explicit Exception(const std::u16string& message)
      : std::runtime_error(Utf16ToUtf8(message)), message_(message) {}
  // The message in UTF-8.
  explicit Exception(std::string_view message) : Exception(Utf8ToUtf16(message)) {}
  const std::u16string& Message() const { return message_; }

 private:
  std::u16string message_;
};

}  // namespace rtl
