#include "platform/CP_ColorDialog.h"

#include "platform/CP_RGBColor.h"
#include "platform/FrameworkTest.h"
#include "platform/os/posix/ColorDialogScript.h"

namespace {

class ColorDialog : public vm::FrameworkTest {};

TEST_F(ColorDialog, GivesTheChosenColourTimes256) {
  os::posix::ColorDialogScript user;
  user.choice = 64u | 128u << 8 | 255u << 16;
  CP_RGBColor result;
  EXPECT_TRUE(ChooseColorDialog("Select Color", CP_RGBColor(), result));
  EXPECT_EQ(result, CP_RGBColor(16384, 32768, 65280));
}

TEST_F(ColorDialog, CancelledLeavesTheResultAlone) {
  os::posix::ColorDialogScript user;
  CP_RGBColor result(1, 2, 3);
  EXPECT_FALSE(ChooseColorDialog("Select Color", CP_RGBColor(), result));
  EXPECT_EQ(result, CP_RGBColor(1, 2, 3));
}

TEST_F(ColorDialog, AlwaysOpensOnBlackAndForTheDialogOwner) {
  os::posix::ColorDialogScript user;
  user.choice = 0x123456;
  gDialogOwner = reinterpret_cast<os::WindowHandle>(0x44);
  for (int i = 0; i < 2; ++i) {
    user.start = 0xFFFFFF;
    CP_RGBColor result;
    ChooseColorDialog("A title", CP_RGBColor(65535, 65535, 65535), result);
    EXPECT_EQ(user.start, 0u);
    EXPECT_EQ(user.owner, reinterpret_cast<os::WindowHandle>(0x44));
  }
  EXPECT_EQ(user.count, 2);
}

TEST_F(ColorDialog, KeepsTheUsersCustomColoursFromCallToCallAlsoWhenCancelled) {
  os::posix::ColorDialogScript user;
  CP_RGBColor result;
  user.firstCustomColor = 0xABCDEF;
  ChooseColorDialog("", CP_RGBColor(), result);
  user.firstCustomColor.reset();
  ChooseColorDialog("", CP_RGBColor(), result);
  EXPECT_EQ(user.customColors[0], 0xABCDEFu);
  EXPECT_EQ(user.customColors[1], 0u);
}

TEST_F(ColorDialog, WithoutAUserIsCancelled) {
  CP_RGBColor result;
  EXPECT_FALSE(ChooseColorDialog("", CP_RGBColor(), result));
}

}  // namespace
