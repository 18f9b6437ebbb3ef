#pragma once

#include <string>

#include "foundation/ZvSmartPtr.h"
#include "layers/ZvTextObject.h"

namespace compose {

// A line of text in square letters of 5 by 7 blocks: capitals, digits and blanks. The text object
// behind a type layer.
class BlockText : public ZvTextObject {
 public:
  // `blockSize` pixels for each block of a letter; at least 1.
  BlockText(const std::string& text, int32_t blockSize, const ZvPoint& position,
            const CP_RGBColor& color);

  ZvImage* GetPicture() override { return mPicture.Get(); }
  void GetPosition(ZvPoint& outPosition) override { outPosition = mPosition; }
  CP_RGBColor GetColor() override { return mColor; }
  // Draws the letters in the colour, if asked to.
  void SetColor(const PxRgba64& color, bool redraw) override;
  void LayerGone(ZvTypeLayer& layer) override;

 private:
  void Draw(const PxRgba64& color);

  std::string mText;
  int32_t mBlockSize;
  ZvPoint mPosition;
  CP_RGBColor mColor;
  ZvSmartPtr<ZvImage> mPicture;
};

}  // namespace compose
