// The package's description of itself, as the runtime's package loader reads it through
// GetPackageInfoTable: name, description, required packages, and the contained units in
// the package's list order with their start and stop procedures (null for a unit without).
#pragma once

extern "C" {

struct TPackageUnitEntry {
  const wchar_t* Name;
  void (*Init)();
  void (*FInit)();
};

struct TPackageInfoTable {
  const wchar_t* PackageName;
  const wchar_t* Description;
  int RequiresCount;
  const wchar_t* const* Requires;
  int UnitCount;
  const TPackageUnitEntry* Units;
};

}
