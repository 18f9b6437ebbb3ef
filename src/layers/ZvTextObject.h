#pragma once

#include "foundation/CP_M_ReferenceCounted.h"
#include "foundation/ZvGeometry.h"
#include "image/pixels/PxViews.h"
#include "image/ZvImage.h"
#include "platform/CP_RGBColor.h"

class ZvTypeLayer;

// What a type layer needs of the object that sets and draws text. The application supplies it.
class ZvTextObject : public CP_M_ReferenceCounted {
 public:
  // The drawn text, owned by the object; null when there is none.
  virtual ZvImage* GetPicture() = 0;
  // Where the text stands on the canvas.
  virtual void GetPosition(ZvPoint& outPosition) = 0;
  virtual CP_RGBColor GetColor() = 0;
  virtual void SetColor(const PxRgba64& color, bool redraw) = 0;
  // The layer lets go of the object: it must not be called any more.
  virtual void LayerGone(ZvTypeLayer& layer) = 0;
};
