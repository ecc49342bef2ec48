// The Win32 side of the inter-application family: gathers window titles and class names,
// asks the rules in interapp.cpp, posts the messages. The atoms made here are left to the
// receiver, which deletes them.
#include "tools/interapp.h"
#include "rtl/wide.h"

namespace Qm_tools {

using rtl::W;
namespace {

// A failed GlobalAddAtomW gives 0, which goes out as "no text"; the message is posted
// regardless.
LPARAM AtomOf(const std::u16string& text) { return GlobalAddAtomW(W(text)); }

// Titles and class names are read into 79 characters, so at most 78 are ever compared.
template <int (*read)(HWND, LPWSTR, int)>
std::u16string Read(HWND wnd) {
  wchar_t buffer[79];
  const int n = read(wnd, buffer, 79);
  return n > 0 ? std::u16string(reinterpret_cast<const char16_t*>(buffer), n) : std::u16string();
}
int ReadClass(HWND wnd, LPWSTR buffer, int size) { return GetClassNameW(wnd, buffer, size); }
int ReadTitle(HWND wnd, LPWSTR buffer, int size) { return GetWindowTextW(wnd, buffer, size); }

HWND FindByTitle(std::u16string_view className, std::u16string_view titlePart, bool visibleOnly) {
  // The desktop's first child is the first top-level window in Z order, the same one
  // GW_HWNDFIRST gives from any top-level window.
  for (HWND w = GetWindow(GetDesktopWindow(), GW_CHILD); w; w = GetWindow(w, GW_HWNDNEXT)) {
    if (!IsWindow(w) || (visibleOnly && !IsWindowVisible(w))) continue;
    const std::u16string title = Read<ReadTitle>(w);
    if (title.empty()) continue;
    const std::u16string cls = className.empty() ? std::u16string() : Read<ReadClass>(w);
    if (WindowTitleMatches(className, titlePart, cls, title)) return w;
  }
  return nullptr;
}

}  // namespace

bool SendWndInterAppMessage(HWND wnd, std::uint16_t Msg, std::uint16_t Param,
                            std::u16string_view Text) {
  const HWND target = wnd ? wnd : HWND_BROADCAST;
  PostMessageW(target, Msg, Param, Text.empty() ? 0 : AtomOf(std::u16string(Text)));
  return wnd != nullptr;
}

bool SendInterAppMessage(const ShortString& ClassName, const ShortString& WindowName,
                         std::uint16_t Msg, std::uint16_t Param, const ShortString& Text) {
  HWND target = HWND_BROADCAST;
  if (!ClassName.empty() && !WindowName.empty()) {
    target = FindWindowW(W(WideReadingOf(ClassName)), W(WideReadingOf(WindowName)));
    if (!target) return false;
  }
  PostMessageW(target, Msg, Param, Text.empty() ? 0 : AtomOf(WideReadingOf(Text)));
  return true;
}

HWND InWindowTitle(std::u16string_view ClassName, std::u16string_view TitlePart) {
  return FindByTitle(ClassName, TitlePart, true);
}

HWND InAllWindowTitle(std::u16string_view ClassName, std::u16string_view TitlePart) {
  return FindByTitle(ClassName, TitlePart, false);
}

}  // namespace Qm_tools
