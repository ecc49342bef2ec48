// The pure rules of the INI settings family: section names, record texts and where a
// restored window may go. No system calls here.
#include "tools/inisettings.h"

#include <algorithm>

#include "rtl/sysutils.h"
#include "rtl/ustring.h"
#include "tools/fields.h"
#include "tools/paths.h"

namespace Qm_tools {

std::u16string WindowPosSection(int MonitorWidth, int MonitorHeight,
                                std::u16string_view ComputerName) {
  return rtl::IntToStr(MonitorWidth) + u"x" + rtl::IntToStr(MonitorHeight) + u":" +
         std::u16string(ComputerName) + u":WinPos";
}

std::u16string WindowPosValue(const TWindowPosRecord& Rec) {
  std::u16string value;
  for (const int n : {Rec.Left, Rec.Top, Rec.Right, Rec.Bottom, Rec.ShowCmd})
    value += rtl::IntToStr(n) + u"^";
  return value;
}

bool ReadWindowPosValue(std::u16string_view Value, TWindowPosRecord& Rec) {
  if (GetFieldsCount(u'^', Value) <= 0) return false;
  TWindowPosRecord rec;
  rec.Left = rtl::StrToInt(GetFieldStr(u'^', Value, 1));
  rec.Top = rtl::StrToInt(GetFieldStr(u'^', Value, 2));
  rec.Right = rtl::StrToInt(GetFieldStr(u'^', Value, 3));
  rec.Bottom = rtl::StrToInt(GetFieldStr(u'^', Value, 4));
  rec.ShowCmd = rtl::StrToInt(GetFieldStr(u'^', Value, 5));
  Rec = rec;
  return true;
}

TWindowPosRecord SavedWindowPos(const ui::TRect& Normal, int ShowCmd, int FormLeft, int FormTop,
                                bool Correct) {
  int dLeft = 0, dTop = 0;
  if (Correct) {
    if (FormTop != Normal.Top) dTop = FormTop - Normal.Top;
    if (FormLeft != Normal.Left) dLeft = FormLeft - Normal.Left;
  }
  return {Normal.Left + dLeft, Normal.Top + dTop, Normal.Right + dLeft, Normal.Bottom + dTop,
          ShowCmd};
}

TRestoredBounds RestoreWindowBounds(const TWindowPosRecord& Rec, const TRestoreScreen& Screen,
                                    int MinWidth, int MinHeight, bool NotMin) {
  int l = Rec.Left, t = Rec.Top, r = Rec.Right, b = Rec.Bottom;
  // Saved on a wider desktop or a taller monitor: start from the monitor's size.
  if (r > Screen.DesktopWidth + 8) {
    r = Screen.MonitorWidth;
    if (!NotMin) l = 0;
  }
  if (b > Screen.MonitorHeight + 8) {
    b = Screen.MonitorHeight;
    if (!NotMin) t = 0;
  }
  int w = r - l;
  int h = b - t;
  const ui::TRect& wa = Screen.PrimaryWorkArea;
  // A task bar at the top must not cover the caption.
  if (t + 15 < wa.Top) t = wa.Top + 1;
  if (l < Screen.DesktopLeft) l = wa.Left;
  if (l > Screen.DesktopWidth) l = wa.Left;

  const ui::TRect area = Screen.MonitorFound ? Screen.MonitorWorkArea : Screen.VirtualScreen;
  w = std::max(w, std::max(MinWidth, 100));
  h = std::max(h, std::max(MinHeight, 60));
  w = std::min(w, area.Width());
  h = std::min(h, area.Height());
  l = std::max(l, area.Left);
  t = std::max(t, area.Top);
  if (l + w > area.Right) l = area.Right - w;
  if (t + h > area.Bottom) t = area.Bottom - h;
  // The caption stays where the mouse can reach it.
  if (t > area.Bottom - 40) t = area.Bottom - 40;
  if (t < area.Top) t = area.Top;
  return {l, t, w, h};
}

ui::TRect RestoreWindowCorner(const TWindowPosRecord& Rec, const TRestoreScreen& Screen) {
  int l = Rec.Left, t = Rec.Top;
  if (Rec.Right > Screen.DesktopWidth + 8) l = 0;
  if (Rec.Bottom > Screen.MonitorHeight + 8) t = 0;
  const ui::TRect& wa = Screen.PrimaryWorkArea;
  if (t + 15 < wa.Top) t = wa.Top + 1;
  if (l < Screen.DesktopLeft) l = wa.Left;
  if (l > Screen.DesktopWidth) l = wa.Left;
  return {l, t, l, t};
}

ui::TRect RestoreWindowCornerIni(const TWindowPosRecord& Rec, const TRestoreScreen& Screen) {
  int l = Rec.Left, t = Rec.Top;
  const ui::TRect& wa = Screen.PrimaryWorkArea;
  // Saved relative to the work area.
  if (wa.Top > 0) t += wa.Top;
  if (wa.Left > 0) l += wa.Left;
  if (t + 15 < wa.Top) t = wa.Top + 1;
  if (l > Screen.PrimaryWidth) l = wa.Left;
  return {l, t, l, t};
}

TRestoreState RestoredWindowState(int ShowCmd, bool CornerOnly) {
  switch (ShowCmd) {
    case 1: return TRestoreState::rsNormal;
    case 2: return CornerOnly ? TRestoreState::rsMinimized : TRestoreState::rsNormal;
    case 3: return TRestoreState::rsMaximized;
    default: return TRestoreState::rsKeep;
  }
}

int PersistItemCount(int Count, int MaxIndex) {
  const int last = std::min(Count - 1, MaxIndex);
  return last < 0 ? 0 : last + 1;
}

std::u16string AppIniFolder(std::u16string_view IniName) {
  return chkPath(rtl::ExtractFilePath(IniName));
}

std::u16string DriveProbeFile(std::u16string_view Path) {
  return chkPath(Path.substr(0, std::min<std::size_t>(2, Path.size()))) + u"jjhhuu.ini";
}

std::u16string WritePosFailedText(std::u16string_view IniName) {
  return u"Nach " + std::u16string(IniName) +
         u" konnte nicht geschrieben werden!\r\rMöglicherweise bestehen keine Schreibrechte "
         u"des Anwenders.";
}

}  // namespace Qm_tools
