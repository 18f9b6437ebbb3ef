#include "layers/ZvTypeLayer.h"

#include <gtest/gtest.h>

#include "layers/LayerTest.h"
#include "persistence/ZvClassRegistry.h"

namespace vm {
namespace {

struct TypeLayer : testing::Test {
  ZvSmartPtr<BarText> text = ZvSmartPtr<BarText>::Adopt(new BarText(10, {4, 5}, kGreen));
  ZvSmartPtr<ZvTypeLayer> layer = ZvSmartPtr<ZvTypeLayer>::Adopt(new ZvTypeLayer);
};

TEST_F(TypeLayer, ANewOneHasItsNameAndNoText) {
  EXPECT_EQ(layer->GetNameRef(), ZvString("Type"));
  EXPECT_EQ(layer->GetKind(), 0U);
  EXPECT_EQ(kTypeLayerCode, 0x5479704CU);
  EXPECT_EQ(layer->GetTextObject(), nullptr);
  EXPECT_FALSE(layer->GetResultImage());
  EXPECT_FALSE(RenderOf(*layer).image);
  PxRgbaBytes pixel = kRed;
  layer->GetPixel(pixel, {0, 0});
  EXPECT_EQ(pixel, kNothing);
}

TEST_F(TypeLayer, ItHoldsTheTextAndFollowsItsPlace) {
  layer->SetTextObject(text.Get());
  EXPECT_EQ(text.Get()->GetRefCount(), 2U);
  EXPECT_EQ(PositionOf(*layer), ZvPoint(4, 5));
  EXPECT_EQ(layer->GetResultImage(), text->picture);
}

TEST_F(TypeLayer, TheTextsColourGoesBackToItWithoutARedraw) {
  layer->SetTextObject(text.Get());
  EXPECT_EQ(text->received, (PxRgba64{0x1234, 0x5678, 0x9ABC, 0xFFFF}));
  EXPECT_FALSE(text->receivedRedraw);
  EXPECT_EQ(text->colorsReceived, 1);
}

TEST_F(TypeLayer, AnExchangedTextIsToldToLetGo) {
  const auto other = ZvSmartPtr<BarText>::Adopt(new BarText(3, {0, 0}, kRed));
  layer->SetTextObject(text.Get());
  layer->SetTextObject(other.Get());
  EXPECT_EQ(text->gone, std::vector<ZvTypeLayer*>({layer.Get()}));
  EXPECT_EQ(text.Get()->GetRefCount(), 1U);
  layer->SetTextObject(nullptr);
  EXPECT_EQ(other->gone.size(), 1U);
}

TEST_F(TypeLayer, TheTextIsToldThatTheLayerGoes) {
  ZvTypeLayer* const raw = layer.Get();
  layer->SetTextObject(text.Get());
  layer = nullptr;
  EXPECT_EQ(text->gone, std::vector<ZvTypeLayer*>({raw}));
  EXPECT_EQ(text.Get()->GetRefCount(), 1U);
}

TEST_F(TypeLayer, ADuplicateSharesTheText) {
  layer->SetTextObject(text.Get());
  const auto copy = ZvSmartPtr<ZvLayer>::Adopt(layer->Duplicate());
  auto* const type = dynamic_cast<ZvTypeLayer*>(copy.Get());
  ASSERT_NE(type, nullptr);
  EXPECT_EQ(type->GetTextObject(), text.Get());
  EXPECT_EQ(text.Get()->GetRefCount(), 3U);
}

TEST_F(TypeLayer, TheTextIsDrawnWhereItStandsInsideTheCrop) {
  const auto page = ImageLayer(Filled(30, 20, kBlue));
  const auto root = Group({page.Get(), layer.Get()});
  layer->SetTextObject(text.Get());
  layer->SetCropping({0, 0, 5, 100}, true);
  const Rendered rendered = RenderOf(*root);
  EXPECT_EQ(rendered.At(3, 5), kBlue);
  EXPECT_EQ(rendered.At(4, 5), kGreen);
  EXPECT_EQ(rendered.At(9, 7), kGreen);
  EXPECT_EQ(rendered.At(10, 7), kBlue)
      << "cut by the crop, which ends five pixels behind the text's place";
  EXPECT_EQ(rendered.At(9, 8), kBlue);
}

TEST_F(TypeLayer, ATextThatMovedIsFollowedOnceTheLayerIsDirty) {
  const auto page = ImageLayer(Filled(30, 20, kBlue));
  const auto root = Group({page.Get(), layer.Get()});
  layer->SetTextObject(text.Get());
  RenderOf(*root);
  text->position = {12, 10};
  layer->MarkDirty(true);
  const Rendered rendered = RenderOf(*root);
  EXPECT_EQ(rendered.At(4, 5), kBlue);
  EXPECT_EQ(rendered.At(12, 10), kGreen);
  EXPECT_EQ(PositionOf(*layer), ZvPoint(12, 10));
}

TEST_F(TypeLayer, ALostTextLeavesWhatLiesBelow) {
  const auto page = ImageLayer(Filled(30, 20, kBlue));
  const auto root = Group({page.Get(), layer.Get()});
  layer->SetTextObject(text.Get());
  EXPECT_EQ(RenderOf(*root).At(4, 5), kGreen);
  layer->SetTextObject(nullptr);
  EXPECT_EQ(RenderOf(*root).At(4, 5), kBlue);
}

TEST_F(TypeLayer, APixelIsReadFromTheText) {
  layer->SetTextObject(text.Get());
  PxRgbaBytes pixel;
  layer->GetPixel(pixel, {4, 5});
  EXPECT_EQ(pixel, kGreen);
  layer->GetPixel(pixel, {3, 5});
  EXPECT_EQ(pixel, kNothing);
  // A dirty layer looks where the text stands now.
  text->position = {0, 0};
  layer->MarkDirty(true);
  layer->GetPixel(pixel, {0, 0});
  EXPECT_EQ(pixel, kGreen);
}

TEST_F(TypeLayer, FinishDoesNothing) {
  layer->SetTextObject(text.Get());
  layer->SetDirty(false, true);
  layer->Finish();
  EXPECT_FALSE(layer->IsDirty());
}

}  // namespace
}  // namespace vm
