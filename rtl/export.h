// The marks of what a module gives to and takes from others. Only Windows has them; each
// unit names its own (tools/qm_tools_api.h, data/noxedata_api.h, ...).
#pragma once

#ifdef _WIN32
#define NOX_DLL_EXPORT __declspec(dllexport)
#define NOX_DLL_IMPORT __declspec(dllimport)
#else
#define NOX_DLL_EXPORT
#define NOX_DLL_IMPORT
#endif
