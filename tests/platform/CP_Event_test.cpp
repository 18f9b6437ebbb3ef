#include "platform/CP_Event.h"

#include <gtest/gtest.h>

namespace {

os::Message SomeMessage() {
  os::Message message;
  message.window = reinterpret_cast<os::WindowHandle>(0x1234);
  message.message = 0xC0DE;
  message.firstParameter = 0xFFFFFFFF;
  message.secondParameter = 0x80000001;
  message.time = 4000000000u;
  message.x = -5;
  message.y = 700;
  return message;
}

TEST(Event, IsZeroUntilItIsFilled) {
  const CP_Event event;
  EXPECT_EQ(event.fPosition, CP_Point(0, 0));
  os::Message out = SomeMessage();
  event.CopyToPlatform(out);
  EXPECT_EQ(out, os::Message());
}

TEST(Event, TakesEveryFieldOfAMessageAndTheCodeTwice) {
  CP_Event event;
  event.CopyFromPlatform(SomeMessage());
  EXPECT_EQ(event.fMessage, 0xC0DEu);
  EXPECT_EQ(event.fMessageCopy, 0xC0DEu);
  EXPECT_EQ(event.fTime, 4000000000u);
  EXPECT_EQ(event.fWindow, reinterpret_cast<os::WindowHandle>(0x1234));
  EXPECT_EQ(event.fPosition, CP_Point(-5, 700));
  EXPECT_EQ(event.fFirstParameter, 0xFFFFFFFFu);
  EXPECT_EQ(event.fSecondParameter, 0x80000001u);
}

TEST(Event, GivesBackTheMessageItWasMadeFrom) {
  CP_Event event;
  event.CopyFromPlatform(SomeMessage());
  os::Message out;
  event.CopyToPlatform(out);
  EXPECT_EQ(out, SomeMessage());
}

TEST(Event, CutsThePositionTo16BitsOnTheWayIn) {
  os::Message message;
  message.x = 0x12345;  // 0x2345
  message.y = 40000;    // 40000 - 65536
  CP_Event event;
  event.CopyFromPlatform(message);
  EXPECT_EQ(event.fPosition, CP_Point(0x2345, -25536));
  os::Message out;
  event.CopyToPlatform(out);
  EXPECT_EQ(out.x, 0x2345);
  EXPECT_EQ(out.y, -25536);
}

TEST(Event, OfItsTwoMessageCodesTheSecondOneCounts) {
  CP_Event event;
  event.fMessage = 1;
  event.fMessageCopy = 2;
  os::Message out;
  event.CopyToPlatform(out);
  EXPECT_EQ(out.message, 2u);
}

TEST(Event, KeepsItsFieldsInOrderBehindTheVirtualTable) {
  const CP_Event event;
  const auto offset = [&](const auto& field) {
    return reinterpret_cast<const char*>(&field) - reinterpret_cast<const char*>(&event);
  };
  EXPECT_EQ(offset(event.fMessage), static_cast<ptrdiff_t>(sizeof(void*)));
  EXPECT_LT(offset(event.fMessage), offset(event.fMessageCopy));
  EXPECT_LT(offset(event.fMessageCopy), offset(event.fTime));
  EXPECT_LT(offset(event.fTime), offset(event.fWindow));
  EXPECT_LT(offset(event.fWindow), offset(event.fPosition));
  EXPECT_LT(offset(event.fPosition), offset(event.fFirstParameter));
  EXPECT_LT(offset(event.fFirstParameter), offset(event.fSecondParameter));
}

}  // namespace
