#pragma once

#include "layers/ZvLayer.h"

// A layer that shows a picture of its own, the image given by SetImage.
class ZvImageLayer : public ZvLayer {
 public:
  static constexpr char kClassName[] = "ZvImageLayer";

  ZvImageLayer();

  void ClassName(ZvString& outName) const override;
  // Behind the layer's own form: a bool that says whether there is an image, and the image.
  void WriteTo(ZvStream& stream) override;
  void ReadFrom(ZvStream& stream) override;

  ZvLayer* Duplicate() override;
  void GetSize(ZvPoint& outSize) override;
  void GetBounds(ZvRect& outBounds) override;
  void Composite(ZvRenderContext& context) override;
  // Fills the picture with transparent white.
  void Finish() override;
  // Replaces a picture without alpha by one with: PxRgbBytes by tiled PxRgbaBytes, PxRgb48 by tiled
  // PxRgba64.
  void ConvertForOutput() override;
  void GetPixel(PxRgbaBytes& outColor, const ZvPoint& point) override;

 private:
  // Unless the crop rectangle was set on purpose it follows the picture.
  void FitCropToImage();
};
