// This module's window classes and hidden message windows. Every module that links the
// library (the package DLL, its host program) registers its classes under its own
// instance handle, so two copies of the library never share a class and a window always
// runs the code of the copy that made it. Windows build only.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "rtl/handles.h"

namespace ui {

// The module (DLL or program) this copy of the library is linked into.
HINSTANCE ModuleInstance();

// Registers a class of this module once; later calls for the name do nothing. The
// classes are unregistered when the module unloads, so that a DLL loaded again does not
// meet a class whose procedure has gone.
void RegisterWindowClass(const std::wstring& name, WNDPROC proc, UINT style);

// Anything that lives as long as the module and owns windows (the Application) calls
// this while it is constructed: the classes are then unregistered after it is gone.
void HoldWindowClasses();

// The window procedure of a hidden window; it calls DefWindowProcW for what it leaves.
using TWndMethod = std::function<LRESULT(HWND, UINT, WPARAM, LPARAM)>;

// A hidden window of this module whose messages all go to `method`: message-only (for
// timers and posted messages), or top-level (it also hears broadcasts). Null on failure.
rtl::unique_hwnd AllocateHWnd(TWndMethod method, const wchar_t* className = L"TPUtilWindow",
                              bool topLevel = false);

}  // namespace ui
