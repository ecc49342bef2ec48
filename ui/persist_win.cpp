// Streaming of components (ui/persist.h): the properties each class of the library stores
// and takes, the classes a stream may make, and the building of a tree that
// ui/persist_rules.h has read and checked.
#include "ui/persist.h"

#include <algorithm>
#include <new>
#include <set>
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
constexpr TFormStyle kFormStyles[] = {fsNormal, fsStayOnTop};
constexpr TWindowState kWindowStates[] = {wsNormal, wsMinimized, wsMaximized};
constexpr TFontStyle kFontStyles[] = {fsBold, fsItalic, fsUnderline, fsStrikeOut};
constexpr TFontPitch kFontPitches[] = {fpDefault, fpVariable, fpFixed};
constexpr TAnchorKind kAnchors[] = {akLeft, akTop, akRight, akBottom};
constexpr TStyleElement kStyleElements[] = {seFont, seClient, seBorder};
constexpr TShapeType kShapes[] = {stRectangle,   stSquare,  stRoundRect,
                                  stRoundSquare, stEllipse, stCircle};
constexpr TPenStyle kPenStyles[] = {psSolid, psDash, psDot, psClear};
constexpr TBrushStyle kBrushStyles[] = {bsSolid, bsClear};

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

// The members of a set property, checked against its names already.
template <class E, std::size_t N>
std::set<E> SetValue(const TPropertyValue& v, const E (&values)[N]) {
  std::set<E> set;
  for (std::size_t i = 0; i < N; ++i)
    if ((v.Integer >> i & 1) != 0) set.insert(values[i]);
  return set;
}

int IntValue(const TPropertyValue& v) { return static_cast<int>(v.Integer); }
TColor ColorValue(const TPropertyValue& v) { return static_cast<TColor>(v.Integer); }
bool BoolValue(const TPropertyValue& v) { return v.Integer != 0; }

// One of "Font.Color", "Font.Height", ...
void ReadFontPart(const TPropertyValue& v, TFont& font) {
  const std::u16string_view part = v.Info->Name.substr(5);
  if (part == u"Charset") font.Charset = static_cast<std::uint8_t>(v.Integer);
  else if (part == u"Color") font.Color = ColorValue(v);
  else if (part == u"Height") font.Height = IntValue(v);
  else if (part == u"Name") font.Name = v.Text;
  else if (part == u"Pitch") font.Pitch = EnumValue(v, kFontPitches);
  else if (part == u"Style") font.Style = SetValue(v, kFontStyles);
}

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

template <class E, std::size_t N>
void WriteSet(TWriter& w, std::span<const std::u16string_view> idents, const E (&values)[N],
              const std::set<E>& set) {
  std::vector<std::u16string> members;
  for (std::size_t i = 0; i < N; ++i)
    if (set.contains(values[i])) members.emplace_back(idents[i]);
  w.WriteSet(members);
}

template <class E, std::size_t N>
void WriteSetProperty(TWriter& w, const char16_t* name,
                      std::span<const std::u16string_view> idents, const E (&values)[N],
                      const std::set<E>& set, const std::set<E>& fallback) {
  if (set == fallback) return;
  w.WriteStr(name);
  WriteSet(w, idents, values, set);
}

// A colour by its name where it has one, else by its number.
void WriteColor(TWriter& w, TColor color) {
  if (const std::u16string ident = ColorToIdent(color); !ident.empty())
    w.WriteIdent(ident);
  else
    w.WriteInteger(color);
}

void WriteColorProperty(TWriter& w, const char16_t* name, TColor color, TColor fallback) {
  if (color == fallback) return;
  w.WriteStr(name);
  WriteColor(w, color);
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
  if (dynamic_cast<TPopupMenu*>(&c) != nullptr) return u"TPopupMenu";
  return u"TComponent";
}

// Whether `c` is of the class `cls` of the stream or of one derived from it.
bool IsOfClass(TComponent& c, std::u16string_view cls) {
  for (const TClassInfo* info = FindClassInfo(StoredClassOf(c)); info != nullptr;
       info = info->Base.empty() ? nullptr : FindClassInfo(info->Base))
    if (info->Name == cls) return true;
  return false;
}

void WriteOne(TWriter& w, TComponent& c, TComponent* root) {
  w.WriteStr(c.ClassName());
  w.WriteStr(c.Name);
  c.WriteProperties(w);
  w.WriteListEnd();
  c.GetChildren([&](TComponent* child) { WriteOne(w, *child, root); }, root);
  w.WriteListEnd();
}

// A property that refers to another component, set once every component is there.
struct TReference {
  TComponent* Component;
  TPropertyValue Value;
};

void ApplyProperty(const TPropertyValue& v, TComponent& c) {
  if (!c.ReadProperty(v))
    throw rtl::EFilerError(u"Fehler beim Lesen von " + c.Name + u"." +
                           std::u16string(v.Info->Name) + u": Eigenschaft " +
                           std::u16string(v.Info->Name) + u" existiert nicht");
}

void ApplyProperties(const TStreamedComponent& read, TComponent& c,
                     std::vector<TReference>& references) {
  for (const TPropertyValue& v : read.Properties)
    if (v.Info->Kind == TPropertyKind::pkComponent)
      references.push_back({&c, v});
    else
      ApplyProperty(v, c);
}

// Every reference is found among the root's components, and of its property's class,
// before any is set: a refused one leaves none pointing at a component freed again.
void ApplyReferences(std::vector<TReference>& references, TComponent& root) {
  for (TReference& ref : references) {
    if (ref.Value.Text.empty()) continue;
    ref.Value.Component = root.FindComponent(ref.Value.Text);
    if (ref.Value.Component == nullptr || !IsOfClass(*ref.Value.Component, ref.Value.Info->Class))
      throw rtl::EFilerError(u"Ungültiger Eigenschaftswert: " + ref.Value.Text);
  }
  for (const TReference& ref : references) ApplyProperty(ref.Value, *ref.Component);
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
    std::vector<TReference> references;
    ApplyProperties(tree.Root, root, references);
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
      ApplyProperties(read, *c, references);
    }
    ApplyReferences(references, root);
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
  WriteSetProperty(w, u"Anchors", kAnchorIdents, kAnchors, Anchors, {akLeft, akTop});
  // The margins before the alignment: the parent lays the control out as Align is read.
  WriteBool(w, u"AlignWithMargins", AlignWithMargins, false);
  const TMargins margins;
  WriteInt(w, u"Margins.Left", Margins.Left, margins.Left);
  WriteInt(w, u"Margins.Top", Margins.Top, margins.Top);
  WriteInt(w, u"Margins.Right", Margins.Right, margins.Right);
  WriteInt(w, u"Margins.Bottom", Margins.Bottom, margins.Bottom);
  WriteEnumProperty(w, u"Align", kAlignIdents, kAligns, align_, alNone);
  WriteInt(w, u"Constraints.MaxHeight", Constraints.MaxHeight, 0);
  WriteInt(w, u"Constraints.MaxWidth", Constraints.MaxWidth, 0);
  WriteInt(w, u"Constraints.MinHeight", Constraints.MinHeight, 0);
  WriteInt(w, u"Constraints.MinWidth", Constraints.MinWidth, 0);
  // A font of its own is stored whole, as the framework stores it, and before the caption,
  // so that a label that sizes itself measures the caption in it.
  if (!ParentFont) {
    w.WriteStr(u"Font.Charset");
    if (const std::u16string ident = CharsetToIdent(Font.Charset); !ident.empty())
      w.WriteIdent(ident);
    else
      w.WriteInteger(Font.Charset);
    w.WriteStr(u"Font.Color");
    WriteColor(w, Font.Color);
    w.WriteStr(u"Font.Height");
    w.WriteInteger(Font.Height);
    w.WriteStr(u"Font.Name");
    w.WriteString(Font.Name);
    WriteEnumProperty(w, u"Font.Pitch", kFontPitchIdents, kFontPitches, Font.Pitch, fpDefault);
    w.WriteStr(u"Font.Style");
    WriteSet(w, kFontStyleIdents, kFontStyles, Font.Style);
  }
  WriteBool(w, u"ParentFont", ParentFont, defaults_.ParentFont);
  WriteText(w, u"Caption", caption_);
  if (!ParentColor && (defaults_.ParentColor || Color != defaults_.Color)) {
    w.WriteStr(u"Color");
    WriteColor(w, Color);
  }
  WriteBool(w, u"ParentColor", ParentColor, defaults_.ParentColor);
  if (Cursor != crDefault) {
    w.WriteStr(u"Cursor");
    if (const std::u16string ident = CursorToIdent(static_cast<int>(Cursor)); !ident.empty())
      w.WriteIdent(ident);
    else
      w.WriteInteger(static_cast<int>(Cursor));
  }
  WriteBool(w, u"Enabled", enabled_, true);
  WriteText(w, u"Hint", Hint);
  WriteBool(w, u"ParentShowHint", ParentShowHint, true);
  if (!ParentShowHint) {
    w.WriteStr(u"ShowHint");
    w.WriteBoolean(ShowHint);
  }
  // Only a menu of the component's own root can be found again when it is read.
  if (PopupMenu != nullptr && !PopupMenu->Name.empty() &&
      (PopupMenu->Owner() == Owner() || PopupMenu->Owner() == this)) {
    w.WriteStr(u"PopupMenu");
    w.WriteIdent(PopupMenu->Name);
  }
  WriteSetProperty(w, u"StyleElements", kStyleElementIdents, kStyleElements, StyleElements,
                   {seFont, seClient, seBorder});
  WriteBool(w, u"Visible", visible_, defaults_.Visible);
}

void TControl::KeepDefaults() { defaults_ = {Color, ParentColor, ParentFont, visible_}; }

void TWinControl::KeepDefaults() {
  TControl::KeepDefaults();
  parentBackgroundDefault_ = ParentBackground;
}

bool TControl::ReadProperty(const TPropertyValue& v) {
  const std::u16string_view name = v.Info->Name;
  // A font, colour or hint setting of its own leaves the parent's, as in the framework.
  if (name.starts_with(u"Font.")) {
    ReadFontPart(v, Font);
    ParentFont = false;
  } else if (name == u"Left") SetLeft(IntValue(v));
  else if (name == u"Top") SetTop(IntValue(v));
  else if (name == u"Width") SetWidth(IntValue(v));
  else if (name == u"Height") SetHeight(IntValue(v));
  else if (name == u"Anchors") Anchors = SetValue(v, kAnchors);
  else if (name == u"Align") SetAlign(EnumValue(v, kAligns));
  else if (name == u"AlignWithMargins") AlignWithMargins = BoolValue(v);
  else if (name == u"Constraints.MaxHeight") Constraints.MaxHeight = IntValue(v);
  else if (name == u"Constraints.MaxWidth") Constraints.MaxWidth = IntValue(v);
  else if (name == u"Constraints.MinHeight") Constraints.MinHeight = IntValue(v);
  else if (name == u"Constraints.MinWidth") Constraints.MinWidth = IntValue(v);
  else if (name == u"Margins.Left") Margins.Left = IntValue(v);
  else if (name == u"Margins.Top") Margins.Top = IntValue(v);
  else if (name == u"Margins.Right") Margins.Right = IntValue(v);
  else if (name == u"Margins.Bottom") Margins.Bottom = IntValue(v);
  else if (name == u"ParentFont") ParentFont = BoolValue(v);
  else if (name == u"Caption") SetCaption(v.Text);
  else if (name == u"Color") {
    Color = ColorValue(v);
    ParentColor = false;
  } else if (name == u"ParentColor") ParentColor = BoolValue(v);
  else if (name == u"Cursor") Cursor = static_cast<TCursor>(v.Integer);
  else if (name == u"Enabled") SetEnabled(BoolValue(v));
  else if (name == u"Hint") Hint = v.Text;
  else if (name == u"ShowHint") {
    ShowHint = BoolValue(v);
    ParentShowHint = false;
  } else if (name == u"ParentShowHint") ParentShowHint = BoolValue(v);
  // Its class was checked when the reference was found.
  else if (name == u"PopupMenu") PopupMenu = dynamic_cast<TPopupMenu*>(v.Component);
  else if (name == u"StyleElements") StyleElements = SetValue(v, kStyleElements);
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

void TWinControl::WriteProperties(TWriter& w) {
  TControl::WriteProperties(w);
  WriteInt(w, u"TabOrder", TabOrder, -1);
}

bool TWinControl::ReadProperty(const TPropertyValue& v) {
  if (v.Info->Name != u"TabOrder") return TControl::ReadProperty(v);
  TabOrder = IntValue(v);
  return true;
}

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
  TWinControl::WriteProperties(w);
  WriteEnumProperty(w, u"BorderStyle", kBorderStyleIdents, kBorderStyles, BorderStyle, bsSizeable);
  WriteEnumProperty(w, u"FormStyle", kFormStyleIdents, kFormStyles, FormStyle, fsNormal);
  WriteEnumProperty(w, u"Position", kPositionIdents, kPositions, Position, poDefaultPosOnly);
  WriteBool(w, u"KeyPreview", KeyPreview, false);
  WriteEnumProperty(w, u"WindowState", kWindowStateIdents, kWindowStates, WindowState(), wsNormal);
}

bool TCustomForm::ReadProperty(const TPropertyValue& v) {
  const std::u16string_view name = v.Info->Name;
  if (name == u"BorderStyle") BorderStyle = EnumValue(v, kBorderStyles);
  else if (name == u"FormStyle") FormStyle = EnumValue(v, kFormStyles);
  else if (name == u"Position") Position = EnumValue(v, kPositions);
  else if (name == u"KeyPreview") KeyPreview = BoolValue(v);
  else if (name == u"WindowState") SetWindowState(EnumValue(v, kWindowStates));
  else return TWinControl::ReadProperty(v);
  return true;
}

void TCustomFrame::WriteProperties(TWriter& w) {
  TWinControl::WriteProperties(w);
  WriteBool(w, u"ParentBackground", ParentBackground, parentBackgroundDefault_);
}

bool TCustomFrame::ReadProperty(const TPropertyValue& v) {
  if (v.Info->Name != u"ParentBackground") return TWinControl::ReadProperty(v);
  ParentBackground = BoolValue(v);
  return true;
}

void TScrollBox::WriteProperties(TWriter& w) {
  TWinControl::WriteProperties(w);
  WriteEnumProperty(w, u"BorderStyle", kBorderStyleIdents, kBorderStyles, BorderStyle, bsSingle);
  WriteBool(w, u"ParentBackground", ParentBackground, parentBackgroundDefault_);
}

bool TScrollBox::ReadProperty(const TPropertyValue& v) {
  const std::u16string_view name = v.Info->Name;
  // The stream's names are bsNone and bsSingle only, the first two of a form's.
  if (name == u"BorderStyle") BorderStyle = EnumValue(v, kBorderStyles);
  else if (name == u"ParentBackground") ParentBackground = BoolValue(v);
  else return TWinControl::ReadProperty(v);
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
  TWinControl::WriteProperties(w);
  WriteEnumProperty(w, u"BevelInner", kBevelIdents, kBevels, BevelInner, bvNone);
  WriteEnumProperty(w, u"BevelOuter", kBevelIdents, kBevels, BevelOuter, bvRaised);
  WriteInt(w, u"BevelWidth", BevelWidth, 1);
  WriteInt(w, u"BorderWidth", BorderWidth, 0);
  WriteBool(w, u"ParentBackground", ParentBackground, parentBackgroundDefault_);
  WriteBool(w, u"ShowCaption", ShowCaption, true);
}

bool TPanel::ReadProperty(const TPropertyValue& v) {
  const std::u16string_view name = v.Info->Name;
  if (name == u"BevelInner") BevelInner = EnumValue(v, kBevels);
  else if (name == u"BevelOuter") BevelOuter = EnumValue(v, kBevels);
  else if (name == u"BevelWidth") BevelWidth = IntValue(v);
  else if (name == u"BorderWidth") BorderWidth = IntValue(v);
  else if (name == u"ParentBackground") ParentBackground = BoolValue(v);
  else if (name == u"ShowCaption") ShowCaption = BoolValue(v);
  else return TWinControl::ReadProperty(v);
  return true;
}

void TListBox::WriteProperties(TWriter& w) {
  TWinControl::WriteProperties(w);
  WriteStrings(w, u"Items.Strings", Items());
}

bool TListBox::ReadProperty(const TPropertyValue& v) {
  if (v.Info->Name != u"Items.Strings") return TWinControl::ReadProperty(v);
  ReadStrings(v, Items());
  return true;
}

void TCheckListBox::WriteProperties(TWriter& w) {
  TListBox::WriteProperties(w);
  std::vector<std::uint8_t> checks(static_cast<std::size_t>(Count()));
  for (int i = 0; i < Count(); ++i) checks[static_cast<std::size_t>(i)] = Checked(i) ? 1 : 0;
  if (std::find(checks.begin(), checks.end(), 1) == checks.end()) return;
  w.WriteStr(u"Checks");
  w.WriteBinary(checks);
}

bool TCheckListBox::ReadProperty(const TPropertyValue& v) {
  if (v.Info->Name != u"Checks") return TListBox::ReadProperty(v);
  // The lines are read before: a mark beyond them has no line to go to.
  for (int i = 0; i < Count(); ++i) {
    const auto at = static_cast<std::size_t>(i);
    SetChecked(i, at < v.Bytes.size() && v.Bytes[at] != 0);
  }
  return true;
}

void TMemo::WriteProperties(TWriter& w) {
  TWinControl::WriteProperties(w);
  const std::u16string text = Text();
  if (text.empty()) return;
  w.WriteStr(u"Lines.Strings");
  w.WriteValue(rtl::vaList);
  std::size_t start = 0;
  for (std::size_t end; (end = text.find(u"\r\n", start)) != std::u16string::npos; start = end + 2)
    w.WriteString(std::u16string_view(text).substr(start, end - start));
  w.WriteString(std::u16string_view(text).substr(start));
  w.WriteListEnd();
}

bool TMemo::ReadProperty(const TPropertyValue& v) {
  if (v.Info->Name != u"Lines.Strings") return TWinControl::ReadProperty(v);
  std::u16string text;
  for (std::size_t i = 0; i < v.Lines.size(); ++i) text += (i > 0 ? u"\r\n" : u"") + v.Lines[i];
  SetText(text);
  return true;
}

void TCheckBox::WriteProperties(TWriter& w) {
  TWinControl::WriteProperties(w);
  WriteBool(w, u"Checked", Checked(), false);
}

bool TCheckBox::ReadProperty(const TPropertyValue& v) {
  if (v.Info->Name != u"Checked") return TWinControl::ReadProperty(v);
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

void TShape::WriteProperties(TWriter& w) {
  TControl::WriteProperties(w);
  const TBrush brush;
  const TPen pen;
  WriteColorProperty(w, u"Brush.Color", Brush.Color, brush.Color);
  WriteEnumProperty(w, u"Brush.Style", kBrushStyleIdents, kBrushStyles, Brush.Style, brush.Style);
  WriteColorProperty(w, u"Pen.Color", Pen.Color, pen.Color);
  WriteEnumProperty(w, u"Pen.Style", kPenStyleIdents, kPenStyles, Pen.Style, pen.Style);
  WriteInt(w, u"Pen.Width", Pen.Width, pen.Width);
  WriteEnumProperty(w, u"Shape", kShapeIdents, kShapes, Shape, stRectangle);
}

bool TShape::ReadProperty(const TPropertyValue& v) {
  const std::u16string_view name = v.Info->Name;
  if (name == u"Brush.Color") Brush.Color = ColorValue(v);
  else if (name == u"Brush.Style") Brush.Style = EnumValue(v, kBrushStyles);
  else if (name == u"Pen.Color") Pen.Color = ColorValue(v);
  else if (name == u"Pen.Style") Pen.Style = EnumValue(v, kPenStyles);
  else if (name == u"Pen.Width") Pen.Width = IntValue(v);
  else if (name == u"Shape") Shape = EnumValue(v, kShapes);
  else return TControl::ReadProperty(v);
  Invalidate();
  return true;
}

void TTimer::WriteProperties(TWriter& w) {
  TComponent::WriteProperties(w);
  WriteBool(w, u"Enabled", enabled_, true);
  WriteInt(w, u"Interval", interval_, 1000);
}

bool TTimer::ReadProperty(const TPropertyValue& v) {
  const std::u16string_view name = v.Info->Name;
  if (name == u"Enabled") SetEnabled(BoolValue(v));
  else if (name == u"Interval") SetInterval(static_cast<unsigned>(v.Integer));
  else return TComponent::ReadProperty(v);
  return true;
}

void TStringGrid::WriteProperties(TWriter& w) {
  TWinControl::WriteProperties(w);
  WriteInt(w, u"ColCount", ColCount(), 5);
  WriteInt(w, u"DefaultColWidth", DefaultColWidth, 64);
  WriteInt(w, u"DefaultRowHeight", DefaultRowHeight, 24);
  WriteInt(w, u"FixedCols", FixedCols, 1);
  WriteInt(w, u"FixedRows", FixedRows, 1);
  WriteInt(w, u"RowCount", RowCount(), 5);
}

bool TStringGrid::ReadProperty(const TPropertyValue& v) {
  const std::u16string_view name = v.Info->Name;
  if (name == u"ColCount") SetColCount(IntValue(v));
  else if (name == u"DefaultColWidth") DefaultColWidth = IntValue(v);
  else if (name == u"DefaultRowHeight") DefaultRowHeight = IntValue(v);
  else if (name == u"FixedCols") FixedCols = IntValue(v);
  else if (name == u"FixedRows") FixedRows = IntValue(v);
  else if (name == u"RowCount") SetRowCount(IntValue(v));
  else return TWinControl::ReadProperty(v);
  return true;
}

void THeaderControl::WriteProperties(TWriter& w) {
  TWinControl::WriteProperties(w);
  if (Sections.Count() == 0) return;
  w.WriteStr(u"Sections");
  w.WriteValue(rtl::vaCollection);
  for (int i = 0; i < Sections.Count(); ++i) {
    w.WriteValue(rtl::vaList);
    WriteText(w, u"Text", Sections[i].Text());
    // Always stored: the framework gives it no default.
    w.WriteStr(u"Width");
    w.WriteInteger(Sections[i].Width());
    w.WriteListEnd();
  }
  w.WriteListEnd();
}

bool THeaderControl::ReadProperty(const TPropertyValue& v) {
  if (v.Info->Name != u"Sections") return TWinControl::ReadProperty(v);
  // The stream's sections replace those there are, as the framework's collections do.
  Sections.Clear();
  for (const std::vector<TPropertyValue>& item : v.Items) {
    THeaderSection& section = Sections.Add();
    for (const TPropertyValue& part : item) {
      if (part.Info->Name == u"Text") section.SetText(part.Text);
      else if (part.Info->Name == u"Width") section.SetWidth(IntValue(part));
    }
  }
  return true;
}

}  // namespace ui
