#include "devhost/treedump.h"

#include <string>

#include "devhost/log.h"

namespace devhost {

namespace {

std::wstring Text(HWND w, int (*get)(HWND, LPWSTR, int)) {
  wchar_t buffer[256] = {};
  get(w, buffer, 256);
  return buffer;
}

int ClassOf(HWND w, LPWSTR buffer, int size) { return GetClassNameW(w, buffer, size); }
// The title without sending WM_GETTEXT: a hung docked program must not hang the dump.
int TitleOf(HWND w, LPWSTR buffer, int size) { return InternalGetWindowText(w, buffer, size); }

void DumpChildren(HWND root, HWND parent, int depth) {
  for (HWND w = GetWindow(parent, GW_CHILD); w != nullptr; w = GetWindow(w, GW_HWNDNEXT)) {
    RECT r;
    GetWindowRect(w, &r);
    MapWindowPoints(HWND_DESKTOP, root, reinterpret_cast<POINT*>(&r), 2);
    const LONG_PTR style = GetWindowLongPtrW(w, GWL_STYLE);
    LogLine(L"tree " + std::wstring(static_cast<size_t>(depth) * 2, L' ') +
            L"class=" + Text(w, ClassOf) + L" title=\"" + Text(w, TitleOf) + L"\" at=" +
            std::to_wstring(r.left) + L"," + std::to_wstring(r.top) + L" size=" +
            std::to_wstring(r.right - r.left) + L"x" + std::to_wstring(r.bottom - r.top) +
            L" border=" + ((style & WS_BORDER) ? L"yes" : L"no") +
            L" visible=" + ((style & WS_VISIBLE) ? L"yes" : L"no"));
    DumpChildren(root, w, depth + 1);
  }
}

}  // namespace

void DumpWindowTree(HWND root) {
  RECT r;
  GetClientRect(root, &r);
  // Where the area lies in a screenshot of its top-level window.
  RECT window;
  GetWindowRect(GetAncestor(root, GA_ROOT), &window);
  POINT origin{0, 0};
  ClientToScreen(root, &origin);
  LogLine(L"tree area size=" + std::to_wstring(r.right) + L"x" + std::to_wstring(r.bottom) +
          L" window-at=" + std::to_wstring(origin.x - window.left) + L"," +
          std::to_wstring(origin.y - window.top));
  DumpChildren(root, root, 1);
}

}  // namespace devhost
