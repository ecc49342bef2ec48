// Uses a field routine, the version catalogue and a unit global of the installed libraries;
// prints "consumer ok" when each gives what it should.
#include <cstdio>
#include <string>

#include "data/NOXEData.h"
#include "tools/fields.h"
#include "tools/qm_globals.h"

int main() {
  int failed = 0;
  const auto check = [&](bool ok, const char* what) {
    if (!ok) std::printf("consumer: %s\n", what), ++failed;
  };
  check(Qm_tools::GetFieldStr(u';', u"a;b;c", 2) == u"b", "GetFieldStr");
  check(NOXEData::DelphiVersionsNames[NOXEData::Delphi7] == u"Delphi 7", "the catalogue");
  Qm_tools::ToolsLanguage = u"EN";
  check(Qm_tools::GLT({u"DE:Datei", u"EN:File"}) == u"File", "ToolsLanguage");
  NOXEData::MaxUndo = 7;
  check(NOXEData::MaxUndo == 7, "MaxUndo");
  if (failed == 0) std::printf("consumer ok\n");
  return failed;
}
