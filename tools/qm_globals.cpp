#include "tools/qm_globals.h"

#include "rtl/unitinit.h"

namespace Qm_tools {

std::u16string ToolsLanguage = u"DE";

namespace {
rtl::TUnitCounter Counter;
}  // namespace

void Initialize() { Counter.Start(); }
void Finalize() { Counter.Stop(); }

}  // namespace Qm_tools
