// Texts of every script through every routine that writes an INI file, and back: values,
// section and key names, persisted lists, window positions and the in-memory file.
#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "rtl/inifiles.h"
#include "rtl/meminifile.h"
#include "rtl/sysutils.h"
#include "rtl/ustring.h"
#include "tools/inisettings.h"
#include "tools/qm_globals.h"
#include "ui/application.h"
#include "ui/forms.h"
#include "unicode_corpus.h"
#include "win_support.h"

namespace {

using namespace Qm_tools;
using nox_test::W;
using Str = std::u16string;

class UnicodeIni : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = nox_test::TempFolder() + u"unicode_ini_" + rtl::IntToStr(GetCurrentProcessId()) + u"\\";
    CreateDirectoryW(W(folder_), nullptr);
    savedIni_ = AppIniName;
    AppIniName = folder_ + u"app.INI";
  }
  void TearDown() override {
    AppIniName = savedIni_;
    for (const char16_t* name : {u"app.INI", u"other.ini", u"pos.ini", u"mem.ini"})
      DeleteFileW(W(folder_ + name));
    RemoveDirectoryW(W(folder_));
  }
  const std::vector<Str> corpus_ = nox_test::UnicodeCorpus();
  Str folder_, savedIni_;
  nox_test::TLossCount loss_;
};

Str Key(size_t i) { return u"T" + rtl::IntToStr(static_cast<int>(i)); }
// What the format itself uses in names cannot be part of one.
bool NameSafe(const Str& s) { return s.find_first_of(u"=[]") == Str::npos; }

TEST_F(UnicodeIni, ValuesNamesAndListsKeepEveryCharacter) {
  ASSERT_GE(corpus_.size(), 1000u);
  for (size_t i = 0; i < corpus_.size(); ++i) {
    SaveIniStr(u"Texte", Key(i), corpus_[i]);
    SaveFileIniStr(u"other.ini", u"Texte", Key(i), corpus_[i]);
    if (!NameSafe(corpus_[i])) continue;
    SaveIniInt(corpus_[i], corpus_[i], static_cast<int>(i));
    SaveIniBool(u"Flags", corpus_[i], true);
  }
  rtl::TStringList list;
  for (const Str& s : corpus_) list.Add(s);
  qm_SavePersist(list, u"Liste", list.Count() - 1);
  list.Clear();
  qm_LoadPersist(list, u"Liste");
  ASSERT_EQ(list.Count(), static_cast<int>(corpus_.size()));

  rtl::TStringList sections;
  rtl::TIniFile(AppIniName).ReadSections(sections);
  for (size_t i = 0; i < corpus_.size(); ++i) {
    const Str& s = corpus_[i];
    loss_.Check("SaveIniStr", s, GetIniStr(u"Texte", Key(i), u""));
    loss_.Check("SaveFileIniStr", s, GetFileIniStr(u"other.ini", u"Texte", Key(i), u""));
    loss_.Check("qm_SavePersist", s, list[static_cast<int>(i)]);
    if (!NameSafe(s)) continue;
    loss_.Check("SaveIniInt", s, GetIniInt(s, s, -1) == static_cast<int>(i) ? s : Str());
    loss_.Check("SaveIniBool", s, GetIniBool(u"Flags", s, false) ? s : Str());
    loss_.Check("section names", s, sections.IndexOf(s) >= 0 ? s : Str());
  }
  EXPECT_EQ(loss_.Lost(), 0u);
}

TEST_F(UnicodeIni, WindowPositionsAndTheMemoryFileKeepEveryCharacter) {
  ui::TForm form(nullptr);
  form.Position = ui::poDesigned;
  form.SetBounds(40, 50, 300, 200);
  ShowWindow(form.Handle(), SW_SHOWNOACTIVATE);
  ui::Application->ProcessMessages();
  const Str pos = folder_ + u"pos.ini", mem = folder_ + u"mem.ini";
  {
    rtl::TMemIniFile memIni(mem);
    for (size_t i = 0; i < corpus_.size(); ++i) {
      memIni.WriteString(u"Texte", Key(i), corpus_[i]);
      if (i % 4 != 0 || !NameSafe(corpus_[i])) continue;  // a quarter: each is a whole file write
      SaveWindowPos(form, pos, corpus_[i]);
      SaveWindowMinPos(form, pos, corpus_[i]);
      SaveWindowPosMIni(form, mem, corpus_[i], memIni);
    }
    memIni.UpdateFile();
  }
  const rtl::TMemIniFile memIni(mem);
  for (size_t i = 0; i < corpus_.size(); ++i) {
    const Str& s = corpus_[i];
    loss_.Check("TMemIniFile", s, memIni.ReadString(u"Texte", Key(i), u""));
    if (i % 4 != 0 || !NameSafe(s)) continue;
    loss_.Check("SaveWindowPos", s, RestoreWindowPos(form, pos, s, false) ? s : Str());
    loss_.Check("SaveWindowMinPos", s, RestoreWindowMinPos(form, pos, s, false) ? s : Str());
    loss_.Check("SaveWindowPosMIni", s, RestoreWindowLeftTopPos(form, mem, s, false) ? s : Str());
  }
  EXPECT_EQ(loss_.Lost(), 0u);
}

}  // namespace
