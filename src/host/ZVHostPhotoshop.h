#pragma once

#include <cstdint>

#include "host/FilterRecord.h"
#include "host/ZVHost.h"

class ZvStream;

// The host object of the published filter interface. One is made for each selector call, serves it
// and is destroyed; what lasts longer stands in HostGlobals.h. It reads and writes the host's
// record, which it does not own, and stores each selector's outcome through the host's result
// pointer.
//
// The virtual operations stand in a fixed order behind those of ZVHost: do not reorder them.
class ZVHostPhotoshop : public ZVHost {
 public:
  // Neither pointer is looked at before an operation needs it: a record of another type may come
  // with the About selector.
  ZVHostPhotoshop(void* module, FilterRecord* filterRecord, int16_t* result);
  ~ZVHostPhotoshop() override;

  // Nothing: a plug-in has no menu bar and no clipboard object, and it keeps its module.
  void Initialize() override;

  // See ZVHost. The source image owns its pixels; the mask is a view of the host's memory, good
  // until the host is called with another selector. Failures store the host's code as the result.
  bool GetSourceImage(ZvSmartPtr<ZvImage>& image, ZvSmartPtr<ZvImage>& mask,
                      uint8_t& colorType) override;
  // True for every image, also for a mode that nothing is written for. A null image stores
  // `userCanceledErr` and is refused. The mask is not used.
  bool PutResultImage(ZvSmartPtr<ZvImage>& image, ZvSmartPtr<ZvImage>& mask) override;

  // What the filter needs of its host.
  virtual bool IsImageModeSupported();
  virtual bool HasAbortProc();
  virtual bool HasProgressProc();
  virtual bool HasAdvanceState();
  virtual bool HasDisplayPixels();

  // The selectors.
  virtual void DoAbout();
  virtual void DoParameters();
  virtual void DoPrepare();
  virtual void DoStart();
  virtual void DoContinue();
  virtual void DoFinish();
  virtual void DoBadSelector();

  // Rectangles and data of the record. Rectangles are in pixels, bottom and right exclusive.
  virtual void SetRects(const Rect& rect);
  virtual void SetOutRect(const Rect& rect);
  virtual void SetInRect(const Rect& rect);
  virtual void GetWholeImageRect(Rect& outRect);
  virtual void SetOutData(void* data);
  virtual void SetInData(void* data);
  virtual void SetDataPointers(void* data);
  // Asks for the rectangle, each number times `scale` and truncated, as input and output, with all
  // planes and at the full rate; with a selection also for the mask of the filter rectangle.
  // `rowBytes` is not used. Gives what advanceState gives.
  virtual int16_t RequestRects(const Rect& rect, int32_t rowBytes, double scale);
  virtual void SetWholeImageRects();
  // REQUIRED: the width goes into the point's first number (`v`), the height into its second (`h`).
  virtual void GetImageSize(Point& outSize);
  virtual int16_t GetImageWidth();
  virtual int16_t GetImageHeight();
  virtual int16_t AdvanceState();
  // The low 16 bits of the input's row pitch.
  virtual int16_t GetInRowBytes();
  virtual bool IsSupported();
  virtual void HostDone();

  // Empties the three rectangles, which tells the host that no more data is wanted, and stores the
  // result.
  virtual void StopFiltering(int16_t code);

  // Records `gScriptState` and `gEffectName` in the host's descriptor. -1 when there is nothing to
  // record, else 0.
  virtual int32_t WriteScriptParameters();
  // Reads a recorded block into `mScriptState`. True when the user is to be asked, false when the
  // block alone drives the run.
  virtual bool ReadScriptParameters();

  // Not owned; null only for a host object that never saw one.
  FilterRecord* GetFilterRecord() const { return mFilterRecord; }

 protected:
  // Reads the application's answer, field by field, and takes over its effect name and its block.
  // What the stream doesn't hold is zero, an object that is no image is none. False when memory
  // doesn't suffice for the block; a size that the stream can't justify counts as that.
  bool ReadReply(ZvStream& stream, ZvSmartPtr<ZvImage>& image, ZvSmartPtr<ZvImage>& mask);

  uint8_t* mScriptState = nullptr;  // from malloc; the block to replay
  int32_t mScriptStateSize = 0;     // bytes of it
  FilterRecord* mFilterRecord;
  int16_t* mResult;

 private:
  // Writes the host's picture and the replayed block to the exchange file. False when the run ends
  // there, with the result as it was.
  bool WriteRequest(const ZvString& directory);
  // ReadReply from the exchange file. False when memory ran out.
  bool FetchReply(const ZvString& directory, ZvSmartPtr<ZvImage>& image, ZvSmartPtr<ZvImage>& mask);
};
