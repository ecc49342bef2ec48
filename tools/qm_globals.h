// Globals of the tool library, with their start values beside them, and its start and stop
// work. The start work settles where the program keeps its INI file and data, whether it
// runs from a portable ("Mobile") drive, and the locale formats; the using application
// fills the globals marked "app" itself.
#pragma once

#include <cstdint>
#include <string>

#include "rtl/classes.h"
#include "rtl/formatsettings.h"
#include "tools/qm_tools_api.h"

namespace Qm_tools {

// Two-letter code of the language that GLT picks texts for.  app
extern QM_TOOLS_API std::u16string ToolsLanguage;  // "DE"

// Full path of the application's INI file.
extern QM_TOOLS_API std::u16string AppIniName;
// The same file name directly in the user's roaming application-data folder.
extern QM_TOOLS_API std::u16string SysAppIniName;
// Folder of the program's data, with trailing backslash.
extern QM_TOOLS_API std::u16string ProgDataPath;
// The user's roaming application-data folder, and the user's documents folder.
extern QM_TOOLS_API std::u16string SysProgDataPath;
extern QM_TOOLS_API std::u16string SysUserDataPath;
// "Fixed", or "Mobile" when the program runs from a removable drive or is switched so.
extern QM_TOOLS_API std::u16string DiskMode;  // "Fixed"
extern QM_TOOLS_API bool MobileModus;         // app
extern QM_TOOLS_API std::u16string AktOSName;
// The run-time library's one-line description of the system, lower case.
extern QM_TOOLS_API std::u16string curOS;
extern QM_TOOLS_API std::int32_t CpuHard;
// Equals CpuHard (the routine that would count logical processors hands the count back
// unchanged), so CpusOnBoard is 1: do not take it for the number of cores.
extern QM_TOOLS_API std::int32_t CPULogical;
extern QM_TOOLS_API std::int32_t CpusOnBoard;
// German formats with the library's own separators and short formats; US English; the
// system default locale's.
extern QM_TOOLS_API rtl::TFormatSettings FMS;
extern QM_TOOLS_API rtl::TFormatSettings FMSEN;
extern QM_TOOLS_API rtl::TFormatSettings FMSOrg;
// The system default short date format starts with the month.
extern QM_TOOLS_API bool MonthFirst;
// Folder pre-selected in the folder dialog.
extern QM_TOOLS_API std::u16string InitFolder;
extern QM_TOOLS_API std::u16string sBuildHour;  // "00:00"  app
extern QM_TOOLS_API std::int32_t LinesToRead;   // app
extern QM_TOOLS_API bool RegBool;               // app
extern QM_TOOLS_API bool qm_DoLogging;          // app
// The using application's own name, INI file and folders.  app
extern QM_TOOLS_API std::u16string AppName;
extern QM_TOOLS_API std::u16string MyAppIniName;
extern QM_TOOLS_API std::u16string MyProgDataPath;
extern QM_TOOLS_API std::u16string MyUserDataPath;
extern QM_TOOLS_API std::u16string MySysProgDataPath;
extern QM_TOOLS_API std::u16string MyCommonAppData;
extern QM_TOOLS_API std::u16string ResPath;
// Help-file settings.  app
extern QM_TOOLS_API std::u16string Help_ExplizitFile;
extern QM_TOOLS_API std::u16string Help_IniFileName;
extern QM_TOOLS_API std::u16string Help_FormTitle;
// The help window, if any.  app
extern QM_TOOLS_API rtl::TObject* qm_HlpFrm;

// ---- Start-up rules, decided without the system -------------------------------------------

// Adjusts the records as the library starts: the process-wide one and FMS get '.' and ':'
// as date and time separators and '.' for thousands; the process-wide one takes FMS's
// (German) month names; FMS gets "dd.mm.yyyy" and "hh:mm"; a system short date format of
// "m/d/yyyy" (any case) becomes "M/d/yyyy". Returns MonthFirst: that format starts with
// 'm' or 'M'.
QM_TOOLS_API bool AdjustStartupFormats(rtl::TFormatSettings& processWide, rtl::TFormatSettings& fms,
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
QM_TOOLS_API TStartupPaths StartupPaths(std::u16string_view exeName, std::u16string_view appPath,
                           std::u16string_view appData, std::u16string_view diskMode);

// Start and stop work of the tool library, counter-guarded: only the outermost pair acts.
// The start work needs the system (windows build); natively the pair only counts.
QM_TOOLS_API void Initialize();
QM_TOOLS_API void Finalize();

}  // namespace Qm_tools
