// Texts of the plug-in. The display name is a resource, loaded when it is needed, so that
// a translated resource module can replace it.
#pragma once

#include <string>

namespace WNOXConstants {

// Resource identifier of the plug-in's display name, "Noxdesk".
extern const unsigned sPluginName;

// The resource string `id` of this package; "" when it is missing.
std::u16string LoadResString(unsigned id);

void Initialize();
void Finalize();

}  // namespace WNOXConstants
