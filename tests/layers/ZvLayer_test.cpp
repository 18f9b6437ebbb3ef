#include "layers/ZvLayer.h"

#include <gtest/gtest.h>

#include "layers/LayerTest.h"
#include "layers/ZvLayerIterator.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

TEST(Layer, ANewOneIsDirtyAndNeedsRendering) {
  ZvLayer layer;
  EXPECT_TRUE(layer.IsDirty());
  EXPECT_TRUE(layer.NeedsRender());
}

TEST(Layer, ANewOneHasItsDefaults) {
  ZvLayer layer;
  ZvRect cropping;
  EXPECT_FALSE(layer.GetCropping(cropping));
  EXPECT_EQ(cropping, ZvRect(0, 0, 1000, 1000));
  EXPECT_EQ(layer.GetOffsetRef(), ZvPoint(0, 0));
  EXPECT_EQ(static_cast<int>(layer.GetRetain()), 10);
  EXPECT_TRUE(layer.GetNameRef().empty());
  EXPECT_EQ(layer.GetOpacity(), 1.0F);
  EXPECT_EQ(layer.GetKind(), 0U);
  ZvFloatPoint scale;
  layer.GetScale(scale);
  EXPECT_EQ(scale, ZvFloatPoint(1, 1));
  EXPECT_TRUE(layer.IsVisible());
  EXPECT_FALSE(layer.IsHidden() || layer.IsLocked() || layer.IsTemp() || layer.IsSelected());
  EXPECT_EQ(layer.GetFlags(), 0U);
  EXPECT_EQ(layer.GetColor(), PxRgba64());
  EXPECT_FALSE(layer.HasColor());
  EXPECT_FALSE(layer.GetComposite());
  EXPECT_FALSE(layer.GetImageRef());
  EXPECT_FALSE(layer.GetBackdrop());
  EXPECT_FALSE(layer.GetAlphaImage());
  EXPECT_FALSE(layer.HasSubLayers());
}

TEST(Layer, ACleanOneTakesADirtyRectForTheEmptyOne) {
  ZvLayer layer;
  layer.SetDirty(false, true);
  EXPECT_EQ(DirtyRectOf(layer), kNotDirty);
  layer.AddDirtyRect({5, 6, 7, 8});
  EXPECT_EQ(DirtyRectOf(layer), ZvRect(5, 6, 7, 8));
  layer.AddDirtyRect({1, 7, 2, 12});
  EXPECT_EQ(DirtyRectOf(layer), ZvRect(1, 6, 7, 12));
}

TEST(Layer, BeingDirtyWithoutBoundsNotesNoArea) {
  const auto layer = ImageLayer(Filled(4, 4, kRed));
  layer->SetDirty(false, true);
  layer->SetDirty(true, false);
  EXPECT_TRUE(layer->IsDirty());
  EXPECT_EQ(DirtyRectOf(*layer), kNotDirty);
  layer->SetDirtyFlag(true, true);
  EXPECT_EQ(DirtyRectOf(*layer), ZvRect(0, 0, 3, 3));
}

TEST(Layer, AnInvisibleOneNeedsNoRendering) {
  ZvLayer layer;
  layer.SetVisible(false, nullptr);
  EXPECT_TRUE(layer.IsDirty());
  EXPECT_FALSE(layer.NeedsRender());
}

TEST(Layer, ADirtySublayerMakesItsParentsNeedRendering) {
  const auto leaf = ImageLayer(Filled(2, 2, kRed));
  const auto middle = Group({leaf.Get()});
  const auto root = Group({middle.Get()});
  for (ZvLayer* layer : {root.Get(), middle.Get(), static_cast<ZvLayer*>(leaf.Get())})
    layer->SetDirty(false, true);
  EXPECT_FALSE(root->NeedsRender());
  leaf->MarkDirty(true);
  EXPECT_TRUE(root->NeedsRender());
  EXPECT_FALSE(root->IsDirty());
}

TEST(Layer, ItsSizeIsThatOfItsPictureElseOfItsComposite) {
  ZvLayer layer;
  ZvPoint size(9, 9);
  layer.GetSize(size);
  EXPECT_EQ(size, ZvPoint(0, 0));
  layer.SetComposite(Filled(5, 6, kRed).Get());
  layer.GetSize(size);
  EXPECT_EQ(size, ZvPoint(5, 6));
  layer.SetImage(Filled(2, 3, kRed).Get());
  layer.GetSize(size);
  EXPECT_EQ(size, ZvPoint(2, 3));
}

TEST(Layer, ItsBoundsTakeInItsSublayers) {
  const auto a = ImageLayer(Filled(10, 10, kRed), {-5, 3});
  const auto b = ImageLayer(Filled(4, 2, kRed), {20, 30});
  const auto group = Group({a.Get(), b.Get()});
  EXPECT_EQ(BoundsOf(*group), ZvRect(-5, 3, 23, 31));
}

TEST(Layer, ItsImageBoundsTakeInTheCompositeAtItsOffset) {
  const auto layer = ImageLayer(Filled(3, 3, kRed), {100, 100});
  layer->SetComposite(Filled(10, 10, kRed).Get());
  layer->SetOffsetOnly({2, 4});
  ZvRect bounds;
  layer->GetImageBounds(bounds);
  EXPECT_EQ(bounds, ZvRect(2, 4, 102, 102));
}

TEST(Layer, MovingItMovesItsSublayersAlong) {
  const auto a = ImageLayer(Filled(2, 2, kRed), {10, 20});
  const auto inner = Group({a.Get()});
  const auto outer = Group({inner.Get()});
  inner->MoveTo({1, 1});  // a to 11, 21
  outer->MoveTo({100, 200});
  EXPECT_EQ(PositionOf(*outer), ZvPoint(100, 200));
  EXPECT_EQ(PositionOf(*inner), ZvPoint(101, 201));
  EXPECT_EQ(PositionOf(*a), ZvPoint(111, 221));
}

TEST(Layer, MovingItMarksTheNewPlaceDirty) {
  const auto layer = ImageLayer(Filled(4, 5, kRed), {10, 10});
  layer->SetDirty(false, true);
  layer->MoveTo({50, 60});
  EXPECT_EQ(DirtyRectOf(*layer), ZvRect(50, 60, 53, 64));
  EXPECT_TRUE(layer->IsDirty());
}

TEST(Layer, NudgingOneWithoutAPictureMovesIt) {
  ZvLayer layer;
  layer.Nudge({3, -4});
  EXPECT_EQ(PositionOf(layer), ZvPoint(3, -4));
}

TEST(Layer, NudgingOneWithAPictureMovesThePictureInItsFrame) {
  const auto image = Filled(4, 4, kNothing);
  image->PutRgba(kRed, 1, 1);
  const auto layer = ImageLayer(image, {10, 10});
  layer->Nudge({2, 1});
  EXPECT_EQ(PositionOf(*layer), ZvPoint(10, 10));
  PxRgbaBytes pixel;
  image->GetRgba(pixel, 3, 2);
  EXPECT_EQ(pixel, kRed);
  image->GetRgba(pixel, 1, 1);
  EXPECT_EQ(pixel, kNothing);
}

// Four corners with an alpha of 9 count as none, so the scan finds the one pixel above that.
TEST(Layer, ItsOpaqueBoundsStartAboveAnAlphaOf9) {
  const auto image = Filled(8, 8, PxRgbaBytes::Of(1, 2, 3, 9));
  image->PutRgba(PxRgbaBytes::Of(1, 2, 3, 10), 2, 5);
  const auto layer = ImageLayer(image, {100, 200});
  ZvRect bounds;
  layer->GetOpaqueBounds(bounds);
  EXPECT_EQ(bounds, ZvRect(102, 205, 102, 205));
}

TEST(Layer, ThreeOpaqueCornersMakeAllOfItOpaqueBounds) {
  const auto image = Filled(8, 8, kNothing);
  for (const ZvPoint& corner : {ZvPoint(0, 0), ZvPoint(7, 0), ZvPoint(0, 7)})
    image->PutRgba(PxRgbaBytes::Of(0, 0, 0, 10), corner.x, corner.y);
  const auto layer = ImageLayer(image, {5, 5});
  ZvRect bounds;
  layer->GetOpaqueBounds(bounds);
  EXPECT_EQ(bounds, ZvRect(5, 5, 12, 12));
}

TEST(Layer, ItsOpaqueBoundsAreEmptyWithoutAnythingToSee) {
  ZvRect bounds;
  ZvLayer().GetOpaqueBounds(bounds);
  EXPECT_TRUE(bounds.IsEmpty());
  const auto clear = ImageLayer(Filled(8, 8, kNothing), {5, 5});
  clear->GetOpaqueBounds(bounds);
  EXPECT_TRUE(bounds.IsEmpty());
}

TEST(Layer, EnsureImageMakesAClearPictureUpToTheRectsEnd) {
  ZvLayer color;
  const ZvSmartPtr<ZvImage> image = color.EnsureImage({3, 4, 9, 19}, FourCC("Rgba"));
  EXPECT_EQ(image->Width(), 10);
  EXPECT_EQ(image->Height(), 20);
  EXPECT_EQ(image->PixelKind(), FourCC("Rgba"));
  EXPECT_TRUE(image->IsTiled());
  EXPECT_EQ(color.EnsureImage({0, 0, 99, 99}, FourCC("AlpB")), image);

  ZvLayer mask;
  EXPECT_EQ(mask.EnsureImage({0, 0, 1, 1}, FourCC("AlpB"))->PixelKind(), FourCC("AlpB"));
  ZvLayer other;
  EXPECT_EQ(other.EnsureImage({0, 0, 1, 1}, FourCC("Rg64"))->PixelKind(), FourCC("Rgba"));
}

TEST(Layer, SettingACompositeMakesItCleanAndSettingAnImageDirty) {
  ZvLayer layer;
  layer.SetComposite(Filled(3, 3, kRed).Get());
  EXPECT_FALSE(layer.IsDirty());
  layer.SetImage(Filled(4, 4, kRed).Get());
  EXPECT_TRUE(layer.IsDirty());
  EXPECT_EQ(DirtyRectOf(layer), ZvRect(0, 0, 3, 3));
}

TEST(Layer, TheResultIsTheCompositeAndTheTopResultThePicture) {
  ZvLayer layer;
  const auto image = Filled(1, 1, kRed);
  const auto composite = Filled(2, 2, kRed);
  layer.SetImage(image.Get());
  EXPECT_EQ(layer.GetResultImage(), image);
  layer.SetComposite(composite.Get());
  EXPECT_EQ(layer.GetResultImage(), composite);
  EXPECT_EQ(layer.GetTopResultImage(), image);
  layer.SetImage(nullptr);
  EXPECT_EQ(layer.GetTopResultImage(), composite);
}

TEST(Layer, AGroupsResultIsItsFirstSublayersAndItsTopResultItsLastShownOnes) {
  const auto first = Filled(1, 1, kRed);
  const auto second = Filled(2, 2, kRed);
  const auto third = Filled(3, 3, kRed);
  const auto a = ImageLayer(first);
  const auto b = ImageLayer(second);
  const auto c = ImageLayer(third);
  const auto group = Group({a.Get(), b.Get(), c.Get()});
  const auto own = Filled(4, 4, kRed);
  group->SetComposite(own.Get());
  EXPECT_EQ(group->GetResultImage(), own) << "not a group by its kind yet";
  group->SetKind(kLayerKindGroup);
  EXPECT_EQ(group->GetResultImage(), first);
  EXPECT_EQ(group->GetTopResultImage(), third);
  c->SetHidden(true, nullptr);
  EXPECT_EQ(group->GetTopResultImage(), second);
}

TEST(Layer, APixelIsReadRelativeToThePositionAndZeroOutside) {
  const auto image = Filled(3, 2, kRed);
  image->PutRgba(kBlue, 2, 1);
  ZvLayer layer;
  PxRgbaBytes pixel = kGreen;
  layer.GetPixel(pixel, {0, 0});
  EXPECT_EQ(pixel, kNothing);
  layer.SetImage(image.Get());
  layer.MoveTo({10, 20});
  layer.GetPixel(pixel, {12, 21});
  EXPECT_EQ(pixel, kBlue);
  for (const ZvPoint& outside :
       {ZvPoint(9, 20), ZvPoint(13, 20), ZvPoint(10, 19), ZvPoint(10, 22)}) {
    layer.GetPixel(pixel, outside);
    EXPECT_EQ(pixel, kNothing) << outside.x << ", " << outside.y;
  }
  layer.GetPixel(pixel, {INT32_MIN, INT32_MIN});
  EXPECT_EQ(pixel, kNothing);
}

TEST(Layer, PlainStateIsKept) {
  ZvLayer layer;
  layer.SetScale(2, 3);
  ZvFloatPoint scale;
  layer.GetScale(scale);
  EXPECT_EQ(scale, ZvFloatPoint(2, 3));
  layer.SetCropping({1, 2, 3, 4}, true);
  ZvRect cropping;
  EXPECT_TRUE(layer.GetCropping(cropping));
  EXPECT_EQ(cropping, ZvRect(1, 2, 3, 4));
  layer.SetRetain(static_cast<ZvRetainLevel>(3));
  EXPECT_EQ(static_cast<int>(layer.GetRetain()), 3);
  layer.SetFlags(0b1101);
  layer.ClearFlags(0b0100);
  EXPECT_EQ(layer.GetFlags(), 0b1001U);
  EXPECT_TRUE(layer.TestFlags(0b0011));
  EXPECT_FALSE(layer.TestFlags(0b0110));
  layer.SetColor({1, 2, 3, 4});
  EXPECT_EQ(layer.GetColor(), (PxRgba64{1, 2, 3, 4}));
  layer.EnableColor();
  EXPECT_TRUE(layer.HasColor());
  layer.DisableColor();
  EXPECT_FALSE(layer.HasColor());
  layer.SetTemp(true);
  layer.SetLocked(true);
  layer.SetSelected(true);
  EXPECT_TRUE(layer.IsTemp() && layer.IsLocked() && layer.IsSelected());
  layer.GetPathRef() = "a/b";
  ZvString path;
  layer.GetPath(path);
  EXPECT_EQ(path, ZvString("a/b"));
}

TEST(Layer, AddingOneMakesBothDirtyWhereItStands) {
  const auto root = Group({});
  const auto layer = ImageLayer(Filled(4, 4, kRed), {30, 40});
  root->SetDirty(false, true);
  layer->SetDirty(false, true);
  root->AddLayer(layer.Get());
  EXPECT_EQ(DirtyRectOf(*root), ZvRect(30, 40, 33, 43));
  EXPECT_EQ(DirtyRectOf(*layer), ZvRect(30, 40, 33, 43));
  EXPECT_EQ(layer->GetRefCount(), 2U);
}

TEST(Layer, InsertingPutsItDirectlyBehindTheGivenOne) {
  const auto a = ImageLayer(Filled(1, 1, kRed));
  const auto b = ImageLayer(Filled(1, 1, kRed));
  const auto inner = Group({a.Get(), b.Get()});
  const auto root = Group({inner.Get()});
  const auto added = ImageLayer(Filled(1, 1, kRed));
  root->InsertLayer(added.Get(), a.Get());
  ASSERT_EQ(inner->SubLayers().size(), 3U);
  EXPECT_EQ(inner->SubLayers()[1], added.Get());
  EXPECT_EQ(root->SubLayers().size(), 1U);

  const auto onTop = ImageLayer(Filled(1, 1, kRed));
  root->InsertLayer(onTop.Get(), nullptr);
  EXPECT_EQ(root->SubLayers().back(), onTop.Get());
}

TEST(Layer, InsertingBehindAnUnknownOneAddsNothing) {
  const auto a = ImageLayer(Filled(1, 1, kRed));
  const auto root = Group({a.Get()});
  const auto stranger = ImageLayer(Filled(1, 1, kRed));
  const auto added = ImageLayer(Filled(1, 1, kRed));
  root->InsertLayer(added.Get(), stranger.Get());
  EXPECT_EQ(root->SubLayers().size(), 1U);
  root->InsertLayer(added.Get(), root.Get());
  EXPECT_EQ(root->SubLayers().size(), 1U) << "the root itself is in no list";
}

TEST(Layer, ABaseGetsItsKind) {
  const auto root = Group({});
  const auto base = ImageLayer(Filled(1, 1, kRed));
  root->AddBase(base.Get(), nullptr);
  EXPECT_EQ(base->GetKind(), FourCC("BASE"));
  EXPECT_EQ(root->SubLayers().size(), 1U);
}

TEST(Layer, ItCantBePutIntoItself) {
  const auto inner = Group({});
  const auto outer = Group({inner.Get()});
  inner->AddLayer(outer.Get());
  inner->AddLayer(inner.Get());
  inner->AddLayer(nullptr);
  EXPECT_FALSE(inner->HasSubLayers());
  outer->InsertLayer(outer.Get(), inner.Get());
  EXPECT_EQ(outer->SubLayers().size(), 1U);
}

TEST(Layer, RemovingOneMakesItsParentAndTheOneOverItDirty) {
  const auto a = ImageLayer(Filled(4, 4, kRed), {8, 8});
  const auto b = ImageLayer(Filled(2, 2, kRed));
  const auto root = Group({a.Get(), b.Get()});
  for (ZvLayer* layer :
       {root.Get(), static_cast<ZvLayer*>(a.Get()), static_cast<ZvLayer*>(b.Get())})
    layer->SetDirty(false, true);
  EXPECT_TRUE(root->RemoveFromTree(a.Get()));
  EXPECT_EQ(root->SubLayers().size(), 1U);
  EXPECT_EQ(DirtyRectOf(*root), ZvRect(8, 8, 11, 11));
  EXPECT_EQ(DirtyRectOf(*b), ZvRect(8, 8, 11, 11));
  EXPECT_EQ(DirtyRectOf(*a), kNotDirty);
  EXPECT_FALSE(root->RemoveFromTree(a.Get()));
  EXPECT_FALSE(root->RemoveFromTree(root.Get()));
  EXPECT_FALSE(root->RemoveFromTree(nullptr));
}

TEST(Layer, HidingOneWithARootMakesTheOneOverItDirty) {
  const auto a = ImageLayer(Filled(4, 4, kRed), {8, 8});
  const auto b = ImageLayer(Filled(2, 2, kRed));
  const auto root = Group({a.Get(), b.Get()});
  for (ZvLayer* layer :
       {root.Get(), static_cast<ZvLayer*>(a.Get()), static_cast<ZvLayer*>(b.Get())})
    layer->SetDirty(false, true);
  a->SetVisible(false, root.Get());
  EXPECT_EQ(DirtyRectOf(*b), ZvRect(8, 8, 11, 11));
  EXPECT_EQ(DirtyRectOf(*root), kNotDirty);
  // The topmost one has its parent over it.
  b->SetDirty(false, true);
  b->SetVisible(false, root.Get());
  EXPECT_EQ(DirtyRectOf(*root), ZvRect(0, 0, 1, 1));
  EXPECT_EQ(root->SubLayers().size(), 2U);
  a->SetVisible(true, nullptr);
  EXPECT_EQ(DirtyRectOf(*a), ZvRect(8, 8, 11, 11));
}

TEST(Layer, InvalidatingTheRootItselfIsReported) {
  ReportRecorder reports;
  const auto root = Group({});
  root->InvalidateInParent(root.Get());
  EXPECT_EQ(reports.Lines(), Reports({"ZvLayer(434) : iter.PreviousLayer() != nil"}));
}

TEST(Layer, InvalidatingAStrangerDoesNothing) {
  const auto root = Group({});
  const auto stranger = Group({});
  root->SetDirty(false, true);
  root->InvalidateInParent(stranger.Get());
  EXPECT_FALSE(root->IsDirty());
}

TEST(Layer, DroppingTemporariesDropsNothing) {
  const auto a = ImageLayer(Filled(1, 1, kRed));
  const auto b = ImageLayer(Filled(1, 1, kRed));
  const auto root = Group({a.Get(), b.Get()});
  a->SetTemp(true);
  root->DropTemporaries();
  ASSERT_EQ(root->SubLayers().size(), 2U);
  EXPECT_EQ(root->SubLayers()[0], a.Get());
  EXPECT_EQ(root->SubLayers()[1], b.Get());
}

TEST(Layer, ItCountsNothingRenderableInAnyTree) {
  const auto a = ImageLayer(Filled(1, 1, kRed));
  const auto b = ImageLayer(Filled(1, 1, kRed));
  const auto inner = Group({a.Get()});
  const auto root = Group({inner.Get(), b.Get()});
  ZvRenderContext context;
  EXPECT_EQ(root->CountRenderable(context), 0);
  RenderOf(*root);
  ZvRenderContext clean;
  EXPECT_EQ(root->CountRenderable(clean), 0);
}

TEST(Layer, CountingTakesThePictureForAMissingTarget) {
  const auto image = Filled(1, 1, kRed);
  const auto layer = ImageLayer(image);
  ZvRenderContext context;
  layer->CountRenderable(context);
  EXPECT_EQ(context.mTarget, image);
}

TEST(Layer, ADuplicateSharesNoPicturesAndNoSublayers) {
  const auto child = ImageLayer(Filled(2, 2, kGreen), {3, 3});
  const auto root = Group({child.Get()});
  root->SetImage(Filled(4, 4, kRed).Get());
  root->SetComposite(Filled(5, 5, kBlue).Get());
  root->SetBackdrop(Filled(1, 1, kRed).Get());
  root->GetNameRef() = "name";
  root->SetOpacity(0.5F);
  root->SetKind(kLayerKindGroup);
  root->SetFlags(6);
  root->SetTemp(true);
  root->SetLocked(true);
  root->MoveTo({7, 8});

  const auto copy = ZvSmartPtr<ZvLayer>::Adopt(root->Duplicate());
  EXPECT_EQ(copy->GetNameRef(), ZvString("name"));
  EXPECT_EQ(copy->GetOpacity(), 0.5F);
  EXPECT_EQ(copy->GetKind(), kLayerKindGroup);
  EXPECT_EQ(copy->GetFlags(), 6U);
  EXPECT_TRUE(copy->IsLocked());
  EXPECT_FALSE(copy->IsTemp());
  EXPECT_FALSE(copy->GetBackdrop());
  EXPECT_EQ(PositionOf(*copy), ZvPoint(7, 8));
  EXPECT_FALSE(copy->GetImageRef() == root->GetImageRef());
  EXPECT_FALSE(copy->GetComposite() == root->GetComposite());
  PxRgbaBytes pixel;
  copy->GetImageRef()->GetRgba(pixel, 3, 3);
  EXPECT_EQ(pixel, kRed);
  copy->GetComposite()->GetRgba(pixel, 4, 4);
  EXPECT_EQ(pixel, kBlue);
  ASSERT_EQ(copy->SubLayers().size(), 1U);
  EXPECT_NE(copy->SubLayers()[0].Get(), child.Get());
  EXPECT_NE(dynamic_cast<ZvImageLayer*>(copy->SubLayers()[0].Get()), nullptr);
  EXPECT_EQ(PositionOf(*copy->SubLayers()[0]), PositionOf(*child));
}

TEST(Layer, ATreeOfAnyDepthIsTakenApartAndWalkedWithoutRecursion) {
  auto root = ZvSmartPtr<ZvLayer>::Adopt(new ZvLayer);
  ZvLayer* deepest = root.Get();
  for (int i = 0; i < 10000; ++i) {
    const auto next = ZvSmartPtr<ZvLayer>::Adopt(new ZvLayer);
    deepest->SubLayers().push_back(next);
    deepest = next.Get();
  }
  ZvLayerIterator iter(root.Get(), false);
  EXPECT_EQ(iter.Current(), deepest);
  EXPECT_TRUE(iter.Find(root.Get(), true, deepest));

  // What the calls down the tree reach has a limit, behind which they do nothing.
  EXPECT_TRUE(root->NeedsRender());
  BoundsOf(*root);
  root->MoveTo({1, 1});
  EXPECT_EQ(PositionOf(*deepest), ZvPoint(0, 0));
  RenderOf(*root);
  const auto copy = ZvSmartPtr<ZvLayer>::Adopt(root->Duplicate());
  int32_t levels = 0;
  for (ZvLayer* layer = copy.Get(); layer->HasSubLayers(); layer = layer->SubLayers()[0].Get())
    ++levels;
  EXPECT_EQ(levels, kMaxLayerNesting);
  root->ConvertForOutput();
  root->DropTemporaries();
  ZvRenderContext context;
  EXPECT_EQ(root->CountRenderable(context), 0);
}

}  // namespace
}  // namespace vm
