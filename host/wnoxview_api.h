// What the unit WNOXView gives to other modules: its routines, classes and globals are
// exported from the package DLL that carries it (WNOXVIEW_BUILD, set while its sources
// are compiled) and imported by a program that uses that DLL (NOX_PACKAGE_IMPORT); within
// one module, and in the native build, the mark is empty.
#pragma once

#include "rtl/export.h"

#if defined(WNOXVIEW_BUILD)
#define WNOXVIEW_API NOX_DLL_EXPORT
#elif defined(NOX_PACKAGE_IMPORT)
#define WNOXVIEW_API NOX_DLL_IMPORT
#else
#define WNOXVIEW_API
#endif
