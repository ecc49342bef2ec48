// The system's wide characters and this code's UTF-16 strings are the same 16-bit code
// units on Windows, so a string goes to a Win32 call by a cast, not a conversion: here, in
// one place. Windows build only.
#pragma once

#ifdef _WIN32
#include <string>

namespace rtl {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "Win32 wide characters are UTF-16 units");

// The string as the argument of a call that reads it.
inline const wchar_t* W(const std::u16string& s) { return reinterpret_cast<const wchar_t*>(s.c_str()); }
// The string's buffer for a call that writes into it.
inline wchar_t* W(std::u16string& s) { return reinterpret_cast<wchar_t*>(s.data()); }
// A null-terminated wide string from the system, or its first `length` characters.
inline std::u16string FromW(const wchar_t* s) { return reinterpret_cast<const char16_t*>(s); }
inline std::u16string FromW(const wchar_t* s, std::size_t length) {
  return {reinterpret_cast<const char16_t*>(s), length};
}

}  // namespace rtl
#endif
