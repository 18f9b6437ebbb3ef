// The colour picker service through the system's dialog, which a script answers here.

#include <gtest/gtest.h>

#include "host/FilterRecord.h"
#include "host/ZVHostPhotoshop.h"
#include "image/pixels/PxViews.h"
#include "platform/os/posix/ColorDialogScript.h"
#include "platform/os/posix/EventScript.h"

namespace {

constexpr uint32_t kPlatformColor = 0x12u | 0x80u << 8 | 0xFFu << 16;

TEST(PickColorFromTheDialog, AHostWithoutAPickerShowsTheDialogWhichLeavesTheAlpha) {
  os::posix::ColorDialogScript user;
  user.choice = kPlatformColor;
  FilterRecord record{};
  int16_t result = 0;
  ZVHostPhotoshop host(nullptr, &record, &result);
  PxRgba64 color{1, 2, 3, 0x1234};
  EXPECT_FALSE(host.PickColor(&color)) << "also when a colour was chosen";
  EXPECT_EQ(color, (PxRgba64{0x1200, 0x8000, 0xFF00, 0x1234}));
  EXPECT_EQ(user.start, 0u);
  EXPECT_EQ(user.owner, nullptr);
}

TEST(PickColorFromTheDialog, AHostThatIsNoPlugInShowsTheDialog) {
  os::posix::ColorDialogScript user;
  user.choice = kPlatformColor;
  ZVHost host(nullptr);
  PxRgba64 color{1, 2, 3, 4};
  EXPECT_FALSE(host.PickColor(&color));
  EXPECT_EQ(color, (PxRgba64{0x1200, 0x8000, 0xFF00, 4}));
}

TEST(PickColorFromTheDialog, AHostWithoutARecordShowsTheDialog) {
  os::posix::ColorDialogScript user;
  ZVHostPhotoshop host(nullptr, nullptr, nullptr);
  PxRgba64 color{1, 2, 3, 4};
  EXPECT_FALSE(host.PickColor(&color));
  EXPECT_EQ(user.count, 1);
}

TEST(PickColorFromTheDialog, CancelLeavesTheColourAsItWas) {
  os::posix::ColorDialogScript user;
  ZVHost host(nullptr);
  PxRgba64 color{1, 2, 3, 4};
  EXPECT_FALSE(host.PickColor(&color));
  EXPECT_EQ(color, (PxRgba64{1, 2, 3, 4}));
}

TEST(PickColorFromTheDialog, OpensOnBlackEveryTimeWhateverTheColourIsAndWasChosen) {
  os::posix::ColorDialogScript user;
  user.choice = kPlatformColor;
  ZVHost host(nullptr);
  PxRgba64 color{0xFFFF, 0xFFFF, 0xFFFF, 4};
  for (int i = 0; i < 3; ++i) {
    user.start = 0xFFFFFF;
    host.PickColor(&color);
    EXPECT_EQ(user.start, 0u);
  }
}

TEST(HostMessageLoop, DeliversUntilTheQuitMessageAndYieldsItsCode) {
  ZVHost host(nullptr);
  int delivered = 0;
  const os::WindowHandle window = os::posix::MakeWindow([&](const os::Message&) { ++delivered; });
  os::Message message;
  message.window = window;
  os::posix::PostEvent(message);
  os::posix::PostEvent(message);
  os::posix::PostQuit(42);
  os::posix::PostEvent(message);
  EXPECT_EQ(host.RunMessageLoop(), 42);
  EXPECT_EQ(delivered, 2);
  EXPECT_TRUE(os::TakeMessage(message)) << "what stood behind the quit message is still there";
  os::posix::DestroyWindow(window);
}

}  // namespace
