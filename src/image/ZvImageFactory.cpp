#include "image/ZvImageFactory.h"

#include <cstring>

#include "foundation/FourCharCode.h"
#include "image/ZvTiledImage.h"
#include "image/ZvTypedImage.h"
#include "persistence/ZvClassRegistry.h"

const ZvString gImageClassName("ZvImage");
const ZvString gImageGrayBitClassName("ZvImageGrayBit");
const ZvString gImageRgbaBytesClassName("ZvImageRgbaBytes");
const ZvString gImageRgbBytesClassName("ZvImageRgbBytes");

namespace {

struct StreamingName {
  const char* typeName;
  const char* streamingName;
};

// REQUIRED: not the inverse of the creators below.
constexpr StreamingName kStreamingNames[] = {
    {"ZvTiledImage<PxRgbBytes>", "ZvImageRgbBytes"},
    {"ZvTiledImage<PxRgbaBytes>", "ZvImageRgbaBytes"},
    {"ZvTiledImage<PxCmykBytes>", "ZvImageCmykBytes"},
    {"ZvTiledImage<PxCmykaBytes>", "ZvImageCmykaBytes"},
    {"ZvTiledImage<PxCmyk64>", "ZvImageCmyka64"},
    {"ZvTiledImage<PxCmyka80>", "ZvImageCmyka80"},
    {"ZvTiledImage<PxGrayByte>", "ZvImageGrayByte"},
    {"ZvTiledImage<PxAlphaByte>", "ZvImageAlphaByte"},
    {"ZvTiledImage<PxGrayBit>", "ZvImageGrayBit"},
    {"ZvTiledImage<PxRgba64>", "ZvImageRgba64"},
    {"ZvTiledImage<PxRgb48>", "ZvImageRgb48"},
    {"ZvTypedImage<PxRgbBytes>", "ZvRowImageRgbBytes"},
    {"ZvTypedImage<PxRgbaBytes>", "ZvRowImageRgbaBytes"},
    {"ZvTypedImage<PxAlphaByte>", "ZvRowImageAlphaByte"},
    {"ZvTypedImage<PxGrayBit>", "ZvRowImageGrayBit"},
    {"ZvTypedImage<PxGrayByte>", "ZvRowImageGrayByte"},
    {"ZvTypedImage<PxGrayABytes>", "ZvRowImageGrayABytes"},
};

// A new image of 1 by 1 pixel.
template <class Image>
ZvStreamable* Create() {
  return new Image;
}

struct Creator {
  const char* registeredName;
  ZvStreamableFactory create;
};

constexpr Creator kCreators[] = {
    {"ZvImageRgbBytes", Create<ZvTiledImage<PxRgbBytes>>},
    {"ZvImageRgbaBytes", Create<ZvTiledImage<PxRgbaBytes>>},
    {"ZvImageGrayByte", Create<ZvTiledImage<PxGrayByte>>},
    {"ZvImageGrayABytes", Create<ZvTiledImage<PxGrayABytes>>},
    {"ZvImageAlphaByte", Create<ZvTiledImage<PxAlphaByte>>},
    {"ZvImageGrayBit", Create<ZvTiledImage<PxGrayBit>>},
    {"ZvImageRgba64", Create<ZvTiledImage<PxRgba64>>},
    {"ZvImageRgb48", Create<ZvTiledImage<PxRgb48>>},
    {"ZvRowImageRgbaBytes", Create<ZvTypedImage<PxRgbaBytes>>},
    {"ZvRowImageRgbBytes", Create<ZvTypedImage<PxRgbBytes>>},
    {"ZvRowImageAlphaByte", Create<ZvTypedImage<PxAlphaByte>>},
    {"ZvRowImageGrayByte", Create<ZvTypedImage<PxGrayByte>>},
    {"ZvRowImageGrayABytes", Create<ZvTypedImage<PxGrayABytes>>},
    {"ZvImageDepthFloat", Create<ZvTiledImage<PxDepthFloat>>},
    {"ZvImageXyFixed", Create<ZvTiledImage<PxXyFixed>>},
    {"ZvImageXyFloats", Create<ZvTiledImage<PxXyFloats>>},
    {"ZvImageCmykBytes", Create<ZvTiledImage<PxCmykBytes>>},
    {"ZvImageCmykaBytes", Create<ZvTiledImage<PxCmykaBytes>>},
    {"ZvImageCmyk64", Create<ZvTiledImage<PxCmyk64>>},
};

void RegisterImages(bool doRegister) {
  if (!doRegister)
    return;
  for (const Creator& creator : kCreators)
    AppendClass(creator.registeredName, creator.create);
}

const bool kImagesQueued = (AddRegistrar(RegisterImages), true);

template <class P>
ZvImage* NewOfFamily(bool tiled, int32_t width, int32_t height) {
  if (tiled)
    return new ZvTiledImage<P>(width, height);
  return new ZvTypedImage<P>(width, height);
}

}  // namespace

const char* vm::StreamingNameOf(const char* typeName) {
  for (const StreamingName& name : kStreamingNames) {
    if (std::strcmp(name.typeName, typeName) == 0)
      return name.streamingName;
  }
  return typeName;
}

ZvImage* CreateImageForDepth(int32_t width, int32_t height, int32_t bitsPerPixel,
                             uint32_t pixelKind, bool tiled) {
  switch (bitsPerPixel) {
    case 8:
      if (pixelKind == FourCC("AlpB"))
        return NewOfFamily<PxAlphaByte>(tiled, width, height);
      return new ZvTypedImage<PxGrayByte>(width, height);
    case 16:
      return pixelKind == FourCC("GraB") ? new ZvTypedImage<PxGrayABytes>(width, height) : nullptr;
    case 24:
      return NewOfFamily<PxRgbBytes>(tiled, width, height);
    case 32:
      if (pixelKind == FourCC("Cmyk"))
        return NewOfFamily<PxCmykBytes>(tiled, width, height);
      break;
    case 40:
      if (pixelKind == FourCC("Cmyk") || pixelKind == FourCC("Cmya"))
        return NewOfFamily<PxCmykaBytes>(tiled, width, height);
      break;
    case 48:
      return NewOfFamily<PxRgb48>(tiled, width, height);
    case 64:
      return NewOfFamily<PxRgba64>(tiled, width, height);
    default:
      break;
  }
  return NewOfFamily<PxRgbaBytes>(tiled, width, height);
}

uint32_t ChooseLayerKind(const ZvImage* image1, const ZvImage* image2, const ZvImage* image3,
                         const ZvImage* image4) {
  if (image1 != nullptr)
    image1->BitsPerChannel();
  for (const ZvImage* const image : {image2, image3, image4}) {
    if (image != nullptr && image->BitsPerChannel() > 8)
      return FourCC("Rg64");
  }
  return FourCC("Rgba");
}

ZvImage* CreateLayerImage(uint32_t pixelKind, int32_t width, int32_t height, bool clear) {
  ZvImage* const image = pixelKind == FourCC("Rg64")
                             ? NewOfFamily<PxRgba64>(true, width, height)
                             : NewOfFamily<PxRgbaBytes>(true, width, height);
  if (clear)
    image->Clear();
  return image;
}
