// Paths of the tool library: trailing backslashes, parent folders, the portable ("Mobile")
// mapping of stored paths onto the drive the program runs from, short-name expansion,
// special and user folders, the folder dialog, temporary files and folders, unique names
// and name sanitising. The pure rules build everywhere; the routines that ask the system
// are in paths_win.cpp (windows build). The globals they read live in qm_globals.h.
#pragma once


#include <functional>
#include <string>
#include <string_view>
#include "tools/qm_tools_api.h"

namespace Qm_tools {

// ---- Pure rules ---------------------------------------------------------------------------

// Path with a trailing backslash added when missing; "" stays "".
QM_TOOLS_API std::u16string chkPath(std::u16string_view Path);
// Path without one trailing backslash.
QM_TOOLS_API std::u16string RemoveSlash(std::u16string_view Path);
// The parent folder without trailing backslash, from the first 255 characters: C:\a\b\ and
// C:\a\b give C:\a; C:\a gives C:; C:\, C: and abc give "" (everything up to the last
// backslash that is not the final character is dropped, and without one everything is).
QM_TOOLS_API std::u16string prevDir(std::u16string_view Path);

// Dir, or Alternative when Dir (any case) lies under "c:\programme" or "c:\program files".
QM_TOOLS_API std::u16string GetValidDataDir(std::u16string_view Dir, std::u16string_view Alternative);

// One '_' for each control character 1-31 and each of ' * / : < > ? \ |; the double quote
// stays.
QM_TOOLS_API std::u16string qm_GetValidFilename(std::u16string_view Name);
// One '_' for each control character 1-31 and each of " * / < > ? |, for ':' anywhere but
// position 2, and for the second of two adjacent backslashes not at the very start.
QM_TOOLS_API std::u16string qm_GetValidDirName(std::u16string_view Name);

// Whether a file or a folder exists; the rules below ask through it.
using TExistsFunc = std::function<bool(const std::u16string& path)>;

// "Mobile" for a removable drive (DRIVE_REMOVABLE, 2), "Fixed" for any other drive type.
QM_TOOLS_API std::u16string DiskModeForDriveType(unsigned driveType);

enum class TPortableMapping {
  File,        // GetRelativFile: kept while the file and its folder exist
  StrictFile,  // GetStrictRelativFile: always mapped
  Path,        // GetRelativPath: kept while the folder exists
  StrictPath,  // GetStrictRelativPath: always mapped, "" included
};
// The portable mapping of `arg` for a program in `appPath` (its folder, "E:\..."), in
// "Mobile" mode: a network path "\\server\x" becomes "E:\usbnet=server\x", another path
// keeps its place when reachable (see TPortableMapping) and otherwise moves to the
// program's drive: "C:\Daten\x.txt" -> "E:\Daten\x.txt". At most 2000 characters of the
// argument after its first two are kept. `fileExists`/`dirExists` are asked as needed.
QM_TOOLS_API std::u16string MapPortable(std::u16string_view arg, std::u16string_view appPath,
                           TPortableMapping mapping, const TExistsFunc& fileExists,
                           const TExistsFunc& dirExists);

// The first name of FileName's numbered series that `exists` denies: FileName itself (with
// an empty StartNr) or Base + StartNr + Ext, then Base + n + Ext counting on; Base is
// FileName without extension and without trailing digits. Raises EConvertError (from
// rtl/sysutils.h) when StartNr is not a number.
QM_TOOLS_API std::u16string NotExistingFilename(std::u16string_view FileName, std::u16string_view StartNr,
                                   const TExistsFunc& exists);
// Dir, else Dir + "1", Dir + "2"... the first that `exists` denies.
QM_TOOLS_API std::u16string NotExistingDirName(std::u16string_view Dir, const TExistsFunc& exists);

// The long form of a path whose components may be short (8.3) names: each partial path
// that holds '~' is replaced by chkPath(result so far) + its display name from
// `displayName` ("" when it has none: the component stays as written). A path holding
// "\\" is returned unchanged; a final backslash is dropped.
QM_TOOLS_API std::u16string ExpandedFilename(std::u16string_view FileName,
                                const std::function<std::u16string(const std::u16string&)>&
                                    displayName);

// ---- The system (windows build) -----------------------------------------------------------

#ifdef _WIN32
// Folder of the running executable, with trailing backslash.
QM_TOOLS_API std::u16string AppPath();
QM_TOOLS_API std::u16string GetDiskMode();
QM_TOOLS_API std::u16string GetRelativFile(std::u16string_view FileName);
QM_TOOLS_API std::u16string GetStrictRelativFile(std::u16string_view FileName);
QM_TOOLS_API std::u16string GetRelativPath(std::u16string_view Path);
QM_TOOLS_API std::u16string GetStrictRelativPath(std::u16string_view Path);
QM_TOOLS_API std::u16string qm_GetExpandedFilename(std::u16string_view FileName);
QM_TOOLS_API std::u16string GetWindowsPath();
QM_TOOLS_API std::u16string GetSystemPath();
QM_TOOLS_API std::u16string GetEnvironment(std::u16string_view Name);
// Path of a shell special folder by its CSIDL number, or "".
QM_TOOLS_API std::u16string GetSpecialFolder(int CSIDL);
QM_TOOLS_API std::u16string Getfolder(int Root, std::u16string_view Title);
QM_TOOLS_API std::u16string GetInitfolder(std::u16string_view Init, int Root, std::u16string_view Title);
QM_TOOLS_API std::u16string GetUserProfilePath();
QM_TOOLS_API std::u16string GetProgPath(std::u16string_view Ext);
QM_TOOLS_API std::u16string GetTmpDir();
QM_TOOLS_API std::u16string GetmyTmpFile(std::u16string_view Prefix);
QM_TOOLS_API std::u16string GetModusTmpFile(bool InDataFolder, std::u16string_view Prefix);
QM_TOOLS_API std::u16string GetModusTmpDir(bool InDataFolder);
QM_TOOLS_API std::u16string GetModusTmpNewDir(bool InDataFolder);
QM_TOOLS_API std::u16string GetNotExistingFilename(std::u16string_view FileName);
QM_TOOLS_API std::u16string GetNotExistingFilename(std::u16string_view FileName, std::u16string_view StartNr);
QM_TOOLS_API std::u16string GetNotExistingDirName(std::u16string_view Dir);
// Whether a file, or a folder, exists.
QM_TOOLS_API bool FileExists(const std::u16string& FileName);
QM_TOOLS_API bool DirectoryExists(const std::u16string& Dir);
// Creates the folder with every missing parent; false when it does not exist afterwards.
QM_TOOLS_API bool ForceDirectories(const std::u16string& Dir);
#endif

}  // namespace Qm_tools
