// What the unit QMMessageDlgVCL gives to other modules: its routines, classes and globals are
// exported from the package DLL that carries it (QMMESSAGEDLG_BUILD, set while its sources
// are compiled) and imported by a program that uses that DLL (NOX_PACKAGE_IMPORT); within
// one module, and in the native build, the mark is empty.
#pragma once

#include "rtl/export.h"

#if defined(QMMESSAGEDLG_BUILD)
#define QMMESSAGEDLG_API NOX_DLL_EXPORT
#elif defined(NOX_PACKAGE_IMPORT)
#define QMMESSAGEDLG_API NOX_DLL_IMPORT
#else
#define QMMESSAGEDLG_API
#endif
