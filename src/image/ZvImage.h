#pragma once

#include <cstdint>
#include <vector>

#include "foundation/ZvGeometry.h"
#include "persistence/ZvStreamable.h"

struct PxRgbaBytes;
struct PxRgbBytes;
struct PxRgba64;

// How the scaling operations read their source. Any other number, 6 among them, transfers nothing.
enum : int32_t {
  kResampleNone = 0,        // no scaling: the operation becomes its unscaled form
  kResampleNearest = 1,     // integer ratio
  kResampleBilinear = 2,    // float position, read through a Sample operation
  kResampleCubic = 3,       // 4 by 4 kernel in float
  kResampleCubicFixed = 4,  // 4 by 4 kernel from an integer table
  kResampleCubicBlend = 5,  // 4 by 4 spline in two passes
  kResampleBox = 7,         // mean of the source pixels under each target pixel
};

// One piece of an image's storage, as AppendBlocks lists it.
struct ZvImageBlock {
  uint8_t* pixels;  // owned by the image; null where nothing is stored
  ZvRect rect;      // the pixels that lie in it
};

// The abstract image. Client code holds images through this class and ZvSmartPtr and never needs to
// know the pixel type: every image speaks the four views (PxRgbaBytes, PxRgbBytes, one byte,
// PxRgba64), and a transfer between two pixel types goes through one of them. Two families
// implement it: ZvTiledImage<P>, a sparse plane of tiles, and ZvTypedImage<P>, one contiguous block
// of rows.
//
// Coordinates: (0, 0) is the top-left pixel, x grows to the right and y down. A ZvRect of pixels is
// inclusive on all four sides. A clip argument may be null (no clip), a mask argument too (no
// mask). Images are reference counted; the count starts at 1 and belongs to the creator. Functions
// that return a new image or block hand that ownership to the caller.
//
// Colours are PxRgba64 and are narrowed to the pixel type once per call, by its PutRgba64 rule.
// SetClip affects FillClip and the Draw operations only; copies and blends take their clip argument
// and nothing else.
//
// Failures: misuse is reported by CP_DebugAssert and the operation then does what is left to do, or
// nothing. Nothing returns an error code. Rectangles that stick out are cut; what a cut leaves
// empty transfers nothing.
//
// The virtual operations stand in a fixed order, in groups: do not reorder them, and add none.
class ZvImage : public ZvStreamable {
 public:
  // (ZvStreamable: destructor, CreateSameClass, ClassName, WriteTo, ReadFrom.)
  ~ZvImage() override;

  // The name under which the image stands in a stream: see ZvImageFactory.h for the list.
  void ClassName(ZvString& outName) const override;

  // Writes W, H, the clip's L, T, R, B, XRes, YRes, the stream's own "Compress" byte, and then the
  // pixels: channel after channel, row after row, one write of (bits per channel + 7) / 8 bytes per
  // sample each.
  void WriteTo(ZvStream& stream) override;

  // Reads what WriteTo wrote. The clip is stored before the image is resized and follows the
  // resize: one that covered the whole old image covers the whole new one. A stream that ends early
  // goes unnoticed: the samples that are missing repeat the row read last (zero before the first).
  // No memory is taken for sizes that the rest of the stream could not fill; see the source for
  // what then stays unread.
  void ReadFrom(ZvStream& stream) override;

  // The pixel type's figures, odd ones included, as its record states them.
  virtual int32_t BitsPerPixel() const = 0;
  virtual int32_t BytesPerPixel() const = 0;
  virtual int32_t BitsPerChannel() const = 0;
  virtual int32_t ChannelCount() const = 0;
  virtual uint32_t PixelKind() const = 0;   // four-character code
  virtual uint32_t ColorModel() const = 0;  // four-character code
  virtual bool HasAlpha() const = 0;

  virtual void GetSize(int32_t& outWidth, int32_t& outHeight) const;

  // The area that holds stored pixels. For a tiled image see ZvTiledImage.h: the answer is odd.
  virtual ZvRect UsedBounds() const = 0;
  virtual bool IsTiled() const = 0;

  // One pixel through a view, unclipped. A tiled image takes any coordinates; a row image wraps an
  // x outside the row into the neighbouring rows and drops what lies outside its block.
  virtual void GetRgba(PxRgbaBytes& out, int32_t x, int32_t y) const = 0;
  virtual void PutRgba(const PxRgbaBytes& pixel, int32_t x, int32_t y) = 0;
  virtual void GetRgb(PxRgbBytes& out, int32_t x, int32_t y) const = 0;
  virtual void PutRgb(const PxRgbBytes& pixel, int32_t x, int32_t y) = 0;
  virtual void GetByte(uint8_t& out, int32_t x, int32_t y) const = 0;
  virtual void PutByte(uint8_t value, int32_t x, int32_t y) = 0;
  virtual void GetRgba64(PxRgba64& out, int32_t x, int32_t y) const = 0;
  virtual void PutRgba64(const PxRgba64& pixel, int32_t x, int32_t y) = 0;

  // One raw channel, (bits per channel + 7) / 8 bytes of it: 1 for byte records, 2 for words and
  // PxXyFixed (high byte 0), 4 for floats. Of a PxGrayBit sample only the low bit counts. An index
  // out of range is channel 0.
  virtual void GetChannel(void* out, int32_t x, int32_t y, int32_t channel) const = 0;
  virtual void PutChannel(const void* value, int32_t x, int32_t y, int32_t channel) = 0;

  // Bilinear reads.
  virtual void SampleRgba(PxRgbaBytes& out, float x, float y) const = 0;
  virtual void SampleRgb(PxRgbBytes& out, float x, float y) const = 0;
  virtual void SampleByte(uint8_t& out, float x, float y) const = 0;
  // (R + G + B) / 765 of the bilinear read: 1.0 at white.
  virtual void SampleDepth(float& out, float x, float y) const = 0;
  virtual void SampleRgba64(PxRgba64& out, float x, float y) const = 0;
  // Mean of four bilinear reads, size / 4 off the centre on each axis; alpha is 255.
  virtual void SampleArea(PxRgbaBytes& out, float x, float y, float size) const = 0;
  // Narrows the pixel and hands it to SplatPixel of the family.
  virtual void SplatRgba64(const PxRgba64& pixel, float x, float y) = 0;

  // Clear discards or zeroes all pixels; ClearRect sets the rect to the default pixel (row images:
  // to zero).
  virtual void Clear() = 0;
  virtual void ClearRect(const ZvRect& rect) = 0;

  // Transfers from another image. `from` and this image may be of any two classes. The unscaled
  // ones put `fromRect` with its top-left corner at `toPoint`. Null `from` is reported as "from !=
  // nil".
  virtual void CopyFrom(const ZvImage* from, const ZvRect& fromRect, const ZvPoint& toPoint,
                        const ZvRect* clip) = 0;
  virtual void CopyScaled(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect,
                          int32_t mode, const ZvRect* clip) = 0;
  // Resampled copy through hue, saturation, lightness: hue and lightness are added, saturation
  // multiplies.
  virtual void CopyAdjusted(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect,
                            float hue, float saturation, float lightness, int32_t mode,
                            const ZvRect* clip) = 0;
  // Copies only the pixels whose alpha (as GetRgba tells it) is not 0.
  virtual void CopyVisible(const ZvImage* from, const ZvRect& fromRect, const ZvPoint& toPoint,
                           const ZvRect* clip) = 0;
  // Exchanges `rect` of this image with the equal area of `other` at `otherPoint`.
  virtual void SwapPixels(ZvImage* other, const ZvPoint& otherPoint, const ZvRect& rect) = 0;

  // Blends. `opacity` is 0 to 1; 0.99 and above count as full.
  virtual void BlendImage(const ZvImage* from);
  virtual void BlendMasked(const ZvImage* from, const ZvImage* mask, const ZvRect& fromRect,
                           const ZvPoint& toPoint, float opacity, const ZvRect* clip) = 0;
  virtual void BlendRect(const ZvImage* from, const ZvRect& fromRect, const ZvPoint& toPoint,
                         float opacity, const ZvRect* clip) = 0;
  virtual void BlendScaled(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect,
                           float opacity, int32_t mode, const ZvRect* clip) = 0;
  virtual void BlendAdjusted(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect,
                             float hue, float saturation, float lightness, float opacity,
                             int32_t mode, const ZvRect* clip) = 0;
  virtual void PaintMasked(const PxRgba64& colour, const ZvImage* mask, const ZvRect& fromRect,
                           const ZvPoint& toPoint, float opacity, const ZvRect* clip) = 0;

  // Writes the coverage byte of `from` into the alpha of this image, pixel by pixel through GetRgba
  // and PutRgba.
  virtual void CopyAlpha(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect,
                         int32_t mode, const ZvRect* clip);
  // Copies the common area at (0, 0).
  virtual void CopyImage(const ZvImage* from);
  // Mixes the common area by Mix256 at `t`, 0 to 1.
  virtual void MixImage(const ZvImage* from, float t) = 0;
  virtual void Invert() = 0;
  // Moves all pixels by `delta` in place; what comes from outside the image is the all-zero pixel.
  virtual void Offset(const ZvPoint& delta) = 0;

  // A new image of the same class. A size of 0 is this image's own. With `copyPixels` the common
  // area is copied.
  virtual ZvImage* NewLike(bool copyPixels, int32_t width, int32_t height) const = 0;
  // Sizes below 1 become 1. `scaleMode` is a resampling mode, kResampleNone for no scaling. `fill`
  // is the colour of what is new.
  virtual void Resize(int32_t width, int32_t height, bool keepContents, int32_t scaleMode,
                      const PxRgba64& fill) = 0;

  // Limited add and subtract of the common area: coverage bytes between two alpha images, floats
  // without a limit between two tiled depth images (add only), else the four words of GetRgba64,
  // alpha too.
  virtual void AddImage(const ZvImage* fromImage);
  virtual void SubtractImage(const ZvImage* fromImage);

  // Bounds of the pixels with an alpha above 9, kEmptyRect when there are none. With three such
  // corners it is the whole image, whatever else it holds.
  virtual ZvRect VisibleBounds() const;

  // The drawing clip, limited to the image. It may be empty.
  virtual void SetClip(const ZvRect& rect);
  virtual void GetClip(ZvRect& outRect) const;
  virtual void ResetClip();

  // Drawing. With `xorMode` the stored bits are XORed with those of the narrowed colour. With a
  // mask a pixel is drawn only where the mask's byte at the same place is 0, and that byte then
  // becomes 255.
  virtual void FillClip(const PxRgba64& colour) = 0;
  virtual void DrawRect(const ZvRect& rect, const PxRgba64& colour, bool filled, bool xorMode,
                        ZvImage* mask) = 0;
  // `dash` 0 is solid; else gaps and dashes of that many pixels, a gap first.
  virtual void DrawLine(const ZvPoint& from, const ZvPoint& to, const PxRgba64& colour,
                        bool xorMode, ZvImage* mask, int32_t dash) = 0;
  virtual void DrawOval(const ZvRect& rect, const PxRgba64& colour, bool filled, bool xorMode,
                        ZvImage* mask) = 0;
  virtual void DrawPolygon(int32_t count, const ZvPoint* points, const PxRgba64& colour,
                           bool filled, bool xorMode, bool skipFirst, bool clampToImage,
                           bool closed, int32_t dash, float feather, ZvImage* mask,
                           const ZvRect* clip) = 0;

  // Rows packed in the pixel type's storage form, stride DefaultRowBytes. A new row or copy comes
  // from malloc and is freed by the caller.
  virtual void* NewRow(int32_t width) const = 0;
  virtual void PutRow(const void* row, int32_t x, int32_t y, int32_t count) = 0;
  virtual void GetRow(void* row, int32_t x, int32_t y, int32_t count) const = 0;
  virtual void* NewInterleavedCopy() const = 0;
  // All rows from or to a buffer of the caller's, row y at y * rowBytes; rowBytes 0 means
  // DefaultRowBytes. A null buffer is ignored.
  virtual void ImportBuffer(const void* buffer, int32_t rowBytes) = 0;
  virtual void ExportBuffer(void* buffer, int32_t rowBytes) const = 0;

  // Lists the storage blocks that cover a rect. The pointers are the image's own.
  virtual void AppendBlocks(std::vector<ZvImageBlock>& list, const ZvRect& rect) const = 0;
  // A new image on the same storage: both see the same tiles or the same block.
  virtual ZvImage* Duplicate() const = 0;

  // One pixel through the kernel of a resampling mode, on GetRgba: 1 takes the pixel nearest to (x,
  // y), 2 is bilinear, 3 to 5 read 4 by 4 pixels around (x, y), limited to the image. Any other
  // mode leaves `out` as it is.
  void SampleKernel(PxRgbaBytes& out, float x, float y, int32_t mode) const;

  // Fields, without a virtual call.
  int32_t Width() const { return mWidth; }
  int32_t Height() const { return mHeight; }
  ZvRect Bounds() const { return {0, 0, mWidth - 1, mHeight - 1}; }
  float XRes() const { return mXRes; }
  float YRes() const { return mYRes; }
  void SetResolution(float xRes, float yRes) {
    mXRes = xRes;
    mYRes = yRes;
  }

 protected:
  // Sizes below 1 become 1. The clip is the whole image. `typeName` is the run-time type as it is
  // written in the source and must outlive the image.
  ZvImage(int32_t width, int32_t height, int32_t bitsPerPixel, const char* typeName);

  // Takes over every field of this class, not those of the bases.
  void CopyBaseFields(const ZvImage& other);

  uint32_t mPixelKind = 0;
  uint32_t mColorModel = 0;
  int32_t mBitsPerPixel;
  int32_t mWidth;
  int32_t mHeight;
  ZvRect mClippingRect;
  float mXRes = 0;  // per inch; set by the caller or from a stream
  float mYRes = 0;
  uint8_t mTiled = 0;

 private:
  const char* mTypeName;
};

namespace vm {

// Bytes of a packed row of `width` pixels, a multiple of 4. 64 bits: a hostile width must not wrap.
constexpr int64_t DefaultRowBytes(int32_t bitsPerPixel, int32_t width) {
  return (int64_t{bitsPerPixel} * width + 31) / 32 * 4;
}

}  // namespace vm
