#include "host/view_rules.h"

#include "rtl/sysutils.h"
#include "rtl/ustring.h"
#include "tools/paths.h"

namespace WNOXView {

std::u16string SettingsFileName(std::u16string_view appData) {
  return Qm_tools::chkPath(appData) + u"quillmark\\NOX\\NOX.INI";
}

std::u16string DefaultProgram(std::u16string_view hostExe) {
  return Qm_tools::chkPath(rtl::ExtractFilePath(hostExe)) + u"NOXPlugIn.exe";
}

std::u16string SlaveParameters(std::int32_t frameHandle) {
  return std::u16string(kSlavePrefix) + rtl::IntToStr(frameHandle) + std::u16string(kSlaveSuffix);
}

bool ProgramFileExists(std::optional<std::uint32_t> attributes,
                       std::optional<std::uint32_t> targetAttributes) {
  constexpr std::uint32_t kDirectory = 0x10, kReparsePoint = 0x400;
  if (!attributes || (*attributes & kDirectory)) return false;
  if (!(*attributes & kReparsePoint)) return true;
  return targetAttributes && !(*targetAttributes & kDirectory);
}

}  // namespace WNOXView
