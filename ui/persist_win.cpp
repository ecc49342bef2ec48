// Streaming of components (ui/persist.h): the properties each class of the library stores
// and takes, the classes a stream may make, and the building of a tree that
// ui/persist_rules.h has read and checked.
#include "ui/persist.h"

#include <algorithm>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "ui/buttons.h"
#include "ui/checklst.h"
#include "ui/comctrls.h"
#include "ui/extctrls.h"
#include "ui/forms.h"
#include "ui/grids.h"
#include "ui/menus.h"
#include "ui/stdctrls.h"

namespace ui {

namespace {

using rtl::TWriter;

// The enumerations' values in the order of their names (ui/persist_rules.h).
constexpr TAlign kAligns[] = {alNone, alTop, alBottom, alLeft, alRight, alClient};
constexpr TBevelCut kBevels[] = {bvNone, bvLowered, bvRaised, bvSpace};
constexpr TPosition kPositions[] = {poDesigned, poDefault, poDefaultPosOnly, poScreenCenter,
                                    poMainFormCenter};
constexpr TFormBorderStyle kBorderStyles[] = {bsNone, bsSingle, bsSizeable, bsDialog,
                                              bsToolWindow};

template <class E, std::size_t N>
void WriteEnum(TWriter& w, std::span<const std::u16string_view> idents, const E (&values)[N],
               E value) {
  for (std::size_t i = 0; i < N; ++i)
    if (values[i] == value) return w.WriteIdent(idents[i]);
}

// The value of an enumeration property, checked against its names already.
template <class E, std::size_t N>
E EnumValue(const TPropertyValue& v, const E (&values)[N]) {
  if (v.Integer < 0 || v.Integer >= static_cast<std::int64_t>(N))
    throw rtl::EFilerError(u"Ungültiger Eigenschaftswert: " + v.Text);
  return values[v.Integer];
}

int IntValue(const TPropertyValue& v) { return static_cast<int>(v.Integer); }
bool BoolValue(const TPropertyValue& v) { return v.Integer != 0; }

// A property is stored only where it differs from its default.
void WriteBool(TWriter& w, const char16_t* name, bool value, bool fallback) {
  if (value == fallback) return;
  w.WriteStr(name);
  w.WriteBoolean(value);
}

void WriteInt(TWriter& w, const char16_t* name, std::int64_t value, std::int64_t fallback) {
  if (value == fallback) return;
  w.WriteStr(name);
  w.WriteInteger(value);
}

// Texts default to "".
void WriteText(TWriter& w, const char16_t* name, const std::u16string& value) {
  if (value.empty()) return;
  w.WriteStr(name);
  w.WriteString(value);
}

template <class E, std::size_t N>
void WriteEnumProperty(TWriter& w, const char16_t* name,
                       std::span<const std::u16string_view> idents, const E (&values)[N],
                       E value, E fallback) {
  if (value == fallback) return;
  w.WriteStr(name);
  WriteEnum(w, idents, values, value);
}

// A list of strings, as lines of lists and memos are stored.
void WriteStrings(TWriter& w, const char16_t* name, const rtl::TStrings& lines) {
  if (lines.Count() == 0) return;
  w.WriteStr(name);
  w.WriteValue(rtl::vaList);
  for (int i = 0; i < lines.Count(); ++i) w.WriteString(lines[i]);
  w.WriteListEnd();
}

void ReadStrings(const TPropertyValue& v, rtl::TStrings& lines) {
  lines.BeginUpdate();
  lines.Clear();
  for (const std::u16string& line : v.Lines) lines.Add(line);
  lines.EndUpdate();
}

using TComponentFactory = TComponent* (*)(TComponent* owner);

template <class T>
TComponent* Make(TComponent* owner) {
  return new T(owner);
}

// The classes a stream may name for a child (those ui/persist_rules.h calls creatable).
TComponentFactory FindFactory(std::u16string_view className) {
  static const std::pair<std::u16string_view, TComponentFactory> factories[] = {
      {u"TLabel", Make<TLabel>},           {u"TPanel", Make<TPanel>},
      {u"TImage", Make<TImage>},           {u"TShape", Make<TShape>},
      {u"TTimer", Make<TTimer>},           {u"TSpeedButton", Make<TSpeedButton>},
      {u"TScrollBox", Make<TScrollBox>},   {u"TListBox", Make<TListBox>},
      {u"TCheckListBox", Make<TCheckListBox>}, {u"TMemo", Make<TMemo>},
      {u"TCheckBox", Make<TCheckBox>},     {u"TStringGrid", Make<TStringGrid>},
      {u"THeaderControl", Make<THeaderControl>}, {u"TPopupMenu", Make<TPopupMenu>},
      {u"TMenuItem", Make<TMenuItem>},
  };
  for (const auto& [name, factory] : factories)
    if (rtl::SameText(name, className)) return factory;
  throw rtl::EClassNotFound(u"Klasse " + std::u16string(className) + u" nicht gefunden");
}

// The class whose stored properties a root has: its own where the library knows it, else
// that of the nearest class it derives from (a form of the program's own class is a form).
std::u16string_view StoredClassOf(TComponent& c) {
  if (const TClassInfo* info = FindClassInfo(c.ClassName())) return info->Name;
  if (dynamic_cast<TCustomForm*>(&c) != nullptr) return u"TForm";
  if (dynamic_cast<TCustomFrame*>(&c) != nullptr) return u"TFrame";
  if (dynamic_cast<TPanel*>(&c) != nullptr) return u"TPanel";
  if (dynamic_cast<TWinControl*>(&c) != nullptr) return u"TWinControl";
  if (dynamic_cast<TControl*>(&c) != nullptr) return u"TControl";
  return u"TComponent";
}

void WriteOne(TWriter& w, TComponent& c, TComponent* root) {
  w.WriteStr(c.ClassName());
  w.WriteStr(c.Name);
  c.WriteProperties(w);
  w.WriteListEnd();
  c.GetChildren([&](TComponent* child) { WriteOne(w, *child, root); }, root);
  w.WriteListEnd();
}

void ApplyProperties(const TStreamedComponent& read, TComponent& c) {
  for (const TPropertyValue& v : read.Properties)
    if (!c.ReadProperty(v))
      throw rtl::EFilerError(u"Fehler beim Lesen von " + c.Name + u"." +
                             std::u16string(v.Info->Name) + u": Eigenschaft " +
                             std::u16string(v.Info->Name) + u" existiert nicht");
}

// Builds a tree that was read into `root`: a child takes the root's component of its name
// where there is one, else a new one is made. When anything fails, the components made
// are freed and those that were moved go back where they were, so the caller keeps no
// half-built part.
void BuildTree(const TComponentTree& tree, TComponent& root) {
  std::vector<TComponent*> nodes(tree.Children.size(), nullptr);
  std::vector<TComponent*> made;
  std::vector<std::pair<TComponent*, TComponent*>> moved;  // component, where it was
  try {
    for (std::size_t i = 0; i < tree.Children.size(); ++i) {
      const TStreamedComponent& read = tree.Children[i];
      TComponent* c = read.Name.empty() ? nullptr : root.FindComponent(read.Name);
      if (c != nullptr && !rtl::SameText(c->ClassName(), read.ClassName))
        throw rtl::EFilerError(u"Die Komponente " + read.Name + u" ist keine " + read.ClassName);
      if (c == nullptr) {
        c = FindFactory(read.ClassName)(&root);
        made.push_back(c);
        c->Name = read.Name;
      }
      nodes[i] = c;
    }
    ApplyProperties(tree.Root, root);
    for (std::size_t i = 0; i < tree.Children.size(); ++i) {
      const TStreamedComponent& read = tree.Children[i];
      TComponent* c = nodes[i];
      if (read.Parent != kNoParent) {
        TComponent* parent = read.Parent < 0 ? &root : nodes[static_cast<std::size_t>(read.Parent)];
        if (TComponent* was = c->GetParentComponent(); was != parent) {
          moved.emplace_back(c, was);
          c->SetParentComponent(parent);
        }
      }
      ApplyProperties(read, *c);
    }
  } catch (...) {
    for (auto it = moved.rbegin(); it != moved.rend(); ++it) {
      const bool isMade = std::find(made.begin(), made.end(), it->first) != made.end();
      if (!isMade) it->first->SetParentComponent(it->second);
    }
    // Children come after their parents: freed first, so nothing is freed twice.
    for (auto it = made.rbegin(); it != made.rend(); ++it) delete *it;
    throw;
  }
}

}  // namespace

void WriteComponent(rtl::TStream& stream, TComponent& component) {
  TWriter w(stream);
  w.WriteSignature();
  WriteOne(w, component, &component);
}

void ReadComponent(rtl::TStream& stream, TComponent& component) {
  try {
    BuildTree(ReadComponentTree(stream, StoredClassOf(component)), component);
  } catch (const rtl::Exception&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw rtl::EFilerError(u"Nicht genügend Speicher für die Komponenten");
  } catch (const std::exception& e) {
    throw rtl::EFilerError(rtl::Utf8ToUtf16(e.what()));
  }
}

// ---- What each class stores -------------------------------------------------------------

void TComponent::WriteProperties(TWriter& w) {
  WriteInt(w, u"Tag", Tag, 0);
}

bool TComponent::ReadProperty(const TPropertyValue& v) {
  if (v.Info->Name != u"Tag") return false;
  Tag = static_cast<std::intptr_t>(v.Integer);
  return true;
}

void TComponent::GetChildren(const std::function<void(TComponent*)>&, TComponent*) {}

void TControl::WriteProperties(TWriter& w) {
  TComponent::WriteProperties(w);
  WriteBoundsProperties(w);
  WriteOtherProperties(w);
}

void TControl::WriteBoundsProperties(TWriter& w) {
  // Always stored: they have no default.
  w.WriteStr(u"Left");
  w.WriteInteger(Left());
  w.WriteStr(u"Top");
  w.WriteInteger(Top());
  w.WriteStr(u"Width");
  w.WriteInteger(Width());
  w.WriteStr(u"Height");
  w.WriteInteger(Height());
}

void TControl::WriteOtherProperties(TWriter& w) {
  WriteEnumProperty(w, u"Align", kAlignIdents, kAligns, align_, alNone);
  WriteBool(w, u"AlignWithMargins", AlignWithMargins, false);
  WriteText(w, u"Caption", caption_);
  if (!ParentColor) {
    w.WriteStr(u"Color");
    if (const std::u16string ident = ColorToIdent(Color); !ident.empty())
      w.WriteIdent(ident);
    else
      w.WriteInteger(Color);
  }
  WriteBool(w, u"ParentColor", ParentColor, true);
  WriteBool(w, u"Enabled", enabled_, true);
  WriteBool(w, u"Visible", visible_, true);
}

bool TControl::ReadProperty(const TPropertyValue& v) {
  const std::u16string_view name = v.Info->Name;
  if (name == u"Left") SetLeft(IntValue(v));
  else if (name == u"Top") SetTop(IntValue(v));
  else if (name == u"Width") SetWidth(IntValue(v));
  else if (name == u"Height") SetHeight(IntValue(v));
  else if (name == u"Align") SetAlign(EnumValue(v, kAligns));
  else if (name == u"AlignWithMargins") AlignWithMargins = BoolValue(v);
  else if (name == u"Caption") SetCaption(v.Text);
  else if (name == u"Color") {
    Color = static_cast<TColor>(v.Integer);
    ParentColor = false;
  } else if (name == u"ParentColor") ParentColor = BoolValue(v);
  else if (name == u"Enabled") SetEnabled(BoolValue(v));
  else if (name == u"Visible") SetVisible(BoolValue(v));
  else return TComponent::ReadProperty(v);
  return true;
}

void TControl::SetParentComponent(TComponent* parent) {
  if (parent == nullptr) return SetParent(nullptr);
  auto* control = dynamic_cast<TControl*>(parent);
  if (TWinControl* container = control ? control->AsWinControl() : nullptr) SetParent(container);
}

TComponent* TControl::GetParentComponent() const { return Parent(); }

void TWinControl::GetChildren(const std::function<void(TComponent*)>& proc, TComponent* root) {
  // A copy: nothing may change the list while it is walked, but a caller could try.
  const std::vector<TControl*> controls(controls_.begin(), controls_.end());
  for (TControl* c : controls)
    if (c->Owner() == root) proc(c);
}

namespace {

// A form's or frame's children: first the components it owns that live in no parent
// (timers, menus), then its controls.
void ContainerChildren(TWinControl& container, const std::function<void(TComponent*)>& proc,
                       TComponent* root) {
  for (int i = 0; i < container.ComponentCount(); ++i)
    if (!container.Components(i)->HasParent()) proc(container.Components(i));
  container.TWinControl::GetChildren(proc, root);
}

}  // namespace

void TCustomForm::GetChildren(const std::function<void(TComponent*)>& proc, TComponent* root) {
  ContainerChildren(*this, proc, root);
}

void TCustomFrame::GetChildren(const std::function<void(TComponent*)>& proc, TComponent* root) {
  ContainerChildren(*this, proc, root);
}

void TCustomForm::WriteProperties(TWriter& w) {
  TControl::WriteProperties(w);
  WriteEnumProperty(w, u"BorderStyle", kBorderStyleIdents, kBorderStyles, BorderStyle, bsSizeable);
  WriteEnumProperty(w, u"Position", kPositionIdents, kPositions, Position, poDefaultPosOnly);
  WriteBool(w, u"KeyPreview", KeyPreview, false);
}

bool TCustomForm::ReadProperty(const TPropertyValue& v) {
  const std::u16string_view name = v.Info->Name;
  if (name == u"BorderStyle") BorderStyle = EnumValue(v, kBorderStyles);
  else if (name == u"Position") Position = EnumValue(v, kPositions);
  else if (name == u"KeyPreview") KeyPreview = BoolValue(v);
  else return TControl::ReadProperty(v);
  return true;
}

void TLabel::WriteProperties(TWriter& w) {
  TComponent::WriteProperties(w);
  WriteBoundsProperties(w);
  // Before the caption, so that a label of fixed size is not sized to it while read.
  WriteBool(w, u"AutoSize", autoSize_, true);
  WriteBool(w, u"ShowAccelChar", showAccelChar_, true);
  WriteOtherProperties(w);
  WriteBool(w, u"Transparent", Transparent, false);
  WriteBool(w, u"WordWrap", wordWrap_, false);
}

bool TLabel::ReadProperty(const TPropertyValue& v) {
  const std::u16string_view name = v.Info->Name;
  if (name == u"AutoSize") SetAutoSize(BoolValue(v));
  else if (name == u"ShowAccelChar") SetShowAccelChar(BoolValue(v));
  else if (name == u"Transparent") Transparent = BoolValue(v);
  else if (name == u"WordWrap") SetWordWrap(BoolValue(v));
  else return TControl::ReadProperty(v);
  return true;
}

void TPanel::WriteProperties(TWriter& w) {
  TControl::WriteProperties(w);
  WriteEnumProperty(w, u"BevelInner", kBevelIdents, kBevels, BevelInner, bvNone);
  WriteEnumProperty(w, u"BevelOuter", kBevelIdents, kBevels, BevelOuter, bvRaised);
  WriteInt(w, u"BevelWidth", BevelWidth, 1);
  WriteInt(w, u"BorderWidth", BorderWidth, 0);
  WriteBool(w, u"ShowCaption", ShowCaption, true);
}

bool TPanel::ReadProperty(const TPropertyValue& v) {
  const std::u16string_view name = v.Info->Name;
  if (name == u"BevelInner") BevelInner = EnumValue(v, kBevels);
  else if (name == u"BevelOuter") BevelOuter = EnumValue(v, kBevels);
  else if (name == u"BevelWidth") BevelWidth = IntValue(v);
  else if (name == u"BorderWidth") BorderWidth = IntValue(v);
  else if (name == u"ShowCaption") ShowCaption = BoolValue(v);
  else return TControl::ReadProperty(v);
  return true;
}

void TListBox::WriteProperties(TWriter& w) {
  TControl::WriteProperties(w);
  WriteStrings(w, u"Items.Strings", Items());
}

bool TListBox::ReadProperty(const TPropertyValue& v) {
  if (v.Info->Name != u"Items.Strings") return TControl::ReadProperty(v);
  ReadStrings(v, Items());
  return true;
}

void TMemo::WriteProperties(TWriter& w) {
  TControl::WriteProperties(w);
  rtl::TStringList lines;
  lines.SetText(Text());
  WriteStrings(w, u"Lines.Strings", lines);
}

bool TMemo::ReadProperty(const TPropertyValue& v) {
  if (v.Info->Name != u"Lines.Strings") return TControl::ReadProperty(v);
  rtl::TStringList lines;
  ReadStrings(v, lines);
  // Lines joined by line breaks, without one after the last, as a memo shows them.
  std::u16string text = lines.Text();
  if (text.ends_with(u"\r\n")) text.resize(text.size() - 2);
  SetText(text);
  return true;
}

void TCheckBox::WriteProperties(TWriter& w) {
  TControl::WriteProperties(w);
  WriteBool(w, u"Checked", Checked(), false);
}

bool TCheckBox::ReadProperty(const TPropertyValue& v) {
  if (v.Info->Name != u"Checked") return TControl::ReadProperty(v);
  SetChecked(BoolValue(v));
  return true;
}

void TMenuItem::WriteProperties(TWriter& w) {
  TComponent::WriteProperties(w);
  WriteText(w, u"Caption", Caption);
  WriteBool(w, u"Checked", Checked, false);
  WriteBool(w, u"Enabled", Enabled, true);
  WriteText(w, u"Hint", Hint);
  WriteBool(w, u"Visible", Visible, true);
}

bool TMenuItem::ReadProperty(const TPropertyValue& v) {
  const std::u16string_view name = v.Info->Name;
  if (name == u"Caption") Caption = v.Text;
  else if (name == u"Checked") Checked = BoolValue(v);
  else if (name == u"Enabled") Enabled = BoolValue(v);
  else if (name == u"Hint") Hint = v.Text;
  else if (name == u"Visible") Visible = BoolValue(v);
  else return TComponent::ReadProperty(v);
  return true;
}

void TMenuItem::GetChildren(const std::function<void(TComponent*)>& proc, TComponent* root) {
  for (TMenuItem* item : items_)
    if (item->Owner() == root) proc(item);
}

void TMenuItem::SetParentComponent(TComponent* parent) {
  TMenuItem* into = dynamic_cast<TMenuItem*>(parent);
  if (auto* menu = dynamic_cast<TPopupMenu*>(parent)) into = menu->Items();
  // Read again into the same menu: the item is where it belongs already.
  if (parent_ == into) return;
  // Refused before the item leaves its menu, so that a refusal changes nothing.
  for (const TMenuItem* above = into; above != nullptr; above = above->parent_)
    if (above == this) throw EMenuError("menu item inserted into itself");
  if (parent_ != nullptr) parent_->Remove(this);
  if (into != nullptr) into->Add(this);
}

TComponent* TMenuItem::GetParentComponent() const {
  // The items of a popup menu hang from its root item, which the stream does not show.
  if (parent_ != nullptr)
    if (auto* menu = dynamic_cast<TPopupMenu*>(parent_->Owner()); menu && menu->Items() == parent_)
      return menu;
  return parent_;
}

void TPopupMenu::GetChildren(const std::function<void(TComponent*)>& proc, TComponent* root) {
  items_->GetChildren(proc, root);
}

namespace {

// The framework's graphic classes by format; a bitmap's bytes carry their size first.
const char16_t* GraphicClassName(TPictureFormat format) {
  switch (format) {
    case pfBmp: return u"TBitmap";
    case pfPng: return u"TPngImage";
    case pfJpeg: return u"TJPEGImage";
    case pfGif: return u"TGIFImage";
    default: return u"TWICImage";
  }
}

}  // namespace

void TImage::WriteProperties(TWriter& w) {
  TControl::WriteProperties(w);
  if (Picture.Format() != pfNone) {
    rtl::TMemoryStream bytes;
    Picture.SaveToStream(bytes);
    rtl::TMemoryStream data;
    TWriter(data).WriteStr(GraphicClassName(Picture.Format()));
    if (Picture.Format() == pfBmp) {
      const auto size = static_cast<std::int32_t>(bytes.Size());
      data.WriteBuffer(&size, 4);
    }
    if (bytes.Size() > 0) data.WriteBuffer(bytes.Bytes().data(), bytes.Bytes().size());
    w.WriteStr(u"Picture.Data");
    w.WriteBinary(data.Bytes());
  }
  WriteBool(w, u"Center", Center, false);
  WriteBool(w, u"Proportional", Proportional, false);
  WriteBool(w, u"Stretch", Stretch, false);
  WriteBool(w, u"Transparent", Transparent, false);
}

bool TImage::ReadProperty(const TPropertyValue& v) {
  const std::u16string_view name = v.Info->Name;
  if (name == u"Picture.Data") {
    if (v.GraphicClass.empty()) {
      Picture.Assign(TBitmap());
    } else {
      rtl::TMemoryStream data(v.Bytes);
      Picture.LoadFromStream(data);
    }
  } else if (name == u"Center") Center = BoolValue(v);
  else if (name == u"Proportional") Proportional = BoolValue(v);
  else if (name == u"Stretch") Stretch = BoolValue(v);
  else if (name == u"Transparent") Transparent = BoolValue(v);
  else return TControl::ReadProperty(v);
  return true;
}

}  // namespace ui
