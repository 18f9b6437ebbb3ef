#pragma once

// Short ways to say what the tests of layers need.

#include <cstdint>
#include <random>

#include "foundation/ZvSmartPtr.h"
#include "image/pixels/PxRecords.h"
#include "image/ZvTiledImage.h"
#include "layers/ZvImageLayer.h"
#include "layers/ZvLayer.h"
#include "layers/ZvTypeLayer.h"

namespace vm {

inline constexpr PxRgbaBytes kRed = PxRgbaBytes::Of(255, 0, 0, 255);
inline constexpr PxRgbaBytes kGreen = PxRgbaBytes::Of(0, 255, 0, 255);
inline constexpr PxRgbaBytes kBlue = PxRgbaBytes::Of(0, 0, 255, 255);
inline constexpr PxRgbaBytes kNothing = PxRgbaBytes::Of(0, 0, 0, 0);

inline ZvSmartPtr<ZvImage> Filled(int32_t width, int32_t height, const PxRgbaBytes& color) {
  auto image = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxRgbaBytes>(width, height));
  for (int32_t y = 0; y < height; ++y)
    for (int32_t x = 0; x < width; ++x)
      image->PutRgba(color, x, y);
  return image;
}

inline ZvSmartPtr<ZvImageLayer> ImageLayer(const ZvSmartPtr<ZvImage>& image,
                                           const ZvPoint& at = {}) {
  auto layer = ZvSmartPtr<ZvImageLayer>::Adopt(new ZvImageLayer);
  layer->SetImage(image.Get());
  layer->MoveTo(at);
  return layer;
}

inline ZvSmartPtr<ZvLayer> Group(std::initializer_list<ZvLayer*> layers) {
  auto group = ZvSmartPtr<ZvLayer>::Adopt(new ZvLayer);
  for (ZvLayer* layer : layers)
    group->AddLayer(layer);
  return group;
}

inline ZvRect BoundsOf(ZvLayer& layer) {
  ZvRect bounds;
  layer.GetBounds(bounds);
  return bounds;
}

inline ZvPoint PositionOf(ZvLayer& layer) {
  ZvPoint position;
  layer.GetPosition(position);
  return position;
}

// The layer's dirty rectangle; the sentinel when it has none that is valid.
inline constexpr ZvRect kNotDirty{7, 7, 1, 1};
inline ZvRect DirtyRectOf(ZvLayer& layer) {
  ZvRect rect;
  return layer.GetDirtyRect(rect) ? rect : kNotDirty;
}

// A rendered tree: its image and where that lies on the canvas.
struct Rendered {
  ZvSmartPtr<ZvImage> image;
  ZvPoint origin;

  PxRgbaBytes At(int32_t x, int32_t y) const {
    PxRgbaBytes pixel;
    x -= origin.x;
    y -= origin.y;
    if (image && x >= 0 && y >= 0 && x < image->Width() && y < image->Height())
      image->GetRgba(pixel, x, y);
    return pixel;
  }
};

inline Rendered RenderOf(ZvLayer& root, const ZvRect& limit = kEmptyRect) {
  ZvRenderContext context;
  context.mLimit = limit;
  Rendered rendered;
  root.Render(rendered.image, context);
  rendered.origin = context.mOrigin;
  return rendered;
}

// Draws a bar of one colour, `length` pixels wide and 3 high, as its text.
class BarText : public ZvTextObject {
 public:
  BarText(int32_t length, const ZvPoint& at, const PxRgbaBytes& color) : position(at) {
    picture = Filled(length, 3, color);
  }

  ZvImage* GetPicture() override { return picture.Get(); }
  void GetPosition(ZvPoint& outPosition) override { outPosition = position; }
  CP_RGBColor GetColor() override { return color; }
  void SetColor(const PxRgba64& in, bool redraw) override {
    received = in;
    receivedRedraw = redraw;
    ++colorsReceived;
  }
  void LayerGone(ZvTypeLayer& layer) override { gone.push_back(&layer); }

  ZvSmartPtr<ZvImage> picture;
  ZvPoint position;
  CP_RGBColor color{0x1234, 0x5678, 0x9ABC};
  PxRgba64 received;
  bool receivedRedraw = true;
  int32_t colorsReceived = 0;
  std::vector<ZvTypeLayer*> gone;
};

}  // namespace vm
