#pragma once

#include "persistence/png/ZvStreamer.h"

// PNG over libpng, a row at a time: no copy of the whole image is made.
//
// Reading gives a ZvImageLayer named "ImageLayer" with the image in it. The image's class follows
// the file's bits per pixel (CreateImageForDepth with the kind "GraB"): 8 gray, 16 gray with alpha,
// 24 RGB, 32 RGBA, 48 and 64 their 16-bit forms, all others RGBA. Alpha is composited away over the
// file's background colour, over white where it names none, so what is read is opaque. A palette is
// not looked up unless it has transparent entries: then the colours arrive, else the indices stand
// as gray values. REQUIRED: 16-bit samples stay most significant byte first in memory when read,
// while writing swaps them.
//
// Where a decoded row isn't laid out like the image's record it is brought into that layout:
// missing alpha is opaque, gray spreads to the colours, colours become gray by their average,
// samples below 8 bits take a byte each (gray ones scaled to 0 .. 255), and of 16-bit gray the high
// byte stays.
//
// Writing takes any ZvImage and makes a file that is not interlaced, with libpng's own compression
// and filters, three fixed text entries and sBIT: gray for "GraB", "AlpB" and "GrBt", RGB for
// "RG24" and "RG48", RGBA for all others, at the image's bits per channel. The bytes of a row go
// out as they lie; what a record is shorter than the colour type wants is zero. REQUIRED: colours
// are taken to be stored blue first; of PxRgba64, which stores red first, red and blue arrive
// exchanged. A depth that PNG hasn't leaves nothing written.
class ZvStreamerPng : public ZvStreamer {
 public:
  uint32_t GetCreatorCode() const override;
  uint32_t GetFormatCode() const override;
  // Looks at the first four of the signature's eight bytes. The class is "ZvImage".
  bool CanRead(ZvStream& stream, ZvString& outClassName) const override;
  // True for exactly "ZvImage".
  bool CanWrite(const ZvString& className) const override;
  // Empty.
  ZvString GetExtension() const override;
  void Read(ZvStream& stream, ZvSmartPtr<ZvStreamable>& outResult,
            ZvStreamingInfo* hint) const override;
  // Leaves a new binary parser on the stream. A failure on the way leaves a partial file.
  void Write(ZvStream& stream, ZvStreamable* object) const override;
};
