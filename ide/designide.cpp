// The globals of designide.dll. They start empty: the IDE fills them before it loads a
// package and empties them when it no longer serves them.
#include "ide/ToolsAPI.h"
#include "ide/WelcomePage.h"

namespace ToolsAPI {
IBorlandIDEServices* BorlandIDEServices = nullptr;
}

namespace ToolsAPI::WelcomePage {
INTAWelcomePagePluginService* WelcomePagePluginService = nullptr;
}
