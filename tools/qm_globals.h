// Globals of the tool library, with their start values beside them, and its start and stop
// work. The start work settles where the program keeps its INI file and data, whether it
// runs from a portable ("Mobile") drive, and the locale formats; the using application
// fills the globals marked "app" itself.
#pragma once

#include <cstdint>
#include <string>

#include "rtl/classes.h"
#include "rtl/formatsettings.h"

namespace Qm_tools {

// Two-letter code of the language that GLT picks texts for.  app
extern std::u16string ToolsLanguage;  // "DE"

// Full path of the application's INI file.
extern std::u16string AppIniName;
// The same file name directly in the user's roaming application-data folder.
extern std::u16string SysAppIniName;
// Folder of the program's data, with trailing backslash.
extern std::u16string ProgDataPath;
// The user's roaming application-data folder, and the user's documents folder.
extern std::u16string SysProgDataPath;
extern std::u16string SysUserDataPath;
// "Fixed", or "Mobile" when the program runs from a removable drive or is switched so.
extern std::u16string DiskMode;  // "Fixed"
extern bool MobileModus;         // app
extern std::u16string AktOSName;
// The run-time library's one-line description of the system, lower case.
extern std::u16string curOS;
extern std::int32_t CpuHard;
// Equals CpuHard (the routine that would count logical processors hands the count back
// unchanged), so CpusOnBoard is 1: do not take it for the number of cores.
extern std::int32_t CPULogical;
extern std::int32_t CpusOnBoard;
// German formats with the library's own separators and short formats; US English; the
// system default locale's.
extern rtl::TFormatSettings FMS;
extern rtl::TFormatSettings FMSEN;
extern rtl::TFormatSettings FMSOrg;
// The system default short date format starts with the month.
extern bool MonthFirst;
// Folder pre-selected in the folder dialog.
extern std::u16string InitFolder;
extern std::u16string sBuildHour;  // "00:00"  app
extern std::int32_t LinesToRead;   // app
extern bool RegBool;               // app
extern bool qm_DoLogging;          // app
// The using application's own name, INI file and folders.  app
extern std::u16string AppName;
extern std::u16string MyAppIniName;
extern std::u16string MyProgDataPath;
extern std::u16string MyUserDataPath;
extern std::u16string MySysProgDataPath;
extern std::u16string MyCommonAppData;
extern std::u16string ResPath;
// Help-file settings.  app
extern std::u16string Help_ExplizitFile;
extern std::u16string Help_IniFileName;
extern std::u16string Help_FormTitle;
// The help window, if any.  app
extern rtl::TObject* qm_HlpFrm;

// ---- Start-up rules, decided without the system -------------------------------------------

// Adjusts the records as the library starts: the process-wide one and FMS get '.' and ':'
// as date and time separators and '.' for thousands; the process-wide one takes FMS's
// (German) month names; FMS gets "dd.mm.yyyy" and "hh:mm"; a system short date format of
// "m/d/yyyy" (any case) becomes "M/d/yyyy". Returns MonthFirst: that format starts with
// 'm' or 'M'.
bool AdjustStartupFormats(rtl::TFormatSettings& processWide, rtl::TFormatSettings& fms,
                          rtl::TFormatSettings& fmsOrg);

struct TStartupPaths {
  std::u16string AppIniName;
  std::u16string SysAppIniName;
  std::u16string ProgDataPath;
  // The folder to create (with its parents) when missing; "" in Mobile mode.
  std::u16string FolderToCreate;
};
// Where the INI file and the data go for the program `exeName` (full path) in `appPath`,
// with the roaming application-data folder `appData`, in `diskMode` (after the portable
// switch): beside the program in "Mobile" mode, else "quillmark" under `appData`. The INI
// file is named after the program with the extension ".INI".
TStartupPaths StartupPaths(std::u16string_view exeName, std::u16string_view appPath,
                           std::u16string_view appData, std::u16string_view diskMode);

// Start and stop work of the tool library, counter-guarded: only the outermost pair acts.
// The start work needs the system (windows build); natively the pair only counts.
void Initialize();
void Finalize();

}  // namespace Qm_tools
