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

const Body kNothing = [](TWriter&) {};
Body Ident(std::u16string s) { return [=](TWriter& w) { w.WriteIdent(s); }; }
Body Int(std::int64_t i) { return [=](TWriter& w) { w.WriteInteger(i); }; }
Body Text(std::u16string s) { return [=](TWriter& w) { w.WriteString(s); }; }
Body Set(std::vector<std::u16string> members) { return [=](TWriter& w) { w.WriteSet(members); }; }
// A collection whose items each write their properties with one of `items`.
Body Collection(std::vector<Body> items) {
  return [=](TWriter& w) {
    w.WriteValue(rtl::vaCollection);
    for (const Body& item : items) w.WriteValue(rtl::vaList), item(w), w.WriteListEnd();
    w.WriteListEnd();
  };
}

// A component: its class, its name, the properties `props` writes, the children `inside` writes.
Body Component(std::u16string cls, std::u16string name, Body props, Body inside = kNothing) {
  return [=](TWriter& w) {
    w.WriteStr(cls), w.WriteStr(name), props(w), w.WriteListEnd(), inside(w), w.WriteListEnd();
  };
}

std::vector<std::uint8_t> FormBytes(const Body& children, const Body& props = kNothing) {
  rtl::TMemoryStream stream;
  TWriter w(stream);
  w.WriteSignature();
  Component(u"TForm1", u"Form1", props, children)(w);
  return stream.Bytes();
}

ui::TComponentTree Read(const std::vector<std::uint8_t>& bytes, const char16_t* root = u"TForm") {
  rtl::TMemoryStream stream(bytes);
  return ui::ReadComponentTree(stream, root);
}

Body Child(std::u16string cls, std::u16string name, Body inside = kNothing) {
  return Component(cls, name, kNothing, inside);
}

Body Both(Body a, Body b) { return [=](TWriter& w) { a(w), b(w); }; }
Body Property(std::u16string name, Body value) { return [=](TWriter& w) { w.WriteStr(name), value(w); }; }

// Panels `from` to `depth` - 1, each inside the one before.
Body Nested(int depth, int from = 0) {
  if (from == depth) return kNothing;
  return Child(u"TPanel", u"P" + rtl::IntToStr(from), Nested(depth, from + 1));
}

Body With(std::u16string cls, std::u16string name, std::u16string property, Body value) {
  return Component(cls, name, Property(property, value));
}

Body LabelWith(const char16_t* property, Body value) { return With(u"TLabel", u"L", property, value); }
Body Sections(std::vector<Body> items) { return With(u"THeaderControl", u"H", u"Sections", Collection(items)); }
Body Grid(std::u16string name, int cols, int rows) {
  return Component(u"TStringGrid", name, Both(Property(u"ColCount", Int(cols)), Property(u"RowCount", Int(rows))));
}

// An image whose picture data name the graphic class `cls` (none when empty).
Body Picture(const std::string& cls, std::vector<std::uint8_t> rest) {
  std::vector<std::uint8_t> data;
  if (!cls.empty()) data.push_back(static_cast<std::uint8_t>(cls.size()));
  data.insert(data.end(), cls.begin(), cls.end());
  data.insert(data.end(), rest.begin(), rest.end());
  return With(u"TImage", u"I", u"Picture.Data", [=](TWriter& w) { w.WriteBinary(data); });
}

enum class Refusal { filer, classNotFound, read, other };

TEST(StreamingHostile, StreamsThatAreRefusedBeforeAnythingIsMade) {
  // `named`: what the message names, as a word of its own.
  using enum Refusal;
  const struct { const char* what; Body children; Refusal refusal; const char16_t* named = nullptr; } cases[] = {
      {"a panel inside itself", Child(u"TPanel", u"A", Child(u"TPanel", u"A")), filer},
      {"A in B in A", Child(u"TPanel", u"A", Child(u"TPanel", u"B", Child(u"TPanel", u"A"))), filer},
      {"one name in two cases", Both(Child(u"TPanel", u"Abc"), Child(u"TLabel", u"aBC")), filer},
      {"a menu item inside itself",
       Child(u"TPopupMenu", u"M", Child(u"TMenuItem", u"X", Child(u"TMenuItem", u"X"))), filer},
      {"257 levels", Nested(257), filer},
      {"an unknown class", Child(u"TNoSuchControl", u"X"), classNotFound, u"TNoSuchControl"},
      {"a form inside a form", Child(u"TForm", u"F2"), classNotFound},
      {"an abstract class", Child(u"TWinControl", u"W"), classNotFound},
      {"a property the class lacks", LabelWith(u"BevelInner", Ident(u"bvNone")), filer, u"BevelInner"},
      {"text for a number", LabelWith(u"Left", [](TWriter& w) { w.WriteString(u"10"); }), filer},
      {"a width beyond 32 bits", LabelWith(u"Width", Int(1ll << 40)), filer},
      {"an unknown alignment", LabelWith(u"Align", Ident(u"alMiddle")), filer, u"alMiddle"},
      {"an unknown colour name", LabelWith(u"Color", Ident(u"clPuce")), filer, u"clPuce"},
      {"a number for a Boolean", LabelWith(u"AutoSize", Int(1)), filer},
      {"a bitmap without its length", Picture("TBitmap", {1, 2}), read},
      {"a bitmap longer than its data", Picture("TBitmap", {200, 0, 0, 0, 'B', 'M'}), filer, u"Bitmap-Länge"},
      {"a negative bitmap length", Picture("TBitmap", {0xFF, 0xFF, 0xFF, 0xFF}), filer, u"Bitmap-Länge"},
      {"an unknown graphic class", Picture("TFrobImage", {1, 2, 3}), classNotFound},
      {"picture data without a class", Picture("", {}), read},
      {"an anchor that is none", LabelWith(u"Anchors", Set({u"akLeft", u"akMiddle"})), filer, u"akMiddle"},
      {"a set as one name", LabelWith(u"Anchors", Ident(u"akLeft")), filer},
      {"a number for a font style", LabelWith(u"Font.Style", Int(1)), filer},
      {"a part the font lacks", LabelWith(u"Font.Size", Int(8)), filer, u"Font.Size"},
      {"a negative margin", LabelWith(u"Margins.Left", Int(-1)), filer},
      {"an unknown cursor", LabelWith(u"Cursor", Ident(u"crBanana")), filer, u"crBanana"},
      {"a cursor beyond 16 bits", LabelWith(u"Cursor", Int(40000)), filer},
      {"an unknown charset", LabelWith(u"Font.Charset", Ident(u"KLINGON_CHARSET")), filer, u"KLINGON_CHARSET"},
      {"a character set beyond a byte", LabelWith(u"Font.Charset", Int(256)), filer},
      {"a reference as text", LabelWith(u"PopupMenu", Text(u"Menu1")), filer},
      {"a reference as True", LabelWith(u"PopupMenu", Ident(u"True")), filer},
      {"an unknown shape", With(u"TShape", u"S", u"Shape", Ident(u"stStar")), filer, u"stStar"},
      {"a pen wider than any screen", With(u"TShape", u"S", u"Pen.Width", Int(1 << 20)), filer},
      {"a negative interval", With(u"TTimer", u"T", u"Interval", Int(-1)), filer},
      {"check marks as text", With(u"TCheckListBox", u"C", u"Checks", Text(u"1")), filer},
      {"sections as a list of strings", With(u"THeaderControl", u"H", u"Sections",
          [](TWriter& w) { w.WriteValue(rtl::vaList), w.WriteListEnd(); }), filer},
      {"a section property it lacks", Sections({Property(u"Caption", Text(u"x"))}), filer, u"Caption"},
      {"a section that is no list", With(u"THeaderControl", u"H", u"Sections",
          [](TWriter& w) { w.WriteValue(rtl::vaCollection), w.WriteString(u"x"), w.WriteListEnd(); }), filer},
      {"a section as its own component", Child(u"THeaderSection", u"S"), classNotFound},
      {"a grid without columns", Grid(u"G", 0, 5), filer},
      {"a grid of 52429 x 5 cells", Grid(u"G", 52429, 5), filer},
      {"grids of 512 x 512 cells together", Both(Grid(u"G1", 512, 256), Grid(u"G2", 512, 257)), filer},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    try {
      Read(FormBytes(c.children));
      ADD_FAILURE() << "read";
    } catch (const rtl::Exception& e) {
      const Refusal got = dynamic_cast<const rtl::EClassNotFound*>(&e) ? classNotFound
                          : dynamic_cast<const rtl::EFilerError*>(&e)  ? filer
                          : dynamic_cast<const rtl::EReadError*>(&e)   ? read
                                                                       : other;
      EXPECT_EQ(got, c.refusal) << e.what();
      if (c.named != nullptr) {
        EXPECT_NE(e.Message().find(u" " + std::u16string(c.named)), std::u16string::npos) << e.what();
      }
    }
  }
}

TEST(StreamingHostile, NestingUpToTheLimitIsRead) {
  const ui::TComponentTree tree = Read(FormBytes(Nested(256)));
  ASSERT_EQ(tree.Children.size(), 256u);
  for (int i = 0; i < 256; ++i) ASSERT_EQ(tree.Children[static_cast<std::size_t>(i)].Parent, i - 1);
}

TEST(StreamingHostile, EveryPrefixOfAFormIsRefusedWithTheFormatsErrors) {
  const std::vector<std::uint8_t> whole = FormBytes(Both(
      Child(u"TPanel", u"Panel1",
            Both(Both(LabelWith(u"Caption", [](TWriter& w) { w.WriteString(u"Grüße"); }),
                      Picture("TBitmap", {2, 0, 0, 0, 'B', 'M'})),
                 Both(Sections({Both(Property(u"Text", Text(u"A")), Property(u"Width", Int(80)))}),
                      Component(u"TShape", u"S", Both(Property(u"Font.Style", Set({u"fsBold"})),
                                                      Property(u"Cursor", Ident(u"crHandPoint"))))))),
      Child(u"TPopupMenu", u"Menu1", Child(u"TMenuItem", u"Item1"))));
  ASSERT_NO_THROW(Read(whole));
  for (std::size_t n = 0; n < whole.size(); ++n)
    EXPECT_THROW(Read({whole.begin(), whole.begin() + static_cast<long>(n)}), rtl::Exception) << n;
}

TEST(StreamingHostile, ComponentsGoWhereTheirClassCanLive) {
  // Inside a panel every control goes into it; timers and menus live only in their owner,
  // menu items only in menus. A label inside a shape goes nowhere.
  const struct { const char16_t* cls; bool intoPanel; } classes[] = {
      {u"TLabel", true}, {u"TPanel", true}, {u"TImage", true}, {u"TShape", true},
      {u"TSpeedButton", true}, {u"TScrollBox", true}, {u"TListBox", true}, {u"TMemo", true},
      {u"TCheckListBox", true}, {u"TCheckBox", true}, {u"TStringGrid", true},
      {u"THeaderControl", true}, {u"TTimer", false}, {u"TPopupMenu", false}, {u"TMenuItem", false}};
  Body inPanel = kNothing;
  for (const auto& c : classes) inPanel = Both(inPanel, Child(c.cls, u"In" + std::u16string(c.cls)));
  const ui::TComponentTree tree = Read(FormBytes(
      Both(Child(u"TShape", u"S", Child(u"TLabel", u"InShape")), Child(u"TPanel", u"P", inPanel))));
  // Written in this order: S, InShape, P, then the table's.
  ASSERT_EQ(tree.Children.size(), 3 + std::size(classes));
  EXPECT_EQ(tree.Children[0].Parent, -1);
  EXPECT_EQ(tree.Children[1].Parent, ui::kNoParent);
  EXPECT_EQ(tree.Children[1].Enclosing, 0);
  for (std::size_t i = 0; i < std::size(classes); ++i)
    EXPECT_EQ(tree.Children[3 + i].Parent, classes[i].intoPanel ? 2 : ui::kNoParent)
        << rtl::Utf16ToUtf8(classes[i].cls);

  const ui::TComponentTree menus = Read(FormBytes(Child(
      u"TPopupMenu", u"M", Child(u"TMenuItem", u"A", Child(u"TMenuItem", u"B")))));
  EXPECT_EQ(menus.Children.at(0).Parent, ui::kNoParent);
  EXPECT_EQ(menus.Children.at(1).Parent, 0);
  EXPECT_EQ(menus.Children.at(2).Parent, 1);
  // A plain component read as the root has no place for controls.
  EXPECT_EQ(Read(FormBytes(Child(u"TLabel", u"L")), u"TComponent").Children.at(0).Parent,
            ui::kNoParent);
}

TEST(StreamingHostile, CollectionItemsArriveInTheirOrderWithTheirProperties) {
  // The framework may put an item's index before it.
  const ui::TComponentTree tree = Read(FormBytes(With(u"THeaderControl", u"H", u"Sections", [](TWriter& w) {
    w.WriteValue(rtl::vaCollection);
    w.WriteValue(rtl::vaList), w.WriteStr(u"Text"), w.WriteString(u"Name"), w.WriteStr(u"Width"),
        w.WriteInteger(120), w.WriteListEnd();
    w.WriteInteger(1);
    w.WriteValue(rtl::vaList), w.WriteStr(u"width"), w.WriteInteger(30), w.WriteListEnd();
    w.WriteValue(rtl::vaList), w.WriteListEnd();
    w.WriteListEnd();
  })));
  const std::vector<std::vector<ui::TPropertyValue>>& items = tree.Children.at(0).Properties.at(0).Items;
  ASSERT_EQ(items.size(), 3u);
  ASSERT_EQ(std::vector<std::size_t>({items[0].size(), items[1].size(), items[2].size()}),
            std::vector<std::size_t>({2, 1, 0}));
  EXPECT_EQ(items[0][0].Text, u"Name");
  EXPECT_EQ(items[0][1].Integer, 120);
  EXPECT_EQ(items[1][0].Info->Name, u"Width");
  EXPECT_EQ(items[1][0].Integer, 30);
}

TEST(StreamingHostile, ValuesArriveCheckedAndSpelledAsTheClassSpellsThem) {
  // Each on an unnamed component of its own; unnamed components may be many.
  const struct { const char16_t *cls, *property; Body value; std::int64_t integer;
                 std::u16string text; } values[] = {
      {u"TLabel", u"align", Ident(u"ALCLIENT"), 5, u"alClient"},
      {u"TLabel", u"Width", Int(100), 100, u""},
      {u"TLabel", u"AlignWithMargins", [](TWriter& w) { w.WriteBoolean(true); }, 1, u""},
      {u"TLabel", u"Tag", Int(std::int64_t{1} << 40), std::int64_t{1} << 40, u""},
      // The system colour COLOR_BTNFACE (15), as the framework stores it.
      {u"TLabel", u"Color", Ident(u"clBtnFace"), std::int32_t(0xFF00000Fu), u"clBtnFace"},
      {u"TPanel", u"Color", Int(0x123456), 0x123456, u""},
      // Bit i for the i-th of akLeft, akTop, akRight, akBottom.
      {u"TLabel", u"Anchors", Set({u"akRight", u"AKTOP"}), 0b0110, u""},
      {u"TLabel", u"Font.Style", Set({}), 0, u""},
      // The framework's numbers: crHandPoint is -21; a program's own cursor is a number.
      {u"TLabel", u"Cursor", Ident(u"crHandPoint"), -21, u"crHandPoint"},
      {u"TLabel", u"Cursor", Int(5), 5, u""},
      {u"TLabel", u"Font.Charset", Ident(u"default_charset"), 1, u"default_charset"},
      {u"TLabel", u"Font.Charset", Int(238), 238, u""},
      {u"TLabel", u"PopupMenu", Ident(u"Menu1"), 0, u"Menu1"},
      {u"TLabel", u"PopupMenu", Ident(u"nil"), 0, u""},
      {u"TTimer", u"Interval", Int(0xFFFFFFFF), 0xFFFFFFFF, u""},
      {u"TShape", u"Shape", Ident(u"stCircle"), 5, u"stCircle"},
      // With the five rows it starts with, the most columns there may be.
      {u"TStringGrid", u"ColCount", Int(52428), 52428, u""},
  };
  Body children = Picture("TBitmap", {3, 0, 0, 0, 'B', 'M', 'x', 'y', 'z'});
  for (auto it = std::rbegin(values); it != std::rend(values); ++it)
    children = Both(With(it->cls, u"", it->property, it->value), children);
  const ui::TComponentTree tree =
      Read(FormBytes(children, Both([](TWriter& w) { w.WriteStr(u"BorderStyle"); }, Ident(u"bsSizeable"))));
  ASSERT_EQ(tree.Children.size(), std::size(values) + 1);
  for (std::size_t i = 0; i < std::size(values); ++i) {
    SCOPED_TRACE(rtl::Utf16ToUtf8(values[i].property));
    const ui::TPropertyValue& v = tree.Children[i].Properties.at(0);
    EXPECT_EQ(v.Integer, values[i].integer);
    EXPECT_EQ(v.Text, values[i].text);
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
