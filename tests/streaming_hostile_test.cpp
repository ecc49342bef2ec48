// Component streams written by someone else: what the reader refuses before anything is
// made, and where it puts what it accepts.
#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "rtl/filer.h"
#include "rtl/streams.h"
#include "ui/persist_rules.h"

namespace {

using rtl::TWriter;
using Body = std::function<void(TWriter&)>;

// "TPF0", a form with the properties `props` writes, then `children` and the form's end mark.
std::vector<std::uint8_t> FormBytes(const Body& children, const Body& props = [](TWriter&) {}) {
  rtl::TMemoryStream stream;
  TWriter w(stream);
  w.WriteSignature();
  w.WriteStr(u"TForm1");
  w.WriteStr(u"Form1");
  props(w);
  w.WriteListEnd();
  children(w);
  w.WriteListEnd();
  return stream.Bytes();
}

ui::TComponentTree Read(const std::vector<std::uint8_t>& bytes, const char16_t* root = u"TForm") {
  rtl::TMemoryStream stream(bytes);
  return ui::ReadComponentTree(stream, root);
}

// A component without properties whose children `inside` writes.
Body Child(std::u16string cls, std::u16string name, Body inside = [](TWriter&) {}) {
  return [=](TWriter& w) {
    w.WriteStr(cls);
    w.WriteStr(name);
    w.WriteListEnd();
    inside(w);
    w.WriteListEnd();
  };
}

Body Both(Body a, Body b) {
  return [=](TWriter& w) {
    a(w);
    b(w);
  };
}

// `depth` panels, each inside the one before.
Body Nested(int depth) {
  return [=](TWriter& w) {
    for (int i = 0; i < depth; ++i) {
      w.WriteStr(u"TPanel");
      w.WriteStr(u"P" + rtl::IntToStr(i));
      w.WriteListEnd();
    }
    for (int i = 0; i < depth; ++i) w.WriteListEnd();
  };
}

// A component with one property.
Body With(const char16_t* cls, const char16_t* name, const char16_t* property, Body value) {
  return [=](TWriter& w) {
    w.WriteStr(cls);
    w.WriteStr(name);
    w.WriteStr(property);
    value(w);
    w.WriteListEnd();
    w.WriteListEnd();
  };
}

Body LabelWith(const char16_t* property, Body value) {
  return With(u"TLabel", u"L", property, value);
}

Body Picture(std::vector<std::uint8_t> data) {
  return [=](TWriter& w) {
    w.WriteStr(u"TImage");
    w.WriteStr(u"I");
    w.WriteStr(u"Picture.Data");
    w.WriteBinary(data);
    w.WriteListEnd();
    w.WriteListEnd();
  };
}

std::vector<std::uint8_t> GraphicData(const char* cls, std::vector<std::uint8_t> rest) {
  std::vector<std::uint8_t> data{static_cast<std::uint8_t>(std::string(cls).size())};
  data.insert(data.end(), cls, cls + std::string(cls).size());
  data.insert(data.end(), rest.begin(), rest.end());
  return data;
}

enum class Refusal { filer, classNotFound, read };

struct HostileCase {
  const char* what;
  Body children;
  Refusal refusal;
  const char16_t* named = nullptr;  // what the message names, as a word of its own
};

TEST(StreamingHostile, StreamsThatAreRefusedBeforeAnythingIsMade) {
  const HostileCase cases[] = {
      {"a panel inside itself", Child(u"TPanel", u"A", Child(u"TPanel", u"A")), Refusal::filer},
      {"A in B in A", Child(u"TPanel", u"A", Child(u"TPanel", u"B", Child(u"TPanel", u"A"))),
       Refusal::filer},
      {"the same name in another case", Both(Child(u"TPanel", u"Abc"), Child(u"TLabel", u"aBC")),
       Refusal::filer},
      {"a menu item inside itself",
       Child(u"TPopupMenu", u"M", Child(u"TMenuItem", u"X", Child(u"TMenuItem", u"X"))),
       Refusal::filer},
      {"257 levels", Nested(257), Refusal::filer},
      {"an unknown class", Child(u"TNoSuchControl", u"X"), Refusal::classNotFound, u"TNoSuchControl"},
      {"a form inside a form", Child(u"TForm", u"F2"), Refusal::classNotFound},
      {"an abstract class", Child(u"TWinControl", u"W"), Refusal::classNotFound},
      {"a property the class lacks", LabelWith(u"BevelInner", [](TWriter& w) { w.WriteIdent(u"bvNone"); }),
       Refusal::filer, u"BevelInner"},
      {"text for a number", LabelWith(u"Left", [](TWriter& w) { w.WriteString(u"10"); }), Refusal::filer},
      {"a width beyond 32 bits", LabelWith(u"Width", [](TWriter& w) { w.WriteInteger(1ll << 40); }),
       Refusal::filer},
      {"an unknown alignment", LabelWith(u"Align", [](TWriter& w) { w.WriteIdent(u"alMiddle"); }),
       Refusal::filer, u"alMiddle"},
      {"an unknown colour name", LabelWith(u"Color", [](TWriter& w) { w.WriteIdent(u"clPuce"); }),
       Refusal::filer, u"clPuce"},
      {"a number for a Boolean", LabelWith(u"AutoSize", [](TWriter& w) { w.WriteInteger(1); }),
       Refusal::filer},
      {"a bitmap without its length", Picture(GraphicData("TBitmap", {1, 2})), Refusal::read},
      {"a bitmap longer than its data", Picture(GraphicData("TBitmap", {200, 0, 0, 0, 'B', 'M'})),
       Refusal::filer, u"Bitmap-Länge"},
      {"a negative bitmap length", Picture(GraphicData("TBitmap", {0xFF, 0xFF, 0xFF, 0xFF})),
       Refusal::filer, u"Bitmap-Länge"},
      {"an unknown graphic class", Picture(GraphicData("TFrobImage", {1, 2, 3})),
       Refusal::classNotFound},
      {"picture data without a class", Picture({}), Refusal::read},
  };
  for (const HostileCase& c : cases) {
    auto expect = [&](Refusal refusal, const rtl::Exception& e) {
      EXPECT_EQ(c.refusal, refusal) << c.what;
      if (c.named != nullptr) {
        EXPECT_NE(e.Message().find(u" " + std::u16string(c.named)), std::u16string::npos)
            << c.what << ": " << e.what();
      }
    };
    try {
      Read(FormBytes(c.children));
      ADD_FAILURE() << c.what << ": read";
    } catch (const rtl::EClassNotFound& e) {
      expect(Refusal::classNotFound, e);
    } catch (const rtl::EFilerError& e) {
      expect(Refusal::filer, e);
    } catch (const rtl::EReadError& e) {
      expect(Refusal::read, e);
    } catch (const std::exception& e) {
      ADD_FAILURE() << c.what << ": " << typeid(e).name() << " " << e.what();
    }
  }
}

TEST(StreamingHostile, NestingUpToTheLimitIsRead) {
  const ui::TComponentTree tree = Read(FormBytes(Nested(ui::kMaxNestingDepth)));
  ASSERT_EQ(tree.Children.size(), 256u);
  EXPECT_EQ(tree.Children[0].Parent, -1);
  for (int i = 1; i < 256; ++i) ASSERT_EQ(tree.Children[static_cast<std::size_t>(i)].Parent, i - 1);
}

TEST(StreamingHostile, EveryPrefixOfAFormIsRefusedWithTheFormatsErrors) {
  const std::vector<std::uint8_t> whole = FormBytes(Both(
      Child(u"TPanel", u"Panel1",
            Both(LabelWith(u"Caption", [](TWriter& w) { w.WriteString(u"Grüße"); }),
                 Picture(GraphicData("TBitmap", {2, 0, 0, 0, 'B', 'M'})))),
      Child(u"TPopupMenu", u"Menu1", Child(u"TMenuItem", u"Item1"))));
  ASSERT_NO_THROW(Read(whole));
  for (std::size_t n = 0; n < whole.size(); ++n) {
    const std::vector<std::uint8_t> prefix(whole.begin(), whole.begin() + static_cast<long>(n));
    try {
      Read(prefix);
      ADD_FAILURE() << "a prefix of " << n << " bytes was read";
    } catch (const rtl::Exception&) {
    } catch (const std::exception& e) {
      ADD_FAILURE() << n << " bytes: " << e.what();
    }
  }
}

TEST(StreamingHostile, ComponentsGoWhereTheirClassCanLive) {
  // Inside a panel every control goes into it; timers and menus live only in their owner,
  // menu items go only into menus. A label inside a shape goes nowhere.
  const struct {
    const char16_t* cls;
    bool intoPanel;
  } classes[] = {
      {u"TLabel", true},       {u"TPanel", true},        {u"TImage", true},
      {u"TShape", true},       {u"TSpeedButton", true},  {u"TScrollBox", true},
      {u"TListBox", true},     {u"TCheckListBox", true}, {u"TMemo", true},
      {u"TCheckBox", true},    {u"TStringGrid", true},   {u"THeaderControl", true},
      {u"TTimer", false},      {u"TPopupMenu", false},   {u"TMenuItem", false},
  };
  Body inPanel = [](TWriter&) {};
  for (const auto& c : classes) inPanel = Both(inPanel, Child(c.cls, u"In" + std::u16string(c.cls)));
  const ui::TComponentTree tree = Read(FormBytes(
      Both(Child(u"TShape", u"S", Child(u"TLabel", u"InShape")), Child(u"TPanel", u"P", inPanel))));
  auto find = [&](std::u16string_view name) -> const ui::TStreamedComponent& {
    for (const auto& c : tree.Children)
      if (c.Name == name) return c;
    throw std::logic_error("missing");
  };
  auto index = [&](std::u16string_view name) {
    return static_cast<int>(&find(name) - tree.Children.data());
  };
  EXPECT_EQ(find(u"S").Parent, -1);
  EXPECT_EQ(find(u"InShape").Parent, ui::kNoParent);
  EXPECT_EQ(find(u"InShape").Enclosing, index(u"S"));
  for (const auto& c : classes)
    EXPECT_EQ(find(u"In" + std::u16string(c.cls)).Parent, c.intoPanel ? index(u"P") : ui::kNoParent)
        << rtl::Utf16ToUtf8(c.cls);

  const ui::TComponentTree menus = Read(FormBytes(Child(
      u"TPopupMenu", u"M", Child(u"TMenuItem", u"A", Child(u"TMenuItem", u"B")))));
  ASSERT_EQ(menus.Children.size(), 3u);
  EXPECT_EQ(menus.Children[0].Parent, ui::kNoParent);
  EXPECT_EQ(menus.Children[1].Parent, 0);
  EXPECT_EQ(menus.Children[2].Parent, 1);

  // A plain component read as the root has no place for controls.
  EXPECT_EQ(Read(FormBytes(Child(u"TLabel", u"L")), u"TComponent").Children.at(0).Parent,
            ui::kNoParent);
}

TEST(StreamingHostile, ValuesArriveCheckedAndSpelledAsTheClassSpellsThem) {
  // Each on an unnamed component of its own; unnamed components may be many.
  const struct {
    const char16_t* cls;
    const char16_t* property;
    Body value;
    std::int64_t integer;
    std::u16string text;
  } values[] = {
      {u"TLabel", u"align", [](TWriter& w) { w.WriteIdent(u"ALCLIENT"); }, 5, u"alClient"},
      {u"TLabel", u"Width", [](TWriter& w) { w.WriteInteger(100); }, 100, u""},
      {u"TLabel", u"AlignWithMargins", [](TWriter& w) { w.WriteBoolean(true); }, 1, u""},
      {u"TLabel", u"Tag", [](TWriter& w) { w.WriteInteger(std::int64_t{1} << 40); },
       std::int64_t{1} << 40, u""},
      // The system colour COLOR_BTNFACE (15), as the framework stores it.
      {u"TLabel", u"Color", [](TWriter& w) { w.WriteIdent(u"clBtnFace"); },
       std::int32_t(0xFF00000Fu), u"clBtnFace"},
      {u"TPanel", u"Color", [](TWriter& w) { w.WriteInteger(0x123456); }, 0x123456, u""},
  };
  Body children = Picture(GraphicData("TBitmap", {3, 0, 0, 0, 'B', 'M', 'x', 'y', 'z'}));
  for (auto it = std::rbegin(values); it != std::rend(values); ++it)
    children = Both(With(it->cls, u"", it->property, it->value), children);
  const ui::TComponentTree tree = Read(FormBytes(children, [](TWriter& w) {
    w.WriteStr(u"BorderStyle");
    w.WriteIdent(u"bsSizeable");
  }));
  ASSERT_EQ(tree.Children.size(), std::size(values) + 1);
  for (std::size_t i = 0; i < std::size(values); ++i) {
    const ui::TPropertyValue& v = tree.Children[i].Properties.at(0);
    EXPECT_EQ(v.Integer, values[i].integer) << rtl::Utf16ToUtf8(values[i].property);
    EXPECT_EQ(v.Text, values[i].text) << rtl::Utf16ToUtf8(values[i].property);
  }
  EXPECT_EQ(tree.Children[0].Properties[0].Info->Name, u"Align");
  const ui::TPropertyValue& border = tree.Root.Properties.at(0);
  EXPECT_EQ(border.Integer, 2) << "bsNone, bsSingle, bsSizeable, ...";
  EXPECT_EQ(border.Text, u"bsSizeable");
  const ui::TPropertyValue& picture = tree.Children.back().Properties.at(0);
  EXPECT_EQ(picture.GraphicClass, u"TBitmap");
  EXPECT_EQ(picture.Bytes, (std::vector<std::uint8_t>{'B', 'M', 'x'})) << "the stated length, not the rest";
}

}  // namespace
