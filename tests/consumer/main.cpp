// Uses a field routine, the version catalogue and unit globals of the installed libraries;
// prints "consumer ok" when each gives what it should. Against the package DLL, a global
// the program sets is the one the package's own routines read.
#include <cstdio>
#include <string>

#include "data/NOXEData.h"
#include "tools/fields.h"
#include "tools/qm_globals.h"

#ifdef NOX_PACKAGE_IMPORT
// The package's entry points, as the runtime calls them for a program that uses a package.
extern "C" __declspec(dllimport) void Initialize();
extern "C" __declspec(dllimport) void Finalize();
#endif

int main() {
  int failed = 0;
  const auto check = [&](bool ok, const char* what) {
    if (!ok) std::printf("consumer: %s\n", what), ++failed;
  };
#ifdef NOX_PACKAGE_IMPORT
  Initialize();
  check(!Qm_tools::AppIniName.empty(), "the units' start work");
#endif
  check(Qm_tools::GetFieldStr(u';', u"a;b;c", 2) == u"b", "GetFieldStr");
  check(NOXEData::DelphiVersionsNames[NOXEData::Delphi7] == u"Delphi 7", "the catalogue");
  Qm_tools::ToolsLanguage = u"EN";
  check(Qm_tools::GLT({u"DE:Datei", u"EN:File"}) == u"File", "ToolsLanguage as GLT reads it");
  NOXEData::MaxUndo = 7;
  check(NOXEData::MaxUndo == 7, "MaxUndo");
#ifdef NOX_PACKAGE_IMPORT
  Finalize();
#endif
  if (failed == 0) std::printf("consumer ok\n");
  return failed;
}
