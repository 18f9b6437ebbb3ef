#include "host/ZVHostPhotoshop.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace {

// Truncated towards zero; a value beyond 32 bits stops at the limit before the cut to 16.
int16_t Scaled(int16_t number, double scale) {
  const double scaled = number * scale;
  constexpr double kMin = std::numeric_limits<int32_t>::min();
  constexpr double kMax = std::numeric_limits<int32_t>::max();
  if (!(scaled >= kMin))  // NaN too
    return static_cast<int16_t>(std::numeric_limits<int32_t>::min());
  return static_cast<int16_t>(static_cast<int32_t>(std::min(scaled, kMax)));
}

void ScaleRect(Rect& rect, double scale) {
  rect.left = Scaled(rect.left, scale);
  rect.top = Scaled(rect.top, scale);
  rect.right = Scaled(rect.right, scale);
  rect.bottom = Scaled(rect.bottom, scale);
}

}  // namespace

ZVHostPhotoshop::ZVHostPhotoshop(void* module, FilterRecord* filterRecord, int16_t* result)
    : ZVHost(module), mFilterRecord(filterRecord), mResult(result) {
  mHosted = 1;
  Initialize();
}

ZVHostPhotoshop::~ZVHostPhotoshop() {
  std::free(mScriptState);
}

void ZVHostPhotoshop::Initialize() {}

bool ZVHostPhotoshop::IsImageModeSupported() {
  switch (mFilterRecord->imageMode) {
    case plugInModeGrayScale:
    case plugInModeRGBColor:
    case plugInModeCMYKColor:
    case plugInModeGray16:  // REQUIRED: passes, although no image can be made of it
    case plugInModeRGB48:
    case plugInModeCMYK64:
      return true;
    default:
      return false;
  }
}

bool ZVHostPhotoshop::HasAbortProc() {
  return mFilterRecord->abortProc != nullptr;
}

bool ZVHostPhotoshop::HasProgressProc() {
  return mFilterRecord->progressProc != nullptr;
}

bool ZVHostPhotoshop::HasAdvanceState() {
  return mFilterRecord->advanceState != nullptr;
}

bool ZVHostPhotoshop::HasDisplayPixels() {
  return mFilterRecord->displayPixels != nullptr;
}

void ZVHostPhotoshop::DoAbout() {
  *mResult = noErr;
}

void ZVHostPhotoshop::DoParameters() {
  *mResult = noErr;
}

void ZVHostPhotoshop::DoPrepare() {
  *mResult = noErr;
}

void ZVHostPhotoshop::DoContinue() {
  StopFiltering(noErr);
}

void ZVHostPhotoshop::DoFinish() {
  WriteScriptParameters();
  *mResult = noErr;
}

void ZVHostPhotoshop::DoBadSelector() {
  *mResult = filterBadParameters;
}

void ZVHostPhotoshop::SetRects(const Rect& rect) {
  SetOutRect(rect);
  SetInRect(rect);
}

void ZVHostPhotoshop::SetOutRect(const Rect& rect) {
  mFilterRecord->outRect = rect;
}

void ZVHostPhotoshop::SetInRect(const Rect& rect) {
  mFilterRecord->inRect = rect;
}

void ZVHostPhotoshop::GetWholeImageRect(Rect& outRect) {
  outRect = {.top = 0,
             .left = 0,
             .bottom = mFilterRecord->imageSize.v,
             .right = mFilterRecord->imageSize.h};
}

void ZVHostPhotoshop::SetOutData(void* data) {
  mFilterRecord->outData = data;
}

void ZVHostPhotoshop::SetInData(void* data) {
  mFilterRecord->inData = data;
}

void ZVHostPhotoshop::SetDataPointers(void* data) {
  SetInData(data);
  SetOutData(data);
}

int16_t ZVHostPhotoshop::RequestRects(const Rect& rect, int32_t /*rowBytes*/, double scale) {
  FilterRecord& record = *mFilterRecord;
  const bool haveMask = record.haveMask != 0;

  record.inRect = rect;
  ScaleRect(record.inRect, scale);
  record.outRect = rect;
  ScaleRect(record.outRect, scale);
  if (haveMask) {
    record.maskRect = record.filterRect;
    ScaleRect(record.maskRect, scale);
  }

  record.inLoPlane = 0;
  record.outLoPlane = 0;
  record.inHiPlane = static_cast<int16_t>(record.planes - 1);
  record.outHiPlane = static_cast<int16_t>(record.planes - 1);

  // REQUIRED: the rates don't follow `scale`.
  record.inputRate = kFixedOne;
  if (haveMask)
    record.maskRate = kFixedOne;

  record.inputPadding = plugInDoesNotWantPadding;
  record.outputPadding = plugInDoesNotWantPadding;
  if (haveMask)
    record.maskPadding = plugInDoesNotWantPadding;

  return AdvanceState();
}

void ZVHostPhotoshop::SetWholeImageRects() {
  Point size;  // width first
  GetImageSize(size);
  SetRects({.top = 0, .left = 0, .bottom = size.h, .right = size.v});
}

void ZVHostPhotoshop::GetImageSize(Point& outSize) {
  outSize.v = GetImageWidth();
  outSize.h = GetImageHeight();
}

int16_t ZVHostPhotoshop::GetImageWidth() {
  return mFilterRecord->imageSize.h;
}

int16_t ZVHostPhotoshop::GetImageHeight() {
  return mFilterRecord->imageSize.v;
}

int16_t ZVHostPhotoshop::AdvanceState() {
  return mFilterRecord->advanceState();
}

int16_t ZVHostPhotoshop::GetInRowBytes() {
  return static_cast<int16_t>(mFilterRecord->inRowBytes);
}

bool ZVHostPhotoshop::IsSupported() {
  return true;
}

void ZVHostPhotoshop::HostDone() {}

void ZVHostPhotoshop::StopFiltering(int16_t code) {
  constexpr Rect kEmpty = {0, 0, 0, 0};
  mFilterRecord->inRect = kEmpty;
  mFilterRecord->outRect = kEmpty;
  mFilterRecord->maskRect = kEmpty;
  *mResult = code;
}
