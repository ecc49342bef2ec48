// The window tree under a window, logged one line per window so that a check can see
// what is docked where: class, title, position and size relative to the root's client
// area, and the style bits that matter for docking.
#pragma once

#include <windows.h>

namespace devhost {

// Logs "tree area size=WxH window-at=X,Y" (the area's client origin in its top-level
// window, frame included) and then, depth first in Z order, one line per descendant:
//   tree   class=TPanel title="" at=0,28 size=800x572 border=no visible=yes
// (two spaces of indent per level below the root).
void DumpWindowTree(HWND root);

}  // namespace devhost
