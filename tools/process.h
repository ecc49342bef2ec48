// Starting programs and opening files: the shell's open verb with the library's error
// messages, command lines with a quoted program, running a program and waiting for it,
// running as administrator or as another user, the program behind a file type or a shell
// link, and registering a file type.
//
// Every splitting, quoting and text rule is a pure function, built everywhere; the routines
// that call the shell and the process API are in process_win.cpp (windows build).
#pragma once


#include <cstdint>
#include <string>
#include <string_view>
#include <vector>
#include "tools/qm_tools_api.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace Qm_tools {

// ---- Pure rules ---------------------------------------------------------------------------

// The message for a failed shell start by the shell's return code (0..32): 2 is
// "Datei wurde nicht gefunden.", and so on; a code the table does not know gives "".
QM_TOOLS_API std::u16string ShellErrorText(int code);

// A line from the user split into what the shell opens and its parameters.
struct TShellLine {
  std::u16string File;
  std::u16string Params;  // "" opens File without parameters
};
// The split of Shellparaline:
//  - a line that starts with '"': the file is everything up to and including the closing
//    '"'; the parameters are the trimmed rest, cut to 255 characters, and wrapped in '"'
//    when they hold none (so a quoted program alone gets the parameters "\"\"");
//      "\"C:\\p.exe\" x"      -> File "\"C:\\p.exe\"", Params "\"x\""
//  - otherwise a line holding '"': the parameters are the text from that '"' on (at most
//    255 characters), the file is the trimmed text before it;
//      "C:\\p.exe \"a b\""    -> File "C:\\p.exe", Params "\"a b\""
//  - a line without '"', and one whose leading '"' is never closed: the file is the line
//    with every '"' removed, without parameters.
//      "\"C:\\p.exe x"        -> File "C:\\p.exe x", Params ""
QM_TOOLS_API TShellLine SplitShellLine(std::u16string_view line);
// What Shellparaline shows when the shell cannot open `file`.
QM_TOOLS_API std::u16string ShellOpenFailedText(std::u16string_view file);

// The command line of ExecAndWait: both parts quoted, the parameters even when empty.
//   ExecCommandLine(u"C:\\p.exe", u"") == u"\"C:\\p.exe\" \"\""
QM_TOOLS_API std::u16string ExecCommandLine(std::u16string_view program, std::u16string_view parameters);
// The command line of CreateProcessAsLogon: the program as given, then the quoted
// parameters when there are any.
//   LogonCommandLine(u"p.exe", u"a b") == u"p.exe \"a b\""
QM_TOOLS_API std::u16string LogonCommandLine(std::u16string_view program, std::u16string_view parameters);
// Whether RunFileAsAdminUser starts the program associated with `file` instead of `file`:
// when no parameters are given and the file's name (any case) holds neither ".exe" nor
// ".com".
QM_TOOLS_API bool RunsThroughAssociation(std::u16string_view file, std::u16string_view parameters);

// One default value that RegisterFileType writes below HKEY_CLASSES_ROOT.
struct TRegistryEntry {
  std::u16string Key;
  std::u16string Value;
};
// The entries of a file type: ".ext" -> "ext_file"; "ext_file\DefaultIcon" -> icon, only
// when an icon is given; "ext_file\shell\open\command" -> "\"program\" \"%1\"".
QM_TOOLS_API std::vector<TRegistryEntry> FileTypeEntries(std::u16string_view program,
                                            std::u16string_view extension,
                                            std::u16string_view icon);

// Always "": the library never captures the output of a command.
QM_TOOLS_API std::u16string GetCommandOutput(std::u16string_view command);

// ---- The system (windows build) -----------------------------------------------------------

#ifdef _WIN32
// ShellExecuteW with the six arguments. On a return code of 32 or less the code's message
// (ShellErrorText) is shown with ShowMessage. True in both cases: callers never learned
// of a failure other than by the message, and rely on that.
QM_TOOLS_API bool qm_ShellExecute(std::uintptr_t Wnd, const std::u16string& Operation,
                     const std::u16string& FileName, const std::u16string& Params,
                     const std::u16string& DefaultDir, int ShowCmd);
// Opens a line as typed by the user (see SplitShellLine) with the "open" verb, shown
// normally; ShellOpenFailedText when the shell cannot. An empty line does nothing.
QM_TOOLS_API void Shellparaline(const std::u16string& line);
// The system's "Open with" dialog for `file`.
QM_TOOLS_API void RunFileWith(const std::u16string& file);
// The shell's properties sheet of `file`; whether the shell took the request.
QM_TOOLS_API bool ShowProperties(std::uintptr_t Wnd, const std::u16string& file, const wchar_t* params);
// Starts `program` with ExecCommandLine in the program's folder, shown as `show`, and
// waits for it to end without servicing this thread's windows. Whether it could start.
QM_TOOLS_API bool ExecAndWait(const std::u16string& program, const std::u16string& parameters, WORD show);
// Starts `file` (or the program for its type, see RunsThroughAssociation) elevated.
QM_TOOLS_API bool RunFileAsAdminUser(std::uintptr_t Wnd, const std::u16string& file,
                        const std::u16string& parameters);
// Starts `program` as `user` with LogonCommandLine; the system's last error afterwards
// (0 on success).
QM_TOOLS_API std::uint32_t CreateProcessAsLogon(const std::u16string& user, const std::u16string& password,
                                   const std::u16string& program,
                                   const std::u16string& parameters);
// The program the shell opens `file` with, or "".
QM_TOOLS_API std::u16string GetExeForFile(const std::u16string& file);
// The target path of a shell link, with its arguments in `arguments`; "" when the link
// cannot be read.
QM_TOOLS_API std::u16string GetExeFromLink(const std::u16string& link, std::u16string& arguments);
// Registers a file type under HKEY_CLASSES_ROOT (see FileTypeEntries). The 8-bit texts
// are in the system's ANSI code page, as the narrow Win32 calls take them; the second
// argument is not used.
QM_TOOLS_API void RegisterFileType(const std::string& program, const std::string& unused,
                      const std::string& extension, const std::string& icon);
#endif

}  // namespace Qm_tools
