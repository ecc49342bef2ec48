// Streaming of components (ui/persist.h): the properties each class of the library stores,
// the registry of classes a stream may name, and the reading and writing of a component
// tree. Reading is iterative, so a stream nested deep cannot exhaust the stack.
#include "ui/persist.h"

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
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

using rtl::TReader;
using rtl::TWriter;

template <class E, std::size_t N>
using TNames = std::array<std::pair<E, const char16_t*>, N>;

constexpr TNames<TAlign, 6> kAligns{{{alNone, u"alNone"},
                                     {alTop, u"alTop"},
                                     {alBottom, u"alBottom"},
                                     {alLeft, u"alLeft"},
                                     {alRight, u"alRight"},
                                     {alClient, u"alClient"}}};
constexpr TNames<TBevelCut, 4> kBevels{
    {{bvNone, u"bvNone"}, {bvLowered, u"bvLowered"}, {bvRaised, u"bvRaised"}, {bvSpace, u"bvSpace"}}};
constexpr TNames<TPosition, 5> kPositions{{{poDesigned, u"poDesigned"},
                                           {poDefault, u"poDefault"},
                                           {poDefaultPosOnly, u"poDefaultPosOnly"},
                                           {poScreenCenter, u"poScreenCenter"},
                                           {poMainFormCenter, u"poMainFormCenter"}}};
constexpr TNames<TFormBorderStyle, 5> kBorderStyles{{{bsNone, u"bsNone"},
                                                     {bsSingle, u"bsSingle"},
                                                     {bsSizeable, u"bsSizeable"},
                                                     {bsDialog, u"bsDialog"},
                                                     {bsToolWindow, u"bsToolWindow"}}};
constexpr TNames<TColor, 25> kColors{{
    {clScrollBar, u"clScrollBar"}, {clBackground, u"clBackground"}, {clWindow, u"clWindow"},
    {clWindowText, u"clWindowText"}, {clWindowFrame, u"clWindowFrame"},
    {clBtnFace, u"clBtnFace"}, {clBtnShadow, u"clBtnShadow"},
    {clBtnHighlight, u"clBtnHighlight"}, {clBtnText, u"clBtnText"},
    {clHighlight, u"clHighlight"}, {clHighlightText, u"clHighlightText"},
    {clGrayText, u"clGrayText"}, {clInfoBk, u"clInfoBk"}, {clInfoText, u"clInfoText"},
    {clBlack, u"clBlack"}, {clMaroon, u"clMaroon"}, {clGreen, u"clGreen"}, {clNavy, u"clNavy"},
    {clGray, u"clGray"}, {clSilver, u"clSilver"}, {clRed, u"clRed"}, {clLime, u"clLime"},
    {clYellow, u"clYellow"}, {clBlue, u"clBlue"}, {clWhite, u"clWhite"},
}};

template <class E, std::size_t N>
void WriteEnum(TWriter& w, const TNames<E, N>& names, E value) {
  for (const auto& [v, n] : names)
    if (v == value) return w.WriteIdent(n);
}

template <class E, std::size_t N>
E ReadEnum(TReader& r, const TNames<E, N>& names) {
  const std::u16string ident = r.ReadIdent();
  for (const auto& [v, n] : names)
    if (rtl::SameText(ident, n)) return v;
  throw rtl::EFilerError(u"Ungültiger Eigenschaftswert: " + ident);
}

int ReadInt(TReader& r) { return static_cast<int>(r.ReadInteger()); }

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
void WriteEnumProperty(TWriter& w, const char16_t* name, const TNames<E, N>& names, E value,
                       E fallback) {
  if (value == fallback) return;
  w.WriteStr(name);
  WriteEnum(w, names, value);
}

// A list of strings, as lines of lists and memos are stored.
void WriteStrings(TWriter& w, const char16_t* name, const rtl::TStrings& lines) {
  if (lines.Count() == 0) return;
  w.WriteStr(name);
  w.WriteValue(rtl::vaList);
  for (int i = 0; i < lines.Count(); ++i) w.WriteString(lines[i]);
  w.WriteListEnd();
}

void ReadStrings(TReader& r, rtl::TStrings& lines) {
  if (r.ReadValue() != rtl::vaList) throw rtl::EFilerError(u"Ungültiger Eigenschaftswert");
  lines.BeginUpdate();
  lines.Clear();
  while (!r.EndOfList()) lines.Add(r.ReadString());
  r.ReadListEnd();
  lines.EndUpdate();
}

// The registry, with the library's own classes in it from the first use.
std::map<std::u16string, TComponentFactory, std::less<>>& Classes() {
  static std::map<std::u16string, TComponentFactory, std::less<>> classes;
  static std::once_flag standard;
  std::call_once(standard, [] {
    auto add = [](const std::type_info& type, TComponentFactory f) {
      classes.emplace(rtl::TypeName(type), std::move(f));
    };
    add(typeid(TLabel), [](TComponent* o) { return new TLabel(o); });
    add(typeid(TPanel), [](TComponent* o) { return new TPanel(o); });
    add(typeid(TImage), [](TComponent* o) { return new TImage(o); });
    add(typeid(TShape), [](TComponent* o) { return new TShape(o); });
    add(typeid(TTimer), [](TComponent* o) { return new TTimer(o); });
    add(typeid(TSpeedButton), [](TComponent* o) { return new TSpeedButton(o); });
    add(typeid(TScrollBox), [](TComponent* o) { return new TScrollBox(o); });
    add(typeid(TListBox), [](TComponent* o) { return new TListBox(o); });
    add(typeid(TCheckListBox), [](TComponent* o) { return new TCheckListBox(o); });
    add(typeid(TMemo), [](TComponent* o) { return new TMemo(o); });
    add(typeid(TCheckBox), [](TComponent* o) { return new TCheckBox(o); });
    add(typeid(TStringGrid), [](TComponent* o) { return new TStringGrid(o); });
    add(typeid(THeaderControl), [](TComponent* o) { return new THeaderControl(o); });
    add(typeid(TPopupMenu), [](TComponent* o) { return new TPopupMenu(o); });
    add(typeid(TMenuItem), [](TComponent* o) { return new TMenuItem(o); });
  });
  return classes;
}

void WriteOne(TWriter& w, TComponent& c, TComponent* root) {
  w.WriteStr(c.ClassName());
  w.WriteStr(c.Name);
  c.WriteProperties(w);
  w.WriteListEnd();
  c.GetChildren([&](TComponent* child) { WriteOne(w, *child, root); }, root);
  w.WriteListEnd();
}

void ReadProperties(TReader& r, TComponent& c) {
  while (!r.EndOfList()) {
    const std::u16string name = r.ReadStr();
    if (!c.ReadProperty(name, r))
      throw rtl::EFilerError(u"Fehler beim Lesen von " + c.Name + u"." + name + u": Eigenschaft " +
                             name + u" existiert nicht");
  }
  r.ReadListEnd();
}

}  // namespace

void RegisterClass(const std::u16string& name, TComponentFactory factory) {
  Classes()[name] = std::move(factory);
}

TComponentFactory FindClass(std::u16string_view name) {
  const auto& classes = Classes();
  const auto it = classes.find(name);
  if (it == classes.end())
    throw rtl::EClassNotFound(u"Klasse " + std::u16string(name) + u" nicht gefunden");
  return it->second;
}

std::u16string ColorToIdent(TColor color) {
  for (const auto& [v, n] : kColors)
    if (v == color) return n;
  return u"";
}

bool IdentToColor(std::u16string_view ident, TColor& color) {
  for (const auto& [v, n] : kColors)
    if (rtl::SameText(ident, n)) {
      color = v;
      return true;
    }
  return false;
}

void WriteComponent(rtl::TStream& stream, TComponent& component) {
  TWriter w(stream);
  w.WriteSignature();
  WriteOne(w, component, &component);
}

void ReadComponent(rtl::TStream& stream, TComponent& component) {
  TReader r(stream);
  r.ReadSignature();
  r.ReadStr();  // the root keeps its own class and name
  r.ReadStr();
  ReadProperties(r, component);
  // The components whose children are being read, innermost last.
  std::vector<TComponent*> open{&component};
  while (!open.empty()) {
    if (r.EndOfList()) {
      r.ReadListEnd();
      open.pop_back();
      continue;
    }
    const std::u16string className = r.ReadStr();
    const std::u16string name = r.ReadStr();
    TComponent* child = name.empty() ? nullptr : component.FindComponent(name);
    if (child == nullptr) {
      child = FindClass(className)(&component);
      child->Name = name;
    }
    child->SetParentComponent(open.back());
    ReadProperties(r, *child);
    open.push_back(child);
  }
}

// ---- What each class stores -------------------------------------------------------------

void TComponent::WriteProperties(TWriter& w) {
  WriteInt(w, u"Tag", Tag, 0);
}

bool TComponent::ReadProperty(const std::u16string& name, TReader& r) {
  if (name != u"Tag") return false;
  Tag = static_cast<std::intptr_t>(r.ReadInteger());
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
  WriteEnumProperty(w, u"Align", kAligns, align_, alNone);
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

bool TControl::ReadProperty(const std::u16string& name, TReader& r) {
  if (name == u"Left") SetLeft(ReadInt(r));
  else if (name == u"Top") SetTop(ReadInt(r));
  else if (name == u"Width") SetWidth(ReadInt(r));
  else if (name == u"Height") SetHeight(ReadInt(r));
  else if (name == u"Align") SetAlign(ReadEnum(r, kAligns));
  else if (name == u"AlignWithMargins") AlignWithMargins = r.ReadBoolean();
  else if (name == u"Caption") SetCaption(r.ReadString());
  else if (name == u"Color") {
    if (r.NextValue() == rtl::vaIdent) {
      const std::u16string ident = r.ReadIdent();
      if (!IdentToColor(ident, Color))
        throw rtl::EFilerError(u"Ungültiger Eigenschaftswert: " + ident);
    } else {
      Color = static_cast<TColor>(r.ReadInteger());
    }
    ParentColor = false;
  } else if (name == u"ParentColor") ParentColor = r.ReadBoolean();
  else if (name == u"Enabled") SetEnabled(r.ReadBoolean());
  else if (name == u"Visible") SetVisible(r.ReadBoolean());
  else return TComponent::ReadProperty(name, r);
  return true;
}

void TControl::SetParentComponent(TComponent* parent) {
  auto* control = dynamic_cast<TControl*>(parent);
  if (TWinControl* container = control ? control->AsWinControl() : nullptr) SetParent(container);
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
  TControl::WriteProperties(w);
  WriteEnumProperty(w, u"BorderStyle", kBorderStyles, BorderStyle, bsSizeable);
  WriteEnumProperty(w, u"Position", kPositions, Position, poDefaultPosOnly);
  WriteBool(w, u"KeyPreview", KeyPreview, false);
}

bool TCustomForm::ReadProperty(const std::u16string& name, TReader& r) {
  if (name == u"BorderStyle") BorderStyle = ReadEnum(r, kBorderStyles);
  else if (name == u"Position") Position = ReadEnum(r, kPositions);
  else if (name == u"KeyPreview") KeyPreview = r.ReadBoolean();
  else return TControl::ReadProperty(name, r);
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

bool TLabel::ReadProperty(const std::u16string& name, TReader& r) {
  if (name == u"AutoSize") SetAutoSize(r.ReadBoolean());
  else if (name == u"ShowAccelChar") SetShowAccelChar(r.ReadBoolean());
  else if (name == u"Transparent") Transparent = r.ReadBoolean();
  else if (name == u"WordWrap") SetWordWrap(r.ReadBoolean());
  else return TControl::ReadProperty(name, r);
  return true;
}

void TPanel::WriteProperties(TWriter& w) {
  TControl::WriteProperties(w);
  WriteEnumProperty(w, u"BevelInner", kBevels, BevelInner, bvNone);
  WriteEnumProperty(w, u"BevelOuter", kBevels, BevelOuter, bvRaised);
  WriteInt(w, u"BevelWidth", BevelWidth, 1);
  WriteInt(w, u"BorderWidth", BorderWidth, 0);
  WriteBool(w, u"ShowCaption", ShowCaption, true);
}

bool TPanel::ReadProperty(const std::u16string& name, TReader& r) {
  if (name == u"BevelInner") BevelInner = ReadEnum(r, kBevels);
  else if (name == u"BevelOuter") BevelOuter = ReadEnum(r, kBevels);
  else if (name == u"BevelWidth") BevelWidth = ReadInt(r);
  else if (name == u"BorderWidth") BorderWidth = ReadInt(r);
  else if (name == u"ShowCaption") ShowCaption = r.ReadBoolean();
  else return TControl::ReadProperty(name, r);
  return true;
}

void TListBox::WriteProperties(TWriter& w) {
  TControl::WriteProperties(w);
  WriteStrings(w, u"Items.Strings", Items());
}

bool TListBox::ReadProperty(const std::u16string& name, TReader& r) {
  if (name != u"Items.Strings") return TControl::ReadProperty(name, r);
  ReadStrings(r, Items());
  return true;
}

void TMemo::WriteProperties(TWriter& w) {
  TControl::WriteProperties(w);
  rtl::TStringList lines;
  lines.SetText(Text());
  WriteStrings(w, u"Lines.Strings", lines);
}

bool TMemo::ReadProperty(const std::u16string& name, TReader& r) {
  if (name != u"Lines.Strings") return TControl::ReadProperty(name, r);
  rtl::TStringList lines;
  ReadStrings(r, lines);
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

bool TCheckBox::ReadProperty(const std::u16string& name, TReader& r) {
  if (name != u"Checked") return TControl::ReadProperty(name, r);
  SetChecked(r.ReadBoolean());
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

bool TMenuItem::ReadProperty(const std::u16string& name, TReader& r) {
  if (name == u"Caption") Caption = r.ReadString();
  else if (name == u"Checked") Checked = r.ReadBoolean();
  else if (name == u"Enabled") Enabled = r.ReadBoolean();
  else if (name == u"Hint") Hint = r.ReadString();
  else if (name == u"Visible") Visible = r.ReadBoolean();
  else return TComponent::ReadProperty(name, r);
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
  if (into != nullptr && parent_ != into) {
    if (parent_ != nullptr) parent_->Remove(this);
    into->Add(this);
  }
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

bool TImage::ReadProperty(const std::u16string& name, TReader& r) {
  if (name == u"Picture.Data") {
    rtl::TMemoryStream data(r.ReadBinary());
    const std::u16string className = TReader(data).ReadStr();
    if (className == u"TBitmap") data.Seek(4, rtl::TSeekOrigin::soCurrent);
    Picture.LoadFromStream(data);
  } else if (name == u"Center") Center = r.ReadBoolean();
  else if (name == u"Proportional") Proportional = r.ReadBoolean();
  else if (name == u"Stretch") Stretch = r.ReadBoolean();
  else if (name == u"Transparent") Transparent = r.ReadBoolean();
  else return TControl::ReadProperty(name, r);
  return true;
}

}  // namespace ui
