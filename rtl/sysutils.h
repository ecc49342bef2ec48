// The framework's base exception: a message in UTF-16 that what() gives as UTF-8.
#pragma once

#include <stdexcept>
#include <string>

#include "rtl/ustring.h"

namespace rtl {

class Exception : public std::runtime_error {
 public:
  explicit Exception(const std::u16string& message)
      : std::runtime_error(Utf16ToUtf8(message)), message_(message) {}
  const std::u16string& Message() const { return message_; }

 private:
  std::u16string message_;
};

}  // namespace rtl
