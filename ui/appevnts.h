// Application events: a component that sees the messages of the thread's message loop.
// Windows build only.
#pragma once

#include <windows.h>

#include <functional>

#include "ui/controls.h"

namespace ui {

// Called for a message as it is taken from the queue, before it is dispatched. Setting
// `handled` keeps it from its window: it is dispatched as WM_NULL instead.
using TMessageEvent = std::function<void(MSG& msg, bool& handled)>;

// Sees every message the thread's loop takes from the queue (GetMessage, or PeekMessage
// with PM_REMOVE), whichever module runs the loop: the component listens through a
// message hook of its own module, not through that module's Application. The newest
// component hears a message first; all hear it, handled or not.
class TApplicationEvents : public TComponent {
 public:
  explicit TApplicationEvents(TComponent* owner);
  ~TApplicationEvents() override;

  TMessageEvent OnMessage;
};

}  // namespace ui
