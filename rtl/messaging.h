// Publish and subscribe inside one module: the framework's message manager. A sender hands
// a message object to the manager, which calls every listener subscribed to the message's
// class. Nothing here is queued or crosses threads: SendMessage calls the listeners before
// it returns, on the sender's thread. Pure: both builds.
#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <typeindex>
#include <typeinfo>
#include <unordered_map>
#include <utility>
#include <vector>

#include "rtl/classes.h"

namespace rtl {

// Root of the message classes; listeners see every message through it.
class TMessageBase : public TObject {
 public:
  ~TMessageBase() override = default;
};

// A message carrying one value: TMessage<std::u16string> is a string message.
template <class T>
class TMessage : public TMessageBase {
 public:
  explicit TMessage(T value) : value_(std::move(value)) {}
  const T& Value() const { return value_; }

 private:
  T value_;
};

using TMessageListener = std::function<void(const TObject* sender, const TMessageBase& message)>;

// <windows.h> turns SendMessage into SendMessageW in the code that includes it; the class
// is declared without that macro and answers to both names.
#pragma push_macro("SendMessage")
#undef SendMessage

class TMessageManager {
 public:
  TMessageManager() = default;
  TMessageManager(const TMessageManager&) = delete;
  TMessageManager& operator=(const TMessageManager&) = delete;

  // The manager of this module, made on first use.
  static TMessageManager& DefaultManager();

  // Subscribes `listener` to messages whose class is exactly M (a message of a class derived
  // from M does not reach it). Returns the subscription's id, positive and never reused.
  template <class M>
  int SubscribeToMessage(TMessageListener listener) {
    static_assert(std::is_base_of_v<TMessageBase, M>, "M must derive from TMessageBase");
    return SubscribeToMessage(std::type_index(typeid(M)), std::move(listener));
  }
  int SubscribeToMessage(std::type_index messageClass, TMessageListener listener);
  // Ends a subscription; an unknown or ended id is ignored.
  void Unsubscribe(int id);

  // Calls, in subscription order, the listeners subscribed to the dynamic class of
  // `message` when the call began, except those unsubscribed meanwhile. Listeners may
  // subscribe and unsubscribe while it runs. A listener's exception leaves the later
  // listeners uncalled and goes on to the sender.
  void SendMessage(const TObject* sender, const TMessageBase& message);
#ifdef _WIN32
  void SendMessageW(const TObject* sender, const TMessageBase& message) {
    SendMessage(sender, message);
  }
#endif

 private:
  struct Subscription {
    int id;
    TMessageListener listener;
    bool active = true;  // false once unsubscribed: a delivery under way skips it
  };
  // Shared with the deliveries under way, which keep a listener alive while it runs even
  // if it unsubscribes itself.
  using SubscriptionPtr = std::shared_ptr<Subscription>;

  std::unordered_map<std::type_index, std::vector<SubscriptionPtr>> subscriptions_;
  int lastId_ = 0;
};

#pragma pop_macro("SendMessage")

}  // namespace rtl
