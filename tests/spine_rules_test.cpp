#include <gtest/gtest.h>

#include "host/view_rules.h"

namespace {

using namespace WNOXView;

TEST(SpineRules, SettingsFileLiesUnderTheRoamingFolder) {
  EXPECT_EQ(SettingsFileName(u"C:\\Users\\a\\AppData\\Roaming"),
            u"C:\\Users\\a\\AppData\\Roaming\\quillmark\\NOX\\NOX.INI");
  EXPECT_EQ(SettingsFileName(u"D:\\Data\\"), u"D:\\Data\\quillmark\\NOX\\NOX.INI");
  // No APPDATA at all: the name becomes relative rather than rooted.
  EXPECT_EQ(SettingsFileName(u""), u"quillmark\\NOX\\NOX.INI");
}

TEST(SpineRules, DefaultProgramLiesBesideTheHost) {
  struct Case { std::u16string exe, program; };
  for (const auto& c : std::initializer_list<Case>{
           {u"C:\\IDE\\bin\\bds.exe", u"C:\\IDE\\bin\\NOXPlugIn.exe"},
           {u"C:bds.exe", u"C:\\NOXPlugIn.exe"},
           {u"bds.exe", u"NOXPlugIn.exe"},
       })
    EXPECT_EQ(DefaultProgram(c.exe), c.program);
}

TEST(SpineRules, CompanionCommandLineCarriesTheFrameHandle) {
  EXPECT_EQ(SlaveParameters(657812), u"Slave \"Delphi 13 Florence\" \"657812\"");
  EXPECT_EQ(kSlavePrefix.size(), 28u);
}

}  // namespace
