// Component files written by someone else, loaded into real forms under Wine: what fails
// fails with the library's exceptions and leaves the caller's form as it was; what loads
// can be shown and freed.
#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <string>

#include "rtl/filer.h"
#include "rtl/streams.h"
#include "tools/streaming.h"
#include "ui/extctrls.h"
#include "ui/forms.h"
#include "ui/menus.h"
#include "ui/persist.h"
#include "ui/stdctrls.h"
#include "tests/message_pump.h"
#include "win_support.h"

namespace {

using namespace Qm_tools;
using namespace nox_test;

std::unique_ptr<rtl::TMemoryStream> Stream(const std::function<void(rtl::TWriter&)>& children) {
  auto stream = std::make_unique<rtl::TMemoryStream>();
  rtl::TWriter w(*stream);
  w.WriteSignature();
  w.WriteStr(u"TForm");
  w.WriteStr(u"F");
  w.WriteListEnd();
  children(w);
  w.WriteListEnd();
  stream->SetPosition(0);
  return stream;
}

void Open(rtl::TWriter& w, const char16_t* cls, const char16_t* name) {
  w.WriteStr(cls);
  w.WriteStr(name);
}

// A form as a program would design it: panels, labels, a menu, an image and lists.
std::string DesignedFormFile() {
  ui::TForm form(nullptr);
  form.Name = u"Designed";
  form.SetBounds(10, 20, 400, 300);
  auto* top = new ui::TPanel(&form);
  top->Name = u"Top";
  top->SetParent(&form);
  top->SetAlign(ui::alTop);
  auto* inner = new ui::TPanel(&form);
  inner->Name = u"Inner";
  inner->SetParent(top);
  auto* label = new ui::TLabel(&form);
  label->Name = u"Caption1";
  label->SetParent(inner);
  label->SetCaption(u"Grüße");
  auto* image = new ui::TImage(&form);
  image->Name = u"Logo";
  image->SetParent(&form);
  image->Picture.Assign(ui::CreateDib24(6, 4, [](int x, int) { return x < 3 ? ui::clRed : ui::clBlue; }));
  ConvertImgToPngSize(*image, 8);
  auto* list = new ui::TListBox(&form);
  list->Name = u"List1";
  list->SetParent(&form);
  list->Items().Add(u"eins");
  list->Items().Add(u"zwei");
  auto* memo = new ui::TMemo(&form);
  memo->Name = u"Memo1";
  memo->SetParent(&form);
  memo->SetText(u"a\r\nb");
  auto* menu = new ui::TPopupMenu(&form);
  menu->Name = u"Menu1";
  auto* item = new ui::TMenuItem(&form);
  item->Name = u"Open1";
  item->Caption = u"Ö&ffnen";
  menu->Items()->Add(item);
  auto* sub = new ui::TMenuItem(&form);
  sub->Name = u"Recent1";
  item->Add(sub);
  const std::u16string file = TempFolder() + u"designed.dfm";
  SaveCompToFile(form, file);
  return ReadBytes(file);
}

// Loads `bytes` as a file into a new form: "" when it loaded, else the exception's class.
// A failure must leave the form without components.
std::string LoadInto(const std::string& bytes, const std::u16string& file) {
  if (!WriteBytes(file, bytes)) return "not written";
  ui::TForm form(nullptr);
  try {
    LoadCompFromFile(form, file);
    return "";
  } catch (const rtl::Exception& e) {
    if (form.ComponentCount() != 0) return "half-built after " + std::string(e.what());
    return "refused";
  } catch (const std::exception& e) {
    return std::string("foreign ") + typeid(e).name() + ": " + e.what();
  }
}

TEST(StreamingHostileWin, CyclesAndSelfNestingAreRefusedAndTheFormFreesCleanly) {
  const auto cycle = Stream([](rtl::TWriter& w) {
    Open(w, u"TPanel", u"A");
    w.WriteListEnd();
    Open(w, u"TPanel", u"B");
    w.WriteListEnd();
    Open(w, u"TPanel", u"A");
    w.WriteListEnd();
    for (int i = 0; i < 6; ++i) w.WriteListEnd();
  });
  const auto self = Stream([](rtl::TWriter& w) {
    Open(w, u"TPanel", u"A");
    w.WriteListEnd();
    Open(w, u"TPanel", u"A");
    w.WriteListEnd();
    for (int i = 0; i < 4; ++i) w.WriteListEnd();
  });
  for (rtl::TMemoryStream* s : {cycle.get(), self.get()}) {
    auto form = std::make_unique<ui::TForm>(nullptr);
    EXPECT_THROW(ui::ReadComponent(*s, *form), rtl::EFilerError);
    EXPECT_EQ(form->ComponentCount(), 0);
    form.reset();  // a cycle would loop or free twice here
  }

  // A menu item listed inside itself: refused, and the form's own item stays in its menu.
  ui::TForm form(nullptr);
  auto* menu = new ui::TPopupMenu(&form);
  menu->Name = u"M";
  auto* item = new ui::TMenuItem(&form);
  item->Name = u"X";
  menu->Items()->Add(item);
  const auto menuSelf = Stream([](rtl::TWriter& w) {
    Open(w, u"TPopupMenu", u"M");
    w.WriteListEnd();
    Open(w, u"TMenuItem", u"X");
    w.WriteListEnd();
    Open(w, u"TMenuItem", u"X");
    w.WriteListEnd();
    for (int i = 0; i < 4; ++i) w.WriteListEnd();
  });
  EXPECT_THROW(ui::ReadComponent(*menuSelf, form), rtl::EFilerError);
  ASSERT_EQ(menu->Items()->Count(), 1);
  EXPECT_EQ(menu->Items()->Items(0), item);
}

TEST(StreamingHostileWin, AFailureLeavesTheCallersComponentsWhereTheyWere) {
  ui::TForm form(nullptr);
  auto* holder = new ui::TPanel(&form);
  holder->Name = u"A";
  holder->SetParent(&form);
  auto* label = new ui::TLabel(&form);
  label->Name = u"L";
  label->SetParent(holder);
  // L moves into a new panel, then a picture that is no picture stops the load.
  const auto broken = Stream([](rtl::TWriter& w) {
    Open(w, u"TPanel", u"N");
    w.WriteListEnd();
    Open(w, u"TLabel", u"L");
    w.WriteListEnd();
    w.WriteListEnd();
    w.WriteListEnd();
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

TEST(StreamingHostileWin, TwoHundredFiftySixNestedPanelsLoadShowAndFree) {
  auto nested = [](int depth) {
    return Stream([depth](rtl::TWriter& w) {
      for (int i = 0; i < depth; ++i) {
        Open(w, u"TPanel", (u"P" + rtl::IntToStr(i)).c_str());
        w.WriteStr(u"Left");
        w.WriteInteger(1);
        w.WriteStr(u"Top");
        w.WriteInteger(1);
        w.WriteStr(u"Width");
        w.WriteInteger(600 - i);
        w.WriteStr(u"Height");
        w.WriteInteger(400 - i);
        w.WriteListEnd();
      }
      for (int i = 0; i < depth; ++i) w.WriteListEnd();
    });
  };
  {
    ui::TForm form(nullptr);
    EXPECT_THROW(ui::ReadComponent(*nested(257), form), rtl::EFilerError);
    EXPECT_EQ(form.ComponentCount(), 0);
  }
  auto form = std::make_unique<ui::TForm>(nullptr);
  form->SetBounds(0, 0, 640, 480);
  ui::ReadComponent(*nested(256), *form);
  ASSERT_EQ(form->ComponentCount(), 256);
  form->Show();
  PumpUntil([] { return false; }, 50);
  auto* innermost = dynamic_cast<ui::TPanel*>(form->FindComponent(u"P255"));
  ASSERT_NE(innermost, nullptr);
  int depth = 0;
  for (HWND w = innermost->Handle(); w != nullptr && w != form->Handle(); w = GetParent(w)) ++depth;
  EXPECT_EQ(depth, 256) << "each panel's window inside the one before";
  form.reset();
}

TEST(StreamingHostileWin, EveryPrefixAndTenThousandMutationsFailOnlyAsTheLibrarysErrors) {
  const std::string whole = DesignedFormFile();
  ASSERT_GT(whole.size(), 100u);
  const std::u16string file = TempFolder() + u"hostile.dfm";
  ASSERT_EQ(LoadInto(whole, file), "");
  for (std::size_t n = 0; n < whole.size(); ++n)
    ASSERT_EQ(LoadInto(whole.substr(0, n), file), "refused") << "prefix of " << n << " bytes";

  std::mt19937 random(13);
  int loaded = 0;
  for (int round = 0; round < 10000; ++round) {
    std::string bytes = whole;
    const int changes = 1 + static_cast<int>(random() % 4);
    for (int c = 0; c < changes; ++c) {
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
