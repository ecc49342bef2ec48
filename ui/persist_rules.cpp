// The classes a component stream may name, the properties each stores, and the reading
// of a tree (ui/persist_rules.h).
#include "ui/persist_rules.h"

#include <array>
#include <limits>
#include <set>
#include <utility>

#include "rtl/ustring.h"

namespace ui {

namespace {

using enum TPropertyKind;
using enum TPlacement;
using rtl::EFilerError;
using rtl::TReader;
using namespace std::string_view_literals;

constexpr std::u16string_view kAligns[] = {u"alNone", u"alTop",   u"alBottom",
                                           u"alLeft", u"alRight", u"alClient"};
constexpr std::u16string_view kBevels[] = {u"bvNone", u"bvLowered", u"bvRaised", u"bvSpace"};
constexpr std::u16string_view kPositions[] = {u"poDesigned", u"poDefault", u"poDefaultPosOnly",
                                              u"poScreenCenter", u"poMainFormCenter"};
constexpr std::u16string_view kBorderStyles[] = {u"bsNone", u"bsSingle", u"bsSizeable",
                                                 u"bsDialog", u"bsToolWindow"};

// System colours carry the window system's colour index (COLOR_BTNFACE is 15, ...).
constexpr std::pair<TColor, std::u16string_view> kColors[] = {
    {SystemColor(0), u"clScrollBar"},      {SystemColor(1), u"clBackground"},
    {SystemColor(5), u"clWindow"},         {SystemColor(8), u"clWindowText"},
    {SystemColor(6), u"clWindowFrame"},    {SystemColor(15), u"clBtnFace"},
    {SystemColor(16), u"clBtnShadow"},     {SystemColor(20), u"clBtnHighlight"},
    {SystemColor(18), u"clBtnText"},       {SystemColor(13), u"clHighlight"},
    {SystemColor(14), u"clHighlightText"}, {SystemColor(17), u"clGrayText"},
    {SystemColor(24), u"clInfoBk"},        {SystemColor(23), u"clInfoText"},
    {0x000000, u"clBlack"},                {0x000080, u"clMaroon"},
    {0x008000, u"clGreen"},                {0x800000, u"clNavy"},
    {0x808080, u"clGray"},                 {0xC0C0C0, u"clSilver"},
    {0x0000FF, u"clRed"},                  {0x00FF00, u"clLime"},
    {0x00FFFF, u"clYellow"},               {0xFF0000, u"clBlue"},
    {0xFFFFFF, u"clWhite"},
};

constexpr TPropertyInfo kComponentProps[] = {{u"Tag", pkInt64}};
constexpr TPropertyInfo kControlProps[] = {
    {u"Left", pkInteger},       {u"Top", pkInteger},
    {u"Width", pkInteger},      {u"Height", pkInteger},
    {u"Align", pkEnum, kAligns}, {u"AlignWithMargins", pkBoolean},
    {u"Caption", pkString},     {u"Color", pkColor},
    {u"ParentColor", pkBoolean}, {u"Enabled", pkBoolean},
    {u"Visible", pkBoolean},
};
constexpr TPropertyInfo kFormProps[] = {{u"BorderStyle", pkEnum, kBorderStyles},
                                        {u"Position", pkEnum, kPositions},
                                        {u"KeyPreview", pkBoolean}};
constexpr TPropertyInfo kLabelProps[] = {{u"AutoSize", pkBoolean},
                                         {u"ShowAccelChar", pkBoolean},
                                         {u"Transparent", pkBoolean},
                                         {u"WordWrap", pkBoolean}};
constexpr TPropertyInfo kPanelProps[] = {{u"BevelInner", pkEnum, kBevels},
                                         {u"BevelOuter", pkEnum, kBevels},
                                         {u"BevelWidth", pkInteger},
                                         {u"BorderWidth", pkInteger},
                                         {u"ShowCaption", pkBoolean}};
constexpr TPropertyInfo kImageProps[] = {{u"Picture.Data", pkPicture},
                                         {u"Center", pkBoolean},
                                         {u"Proportional", pkBoolean},
                                         {u"Stretch", pkBoolean},
                                         {u"Transparent", pkBoolean}};
constexpr TPropertyInfo kListBoxProps[] = {{u"Items.Strings", pkStrings}};
constexpr TPropertyInfo kMemoProps[] = {{u"Lines.Strings", pkStrings}};
constexpr TPropertyInfo kCheckBoxProps[] = {{u"Checked", pkBoolean}};
constexpr TPropertyInfo kMenuItemProps[] = {{u"Caption", pkString},
                                            {u"Checked", pkBoolean},
                                            {u"Enabled", pkBoolean},
                                            {u"Hint", pkString},
                                            {u"Visible", pkBoolean}};

// Name, base, creatable, placement, holds controls, holds menu items, own properties.
constexpr TClassInfo kClasses[] = {
    {u"TComponent", u"", false, plNone, false, false, kComponentProps},
    {u"TControl", u"TComponent", false, plControl, false, false, kControlProps},
    {u"TWinControl", u"TControl", false, plControl, true, false, {}},
    {u"TForm", u"TWinControl", false, plControl, true, false, kFormProps},
    {u"TFrame", u"TWinControl", false, plControl, true, false, {}},
    {u"TLabel", u"TControl", true, plControl, false, false, kLabelProps},
    {u"TPanel", u"TWinControl", true, plControl, true, false, kPanelProps},
    {u"TImage", u"TControl", true, plControl, false, false, kImageProps},
    {u"TShape", u"TControl", true, plControl, false, false, {}},
    {u"TSpeedButton", u"TWinControl", true, plControl, true, false, {}},
    {u"TScrollBox", u"TWinControl", true, plControl, true, false, {}},
    {u"TListBox", u"TWinControl", true, plControl, true, false, kListBoxProps},
    {u"TCheckListBox", u"TListBox", true, plControl, true, false, {}},
    {u"TMemo", u"TWinControl", true, plControl, true, false, kMemoProps},
    {u"TCheckBox", u"TWinControl", true, plControl, true, false, kCheckBoxProps},
    {u"TStringGrid", u"TWinControl", true, plControl, true, false, {}},
    {u"THeaderControl", u"TWinControl", true, plControl, true, false, {}},
    {u"TTimer", u"TComponent", true, plNone, false, false, {}},
    {u"TPopupMenu", u"TComponent", true, plNone, false, true, {}},
    {u"TMenuItem", u"TComponent", true, plMenuItem, false, true, kMenuItemProps},
};

// The graphic classes a picture's data may name.
constexpr std::u16string_view kGraphicClasses[] = {u"TBitmap", u"TPngImage", u"TJPEGImage",
                                                   u"TGIFImage", u"TWICImage", u"TIcon"};

[[noreturn]] void BadValue(const std::u16string& detail) {
  throw EFilerError(u"Ungültiger Eigenschaftswert: " + detail);
}

std::int64_t ReadInt32(TReader& r) {
  const std::int64_t value = r.ReadInteger();
  if (value < std::numeric_limits<std::int32_t>::min() ||
      value > std::numeric_limits<std::int32_t>::max())
    BadValue(rtl::IntToStr(value));
  return value;
}

// A picture's data: the graphic class's name, for a bitmap the count of its bytes, then
// the bytes of the picture's file format.
void ReadPicture(TReader& r, TPropertyValue& v) {
  rtl::TMemoryStream data(r.ReadBinary());
  TReader inner(data);
  v.GraphicClass = inner.ReadStr();
  if (v.GraphicClass.empty()) return;  // no picture
  bool known = false;
  for (std::u16string_view c : kGraphicClasses) known = known || rtl::SameText(c, v.GraphicClass);
  if (!known) throw rtl::EClassNotFound(u"Klasse " + v.GraphicClass + u" nicht gefunden");
  std::int64_t count = data.Size() - data.Position();
  if (rtl::SameText(v.GraphicClass, u"TBitmap")) {
    std::int32_t stated = 0;
    data.ReadBuffer(&stated, 4);
    if (stated < 0 || stated > data.Size() - data.Position()) BadValue(u"Bitmap-Länge");
    count = stated;
  }
  v.Bytes.resize(static_cast<std::size_t>(count));
  if (count > 0) data.ReadBuffer(v.Bytes.data(), v.Bytes.size());
}

TPropertyValue ReadValue(TReader& r, const TPropertyInfo& info) {
  TPropertyValue v;
  v.Info = &info;
  switch (info.Kind) {
    case pkInteger: v.Integer = ReadInt32(r); break;
    case pkInt64: v.Integer = r.ReadInteger(); break;
    case pkBoolean: v.Integer = r.ReadBoolean() ? 1 : 0; break;
    case pkString: v.Text = r.ReadString(); break;
    case pkEnum: {
      const std::u16string ident = r.ReadIdent();
      for (std::size_t i = 0; i < info.Idents.size(); ++i)
        if (rtl::SameText(ident, info.Idents[i])) {
          v.Integer = static_cast<std::int64_t>(i);
          v.Text = info.Idents[i];
          return v;
        }
      BadValue(ident);
    }
    case pkColor:
      if (r.NextValue() == rtl::vaIdent) {
        v.Text = r.ReadIdent();
        TColor color = 0;
        if (!IdentToColor(v.Text, color)) BadValue(v.Text);
        v.Integer = color;
      } else {
        v.Integer = ReadInt32(r);
      }
      break;
    case pkStrings:
      if (r.ReadValue() != rtl::vaList) BadValue(std::u16string(info.Name));
      while (!r.EndOfList()) v.Lines.push_back(r.ReadString());
      r.ReadListEnd();
      break;
    case pkPicture: ReadPicture(r, v); break;
  }
  return v;
}

void ReadProperties(TReader& r, TStreamedComponent& c) {
  while (!r.EndOfList()) {
    const std::u16string name = r.ReadStr();
    const TPropertyInfo* info = FindPropertyInfo(*c.Info, name);
    if (info == nullptr)
      throw EFilerError(u"Fehler beim Lesen von " + c.Name + u"." + name + u": Eigenschaft " +
                        name + u" existiert nicht");
    c.Properties.push_back(ReadValue(r, *info));
  }
  r.ReadListEnd();
}

// Where a component of class `info` goes when read inside `enclosing`.
int PlaceInside(const TClassInfo& info, int enclosingIndex, const TClassInfo& enclosing) {
  switch (info.Placement) {
    case plControl: return enclosing.HoldsControls ? enclosingIndex : kNoParent;
    case plMenuItem: return enclosing.HoldsMenuItems ? enclosingIndex : kNoParent;
    case plNone: break;
  }
  return kNoParent;
}

}  // namespace

const std::span<const std::u16string_view> kAlignIdents = kAligns;
const std::span<const std::u16string_view> kBevelIdents = kBevels;
const std::span<const std::u16string_view> kPositionIdents = kPositions;
const std::span<const std::u16string_view> kBorderStyleIdents = kBorderStyles;

const TClassInfo* FindClassInfo(std::u16string_view name) {
  for (const TClassInfo& c : kClasses)
    if (rtl::SameText(c.Name, name)) return &c;
  return nullptr;
}

const TPropertyInfo* FindPropertyInfo(const TClassInfo& info, std::u16string_view name) {
  // The table's bases form a short chain that ends at TComponent.
  for (const TClassInfo* c = &info; c != nullptr;
       c = c->Base.empty() ? nullptr : FindClassInfo(c->Base))
    for (const TPropertyInfo& p : c->Properties)
      if (rtl::SameText(p.Name, name)) return &p;
  return nullptr;
}

std::u16string ColorToIdent(TColor color) {
  for (const auto& [value, ident] : kColors)
    if (value == color) return std::u16string(ident);
  return u"";
}

bool IdentToColor(std::u16string_view ident, TColor& color) {
  for (const auto& [value, name] : kColors)
    if (rtl::SameText(ident, name)) {
      color = value;
      return true;
    }
  return false;
}

TComponentTree ReadComponentTree(rtl::TStream& stream, std::u16string_view rootClass) {
  TComponentTree tree;
  tree.Root.Info = FindClassInfo(rootClass);
  if (tree.Root.Info == nullptr)
    throw rtl::EClassNotFound(u"Klasse " + std::u16string(rootClass) + u" nicht gefunden");
  TReader r(stream);
  r.ReadSignature();
  tree.Root.ClassName = r.ReadStr();
  tree.Root.Name = r.ReadStr();
  ReadProperties(r, tree.Root);

  // Names are compared as the framework finds components, ASCII case ignored.
  std::set<std::u16string> names;
  // The components whose children are being read, innermost last: index and class.
  std::vector<std::pair<int, const TClassInfo*>> open{{-1, tree.Root.Info}};
  while (!open.empty()) {
    if (r.EndOfList()) {
      r.ReadListEnd();
      open.pop_back();
      continue;
    }
    if (open.size() > static_cast<std::size_t>(kMaxNestingDepth))
      throw EFilerError(u"Komponenten sind tiefer als " + rtl::IntToStr(kMaxNestingDepth) +
                        u" Ebenen verschachtelt");
    TStreamedComponent c;
    c.ClassName = r.ReadStr();
    c.Name = r.ReadStr();
    c.Info = FindClassInfo(c.ClassName);
    if (c.Info == nullptr || !c.Info->Creatable)
      throw rtl::EClassNotFound(u"Klasse " + c.ClassName + u" nicht gefunden");
    // A name listed twice would put one component in two places, or inside itself.
    if (!c.Name.empty() && !names.insert(rtl::UpperCase(c.Name)).second)
      throw EFilerError(u"Eine Komponente mit der Bezeichnung " + c.Name +
                        u" ist bereits vorhanden");
    const auto [enclosing, enclosingInfo] = open.back();
    c.Enclosing = enclosing;
    c.Parent = PlaceInside(*c.Info, enclosing, *enclosingInfo);
    ReadProperties(r, c);
    const int index = static_cast<int>(tree.Children.size());
    const TClassInfo* info = c.Info;
    tree.Children.push_back(std::move(c));
    open.emplace_back(index, info);
  }
  return tree;
}

}  // namespace ui
