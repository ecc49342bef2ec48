// The unit's globals with their start values. The start and stop work is elsewhere.
#include "data/NOXEData.h"

namespace NOXEData {

bool DiffDblClick = false;
bool IsDark = false;
bool IDESlave = false;
bool DelphiUsesEnglishIDE = true;
bool ShowLastProject = false;
bool StopAfterExec = false;
bool SecondInstanz = false;
bool ShowBookmarksToolbar = true;
bool ShowFilePathPanel = true;

TProject* Project = nullptr;
std::u16string DVersions =
    u"Delphi 1,Delphi 2,Delphi 3,Delphi 4,Delphi 5,Delphi 6,Delphi 7,Delphi 8,Delphi 2005,"
    u"Delphi 2006,Delphi 2007,Delphi 2009,Delphi 2010,Delphi XE,Delphi XE2,Delphi XE3,"
    u"Delphi XE4,Delphi XE5,Delphi XE6,Delphi XE7,Delphi XE8,Delphi 10 Seattle,"
    u"Delphi 10.1 Berlin,Delphi 10.2 Tokyo,Delphi 10.3 Rio,Delphi 10.4 Sydney,"
    u"Delphi 11 Alexandria,Delphi 12 Athens,Delphi 13 Florence";

std::int32_t PrevNextPosition = 0;
std::int32_t FMXCounter = 0;
std::int32_t VCLCounter = 0;
// 100000 on purpose: the value stored settings have always started from.
std::int32_t OpenProjIn = 100000;
std::int32_t MaxUndo = 10;
std::int32_t AktUndo = 0;
std::int32_t Multistart = 0;
std::intptr_t stvNoUpdate = 0;
std::intptr_t UsedProjectColumns = 0;
void* PlugInHandle = nullptr;

std::u16string StdFontName = u"Courier New";
std::u16string StdFontNameUni = u"Arial Unicode MS";
std::int32_t StdFontSize = 10;
TColor StdFontTextColor = 0x00000000;
TColor StdFontBackColor = 0x00FFFFFF;
TFontStyles StdFontStyle;

std::u16string LastProjFile;
std::u16string LastSelectedNodeText;
std::u16string LastSelectedDocText;
std::u16string LastProjTV;
std::u16string LastDocTV;
std::u16string AADest;
std::u16string AASrc;
std::u16string FileMan;
std::u16string PDFProg;
std::u16string BackupProg;
std::u16string CurrentDelphi;
std::u16string MasterDelphi;
std::u16string LastAddPath;
std::u16string LastSaveDir;
std::u16string MethodsFile;
std::u16string MethodsHintsFile;
std::u16string MethodsClassFile;

rtl::TStringList* slMethods = nullptr;
rtl::TStringList* slMethodsHints = nullptr;
rtl::TStringList* slMethodsClass = nullptr;
rtl::TStringList* slUnits = nullptr;
rtl::TStringList* slExistingDelphis = nullptr;
rtl::TStringList* slProgs = nullptr;
rtl::TStringList* slPrevNextLine = nullptr;
rtl::TStringList* slPrevNextFile = nullptr;
rtl::TStringList* slPropRepl = nullptr;
rtl::TStringList* slValRepl = nullptr;
rtl::TStringList* slRemoveFMX = nullptr;
rtl::TStringList* slDelFilesAtEnd = nullptr;
rtl::TStringList* slPosInfo = nullptr;

}  // namespace NOXEData
