#pragma once

#include <cstdint>
#include <vector>

#include "foundation/CP_M_ReferenceCounted.h"
#include "foundation/ZvSmartPtr.h"
#include "foundation/ZvString.h"
#include "persistence/ZvStream.h"
#include "persistence/ZvStreamable.h"

// A hint for a codec's reading. The base class says nothing.
class ZvStreamingInfo : public CP_M_ReferenceCounted {};

class ZvImageStreamInfo : public ZvStreamingInfo {
 public:
  // Read into a tiled image instead of a row image.
  bool mUseTiles = false;
};

// The hint of callers who have none. Null.
extern ZvSmartPtr<ZvStreamingInfo> gDefaultStreamingInfo;

// A file format: tells whether a stream is in it, reads an object from a stream and writes one to
// it. Codecs have no state. They report nothing: what fails leaves the result as it was.
//
// The virtual operations stand in a fixed order.
class ZvStreamer : public CP_M_ReferenceCounted {
 public:
  // Four-character codes of the files of this format.
  virtual uint32_t GetCreatorCode() const = 0;
  virtual uint32_t GetFormatCode() const = 0;
  // True if the stream's first bytes are those of the format; outClassName then names the class of
  // the content. The stream's position stays.
  virtual bool CanRead(ZvStream& stream, ZvString& outClassName) const = 0;
  virtual bool CanWrite(const ZvString& className) const = 0;
  virtual ZvString GetExtension() const = 0;
  // From the stream's position. A null or foreign hint is no hint.
  virtual void Read(ZvStream& stream, ZvSmartPtr<ZvStreamable>& outResult,
                    ZvStreamingInfo* hint) const = 0;
  virtual void Write(ZvStream& stream, ZvStreamable* object) const = 0;
};

using ZvStreamerList = std::vector<ZvSmartPtr<ZvStreamer>>;

// All codecs, in the order in which RunRegistrars made them. Each run adds a set.
ZvStreamerList& GetStreamerList();
