#include "host/view_rules.h"

#include "rtl/ustring.h"

namespace WNOXView {

std::u16string WithTrailingBackslash(std::u16string_view folder) {
  std::u16string r(folder);
  if (!r.empty() && r.back() != u'\\') r += u'\\';
  return r;
}

std::u16string SettingsFileName(std::u16string_view appData) {
  return WithTrailingBackslash(appData) + u"quillmark\\NOX\\NOX.INI";
}

std::u16string DefaultProgram(std::u16string_view hostExe) {
  // The folder as the framework extracts it: up to the last backslash or drive colon.
  const size_t cut = hostExe.find_last_of(u"\\:");
  const std::u16string_view folder =
      cut == std::u16string_view::npos ? std::u16string_view() : hostExe.substr(0, cut + 1);
  return WithTrailingBackslash(folder) + u"NOXPlugIn.exe";
}

std::u16string WithoutTrailingBackslash(std::u16string location) {
  if (!location.empty() && location.back() == u'\\') location.pop_back();
  return location;
}

std::u16string SlaveParameters(std::int32_t frameHandle) {
  return std::u16string(kSlavePrefix) + rtl::IntToStr(frameHandle) + std::u16string(kSlaveSuffix);
}

}  // namespace WNOXView
