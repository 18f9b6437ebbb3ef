#include "platform/CP_M_EventDispatcher.h"

#include <stdexcept>
#include <vector>

#include "platform/CP_Event.h"
#include "platform/FrameworkTest.h"
#include "support/VirtualSlot.h"

namespace {

class EventDispatcher : public vm::FrameworkTest {};

TEST_F(EventDispatcher, IsTheGlobalOneWhileItLives) {
  {
    CP_M_EventDispatcher dispatcher;
    EXPECT_EQ(gEventDispatcher, &dispatcher);
  }
  EXPECT_EQ(gEventDispatcher, nullptr);
}

TEST_F(EventDispatcher, HasItsOperationsBehindTheDestructorInTheirOrder) {
  EXPECT_EQ(vm::VirtualSlot(&CP_M_EventDispatcher::DispatcherHook), 2u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_EventDispatcher::DispatchEvent), 3u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_EventHandlerAttachable::ExecuteAttachments), 0u);
}

TEST_F(EventDispatcher, GivesAnEventToItsWindowWithTheSecondCodeInForce) {
  std::vector<os::Message> seen;
  const vm::TestWindow window([&](const os::Message& message) { seen.push_back(message); });
  CP_M_EventDispatcher dispatcher;
  CP_Event event;
  event.fWindow = window.Handle();
  event.fMessage = vm::kTestMessage;
  event.fMessageCopy = vm::kTestMessage + 1;
  event.fFirstParameter = 7;
  event.fSecondParameter = 0x80000000;
  dispatcher.DispatchEvent(event);
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0].message, vm::kTestMessage + 1);
  EXPECT_EQ(seen[0].firstParameter, 7u);
  EXPECT_EQ(seen[0].secondParameter, 0x80000000u);
}

TEST_F(EventDispatcher, DropsAnEventWithoutAWindow) {
  CP_M_EventDispatcher dispatcher;
  CP_Event event;
  event.fMessageCopy = vm::kTestMessage;
  EXPECT_NO_THROW(dispatcher.DispatchEvent(event));
}

TEST_F(EventDispatcher, ThrowsWhatAGuardedWindowProcedureThrewAndOnlyOnce) {
  int calls = 0;
  const vm::TestWindow window([&](const os::Message&) {
    EXPECT_FALSE(CP_GuardCallback([&] {
      if (++calls == 1)
        throw std::runtime_error("in the window");
      throw std::logic_error("in the window again");
    }));
  });
  CP_M_EventDispatcher dispatcher;
  CP_Event event;
  event.fWindow = window.Handle();
  event.fMessageCopy = vm::kTestMessage;
  EXPECT_THROW(dispatcher.DispatchEvent(event), std::runtime_error);
  EXPECT_THROW(dispatcher.DispatchEvent(event), std::logic_error);
  event.fWindow = nullptr;
  EXPECT_NO_THROW(dispatcher.DispatchEvent(event));
}

TEST_F(EventDispatcher, OfSeveralCarriedExceptionsTheFirstOneArrives) {
  const vm::TestWindow window([&](const os::Message&) {
    CP_GuardCallback([] { throw std::runtime_error("first"); });
    CP_GuardCallback([] { throw std::logic_error("second"); });
    EXPECT_TRUE(CP_GuardCallback([] {}));
  });
  CP_M_EventDispatcher dispatcher;
  CP_Event event;
  event.fWindow = window.Handle();
  event.fMessageCopy = vm::kTestMessage;
  EXPECT_THROW(dispatcher.DispatchEvent(event), std::runtime_error);
  EXPECT_NO_THROW([&] {
    event.fWindow = nullptr;
    dispatcher.DispatchEvent(event);
  }());
}

}  // namespace
