#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/view_rules.h"
#include "package/unit_order.h"

namespace {

using namespace WNOXView;

// The settings file under the roaming folder (relative without one); the default program
// beside the host; the companion's command line with the frame's handle.
TEST(SpineRules, NamesOfTheSettingsFileTheProgramAndItsCommandLine) {
  EXPECT_EQ(SettingsFileName(u"C:\\Users\\a\\AppData\\Roaming"),
            u"C:\\Users\\a\\AppData\\Roaming\\quillmark\\NOX\\NOX.INI");
  EXPECT_EQ(SettingsFileName(u"D:\\Data\\"), u"D:\\Data\\quillmark\\NOX\\NOX.INI");
  EXPECT_EQ(SettingsFileName(u""), u"quillmark\\NOX\\NOX.INI");
  EXPECT_EQ(DefaultProgram(u"C:\\IDE\\bin\\bds.exe"), u"C:\\IDE\\bin\\NOXPlugIn.exe");
  EXPECT_EQ(DefaultProgram(u"C:bds.exe"), u"C:\\NOXPlugIn.exe");
  EXPECT_EQ(DefaultProgram(u"bds.exe"), u"NOXPlugIn.exe");
  EXPECT_EQ(SlaveParameters(657812), u"Slave \"Delphi 13 Florence\" \"657812\"");
}

TEST(SpineRules, TheProgramFileCountsWithLinksFollowed) {
  constexpr std::uint32_t file = 0x20, folder = 0x10, link = 0x400;
  EXPECT_TRUE(ProgramFileExists(file, std::nullopt));
  EXPECT_FALSE(ProgramFileExists(std::nullopt, std::nullopt));
  EXPECT_FALSE(ProgramFileExists(folder, std::nullopt));
  EXPECT_TRUE(ProgramFileExists(file | 0x1, std::nullopt)) << "a read-only program";
  EXPECT_TRUE(ProgramFileExists(file | link, file)) << "a link to the program";
  EXPECT_FALSE(ProgramFileExists(file | link, std::nullopt)) << "a dangling link";
  EXPECT_FALSE(ProgramFileExists(file | link, folder)) << "a link to a folder";
}

// The package's units in its list order, each noting when it is started and stopped.
// SysInit has no start or stop work.
constexpr const wchar_t* kListed[] = {L"WNOXD13_64", L"NOXEData", L"Qm_tools",
                                      L"QMMessageDlgVCL", L"SysInit", L"DVersion",
                                      L"WNOXView", L"WNOXConstants", L"WNOXCreator"};
std::vector<std::wstring> calls;
template <int I> void Start() { calls.push_back(std::wstring(L"start ") + kListed[I]); }
template <int I> void Stop() { calls.push_back(std::wstring(L"stop ") + kListed[I]); }
constexpr TPackageUnitEntry kUnits[] = {
    {kListed[0], &Start<0>, &Stop<0>}, {kListed[1], &Start<1>, &Stop<1>},
    {kListed[2], &Start<2>, &Stop<2>}, {kListed[3], &Start<3>, &Stop<3>},
    {kListed[4], nullptr, nullptr}, {kListed[5], &Start<5>, &Stop<5>},
    {kListed[6], &Start<6>, &Stop<6>}, {kListed[7], &Start<7>, &Stop<7>},
    {kListed[8], &Start<8>, &Stop<8>},
};
constexpr TPackageInfoTable kPackage = {L"WNOXD13_64", L"", 0, nullptr, 9, kUnits};

TEST(SpineRules, UnitsStartAfterTheUnitsTheyUseAndStopTheOtherWayRound) {
  calls.clear();
  WNOXD13_64::StartUnits(kPackage);
  EXPECT_EQ(calls, (std::vector<std::wstring>{
                       L"start QMMessageDlgVCL", L"start Qm_tools", L"start NOXEData",
                       L"start DVersion", L"start WNOXView", L"start WNOXConstants",
                       L"start WNOXCreator", L"start WNOXD13_64"}));
  calls.clear();
  WNOXD13_64::StopUnits(kPackage);
  EXPECT_EQ(calls, (std::vector<std::wstring>{
                       L"stop WNOXD13_64", L"stop WNOXCreator", L"stop WNOXConstants",
                       L"stop WNOXView", L"stop DVersion", L"stop NOXEData", L"stop Qm_tools",
                       L"stop QMMessageDlgVCL"}));
}

}  // namespace
