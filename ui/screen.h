// The screen object: the fonts the library offers for system texts, the screen's size and
// its monitors. Windows build only.
#pragma once

#include <windows.h>

#include "ui/align.h"
#include "ui/graphics.h"

namespace ui {

// One monitor as the system reports it now; a value, taken afresh at each question.
struct TMonitor {
  HMONITOR Handle = nullptr;
  int MonitorNum = 0;
  bool Primary = false;
  TRect BoundsRect;
  TRect WorkareaRect;  // without the task bar and other docked bars
  int Left() const { return BoundsRect.Left; }
  int Top() const { return BoundsRect.Top; }
  int Width() const { return BoundsRect.Width(); }
  int Height() const { return BoundsRect.Height(); }
};

enum class TMonitorDefaultTo { mdNearest, mdNull, mdPrimary };
using enum TMonitorDefaultTo;

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

  // The monitors in the system's order of enumeration; an index out of range gives an
  // empty record (Handle null).
  int MonitorCount() const;
  TMonitor Monitors(int index) const;
  // The monitor a rectangle or window lies on most; with mdNull a record with a null
  // Handle when it lies on none.
  TMonitor MonitorFromRect(const TRect& rect, TMonitorDefaultTo defaultTo = mdNearest) const;
  TMonitor MonitorFromWindow(HWND wnd, TMonitorDefaultTo defaultTo = mdNearest) const;

  // The box around all monitors (the virtual screen).
  int DesktopLeft() const { return GetSystemMetrics(SM_XVIRTUALSCREEN); }
  int DesktopTop() const { return GetSystemMetrics(SM_YVIRTUALSCREEN); }
  int DesktopWidth() const { return GetSystemMetrics(SM_CXVIRTUALSCREEN); }
  int DesktopHeight() const { return GetSystemMetrics(SM_CYVIRTUALSCREEN); }
  // The primary monitor's work area (SPI_GETWORKAREA).
  TRect WorkAreaRect() const;
};

// This module's screen object.
extern TScreen* const Screen;

}  // namespace ui
