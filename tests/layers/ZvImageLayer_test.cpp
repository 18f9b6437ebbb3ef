#include "layers/ZvImageLayer.h"

#include <gtest/gtest.h>

#include "image/ZvTypedImage.h"
#include "layers/LayerTest.h"
#include "layers/Recording.h"
#include "persistence/ZvClassRegistry.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

TEST(ImageLayer, ANewOneHasItsName) {
  ZvImageLayer layer;
  EXPECT_EQ(layer.GetNameRef(), ZvString("ImageLayer"));
  ZvString name;
  layer.ClassName(name);
  EXPECT_EQ(name, ZvString("ZvImageLayer"));
}

TEST(ImageLayer, ItsCropFollowsThePictureUnlessItWasSetOnPurpose) {
  const auto layer = ImageLayer(Filled(5, 6, kRed));
  layer->SetOffsetOnly({2, 3});
  RenderOf(*layer);
  ZvRect cropping;
  layer->GetCropping(cropping);
  EXPECT_EQ(cropping, ZvRect(2, 3, 6, 8));

  layer->SetCropping({0, 0, 1, 1}, true);
  layer->SetImage(Filled(9, 9, kRed).Get());
  RenderOf(*layer);
  layer->GetCropping(cropping);
  EXPECT_EQ(cropping, ZvRect(0, 0, 1, 1));
}

TEST(ImageLayer, FinishFillsThePictureWithTransparentWhite) {
  const auto image = Filled(3, 3, kRed);
  const auto layer = ImageLayer(image);
  layer->SetDirty(false, true);
  layer->Finish();
  PxRgbaBytes pixel;
  image->GetRgba(pixel, 2, 2);
  EXPECT_EQ(pixel, PxRgbaBytes::Of(255, 255, 255, 0));
  EXPECT_TRUE(layer->IsDirty());
  ZvImageLayer().Finish();  // nothing to fill
}

TEST(ImageLayer, ConvertingGivesPicturesWithoutAlphaOne) {
  const auto bytes = ZvSmartPtr<ZvImage>::Adopt(new ZvTypedImage<PxRgbBytes>(3, 2));
  bytes->PutRgb(PxRgbBytes::Of(1, 2, 3), 2, 1);
  const auto words = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxRgb48>(3, 2));
  words->PutRgba64({0x1111, 0x2222, 0x3333, 0xFFFF}, 2, 1);
  const auto a = ImageLayer(bytes);
  const auto b = ImageLayer(words);
  const auto root = Group({a.Get(), b.Get()});
  root->ConvertForOutput();

  ASSERT_EQ(a->GetImageRef()->PixelKind(), FourCC("Rgba"));
  EXPECT_TRUE(a->GetImageRef()->IsTiled());
  PxRgbaBytes pixel;
  a->GetImageRef()->GetRgba(pixel, 2, 1);
  EXPECT_EQ(pixel, PxRgbaBytes::Of(1, 2, 3, 255));
  ASSERT_EQ(b->GetImageRef()->PixelKind(), FourCC("Rg64"));
  PxRgba64 deep;
  b->GetImageRef()->GetRgba64(deep, 2, 1);
  EXPECT_EQ(deep, (PxRgba64{0x1111, 0x2222, 0x3333, 0xFFFF}));
}

TEST(ImageLayer, ConvertingLeavesOtherPicturesTheSameObjects) {
  const auto image = Filled(2, 2, kRed);
  const auto layer = ImageLayer(image);
  layer->ConvertForOutput();
  EXPECT_EQ(layer->GetImageRef(), image);
}

TEST(ImageLayer, WithoutAPictureItWritesFalseAndNoObject) {
  ZvImageLayer layer;
  const std::vector<std::string> operations = OperationsOf(layer);
  ASSERT_FALSE(operations.empty());
  EXPECT_EQ(operations.back(), "Bool false");
}

TEST(ImageLayer, ItsPictureStandsBehindItsForm) {
  const auto layer = ImageLayer(Filled(2, 1, PxRgbaBytes::Of(0x10, 0x20, 0x30, 0x40)));
  ByteStream stream;
  layer->WriteTo(stream);
  const std::string hex = stream.Hex();
  const std::string tail =
      "01 "                                                     // there is one
      "00 10 5A 76 49 6D 61 67 65 52 67 62 61 42 79 74 65 73 "  // ZvImageRgbaBytes
      "00 00 00 02 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 01 00 00 00 00 "
      "00 00 00 00 00 00 00 00 00 "
      "10 10 20 20 30 30 40 40";
  ASSERT_GE(hex.size(), tail.size());
  EXPECT_EQ(hex.substr(hex.size() - tail.size()), tail);
}

TEST(ImageLayer, ItSurvivesItsText) {
  RunRegistrars();
  const auto layer = ImageLayer(Filled(3, 2, PxRgbaBytes::Of(1, 2, 3, 4)));
  layer->GetNameRef() = "sky";
  layer->SetOpacity(0.5F);
  layer->SetOffsetOnly({-3, 4});
  const auto sub = ImageLayer(Filled(1, 1, kRed));
  layer->AddLayer(sub.Get());
  const ZvSmartPtr<ZvImageLayer> read = ThroughText(*layer);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->GetNameRef(), ZvString("sky"));
  EXPECT_EQ(read->GetOpacity(), 0.5F);
  EXPECT_EQ(read->GetOffsetRef(), ZvPoint(-3, 4));
  ASSERT_EQ(read->SubLayers().size(), 1U);
  ASSERT_TRUE(read->SubLayers()[0]->GetImageRef());
  ASSERT_TRUE(read->GetImageRef());
  PxRgbaBytes pixel;
  read->GetImageRef()->GetRgba(pixel, 2, 1);
  EXPECT_EQ(pixel, PxRgbaBytes::Of(1, 2, 3, 4));
}

TEST(ImageLayer, AnObjectThatIsNoImageIsDropped) {
  RunRegistrars();
  ByteStream stream;
  ZvImageLayer().ZvLayer::WriteTo(stream);
  stream.WriteBool(true, nullptr, true);
  const auto foreign = ZvSmartPtr<ZvLayer>::Adopt(new ZvLayer);
  stream.WriteObject(foreign.Get());
  stream.Rewind();
  stream.SetVersion(0.5F);  // so that nothing is read of the member table
  ZvImageLayer layer;
  layer.ReadFrom(stream);
  EXPECT_FALSE(layer.GetImageRef());
}

}  // namespace
}  // namespace vm
