#include "host/FakeHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "foundation/FourCharCode.h"

namespace vm {
namespace {

constexpr int32_t kPadding = 3;
constexpr uint8_t kPaddingByte = 0xEE;
constexpr uint8_t kFreshByte = 0xCD;  // what a new output buffer holds

int32_t BytesPerChannel(int16_t mode) {
  return mode >= plugInModeGray16 && mode <= plugInModeCMYK64 ? 2 : 1;
}

}  // namespace

FakeHost* FakeHost::sCurrent = nullptr;

FakeHost::FakeHost(int16_t mode, int16_t planes, int16_t width, int16_t height,
                   std::vector<uint8_t> pixels)
    : mBytesPerPixel(planes * BytesPerChannel(mode)),
      mWidth(width),
      mHeight(height),
      mInputPitch(width * mBytesPerPixel + kPadding) {
  EXPECT_EQ(sCurrent, nullptr) << "one fake host at a time";
  sCurrent = this;
  const auto rowSize = static_cast<size_t>(width * mBytesPerPixel);
  EXPECT_EQ(pixels.size(), rowSize * static_cast<size_t>(height)) << "pixels of another picture";
  pixels.resize(rowSize * static_cast<size_t>(height));
  for (int32_t y = 0; y < height; ++y) {
    const auto row = pixels.begin() + static_cast<ptrdiff_t>(rowSize) * y;
    mInput.insert(mInput.end(), row, row + static_cast<ptrdiff_t>(rowSize));
    mInput.insert(mInput.end(), kPadding, kPaddingByte);
  }

  mRecord.imageMode = mode;
  mRecord.planes = planes;
  mRecord.imageSize = {.v = height, .h = width};
  mRecord.wholeSize = mRecord.imageSize;
  mRecord.filterRect = {0, 0, height, width};
  mRecord.filterCase = filterCaseFlatImageNoSelection;
  mRecord.depth = 8 * BytesPerChannel(mode);
  mRecord.abortProc = &Abort;
  mRecord.progressProc = &Progress;
  mRecord.advanceState = &AdvanceProc;
  mRecord.displayPixels = &Display;
  mRecord.handleProcs = &mHandleProcs;
  mRecord.platformData = mPlatformData;
  // Values that show whether the plug-in sets them.
  mRecord.maskRect = {11, 12, 13, 14};
  mRecord.maskRate = 15;
  mRecord.maskPadding = 16;

  mHandleProcs.handleProcsVersion = 1;
  mHandleProcs.numHandleProcs = 8;
  mHandleProcs.disposeProc = &DisposeProc;
  mWriteProcs.numWriteDescriptorProcs = 16;
  mWriteProcs.openWriteDescriptorProc = &OpenWrite;
  mWriteProcs.closeWriteDescriptorProc = &CloseWrite;
  mWriteProcs.putFloatProc = &PutFloat;
  mWriteProcs.putStringProc = &PutString;
  mReadProcs.numReadDescriptorProcs = 18;
  mReadProcs.openReadDescriptorProc = &OpenRead;
  mReadProcs.closeReadDescriptorProc = &CloseRead;
  mReadProcs.getKeyProc = &GetKey;
  mReadProcs.getFloatProc = &GetFloat;
  mReadProcs.getStringProc = &GetString;
}

FakeHost::~FakeHost() {
  while (!mHandles.empty())
    Dispose(mHandles.begin()->first);
  sCurrent = nullptr;
}

void FakeHost::Select(Rect rect, const std::vector<uint8_t>& mask) {
  mRecord.haveMask = 1;
  mRecord.filterRect = rect;
  mRecord.filterCase = filterCaseFlatImageWithSelection;
  const int32_t width = rect.right - rect.left;
  mMaskPitch = width + 1;
  mMask.clear();
  for (size_t i = 0; i < mask.size(); i += static_cast<size_t>(width)) {
    mMask.insert(mMask.end(), mask.begin() + static_cast<ptrdiff_t>(i),
                 mask.begin() + static_cast<ptrdiff_t>(i) + width);
    mMask.push_back(kPaddingByte);
  }
}

void FakeHost::EnableScripting(int16_t playInfo) {
  mParameters.playInfo = playInfo;
  mParameters.recordInfo = plugInDialogRequired;
  mParameters.writeDescriptorProcs = &mWriteProcs;
  mParameters.readDescriptorProcs = &mReadProcs;
  mRecord.descriptorParameters = &mParameters;
}

void FakeHost::SetDescriptor(FakeDescriptor descriptor) {
  mParameters.descriptor = NewHandle(std::move(descriptor));
}

const FakeDescriptor* FakeHost::Descriptor() const {
  const auto found = mHandles.find(mParameters.descriptor);
  return found != mHandles.end() ? &found->second->descriptor : nullptr;
}

std::vector<uint8_t> FakeHost::Unpadded(const std::vector<uint8_t>& rows, int32_t pitch,
                                        int32_t width) const {
  std::vector<uint8_t> pixels;
  for (size_t row = 0; row + static_cast<size_t>(pitch) <= rows.size();
       row += static_cast<size_t>(pitch)) {
    const auto begin = rows.begin() + static_cast<ptrdiff_t>(row);
    const auto end = begin + width * mBytesPerPixel;
    pixels.insert(pixels.end(), begin, end);
    EXPECT_EQ(std::count(end, begin + pitch, kPaddingByte), kPadding)
        << "padding of a row was written";
  }
  return pixels;
}

std::vector<uint8_t> FakeHost::Output() const {
  return Unpadded(mOutput, mOutputPitch, mOutputWidth);
}

int16_t FakeHost::AdvanceState() {
  advances.push_back({mRecord.inRect, mRecord.outRect, mRecord.maskRect, mRecord.inLoPlane,
                      mRecord.inHiPlane, mRecord.outLoPlane, mRecord.outHiPlane, mRecord.planes,
                      mRecord.inputRate, mRecord.maskRate, mRecord.inputPadding,
                      mRecord.outputPadding, mRecord.maskPadding, mRecord.inData, mRecord.outData});
  if (onAdvance)
    onAdvance();
  if (!advanceAnswers.empty()) {
    const int16_t answer = advanceAnswers.front();
    advanceAnswers.pop_front();
    if (answer != noErr)
      return answer;
  }
  mOutputWidth = std::max(0, mRecord.outRect.right - mRecord.outRect.left);
  const int32_t outputHeight = std::max(0, mRecord.outRect.bottom - mRecord.outRect.top);
  mOutputPitch = mOutputWidth * mBytesPerPixel + kPadding;
  mOutput.assign(static_cast<size_t>(mOutputPitch) * static_cast<size_t>(outputHeight), kFreshByte);
  for (int32_t y = 0; y < outputHeight; ++y)
    std::fill_n(mOutput.begin() + static_cast<ptrdiff_t>(y + 1) * mOutputPitch - kPadding, kPadding,
                kPaddingByte);

  mRecord.inData = deliversNothing ? nullptr : mInput.data();
  mRecord.inRowBytes = mInputPitch;
  mRecord.outData = deliversNothing ? nullptr : mOutput.data();
  mRecord.outRowBytes = mOutputPitch;
  mRecord.maskData = mMask.empty() || deliversNothing ? nullptr : mMask.data();
  mRecord.maskRowBytes = mMaskPitch;
  return noErr;
}

Handle FakeHost::NewHandle(FakeDescriptor descriptor) {
  auto* const block = new HandleBlock{nullptr, std::move(descriptor)};
  block->first = reinterpret_cast<char*>(block);
  mHandles[&block->first] = block;
  return &block->first;
}

void FakeHost::Dispose(Handle handle) {
  const auto found = mHandles.find(handle);
  if (found == mHandles.end()) {
    ++mBadDisposals;
    return;
  }
  delete found->second;
  mHandles.erase(found);
}

uint8_t FakeHost::Abort() {
  return 0;
}
void FakeHost::Progress(int32_t, int32_t) {}
OSErr FakeHost::Display(const PSPixelMap*, const VRect*, int32_t, int32_t, void*) {
  return noErr;
}
OSErr FakeHost::AdvanceProc() {
  return sCurrent->AdvanceState();
}
void FakeHost::DisposeProc(Handle handle) {
  sCurrent->Dispose(handle);
}

PIWriteDescriptor FakeHost::OpenWrite() {
  sCurrent->mBeingWritten = {};
  return reinterpret_cast<PIWriteDescriptor>(&sCurrent->mBeingWritten);
}
OSErr FakeHost::CloseWrite(PIWriteDescriptor token, Handle* out) {
  EXPECT_EQ(static_cast<void*>(token), &sCurrent->mBeingWritten);
  *out = sCurrent->NewHandle(sCurrent->mBeingWritten);
  return noErr;
}
OSErr FakeHost::PutFloat(PIWriteDescriptor token, DescriptorKeyID key, const double* value) {
  EXPECT_EQ(static_cast<void*>(token), &sCurrent->mBeingWritten);
  sCurrent->mBeingWritten.entries.push_back(NumberEntry(key, *value));
  return noErr;
}
OSErr FakeHost::PutString(PIWriteDescriptor token, DescriptorKeyID key, ConstPStringPtr text) {
  EXPECT_EQ(static_cast<void*>(token), &sCurrent->mBeingWritten);
  sCurrent->mBeingWritten.entries.push_back(
      TextEntry(key, std::string(reinterpret_cast<const char*>(text + 1), text[0])));
  sCurrent->rawStrings.emplace_back(text, text + 256);
  return noErr;
}

PIReadDescriptor FakeHost::OpenRead(Handle descriptor, const DescriptorKeyID* keys) {
  FakeHost& host = *sCurrent;
  host.keysAsked.clear();
  for (const DescriptorKeyID* key = keys; *key != 0; ++key)
    host.keysAsked.push_back(*key);
  // Hosts mark the keys that they find in the caller's own array.
  auto* const marked = const_cast<DescriptorKeyID*>(keys);
  marked[0] = FourCC("null");
  if (host.refuseReading)
    return nullptr;
  const auto found = host.mHandles.find(descriptor);
  if (found == host.mHandles.end())
    return nullptr;
  host.mBeingRead = found->second->descriptor;
  host.mNextRead = 0;
  host.mStringsRead = 0;
  return reinterpret_cast<PIReadDescriptor>(&host.mBeingRead);
}
OSErr FakeHost::CloseRead(PIReadDescriptor token) {
  EXPECT_EQ(static_cast<void*>(token), &sCurrent->mBeingRead);
  return noErr;
}
uint8_t FakeHost::GetKey(PIReadDescriptor token, DescriptorKeyID* key, DescriptorTypeID* type,
                         int32_t* flags) {
  FakeHost& host = *sCurrent;
  EXPECT_EQ(static_cast<void*>(token), &host.mBeingRead);
  if (host.mNextRead == host.mBeingRead.entries.size())
    return 0;
  const FakeDescriptor::Entry& entry = host.mBeingRead.entries[host.mNextRead++];
  *key = entry.key;
  *type = entry.isNumber ? FourCC("doub") : FourCC("TEXT");
  *flags = 0;
  return 1;
}
OSErr FakeHost::GetFloat(PIReadDescriptor, double* value) {
  *value = sCurrent->mBeingRead.entries[sCurrent->mNextRead - 1].number;
  return static_cast<OSErr>(sCurrent->failGetFloat);
}
OSErr FakeHost::GetString(PIReadDescriptor, PStringPtr out) {
  FakeHost& host = *sCurrent;
  if (host.mStringsRead++ == host.failGetStringAfter)
    return -1;
  const std::string& text = host.mBeingRead.entries[host.mNextRead - 1].text;
  out[0] = static_cast<uint8_t>(text.size());
  std::memcpy(out + 1, text.data(), text.size());
  return noErr;
}

std::vector<uint8_t> HostWords(const std::vector<uint16_t>& words) {
  std::vector<uint8_t> bytes;
  for (const uint16_t word : words) {
    bytes.push_back(static_cast<uint8_t>(word));
    bytes.push_back(static_cast<uint8_t>(word >> 8));
  }
  return bytes;
}

}  // namespace vm
