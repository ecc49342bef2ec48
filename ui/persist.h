// Components to streams and back in the framework's binary format (rtl/filer.h). Windows
// build only; what a stream may hold is decided in ui/persist_rules.h.
//
// A stream holds the root's properties and its children: the controls inside it that the
// root owns, nested as they are nested on screen, and the root's other components (timers,
// menus). Reading into a root sets its properties and, for each child, takes the root's
// component of that name or makes one of the named class.
#pragma once

#include "rtl/filer.h"
#include "rtl/streams.h"
#include "ui/controls.h"
#include "ui/persist_rules.h"

namespace ui {

// "TPF0", then `component` with its properties and children.
void WriteComponent(rtl::TStream& stream, TComponent& component);
// Reads a stream written by WriteComponent into `component` (its own class name and name
// in the stream are passed over). Every failure is an rtl::Exception: rtl::EFilerError for
// a stream not in the format, a property the class does not have, a component listed
// twice or nested too deep, a name the root gives a component of another class;
// rtl::EClassNotFound for a child of an unknown class; rtl::EReadError for a stream cut
// short; EInvalidGraphic for a picture that cannot be decoded. On failure the components
// made for the stream are freed again and the root's own are back in their parents.
void ReadComponent(rtl::TStream& stream, TComponent& component);

}  // namespace ui
