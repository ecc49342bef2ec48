// The system side of the shared data unit's start work: where its INI file and data live,
// the user's data folder from the INI file, and the folders created.
#include <windows.h>

#include <shlobj.h>

#include "data/NOXEData.h"
#include "data/startup.h"
#include "rtl/inifiles.h"
#include "rtl/sysutils.h"
#include "tools/paths.h"
#include "tools/qm_globals.h"

namespace NOXEData {

void SettleDataPaths() {
  using namespace Qm_tools;
  const TDataPaths paths =
      DataPaths(DiskMode, AppPath(), SysProgDataPath, SysUserDataPath,
                GetSpecialFolder(CSIDL_APPDATA), rtl::GetModuleName(nullptr));
  MyProgDataPath = paths.MyProgDataPath;
  MyUserDataPath = paths.MyUserDataPath;
  MyAppIniName = paths.MyAppIniName;
  AppIniName = MyAppIniName;
  // Failures to create a folder are not reported: the program works on without it.
  if (paths.CreateProgDataPath && !DirectoryExists(MyProgDataPath))
    ForceDirectories(MyProgDataPath);
  MyUserDataPath =
      rtl::TIniFile(AppIniName).ReadString(u"Optionen", u"UserDatapath", MyUserDataPath);
  if (!DirectoryExists(MyUserDataPath)) ForceDirectories(MyUserDataPath);
}

}  // namespace NOXEData
