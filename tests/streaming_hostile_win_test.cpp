// Component files written by someone else, loaded into real forms under Wine: what fails
// fails with the library's exceptions and leaves the caller's form as it was.
#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "ui/persist.h"
#include "tests/message_pump.h"
#include "tests/streaming_forms.h"
#include "win_support.h"

namespace {

using namespace Qm_tools;
using namespace nox_test;

// Loads `bytes` as a file into a new form: "" when it loaded, "refused" when it failed with
// the library's exception and left the form without components, else what went wrong.
std::string LoadInto(const std::string& bytes, const std::u16string& file) {
  if (!WriteBytes(file, bytes)) return "not written";
  ui::TForm form(nullptr);
  try {
    LoadCompFromFile(form, file);
    return "";
  } catch (const rtl::Exception& e) {
    return form.ComponentCount() == 0 ? "refused" : "half-built after " + std::string(e.what());
  } catch (const std::exception& e) {
    return std::string("foreign ") + typeid(e).name() + ": " + e.what();
  }
}

TEST(StreamingHostileWin, RefusedStreamsLeaveTheFormsOwnComponentsAndFreeCleanly) {
  using Chain = std::vector<std::pair<const char16_t*, const char16_t*>>;
  std::vector<std::u16string> names;
  for (int i = 0; i < 257; ++i) names.push_back(u"P" + rtl::IntToStr(i));
  Chain deep;
  for (const std::u16string& name : names) deep.emplace_back(u"TPanel", name.c_str());
  // Each in the chain inside the one before.
  const struct { const char* what; Chain chain; bool unknownClass; } cases[] = {
      {"a cycle", {{u"TPanel", u"A"}, {u"TPanel", u"B"}, {u"TPanel", u"A"}}, false},
      {"a panel inside itself", {{u"TPanel", u"A"}, {u"TPanel", u"A"}}, false},
      {"a menu item inside itself", {{u"TPopupMenu", u"M"}, {u"TMenuItem", u"X"}, {u"TMenuItem", u"X"}}, false},
      {"257 levels", deep, false},
      {"an unknown class", {{u"TPanel", u"A"}, {u"TNoSuchControl", u"X1"}}, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const auto stream = FormStream([&](rtl::TWriter& w) {
      for (const auto& [cls, name] : c.chain) Open(w, cls, name), w.WriteListEnd();
      for (std::size_t i = 0; i < c.chain.size(); ++i) w.WriteListEnd();
    });
    // The form's own menu item stays in its menu.
    auto form = std::make_unique<ui::TForm>(nullptr);
    auto* menu = new ui::TPopupMenu(form.get());
    menu->Name = u"M";
    auto* item = new ui::TMenuItem(form.get());
    item->Name = u"X";
    menu->Items()->Add(item);
    if (c.unknownClass)
      EXPECT_THROW(ui::ReadComponent(*stream, *form), rtl::EClassNotFound);
    else
      EXPECT_THROW(ui::ReadComponent(*stream, *form), rtl::EFilerError);
    EXPECT_EQ(form->ComponentCount(), 2);
    ASSERT_EQ(menu->Items()->Count(), 1);
    EXPECT_EQ(menu->Items()->Items(0), item);
    form.reset();  // a cycle would loop or free twice here
  }
}

TEST(StreamingHostileWin, AFailureLeavesTheCallersComponentsWhereTheyWere) {
  ui::TForm form(nullptr);
  auto* holder = Place<ui::TPanel>(form, form, u"A");
  auto* label = Place<ui::TLabel>(form, *holder, u"L");
  // L moves into a new panel, then a picture that is no picture stops the load.
  const auto broken = FormStream([](rtl::TWriter& w) {
    Open(w, u"TPanel", u"N");
    w.WriteListEnd();
    Open(w, u"TLabel", u"L");
    for (int i = 0; i < 3; ++i) w.WriteListEnd();
    Open(w, u"TImage", u"I");
    w.WriteStr(u"Picture.Data");
    w.WriteBinary({9, 'T', 'P', 'n', 'g', 'I', 'm', 'a', 'g', 'e', 'n', 'o', 't', 'P', 'N', 'G'});
    w.WriteListEnd();
    w.WriteListEnd();
  });
  EXPECT_THROW(ui::ReadComponent(*broken, form), rtl::Exception);
  EXPECT_EQ(form.ComponentCount(), 2) << "the new panel and image are gone";
  EXPECT_EQ(label->Parent(), holder);
  EXPECT_EQ(form.FindComponent(u"N"), nullptr);
}

TEST(StreamingHostileWin, AReferenceToNoMenuIsRefusedAndSetsNoneOfTheOthers) {
  for (const char16_t* menu : {u"Nobody", u"L2"}) {
    SCOPED_TRACE(rtl::Utf16ToUtf8(menu));
    ui::TForm form(nullptr);
    auto* own = Place<ui::TLabel>(form, form, u"L");
    // The form's L refers to a menu made for the stream, L2 to `menu`.
    const auto stream = FormStream([&](rtl::TWriter& w) {
      Open(w, u"TPopupMenu", u"M");
      w.WriteListEnd(), w.WriteListEnd();
      for (const auto& [label, refers] : {std::pair{u"L", u"M"}, std::pair{u"L2", menu}}) {
        Open(w, u"TLabel", label);
        w.WriteStr(u"PopupMenu"), w.WriteIdent(refers);
        w.WriteListEnd(), w.WriteListEnd();
      }
    });
    EXPECT_THROW(ui::ReadComponent(*stream, form), rtl::EFilerError);
    EXPECT_EQ(own->PopupMenu, nullptr) << "left pointing at the menu freed again";
    EXPECT_EQ(form.ComponentCount(), 1);
  }
}

TEST(StreamingHostileWin, TwoHundredFiftySixNestedPanelsLoadShowAndFree) {
  auto form = std::make_unique<ui::TForm>(nullptr);
  form->SetBounds(0, 0, 640, 480);
  ui::ReadComponent(*FormStream([](rtl::TWriter& w) {
    for (int i = 0; i < 256; ++i) {
      Open(w, u"TPanel", (u"P" + rtl::IntToStr(i)).c_str());
      for (const auto& [property, value] : {std::pair{u"Left", 1}, std::pair{u"Top", 1},
                                            std::pair{u"Width", 600 - i}, std::pair{u"Height", 400 - i}})
        w.WriteStr(property), w.WriteInteger(value);
      w.WriteListEnd();
    }
    for (int i = 0; i < 256; ++i) w.WriteListEnd();
  }), *form);
  ASSERT_EQ(form->ComponentCount(), 256);
  form->Show();
  Pause(50);
  auto* innermost = dynamic_cast<ui::TPanel*>(form->FindComponent(u"P255"));
  ASSERT_NE(innermost, nullptr);
  int depth = 0;
  for (HWND w = innermost->Handle(); w != nullptr && w != form->Handle(); w = GetParent(w)) ++depth;
  EXPECT_EQ(depth, 256) << "each panel's window inside the one before";
  form.reset();
}

TEST(StreamingHostileWin, EveryPrefixAndTenThousandMutationsFailOnlyAsTheLibrarysErrors) {
  const std::u16string file = TempFolder() + u"hostile.dfm";
  SaveCompToFile(*DesignedForm(), file);
  const std::string whole = ReadBytes(file);
  ASSERT_GT(whole.size(), 100u);
  ASSERT_EQ(LoadInto(whole, file), "");
  for (std::size_t n = 0; n < whole.size(); ++n)
    ASSERT_EQ(LoadInto(whole.substr(0, n), file), "refused") << "prefix of " << n << " bytes";

  std::mt19937 random(13);
  int loaded = 0;
  for (int round = 0; round < 10000; ++round) {
    std::string bytes = whole;
    for (int c = 0, changes = 1 + static_cast<int>(random() % 4); c < changes; ++c) {
      const std::size_t at = random() % bytes.size();
      switch (random() % 4) {
        case 0: bytes[at] = static_cast<char>(random()); break;
        case 1: bytes[at] = static_cast<char>(bytes[at] ^ (1 << (random() % 8))); break;
        case 2: bytes.insert(at, 1, static_cast<char>(random() % 24)); break;
        default: bytes.erase(at, 1); break;
      }
    }
    const std::string result = LoadInto(bytes, file);
    ASSERT_TRUE(result.empty() || result == "refused") << "round " << round << ": " << result;
    loaded += result.empty() ? 1 : 0;
  }
  std::printf("10000 mutated files: %d loaded, %d refused\n", loaded, 10000 - loaded);
  DeleteFileW(W(file));
}

}  // namespace
