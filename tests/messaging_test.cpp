// The message manager: who hears a message, in which order, and changes during delivery.
#ifdef _WIN32
// First on purpose: its SendMessage macro must not break the callers of the manager.
#include <windows.h>
#endif

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "rtl/messaging.h"
#include "rtl/ustring.h"

namespace rtl {
namespace {

using TStringMessage = TMessage<std::u16string>;
using TIntMessage = TMessage<int>;
struct TDerivedMessage : TStringMessage { using TStringMessage::TStringMessage; };
using Calls = std::vector<std::string>;

// A listener that writes its name into `calls`.
TMessageListener Logger(Calls& calls, std::string name) {
  return [&calls, name](const TObject*, const TMessageBase&) { calls.push_back(name); };
}

TEST(MessagingDelivery, ReachesTheListenersOfTheExactClassInSubscriptionOrder) {
  TMessageManager manager;
  Calls calls;
  const TObject sender;
  manager.SubscribeToMessage<TStringMessage>([&](const TObject* s, const TMessageBase& m) {
    calls.push_back(s == &sender ? Utf16ToUtf8(dynamic_cast<const TStringMessage&>(m).Value()) : "?");
  });
  manager.SubscribeToMessage<TIntMessage>(Logger(calls, "int"));
  manager.SubscribeToMessage<TDerivedMessage>(Logger(calls, "derived"));
  manager.SubscribeToMessage(typeid(TStringMessage), Logger(calls, "string 2"));

  manager.SendMessage(&sender, TStringMessage(u"Grüße"));
  // The dynamic class decides, not the static type of the argument.
  const TDerivedMessage derived(u"b");
  manager.SendMessage(&sender, static_cast<const TStringMessage&>(derived));
  manager.SendMessage(&sender, TMessage<double>(1.5));
  EXPECT_EQ(calls, (Calls{"Grüße", "string 2", "derived"}));
}

TEST(MessagingSubscriptions, ListenersMayChangeTheSubscriptionsDuringDelivery) {
  TMessageManager manager;
  Calls calls;
  int self = 0, later = 0, added = 0;
  self = manager.SubscribeToMessage<TIntMessage>([&](const TObject*, const TMessageBase&) {
    calls.push_back("self");
    manager.Unsubscribe(self);
    manager.Unsubscribe(later);
    manager.Unsubscribe(later + 99);  // never given: ignored
  });
  manager.SubscribeToMessage<TIntMessage>([&](const TObject*, const TMessageBase&) {
    calls.push_back("adder");
    if (added == 0) added = manager.SubscribeToMessage<TIntMessage>(Logger(calls, "added"));
  });
  later = manager.SubscribeToMessage<TIntMessage>(Logger(calls, "later"));
  EXPECT_GT(self, 0);

  manager.SendMessage(nullptr, TIntMessage(1));
  EXPECT_EQ(calls, (Calls{"self", "adder"}));
  calls.clear();
  manager.SendMessage(nullptr, TIntMessage(2));
  EXPECT_EQ(calls, (Calls{"adder", "added"}));
  EXPECT_GT(added, later);  // ids are not given again
  EXPECT_THAT([&] { manager.SubscribeToMessage<TIntMessage>(nullptr); },
              testing::ThrowsMessage<Exception>(testing::StrEq("an empty message listener")));
}

TEST(MessagingSubscriptions, AListenersExceptionReachesTheSenderAndLeavesTheManagerWhole) {
  TMessageManager& manager = TMessageManager::DefaultManager();
  Calls calls;
  const int thrower =
      manager.SubscribeToMessage<TIntMessage>([&](const TObject*, const TMessageBase&) {
        calls.push_back("thrower");
        throw std::runtime_error("listener failed");
      });
  const int after = manager.SubscribeToMessage<TIntMessage>(Logger(calls, "after"));

  EXPECT_THROW(manager.SendMessage(nullptr, TIntMessage(1)), std::runtime_error);
  EXPECT_EQ(calls, Calls{"thrower"});
  calls.clear();
  manager.Unsubscribe(thrower);
  TMessageManager::DefaultManager().SendMessage(nullptr, TIntMessage(2));
  manager.Unsubscribe(after);
  EXPECT_EQ(calls, Calls{"after"});
}

}  // namespace
}  // namespace rtl
