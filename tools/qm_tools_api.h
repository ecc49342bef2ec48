// What the unit Qm_tools gives to other modules: its routines, classes and globals are
// exported from the package DLL that carries it (QM_TOOLS_BUILD, set while its sources
// are compiled) and imported by a program that uses that DLL (NOX_PACKAGE_IMPORT); within
// one module, and in the native build, the mark is empty.
#pragma once

#include "rtl/export.h"

#if defined(QM_TOOLS_BUILD)
#define QM_TOOLS_API NOX_DLL_EXPORT
#elif defined(NOX_PACKAGE_IMPORT)
#define QM_TOOLS_API NOX_DLL_IMPORT
#else
#define QM_TOOLS_API
#endif
