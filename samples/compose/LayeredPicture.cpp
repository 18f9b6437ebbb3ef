#include "compose/LayeredPicture.h"

#include <algorithm>
#include <cmath>

#include "compose/BlockText.h"
#include "image/pixels/PxRecords.h"
#include "image/ZvTiledImage.h"
#include "layers/ZvImageLayer.h"
#include "layers/ZvTypeLayer.h"
#include "pictures/Scene.h"

namespace compose {

namespace {

ZvSmartPtr<ZvImage> NewImage(int32_t width, int32_t height) {
  return ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxRgbaBytes>(width, height));
}

ZvSmartPtr<ZvLayer> LayerOf(const ZvSmartPtr<ZvImage>& image, const char* name,
                            const ZvPoint& at = {}) {
  auto layer = ZvSmartPtr<ZvLayer>::Adopt(new ZvImageLayer);
  layer->SetImage(image.Get());
  layer->MoveTo(at);
  layer->GetNameRef() = name;
  return layer;
}

ZvSmartPtr<ZvImage> Landscape(int32_t width, int32_t height) {
  const filter_host::Picture scene = pictures::MakeScene(width, height);
  auto image = NewImage(width, height);
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* sample = scene.Row(y);
    for (int32_t x = 0; x < width; ++x, sample += 3)
      image->PutRgba(PxRgbaBytes::Of(sample[0], sample[1], sample[2], 255), x, y);
  }
  return image;
}

// A warm sheet that a round mask lets through, fading towards its rim.
ZvSmartPtr<ZvImage> MaskedSheet(int32_t side) {
  auto sheet = NewImage(side, side);
  sheet->FillClip({0xFFFF, 0x9800, 0x2000, 0xFFFF});
  const auto mask = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxAlphaByte>(side, side));
  const double centre = side / 2.0;
  for (int32_t y = 0; y < side; ++y)
    for (int32_t x = 0; x < side; ++x) {
      const double distance = std::hypot(x + 0.5 - centre, y + 0.5 - centre) / centre;
      mask->PutByte(static_cast<uint8_t>(200 * std::clamp(1.6 * (1 - distance), 0.0, 1.0)), x, y);
    }
  sheet->CopyAlpha(mask.Get(), mask->Bounds(), mask->Bounds(), kResampleNone, nullptr);
  return sheet;
}

ZvSmartPtr<ZvImage> Disc(int32_t side, const PxRgba64& color) {
  auto disc = NewImage(side, side);
  disc->DrawOval(disc->Bounds(), color, true, false, nullptr);
  return disc;
}

ZvSmartPtr<ZvLayer> Discs(int32_t width, int32_t height) {
  auto group = ZvSmartPtr<ZvLayer>::Adopt(new ZvLayer);
  group->SetKind(kLayerKindGroup);
  group->GetNameRef() = "discs";
  const int32_t side = height / 4;
  const PxRgba64 colors[] = {{0xFFFF, 0x2000, 0x4000, 0xFFFF},
                             {0x2000, 0xC000, 0x6000, 0xFFFF},
                             {0x2000, 0x6000, 0xFFFF, 0xFFFF}};
  for (int32_t i = 0; i < 3; ++i) {
    const auto disc = LayerOf(Disc(side, colors[i]), "disc",
                              {width - side * 2 + i * side / 2, height / 12 + i % 2 * side / 2});
    disc->SetOpacity(0.6F);
    group->AddLayer(disc.Get());
  }
  return group;
}

ZvSmartPtr<ZvLayer> Text(int32_t width, int32_t height, const ZvPoint& offset,
                         const CP_RGBColor& color, float opacity) {
  const int32_t block = std::max(1, width / 80);
  const auto text = ZvSmartPtr<BlockText>::Adopt(new BlockText(
      "VELVETMOOR", block, {width / 8 + offset.x, height - 11 * block + offset.y}, color));
  auto layer = ZvSmartPtr<ZvTypeLayer>::Adopt(new ZvTypeLayer);
  layer->SetTextObject(text.Get());
  layer->SetCropping({0, 0, width, height}, true);
  layer->SetOpacity(opacity);
  return layer;
}

}  // namespace

ZvSmartPtr<ZvLayer> MakeLayeredPicture(int32_t width, int32_t height) {
  auto root = ZvSmartPtr<ZvLayer>::Adopt(new ZvLayer);
  root->GetNameRef() = "picture";
  root->AddBase(LayerOf(Landscape(width, height), "landscape").Get(), nullptr);

  auto set = ZvSmartPtr<ZvLayer>::Adopt(new ZvLayer);
  set->SetKind(kLayerKindMaskSet);
  set->GetNameRef() = "sunlight";
  const int32_t side = height * 3 / 4;
  set->AddLayer(LayerOf(MaskedSheet(side), "sheet", {width / 16, -side / 6}).Get());
  root->AddLayer(set.Get());

  root->AddLayer(Discs(width, height).Get());
  const int32_t shadow = std::max(1, width / 200);
  root->AddLayer(Text(width, height, {shadow, shadow}, CP_RGBColor(0, 0, 0), 0.5F).Get());
  root->AddLayer(Text(width, height, {0, 0}, CP_RGBColor(0xFFFF, 0xF800, 0xE000), 1.0F).Get());
  return root;
}

}  // namespace compose
