#pragma once

#include "foundation/FourCharCode.h"
#include "layers/ZvLayer.h"
#include "layers/ZvTextObject.h"

inline constexpr uint32_t kTypeLayerCode = FourCC("TypL");

// A layer that shows what an outside text object draws. The object is not streamed: a type layer
// read from a stream shows nothing until it gets one.
class ZvTypeLayer : public ZvLayer {
 public:
  static constexpr char kClassName[] = "ZvTypeLayer";

  ZvTypeLayer();
  ~ZvTypeLayer() override;

  void ClassName(ZvString& outName) const override;

  // The copy shares the text object.
  ZvLayer* Duplicate() override;
  void Composite(ZvRenderContext& context) override;
  void Finish() override;
  ZvSmartPtr<ZvImage> GetResultImage() override;
  void GetPixel(PxRgbaBytes& outColor, const ZvPoint& point) override;

  // Holds the object by a reference. The former one is told that the layer is gone.
  virtual void SetTextObject(ZvTextObject* textObject);
  virtual ZvTextObject* GetTextObject();

 private:
  // Moves the layer to where the text stands and hands the text's colour back to it in 16 bits.
  void SyncFromTextObject();

  ZvSmartPtr<ZvTextObject> mTextObject;
};
