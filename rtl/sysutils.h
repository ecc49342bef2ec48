// The framework's base exceptions and its file-name helpers. File names are Windows file
// names in both builds: '\' separates folders, ':' ends a drive.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "rtl/exception.h"
#include "rtl/ustring.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace rtl {

// A file operation of the system that failed; ErrorCode is the system's error number.
class EInOutError : public Exception {
 public:
  EInOutError(const std::u16string& message, unsigned long errorCode)
      : Exception(message), ErrorCode(errorCode) {}
  unsigned long ErrorCode;
};

// A call of the system that failed; ErrorCode is the system's error number.
class EOSError : public Exception {
 public:
  EOSError(const std::u16string& message, unsigned long errorCode)
      : Exception(message), ErrorCode(errorCode) {}
  unsigned long ErrorCode;
};

// A text that is not the number it should be.
class EConvertError : public Exception {
 public:
  using Exception::Exception;
};

// A decimal integer with optional sign and surrounding blanks; EConvertError
// ("'x' is not a valid integer value") on anything else or on overflow.
int StrToInt(std::u16string_view s);

// The name after the last '\' or ':'.
std::u16string ExtractFileName(std::u16string_view fileName);
// Everything up to and including the last '\' or ':'.
std::u16string ExtractFilePath(std::u16string_view fileName);
// The extension with its dot, from the last '.' after the last '\' or ':'; "" when none.
std::u16string ExtractFileExt(std::u16string_view fileName);
// fileName with its extension (see ExtractFileExt) replaced by `ext` (given with its dot).
std::u16string ChangeFileExt(std::u16string_view fileName, std::u16string_view ext);

#ifdef _WIN32
// The full path of a loaded module; null: the program's own executable. "" on failure.
std::u16string GetModuleName(HMODULE module);
// The module this library is linked into: the program, or the package that carries it
// (each module has its own copy of the library).
HINSTANCE HInstance();
#endif

}  // namespace rtl
