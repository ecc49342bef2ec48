// Every published property of every class the library streams, under Wine: a component
// with each of them away from its default comes back the same in a fresh one, and one at
// its defaults stores only what has no default.
#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <type_traits>

#include "rtl/ustring.h"
#include "tests/streaming_forms.h"
#include "ui/buttons.h"
#include "ui/checklst.h"
#include "ui/comctrls.h"
#include "ui/grids.h"
#include "ui/persist.h"

namespace {

using namespace nox_test;

std::string Str(const std::u16string& s) { return rtl::Utf16ToUtf8(s); }
std::string Str(std::int64_t i) { return std::to_string(i); }
template <class E>
  requires std::is_enum_v<E>
std::string Str(E e) { return Str(static_cast<std::int64_t>(e)); }
template <class E>
std::string Str(const std::set<E>& set) {
  std::string s = "[";
  for (E e : set) s += Str(e) + " ";
  return s + "]";
}

using Props = std::map<std::string, std::string>;

// What a user of each class can set in the designer, by property name.
Props Describe(ui::TComponent& c) {
  Props p;
  const auto put = [&](const char* name, const auto& value) { p[name] = Str(value); };
  put("Tag", c.Tag);
  if (auto* x = dynamic_cast<ui::TControl*>(&c)) {
    put("Left", x->Left()), put("Top", x->Top()), put("Width", x->Width()), put("Height", x->Height());
    put("Anchors", x->Anchors), put("Align", x->Align()), put("AlignWithMargins", x->AlignWithMargins);
    put("Constraints.MaxHeight", x->Constraints.MaxHeight), put("Constraints.MaxWidth", x->Constraints.MaxWidth);
    put("Constraints.MinHeight", x->Constraints.MinHeight), put("Constraints.MinWidth", x->Constraints.MinWidth);
    put("Margins.Left", x->Margins.Left), put("Margins.Top", x->Margins.Top);
    put("Margins.Right", x->Margins.Right), put("Margins.Bottom", x->Margins.Bottom);
    put("Font.Name", x->Font.Name), put("Font.Height", x->Font.Height), put("Font.Color", x->Font.Color);
    put("Font.Style", x->Font.Style), put("Font.Pitch", x->Font.Pitch), put("Font.Charset", x->Font.Charset);
    put("ParentFont", x->ParentFont);
    put("Caption", x->Caption()), put("Color", x->Color), put("ParentColor", x->ParentColor);
    put("Cursor", x->Cursor), put("Enabled", x->Enabled()), put("Hint", x->Hint);
    put("ShowHint", x->ShowHint), put("ParentShowHint", x->ParentShowHint);
    put("PopupMenu", x->PopupMenu ? x->PopupMenu->Name : u"");
    put("StyleElements", x->StyleElements), put("Visible", x->Visible());
  }
  if (auto* x = dynamic_cast<ui::TWinControl*>(&c)) put("TabOrder", x->TabOrder);
  if (auto* x = dynamic_cast<ui::TCustomForm*>(&c)) {
    put("BorderStyle", x->BorderStyle), put("FormStyle", x->FormStyle), put("Position", x->Position);
    put("KeyPreview", x->KeyPreview), put("WindowState", x->WindowState());
  }
  if (auto* x = dynamic_cast<ui::TFrame*>(&c)) put("ParentBackground", x->ParentBackground);
  if (auto* x = dynamic_cast<ui::TLabel*>(&c)) {
    put("AutoSize", x->AutoSize()), put("ShowAccelChar", x->ShowAccelChar());
    put("Transparent", x->Transparent), put("WordWrap", x->WordWrap());
  }
  if (auto* x = dynamic_cast<ui::TPanel*>(&c)) {
    put("BevelInner", x->BevelInner), put("BevelOuter", x->BevelOuter), put("BevelWidth", x->BevelWidth);
    put("BorderWidth", x->BorderWidth), put("ParentBackground", x->ParentBackground);
    put("ShowCaption", x->ShowCaption);
  }
  if (auto* x = dynamic_cast<ui::TImage*>(&c)) {
    p["Picture"] = Str(x->Picture.Format()) + " " + Str(x->Picture.Width()) + "x" + Str(x->Picture.Height());
    put("Center", x->Center), put("Proportional", x->Proportional), put("Stretch", x->Stretch);
    put("Transparent", x->Transparent);
  }
  if (auto* x = dynamic_cast<ui::TShape*>(&c)) {
    put("Shape", x->Shape), put("Pen.Color", x->Pen.Color), put("Pen.Width", x->Pen.Width);
    put("Pen.Style", x->Pen.Style), put("Brush.Color", x->Brush.Color), put("Brush.Style", x->Brush.Style);
  }
  if (auto* x = dynamic_cast<ui::TScrollBox*>(&c))
    put("BorderStyle", x->BorderStyle), put("ParentBackground", x->ParentBackground);
  if (auto* x = dynamic_cast<ui::TListBox*>(&c)) put("Items", x->Items().CommaText());
  if (auto* x = dynamic_cast<ui::TCheckListBox*>(&c)) {
    std::string checks;
    for (int i = 0; i < x->Count(); ++i) checks += x->Checked(i) ? '1' : '0';
    p["Checks"] = checks;
  }
  if (auto* x = dynamic_cast<ui::TMemo*>(&c)) put("Text", x->Text());
  if (auto* x = dynamic_cast<ui::TCheckBox*>(&c)) put("Checked", x->Checked());
  if (auto* x = dynamic_cast<ui::TStringGrid*>(&c)) {
    put("ColCount", x->ColCount()), put("RowCount", x->RowCount()), put("FixedCols", x->FixedCols);
    put("FixedRows", x->FixedRows), put("DefaultColWidth", x->DefaultColWidth);
    put("DefaultRowHeight", x->DefaultRowHeight);
  }
  if (auto* x = dynamic_cast<ui::THeaderControl*>(&c)) {
    std::string sections;
    for (int i = 0; i < x->Sections.Count(); ++i)
      sections += Str(x->Sections[i].Text()) + ":" + Str(x->Sections[i].Width()) + "|";
    p["Sections"] = sections;
  }
  if (auto* x = dynamic_cast<ui::TTimer*>(&c)) put("Enabled", x->Enabled()), put("Interval", x->Interval());
  if (auto* x = dynamic_cast<ui::TPopupMenu*>(&c)) put("Items", x->Items()->Count());
  if (auto* x = dynamic_cast<ui::TMenuItem*>(&c)) {
    put("Caption", x->Caption), put("Checked", x->Checked), put("Enabled", x->Enabled);
    put("Hint", x->Hint), put("Visible", x->Visible);
  }
  return p;
}

// Every property every component has, away from its default.
void ChangeCommon(ui::TComponent& c, ui::TPopupMenu& menu) {
  c.Tag = -5;
  auto* x = dynamic_cast<ui::TControl*>(&c);
  if (x == nullptr) return;
  x->SetBounds(7, 9, 111, 33), x->Anchors = {ui::akRight, ui::akBottom};
  // Laid out with its margins, which keeps it off the top edge.
  x->Margins = {4, 5, 6, 7}, x->AlignWithMargins = true, x->SetAlign(ui::alRight);
  x->Constraints = {1, 2, 3000, 4000};
  x->Font = {u"Courier New", -17, ui::clRed, {ui::fsBold, ui::fsStrikeOut}, ui::fpFixed, 238};
  x->ParentFont = false;
  x->SetCaption(u"Größe €"), x->Color = 0x123456, x->ParentColor = false, x->Cursor = ui::crHourGlass;
  x->Hint = u"Hinweis", x->ShowHint = true, x->ParentShowHint = false, x->PopupMenu = &menu;
  x->StyleElements = {ui::seBorder}, x->SetEnabled(false), x->SetVisible(false);
  if (auto* w = x->AsWinControl()) w->TabOrder = 3;
}

template <class T>
std::function<void(ui::TComponent&)> Change(std::function<void(T&)> change) {
  return [=](ui::TComponent& c) { change(dynamic_cast<T&>(c)); };
}

// Roots: a form (the default) or a frame; `make` null: the root is the component tested.
using Root = std::unique_ptr<ui::TWinControl>;
Root NewForm() { return std::make_unique<ui::TForm>(nullptr); }
Root NewFrame() { return std::make_unique<ui::TFrame>(nullptr); }

template <class T>
ui::TComponent* Make(ui::TWinControl& root, ui::TPopupMenu& menu) {
  T* c = new T(&root);
  c->Name = u"C1";
  if constexpr (std::is_base_of_v<ui::TControl, T>) c->SetParent(&root);
  if constexpr (std::is_same_v<T, ui::TMenuItem>) menu.Items()->Add(c);
  return c;
}

struct Case {
  const char* cls;
  std::function<ui::TComponent*(ui::TWinControl&, ui::TPopupMenu&)> make;
  std::function<void(ui::TComponent&)> change;
  // Properties whose changed value is their class's default already.
  std::set<std::string> stays = {};
  // What a component at its defaults stores.
  const char* written = "Left,Top,Width,Height";
  Root (*root)() = NewForm;
};

const std::set<std::string> kOwnColour{"ParentColor"};

const Case kCases[] = {
    {"TForm", nullptr, Change<ui::TForm>([](ui::TForm& f) {
       f.BorderStyle = ui::bsDialog, f.FormStyle = ui::fsStayOnTop, f.Position = ui::poScreenCenter;
       f.KeyPreview = true, f.SetWindowState(ui::wsMaximized);
     }), {"ParentColor", "ParentFont", "Visible"},
     "Left,Top,Width,Height,Font.Charset,Font.Color,Font.Height,Font.Name,Font.Style"},
    {"TFrame", nullptr, Change<ui::TFrame>([](ui::TFrame& f) { f.ParentBackground = false; }), {},
     "Left,Top,Width,Height", NewFrame},
    {"TLabel", Make<ui::TLabel>, Change<ui::TLabel>([](ui::TLabel& l) {
       l.SetAutoSize(false), l.SetShowAccelChar(false), l.Transparent = true, l.SetWordWrap(true);
     })},
    {"TPanel", Make<ui::TPanel>, Change<ui::TPanel>([](ui::TPanel& p) {
       p.BevelInner = ui::bvLowered, p.BevelOuter = ui::bvSpace, p.BevelWidth = 2, p.BorderWidth = 3;
       p.ParentBackground = false, p.ShowCaption = false;
     }), kOwnColour},
    {"TImage", Make<ui::TImage>, Change<ui::TImage>([](ui::TImage& i) {
       i.Picture.Assign(ui::CreateDib24(3, 2, [](int, int) { return ui::clLime; }));
       i.Center = i.Proportional = i.Stretch = i.Transparent = true;
     })},
    // A cursor without a name is stored as its number.
    {"TShape", Make<ui::TShape>, Change<ui::TShape>([](ui::TShape& s) {
       s.Shape = ui::stCircle, s.Pen = {ui::clBlue, 3, ui::psDash}, s.Brush = {ui::clYellow, ui::bsClear};
       s.Cursor = static_cast<ui::TCursor>(7);
     })},
    {"TSpeedButton", Make<ui::TSpeedButton>, Change<ui::TSpeedButton>([](ui::TSpeedButton&) {})},
    {"TScrollBox", Make<ui::TScrollBox>, Change<ui::TScrollBox>([](ui::TScrollBox& s) {
       s.BorderStyle = ui::bsNone, s.ParentBackground = true; }), kOwnColour},
    {"TListBox", Make<ui::TListBox>, Change<ui::TListBox>([](ui::TListBox& l) {
       l.Items().Add(u"eins"), l.Items().Add(u"zwei é"); }), kOwnColour},
    {"TCheckListBox", Make<ui::TCheckListBox>, Change<ui::TCheckListBox>([](ui::TCheckListBox& l) {
       l.Items().SetCommaText(u"a,b,c"), l.SetChecked(0, true), l.SetChecked(2, true); }), kOwnColour},
    // A text that ends with a line break keeps it.
    {"TMemo", Make<ui::TMemo>, Change<ui::TMemo>([](ui::TMemo& m) { m.SetText(u"a\r\nb\r\n"); }), kOwnColour},
    {"TCheckBox", Make<ui::TCheckBox>, Change<ui::TCheckBox>([](ui::TCheckBox& c) { c.SetChecked(true); })},
    {"TStringGrid", Make<ui::TStringGrid>, Change<ui::TStringGrid>([](ui::TStringGrid& g) {
       g.SetColCount(7), g.SetRowCount(9), g.FixedCols = 2, g.FixedRows = 0;
       g.DefaultColWidth = 40, g.DefaultRowHeight = 18;
     }), kOwnColour},
    {"THeaderControl", Make<ui::THeaderControl>, Change<ui::THeaderControl>([](ui::THeaderControl& h) {
       h.Sections.Add().SetText(u"Name"), h.Sections.Add().SetWidth(33), h.Sections[0].SetWidth(120); })},
    {"TTimer", Make<ui::TTimer>, Change<ui::TTimer>([](ui::TTimer& t) { t.SetEnabled(false), t.SetInterval(250); }),
     {}, ""},
    {"TPopupMenu", Make<ui::TPopupMenu>, Change<ui::TPopupMenu>([](ui::TPopupMenu& m) {
       m.Items()->Add(new ui::TMenuItem(m.Owner())); }), {}, ""},
    {"TMenuItem", Make<ui::TMenuItem>, Change<ui::TMenuItem>([](ui::TMenuItem& i) {
       i.Caption = u"&Öffnen", i.Checked = true, i.Enabled = false, i.Hint = u"Öffnet", i.Visible = false;
     }), {}, ""},
};

// The names of the properties a stream of a root of class `rootClass` holds for its
// component `name` ("" for the root).
std::string Written(rtl::TMemoryStream& stream, const char16_t* rootClass, const std::u16string& name) {
  stream.SetPosition(0);
  const ui::TComponentTree tree = ui::ReadComponentTree(stream, rootClass);
  const ui::TStreamedComponent* c = &tree.Root;
  for (const ui::TStreamedComponent& child : tree.Children)
    if (child.Name == name) c = &child;
  std::string names;
  for (const ui::TPropertyValue& v : c->Properties)
    names += (names.empty() ? "" : ",") + Str(std::u16string(v.Info->Name));
  return names;
}

TEST(StreamingProperties, EveryPublishedPropertyComesBackAndDefaultsAreNotStored) {
  for (const Case& c : kCases) {
    for (const bool changed : {false, true}) {
      SCOPED_TRACE(std::string(c.cls) + (changed ? " changed" : " at its defaults"));
      const Root root = c.root(), copy = c.root();
      auto* menu = new ui::TPopupMenu(root.get());
      menu->Name = u"Menu1";
      ui::TComponent& tested = c.make ? *c.make(*root, *menu) : *root;
      const Props defaults = Describe(tested);
      if (changed) ChangeCommon(tested, *menu), c.change(tested);
      rtl::TMemoryStream stream;
      ui::WriteComponent(stream, *root);
      if (!changed) {
        EXPECT_EQ(Written(stream, c.root == NewFrame ? u"TFrame" : u"TForm", c.make ? u"C1" : u""), c.written);
      }
      stream.SetPosition(0);
      ui::ReadComponent(stream, *copy);
      ui::TComponent* read = c.make ? copy->FindComponent(u"C1") : copy.get();
      ASSERT_NE(read, nullptr);
      EXPECT_EQ(read->ClassName(), tested.ClassName());
      EXPECT_EQ(Describe(*read), Describe(tested));
      if (!changed) continue;
      for (const auto& [name, value] : Describe(tested)) {
        if (c.stays.contains(name)) continue;
        EXPECT_NE(value, defaults.at(name)) << name << " is not changed";
      }
    }
  }
}

}  // namespace
