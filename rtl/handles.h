// Owners of Win32 handles: one generic template, unique_any, with the close function as a
// parameter, and a named alias per kind. The close functions (CloseHandle, DeleteObject,
// DestroyWindow...) are called from here only. Windows build only.
#pragma once

#include <windows.h>

#include <cstdint>
#include <type_traits>
#include <utility>

namespace rtl {

// Owns one handle of type T and closes it with Close when it goes or is given another.
// `Invalid` is the value that means "no handle" (0, or -1 for files).
template <typename T, auto Close, std::intptr_t Invalid = 0>
class unique_any {
 public:
  unique_any() noexcept = default;
  explicit unique_any(T h) noexcept : h_(h) {}
  unique_any(unique_any&& other) noexcept : h_(other.release()) {}
  unique_any& operator=(unique_any&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  ~unique_any() { reset(); }

  static T invalid() noexcept {
    if constexpr (std::is_pointer_v<T>)
      return reinterpret_cast<T>(Invalid);
    else
      return static_cast<T>(Invalid);
  }

  T get() const noexcept { return h_; }
  explicit operator bool() const noexcept { return h_ != invalid(); }

  // The old handle is closed before the new one is stored, so that code reached from the
  // close (a window procedure seeing WM_DESTROY) still finds the handle it is closing.
  void reset(T h = invalid()) noexcept {
    if (h_ != invalid() && h_ != h) Close(h_);
    h_ = h;
  }
  // Gives the handle up without closing it: for handles whose end came from elsewhere.
  [[nodiscard]] T release() noexcept { return std::exchange(h_, invalid()); }

 private:
  T h_ = invalid();
};

namespace close {
inline void Handle(HANDLE h) { ::CloseHandle(h); }
inline void Window(HWND h) { ::DestroyWindow(h); }
inline void GdiObject(HGDIOBJ h) { ::DeleteObject(h); }
inline void MemoryDC(HDC h) { ::DeleteDC(h); }
inline void ScreenDC(HDC h) { ::ReleaseDC(nullptr, h); }
inline void Hook(HHOOK h) { ::UnhookWindowsHookEx(h); }
inline void Global(HGLOBAL h) { ::GlobalFree(h); }
inline void GlobalAtom(ATOM a) { ::GlobalDeleteAtom(a); }
inline void Module(HMODULE h) { ::FreeLibrary(h); }
inline void Menu(HMENU h) { ::DestroyMenu(h); }
}  // namespace close

// Kernel objects that report failure as null (processes, threads, events, mappings).
using unique_handle = unique_any<HANDLE, &close::Handle>;
// Kernel objects that report failure as INVALID_HANDLE_VALUE (CreateFile).
using unique_hfile = unique_any<HANDLE, &close::Handle, -1>;
using unique_hwnd = unique_any<HWND, &close::Window>;
using unique_hbitmap = unique_any<HBITMAP, &close::GdiObject>;
using unique_hbrush = unique_any<HBRUSH, &close::GdiObject>;
using unique_hfont = unique_any<HFONT, &close::GdiObject>;
using unique_hpen = unique_any<HPEN, &close::GdiObject>;
using unique_hrgn = unique_any<HRGN, &close::GdiObject>;
// A DC from CreateCompatibleDC / CreateDC.
using unique_hdc = unique_any<HDC, &close::MemoryDC>;
// A DC from GetDC(nullptr): the screen's, released rather than deleted.
using unique_screen_dc = unique_any<HDC, &close::ScreenDC>;
using unique_hhook = unique_any<HHOOK, &close::Hook>;
using unique_hglobal = unique_any<HGLOBAL, &close::Global>;
using unique_global_atom = unique_any<ATOM, &close::GlobalAtom>;
using unique_hmodule = unique_any<HMODULE, &close::Module>;
using unique_hmenu = unique_any<HMENU, &close::Menu>;

// Selects an object into a DC for a scope and puts the previous one back.
class select_object {
 public:
  select_object(HDC dc, HGDIOBJ object) noexcept : dc_(dc), old_(::SelectObject(dc, object)) {}
  ~select_object() { ::SelectObject(dc_, old_); }
  select_object(const select_object&) = delete;
  select_object& operator=(const select_object&) = delete;

 private:
  HDC dc_;
  HGDIOBJ old_;
};

}  // namespace rtl
