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

}  // namespace WNOXView
