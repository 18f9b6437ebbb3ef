#include "platform/CP_M_Listener.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

#include "support/VirtualSlot.h"

namespace {

using Broadcasters = std::list<CP_M_Broadcaster*>;

struct Listener : CP_M_Listener {
  using CP_M_Listener::fBroadcasters;
};

TEST(Listener, HearsNobodyAtFirst) {
  const Listener listener;
  ASSERT_NE(listener.fBroadcasters, nullptr);
  EXPECT_TRUE(listener.fBroadcasters->empty());
}

// The leak checker of the sanitizer build watches that the list and its nodes go.
TEST(Listener, TakesItsListWithItAndLeavesTheBroadcasters) {
  int broadcaster = 0;
  Listener listener;
  listener.fBroadcasters->push_back(reinterpret_cast<CP_M_Broadcaster*>(&broadcaster));
  EXPECT_EQ(listener.fBroadcasters->size(), 1u);
}

TEST(Listener, WithoutAListGoesWithoutOne) {
  Broadcasters* list;
  {
    Listener listener;
    list = listener.fBroadcasters;
    listener.fBroadcasters = nullptr;
  }
  EXPECT_TRUE(list->empty());
  delete list;
}

TEST(Listener, LeavesAListAloneWhosePointerIsMarkedInItsLowestBit) {
  Broadcasters* list;
  {
    Listener listener;
    list = listener.fBroadcasters;
    list->push_back(nullptr);
    listener.fBroadcasters = reinterpret_cast<Broadcasters*>(reinterpret_cast<uintptr_t>(list) | 1);
  }
  EXPECT_EQ(list->size(), 1u);
  delete list;
}

}  // namespace
