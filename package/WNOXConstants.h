// Texts of the plug-in. The display name is a resource, loaded when it is needed, so that
// a translated resource module can replace it.
#pragma once


#include <string>
#include "package/wnoxconstants_api.h"

namespace WNOXConstants {

// Resource identifier of the plug-in's display name, "Noxdesk".
extern WNOXCONSTANTS_API const unsigned sPluginName;

// The resource string `id` of this package; "" when it is missing.
WNOXCONSTANTS_API std::u16string LoadResString(unsigned id);

WNOXCONSTANTS_API void Initialize();
WNOXCONSTANTS_API void Finalize();

}  // namespace WNOXConstants
