// Component streams written by someone else: what the reader refuses before anything is
// made, and where it puts what it accepts.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "rtl/filer.h"
#include "rtl/streams.h"
#include "ui/persist_rules.h"

namespace {

using rtl::TWriter;
using Body = std::function<void(TWriter&)>;

// "TPF0", a form with no properties, then `children` and the form's end mark.
std::vector<std::uint8_t> FormBytes(const Body& children) {
  rtl::TMemoryStream stream;
  TWriter w(stream);
  w.WriteSignature();
  w.WriteStr(u"TForm1");
  w.WriteStr(u"Form1");
  w.WriteListEnd();
  children(w);
  w.WriteListEnd();
  return stream.Bytes();
}

ui::TComponentTree Read(const std::vector<std::uint8_t>& bytes) {
  rtl::TMemoryStream stream(bytes);
  return ui::ReadComponentTree(stream, u"TForm");
}

// A component without properties whose children `inside` writes.
Body Child(const char16_t* cls, const char16_t* name, Body inside = [](TWriter&) {}) {
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

// One property of a label.
Body LabelWith(const char16_t* property, Body value) {
  return [=](TWriter& w) {
    w.WriteStr(u"TLabel");
    w.WriteStr(u"L");
    w.WriteStr(property);
    value(w);
    w.WriteListEnd();
    w.WriteListEnd();
  };
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
      {"an unknown class", Child(u"TNoSuchControl", u"X"), Refusal::classNotFound},
      {"a form inside a form", Child(u"TForm", u"F2"), Refusal::classNotFound},
      {"an abstract class", Child(u"TWinControl", u"W"), Refusal::classNotFound},
      {"a property the class lacks", LabelWith(u"BevelInner", [](TWriter& w) { w.WriteIdent(u"bvNone"); }),
       Refusal::filer},
      {"text for a number", LabelWith(u"Left", [](TWriter& w) { w.WriteString(u"10"); }), Refusal::filer},
      {"a width beyond 32 bits", LabelWith(u"Width", [](TWriter& w) { w.WriteInteger(1ll << 40); }),
       Refusal::filer},
      {"an unknown alignment", LabelWith(u"Align", [](TWriter& w) { w.WriteIdent(u"alMiddle"); }),
       Refusal::filer},
      {"an unknown colour name", LabelWith(u"Color", [](TWriter& w) { w.WriteIdent(u"clPuce"); }),
       Refusal::filer},
      {"a number for a Boolean", LabelWith(u"AutoSize", [](TWriter& w) { w.WriteInteger(1); }),
       Refusal::filer},
      {"a bitmap without its length", Picture(GraphicData("TBitmap", {1, 2})), Refusal::read},
      {"a bitmap longer than its data", Picture(GraphicData("TBitmap", {200, 0, 0, 0, 'B', 'M'})),
       Refusal::filer},
      {"a negative bitmap length", Picture(GraphicData("TBitmap", {0xFF, 0xFF, 0xFF, 0xFF})),
       Refusal::filer},
      {"an unknown graphic class", Picture(GraphicData("TFrobImage", {1, 2, 3})),
       Refusal::classNotFound},
      {"picture data without a class", Picture({}), Refusal::read},
  };
  for (const HostileCase& c : cases) {
    try {
      Read(FormBytes(c.children));
      ADD_FAILURE() << c.what << ": read";
    } catch (const rtl::EClassNotFound&) {
      EXPECT_EQ(c.refusal, Refusal::classNotFound) << c.what;
    } catch (const rtl::EFilerError&) {
      EXPECT_EQ(c.refusal, Refusal::filer) << c.what;
    } catch (const rtl::EReadError&) {
      EXPECT_EQ(c.refusal, Refusal::read) << c.what;
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
  // A label inside a shape and a timer inside a panel go nowhere; menu items only into
  // menus; controls into windowed controls.
  const ui::TComponentTree tree = Read(FormBytes(Both(
      Child(u"TShape", u"S", Child(u"TLabel", u"InShape")),
      Child(u"TPanel", u"P",
            Both(Child(u"TTimer", u"T"),
                 Both(Child(u"TMenuItem", u"Stray"), Child(u"TLabel", u"InPanel")))))));
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
  EXPECT_EQ(find(u"T").Parent, ui::kNoParent);
  EXPECT_EQ(find(u"Stray").Parent, ui::kNoParent);
  EXPECT_EQ(find(u"InPanel").Parent, index(u"P"));

  const ui::TComponentTree menus = Read(FormBytes(Child(
      u"TPopupMenu", u"M", Child(u"TMenuItem", u"A", Child(u"TMenuItem", u"B")))));
  ASSERT_EQ(menus.Children.size(), 3u);
  EXPECT_EQ(menus.Children[0].Parent, ui::kNoParent);
  EXPECT_EQ(menus.Children[1].Parent, 0);
  EXPECT_EQ(menus.Children[2].Parent, 1);
}

TEST(StreamingHostile, ValuesArriveCheckedAndSpelledAsTheClassSpellsThem) {
  const ui::TComponentTree tree = Read(FormBytes(Both(
      LabelWith(u"align", [](TWriter& w) { w.WriteIdent(u"ALCLIENT"); }),
      Both(Both(Child(u"TLabel", u""), Child(u"TLabel", u"")),
           Picture(GraphicData("TBitmap", {3, 0, 0, 0, 'B', 'M', 'x', 'y', 'z'}))))));
  ASSERT_EQ(tree.Children.size(), 4u) << "unnamed components may be many";
  const ui::TPropertyValue& align = tree.Children[0].Properties.at(0);
  EXPECT_EQ(align.Info->Name, u"Align");
  EXPECT_EQ(align.Text, u"alClient");
  EXPECT_EQ(align.Integer, 5);
  const ui::TPropertyValue& picture = tree.Children[3].Properties.at(0);
  EXPECT_EQ(picture.GraphicClass, u"TBitmap");
  EXPECT_EQ(picture.Bytes, (std::vector<std::uint8_t>{'B', 'M', 'x'})) << "the stated length, not the rest";
}

}  // namespace
