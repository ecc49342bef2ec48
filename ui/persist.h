// Components to streams and back in the framework's binary format (rtl/filer.h), and the
// classes a stream may name. Windows build only.
//
// A stream holds the root's properties and its children: the controls inside it that the
// root owns, nested as they are nested on screen, and the root's other components (timers,
// menus). Reading into a root sets its properties and, for each child, takes the root's
// component of that name or makes one of the named class.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "rtl/filer.h"
#include "rtl/streams.h"
#include "ui/controls.h"

namespace ui {

// "TPF0", then `component` with its properties and children.
void WriteComponent(rtl::TStream& stream, TComponent& component);
// Reads a stream written by WriteComponent into `component` (its own class name and name
// in the stream are passed over). rtl::EFilerError for a stream not in the format or a
// property the class does not have; rtl::EClassNotFound for a child of an unknown class.
void ReadComponent(rtl::TStream& stream, TComponent& component);

// Makes a component of one class, owned by `owner`.
using TComponentFactory = std::function<TComponent*(TComponent* owner)>;
// Makes a class known to the reader by its name ("TLabel"). The library's own control
// classes are known from the start.
void RegisterClass(const std::u16string& name, TComponentFactory factory);
template <class T>
void RegisterClass() {
  RegisterClass(rtl::TypeName(typeid(T)), [](TComponent* owner) { return new T(owner); });
}
// The factory of a known class; rtl::EClassNotFound ("Klasse X nicht gefunden") else.
TComponentFactory FindClass(std::u16string_view name);

// The names the stream uses for colours ("clBtnFace"), both ways.
std::u16string ColorToIdent(TColor color);  // "" when the colour has no name
bool IdentToColor(std::u16string_view ident, TColor& color);

}  // namespace ui
