// The system side of the shared data unit's start work: where its INI file and data live,
// the user's data folder from the INI file, and the folders created.
#include <windows.h>

#include <shlobj.h>

#include "data/NOXEData.h"
#include "data/startup.h"
#include "rtl/inifiles.h"
#include "tools/paths.h"
#include "tools/qm_globals.h"

namespace NOXEData {

namespace {

std::u16string ExeName() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD n = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (n < path.size()) {
      path.resize(n);
      break;
    }
    path.resize(path.size() * 2);
  }
  return {path.begin(), path.end()};
}

}  // namespace

void SettleDataPaths() {
  using namespace Qm_tools;
  const TDataPaths paths =
      DataPaths(DiskMode, AppPath(), SysProgDataPath, SysUserDataPath,
                GetSpecialFolder(CSIDL_APPDATA), ExeName());
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
