// The shared data unit's start and stop work: its folders (through SettleDataPaths) and
// its string lists, and the strings it releases at the end.
#include "data/startup.h"

#include "data/NOXEData.h"
#include "rtl/sysutils.h"
#include "rtl/unitinit.h"
#include "tools/paths.h"

namespace NOXEData {

namespace {

rtl::TUnitCounter Counter;

rtl::TStringList* NewList(bool sorted, bool ignoreDuplicates) {
  auto* list = new rtl::TStringList;
  if (ignoreDuplicates) list->Duplicates = rtl::TDuplicates::dupIgnore;
  list->SetSorted(sorted);
  return list;
}

void Free(rtl::TStringList*& list) {
  delete list;
  list = nullptr;
}

void Release(std::u16string& s) { std::u16string().swap(s); }

}  // namespace

TDataPaths DataPaths(std::u16string_view diskMode, std::u16string_view appPath,
                     std::u16string_view sysProgDataPath, std::u16string_view sysUserDataPath,
                     std::u16string_view appData, std::u16string_view exeName) {
  using Qm_tools::chkPath;
  const std::u16string program = rtl::ExtractFileName(exeName);
  if (diskMode == u"Mobile") {
    const std::u16string here = chkPath(appPath);
    return {here, here, here + rtl::ChangeFileExt(program, u".ini"), false};
  }
  return {chkPath(sysProgDataPath) + u"quillmark" + u"\\" + u"NOX",
          chkPath(sysUserDataPath) + u"quillmark" + u"\\" + u"NOX",
          chkPath(appData) + u"quillmark\\NOX\\" + rtl::ChangeFileExt(program, u".INI"), true};
}

void Initialize() {
  if (!Counter.Start()) return;
  SettleDataPaths();
  slMethods = NewList(true, true);
  slMethodsHints = NewList(true, true);
  slMethodsClass = NewList(false, true);
  for (rtl::TStringList** list :
       {&slUnits, &slExistingDelphis, &slProgs, &slPrevNextLine, &slPrevNextFile, &slPropRepl,
        &slValRepl, &slRemoveFMX, &slDelFilesAtEnd})
    *list = NewList(false, false);
}

void Finalize() {
  if (!Counter.Stop()) return;
  for (rtl::TStringList** list :
       {&slMethodsHints, &slMethods, &slMethodsClass, &slUnits, &slExistingDelphis, &slProgs,
        &slPrevNextLine, &slPrevNextFile, &slPropRepl, &slValRepl, &slRemoveFMX,
        &slDelFilesAtEnd})
    Free(*list);
  for (std::u16string* s :
       {&LastProjFile, &LastSelectedNodeText, &LastSelectedDocText, &LastProjTV, &LastDocTV,
        &AADest, &AASrc, &FileMan, &PDFProg, &BackupProg, &DVersions, &CurrentDelphi,
        &MasterDelphi, &StdFontName, &StdFontNameUni, &LastAddPath, &LastSaveDir, &MethodsFile,
        &MethodsHintsFile, &MethodsClassFile})
    Release(*s);
  // Project and slPosInfo belong to the companion program's code.
}

#ifndef _WIN32
void SettleDataPaths() {}
#endif

}  // namespace NOXEData
