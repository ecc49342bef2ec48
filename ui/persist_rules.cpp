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
// A scroll box's border is one of the first two.
constexpr std::u16string_view kScrollBoxBorders[] = {u"bsNone", u"bsSingle"};
constexpr std::u16string_view kFormStyles[] = {u"fsNormal", u"fsStayOnTop"};
constexpr std::u16string_view kWindowStates[] = {u"wsNormal", u"wsMinimized", u"wsMaximized"};
constexpr std::u16string_view kFontStyles[] = {u"fsBold", u"fsItalic", u"fsUnderline",
                                               u"fsStrikeOut"};
constexpr std::u16string_view kFontPitches[] = {u"fpDefault", u"fpVariable", u"fpFixed"};
constexpr std::u16string_view kAnchors[] = {u"akLeft", u"akTop", u"akRight", u"akBottom"};
constexpr std::u16string_view kStyleElements[] = {u"seFont", u"seClient", u"seBorder"};
constexpr std::u16string_view kShapes[] = {u"stRectangle",   u"stSquare",  u"stRoundRect",
                                           u"stRoundSquare", u"stEllipse", u"stCircle"};
constexpr std::u16string_view kPenStyles[] = {u"psSolid", u"psDash", u"psDot", u"psClear"};
constexpr std::u16string_view kBrushStyles[] = {u"bsSolid", u"bsClear"};

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

constexpr std::pair<int, std::u16string_view> kCursors[] = {
    {0, u"crDefault"},     {-1, u"crNone"},        {-2, u"crArrow"},      {-3, u"crCross"},
    {-4, u"crIBeam"},      {-5, u"crSize"},        {-6, u"crSizeNESW"},   {-7, u"crSizeNS"},
    {-8, u"crSizeNWSE"},   {-9, u"crSizeWE"},      {-10, u"crUpArrow"},   {-11, u"crHourGlass"},
    {-12, u"crDrag"},      {-13, u"crNoDrop"},     {-14, u"crHSplit"},    {-15, u"crVSplit"},
    {-16, u"crMultiDrag"}, {-17, u"crSQLWait"},    {-18, u"crNo"},        {-19, u"crAppStart"},
    {-20, u"crHelp"},      {-21, u"crHandPoint"},  {-22, u"crSizeAll"},
};

constexpr std::pair<int, std::u16string_view> kCharsets[] = {
    {0, u"ANSI_CHARSET"},         {1, u"DEFAULT_CHARSET"},      {2, u"SYMBOL_CHARSET"},
    {77, u"MAC_CHARSET"},         {128, u"SHIFTJIS_CHARSET"},   {129, u"HANGEUL_CHARSET"},
    {130, u"JOHAB_CHARSET"},      {134, u"GB2312_CHARSET"},     {136, u"CHINESEBIG5_CHARSET"},
    {161, u"GREEK_CHARSET"},      {162, u"TURKISH_CHARSET"},    {163, u"VIETNAMESE_CHARSET"},
    {177, u"HEBREW_CHARSET"},     {178, u"ARABIC_CHARSET"},     {186, u"BALTIC_CHARSET"},
    {204, u"RUSSIAN_CHARSET"},    {222, u"THAI_CHARSET"},       {238, u"EASTEUROPE_CHARSET"},
    {255, u"OEM_CHARSET"},
};

// Sizes that a control's painting multiplies or adds stay far from overflowing.
constexpr std::int64_t kMaxExtent = 32767;
constexpr std::int64_t kMaxInt32 = std::numeric_limits<std::int32_t>::max();

constexpr TPropertyInfo kComponentProps[] = {{u"Tag", pkInt64}};
constexpr TPropertyInfo kControlProps[] = {
    {u"Left", pkInteger},
    {u"Top", pkInteger},
    {u"Width", pkInteger},
    {u"Height", pkInteger},
    {u"Anchors", pkSet, kAnchors},
    {u"Align", pkEnum, kAligns},
    {u"AlignWithMargins", pkBoolean},
    {u"Constraints.MaxHeight", pkInteger, {}, {}, 0, kMaxInt32},
    {u"Constraints.MaxWidth", pkInteger, {}, {}, 0, kMaxInt32},
    {u"Constraints.MinHeight", pkInteger, {}, {}, 0, kMaxInt32},
    {u"Constraints.MinWidth", pkInteger, {}, {}, 0, kMaxInt32},
    {u"Margins.Left", pkInteger, {}, {}, 0, kMaxExtent},
    {u"Margins.Top", pkInteger, {}, {}, 0, kMaxExtent},
    {u"Margins.Right", pkInteger, {}, {}, 0, kMaxExtent},
    {u"Margins.Bottom", pkInteger, {}, {}, 0, kMaxExtent},
    {u"Font.Charset", pkCharset},
    {u"Font.Color", pkColor},
    {u"Font.Height", pkInteger},
    {u"Font.Name", pkString},
    {u"Font.Pitch", pkEnum, kFontPitches},
    {u"Font.Style", pkSet, kFontStyles},
    {u"ParentFont", pkBoolean},
    {u"Caption", pkString},
    {u"Color", pkColor},
    {u"ParentColor", pkBoolean},
    {u"Cursor", pkCursor},
    {u"Enabled", pkBoolean},
    {u"Hint", pkString},
    {u"ParentShowHint", pkBoolean},
    {u"ShowHint", pkBoolean},
    {u"PopupMenu", pkComponent, {}, u"TPopupMenu"},
    {u"StyleElements", pkSet, kStyleElements},
    {u"Visible", pkBoolean},
};
// The framework numbers the tab order from 0; -1 is "not placed yet".
constexpr TPropertyInfo kWinControlProps[] = {{u"TabOrder", pkInteger, {}, {}, -1, kMaxExtent}};
constexpr TPropertyInfo kFormProps[] = {{u"BorderStyle", pkEnum, kBorderStyles},
                                        {u"FormStyle", pkEnum, kFormStyles},
                                        {u"Position", pkEnum, kPositions},
                                        {u"KeyPreview", pkBoolean},
                                        {u"WindowState", pkEnum, kWindowStates}};
constexpr TPropertyInfo kFrameProps[] = {{u"ParentBackground", pkBoolean}};
constexpr TPropertyInfo kLabelProps[] = {{u"AutoSize", pkBoolean},
                                         {u"ShowAccelChar", pkBoolean},
                                         {u"Transparent", pkBoolean},
                                         {u"WordWrap", pkBoolean}};
constexpr TPropertyInfo kPanelProps[] = {{u"BevelInner", pkEnum, kBevels},
                                         {u"BevelOuter", pkEnum, kBevels},
                                         {u"BevelWidth", pkInteger},
                                         {u"BorderWidth", pkInteger},
                                         {u"ParentBackground", pkBoolean},
                                         {u"ShowCaption", pkBoolean}};
constexpr TPropertyInfo kImageProps[] = {{u"Picture.Data", pkPicture},
                                         {u"Center", pkBoolean},
                                         {u"Proportional", pkBoolean},
                                         {u"Stretch", pkBoolean},
                                         {u"Transparent", pkBoolean}};
constexpr TPropertyInfo kShapeProps[] = {{u"Brush.Color", pkColor},
                                         {u"Brush.Style", pkEnum, kBrushStyles},
                                         {u"Pen.Color", pkColor},
                                         {u"Pen.Style", pkEnum, kPenStyles},
                                         {u"Pen.Width", pkInteger, {}, {}, 0, kMaxExtent},
                                         {u"Shape", pkEnum, kShapes}};
constexpr TPropertyInfo kScrollBoxProps[] = {{u"BorderStyle", pkEnum, kScrollBoxBorders},
                                             {u"ParentBackground", pkBoolean}};
constexpr TPropertyInfo kListBoxProps[] = {{u"Items.Strings", pkStrings}};
// Not a property of the framework's: the check marks, one byte per line (ui/checklst.h).
constexpr TPropertyInfo kCheckListBoxProps[] = {{u"Checks", pkBinary}};
constexpr TPropertyInfo kMemoProps[] = {{u"Lines.Strings", pkStrings}};
constexpr TPropertyInfo kCheckBoxProps[] = {{u"Checked", pkBoolean}};
// Counts and sizes that the grid's painting multiplies stay within 32 bits; the cells
// of all grids are limited further (kMaxGridCells).
constexpr TPropertyInfo kStringGridProps[] = {
    {u"ColCount", pkInteger, {}, {}, 1, 65536},
    {u"DefaultColWidth", pkInteger, {}, {}, 0, kMaxExtent},
    {u"DefaultRowHeight", pkInteger, {}, {}, 0, kMaxExtent},
    {u"FixedCols", pkInteger},
    {u"FixedRows", pkInteger},
    {u"RowCount", pkInteger, {}, {}, 1, 65536}};
constexpr TPropertyInfo kHeaderControlProps[] = {
    {u"Sections", pkCollection, {}, u"THeaderSection"}};
constexpr TPropertyInfo kHeaderSectionProps[] = {{u"Text", pkString}, {u"Width", pkInteger}};
constexpr TPropertyInfo kTimerProps[] = {
    {u"Enabled", pkBoolean},
    {u"Interval", pkInteger, {}, {}, 0, std::numeric_limits<std::uint32_t>::max()}};
constexpr TPropertyInfo kMenuItemProps[] = {{u"Caption", pkString},
                                            {u"Checked", pkBoolean},
                                            {u"Enabled", pkBoolean},
                                            {u"Hint", pkString},
                                            {u"Visible", pkBoolean}};

// Name, base, creatable, placement, holds controls, holds menu items, own properties.
constexpr TClassInfo kClasses[] = {
    {u"TComponent", u"", false, plNone, false, false, kComponentProps},
    {u"TControl", u"TComponent", false, plControl, false, false, kControlProps},
    {u"TWinControl", u"TControl", false, plControl, true, false, kWinControlProps},
    {u"TForm", u"TWinControl", false, plControl, true, false, kFormProps},
    {u"TFrame", u"TWinControl", false, plControl, true, false, kFrameProps},
    {u"TLabel", u"TControl", true, plControl, false, false, kLabelProps},
    {u"TPanel", u"TWinControl", true, plControl, true, false, kPanelProps},
    {u"TImage", u"TControl", true, plControl, false, false, kImageProps},
    {u"TShape", u"TControl", true, plControl, false, false, kShapeProps},
    {u"TSpeedButton", u"TWinControl", true, plControl, true, false, {}},
    {u"TScrollBox", u"TWinControl", true, plControl, true, false, kScrollBoxProps},
    {u"TListBox", u"TWinControl", true, plControl, true, false, kListBoxProps},
    {u"TCheckListBox", u"TListBox", true, plControl, true, false, kCheckListBoxProps},
    {u"TMemo", u"TWinControl", true, plControl, true, false, kMemoProps},
    {u"TCheckBox", u"TWinControl", true, plControl, true, false, kCheckBoxProps},
    {u"TStringGrid", u"TWinControl", true, plControl, true, false, kStringGridProps},
    {u"THeaderControl", u"TWinControl", true, plControl, true, false, kHeaderControlProps},
    {u"TTimer", u"TComponent", true, plNone, false, false, kTimerProps},
    {u"TPopupMenu", u"TComponent", true, plNone, false, true, {}},
    {u"TMenuItem", u"TComponent", true, plMenuItem, false, true, kMenuItemProps},
    // An item of a header's Sections, never a component of a stream of its own.
    {u"THeaderSection", u"", false, plNone, false, false, kHeaderSectionProps},
};

// The graphic classes a picture's data may name.
constexpr std::u16string_view kGraphicClasses[] = {u"TBitmap", u"TPngImage", u"TJPEGImage",
                                                   u"TGIFImage", u"TWICImage", u"TIcon"};

[[noreturn]] void BadValue(const std::u16string& detail) {
  throw EFilerError(u"Ungültiger Eigenschaftswert: " + detail);
}

std::int64_t ReadInRange(TReader& r, std::int64_t min, std::int64_t max) {
  const std::int64_t value = r.ReadInteger();
  if (value < min || value > max) BadValue(rtl::IntToStr(value));
  return value;
}

// A value stored by its name in one of the name tables, or as a number from min to max.
template <class T>
std::int64_t ReadNamedValue(TReader& r, TPropertyValue& v,
                            bool (*byName)(std::u16string_view, T&), std::int64_t min,
                            std::int64_t max) {
  if (r.NextValue() != rtl::vaIdent) return ReadInRange(r, min, max);
  v.Text = r.ReadIdent();
  T value{};
  if (!byName(v.Text, value)) BadValue(v.Text);
  return value;
}

// The index of `ident` among the property's names.
std::size_t IdentIndex(const TPropertyInfo& info, std::u16string_view ident) {
  for (std::size_t i = 0; i < info.Idents.size(); ++i)
    if (rtl::SameText(ident, info.Idents[i])) return i;
  BadValue(std::u16string(ident));
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

TPropertyValue ReadNamedValue(TReader& r, const TClassInfo& cls, const std::u16string& owner);

// Items of the framework's collections: each a list of properties of the item class,
// the framework's optional index before it passed over.
void ReadCollection(TReader& r, const TPropertyInfo& info, TPropertyValue& v) {
  if (r.ReadValue() != rtl::vaCollection) BadValue(std::u16string(info.Name));
  const TClassInfo* item = FindClassInfo(info.Class);
  while (!r.EndOfList()) {
    if (const rtl::TValueType t = r.NextValue();
        t == rtl::vaInt8 || t == rtl::vaInt16 || t == rtl::vaInt32)
      r.ReadInteger();
    if (r.ReadValue() != rtl::vaList) BadValue(std::u16string(info.Name));
    std::vector<TPropertyValue>& properties = v.Items.emplace_back();
    while (!r.EndOfList())
      properties.push_back(ReadNamedValue(r, *item, std::u16string(info.Name)));
    r.ReadListEnd();
  }
  r.ReadListEnd();
}

TPropertyValue ReadValue(TReader& r, const TPropertyInfo& info) {
  TPropertyValue v;
  v.Info = &info;
  switch (info.Kind) {
    case pkInteger: v.Integer = ReadInRange(r, info.Min, info.Max); break;
    case pkInt64: v.Integer = r.ReadInteger(); break;
    case pkBoolean: v.Integer = r.ReadBoolean() ? 1 : 0; break;
    case pkString: v.Text = r.ReadString(); break;
    case pkEnum: {
      const std::size_t i = IdentIndex(info, r.ReadIdent());
      v.Integer = static_cast<std::int64_t>(i);
      v.Text = info.Idents[i];
      break;
    }
    case pkSet:
      for (const std::u16string& member : r.ReadSet())
        v.Integer |= std::int64_t{1} << IdentIndex(info, member);
      break;
    case pkColor:
      v.Integer = ReadNamedValue(r, v, IdentToColor, std::numeric_limits<std::int32_t>::min(),
                                 std::numeric_limits<std::int32_t>::max());
      break;
    case pkCursor:
      // The framework's cursors are 16-bit; a program may register its own by number.
      v.Integer = ReadNamedValue(r, v, IdentToCursor, std::numeric_limits<std::int16_t>::min(),
                                 std::numeric_limits<std::int16_t>::max());
      break;
    case pkCharset:
      v.Integer = ReadNamedValue(r, v, IdentToCharset, 0, 255);
      break;
    case pkStrings:
      if (r.ReadValue() != rtl::vaList) BadValue(std::u16string(info.Name));
      while (!r.EndOfList()) v.Lines.push_back(r.ReadString());
      r.ReadListEnd();
      break;
    case pkPicture: ReadPicture(r, v); break;
    case pkBinary: v.Bytes = r.ReadBinary(); break;
    case pkCollection: ReadCollection(r, info, v); break;
    case pkComponent:
      // A name, or nil for none; "True" and the like are no names.
      if (r.NextValue() == rtl::vaNil) {
        r.ReadValue();
      } else {
        if (r.NextValue() != rtl::vaIdent) BadValue(std::u16string(info.Name));
        v.Text = r.ReadIdent();
        if (v.Text.empty()) BadValue(std::u16string(info.Name));
      }
      break;
  }
  return v;
}

// A property's name and its value; `owner` names what it belongs to in the message.
TPropertyValue ReadNamedValue(TReader& r, const TClassInfo& cls, const std::u16string& owner) {
  const std::u16string name = r.ReadStr();
  const TPropertyInfo* info = FindPropertyInfo(cls, name);
  if (info == nullptr)
    throw EFilerError(u"Fehler beim Lesen von " + owner + u"." + name + u": Eigenschaft " +
                      name + u" existiert nicht");
  return ReadValue(r, *info);
}

void ReadProperties(TReader& r, TStreamedComponent& c) {
  while (!r.EndOfList()) c.Properties.push_back(ReadNamedValue(r, *c.Info, c.Name));
  r.ReadListEnd();
}

// Adds the cells a string grid keeps to those of the grids before it: its counts as
// read, else those it starts with.
void CountGridCells(const TStreamedComponent& c, std::int64_t& cells) {
  if (!rtl::SameText(c.Info->Name, u"TStringGrid")) return;
  std::int64_t cols = 5, rows = 5;
  for (const TPropertyValue& v : c.Properties) {
    if (v.Info->Name == u"ColCount") cols = v.Integer;
    if (v.Info->Name == u"RowCount") rows = v.Integer;
  }
  cells += cols * rows;
  if (cells > kMaxGridCells)
    throw EFilerError(u"Die Tabellen haben zusammen mehr als " + rtl::IntToStr(kMaxGridCells) +
                      u" Zellen");
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
const std::span<const std::u16string_view> kFormStyleIdents = kFormStyles;
const std::span<const std::u16string_view> kWindowStateIdents = kWindowStates;
const std::span<const std::u16string_view> kFontStyleIdents = kFontStyles;
const std::span<const std::u16string_view> kFontPitchIdents = kFontPitches;
const std::span<const std::u16string_view> kAnchorIdents = kAnchors;
const std::span<const std::u16string_view> kStyleElementIdents = kStyleElements;
const std::span<const std::u16string_view> kShapeIdents = kShapes;
const std::span<const std::u16string_view> kPenStyleIdents = kPenStyles;
const std::span<const std::u16string_view> kBrushStyleIdents = kBrushStyles;

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

namespace {

// A value's name in one of the name tables above, and back (ASCII case ignored).
template <class T, std::size_t N>
std::u16string NameIn(const std::pair<T, std::u16string_view> (&table)[N], T value) {
  for (const auto& [v, name] : table)
    if (v == value) return std::u16string(name);
  return u"";
}

template <class T, std::size_t N>
bool ValueIn(const std::pair<T, std::u16string_view> (&table)[N], std::u16string_view ident,
             T& value) {
  for (const auto& [v, name] : table)
    if (rtl::SameText(ident, name)) {
      value = v;
      return true;
    }
  return false;
}

}  // namespace

std::u16string ColorToIdent(TColor color) { return NameIn(kColors, color); }
bool IdentToColor(std::u16string_view ident, TColor& color) { return ValueIn(kColors, ident, color); }
std::u16string CursorToIdent(int cursor) { return NameIn(kCursors, cursor); }
bool IdentToCursor(std::u16string_view ident, int& cursor) { return ValueIn(kCursors, ident, cursor); }
std::u16string CharsetToIdent(int charset) { return NameIn(kCharsets, charset); }
bool IdentToCharset(std::u16string_view ident, int& charset) {
  return ValueIn(kCharsets, ident, charset);
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
  std::int64_t cells = 0;
  CountGridCells(tree.Root, cells);

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
    CountGridCells(c, cells);
    const int index = static_cast<int>(tree.Children.size());
    const TClassInfo* info = c.Info;
    tree.Children.push_back(std::move(c));
    open.emplace_back(index, info);
  }
  return tree;
}

}  // namespace ui
