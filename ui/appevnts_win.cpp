// Application events (ui/appevnts.h) through a WH_GETMESSAGE hook of this module, held
// while any of its TApplicationEvents exists.
#include <algorithm>
#include <vector>

#include "rtl/handles.h"
#include "ui/appevnts.h"

namespace ui {

namespace {

struct Listeners {
  std::vector<TApplicationEvents*> events;
  rtl::unique_hhook hook;
};

Listeners& ThisModule() {
  static Listeners listeners;
  return listeners;
}

LRESULT CALLBACK GetMessageHook(int code, WPARAM wParam, LPARAM lParam) {
  // PM_NOREMOVE peeks leave the message queued: it is seen when it is taken.
  if (code == HC_ACTION && wParam == PM_REMOVE) {
    MSG& msg = *reinterpret_cast<MSG*>(lParam);
    bool handled = false;
    // A handler may free listeners, itself included; each is looked up again before use.
    const std::vector<TApplicationEvents*> snapshot = ThisModule().events;
    for (auto it = snapshot.rbegin(); it != snapshot.rend(); ++it) {
      const std::vector<TApplicationEvents*>& now = ThisModule().events;
      if (std::find(now.begin(), now.end(), *it) == now.end()) continue;
      if ((*it)->OnMessage) (*it)->OnMessage(msg, handled);
    }
    if (handled) msg.message = WM_NULL;
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

TApplicationEvents::TApplicationEvents(TComponent* owner) : TComponent(owner) {
  Listeners& listeners = ThisModule();
  if (!listeners.hook)
    listeners.hook.reset(
        SetWindowsHookExW(WH_GETMESSAGE, &GetMessageHook, nullptr, GetCurrentThreadId()));
  listeners.events.push_back(this);
}

TApplicationEvents::~TApplicationEvents() {
  Listeners& listeners = ThisModule();
  std::erase(listeners.events, this);
  if (listeners.events.empty()) listeners.hook.reset();
}

}  // namespace ui
