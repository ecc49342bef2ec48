/* Resource identifiers of the package, shared by the resource script and the code. */
#pragma once
#define IDS_PLUGIN_NAME 4096
