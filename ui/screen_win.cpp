// Monitors through the system's monitor API, asked afresh each time: monitors come and go
// and work areas change while a program runs.
#include "ui/screen.h"

#include <vector>

namespace ui {

namespace {

TRect FromRect(const RECT& r) { return {r.left, r.top, r.right, r.bottom}; }

TMonitor Describe(HMONITOR monitor, int index) {
  TMonitor m;
  MONITORINFO info{};
  info.cbSize = sizeof(info);
  if (monitor == nullptr || !GetMonitorInfoW(monitor, &info)) return m;
  m.Handle = monitor;
  m.MonitorNum = index;
  m.Primary = (info.dwFlags & MONITORINFOF_PRIMARY) != 0;
  m.BoundsRect = FromRect(info.rcMonitor);
  m.WorkareaRect = FromRect(info.rcWork);
  return m;
}

std::vector<HMONITOR> AllMonitors() {
  std::vector<HMONITOR> all;
  EnumDisplayMonitors(
      nullptr, nullptr,
      [](HMONITOR monitor, HDC, LPRECT, LPARAM data) -> BOOL {
        reinterpret_cast<std::vector<HMONITOR>*>(data)->push_back(monitor);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&all));
  return all;
}

TMonitor Numbered(HMONITOR monitor) {
  const std::vector<HMONITOR> all = AllMonitors();
  for (std::size_t i = 0; i < all.size(); ++i)
    if (all[i] == monitor) return Describe(monitor, static_cast<int>(i));
  return Describe(monitor, 0);
}

DWORD Flags(TMonitorDefaultTo defaultTo) {
  switch (defaultTo) {
    case mdNull: return MONITOR_DEFAULTTONULL;
    case mdPrimary: return MONITOR_DEFAULTTOPRIMARY;
    default: return MONITOR_DEFAULTTONEAREST;
  }
}

}  // namespace

int TScreen::MonitorCount() const { return static_cast<int>(AllMonitors().size()); }

TMonitor TScreen::Monitors(int index) const {
  const std::vector<HMONITOR> all = AllMonitors();
  if (index < 0 || static_cast<std::size_t>(index) >= all.size()) return {};
  return Describe(all[static_cast<std::size_t>(index)], index);
}

TMonitor TScreen::MonitorFromRect(const TRect& rect, TMonitorDefaultTo defaultTo) const {
  const RECT r{rect.Left, rect.Top, rect.Right, rect.Bottom};
  return Numbered(::MonitorFromRect(&r, Flags(defaultTo)));
}

TMonitor TScreen::MonitorFromWindow(HWND wnd, TMonitorDefaultTo defaultTo) const {
  return Numbered(::MonitorFromWindow(wnd, Flags(defaultTo)));
}

TRect TScreen::WorkAreaRect() const {
  RECT r{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &r, 0);
  return FromRect(r);
}

}  // namespace ui
