// Texts of every script through component files and back: captions, hints, list lines and
// memo text, saved with SaveCompToFile and loaded into a fresh form.
#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "rtl/sysutils.h"
#include "rtl/ustring.h"
#include "streaming_forms.h"
#include "tools/streaming.h"
#include "unicode_corpus.h"
#include "win_support.h"

namespace {

using nox_test::Place;
using Str = std::u16string;

struct TTextForm {
  std::unique_ptr<ui::TForm> form = std::make_unique<ui::TForm>(nullptr);
  ui::TLabel* label = Place<ui::TLabel>(*form, *form, u"Label1");
  ui::TListBox* list = Place<ui::TListBox>(*form, *form, u"List1");
  ui::TMemo* memo = Place<ui::TMemo>(*form, *form, u"Memo1");
  ui::TPopupMenu* menu = new ui::TPopupMenu(form.get());
  ui::TMenuItem* item = new ui::TMenuItem(form.get());
  TTextForm() {
    form->Name = u"Texts";
    menu->Name = u"Menu1";
    item->Name = u"Item1";
    menu->Items()->Add(item);
  }
};

TEST(UnicodeStreaming, CaptionsHintsListLinesAndMemoTextKeepEveryCharacter) {
  const std::vector<Str> corpus = nox_test::UnicodeCorpus();
  const Str file = nox_test::TempFolder() + u"unicode_streaming_" +
                   rtl::IntToStr(static_cast<int>(GetCurrentProcessId())) + u".dfm";
  nox_test::TLossCount loss;
  // A hundred texts a file: each in the caption and hint, the menu item's caption and hint, and
  // together as list lines and as memo lines.
  for (size_t from = 0; from < corpus.size(); from += 100) {
    const size_t to = std::min(corpus.size(), from + 100);
    TTextForm saved;
    Str memo;
    for (size_t i = from; i < to; ++i) {
      saved.list->Items().Add(corpus[i]);
      memo += corpus[i] + (i + 1 < to ? u"\r\n" : u"");
    }
    saved.memo->SetText(memo);
    for (size_t i = from; i < to; ++i) {
      saved.label->SetCaption(corpus[i]);
      saved.label->Hint = corpus[i] + u"?";
      saved.item->Caption = corpus[i] + u"!";
      saved.item->Hint = u"?" + corpus[i];
      Qm_tools::SaveCompToFile(*saved.form, file);
      TTextForm loaded;
      Qm_tools::LoadCompFromFile(*loaded.form, file);
      loss.Check("caption", corpus[i], loaded.label->Caption());
      loss.Check("label hint", corpus[i] + u"?", loaded.label->Hint);
      loss.Check("menu item", corpus[i] + u"!", loaded.item->Caption);
      loss.Check("hint", u"?" + corpus[i], loaded.item->Hint);
      if (i + 1 == to) {
        ASSERT_EQ(loaded.list->Items().Count(), static_cast<int>(to - from));
        for (size_t k = from; k < to; ++k)
          loss.Check("list line", corpus[k], loaded.list->Items()[static_cast<int>(k - from)]);
        loss.Check("memo", memo, loaded.memo->Text());
      }
    }
  }
  DeleteFileW(nox_test::W(file));
  EXPECT_EQ(loss.Lost(), 0u);
}

}  // namespace
