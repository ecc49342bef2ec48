// NOXEData: the settings and state that the plug-in and its companion program share (the
// open project, fonts, lists of methods and units, position records), the catalogue of IDE
// versions with their registry keys and update names, and the helpers that read project
// texts. The globals are defined in globals.cpp with their start values; the catalogue and
// the helpers are pure except the two registry routines (windows build, catalogue_win.cpp).
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "rtl/classes.h"
#include "data/noxedata_api.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace NOXEData {

// ---- Types ----------------------------------------------------------------------------------

// 0x00BBGGRR, as the framework's TColor.
using TColor = std::int32_t;

// The framework's font styles, in its order, so that they map one to one onto ui's.
enum class TFontStyle { fsBold, fsItalic, fsUnderline, fsStrikeOut };
using enum TFontStyle;
using TFontStyles = std::set<TFontStyle>;

// What is known of the project the IDE has open.
class NOXEDATA_API TProject : public rtl::TObject {
 public:
  std::u16string DelphiVersion;
  std::u16string Path;  // the project's folder; GetFileName may take its final '\' off
  std::u16string DPR;
  std::u16string DPROJ;
  std::u16string AppType;
  std::int32_t PasFiles = 0;
  std::int32_t FRMFiles = 0;
  std::u16string FrameWork;
  std::u16string ExeOutput;
  std::u16string FullDPRPath;
  std::u16string UpdateVersion;
};

// ---- Globals (start values in globals.cpp) --------------------------------------------------

extern NOXEDATA_API bool DiffDblClick;
extern NOXEDATA_API bool IsDark;
extern NOXEDATA_API bool IDESlave;
extern NOXEDATA_API bool DelphiUsesEnglishIDE;
extern NOXEDATA_API bool ShowLastProject;
extern NOXEDATA_API bool StopAfterExec;
extern NOXEDATA_API bool SecondInstanz;
extern NOXEDATA_API bool ShowBookmarksToolbar;
extern NOXEDATA_API bool ShowFilePathPanel;

// The current project; null while none is known. Not owned by this unit.
extern NOXEDATA_API TProject* Project;
// The IDE versions' display names, comma-separated, oldest first.
extern NOXEDATA_API std::u16string DVersions;

extern NOXEDATA_API std::int32_t PrevNextPosition;
extern NOXEDATA_API std::int32_t FMXCounter;
extern NOXEDATA_API std::int32_t VCLCounter;
extern NOXEDATA_API std::int32_t OpenProjIn;
extern NOXEDATA_API std::int32_t MaxUndo;
extern NOXEDATA_API std::int32_t AktUndo;
extern NOXEDATA_API std::int32_t Multistart;
extern NOXEDATA_API std::intptr_t stvNoUpdate;
extern NOXEDATA_API std::intptr_t UsedProjectColumns;
// The plug-in's window (an HWND in the windows build).
extern NOXEDATA_API void* PlugInHandle;

extern NOXEDATA_API std::u16string StdFontName;
extern NOXEDATA_API std::u16string StdFontNameUni;
extern NOXEDATA_API std::int32_t StdFontSize;
extern NOXEDATA_API TColor StdFontTextColor;
extern NOXEDATA_API TColor StdFontBackColor;
extern NOXEDATA_API TFontStyles StdFontStyle;

extern NOXEDATA_API std::u16string LastProjFile;
extern NOXEDATA_API std::u16string LastSelectedNodeText;
extern NOXEDATA_API std::u16string LastSelectedDocText;
extern NOXEDATA_API std::u16string LastProjTV;
extern NOXEDATA_API std::u16string LastDocTV;
extern NOXEDATA_API std::u16string AADest;
extern NOXEDATA_API std::u16string AASrc;
extern NOXEDATA_API std::u16string FileMan;
extern NOXEDATA_API std::u16string PDFProg;
extern NOXEDATA_API std::u16string BackupProg;
extern NOXEDATA_API std::u16string CurrentDelphi;
extern NOXEDATA_API std::u16string MasterDelphi;
extern NOXEDATA_API std::u16string LastAddPath;
extern NOXEDATA_API std::u16string LastSaveDir;
extern NOXEDATA_API std::u16string MethodsFile;
extern NOXEDATA_API std::u16string MethodsHintsFile;
extern NOXEDATA_API std::u16string MethodsClassFile;

// Lists the unit's start-up creates and its shutdown frees; null outside that time.
extern NOXEDATA_API rtl::TStringList* slMethods;
extern NOXEDATA_API rtl::TStringList* slMethodsHints;
extern NOXEDATA_API rtl::TStringList* slMethodsClass;
extern NOXEDATA_API rtl::TStringList* slUnits;
extern NOXEDATA_API rtl::TStringList* slExistingDelphis;
extern NOXEDATA_API rtl::TStringList* slProgs;
extern NOXEDATA_API rtl::TStringList* slPrevNextLine;
extern NOXEDATA_API rtl::TStringList* slPrevNextFile;
extern NOXEDATA_API rtl::TStringList* slPropRepl;
extern NOXEDATA_API rtl::TStringList* slValRepl;
extern NOXEDATA_API rtl::TStringList* slRemoveFMX;
extern NOXEDATA_API rtl::TStringList* slDelFilesAtEnd;
// Editor positions per file, "file" + #1 + lines joined by #3 (see SetPosChanges). Created
// and freed by the companion program's code, never by this unit.
extern NOXEDATA_API rtl::TStringList* slPosInfo;

// ---- Catalogue of IDE versions --------------------------------------------------------------

enum TDelphiVersions {
  Delphi1, Delphi2, Delphi3, Delphi4, Delphi5, Delphi6, Delphi7, Delphi8,
  Delphi2005, Delphi2006, Delphi2007, Delphi2009, Delphi2010,
  DelphiXE, DelphiXE2, DelphiXE3, DelphiXE4, DelphiXE5, DelphiXE6, DelphiXE7, DelphiXE8,
  DelphiXE10, DelphiXE101, DelphiXE102, DelphiXE103, DelphiXE104, DelphiXE11, DelphiXE12,
  DelphiXE13,
};
inline constexpr int DelphiVersionsCount = DelphiXE13 + 1;

inline constexpr std::array<std::u16string_view, DelphiVersionsCount> DelphiVersionsNames = {
    u"Delphi 1",         u"Delphi 2",         u"Delphi 3",         u"Delphi 4",
    u"Delphi 5",         u"Delphi 6",         u"Delphi 7",         u"Delphi 8",
    u"BDS 2005",         u"BDS 2006",         u"RAD Studio 2007",  u"RAD Studio 2009",
    u"RAD Studio 2010",  u"RAD Studio XE",    u"RAD Studio XE2",   u"RAD Studio XE3",
    u"RAD Studio XE4",   u"RAD Studio XE5",   u"RAD Studio XE6",   u"RAD Studio XE7",
    u"RAD Studio XE8",   u"RAD Studio XE10",  u"RAD Studio XE101", u"RAD Studio XE102",
    u"RAD Studio XE103", u"RAD Studio XE104", u"RAD Studio XE11",  u"RAD Studio XE12",
    u"RAD Studio XE13",
};

// Each version's key below HKEY_CURRENT_USER (or HKEY_LOCAL_MACHINE). The BDS numbers skip
// 13.0, as the vendor's did, and the newest jumps from 23.0 to 37.0.
inline constexpr std::array<std::u16string_view, DelphiVersionsCount> DelphiRegPaths = {
    u"\\Software\\Borland\\Delphi\\1.0",    u"\\Software\\Borland\\Delphi\\2.0",
    u"\\Software\\Borland\\Delphi\\3.0",    u"\\Software\\Borland\\Delphi\\4.0",
    u"\\Software\\Borland\\Delphi\\5.0",    u"\\Software\\Borland\\Delphi\\6.0",
    u"\\Software\\Borland\\Delphi\\7.0",    u"\\Software\\Borland\\BDS\\2.0",
    u"\\Software\\Borland\\BDS\\3.0",       u"\\Software\\Borland\\BDS\\4.0",
    u"\\Software\\Borland\\BDS\\5.0",       u"\\Software\\CodeGear\\BDS\\6.0",
    u"\\Software\\CodeGear\\BDS\\7.0",      u"\\Software\\Embarcadero\\BDS\\8.0",
    u"\\Software\\Embarcadero\\BDS\\9.0",   u"\\Software\\Embarcadero\\BDS\\10.0",
    u"\\Software\\Embarcadero\\BDS\\11.0",  u"\\Software\\Embarcadero\\BDS\\12.0",
    u"\\Software\\Embarcadero\\BDS\\14.0",  u"\\Software\\Embarcadero\\BDS\\15.0",
    u"\\Software\\Embarcadero\\BDS\\16.0",  u"\\Software\\Embarcadero\\BDS\\17.0",
    u"\\Software\\Embarcadero\\BDS\\18.0",  u"\\Software\\Embarcadero\\BDS\\19.0",
    u"\\Software\\Embarcadero\\BDS\\20.0",  u"\\Software\\Embarcadero\\BDS\\21.0",
    u"\\Software\\Embarcadero\\BDS\\22.0",  u"\\Software\\Embarcadero\\BDS\\23.0",
    u"\\Software\\Embarcadero\\BDS\\37.0",
};

// The display name (as in DVersions) for a compiler or product version number. Each known
// number is looked for anywhere in VersionNr, case-sensitive, and the last one of the table
// found wins; "" when none is.
//   GetDVersion(u"18")    == u"Delphi 10 Seattle"    GetDVersion(u"116.0") == u"Delphi XE7"
//   GetDVersion(u"18.10") == u"Delphi 10.1 Berlin"   GetDVersion(u"20.0")  == u""
NOXEDATA_API std::u16string GetDVersion(std::u16string_view VersionNr);
// The update a product version number stands for, as shown beside the name, and as a bare
// number ("0/1", "2/3" where one number covers two updates); "" for any number not exactly
// in the table.
//   GetSpecs(u"19.5") == u" ( Update 2 or 3 )"   GetSpecsNr(u"19.5") == u"2/3"
//   GetSpecs(u"19.3") == u" ( First Release )"   GetSpecsNr(u"19.3") == u""
NOXEDATA_API std::u16string GetSpecs(std::u16string_view VersionNr);
NOXEDATA_API std::u16string GetSpecsNr(std::u16string_view VersionNr);

#ifdef _WIN32
// Whether Key ("\Software\...", from RootKey) exists; false on any failure.
NOXEDATA_API bool RegKeyExists(const std::u16string& Key, HKEY RootKey);
// Opens Key read-only and, when it opened, reads the string value Name into Value (a
// missing value reads as ""). True when the key opened and the value read; Value is left
// alone when the key is missing or the value is not a string.
NOXEDATA_API bool RegReadStr(const std::u16string& Key, const std::u16string& Name, std::u16string& Value,
                HKEY RootKey);
#endif

// ---- Project texts --------------------------------------------------------------------------

// Number of blanks (code 32) at the start of S; a tab ends the count.
NOXEDATA_API int GetSpaceCount(std::u16string_view S);

// Dir up to and including the last '\' before its final character; Dir itself when it is
// shorter than 4 characters or has no such '\'.
//   GetPrevDir(u"C:\\a\\b") == GetPrevDir(u"C:\\a\\b\\") == u"C:\\a\\"
//   GetPrevDir(u"C:\\a") == u"C:\\"     GetPrevDir(u"C:\\") == u"C:\\"
NOXEDATA_API std::u16string GetPrevDir(std::u16string_view Dir);

// A file name from a project file made absolute against Project->Path. Unchanged when it
// already is absolute (holds ":\" or starts with "\\") or no project is known. A bare name
// is put in the project's folder; otherwise every "..\" in it, wherever it stands, climbs one
// folder. That branch takes a final '\' off Project->Path itself and leaves it so: the
// callers have always relied on it.
//   Path C:\p\src\, "..\lib\u.pas" -> "C:\p\lib\u.pas", and Path is C:\p\src afterwards
NOXEDATA_API std::u16string GetFileName(std::u16string_view FileName);

// Stores List's lines as the position record of FileName in slPosInfo: the first entry that
// starts with FileName is replaced, else one is added. The entry is FileName, #1, then
// List.Text() with each CR LF turned into #3, so it ends in #3. Does nothing while slPosInfo
// is null.
NOXEDATA_API void SetPosChanges(const rtl::TStrings& List, std::u16string_view FileName);

// ---- Start and stop -------------------------------------------------------------------------

// Start and stop work of the unit, counter-guarded: start-up creates the string lists, shutdown
// frees them.
NOXEDATA_API void Initialize();
NOXEDATA_API void Finalize();

}  // namespace NOXEData
