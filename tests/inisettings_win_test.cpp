// The INI settings family on real files and real forms, under Wine.
#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "rtl/inifiles.h"
#include "rtl/meminifile.h"
#include "rtl/sysutils.h"
#include "tools/inisettings.h"
#include "tools/paths.h"
#include "tools/qm_globals.h"
#include "tools/sysinfo.h"
#include "ui/application.h"
#include "ui/forms.h"
#include "win_support.h"

namespace {

using namespace Qm_tools;
using nox_test::W;

class IniSettingsWin : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = nox_test::TempFolder() + u"inisettings_test_" + rtl::IntToStr(GetCurrentProcessId()) +
              u"\\";
    CreateDirectoryW(W(folder_), nullptr);
    savedIni_ = AppIniName;
    AppIniName = folder_ + u"app.INI";
    pos_ = folder_ + u"pos.ini";
  }
  void TearDown() override {
    form_.reset();
    AppIniName = savedIni_;
    for (const char16_t* name : {u"app.INI", u"other.ini", u"pos.ini", u"mem.ini"})
      DeleteFileW(W(folder_ + name));
    RemoveDirectoryW(W(folder_));
  }

  std::u16string Raw(const std::u16string& file, const std::u16string& section,
                     const std::u16string& key) const {
    return rtl::TIniFile(file).ReadString(section, key, u"<none>");
  }
  // The section of the primary monitor on this computer.
  static std::u16string Section() {
    return WindowPosSection(GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
                            GetThisComputerName());
  }
  void WritePos(const std::u16string& ident, const std::u16string& value) const {
    rtl::TIniFile(pos_).WriteString(Section(), ident, value);
  }
  // A sizeable form on the screen at (left, top), not activated.
  ui::TForm& Form(int left, int top, int width, int height) {
    form_ = std::make_unique<ui::TForm>(nullptr);
    form_->Position = ui::poDesigned;
    form_->SetBounds(left, top, width, height);
    ShowWindow(form_->Handle(), SW_SHOWNOACTIVATE);
    ui::Application->ProcessMessages();
    return *form_;
  }
  static std::vector<int> Bounds(const ui::TForm& f) {
    return {f.Left(), f.Top(), f.Width(), f.Height()};
  }

  std::u16string folder_, pos_, savedIni_;
  nox_test::ShownMessages messages_;
  std::vector<std::u16string>& shown_ = messages_.shown;
  std::unique_ptr<ui::TForm> form_;
};

TEST_F(IniSettingsWin, ValuesAndTheirEmptyArgumentRules) {
  SaveIniStr(u"S", u"name", u"Wert");
  SaveIniInt(u"S", u"n", -12);
  SaveIniBool(u"S", u"on", true);
  EXPECT_EQ(GetIniStr(u"S", u"name", u"def"), u"Wert");
  EXPECT_EQ(GetIniStr(u"S", u"missing", u"def"), u"def");
  EXPECT_EQ(GetIniStr(u"", u"name", u"def"), u"") << "not the default";
  EXPECT_EQ(GetIniStr(u"S", u"", u"def"), u"");
  EXPECT_EQ(GetIniInt(u"S", u"n", 0), -12);
  EXPECT_TRUE(GetIniBool(u"S", u"on", false));
  EXPECT_EQ(Raw(AppIniName, u"S", u"on"), u"1");
  rtl::TIniFile ini(AppIniName);
  EXPECT_EQ(CountEntries(ini, u"S"), 3);
  EXPECT_EQ(CountEntries(ini, u"none"), 0);

  SaveFileIniStr(u"other.ini", u"O", u"k", u"v");
  EXPECT_EQ(Raw(folder_ + u"other.ini", u"O", u"k"), u"v") << "beside the application's file";
  EXPECT_EQ(GetFileIniStr(u"other.ini", u"O", u"k", u"def"), u"v");
  EXPECT_EQ(GetFileIniStr(u"other.ini", u"O", u"", u"def"), u"");
  SaveFileIniStr(u"", u"O", u"k", u"v");
  SaveFileIniStr(u"third.ini", u"", u"k", u"v");
  EXPECT_FALSE(FileExists(folder_ + u"third.ini"));
  EXPECT_EQ(GetIniFileIniStr(folder_ + u"other.ini", u"O", u"k", u"def"), u"v");
  EXPECT_TRUE(GetIniFileIniBool(folder_ + u"other.ini", u"O", u"x", true));
}

TEST_F(IniSettingsWin, PersistedListsAndTheWriteProbes) {
  SaveIniStr(u"L", u"Item9", u"old");
  rtl::TStringList list;
  for (const char16_t* s : {u"a", u"b", u"c"}) list.Add(s);
  qm_SavePersist(list, u"L", 1);
  EXPECT_EQ(Raw(AppIniName, u"L", u"Item2"), u"b");
  EXPECT_EQ(Raw(AppIniName, u"L", u"Item3"), u"<none>") << "MaxIndex is an index";
  EXPECT_EQ(Raw(AppIniName, u"L", u"Item9"), u"<none>") << "the section was erased";
  qm_SavePersist(list, u"L", 5);
  rtl::TStringList loaded;
  loaded.Add(u"stale");
  qm_LoadPersist(loaded, u"L");
  EXPECT_EQ(loaded.CommaText(), u"a,b,c");
  rtl::TIniFile(AppIniName).DeleteKey(u"L", u"Item2");
  qm_LoadPersist(loaded, u"L");
  EXPECT_EQ(loaded.CommaText(), u"a") << "the first gap ends the list";

  EXPECT_TRUE(CanWriteAppIni());
  EXPECT_FALSE(FileExists(folder_ + u"IniTest"));
  EXPECT_TRUE(CanWriteAFile(folder_ + u"x.txt"));
  EXPECT_FALSE(FileExists(folder_.substr(0, 3) + u"jjhhuu.ini"));
  AppIniName = folder_ + u"missing\\app.INI";
  EXPECT_FALSE(CanWriteAppIni());
}

TEST_F(IniSettingsWin, ProbesOfNamesWithoutAFolderLeaveNoFileBehind) {
  // The profile API keeps a file named without a folder in the Windows folder.
  wchar_t windows[MAX_PATH] = {}, current[MAX_PATH] = {};
  GetWindowsDirectoryW(windows, MAX_PATH);
  GetCurrentDirectoryW(MAX_PATH, current);
  const std::u16string places[] = {chkPath(reinterpret_cast<const char16_t*>(windows)),
                                   chkPath(reinterpret_cast<const char16_t*>(current))};
  struct {
    const char16_t* file;
    bool (*probe)();
  } const cases[] = {
      {u"IniTest", [] { AppIniName = u"app.INI"; return CanWriteAppIni(); }},
      {u"jjhhuu.ini", [] { return CanWriteAFile(u""); }},
  };
  for (const auto& c : cases) {
    for (const std::u16string& place : places) DeleteFileW(W(place + c.file));
    EXPECT_TRUE(c.probe()) << "the Windows folder is writable here";
    for (const std::u16string& place : places) {
      EXPECT_FALSE(FileExists(place + c.file)) << rtl::Utf16ToUtf8(place + c.file);
      DeleteFileW(W(place + c.file));
    }
  }
}

// Normal, minimised or maximised: the rectangle the form comes back to, in the primary
// monitor's section, also through the memory file.
TEST_F(IniSettingsWin, APositionIsSavedAsTheRectangleTheFormComesBackTo) {
  const struct {
    ui::TWindowState state, restored;
    const char16_t* saved;
  } cases[] = {
      {ui::wsNormal, ui::wsNormal, u"100^120^500^420^1^"},
      {ui::wsMinimized, ui::wsNormal, u"100^120^500^420^2^"},
      {ui::wsMaximized, ui::wsMaximized, u"100^120^500^420^3^"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(static_cast<int>(c.state));
    ui::TForm& form = Form(100, 120, 400, 300);
    form.SetWindowState(c.state);
    ui::Application->ProcessMessages();
    ASSERT_EQ(form.WindowState(), c.state);
    SaveWindowPos(form, pos_, u"Main");
    rtl::TMemIniFile mem(pos_);
    SaveWindowPosMIni(form, pos_, u"Mem", mem);
    mem.UpdateFile();
    EXPECT_EQ(Raw(pos_, Section(), u"Main"), c.saved);
    EXPECT_EQ(Raw(pos_, Section(), u"Mem"), c.saved);

    ui::TForm& again = Form(10, 10, 200, 200);
    ASSERT_TRUE(RestoreWindowPos(again, pos_, u"Main", true));
    EXPECT_EQ(again.WindowState(), c.restored);
    again.SetWindowState(ui::wsNormal);
    EXPECT_EQ(Bounds(again), (std::vector<int>{100, 120, 400, 300}));
  }
  EXPECT_TRUE(shown_.empty());
}

TEST_F(IniSettingsWin, ARecordOfAnotherScreenOrNoRecordLeavesTheFormAlone) {
  rtl::TIniFile(pos_).WriteString(WindowPosSection(1920, 1080, GetThisComputerName()), u"Wide",
                                  u"0^0^1920^1040^3^");
  WritePos(u"Broken", u"a^b^");
  ui::TForm& form = Form(10, 10, 200, 200);
  EXPECT_FALSE(RestoreWindowPos(form, pos_, u"Wide", true));
  EXPECT_FALSE(RestoreWindowLeftTopPos(form, pos_, u"Wide", true));
  EXPECT_FALSE(RestoreWindowNotMinPos(form, pos_, u"None"));
  // Not five integers: the conversion error reaches the caller.
  EXPECT_THROW(RestoreWindowPos(form, pos_, u"Broken", true), rtl::EConvertError);
  EXPECT_EQ(Bounds(form), (std::vector<int>{10, 10, 200, 200}));
}

TEST_F(IniSettingsWin, EveryRestorePlacesARealFormWhateverItsState) {
  const int width = GetSystemMetrics(SM_CXSCREEN);  // one monitor, no task bar beside it
  WritePos(u"Wide", u"300^20^" + rtl::IntToStr(width + 520) + u"^620^1^");
  WritePos(u"Max", u"40^50^440^350^3^");
  WritePos(u"Min", u"40^50^440^350^2^");
  WritePos(u"Tiny", u"10^20^30^30^3^");
  enum How { kFull, kNotMin, kPlaceOnly, kCorner };
  const struct {
    How how;
    const char16_t* ident;
    ui::TWindowState from, state;
    std::vector<int> bounds;  // once normal again
  } cases[] = {
      // Wider than this desktop: the full restore starts at the left edge, the other keeps
      // the saved corner; both end at the monitor's right edge.
      {kFull, u"Wide", ui::wsNormal, ui::wsNormal, {0, 20, width, 600}},
      {kNotMin, u"Wide", ui::wsNormal, ui::wsNormal, {300, 20, width - 300, 600}},
      // The form's minimum width, the least height, the state left alone.
      {kPlaceOnly, u"Tiny", ui::wsNormal, ui::wsNormal, {10, 20, 150, 60}},
      // The state always comes back, a minimised one as normal but by the corner-only
      // routine, which keeps the form's own size.
      {kNotMin, u"Max", ui::wsNormal, ui::wsMaximized, {40, 50, 400, 300}},
      {kNotMin, u"Min", ui::wsMaximized, ui::wsNormal, {40, 50, 400, 300}},
      {kCorner, u"Min", ui::wsNormal, ui::wsMinimized, {40, 50, 300, 300}},
      // Onto a minimised form: the saved place is where it comes back to, also when it
      // stays minimised for now.
      {kFull, u"Wide", ui::wsMinimized, ui::wsNormal, {0, 20, width, 600}},
      {kFull, u"Max", ui::wsMinimized, ui::wsMaximized, {40, 50, 400, 300}},
      {kNotMin, u"Min", ui::wsMinimized, ui::wsNormal, {40, 50, 400, 300}},
      {kPlaceOnly, u"Max", ui::wsMinimized, ui::wsMinimized, {40, 50, 400, 300}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.how << " " << rtl::Utf16ToUtf8(c.ident) << " from "
                                    << static_cast<int>(c.from));
    ui::TForm& form = Form(200, 200, 300, 300);
    form.Constraints.MinWidth = 150;
    form.SetWindowState(c.from);
    ui::Application->ProcessMessages();
    ASSERT_TRUE(c.how == kNotMin   ? RestoreWindowNotMinPos(form, pos_, c.ident)
                : c.how == kCorner ? RestoreWindowLeftTopPos(form, pos_, c.ident, true)
                                   : RestoreWindowPos(form, pos_, c.ident, c.how == kFull));
    ui::Application->ProcessMessages();
    EXPECT_EQ(form.WindowState(), c.state);
    form.SetWindowState(ui::wsNormal);
    ui::Application->ProcessMessages();
    EXPECT_EQ(Bounds(form), c.bounds);
  }
}

TEST_F(IniSettingsWin, AnUnwritableFileIsReportedOnceAndTheMemoryFileIsSavedByItsOwner) {
  ui::TForm& form = Form(70, 80, 320, 240);
  const std::u16string lost = folder_ + u"missing\\pos.ini";
  SaveWindowPos(form, lost, u"Main");
  ASSERT_EQ(shown_.size(), 1u);
  EXPECT_EQ(shown_[0], WritePosFailedText(lost));

  const std::u16string ini = folder_ + u"mem.ini";
  rtl::TMemIniFile mem(ini);
  IniSaveWindowPos(mem, form, ini, u"Second");
  EXPECT_FALSE(FileExists(ini));
  mem.UpdateFile();
  // The profile API reads what the memory file wrote; the form's monitor is the primary one.
  EXPECT_EQ(Raw(ini, Section(), u"Second"), u"70^80^390^320^1^");
  form.SetBounds(5, 5, 200, 100);
  EXPECT_TRUE(RestoreWindowLeftTopPosIni2(form, ini, u"Second", false));
  EXPECT_EQ(Bounds(form), (std::vector<int>{70, 80, 200, 100}));
}

TEST_F(IniSettingsWin, TheIconPositionOfAMinimisedForm) {
  ui::TForm& form = Form(100, 100, 300, 200);
  EXPECT_FALSE(RestoreWindowMinPos(form, pos_, u"Main", true));
  rtl::TIniFile(pos_).WriteString(u"MinPos", u"Main", u"33^44^");
  EXPECT_TRUE(RestoreWindowMinPos(form, pos_, u"Main", true));
  EXPECT_TRUE(IsIconic(form.Handle()));
  EXPECT_TRUE(SaveWindowMinPos(form, pos_, u"Copy"));
  EXPECT_EQ(Raw(pos_, u"MinPos", u"Copy"), u"33^44^");
}

}  // namespace
