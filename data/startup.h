// Where the shared data unit keeps its INI file and data, decided without the system; the
// unit's start work (NOXEData::Initialize) applies it.
#pragma once

#include <string>
#include <string_view>

namespace NOXEData {

struct TDataPaths {
  std::u16string MyProgDataPath;
  std::u16string MyUserDataPath;
  std::u16string MyAppIniName;
  // The program data folder is created when missing; never in "Mobile" mode.
  bool CreateProgDataPath;
};

// "Mobile" (exactly so) keeps everything beside the program in `appPath`, with an INI file
// "<program>.ini"; otherwise the data go to "quillmark\NOX" under the system's program and
// user data folders, and the INI file "<program>.INI" to "quillmark\NOX" under the roaming
// application-data folder `appData`. `exeName` is the host program's path or name.
//   DataPaths(u"Fixed", ..., u"C:\\U\\Roaming", u"C:\\IDE\\bds.exe").MyAppIniName
//     == u"C:\\U\\Roaming\\quillmark\\NOX\\bds.INI"
TDataPaths DataPaths(std::u16string_view diskMode, std::u16string_view appPath,
                     std::u16string_view sysProgDataPath, std::u16string_view sysUserDataPath,
                     std::u16string_view appData, std::u16string_view exeName);

// The part of the start work that needs the system: the folders and the INI file. Natively
// it does nothing.
void SettleDataPaths();

}  // namespace NOXEData
