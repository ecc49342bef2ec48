// The pure rules of the INI settings family: section names, record texts and where a
// restored window may go. No system calls here.
#include "tools/inisettings.h"

#include <algorithm>
#include <cstdint>
#include <limits>

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

bool SectionOfPrimaryMonitor(TWindowPosUser User) {
  switch (User) {
    case TWindowPosUser::wpSave:
    case TWindowPosUser::wpRestore: return true;
    case TWindowPosUser::wpSaveMemIni:
    case TWindowPosUser::wpRestoreCorner: return false;
  }
  return true;
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

namespace {

// A record is text that anybody can edit, and a sum of two of its numbers, or of one and a
// screen's, may leave the integers. So the rules count in 64 bits and narrow at the end.
using Wide = std::int64_t;
constexpr Wide kIntMin = std::numeric_limits<int>::min();
constexpr Wide kIntMax = std::numeric_limits<int>::max();

// A coordinate beyond the integers stops at their edge.
int Narrow(Wide v) { return static_cast<int>(std::clamp(v, kIntMin, kIntMax)); }

// The near edge of a side of Size at At, moved just far enough that the far edge is an
// integer too: SetBounds adds the two.
int NearEdge(Wide At, int Size) {
  return Narrow(std::clamp(At, kIntMin - std::min(Size, 0), kIntMax - std::max(Size, 0)));
}

ui::TRect FormAt(Wide Left, Wide Top, int Width, int Height) {
  const int l = NearEdge(Left, Width), t = NearEdge(Top, Height);
  return {l, t, l + Width, t + Height};
}

}  // namespace

TWindowPosRecord SavedWindowPos(const ui::TRect& Normal, int ShowCmd, int FormLeft, int FormTop,
                                bool Correct) {
  Wide dLeft = 0, dTop = 0;
  if (Correct) {
    if (FormTop != Normal.Top) dTop = Wide{FormTop} - Normal.Top;
    if (FormLeft != Normal.Left) dLeft = Wide{FormLeft} - Normal.Left;
  }
  return {Narrow(Normal.Left + dLeft), Narrow(Normal.Top + dTop), Narrow(Normal.Right + dLeft),
          Narrow(Normal.Bottom + dTop), ShowCmd};
}

TRestoredBounds RestoreWindowBounds(const TWindowPosRecord& Rec, const TRestoreScreen& Screen,
                                    int MinWidth, int MinHeight, bool NotMin) {
  Wide l = Rec.Left, t = Rec.Top, r = Rec.Right, b = Rec.Bottom;
  // Saved on a wider desktop or a taller monitor: start from the monitor's size.
  if (r > Wide{Screen.DesktopWidth} + 8) {
    r = Screen.MonitorWidth;
    if (!NotMin) l = 0;
  }
  if (b > Wide{Screen.MonitorHeight} + 8) {
    b = Screen.MonitorHeight;
    if (!NotMin) t = 0;
  }
  Wide w = r - l;
  Wide h = b - t;
  const ui::TRect& wa = Screen.PrimaryWorkArea;
  // A task bar at the top must not cover the caption.
  if (t + 15 < wa.Top) t = Wide{wa.Top} + 1;
  if (l < Screen.DesktopLeft) l = wa.Left;
  if (l > Screen.DesktopWidth) l = wa.Left;

  const ui::TRect area = Screen.MonitorFound ? Screen.MonitorWorkArea : Screen.VirtualScreen;
  w = std::max(w, Wide{std::max(MinWidth, 100)});
  h = std::max(h, Wide{std::max(MinHeight, 60)});
  // No wider than the work area, nor than an integer goes, however wide the area says it is.
  w = std::min({w, Wide{area.Right} - area.Left, kIntMax});
  h = std::min({h, Wide{area.Bottom} - area.Top, kIntMax});
  l = std::max(l, Wide{area.Left});
  t = std::max(t, Wide{area.Top});
  if (l + w > area.Right) l = area.Right - w;
  if (t + h > area.Bottom) t = area.Bottom - h;
  // The caption stays where the mouse can reach it.
  if (t > Wide{area.Bottom} - 40) t = Wide{area.Bottom} - 40;
  if (t < area.Top) t = area.Top;
  // Inside a work area all of this is an integer already; a work area that is none still
  // gives bounds whose far edges are.
  const int width = Narrow(w), height = Narrow(h);
  return {NearEdge(l, width), NearEdge(t, height), width, height};
}

ui::TRect RestoreWindowCorner(const TWindowPosRecord& Rec, const TRestoreScreen& Screen,
                              int Width, int Height) {
  Wide l = Rec.Left, t = Rec.Top;
  if (Rec.Right > Wide{Screen.DesktopWidth} + 8) l = 0;
  if (Rec.Bottom > Wide{Screen.MonitorHeight} + 8) t = 0;
  const ui::TRect& wa = Screen.PrimaryWorkArea;
  if (t + 15 < wa.Top) t = Wide{wa.Top} + 1;
  if (l < Screen.DesktopLeft) l = wa.Left;
  if (l > Screen.DesktopWidth) l = wa.Left;
  return FormAt(l, t, Width, Height);
}

ui::TRect RestoreWindowCornerIni(const TWindowPosRecord& Rec, const TRestoreScreen& Screen,
                                 int Width, int Height) {
  Wide l = Rec.Left, t = Rec.Top;
  const ui::TRect& wa = Screen.PrimaryWorkArea;
  // Saved relative to the work area.
  if (wa.Top > 0) t += wa.Top;
  if (wa.Left > 0) l += wa.Left;
  if (t + 15 < wa.Top) t = Wide{wa.Top} + 1;
  if (l > Screen.PrimaryWidth) l = wa.Left;
  return FormAt(l, t, Width, Height);
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

std::u16string ProfileFilePath(std::u16string_view FileName, std::u16string_view WindowsFolder) {
  const bool bare = FileName.find_first_of(u"\\/") == std::u16string_view::npos &&
                    !(FileName.size() >= 2 && FileName[1] == u':');
  if (!bare || FileName.empty()) return std::u16string(FileName);
  return chkPath(WindowsFolder) + std::u16string(FileName);
}

std::u16string WritePosFailedText(std::u16string_view IniName) {
  return u"Nach " + std::u16string(IniName) +
         u" konnte nicht geschrieben werden!\r\rMöglicherweise bestehen keine Schreibrechte "
         u"des Anwenders.";
}

}  // namespace Qm_tools
