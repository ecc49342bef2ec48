// Globals of the tool library, with their start values beside them.
#pragma once

#include <string>

namespace Qm_tools {

// Two-letter code of the language that GLT picks texts for.
extern std::u16string ToolsLanguage;  // start value "DE"

// Start and stop work of the tool library, counter-guarded.
void Initialize();
void Finalize();

}  // namespace Qm_tools
