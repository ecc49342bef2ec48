#include "tools/qm_globals.h"

namespace Qm_tools {

std::u16string ToolsLanguage = u"DE";

}  // namespace Qm_tools
