// The screen object: the fonts the library offers for system texts and the screen's size.
// Windows build only.
#pragma once

#include <windows.h>

#include "ui/graphics.h"

namespace ui {

class TScreen {
 public:
  // Fonts for message texts, menus, hints, icon titles and captions; the library's own
  // defaults until a program sets them.
  TFont MessageFont;
  TFont MenuFont;
  TFont HintFont;
  TFont IconFont;
  TFont CaptionFont;

  // The primary monitor's size in pixels.
  int Width() const { return GetSystemMetrics(SM_CXSCREEN); }
  int Height() const { return GetSystemMetrics(SM_CYSCREEN); }
  int MonitorCount() const { return GetSystemMetrics(SM_CMONITORS); }
};

// This module's screen object.
extern TScreen* const Screen;

}  // namespace ui
