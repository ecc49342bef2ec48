// Messages between applications: posted messages that carry a text in a global atom, and
// the search for a top-level window by class and a part of its title. The rules that
// decide what a search matches and what a wide-character call reads from one-byte text
// are pure and built everywhere; the routines that talk to the system are Windows only.
//
// Not here: the companion program's open-project message (WM_COPYDATA), which the host
// frame receives.
#pragma once


#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include "tools/qm_tools_api.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace Qm_tools {

// The framework's short string: at most 255 one-byte characters. Longer text is cut to
// 255 when it is assigned, as the framework cuts it.
class ShortString {
 public:
  static constexpr std::size_t kMaxLength = 255;

  ShortString() = default;
  ShortString(std::string_view bytes) : bytes_(bytes.substr(0, kMaxLength)) {}
  ShortString(const char* bytes) : ShortString(std::string_view(bytes)) {}

  const std::string& bytes() const { return bytes_; }
  std::size_t size() const { return bytes_.size(); }
  bool empty() const { return bytes_.empty(); }

 private:
  std::string bytes_;
};

// A window is a match when its title (cut to 78 characters) is non-empty and holds
// `titlePart` ignoring case (AnsiLowerCase on both), and, when `wantClass` is non-empty,
// its class name (cut to 78 characters) equals `wantClass` ignoring ASCII case. An empty
// title part never matches, since an empty text is never found.
//   WindowTitleMatches(u"tform", u"EDIT", u"TForm", u"Edit me") == true
//   WindowTitleMatches(u"", u"x", u"Any", u"")                  == false  (no title)
QM_TOOLS_API bool WindowTitleMatches(std::u16string_view wantClass, std::u16string_view titlePart,
                        std::u16string_view windowClass, std::u16string_view windowTitle);

// The text a wide-character call reads when it is handed the bytes of a short string
// after a zero byte has been appended to it (and the result cut back to 255): byte pairs
// taken as little-endian UTF-16 units, up to the first zero unit. Bytes beyond the short
// string read as zero, so a full string (where the appended zero was cut) still ends.
//   WideReadingOf("A")   == u"A"             ('A', 0 is one unit)
//   WideReadingOf("AB")  == u"\u4241"        (the appended zero pairs with a zero beyond)
//   WideReadingOf("ABC") == u"\u4241C"
QM_TOOLS_API std::u16string WideReadingOf(const ShortString& s);

#ifdef _WIN32

// Posts (Msg, Param, atom of Text) to `wnd`, or broadcasts it when `wnd` is 0. An empty
// Text posts lParam 0. The receiver deletes the atom. True when `wnd` was not 0, whether
// or not the post succeeded; false for a broadcast.
QM_TOOLS_API bool SendWndInterAppMessage(HWND wnd, std::uint16_t Msg, std::uint16_t Param,
                            std::u16string_view Text);

// With both names non-empty: finds the window with FindWindowW and posts to it, true when
// found (nothing is posted otherwise). With either name empty: broadcasts and gives true.
// The names and the text reach the wide-character calls as WideReadingOf reads them, so
// "TForm" is looked up as the class u"\u4654\u726f\u006d", not as "TForm"; callers
// have always depended on exactly this reading.
QM_TOOLS_API bool SendInterAppMessage(const ShortString& ClassName, const ShortString& WindowName,
                         std::uint16_t Msg, std::uint16_t Param, const ShortString& Text);

// The first top-level window in Z order that WindowTitleMatches, or 0. InWindowTitle
// looks at visible windows only, InAllWindowTitle at all of them.
QM_TOOLS_API HWND InWindowTitle(std::u16string_view ClassName, std::u16string_view TitlePart);
QM_TOOLS_API HWND InAllWindowTitle(std::u16string_view ClassName, std::u16string_view TitlePart);

#endif

}  // namespace Qm_tools
