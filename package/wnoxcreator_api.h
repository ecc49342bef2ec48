// What the unit WNOXCreator gives to other modules: its routines, classes and globals are
// exported from the package DLL that carries it (WNOXCREATOR_BUILD, set while its sources
// are compiled) and imported by a program that uses that DLL (NOX_PACKAGE_IMPORT); within
// one module, and in the native build, the mark is empty.
#pragma once

#include "rtl/export.h"

#if defined(WNOXCREATOR_BUILD)
#define WNOXCREATOR_API NOX_DLL_EXPORT
#elif defined(NOX_PACKAGE_IMPORT)
#define WNOXCREATOR_API NOX_DLL_IMPORT
#else
#define WNOXCREATOR_API
#endif
