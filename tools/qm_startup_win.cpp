// The tool library's start and stop work (tools/qm_globals.h): processors, locale formats,
// the INI file and data folder, the portable switch and the system's name.
#include <windows.h>

#include <shlobj.h>

#include "rtl/inifiles.h"
#include "rtl/locale.h"
#include "rtl/osversion.h"
#include "rtl/sysutils.h"
#include "rtl/unitinit.h"
#include "tools/paths.h"
#include "tools/qm_globals.h"
#include "tools/sysinfo.h"
#include "ui/screen.h"

namespace Qm_tools {

namespace {

rtl::TUnitCounter Counter;

// Would count the logical processors; this build hands the count it is given back.
std::int32_t LogicalProcessors(std::int32_t processors) { return processors; }

}  // namespace

void Initialize() {
  if (!Counter.Start()) return;
  ui::TFont font;
  font.Name = u"Arial";
  font.Height = -MulDiv(9, 96, 72);
  ui::Screen->MessageFont = font;

  SYSTEM_INFO system{};
  GetSystemInfo(&system);
  CpuHard = static_cast<std::int32_t>(system.dwNumberOfProcessors);
  CPULogical = LogicalProcessors(CpuHard);
  CpusOnBoard = CPULogical != 0 ? CpuHard / CPULogical : 0;

  FMS = rtl::GetLocaleFormatSettings(0x0407);
  FMSEN = rtl::GetLocaleFormatSettings(0x0409);
  FMSOrg = rtl::GetLocaleFormatSettings(0x0800);
  MonthFirst = AdjustStartupFormats(rtl::FormatSettings, FMS, FMSOrg);

  const std::u16string exe = rtl::GetModuleName(nullptr);
  const std::u16string appData = GetSpecialFolder(CSIDL_APPDATA);
  SysProgDataPath = appData;
  SysUserDataPath = GetSpecialFolder(CSIDL_PERSONAL);
  DiskMode = GetDiskMode();
  // The portable switch: an INI file beside the program that says so.
  const std::u16string besideIni =
      chkPath(AppPath()) + rtl::ExtractFileName(rtl::ChangeFileExt(exe, u".INI"));
  if (FileExists(besideIni) &&
      rtl::TIniFile(besideIni).ReadBool(u"Optionen", u"MobileModus", false))
    DiskMode = u"Mobile";
  const TStartupPaths paths = StartupPaths(exe, AppPath(), appData, DiskMode);
  AppIniName = paths.AppIniName;
  SysAppIniName = paths.SysAppIniName;
  ProgDataPath = paths.ProgDataPath;
  if (!paths.FolderToCreate.empty() && !DirectoryExists(paths.FolderToCreate))
    ForceDirectories(paths.FolderToCreate);

  AktOSName = GetOSName();
  curOS = rtl::AnsiLowerCase(rtl::TOSVersion::Current().ToString());
}

void Finalize() {
  if (!Counter.Stop()) return;
  FMS = {};
  FMSEN = {};
  FMSOrg = {};
}

}  // namespace Qm_tools
