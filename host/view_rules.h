// The host frame's rules that need no system: where its settings file and the companion
// program are, and the command line the companion program is started with.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace WNOXView {

// Identity of the companion program's windows.
inline constexpr std::u16string_view kCompanionClass = u"TMainForm";
inline constexpr std::u16string_view kCompanionTitle = u"NOXPlugIn Slave Delphi 13 Florence";
inline constexpr std::u16string_view kCompanionAppClass = u"TApplication";
// The companion program learns our window from its command line and writes back to it.
inline constexpr std::u16string_view kSlavePrefix = u"Slave \"Delphi 13 Florence\" \"";
inline constexpr std::u16string_view kSlaveSuffix = u"\"";
// dwData of the copy-data message that asks the IDE to open a project.
inline constexpr std::uintptr_t kOpenProjectMessage = 10023;

// The shared settings file under the roaming application-data folder.
//   SettingsFileName(u"C:\\Users\\a\\AppData\\Roaming")
//     == u"C:\\Users\\a\\AppData\\Roaming\\quillmark\\NOX\\NOX.INI"
std::u16string SettingsFileName(std::u16string_view appData);

// The companion program beside the host executable, used when no settings say otherwise.
//   DefaultProgram(u"C:\\IDE\\bin\\bds.exe") == u"C:\\IDE\\bin\\NOXPlugIn.exe"
std::u16string DefaultProgram(std::u16string_view hostExe);


// Parameters for the companion program: Slave "Delphi 13 Florence" "<frame handle>".
std::u16string SlaveParameters(std::int32_t frameHandle);

// Whether the program file is there, links followed: from the attributes of the name
// itself (std::nullopt: nothing of that name) and, for a link (a reparse point), of what
// it leads to (std::nullopt: a dangling link). A folder is no program.
bool ProgramFileExists(std::optional<std::uint32_t> attributes,
                       std::optional<std::uint32_t> targetAttributes);

}  // namespace WNOXView
