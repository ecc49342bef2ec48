// File operations of the tool library: copying and moving with attributes kept, deleting
// through the shell, write protection, file times as TDateTime, sizes as short texts, a
// byte-wise comparison shown as a message, version and error texts, drives and network
// paths, file lists on the clipboard. The pure rules (size text, comparison report) build
// everywhere; the routines that touch the system are in fileops_win.cpp (windows build).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rtl/classes.h"
#include "rtl/dateutils.h"
#include "rtl/sysutils.h"
#include "tools/qm_tools_api.h"

namespace Qm_tools {

// A file whose attributes cannot be read (SetFileHiddenAttribute).
class QM_TOOLS_API EFileAttributeError : public rtl::Exception {
 public:
  using rtl::Exception::Exception;
};

// ---- Pure rules ---------------------------------------------------------------------------

// A file size as a short text with two decimals written with rtl::FormatSettings'
// DecimalSeparator (1 kb = 1024, 1 MB = 1024 kb, 1 GB = 1024 MB):
//   below 1024          "%.2f kb", where a non-empty file showing "0,00 kb" shows "0,01 kb"
//   1024 .. 1 MB        "%d kb", rounded to the nearest (halves to even)
//   over 1 MB .. 1 GB   "%.2f MB"
//   over 1 GB           "%.2f GB", or "%.2f TB" when the GB text reads back over 1000
// Under '.' a tiny file stays "0.00 kb": only the comma text is lifted.
//   GetSizeStr(1) == "0,01 kb"   GetSizeStr(1048576) == "1024 kb"
//   GetSizeStr(1073741824) == "1024,00 MB"   GetSizeStr(1073741825) == "1,00 GB"
QM_TOOLS_API std::u16string GetSizeStr(std::int64_t Size);

// The first lines of CompareThisFiles' message: "<Size1>: Größe von <File1>" CR
// "<Size2>: Größe von <File2>".
QM_TOOLS_API std::u16string CompareFilesHeader(std::int64_t Size1, std::u16string_view File1,
                                  std::int64_t Size2, std::u16string_view File2);
// The verdict of CompareThisFiles over the two contents: the first differing position
// (1-based) with both bytes and up to ten bytes of context from there (to the end of the
// line), or CR "Dateien sind gleich." when nothing differs and the sizes are equal, or ""
// when nothing differs but the sizes do. Only positions 1 .. n-1 are compared (n the
// smaller size): a difference in the last byte of the shorter file goes unseen. Bytes
// show as the characters of the same number.
QM_TOOLS_API std::u16string CompareFilesText(const std::vector<std::uint8_t>& Data1, std::u16string_view File1,
                                const std::vector<std::uint8_t>& Data2, std::u16string_view File2);

// ---- The system (windows build) -----------------------------------------------------------

#ifdef _WIN32
// Copies Source over Dest with Source's attributes, creating Dest's folder; a read-only
// Source is unlocked for the copy and locked again. False when the folder cannot be made
// or Dest is missing after the copy; true when Source does not exist (nothing to do).
// rtl::EInOutError when the system refuses the copy (Dest locked or read-only, disk full).
QM_TOOLS_API bool qm_CopyFile(const std::u16string& Source, const std::u16string& Dest);
// Moves Source to Dest, creating Dest's folder; where the system cannot move (another
// drive), copies, deletes Source and gives Dest Source's attributes. False on any failing
// step: a read-only Source that cannot be deleted stays beside its copy. A copy the system
// refuses raises as in qm_CopyFile.
QM_TOOLS_API bool qm_MoveFile(const std::u16string& Source, const std::u16string& Dest);
// Deletes a folder with its contents through the shell, without asking; true on success.
QM_TOOLS_API bool DelDir(const std::u16string& Dir);
// Moves a file to the recycle bin without asking; true on success.
QM_TOOLS_API bool RecycleFile(const std::u16string& FileName);

// Set or clear the read-only attribute when needed; always true.
QM_TOOLS_API bool SetWriteProtect(const std::u16string& FileName);
QM_TOOLS_API bool RemoveWriteProtect(const std::u16string& FileName);
// The file exists and is read-only.
QM_TOOLS_API bool IsWriteProtect(const std::u16string& FileName);
// Adds the hidden attribute; EFileAttributeError when the attributes cannot be read.
QM_TOOLS_API void SetFileHiddenAttribute(const std::u16string& FileName);

// Sets the three times of a file (local time, two-second precision); false when the file
// cannot be opened for writing.
QM_TOOLS_API bool SetFileTimes(const std::u16string& FileName, rtl::TDateTime Created,
                  rtl::TDateTime Accessed, rtl::TDateTime Written);
// Reads the three times (local time, two-second precision); false when the file is missing.
QM_TOOLS_API bool GetFileTimes(const std::u16string& FileName, rtl::TDateTime& Created,
                  rtl::TDateTime& Accessed, rtl::TDateTime& Written);
// The last write time, at two-second precision, read through the open file; Now() when
// it is missing.
QM_TOOLS_API rtl::TDateTime GetModifyDate(const std::u16string& FileName);
// The same, read from the file's folder entry.
QM_TOOLS_API rtl::TDateTime GetFileDateTime(const std::u16string& FileName);
// The last write time to the millisecond, of the file a link points to; Now() when missing.
QM_TOOLS_API rtl::TDateTime qm_GetFileAge(const std::u16string& FileName);

// Size in bytes of the first folder entry matching FileName (any attribute), -1 if none.
QM_TOOLS_API std::int64_t qm_GetFileSize(const std::u16string& FileName);
QM_TOOLS_API bool qm_FileExists(const std::u16string& FileName);

// Writes Text in the system's ANSI code page, replacing the file; a file that cannot be
// written is not reported.
QM_TOOLS_API void SaveAnsiStringToFile(const std::u16string& Text, const std::u16string& FileName);

// Compares two files byte by byte and shows the result with ShowMessage: the header of
// CompareFilesHeader, CR, the verdict of CompareFilesText. A missing file counts as empty.
QM_TOOLS_API void CompareThisFiles(const std::u16string& File1, const std::u16string& File2);

// The build number (the last of the four version numbers). FileName only decides whether
// there is version information at all: the numbers come from the running program.
// "" when they cannot be read.
QM_TOOLS_API std::u16string GetBuildNumber(const std::u16string& FileName);

// Whether the drive of Path can be read: "" no, a network path ("\\...") yes, otherwise
// a search in Path's folder that finds something, finds nothing or meets no more files.
// The system's "insert a disk" box is suppressed meanwhile.
QM_TOOLS_API bool DiskinDrive(const std::u16string& Path);
// Connects a network share, letting the system ask for credentials; true on success.
QM_TOOLS_API bool ConnectWithNetPath(const std::u16string& RemotePath);
// Adds the file names that the clipboard holds (Explorer's copy) to List; false, with List
// untouched, when it holds none.
QM_TOOLS_API bool GetFileListFromClipBoard(rtl::TStrings& List);

// "Fehlernummer: <n>: <system text>" for the calling thread's last error.
QM_TOOLS_API std::u16string GetlastErrorDesc();
// Text = "Fehlernummer: <n>" CR LF "<system text>"; returns n, the last error.
QM_TOOLS_API std::uint32_t GetlastErrorInfo(std::u16string& Text);
#endif

}  // namespace Qm_tools
