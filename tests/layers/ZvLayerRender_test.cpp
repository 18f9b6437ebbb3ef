#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "image/ZvTypedImage.h"
#include "layers/LayerTest.h"
#include "layers/ZvLayerIterator.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

TEST(LayerRender, AnEmptyTreeGivesNothing) {
  ZvLayer root;
  EXPECT_FALSE(RenderOf(root).image);
}

TEST(LayerRender, AnInvisibleTreeGivesItsOwnPictureAtMost) {
  const auto layer = ImageLayer(Filled(2, 2, kRed));
  layer->SetVisible(false, nullptr);
  EXPECT_EQ(RenderOf(*layer).image, layer->GetImageRef());
}

TEST(LayerRender, LayersLieOverEachOtherInTheOrderOfTheList) {
  const auto below = ImageLayer(Filled(10, 10, kRed));
  const auto above = ImageLayer(Filled(4, 4, kGreen), {3, 3});
  const auto root = Group({below.Get(), above.Get()});
  const Rendered rendered = RenderOf(*root);
  ASSERT_TRUE(rendered.image);
  EXPECT_EQ(rendered.At(0, 0), kRed);
  EXPECT_EQ(rendered.At(3, 3), kGreen);
  EXPECT_EQ(rendered.At(6, 6), kGreen);
  EXPECT_EQ(rendered.At(7, 7), kRed);
  EXPECT_EQ(root->GetComposite(), rendered.image);
  EXPECT_EQ(rendered.image->PixelKind(), FourCC("Rgba"));
}

// Half of green over opaque red by the byte rule: s = trunc(255 x 0.5) = 127, A = 127 x 0 / 255 +
// 255 = 255; green = (127 x 255 + 128 x 0 + 127) / 255 = 127, red = (128 x 255 + 127) / 255 = 128.
TEST(LayerRender, OpacityThinsThePicture) {
  const auto below = ImageLayer(Filled(2, 2, kRed));
  const auto above = ImageLayer(Filled(2, 2, kGreen));
  above->SetOpacity(0.5F);
  const auto root = Group({below.Get(), above.Get()});
  EXPECT_EQ(RenderOf(*root).At(1, 1), PxRgbaBytes::Of(128, 127, 0, 255));
}

TEST(LayerRender, HiddenAndInvisibleLayersAreLeftOut) {
  const auto below = ImageLayer(Filled(4, 4, kRed));
  const auto hidden = ImageLayer(Filled(4, 4, kGreen));
  const auto invisible = ImageLayer(Filled(4, 4, kBlue));
  hidden->SetHidden(true, nullptr);
  invisible->SetVisible(false, nullptr);
  const auto root = Group({below.Get(), hidden.Get(), invisible.Get()});
  EXPECT_EQ(RenderOf(*root).At(2, 2), kRed);
}

TEST(LayerRender, TheOffsetPlacesThePicture) {
  const auto layer = ImageLayer(Filled(2, 2, kRed), {1, 1});
  layer->SetOffsetOnly({3, 4});
  const Rendered rendered = RenderOf(*layer);
  EXPECT_EQ(rendered.At(4, 5), kRed);
  EXPECT_EQ(rendered.At(3, 4).alpha, 0);
}

TEST(LayerRender, WhatStandsLeftOfTheCanvasOriginMovesTheOriginAndNeverToAPositivePlace) {
  const auto left = ImageLayer(Filled(10, 4, kRed), {-5, -2});
  const Rendered rendered = RenderOf(*left);
  EXPECT_EQ(rendered.origin, ZvPoint(-5, -2));
  EXPECT_EQ(rendered.image->Width(), 10);
  EXPECT_EQ(rendered.image->Height(), 4);
  const auto right = ImageLayer(Filled(2, 2, kRed), {5, 6});
  const Rendered other = RenderOf(*right);
  EXPECT_EQ(other.origin, ZvPoint(0, 0));
  EXPECT_EQ(other.image->Width(), 7);
  EXPECT_EQ(other.image->Height(), 8);
}

TEST(LayerRender, ACompositeGrowsToEverySideAndKeepsItsContents) {
  const auto layer = ImageLayer(Filled(4, 4, kRed));
  const auto fixed = ImageLayer(Filled(4, 4, kBlue));
  const auto root = Group({fixed.Get(), layer.Get()});
  RenderOf(*root);
  layer->MoveTo({-6, 9});
  const Rendered rendered = RenderOf(*root);
  EXPECT_EQ(rendered.At(-6, 9), kRed);
  EXPECT_EQ(rendered.At(0, 0), kBlue);
  EXPECT_EQ(rendered.At(3, 3), kBlue);
  EXPECT_EQ(rendered.At(5, 5).alpha, 0);
}

TEST(LayerRender, TheLimitBoundsTheComposite) {
  const auto layer = ImageLayer(Filled(50, 50, kRed), {-10, -10});
  const Rendered rendered = RenderOf(*layer, {0, 0, 19, 9});
  EXPECT_EQ(rendered.origin, ZvPoint(0, 0));
  EXPECT_EQ(rendered.image->Width(), 20);
  EXPECT_EQ(rendered.image->Height(), 10);
  EXPECT_EQ(rendered.At(19, 9), kRed);
}

TEST(LayerRender, FarAwayPicturesAreCutAndCostNothing) {
  const auto near = ImageLayer(Filled(4, 4, kRed));
  const auto far = ImageLayer(Filled(4, 4, kGreen), {INT32_MAX - 1, INT32_MIN});
  const auto root = Group({near.Get(), far.Get()});
  const Rendered rendered = RenderOf(*root);
  EXPECT_EQ(rendered.At(0, 0), kRed);
  EXPECT_EQ(rendered.image->Width(), 4);
  EXPECT_EQ(rendered.image->Height(), 4);
}

TEST(LayerRender, AnUnchangedTreeGivesTheSameImageWithoutTouchingIt) {
  const auto a = ImageLayer(Filled(4, 4, kRed));
  const auto b = ImageLayer(Filled(4, 4, kGreen), {2, 2});
  const auto root = Group({a.Get(), b.Get()});
  const Rendered first = RenderOf(*root);
  EXPECT_FALSE(root->NeedsRender());
  first.image->PutRgba(kBlue, 0, 0);  // would be painted over
  const Rendered second = RenderOf(*root);
  EXPECT_EQ(second.image, first.image);
  EXPECT_EQ(second.At(0, 0), kBlue);
}

TEST(LayerRender, OnlyTheChangedAreaIsMadeAnew) {
  const auto below = ImageLayer(Filled(20, 20, kRed));
  const auto above = ImageLayer(Filled(2, 2, kGreen), {10, 10});
  const auto root = Group({below.Get(), above.Get()});
  const Rendered first = RenderOf(*root);
  first.image->PutRgba(kBlue, 0, 0);    // outside what changes
  first.image->PutRgba(kBlue, 10, 10);  // where the small picture was
  above->MoveTo({14, 14});
  const Rendered second = RenderOf(*root);
  EXPECT_EQ(second.At(0, 0), kBlue);
  EXPECT_EQ(second.At(10, 10), kRed);
  EXPECT_EQ(second.At(14, 14), kGreen);
}

TEST(LayerRender, AContextMayBeUsedAgain) {
  const auto below = ImageLayer(Filled(8, 8, PxRgbaBytes::Of(255, 0, 0, 100)));
  const auto root = Group({below.Get()});
  ZvRenderContext context;
  ZvSmartPtr<ZvImage> result;
  root->Render(result, context);
  below->MarkDirty(true);
  root->Render(result, context);
  PxRgbaBytes pixel;
  result->GetRgba(pixel, 3, 3);
  EXPECT_EQ(pixel, PxRgbaBytes::Of(255, 0, 0, 100));
}

TEST(LayerRender, ATargetOfTheCallersIsTheBackdrop) {
  const auto page = Filled(8, 8, kBlue);
  const auto layer = ImageLayer(Filled(2, 2, kRed), {1, 1});
  ZvRenderContext context;
  context.mTarget = page;
  ZvSmartPtr<ZvImage> result;
  layer->Render(result, context);
  PxRgbaBytes pixel;
  result->GetRgba(pixel, 1, 1);
  EXPECT_EQ(pixel, kRed);
  result->GetRgba(pixel, 7, 7);
  EXPECT_EQ(pixel, kBlue);
  page->GetRgba(pixel, 1, 1);
  EXPECT_EQ(pixel, kBlue) << "the caller's image stays as it is";
  EXPECT_EQ(layer->GetBackdrop(), page);
  EXPECT_TRUE(context.mHasTouchedRect);
  EXPECT_TRUE(context.mChanged);
}

TEST(LayerRender, ATargetOfRgbBytesIsReported) {
  ReportRecorder reports;
  const auto page = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxRgbBytes>(8, 8));
  const auto layer = ImageLayer(Filled(2, 2, kRed));
  ZvRenderContext context;
  context.mTarget = page;
  ZvSmartPtr<ZvImage> result;
  layer->Render(result, context);
  EXPECT_EQ(reports.Lines(), Reports({"ZvLayer(970) : 0"}));
}

TEST(LayerRender, ADeepTargetMakesADeepComposite) {
  const auto page = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxRgba64>(8, 8));
  const auto layer = ImageLayer(Filled(2, 2, kRed));
  ZvRenderContext context;
  context.mTarget = page;
  ZvSmartPtr<ZvImage> result;
  layer->Render(result, context);
  EXPECT_EQ(result->PixelKind(), FourCC("Rg64"));
}

TEST(LayerRender, ABlendSourceMasksWhatIsMerged) {
  const auto mask = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxAlphaByte>(4, 4));
  mask->PutByte(255, 1, 1);
  const auto page = Filled(4, 4, kBlue);
  const auto layer = ImageLayer(Filled(4, 4, kRed));
  ZvRenderContext context;
  context.mTarget = page;
  context.mBlendSource = mask;
  ZvSmartPtr<ZvImage> result;
  layer->Render(result, context);
  PxRgbaBytes pixel;
  result->GetRgba(pixel, 1, 1);
  EXPECT_EQ(pixel, kRed);
  // The masked blend replaces: with a mask byte of 0 the source's colour arrives with an alpha of
  // 0.
  result->GetRgba(pixel, 2, 2);
  EXPECT_EQ(pixel, PxRgbaBytes::Of(255, 0, 0, 0));
}

TEST(LayerRender, AMaskThatTheTargetOutgrewIsMadeToMatch) {
  const auto solid = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxAlphaByte>(2, 2));
  for (int i = 0; i < 4; ++i)
    solid->PutByte(255, i % 2, i / 2);
  const auto large = ImageLayer(Filled(8, 8, kRed));
  const auto mask = ImageLayer(solid);
  const auto last = ImageLayer(Filled(1, 1, kRed));
  const auto set = Group({large.Get(), mask.Get(), last.Get()});
  set->SetKind(kLayerKindMaskSet);
  RenderOf(*set);
  EXPECT_EQ(solid->Width(), 8);
  EXPECT_EQ(solid->Height(), 8);
  uint8_t byte = 0;
  solid->GetByte(byte, 7, 7);
  EXPECT_EQ(byte, 255);
}

TEST(LayerRender, TheClassLayerClearsItsDirtyStateAndTheImageLayerItsOwn) {
  const auto layer = ImageLayer(Filled(2, 2, kRed));
  ZvRenderContext context;
  layer->ZvLayer::Composite(context);
  EXPECT_TRUE(layer->IsDirty()) << "the base leaves that to the class";
  layer->Composite(context);
  EXPECT_FALSE(layer->IsDirty());

  ZvLayer plain;
  plain.Composite(context);
  EXPECT_FALSE(plain.IsDirty());
}

// A tree rendered pixel by pixel, by the rule alone: each layer lies over what its sublayers made,
// and those over what lies below it.
PxRgbaBytes PixelOf(ZvLayer& layer, int32_t x, int32_t y, PxRgbaBytes below) {
  for (const ZvSmartPtr<ZvLayer>& sub : layer.SubLayers())
    if (sub->IsVisible() && !sub->IsHidden())
      below = PixelOf(*sub, x, y, below);
  ZvSmartPtr<ZvImage> image = layer.GetImageRef();
  const ZvPoint at = PositionOf(layer);
  ZvRect crop{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX};
  if (auto* type = dynamic_cast<ZvTypeLayer*>(&layer)) {
    image = type->GetResultImage();
    type->GetCropping(crop);
    crop += at;
  }
  if (image && !ZvRect(x, y, x, y).IsOutside(crop)) {
    const int32_t px = x - at.x - layer.GetOffsetRef().x;
    const int32_t py = y - at.y - layer.GetOffsetRef().y;
    if (px >= 0 && py >= 0 && px < image->Width() && py < image->Height()) {
      PxRgbaBytes source;
      image->GetRgba(source, px, py);
      if (layer.GetOpacity() < 0.99F) {
        below.Composite(source, layer.GetOpacity());
      } else {
        below.Composite(source);
      }
    }
  }
  return below;
}

class RandomTree {
 public:
  static constexpr int32_t kWidth = 150;
  static constexpr int32_t kHeight = 140;
  static constexpr ZvRect kCanvas{0, 0, kWidth - 1, kHeight - 1};

  explicit RandomTree(uint32_t seed) : mRandom(seed) {
    mRoot = Group({ImageLayer(Picture(kWidth, kHeight)).Get()});
    mBase = mRoot->SubLayers()[0];
    for (int i = 0; i < 6; ++i)
      Add();
  }

  ZvLayer& Root() { return *mRoot; }

  // Changes one thing and says what.
  std::string Change() {
    ZvLayer* const layer = Any();
    if (layer == nullptr) {
      Add();
      return "add to a bare tree";
    }
    switch (Up(11)) {
      case 0:
        layer->MoveTo(Place());
        return "move";
      case 1:
        layer->Nudge({Up(20) - 10, Up(20) - 10});
        return "nudge";
      case 2:
        layer->SetVisible(!layer->IsVisible(), mRoot.Get());
        return "visibility";
      case 3:
        layer->SetHidden(!layer->IsHidden(), mRoot.Get());
        return "hidden";
      case 4:
        layer->SetOpacity(static_cast<float>(Up(101)) / 100);
        return "opacity";
      case 5:
        if (dynamic_cast<ZvImageLayer*>(layer) != nullptr)
          layer->SetImage(Up(5) == 0 ? nullptr : Picture(1 + Up(60), 1 + Up(60)).Get());
        return "image";
      case 6:
        Add();
        return "add";
      case 7:
        mRoot->InsertLayer(New().Get(), layer);
        return "insert";
      case 8:
        mRoot->RemoveFromTree(layer);
        return "remove";
      case 9: {
        const ZvSmartPtr<ZvLayer> kept(layer);
        mRoot->RemoveFromTree(layer);
        mRoot->InsertLayer(layer, Up(2) == 0 ? Any() : mBase.Get());
        return "put elsewhere";
      }
      default:
        layer->SetOffsetOnly({Up(9) - 4, Up(9) - 4});
        layer->MarkDirty(true);
        return "offset";
    }
  }

 private:
  int32_t Up(int32_t end) { return static_cast<int32_t>(mRandom() % static_cast<uint32_t>(end)); }
  ZvPoint Place() { return {Up(kWidth + 60) - 30, Up(kHeight + 60) - 30}; }

  ZvSmartPtr<ZvImage> Picture(int32_t width, int32_t height) {
    auto image = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxRgbaBytes>(width, height));
    const int32_t opaque = Up(3);
    for (int32_t y = 0; y < height; ++y)
      for (int32_t x = 0; x < width; ++x) {
        const auto bits = static_cast<uint32_t>(mRandom());
        image->PutRgba(PxRgbaBytes::Of(uint8_t(bits), uint8_t(bits >> 8), uint8_t(bits >> 16),
                                       opaque == 0 ? 255 : uint8_t(bits >> 24)),
                       x, y);
      }
    return image;
  }

  ZvSmartPtr<ZvLayer> New() {
    switch (Up(5)) {
      case 0: {
        const auto group = Group({});
        for (int i = Up(3); i >= 0; --i)
          group->AddLayer(ImageLayer(Picture(1 + Up(50), 1 + Up(50)), Place()).Get());
        return group;
      }
      case 1: {
        const auto type = ZvSmartPtr<ZvTypeLayer>::Adopt(new ZvTypeLayer);
        const auto text = ZvSmartPtr<BarText>::Adopt(new BarText(1 + Up(40), Place(), kGreen));
        type->SetTextObject(text.Get());
        return type;
      }
      default:
        return ImageLayer(Picture(1 + Up(50), 1 + Up(50)), Place());
    }
  }

  void Add() {
    ZvLayer* parent = Up(3) == 0 ? Any() : nullptr;
    if (parent == nullptr || dynamic_cast<ZvTypeLayer*>(parent) != nullptr)
      parent = mRoot.Get();
    parent->AddLayer(New().Get());
  }

  // Any layer but the root and the canvas; null if there is none.
  ZvLayer* Any() {
    std::vector<ZvLayer*> layers;
    for (ZvLayerIterator iter(mRoot.Get(), true); !iter.AtEnd(); iter.Previous())
      if (iter.Current() != mRoot.Get() && iter.Current() != mBase.Get())
        layers.push_back(iter.Current());
    return layers.empty() ? nullptr
                          : layers[static_cast<size_t>(Up(static_cast<int32_t>(layers.size())))];
  }

  std::mt19937 mRandom;
  ZvSmartPtr<ZvLayer> mRoot;
  ZvSmartPtr<ZvLayer> mBase;
};

bool SameToTheEye(const PxRgbaBytes& a, const PxRgbaBytes& b) {
  return a == b || (a.alpha == 0 && b.alpha == 0);
}

std::string Spell(const PxRgbaBytes& pixel) {
  std::ostringstream out;
  out << int(pixel.red) << ' ' << int(pixel.green) << ' ' << int(pixel.blue) << ' '
      << int(pixel.alpha);
  return out.str();
}

// The first pixel in which two pictures of the canvas differ, or "".
template <class A, class B>
std::string FirstDifference(A a, B b) {
  for (int32_t y = 0; y < RandomTree::kHeight; ++y)
    for (int32_t x = 0; x < RandomTree::kWidth; ++x)
      if (!SameToTheEye(a(x, y), b(x, y))) {
        std::ostringstream out;
        out << "(" << x << ", " << y << "): " << Spell(a(x, y)) << " against " << Spell(b(x, y));
        return out.str();
      }
  return "";
}

class LayerRenderRandom : public testing::TestWithParam<uint32_t> {};

TEST_P(LayerRenderRandom, ChangedTreesLookAsIfRenderedFromScratch) {
  RandomTree tree(GetParam());
  std::string history;
  for (int step = 0; step < 25; ++step) {
    const Rendered rendered = RenderOf(tree.Root(), RandomTree::kCanvas);
    const auto asRendered = [&](int32_t x, int32_t y) { return rendered.At(x, y); };
    const auto byRule = [&](int32_t x, int32_t y) { return PixelOf(tree.Root(), x, y, {}); };
    ASSERT_EQ(FirstDifference(asRendered, byRule), "")
        << "seed " << GetParam() << ", after " << history;

    const auto scratch = ZvSmartPtr<ZvLayer>::Adopt(tree.Root().Duplicate());
    for (ZvLayerIterator iter(scratch.Get(), true); !iter.AtEnd(); iter.Previous()) {
      iter.Current()->GetCompositeRef() = nullptr;
      iter.Current()->SetDirty(true, true);
    }
    const Rendered anew = RenderOf(*scratch, RandomTree::kCanvas);
    const auto fromScratch = [&](int32_t x, int32_t y) { return anew.At(x, y); };
    ASSERT_EQ(FirstDifference(asRendered, fromScratch), "")
        << "seed " << GetParam() << ", after " << history;

    for (int i = 0; i < 3; ++i)
      history += tree.Change() + ", ";
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, LayerRenderRandom, testing::Range(1U, 9U));

}  // namespace
}  // namespace vm
