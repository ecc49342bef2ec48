// INI settings in one line, window positions per screen size and computer, lists kept in
// the application's INI file, and two probes for write access.
//
// A window position is one value of five numbers, each followed by '^':
//   Left^Top^Right^Bottom^ShowCmd^      e.g. "10^20^810^620^1^"
// (the normal rectangle in screen pixels, Right and Bottom exclusive, and the window's
// show command: 1 normal, 2 minimised, 3 maximised), kept under the caller's key in a
// section named after the monitor's size and the computer, "1920x1080:BUILDPC:WinPos".
// One settings file can so travel between machines and screens without a form opening
// where no screen is.
//
// The record is text anybody can edit. A field that is no integer raises rtl::EConvertError;
// any integers at all give a place: the rules count in 64 bits, and an edge that would
// leave the integers stops just inside them, so "-2147483648^0^100^100^1^" restores like
// any other record far off the screen.
//
// The rules (section names, record texts, where a saved window may go) are pure and build
// everywhere; the routines on files and forms are in inisettings_win.cpp (windows build).
#pragma once

#include <string>
#include <string_view>

#include "rtl/classes.h"
#include "ui/align.h"
#include "tools/qm_tools_api.h"

#ifdef _WIN32
#include "rtl/inifiles.h"
#include "rtl/meminifile.h"
#include "ui/forms.h"
#endif

namespace Qm_tools {

// ---- Pure rules ---------------------------------------------------------------------------

// "<width>x<height>:<computer>:WinPos".
QM_TOOLS_API std::u16string WindowPosSection(int MonitorWidth, int MonitorHeight,
                                std::u16string_view ComputerName);

// The routines that keep window positions, by the monitor whose size names their section.
enum class TWindowPosUser {
  wpSave,           // SaveWindowPos
  wpSaveMemIni,     // SaveWindowPosMIni, IniSaveWindowPos
  wpRestore,        // RestoreWindowPos, RestoreWindowNotMinPos
  wpRestoreCorner,  // RestoreWindowLeftTopPos, RestoreWindowLeftTopPosIni, ...Ini2
};
// Whether User's section carries the primary monitor's size (SaveWindowPos and the full
// restores) rather than that of the monitor the form is on now (the memory-file savers and
// the corner-only restores). The two kinds share records only while the form is on the
// primary monitor; that is how they have always been kept.
QM_TOOLS_API bool SectionOfPrimaryMonitor(TWindowPosUser User);

struct TWindowPosRecord {
  int Left = 0, Top = 0, Right = 0, Bottom = 0;
  int ShowCmd = 0;
};
// "Left^Top^Right^Bottom^ShowCmd^".
QM_TOOLS_API std::u16string WindowPosValue(const TWindowPosRecord& Rec);
// False, with Rec untouched, for a value without fields (nothing saved). Otherwise reads
// fields 1-5; rtl::EConvertError when one of them is not an integer (a missing one is "").
QM_TOOLS_API bool ReadWindowPosValue(std::u16string_view Value, TWindowPosRecord& Rec);

// The record to save from a window placement: its normal rectangle, moved by the
// difference between the form's Left/Top and the rectangle's corner when Correct (the
// placement counts from the work area, the form from the screen).
QM_TOOLS_API TWindowPosRecord SavedWindowPos(const ui::TRect& Normal, int ShowCmd, int FormLeft, int FormTop,
                                bool Correct);

// What the restoring rules need to know of the screens.
struct TRestoreScreen {
  bool MonitorFound = true;     // a monitor lies nearest the saved rectangle
  int MonitorWidth = 0;         // its size...
  int MonitorHeight = 0;
  ui::TRect MonitorWorkArea;    // ...and work area
  ui::TRect PrimaryWorkArea;    // the primary monitor's work area
  int DesktopLeft = 0;          // the box around all monitors
  int DesktopWidth = 0;
  ui::TRect VirtualScreen;      // the same box as a rectangle
  int PrimaryWidth = 0;         // the primary monitor's width
};

struct TRestoredBounds {
  int Left = 0, Top = 0, Width = 0, Height = 0;
};

// Where RestoreWindowPos puts a form: a rectangle beyond the desktop (by more than 8
// pixels) falls back to the monitor's size at the edge, a top hidden above the work area
// goes just below it, the size is at least MinWidth/MinHeight (100 x 60 at the least) and
// at most the work area, the form lies inside the work area and its top at least 40
// pixels above the bottom. NotMin is the variant of RestoreWindowNotMinPos: a rectangle
// beyond the desktop keeps its corner.
QM_TOOLS_API TRestoredBounds RestoreWindowBounds(const TWindowPosRecord& Rec, const TRestoreScreen& Screen,
                                    int MinWidth, int MinHeight, bool NotMin);
// Where RestoreWindowLeftTopPos puts a form of Width x Height (its size stays): at the saved
// corner, at the edge when the rectangle lies beyond the desktop, below a top work-area
// edge. A corner so far out that the form's far edge would leave the integers comes back
// just far enough for the edge to be one.
QM_TOOLS_API ui::TRect RestoreWindowCorner(const TWindowPosRecord& Rec, const TRestoreScreen& Screen,
                              int Width, int Height);
// Where RestoreWindowLeftTopPosIni puts it: the saved corner counted from the primary work
// area, with the same care for the far edge.
QM_TOOLS_API ui::TRect RestoreWindowCornerIni(const TWindowPosRecord& Rec, const TRestoreScreen& Screen,
                                 int Width, int Height);

// The state a saved show command restores: 1 normal, 3 maximised; 2 normal in the full
// restore (a form saved minimised comes back usable) but minimised in the corner-only
// ones; any other value leaves the state as it is.
enum class TRestoreState { rsKeep, rsNormal, rsMinimized, rsMaximized };
QM_TOOLS_API TRestoreState RestoredWindowState(int ShowCmd, bool CornerOnly);

// How many items qm_SavePersist writes: MaxIndex is the last index, not a count.
//   PersistItemCount(3, 1) == 2   PersistItemCount(3, 5) == 3
QM_TOOLS_API int PersistItemCount(int Count, int MaxIndex);

// The folder of the application INI file, with its backslash ("" stays "").
QM_TOOLS_API std::u16string AppIniFolder(std::u16string_view IniName);
// The probe file of CanWriteAFile: the root of Path's drive, whatever folder Path names.
//   DriveProbeFile(u"D:\\Daten\\x") == u"D:\\jjhhuu.ini"
QM_TOOLS_API std::u16string DriveProbeFile(std::u16string_view Path);
// The file the profile API means by FileName: a bare name (no folder, no drive) lies in
// the Windows folder, any other name is the file it names. A probe deletes what it wrote
// by this name, not by the bare one, which would name a file in the current folder.
//   ProfileFilePath(u"IniTest", u"C:\\windows") == u"C:\\windows\\IniTest"
//   ProfileFilePath(u"D:\\jjhhuu.ini", u"C:\\windows") == u"D:\\jjhhuu.ini"
QM_TOOLS_API std::u16string ProfileFilePath(std::u16string_view FileName, std::u16string_view WindowsFolder);
// What the save-position routines show when the file cannot be written.
QM_TOOLS_API std::u16string WritePosFailedText(std::u16string_view IniName);

// ---- Files and forms (windows build) ------------------------------------------------------

#ifdef _WIN32
// One value of the application INI file (AppIniName), read or written at once.
QM_TOOLS_API void SaveIniInt(const std::u16string& Section, const std::u16string& Ident, int Value);
QM_TOOLS_API int GetIniInt(const std::u16string& Section, const std::u16string& Ident, int Default);
QM_TOOLS_API void SaveIniBool(const std::u16string& Section, const std::u16string& Ident, bool Value);
QM_TOOLS_API bool GetIniBool(const std::u16string& Section, const std::u16string& Ident, bool Default);
QM_TOOLS_API void SaveIniStr(const std::u16string& Section, const std::u16string& Ident,
                const std::u16string& Value);
// "" (not Default) when Section or Ident is empty, without reading the file.
QM_TOOLS_API std::u16string GetIniStr(const std::u16string& Section, const std::u16string& Ident,
                         const std::u16string& Default);
// A value of FileName in the folder of the application INI file. Nothing is written, and
// "" (not Default) read, when FileName, Section or Ident is empty.
QM_TOOLS_API void SaveFileIniStr(const std::u16string& FileName, const std::u16string& Section,
                    const std::u16string& Ident, const std::u16string& Value);
QM_TOOLS_API std::u16string GetFileIniStr(const std::u16string& FileName, const std::u16string& Section,
                             const std::u16string& Ident, const std::u16string& Default);
// A value of any INI file, named with its path.
QM_TOOLS_API bool GetIniFileIniBool(const std::u16string& IniFile, const std::u16string& Section,
                       const std::u16string& Ident, bool Default);
QM_TOOLS_API std::u16string GetIniFileIniStr(const std::u16string& IniFile, const std::u16string& Section,
                                const std::u16string& Ident, const std::u16string& Default);
// The number of keys in Section (0 when it is missing).
QM_TOOLS_API int CountEntries(rtl::TIniFile& Ini, const std::u16string& Section);

// Saves the form's normal rectangle and show command under Ident, in the section of the
// primary monitor (SaveWindowPos, into IniName) or of the form's monitor (the other two,
// into the caller's MemIni, which the caller saves). A failure shows
// WritePosFailedText(IniName) and goes no further.
QM_TOOLS_API void SaveWindowPos(ui::TCustomForm& Form, const std::u16string& IniName,
                   const std::u16string& Ident);
QM_TOOLS_API void SaveWindowPosMIni(ui::TCustomForm& Form, const std::u16string& IniName,
                       const std::u16string& Ident, rtl::TMemIniFile& MemIni);
QM_TOOLS_API void IniSaveWindowPos(rtl::TMemIniFile& MemIni, ui::TCustomForm& Form,
                      const std::u16string& IniName, const std::u16string& Ident);

// Puts the form where RestoreWindowBounds says, with its saved state when RestoreState;
// false, with the form untouched, when nothing is saved for this screen and computer.
QM_TOOLS_API bool RestoreWindowPos(ui::TCustomForm& Form, const std::u16string& IniName,
                      const std::u16string& Ident, bool RestoreState);
QM_TOOLS_API bool RestoreWindowNotMinPos(ui::TCustomForm& Form, const std::u16string& IniName,
                            const std::u16string& Ident);
// Moves the form to its saved corner only (section of the form's monitor).
QM_TOOLS_API bool RestoreWindowLeftTopPos(ui::TCustomForm& Form, const std::u16string& IniName,
                             const std::u16string& Ident, bool RestoreState);
QM_TOOLS_API bool RestoreWindowLeftTopPosIni(ui::TCustomForm& Form, rtl::TIniFile& Ini,
                                const std::u16string& Ident, bool RestoreState);
QM_TOOLS_API bool RestoreWindowLeftTopPosIni2(ui::TCustomForm& Form, const std::u16string& IniName,
                                 const std::u16string& Ident, bool RestoreState);

// The position of the form's icon when minimised, "x^y^" under "MinPos"; always true.
QM_TOOLS_API bool SaveWindowMinPos(ui::TCustomForm& Form, const std::u16string& IniName,
                      const std::u16string& Ident);
// Gives the form its saved icon position, minimising it when ShowMinimized; false when
// none is saved.
QM_TOOLS_API bool RestoreWindowMinPos(ui::TCustomForm& Form, const std::u16string& IniName,
                         const std::u16string& Ident, bool ShowMinimized);

// Replaces Section of the application INI file with Item1, Item2, ... for the lines
// 0..MaxIndex of List.
QM_TOOLS_API void qm_SavePersist(const rtl::TStrings& List, const std::u16string& Section, int MaxIndex);
// Fills List from Item1, Item2, ... up to the first missing or empty item.
QM_TOOLS_API void qm_LoadPersist(rtl::TStrings& List, const std::u16string& Section);

// Whether a value can be written beside the application INI file ("IniTest", removed).
QM_TOOLS_API bool CanWriteAppIni();
// Whether a value can be written in the root of Path's drive ("jjhhuu.ini", removed).
QM_TOOLS_API bool CanWriteAFile(const std::u16string& Path);
#endif

}  // namespace Qm_tools
