// Reading a component tree from the framework's binary format, decided without the window
// system: the classes a stream may name and the properties each stores, which component
// goes inside which, and every value, checked before anything is made. ui/persist.h then
// makes and configures the controls from the answer. Pure.
//
// A stream is written by someone else: it may be cut short, lie about lengths, nest
// without end, list one component inside itself or twice. All of that is refused here,
// with the format's errors (rtl::EFilerError, rtl::EClassNotFound, rtl::EReadError), so
// that the window part only meets trees it can build.
#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "rtl/filer.h"
#include "rtl/streams.h"
#include "ui/color.h"

namespace ui {

// A property whose value has parts is stored as one property per part, named with a dot
// ("Font.Name", "Margins.Left"), as the framework stores them.
enum class TPropertyKind {
  pkInteger,     // 32-bit, from the property's Min to its Max
  pkInt64,
  pkBoolean,
  pkString,
  pkEnum,        // one of the property's names
  pkSet,         // some of the property's names
  pkColor,       // a colour's name or its number
  pkCursor,      // a cursor's name or its number
  pkCharset,     // a character set's name or its number
  pkStrings,     // a list of strings (lines of lists and memos)
  pkPicture,     // a graphic class's name and the picture's bytes
  pkBinary,      // bytes in the class's own format
  pkCollection,  // items, each with the properties of the class named by Class
  pkComponent,   // another component of the root, of the class named by Class, by its name
};

struct TPropertyInfo {
  std::u16string_view Name;
  TPropertyKind Kind;
  std::span<const std::u16string_view> Idents = {};  // the names an enumeration or set takes
  std::u16string_view Class = {};
  std::int64_t Min = std::numeric_limits<std::int32_t>::min();
  std::int64_t Max = std::numeric_limits<std::int32_t>::max();
};

// Where a component of a class goes when it is read inside another one.
enum class TPlacement {
  plNone,      // nowhere: it lives only in its owner (timers, menus)
  plControl,   // into the enclosing component when that is a windowed control
  plMenuItem,  // into the enclosing menu item or popup menu
};

struct TClassInfo {
  std::u16string_view Name;
  std::u16string_view Base;  // whose properties it has too; "" for none
  bool Creatable;            // a stream may name it for a child
  TPlacement Placement;
  bool HoldsControls;        // a windowed control
  bool HoldsMenuItems;
  std::span<const TPropertyInfo> Properties;  // its own, beyond its base's
};

// The classes the library reads and writes; null for a name it does not know (ASCII case
// ignored, as the framework compares class names).
const TClassInfo* FindClassInfo(std::u16string_view name);
// The property of a class or of one of its bases; null when it has none of that name.
const TPropertyInfo* FindPropertyInfo(const TClassInfo& info, std::u16string_view name);

// The names of the enumerations, in the order of their values.
extern const std::span<const std::u16string_view> kAlignIdents;        // alNone ... alClient
extern const std::span<const std::u16string_view> kBevelIdents;        // bvNone ... bvSpace
extern const std::span<const std::u16string_view> kPositionIdents;     // poDesigned ...
extern const std::span<const std::u16string_view> kBorderStyleIdents;  // bsNone ...
extern const std::span<const std::u16string_view> kFormStyleIdents;    // fsNormal ...
extern const std::span<const std::u16string_view> kWindowStateIdents;  // wsNormal ...
extern const std::span<const std::u16string_view> kFontStyleIdents;    // fsBold ...
extern const std::span<const std::u16string_view> kFontPitchIdents;    // fpDefault ...
extern const std::span<const std::u16string_view> kAnchorIdents;       // akLeft ...
extern const std::span<const std::u16string_view> kStyleElementIdents;  // seFont ...
extern const std::span<const std::u16string_view> kShapeIdents;        // stRectangle ...
extern const std::span<const std::u16string_view> kPenStyleIdents;     // psSolid ...
extern const std::span<const std::u16string_view> kBrushStyleIdents;   // bsSolid ...

// The names a stream uses for colours ("clBtnFace"), both ways.
std::u16string ColorToIdent(TColor color);  // "" when the colour has no name
bool IdentToColor(std::u16string_view ident, TColor& color);
// The names of the framework's cursors ("crHandPoint"), both ways, at the framework's
// numbers (crDefault 0, crArrow -2, crHandPoint -21...).
std::u16string CursorToIdent(int cursor);  // "" when the cursor has no name
bool IdentToCursor(std::u16string_view ident, int& cursor);
// The names of the character sets ("DEFAULT_CHARSET"), both ways, at their Win32 numbers.
std::u16string CharsetToIdent(int charset);  // "" when the set has no name
bool IdentToCharset(std::u16string_view ident, int& charset);

class TComponent;

// One property as read, its value checked against the property's kind.
struct TPropertyValue {
  const TPropertyInfo* Info = nullptr;
  // Integers, Booleans (0, 1), colours, cursors, an enumeration's index; a set with bit i
  // for the property's i-th name.
  std::int64_t Integer = 0;
  // Strings; the name of an enumeration value, as the class spells it; the name of the
  // component referred to ("" for none).
  std::u16string Text;
  std::vector<std::u16string> Lines;  // lists of strings
  std::u16string GraphicClass;        // pictures: "TBitmap", "TPngImage", ...
  std::vector<std::uint8_t> Bytes;    // pictures: the bytes of the picture's file format; binary
  std::vector<std::vector<TPropertyValue>> Items;  // collections: each item's properties
  // The component referred to, found by the window part once every component is there.
  TComponent* Component = nullptr;
};

// No component lives inside it (see TStreamedComponent::Parent).
constexpr int kNoParent = -2;
// Deeper than any real form; a stream that nests further is refused.
constexpr int kMaxNestingDepth = 256;
// A string grid keeps a text for every cell and paints them all: the cells of all the
// grids of a stream together stay below this, so that a few bytes cannot ask for gigabytes.
constexpr std::int64_t kMaxGridCells = std::int64_t{1} << 18;

struct TStreamedComponent {
  const TClassInfo* Info = nullptr;
  std::u16string ClassName;  // as the stream names it
  std::u16string Name;
  // The index in TComponentTree::Children of the component it goes inside, -1 for the
  // root, kNoParent for none.
  int Parent = kNoParent;
  // The component it was read inside (the same index scheme; never kNoParent).
  int Enclosing = -1;
  std::vector<TPropertyValue> Properties;
};

struct TComponentTree {
  TStreamedComponent Root;  // its class and name are the stream's; Info is the reader's
  // In stream order: a component comes after the one it was read inside.
  std::vector<TStreamedComponent> Children;
};

// Reads "TPF0" and a component tree into which a component of class `rootClass` (a class
// FindClassInfo knows) is read. Refused: a stream not in the format, cut short, or with
// values of the wrong kind (rtl::EFilerError, rtl::EReadError); a class the library does
// not make (rtl::EClassNotFound); a property the class does not have, a name given twice
// (so nothing can be read inside itself), nesting deeper than kMaxNestingDepth, string
// grids of more than kMaxGridCells cells (rtl::EFilerError). Bytes after the tree are not
// read.
TComponentTree ReadComponentTree(rtl::TStream& stream, std::u16string_view rootClass);

}  // namespace ui
