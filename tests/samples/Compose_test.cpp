#include <gtest/gtest.h>

#include "compose/BlockText.h"
#include "compose/LayeredPicture.h"
#include "image/pixels/PxRecords.h"

namespace {

TEST(Compose, ThePictureIsOpaqueAndAsLargeAsItsCanvas) {
  const ZvSmartPtr<ZvLayer> picture = compose::MakeLayeredPicture(160, 96);
  ZvRenderContext context;
  context.mLimit = {0, 0, 159, 95};
  ZvSmartPtr<ZvImage> image;
  picture->Render(image, context);
  ASSERT_TRUE(image);
  EXPECT_EQ(image->Width(), 160);
  EXPECT_EQ(image->Height(), 96);
  for (int32_t y = 0; y < 96; ++y)
    for (int32_t x = 0; x < 160; ++x) {
      PxRgbaBytes pixel;
      image->GetRgba(pixel, x, y);
      ASSERT_EQ(pixel.alpha, 255) << x << ", " << y;
    }
}

// The V begins with a block in its top left corner and has none beside it.
TEST(Compose, TheTextIsDrawnInBlocks) {
  const auto text = ZvSmartPtr<compose::BlockText>::Adopt(
      new compose::BlockText("V", 2, {0, 0}, CP_RGBColor(0xFFFF, 0, 0)));
  ZvImage* const picture = text->GetPicture();
  EXPECT_EQ(picture->Width(), 12);
  EXPECT_EQ(picture->Height(), 14);
  PxRgbaBytes pixel;
  picture->GetRgba(pixel, 1, 1);
  EXPECT_EQ(pixel, PxRgbaBytes::Of(255, 0, 0, 255));
  picture->GetRgba(pixel, 2, 0);
  EXPECT_EQ(pixel.alpha, 0);
  text->SetColor({0, 0xFFFF, 0, 0xFFFF}, true);
  picture->GetRgba(pixel, 1, 1);
  EXPECT_EQ(pixel, PxRgbaBytes::Of(0, 255, 0, 255));
}

}  // namespace
