// The tool library's globals with their start values, and the start rules that need no
// system.
#include "tools/qm_globals.h"

#include "rtl/sysutils.h"
#include "rtl/unitinit.h"
#include "tools/paths.h"

namespace Qm_tools {

std::u16string ToolsLanguage = u"DE";
std::u16string AppIniName;
std::u16string SysAppIniName;
std::u16string ProgDataPath;
std::u16string SysProgDataPath;
std::u16string SysUserDataPath;
std::u16string DiskMode = u"Fixed";
bool MobileModus = false;
std::u16string AktOSName;
std::u16string curOS;
std::int32_t CpuHard = 0;
std::int32_t CPULogical = 0;
std::int32_t CpusOnBoard = 0;
rtl::TFormatSettings FMS;
rtl::TFormatSettings FMSEN;
rtl::TFormatSettings FMSOrg;
bool MonthFirst = false;
std::u16string InitFolder;
std::u16string sBuildHour = u"00:00";
std::int32_t LinesToRead = 0;
bool RegBool = false;
bool qm_DoLogging = false;
std::u16string AppName;
std::u16string MyAppIniName;
std::u16string MyProgDataPath;
std::u16string MyUserDataPath;
std::u16string MySysProgDataPath;
std::u16string MyCommonAppData;
std::u16string ResPath;
std::u16string Help_ExplizitFile;
std::u16string Help_IniFileName;
std::u16string Help_FormTitle;
rtl::TObject* qm_HlpFrm = nullptr;

bool AdjustStartupFormats(rtl::TFormatSettings& processWide, rtl::TFormatSettings& fms,
                          rtl::TFormatSettings& fmsOrg) {
  processWide.DateSeparator = u'.';
  processWide.TimeSeparator = u':';
  processWide.ThousandSeparator = u'.';
  processWide.ShortMonthNames = fms.ShortMonthNames;
  processWide.LongMonthNames = fms.LongMonthNames;

  fms.DateSeparator = u'.';
  fms.TimeSeparator = u':';
  fms.ShortDateFormat = u"dd.mm.yyyy";
  fms.ShortTimeFormat = u"hh:mm";
  fms.ThousandSeparator = u'.';

  std::u16string lower = fmsOrg.ShortDateFormat;
  for (char16_t& c : lower)
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + 32);
  if (lower == u"m/d/yyyy") fmsOrg.ShortDateFormat = u"M/d/yyyy";
  return !lower.empty() && lower[0] == u'm';
}

TStartupPaths StartupPaths(std::u16string_view exeName, std::u16string_view appPath,
                           std::u16string_view appData, std::u16string_view diskMode) {
  const std::u16string iniName = rtl::ChangeFileExt(exeName, u".INI");
  const std::u16string iniFile = rtl::ExtractFileName(iniName);
  TStartupPaths p;
  p.SysAppIniName = chkPath(appData) + iniFile;
  if (diskMode == u"Mobile") {
    p.AppIniName = iniName;
    p.ProgDataPath = std::u16string(appPath);
  } else {
    p.AppIniName = chkPath(appData) + u"quillmark" + u"\\" + iniFile;
    p.ProgDataPath = rtl::ExtractFilePath(p.AppIniName);
    p.FolderToCreate = p.ProgDataPath;
  }
  return p;
}

#ifndef _WIN32
namespace {
rtl::TUnitCounter Counter;
}  // namespace

void Initialize() { Counter.Start(); }
void Finalize() { Counter.Stop(); }
#endif

}  // namespace Qm_tools
