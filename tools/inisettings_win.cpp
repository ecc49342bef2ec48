// The INI settings family on files and forms: the profile API through rtl::TIniFile, the
// window placement, and the monitors of the screen object. The rules are in
// inisettings.cpp.
#include <windows.h>

#include <exception>

#include "dialog/QMMessageDlgVCL.h"
#include "rtl/sysutils.h"
#include "rtl/wide.h"
#include "tools/fields.h"
#include "tools/inisettings.h"
#include "tools/qm_globals.h"
#include "tools/sysinfo.h"

namespace Qm_tools {

using rtl::W;

using enum TWindowPosUser;

namespace {

// The first monitor that says it is the primary one, else the first of all.
ui::TMonitor PrimaryMonitor() {
  const int count = ui::Screen->MonitorCount();
  for (int i = 0; i < count; ++i) {
    const ui::TMonitor m = ui::Screen->Monitors(i);
    if (m.Primary) return m;
  }
  return ui::Screen->Monitors(0);
}

std::u16string SectionFor(TWindowPosUser User, ui::TCustomForm& Form) {
  const ui::TMonitor monitor = SectionOfPrimaryMonitor(User) ? PrimaryMonitor() : Form.Monitor();
  return WindowPosSection(monitor.Width(), monitor.Height(), GetThisComputerName());
}

WINDOWPLACEMENT Placement(ui::TCustomForm& Form) {
  WINDOWPLACEMENT wp{};
  wp.length = sizeof(wp);  // 44
  GetWindowPlacement(Form.Handle(), &wp);
  return wp;
}

// The record of the form as it stands. The placement's rectangle counts from the work
// area; a form in its normal state tells where that is on the screen.
TWindowPosRecord RecordOf(ui::TCustomForm& Form) {
  const WINDOWPLACEMENT wp = Placement(Form);
  const RECT& rc = wp.rcNormalPosition;
  return SavedWindowPos({rc.left, rc.top, rc.right, rc.bottom}, static_cast<int>(wp.showCmd),
                        Form.Left(), Form.Top(), Form.WindowState() == ui::wsNormal);
}

// Saving a position never raises: the user is told and the program goes on.
template <class Write>
void SavePosition(const std::u16string& IniName, Write write) {
  try {
    write();
  } catch (const std::exception&) {
    QMMessageDlgVCL::ShowMessage(WritePosFailedText(IniName));
  }
}

TRestoreScreen ScreenAround(const TWindowPosRecord& rec) {
  TRestoreScreen s;
  const ui::TMonitor mon = ui::Screen->MonitorFromRect({rec.Left, rec.Top, rec.Right, rec.Bottom});
  s.MonitorFound = mon.Handle != nullptr;
  s.MonitorWidth = mon.Width();
  s.MonitorHeight = mon.Height();
  s.MonitorWorkArea = mon.WorkareaRect;
  s.PrimaryWorkArea = ui::Screen->WorkAreaRect();
  s.DesktopLeft = ui::Screen->DesktopLeft();
  s.DesktopWidth = ui::Screen->DesktopWidth();
  const int x = GetSystemMetrics(SM_XVIRTUALSCREEN);
  const int y = GetSystemMetrics(SM_YVIRTUALSCREEN);
  s.VirtualScreen = {x, y, x + GetSystemMetrics(SM_CXVIRTUALSCREEN),
                     y + GetSystemMetrics(SM_CYVIRTUALSCREEN)};
  s.PrimaryWidth = ui::Screen->Width();
  return s;
}

void ApplyState(ui::TCustomForm& Form, TRestoreState state) {
  switch (state) {
    case TRestoreState::rsNormal: Form.SetWindowState(ui::wsNormal); break;
    case TRestoreState::rsMinimized: Form.SetWindowState(ui::wsMinimized); break;
    case TRestoreState::rsMaximized: Form.SetWindowState(ui::wsMaximized); break;
    case TRestoreState::rsKeep: break;
  }
}

std::u16string ReadValue(const std::u16string& IniName, const std::u16string& section,
                         const std::u16string& Ident) {
  const rtl::TIniFile ini(IniName);
  return ini.ReadString(section, Ident, u"");
}

bool RestoreFull(ui::TCustomForm& Form, const std::u16string& IniName,
                 const std::u16string& Ident, bool RestoreState, bool NotMin) {
  TWindowPosRecord rec;
  if (!ReadWindowPosValue(ReadValue(IniName, SectionFor(wpRestore, Form), Ident), rec))
    return false;
  const TRestoredBounds b = RestoreWindowBounds(rec, ScreenAround(rec), Form.Constraints.MinWidth,
                                                Form.Constraints.MinHeight, NotMin);
  Form.SetBounds(b.Left, b.Top, b.Width, b.Height);
  if (!NotMin) {
    Form.SetWidth(b.Width);
    Form.SetHeight(b.Height);
  }
  if (RestoreState) ApplyState(Form, RestoredWindowState(rec.ShowCmd, false));
  return true;
}

bool RestoreCornerFrom(ui::TCustomForm& Form, const std::u16string& value, bool RestoreState,
                       bool simple) {
  TWindowPosRecord rec;
  if (!ReadWindowPosValue(value, rec)) return false;
  const TRestoreScreen screen = ScreenAround(rec);
  const ui::TRect bounds = simple ? RestoreWindowCornerIni(rec, screen, Form.Width(), Form.Height())
                                  : RestoreWindowCorner(rec, screen, Form.Width(), Form.Height());
  Form.SetBounds(bounds.Left, bounds.Top, bounds.Width(), bounds.Height());
  if (RestoreState) ApplyState(Form, RestoredWindowState(rec.ShowCmd, true));
  return true;
}

// The probe of the two write tests: one value written, the file removed again. A name
// without a folder is written where the profile API keeps such names, and removed there.
bool CanWriteProbe(const std::u16string& name) {
  bool result = false;
  try {
    wchar_t windows[MAX_PATH] = {};
    const UINT length = GetWindowsDirectoryW(windows, MAX_PATH);
    const std::u16string file = ProfileFilePath(
        name, std::u16string(reinterpret_cast<const char16_t*>(windows),
                             length < MAX_PATH ? length : 0));
    {
      rtl::TIniFile ini(file);
      ini.WriteString(u"Optionen", u"Writing", u"Test");
      result = true;
    }
    DeleteFileW(W(file));
  } catch (const std::exception&) {
  }
  return result;
}

}  // namespace

void SaveIniInt(const std::u16string& Section, const std::u16string& Ident, int Value) {
  rtl::TIniFile(AppIniName).WriteInteger(Section, Ident, Value);
}

int GetIniInt(const std::u16string& Section, const std::u16string& Ident, int Default) {
  return rtl::TIniFile(AppIniName).ReadInteger(Section, Ident, Default);
}

void SaveIniBool(const std::u16string& Section, const std::u16string& Ident, bool Value) {
  rtl::TIniFile(AppIniName).WriteBool(Section, Ident, Value);
}

bool GetIniBool(const std::u16string& Section, const std::u16string& Ident, bool Default) {
  return rtl::TIniFile(AppIniName).ReadBool(Section, Ident, Default);
}

void SaveIniStr(const std::u16string& Section, const std::u16string& Ident,
                const std::u16string& Value) {
  rtl::TIniFile(AppIniName).WriteString(Section, Ident, Value);
}

std::u16string GetIniStr(const std::u16string& Section, const std::u16string& Ident,
                         const std::u16string& Default) {
  if (Section.empty() || Ident.empty()) return u"";
  return rtl::TIniFile(AppIniName).ReadString(Section, Ident, Default);
}

void SaveFileIniStr(const std::u16string& FileName, const std::u16string& Section,
                    const std::u16string& Ident, const std::u16string& Value) {
  if (FileName.empty() || Section.empty() || Ident.empty()) return;
  rtl::TIniFile(AppIniFolder(AppIniName) + FileName).WriteString(Section, Ident, Value);
}

std::u16string GetFileIniStr(const std::u16string& FileName, const std::u16string& Section,
                             const std::u16string& Ident, const std::u16string& Default) {
  if (FileName.empty() || Section.empty() || Ident.empty()) return u"";
  return rtl::TIniFile(AppIniFolder(AppIniName) + FileName).ReadString(Section, Ident, Default);
}

bool GetIniFileIniBool(const std::u16string& IniFile, const std::u16string& Section,
                       const std::u16string& Ident, bool Default) {
  return rtl::TIniFile(IniFile).ReadBool(Section, Ident, Default);
}

std::u16string GetIniFileIniStr(const std::u16string& IniFile, const std::u16string& Section,
                                const std::u16string& Ident, const std::u16string& Default) {
  return rtl::TIniFile(IniFile).ReadString(Section, Ident, Default);
}

int CountEntries(rtl::TIniFile& Ini, const std::u16string& Section) {
  rtl::TStringList keys;
  Ini.ReadSection(Section, keys);
  return keys.Count();
}

void SaveWindowPos(ui::TCustomForm& Form, const std::u16string& IniName,
                   const std::u16string& Ident) {
  SavePosition(IniName, [&] {
    const std::u16string value = WindowPosValue(RecordOf(Form));
    rtl::TIniFile ini(IniName);
    ini.WriteString(SectionFor(wpSave, Form), Ident, value);
  });
}

void SaveWindowPosMIni(ui::TCustomForm& Form, const std::u16string& IniName,
                       const std::u16string& Ident, rtl::TMemIniFile& MemIni) {
  SavePosition(IniName, [&] {
    MemIni.WriteString(SectionFor(wpSaveMemIni, Form), Ident, WindowPosValue(RecordOf(Form)));
  });
}

void IniSaveWindowPos(rtl::TMemIniFile& MemIni, ui::TCustomForm& Form,
                      const std::u16string& IniName, const std::u16string& Ident) {
  SaveWindowPosMIni(Form, IniName, Ident, MemIni);
}

bool RestoreWindowPos(ui::TCustomForm& Form, const std::u16string& IniName,
                      const std::u16string& Ident, bool RestoreState) {
  return RestoreFull(Form, IniName, Ident, RestoreState, false);
}

bool RestoreWindowNotMinPos(ui::TCustomForm& Form, const std::u16string& IniName,
                            const std::u16string& Ident) {
  return RestoreFull(Form, IniName, Ident, true, true);
}

bool RestoreWindowLeftTopPos(ui::TCustomForm& Form, const std::u16string& IniName,
                             const std::u16string& Ident, bool RestoreState) {
  return RestoreCornerFrom(Form, ReadValue(IniName, SectionFor(wpRestoreCorner, Form), Ident),
                           RestoreState, false);
}

bool RestoreWindowLeftTopPosIni(ui::TCustomForm& Form, rtl::TIniFile& Ini,
                                const std::u16string& Ident, bool RestoreState) {
  return RestoreCornerFrom(Form, Ini.ReadString(SectionFor(wpRestoreCorner, Form), Ident, u""),
                           RestoreState, true);
}

bool RestoreWindowLeftTopPosIni2(ui::TCustomForm& Form, const std::u16string& IniName,
                                 const std::u16string& Ident, bool RestoreState) {
  rtl::TIniFile ini(IniName);
  return RestoreWindowLeftTopPosIni(Form, ini, Ident, RestoreState);
}

bool SaveWindowMinPos(ui::TCustomForm& Form, const std::u16string& IniName,
                      const std::u16string& Ident) {
  WINDOWPLACEMENT wp{};
  wp.length = sizeof(wp);
  wp.flags = WPF_SETMINPOSITION;
  GetWindowPlacement(Form.Handle(), &wp);
  rtl::TIniFile(IniName).WriteString(
      u"MinPos", Ident,
      rtl::IntToStr(wp.ptMinPosition.x) + u"^" + rtl::IntToStr(wp.ptMinPosition.y) + u"^");
  return true;
}

bool RestoreWindowMinPos(ui::TCustomForm& Form, const std::u16string& IniName,
                         const std::u16string& Ident, bool ShowMinimized) {
  const std::u16string value = ReadValue(IniName, u"MinPos", Ident);
  if (GetFieldsCount(u'^', value) <= 0) return false;
  const int x = rtl::StrToInt(GetFieldStr(u'^', value, 1));
  const int y = rtl::StrToInt(GetFieldStr(u'^', value, 2));
  WINDOWPLACEMENT wp = Placement(Form);
  wp.ptMinPosition = {x, y};
  wp.flags = WPF_SETMINPOSITION;
  if (ShowMinimized) wp.showCmd = SW_MINIMIZE;
  SetWindowPlacement(Form.Handle(), &wp);
  return true;
}

void qm_SavePersist(const rtl::TStrings& List, const std::u16string& Section, int MaxIndex) {
  rtl::TIniFile ini(AppIniName);
  ini.EraseSection(Section);
  const int count = PersistItemCount(List.Count(), MaxIndex);
  for (int i = 0; i < count; ++i) ini.WriteString(Section, u"Item" + rtl::IntToStr(i + 1), List[i]);
}

void qm_LoadPersist(rtl::TStrings& List, const std::u16string& Section) {
  List.Clear();
  const rtl::TIniFile ini(AppIniName);
  for (int n = 1;; ++n) {
    const std::u16string item = ini.ReadString(Section, u"Item" + rtl::IntToStr(n), u"");
    if (item.empty()) break;
    List.Add(item);
  }
}

bool CanWriteAppIni() { return CanWriteProbe(AppIniFolder(AppIniName) + u"IniTest"); }

bool CanWriteAFile(const std::u16string& Path) { return CanWriteProbe(DriveProbeFile(Path)); }

}  // namespace Qm_tools
