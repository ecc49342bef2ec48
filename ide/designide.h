// Import and export of the IDE's shared globals: designide.dll holds them once for the
// IDE (the host program) and every package it loads.
#pragma once

#ifdef NOX_BUILDING_DESIGNIDE
#define NOX_DESIGNIDE_API __declspec(dllexport)
#else
#define NOX_DESIGNIDE_API __declspec(dllimport)
#endif
