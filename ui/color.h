// The framework's colour value, without the window system: pure rules about colours (the
// tool library's colour arithmetic) build on it natively. The named colours and the
// resolution of system colours are in ui/graphics.h (windows build).
#pragma once

#include <cstdint>

namespace ui {

// 0x00BBGGRR, or 0xFF000000 | COLOR_xxx for a system colour, as the framework encodes it.
using TColor = std::int32_t;
constexpr TColor SystemColor(int index) {
  return static_cast<TColor>(0xFF000000u | unsigned(index));
}

}  // namespace ui
