// The message manager (rtl/messaging.h).
#include "rtl/messaging.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace rtl {

TMessageManager& TMessageManager::DefaultManager() {
  static TMessageManager manager;
  return manager;
}

int TMessageManager::SubscribeToMessage(std::type_index messageClass, TMessageListener listener) {
  if (!listener) throw Exception("an empty message listener");
  if (lastId_ == std::numeric_limits<int>::max())
    throw Exception("message subscription ids exhausted");
  const int id = ++lastId_;
  subscriptions_[messageClass].push_back(
      std::make_shared<Subscription>(Subscription{id, std::move(listener)}));
  return id;
}

void TMessageManager::Unsubscribe(int id) {
  for (auto entry = subscriptions_.begin(); entry != subscriptions_.end(); ++entry) {
    std::vector<SubscriptionPtr>& list = entry->second;
    const auto it = std::find_if(list.begin(), list.end(),
                                 [id](const SubscriptionPtr& s) { return s->id == id; });
    if (it == list.end()) continue;
    (*it)->active = false;
    list.erase(it);
    if (list.empty()) subscriptions_.erase(entry);
    return;
  }
}

void TMessageManager::SendMessage(const TObject* sender, const TMessageBase& message) {
  const auto found = subscriptions_.find(std::type_index(typeid(message)));
  if (found == subscriptions_.end()) return;
  // A copy: the listeners may change the list, and those they add wait for the next message.
  const std::vector<SubscriptionPtr> listeners = found->second;
  for (const SubscriptionPtr& s : listeners)
    if (s->active) s->listener(sender, message);
}

}  // namespace rtl
