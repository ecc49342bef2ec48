// A picture of a window as it is on the screen, saved as a 24-bit BMP file.
#pragma once

#include <windows.h>

#include <string>

namespace devhost {

// Copies the window's screen area (with its frame and whatever other programs' windows
// are docked in it), so it must be on top and unobscured. False when the file cannot be
// written.
bool SaveWindowImage(HWND window, const std::wstring& fileName);

}  // namespace devhost
