#include "filter_host/HostSession.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>

#include "foundation/FourCharCode.h"

namespace filter_host {

namespace {

// What the guard bytes behind each row and behind the whole buffer hold.
constexpr uint8_t kGuardByte = 0xA5;
constexpr std::size_t kTailBytes = 64;
// Largest buffer that is delivered in one piece.
constexpr int64_t kMaxDelivery = int64_t{1} << 30;
// A filter that has not ended its loop by then never will.
constexpr int kMaxContinues = 100000;
constexpr uint32_t kHostSignature = FourCC("FlHo");
constexpr int32_t kMaxSpace = 512 * 1024 * 1024;
constexpr int16_t kTileSide = 128;

HostSession* gCurrent = nullptr;

bool IsEmpty(const Rect& rect) {
  return rect.top >= rect.bottom || rect.left >= rect.right;
}

bool SameRect(const Rect& a, const Rect& b) {
  return a.top == b.top && a.left == b.left && a.bottom == b.bottom && a.right == b.right;
}

std::string Describe(const Rect& rect) {
  char text[80];
  std::snprintf(text, sizeof(text), "(%d, %d) to (%d, %d)", rect.left, rect.top, rect.right,
                rect.bottom);
  return text;
}

Fixed ToFixed(double value) {
  return static_cast<Fixed>(std::lround(value * kFixedOne));
}

}  // namespace

// The callbacks carry no context in the published interface, so they reach the running session
// through one global.
struct HostCallbacks {
  static uint8_t VM_HOST_CALL Abort() {
    const auto& after = gCurrent->mSettings.abortAfter;
    return after.has_value() &&
           std::chrono::steady_clock::now() - gCurrent->mStarted >= after.value();
  }
  static void VM_HOST_CALL Progress(int32_t done, int32_t total) {
    ++gCurrent->mProgressCalls;
    gCurrent->Note("progress " + std::to_string(done) + " of " + std::to_string(total));
  }
  static void VM_HOST_CALL Host(int16_t, void*) {}
  static void VM_HOST_CALL ProcessEvent(void*) {}
  static OSErr VM_HOST_CALL GetProperty(uint32_t, uint32_t, int32_t, intptr_t*, Handle*) {
    return kParamErr;
  }
  static OSErr VM_HOST_CALL Advance() { return gCurrent->AdvanceState(); }
  static OSErr VM_HOST_CALL Display(const PSPixelMap* map, const VRect* area, int32_t row,
                                    int32_t column, void* context) {
    return gCurrent->DisplayPixels(map, area, row, column, context);
  }
  static OSErr VM_HOST_CALL Colours(ColorServicesInfo* info) {
    return info == nullptr ? kParamErr : gCurrent->ColourServices(*info);
  }

  static HandleTable& Handles() { return gCurrent->mHandles; }
  static Handle VM_HOST_CALL NewHandle(int32_t size) { return Handles().New(size); }
  static void VM_HOST_CALL DisposeHandle(Handle handle) { Handles().Dispose(handle); }
  static int32_t VM_HOST_CALL GetHandleSize(Handle handle) { return Handles().Size(handle); }
  static OSErr VM_HOST_CALL SetHandleSize(Handle handle, int32_t size) {
    return Handles().SetSize(handle, size);
  }
  static char* VM_HOST_CALL LockHandle(Handle handle, uint8_t) { return Handles().Lock(handle); }
  static void VM_HOST_CALL UnlockHandle(Handle handle) { Handles().Unlock(handle); }
  static void VM_HOST_CALL RecoverSpace(int32_t) {}

  using Type = DescriptorType;
  static DescriptorSuite& Suite() { return gCurrent->mDescriptors; }
  static DescriptorEntry Entry(DescriptorKeyID key, Type type) {
    DescriptorEntry entry;
    entry.key = key;
    entry.type = type;
    return entry;
  }

  static PIWriteDescriptor VM_HOST_CALL OpenWrite() { return Suite().OpenWrite(); }
  static OSErr VM_HOST_CALL CloseWrite(PIWriteDescriptor token, Handle* out) {
    return Suite().CloseWrite(token, out);
  }
  static OSErr VM_HOST_CALL PutInteger(PIWriteDescriptor token, DescriptorKeyID key,
                                       int32_t value) {
    DescriptorEntry entry = Entry(key, Type::kInteger);
    entry.integer = value;
    return Suite().Put(token, entry);
  }
  static OSErr VM_HOST_CALL PutFloat(PIWriteDescriptor token, DescriptorKeyID key,
                                     const double* value) {
    if (value == nullptr)
      return kParamErr;
    DescriptorEntry entry = Entry(key, Type::kFloat);
    entry.number = *value;
    return Suite().Put(token, entry);
  }
  static OSErr VM_HOST_CALL PutUnitFloat(PIWriteDescriptor token, DescriptorKeyID key,
                                         uint32_t unit, const double* value) {
    if (value == nullptr)
      return kParamErr;
    DescriptorEntry entry = Entry(key, Type::kUnitFloat);
    entry.code = unit;
    entry.number = *value;
    return Suite().Put(token, entry);
  }
  static OSErr VM_HOST_CALL PutBoolean(PIWriteDescriptor token, DescriptorKeyID key,
                                       uint8_t value) {
    DescriptorEntry entry = Entry(key, Type::kBoolean);
    entry.integer = value != 0;
    return Suite().Put(token, entry);
  }
  static OSErr VM_HOST_CALL PutText(PIWriteDescriptor token, DescriptorKeyID key, Handle text) {
    return Suite().PutHandle(token, Entry(key, Type::kText), text);
  }
  static OSErr VM_HOST_CALL PutAlias(PIWriteDescriptor token, DescriptorKeyID key, Handle alias) {
    return Suite().PutHandle(token, Entry(key, Type::kAlias), alias);
  }
  static OSErr VM_HOST_CALL PutEnumerated(PIWriteDescriptor token, DescriptorKeyID key,
                                          DescriptorTypeID type, uint32_t value) {
    DescriptorEntry entry = Entry(key, Type::kEnumerated);
    entry.code = type;
    entry.value = value;
    return Suite().Put(token, entry);
  }
  static OSErr PutCode(PIWriteDescriptor token, DescriptorKeyID key, Type type, uint32_t value) {
    DescriptorEntry entry = Entry(key, type);
    entry.value = value;
    return Suite().Put(token, entry);
  }
  static OSErr VM_HOST_CALL PutClass(PIWriteDescriptor token, DescriptorKeyID key, uint32_t value) {
    return PutCode(token, key, Type::kClass, value);
  }
  static OSErr VM_HOST_CALL PutScopedClass(PIWriteDescriptor token, DescriptorKeyID key,
                                           uint32_t value) {
    return PutCode(token, key, Type::kScopedClass, value);
  }
  static OSErr VM_HOST_CALL PutCount(PIWriteDescriptor token, DescriptorKeyID key, uint32_t count) {
    return PutCode(token, key, Type::kCount, count);
  }
  static OSErr VM_HOST_CALL PutSimpleReference(PIWriteDescriptor, DescriptorKeyID,
                                               const PIDescriptorSimpleReference*) {
    return kParamErr;
  }
  static OSErr VM_HOST_CALL PutObject(PIWriteDescriptor token, DescriptorKeyID key,
                                      DescriptorTypeID type, Handle object) {
    DescriptorEntry entry = Entry(key, Type::kObject);
    entry.code = type;
    return Suite().PutHandle(token, entry, object);
  }
  static OSErr VM_HOST_CALL PutScopedObject(PIWriteDescriptor token, DescriptorKeyID key,
                                            DescriptorTypeID type, Handle object) {
    DescriptorEntry entry = Entry(key, Type::kScopedObject);
    entry.code = type;
    return Suite().PutHandle(token, entry, object);
  }
  static OSErr VM_HOST_CALL PutString(PIWriteDescriptor token, DescriptorKeyID key,
                                      ConstPStringPtr string) {
    if (string == nullptr)
      return kParamErr;
    DescriptorEntry entry = Entry(key, Type::kString);
    entry.bytes.assign(reinterpret_cast<const char*>(string + 1), string[0]);
    return Suite().Put(token, entry);
  }

  static PIReadDescriptor VM_HOST_CALL OpenRead(Handle descriptor, const DescriptorKeyID* keys) {
    return Suite().OpenRead(descriptor, keys);
  }
  static OSErr VM_HOST_CALL CloseRead(PIReadDescriptor token) { return Suite().CloseRead(token); }
  static uint8_t VM_HOST_CALL GetKey(PIReadDescriptor token, DescriptorKeyID* key,
                                     DescriptorTypeID* type, int32_t* flags) {
    return Suite().GetKey(token, key, type, flags);
  }
  // Stores one field of the current entry when it has the type.
  template <class T, class Field>
  static OSErr Take(PIReadDescriptor token, std::initializer_list<Type> types, T* out,
                    Field DescriptorEntry::*field) {
    const DescriptorEntry* entry = Suite().Get(token, types);
    if (entry == nullptr || out == nullptr) {
      return kParamErr;
    }
    *out = static_cast<T>(entry->*field);
    return noErr;
  }
  static OSErr VM_HOST_CALL GetInteger(PIReadDescriptor token, int32_t* value) {
    return Take(token, {Type::kInteger}, value, &DescriptorEntry::integer);
  }
  static OSErr VM_HOST_CALL GetFloat(PIReadDescriptor token, double* value) {
    return Take(token, {Type::kFloat}, value, &DescriptorEntry::number);
  }
  static OSErr VM_HOST_CALL GetUnitFloat(PIReadDescriptor token, uint32_t* unit, double* value) {
    const OSErr error = Take(token, {Type::kUnitFloat}, unit, &DescriptorEntry::code);
    return error != noErr ? error
                          : Take(token, {Type::kUnitFloat}, value, &DescriptorEntry::number);
  }
  static OSErr VM_HOST_CALL GetBoolean(PIReadDescriptor token, uint8_t* value) {
    return Take(token, {Type::kBoolean}, value, &DescriptorEntry::integer);
  }
  static OSErr VM_HOST_CALL GetText(PIReadDescriptor token, Handle* text) {
    return Suite().GetHandle(token, {Type::kText, Type::kString}, text);
  }
  static OSErr VM_HOST_CALL GetAlias(PIReadDescriptor token, Handle* alias) {
    return Suite().GetHandle(token, {Type::kAlias}, alias);
  }
  static OSErr VM_HOST_CALL GetEnumerated(PIReadDescriptor token, uint32_t* value) {
    return Take(token, {Type::kEnumerated}, value, &DescriptorEntry::value);
  }
  static OSErr VM_HOST_CALL GetClass(PIReadDescriptor token, uint32_t* value) {
    return Take(token, {Type::kClass, Type::kScopedClass}, value, &DescriptorEntry::value);
  }
  static OSErr VM_HOST_CALL GetSimpleReference(PIReadDescriptor, PIDescriptorSimpleReference*) {
    return kParamErr;
  }
  static OSErr VM_HOST_CALL GetObject(PIReadDescriptor token, DescriptorTypeID* type,
                                      Handle* object) {
    return Suite().GetHandle(token, {Type::kObject, Type::kScopedObject}, object, type);
  }
  static OSErr VM_HOST_CALL GetCount(PIReadDescriptor token, uint32_t* count) {
    return Take(token, {Type::kCount}, count, &DescriptorEntry::value);
  }
  static OSErr VM_HOST_CALL GetString(PIReadDescriptor token, PStringPtr string) {
    const DescriptorEntry* entry = Suite().Get(token, {Type::kString, Type::kText});
    if (entry == nullptr || string == nullptr) {
      return kParamErr;
    }
    const std::size_t length = std::min<std::size_t>(entry->bytes.size(), 255);
    string[0] = static_cast<uint8_t>(length);
    std::memcpy(string + 1, entry->bytes.data(), length);
    return noErr;
  }
  template <class T>
  static OSErr Pin(OSErr error, T low, T high, T* value) {
    if (error == noErr && (*value < low || *value > high)) {
      *value = *value < low ? low : high;
      return kCoercedParamErr;
    }
    return error;
  }
  static OSErr VM_HOST_CALL GetPinnedInteger(PIReadDescriptor token, int32_t low, int32_t high,
                                             int32_t* value) {
    return Pin(GetInteger(token, value), low, high, value);
  }
  static OSErr VM_HOST_CALL GetPinnedFloat(PIReadDescriptor token, const double* low,
                                           const double* high, double* value) {
    return low == nullptr || high == nullptr ? kParamErr
                                             : Pin(GetFloat(token, value), *low, *high, value);
  }
};

Rect BoundsOfCoverage(std::span<const uint8_t> coverage, int32_t width, int32_t height) {
  int32_t left = width;
  int32_t top = height;
  int32_t right = 0;
  int32_t bottom = 0;
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      if (coverage[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                   static_cast<std::size_t>(x)] != 0) {
        left = std::min(left, x);
        top = std::min(top, y);
        right = std::max(right, x + 1);
        bottom = std::max(bottom, y + 1);
      }
    }
  }
  if (right == 0) {
    return Rect{};
  }
  return Rect{static_cast<int16_t>(top), static_cast<int16_t>(left), static_cast<int16_t>(bottom),
              static_cast<int16_t>(right)};
}

HostSession::HostSession(HostPlanes image, std::optional<Selection> selection,
                         SessionSettings settings, std::optional<FilterCaseInfo> caseInfo)
    : mSource(std::move(image)),
      mInput(mSource),
      mResult(mSource),
      mSelection(std::move(selection)),
      mSettings(std::move(settings)),
      mCaseInfo(caseInfo.value_or(FilterCaseInfo{kMatteNone, kMatteNone, 0, 0})),
      mDescriptors(mHandles) {
  if (mSettings.filterCase == 0) {
    mSettings.filterCase = NaturalFilterCase(mSource.format, mSelection.has_value());
  }
  if (mSettings.filterCase >= filterCaseEditableTransparencyNoSelection &&
      mCaseInfo.input >= kMatteBlack && mCaseInfo.input <= kMatteWhite) {
    ApplyMatte(mInput, (mCaseInfo.input - kMatteBlack) / 2.0);
  }
  FillRecord();
}

HostSession::~HostSession() = default;

int16_t HostSession::NaturalFilterCase(const PlaneFormat& format, bool hasSelection) {
  if (format.HasAlpha()) {
    return hasSelection ? filterCaseEditableTransparencyWithSelection
                        : filterCaseEditableTransparencyNoSelection;
  }
  return hasSelection ? filterCaseFlatImageWithSelection : filterCaseFlatImageNoSelection;
}

void HostSession::FillRecord() {
  using C = HostCallbacks;
  mHandleProcs = {1,
                  8,
                  &C::NewHandle,
                  &C::DisposeHandle,
                  &C::GetHandleSize,
                  &C::SetHandleSize,
                  &C::LockHandle,
                  &C::UnlockHandle,
                  &C::RecoverSpace,
                  &C::DisposeHandle};
  mWriteProcs = {0,
                 16,
                 &C::OpenWrite,
                 &C::CloseWrite,
                 &C::PutInteger,
                 &C::PutFloat,
                 &C::PutUnitFloat,
                 &C::PutBoolean,
                 &C::PutText,
                 &C::PutAlias,
                 &C::PutEnumerated,
                 &C::PutClass,
                 &C::PutSimpleReference,
                 &C::PutObject,
                 &C::PutCount,
                 &C::PutString,
                 &C::PutScopedClass,
                 &C::PutScopedObject};
  mReadProcs = {0,
                18,
                &C::OpenRead,
                &C::CloseRead,
                &C::GetKey,
                &C::GetInteger,
                &C::GetFloat,
                &C::GetUnitFloat,
                &C::GetBoolean,
                &C::GetText,
                &C::GetAlias,
                &C::GetEnumerated,
                &C::GetClass,
                &C::GetSimpleReference,
                &C::GetObject,
                &C::GetCount,
                &C::GetString,
                &C::GetPinnedInteger,
                &C::GetPinnedFloat,
                nullptr};
  mDescriptorParameters = {0,       mSettings.playInfo, plugInDialogOptional,
                           nullptr, &mWriteProcs,       &mReadProcs};
  if (!mSettings.replay.empty()) {
    mDescriptorParameters.descriptor = mHandles.New(mSettings.replay);
  }

  const PlaneFormat& format = mSource.format;
  const auto width = static_cast<int16_t>(mSource.width);
  const auto height = static_cast<int16_t>(mSource.height);
  const Rect whole{0, 0, height, width};
  FilterRecord& record = mRecord;
  record.serial = 1;
  record.abortProc = mSettings.withoutAbort ? nullptr : &C::Abort;
  record.progressProc = mSettings.withoutProgress ? nullptr : &C::Progress;
  record.imageSize = Point{height, width};
  record.planes = format.planes;
  record.filterRect = mSelection.has_value() ? mSelection->bounds : whole;
  record.background = {mSettings.background[0], mSettings.background[1], mSettings.background[2]};
  record.foreground = {mSettings.foreground[0], mSettings.foreground[1], mSettings.foreground[2]};
  record.maxSpace = kMaxSpace;
  record.haveMask = mSelection.has_value();
  record.autoMask = (mCaseInfo.flags1 & kWritesOutsideSelection) == 0;
  for (std::size_t i = 0; i < 3; ++i) {
    record.backColor[i] = static_cast<uint8_t>(mSettings.background[i] >> 8);
    record.foreColor[i] = static_cast<uint8_t>(mSettings.foreground[i] >> 8);
  }
  record.hostSig = kHostSignature;
  record.hostProcs = &C::Host;
  record.imageMode = mSettings.imageMode.value_or(format.imageMode);
  record.imageHRes = ToFixed(std::clamp(mSource.dotsPerInch, 1.0, 30000.0));
  record.imageVRes = record.imageHRes;
  record.wholeSize = record.imageSize;
  // A screen of the usual colour space: gamma 2.2, and its primaries and white.
  constexpr double kMonitor[10] = {2.2, 0.64, 0.33, 0.30, 0.60, 0.15, 0.06, 0.3127, 0.3290, 1.0};
  for (std::size_t i = 0; i < 10; ++i) {
    record.monitor[i] = ToFixed(kMonitor[i]);
  }
  record.platformData = mSettings.platformData;
  record.processEvent = &C::ProcessEvent;
  record.displayPixels = mSettings.withoutDisplay ? nullptr : &C::Display;
  record.handleProcs = mSettings.withoutHandles ? nullptr : &mHandleProcs;
  record.filterCase = mSettings.filterCase;
  record.advanceState = mSettings.withoutAdvance ? nullptr : &C::Advance;
  record.getPropertyObsolete = &C::GetProperty;
  record.supportsPadding = 1;
  record.inputPadding = plugInDoesNotWantPadding;
  record.outputPadding = plugInDoesNotWantPadding;
  record.maskPadding = plugInDoesNotWantPadding;
  record.inputRate = kFixedOne;
  record.maskRate = kFixedOne;
  record.colorServices = &C::Colours;
  const int16_t alphaPlanes = format.HasAlpha() ? 1 : 0;
  record.inLayerPlanes = record.outLayerPlanes = record.absLayerPlanes =
      static_cast<int16_t>(format.planes - alphaPlanes);
  record.inTransparencyMask = record.outTransparencyMask = record.absTransparencyMask = alphaPlanes;
  record.inTileHeight = record.inTileWidth = kTileSide;
  record.absTileHeight = record.absTileWidth = kTileSide;
  record.outTileHeight = record.outTileWidth = kTileSide;
  record.maskTileHeight = record.maskTileWidth = kTileSide;
  record.descriptorParameters = mSettings.withoutDescriptors ? nullptr : &mDescriptorParameters;
  record.errorString = mErrorString;
  record.depth = format.bytesPerSample * 8;
}

OSErr HostSession::AdvanceState() {
  ++mAdvanceCalls;
  TakeBackOutput();
  if (mAdvanceCalls >= mSettings.failAdvanceFirst && mAdvanceCalls <= mSettings.failAdvanceLast) {
    Note("advanceState " + std::to_string(mAdvanceCalls) + ": made to fail with " +
         std::to_string(mSettings.failAdvanceWith));
    return mSettings.failAdvanceWith;
  }
  FilterRecord& r = mRecord;
  OSErr error = Deliver(mInput, r.inRect, r.inLoPlane, r.inHiPlane, r.inputPadding, mIn);
  if (error == noErr) {
    error = Deliver(mResult, r.outRect, r.outLoPlane, r.outHiPlane, r.outputPadding, mOut);
  }
  if (error == noErr) {
    error = DeliverMask();
  }
  if (error != noErr) {
    mIn = Delivery{};
    mOut = Delivery{};
  }
  r.inData = mIn.Empty() ? nullptr : mIn.bytes.data();
  r.inRowBytes = mIn.rowBytes;
  r.outData = mOut.Empty() ? nullptr : mOut.bytes.data();
  r.outRowBytes = mOut.rowBytes;
  const int32_t sampleBytes = mSource.format.bytesPerSample;
  r.inColumnBytes = mIn.Empty() ? 0 : (mIn.hiPlane - mIn.loPlane + 1) * sampleBytes;
  r.inPlaneBytes = sampleBytes;
  r.outColumnBytes = mOut.Empty() ? 0 : (mOut.hiPlane - mOut.loPlane + 1) * sampleBytes;
  r.outPlaneBytes = sampleBytes;
  Note("advanceState " + std::to_string(mAdvanceCalls) + ": in " + Describe(r.inRect) + " planes " +
       std::to_string(r.inLoPlane) + "-" + std::to_string(r.inHiPlane) + ", out " +
       Describe(r.outRect) + " planes " + std::to_string(r.outLoPlane) + "-" +
       std::to_string(r.outHiPlane) +
       (mSelection.has_value() ? ", mask " + Describe(r.maskRect) : std::string()) + " -> " +
       std::to_string(error));
  return error;
}

OSErr HostSession::Deliver(const HostPlanes& from, const Rect& rect, int16_t loPlane,
                           int16_t hiPlane, int16_t padding, Delivery& delivery) {
  delivery = Delivery{};
  if (IsEmpty(rect)) {
    return noErr;
  }
  if (loPlane < 0 || hiPlane < loPlane || hiPlane >= from.format.planes) {
    return filterBadParameters;
  }
  const int32_t width = rect.right - rect.left;
  const int32_t height = rect.bottom - rect.top;
  const auto sampleBytes = static_cast<std::size_t>(from.format.bytesPerSample);
  const std::size_t pixelBytes = static_cast<std::size_t>(hiPlane - loPlane + 1) * sampleBytes;
  const std::size_t packed = pixelBytes * static_cast<std::size_t>(width);
  const std::size_t rowBytes = packed + static_cast<std::size_t>(mSettings.rowPadding);
  if (static_cast<int64_t>(rowBytes) * height > kMaxDelivery) {
    return memFullErr;
  }
  try {
    delivery.bytes.assign(rowBytes * static_cast<std::size_t>(height) + kTailBytes, kGuardByte);
  } catch (const std::bad_alloc&) {
    delivery = Delivery{};
    return memFullErr;
  }
  delivery.rect = rect;
  delivery.loPlane = loPlane;
  delivery.hiPlane = hiPlane;
  delivery.rowBytes = static_cast<int32_t>(rowBytes);
  delivery.packedRowBytes = packed;

  // Outside the image: the padding value where one is asked for, else the nearest pixel.
  const bool pads = padding >= 0 && padding <= 255;
  const int32_t padValue = sampleBytes == 1 ? padding : padding * kHostWhite16 / 255;
  const std::size_t fromPixelBytes = from.PixelBytes();
  const bool allPlanes = pixelBytes == fromPixelBytes;
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* target = delivery.bytes.data() + rowBytes * static_cast<std::size_t>(y);
    const int32_t wantedY = rect.top + y;
    const int32_t sourceY = std::clamp(wantedY, 0, from.height - 1);
    const uint8_t* source = from.Row(sourceY) + static_cast<std::size_t>(loPlane) * sampleBytes;
    if (allPlanes && rect.left >= 0 && rect.right <= from.width && wantedY == sourceY) {
      std::memcpy(target, source + static_cast<std::size_t>(rect.left) * pixelBytes, packed);
      continue;
    }
    for (int32_t x = 0; x < width; ++x, target += pixelBytes) {
      const int32_t wantedX = rect.left + x;
      const int32_t sourceX = std::clamp(wantedX, 0, from.width - 1);
      if (pads && (wantedX != sourceX || wantedY != sourceY)) {
        for (std::size_t i = 0; i < pixelBytes; ++i) {
          target[i] =
              static_cast<uint8_t>(sampleBytes == 2 && i % 2 == 1 ? padValue >> 8 : padValue);
        }
      } else {
        std::memcpy(target, source + static_cast<std::size_t>(sourceX) * fromPixelBytes,
                    pixelBytes);
      }
    }
  }
  return noErr;
}

OSErr HostSession::DeliverMask() {
  FilterRecord& r = mRecord;
  if (!mSelection.has_value() || IsEmpty(r.maskRect)) {
    mMask.clear();
    mMaskRect = Rect{};
    r.maskData = nullptr;
    r.maskRowBytes = 0;
    return noErr;
  }
  const int32_t width = r.maskRect.right - r.maskRect.left;
  const int32_t height = r.maskRect.bottom - r.maskRect.top;
  const std::size_t rowBytes =
      static_cast<std::size_t>(width) + static_cast<std::size_t>(mSettings.rowPadding);
  if (static_cast<int64_t>(rowBytes) * height > kMaxDelivery) {
    return memFullErr;
  }
  // A filter that asks for the same area again finds its mask where it was.
  if (mMask.empty() || !SameRect(mMaskRect, r.maskRect)) {
    mMask.assign(rowBytes * static_cast<std::size_t>(height), 0);
    mMaskRect = r.maskRect;
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        const int32_t fromX = mMaskRect.left + x;
        const int32_t fromY = mMaskRect.top + y;
        if (fromX >= 0 && fromY >= 0 && fromX < mSource.width && fromY < mSource.height) {
          mMask[rowBytes * static_cast<std::size_t>(y) + static_cast<std::size_t>(x)] =
              mSelection->coverage[static_cast<std::size_t>(fromY) *
                                       static_cast<std::size_t>(mSource.width) +
                                   static_cast<std::size_t>(fromX)];
        }
      }
    }
  }
  r.maskData = mMask.data();
  r.maskRowBytes = static_cast<int32_t>(rowBytes);
  return noErr;
}

void HostSession::TakeBackOutput() {
  if (mOut.Empty()) {
    return;
  }
  const int32_t height = mOut.rect.bottom - mOut.rect.top;
  const auto rowBytes = static_cast<std::size_t>(mOut.rowBytes);
  const auto sampleBytes = static_cast<std::size_t>(mResult.format.bytesPerSample);
  const std::size_t pixelBytes =
      static_cast<std::size_t>(mOut.hiPlane - mOut.loPlane + 1) * sampleBytes;
  const int32_t left = std::max<int32_t>(mOut.rect.left, 0);
  const int32_t right = std::min<int32_t>(mOut.rect.right, mResult.width);
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* row = mOut.bytes.data() + rowBytes * static_cast<std::size_t>(y);
    const bool rowIsClean = std::all_of(row + mOut.packedRowBytes, row + rowBytes,
                                        [](uint8_t byte) { return byte == kGuardByte; });
    mRowOverruns += rowIsClean ? 0 : 1;
    const int32_t targetY = mOut.rect.top + y;
    if (targetY < 0 || targetY >= mResult.height) {
      continue;
    }
    for (int32_t x = left; x < right; ++x) {
      std::memcpy(mResult.Row(targetY) + static_cast<std::size_t>(x) * mResult.PixelBytes() +
                      static_cast<std::size_t>(mOut.loPlane) * sampleBytes,
                  row + static_cast<std::size_t>(x - mOut.rect.left) * pixelBytes, pixelBytes);
    }
  }
  const auto tail = mOut.bytes.end() - static_cast<std::ptrdiff_t>(kTailBytes);
  if (!std::all_of(tail, mOut.bytes.end(), [](uint8_t byte) { return byte == kGuardByte; })) {
    ++mTailOverruns;
  }
  mOut = Delivery{};
}

OSErr HostSession::ColourServices(ColorServicesInfo& info) {
  std::array<int16_t, 4> colour{};
  int16_t space = kSpaceRgb;
  switch (info.selector) {
    case plugIncolorServicesChooseColor:
      if (!mSettings.pickedColour.has_value()) {
        return userCanceledErr;
      }
      std::copy(mSettings.pickedColour->begin(), mSettings.pickedColour->end(), colour.begin());
      break;
    case plugIncolorServicesConvertColor:
      std::copy(std::begin(info.colorComponents), std::end(info.colorComponents), colour.begin());
      space = info.sourceSpace;
      break;
    case plugIncolorServicesSamplePoint: {
      const Point* point = info.selectorParameter.globalSamplePoint;
      if (point == nullptr || point->h < 0 || point->v < 0 || point->h >= mSource.width ||
          point->v >= mSource.height || mSource.format.family == ColourFamily::kOther) {
        return kParamErr;
      }
      HostPlanes one;
      one.width = one.height = 1;
      one.format = mSource.format;
      one.samples.assign(
          mSource.Row(point->v) + static_cast<std::size_t>(point->h) * mSource.PixelBytes(),
          mSource.Row(point->v) + (static_cast<std::size_t>(point->h) + 1) * mSource.PixelBytes());
      const Picture pixel = PictureFromPlanes(one);
      const bool wide = pixel.bytesPerSample == 2;
      for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t channel = pixel.channels >= 3 ? i : 0;
        // The high byte of a two-byte sample stands second.
        colour[i] = pixel.samples[wide ? channel * 2 + 1 : channel];
      }
      break;
    }
    case plugIncolorServicesGetSpecialColor: {
      const int32_t which = info.selectorParameter.specialColorID;
      if (which != 0 && which != 1) {
        return kParamErr;
      }
      const auto& special = which == 0 ? mSettings.foreground : mSettings.background;
      for (std::size_t i = 0; i < 3; ++i) {
        colour[i] = static_cast<int16_t>(special[i] >> 8);
      }
      break;
    }
    default:
      return kParamErr;
  }
  if (!ConvertColour(colour, space, info.resultSpace)) {
    return kParamErr;
  }
  std::copy(colour.begin(), colour.end(), std::begin(info.colorComponents));
  info.resultGamutInfoValid = 0;
  info.resultInGamut = 0;
  return noErr;
}

OSErr HostSession::DisplayPixels(const PSPixelMap* map, const VRect* area, int32_t row,
                                 int32_t column, void* context) {
  ++mDisplayCalls;
  PaintedArea painted;
  if (!PaintableArea(map, area, &painted)) {
    return filterBadParameters;
  }
  painted.row = row;
  painted.column = column;
  if (mPainter) {
    mPainter(painted, context);
  }
  return noErr;
}

std::string HostSession::CallGuarded(const std::function<void()>& call) const {
  if (mGuard) {
    return mGuard(call);
  }
  try {
    call();
  } catch (const std::exception& error) {
    return std::string("a C++ exception: ") + error.what();
  } catch (...) {
    return "a C++ exception";
  }
  return {};
}

RunOutcome HostSession::Call(PlugInEntryPoint entry, int16_t selector) {
  RunOutcome outcome;
  HostSession* const before = gCurrent;
  gCurrent = this;
  outcome.fault = CallGuarded([&] { entry(selector, &mRecord, &mFilterData, &outcome.result); });
  gCurrent = before;
  if (outcome.result != noErr || !outcome.fault.empty()) {
    outcome.failedSelector = selector;
  }
  if (mErrorString[0] != 0) {
    outcome.errorString.assign(reinterpret_cast<const char*>(mErrorString + 1), mErrorString[0]);
  }
  Note(SelectorName(selector) + ": " +
       (outcome.fault.empty() ? "result " + std::to_string(outcome.result)
                              : "left by " + outcome.fault));
  return outcome;
}

RunOutcome HostSession::Run(PlugInEntryPoint entry, bool askParameters) {
  mStarted = std::chrono::steady_clock::now();
  RunOutcome outcome;
  if (askParameters) {
    outcome = Call(entry, filterSelectorParameters);
  }
  if (outcome.Succeeded()) {
    outcome = Call(entry, filterSelectorPrepare);
  }
  if (outcome.Succeeded()) {
    outcome = Call(entry, filterSelectorStart);
  }
  if (!outcome.Succeeded()) {
    return outcome;
  }
  int continues = 0;
  while (outcome.Succeeded() &&
         !(IsEmpty(mRecord.inRect) && IsEmpty(mRecord.outRect) && IsEmpty(mRecord.maskRect))) {
    if (++continues > kMaxContinues) {
      outcome.failedSelector = filterSelectorContinue;
      outcome.fault = "a loop that does not end";
      return outcome;
    }
    HostSession* const before = gCurrent;
    gCurrent = this;
    const OSErr error = AdvanceState();
    gCurrent = before;
    if (error != noErr) {
      outcome.failedSelector = filterSelectorContinue;
      outcome.result = error;
      break;
    }
    outcome = Call(entry, filterSelectorContinue);
  }
  if (!outcome.fault.empty()) {
    return outcome;
  }
  TakeBackOutput();
  const RunOutcome finish = Call(entry, filterSelectorFinish);
  return outcome.Succeeded() ? finish : outcome;
}

HostPlanes HostSession::Result() const {
  HostPlanes result = mResult;
  if (mSelection.has_value() && mRecord.autoMask != 0) {
    RestrictToSelection(result, mSource, mSelection->coverage);
  }
  const bool protects = mSettings.filterCase == filterCaseProtectedTransparencyNoSelection ||
                        mSettings.filterCase == filterCaseProtectedTransparencyWithSelection;
  if (protects && result.format.HasAlpha()) {
    const int32_t alpha = result.format.planes - 1;
    for (int32_t y = 0; y < result.height; ++y) {
      for (int32_t x = 0; x < result.width; ++x) {
        result.SetSample(x, y, alpha, mSource.Sample(x, y, alpha));
      }
    }
  }
  return result;
}

std::string HostSession::RecordedDescriptor() const {
  std::string text;
  if (mDescriptorParameters.descriptor == nullptr ||
      !mHandles.Contents(mDescriptorParameters.descriptor, &text)) {
    return {};
  }
  return text;
}

Warnings HostSession::CollectWarnings() const {
  Warnings warnings;
  if (mRowOverruns > 0) {
    warnings.push_back("the filter wrote behind the end of " + std::to_string(mRowOverruns) +
                       " rows of its output");
  }
  if (mTailOverruns > 0) {
    warnings.push_back("the filter wrote behind the end of its output buffer");
  }
  std::size_t expected = mDescriptorParameters.descriptor == nullptr ? 0 : 1;
  expected += mRecord.parameters == nullptr ? 0 : 1;
  if (mHandles.LiveCount() > expected) {
    warnings.push_back("the filter left " + std::to_string(mHandles.LiveCount() - expected) +
                       " handles behind");
  }
  if (mHandles.MisuseCount() > 0) {
    warnings.push_back("the filter passed what is no handle " +
                       std::to_string(mHandles.MisuseCount()) + " times");
  }
  if (mDescriptors.OpenCount() > 0) {
    warnings.push_back("the filter left " + std::to_string(mDescriptors.OpenCount()) +
                       " descriptors open");
  }
  if (mDescriptors.MisuseCount() > 0) {
    warnings.push_back("the filter passed the descriptor suite what it could not use " +
                       std::to_string(mDescriptors.MisuseCount()) + " times");
  }
  return warnings;
}

void HostSession::Note(const std::string& line) const {
  if (mLog) {
    mLog(line);
  }
}

std::string SelectorName(int16_t selector) {
  static constexpr const char* kNames[] = {"About", "Parameters", "Prepare",
                                           "Start", "Continue",   "Finish"};
  return selector >= 0 && selector <= 5 ? kNames[selector] : "selector " + std::to_string(selector);
}

std::string DescribeResult(int16_t result) {
  switch (result) {
    case noErr:
      return "done";
    case userCanceledErr:
      return "cancelled";
    case memFullErr:
      return "out of memory";
    case filterBadParameters:
      return "bad parameters";
    default:
      return "error " + std::to_string(result);
  }
}

}  // namespace filter_host
