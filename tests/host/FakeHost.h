#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/FilterRecord.h"

namespace vm {

// A recorded parameter set as a host keeps it behind a handle.
struct FakeDescriptor {
  struct Entry {
    uint32_t key;
    std::string text;  // the characters of a Pascal string
    double number = 0.0;
    bool isNumber = false;

    bool operator==(const Entry&) const = default;
  };
  std::vector<Entry> entries;
};

inline FakeDescriptor::Entry TextEntry(uint32_t key, std::string text) {
  return {key, std::move(text), 0.0, false};
}
inline FakeDescriptor::Entry NumberEntry(uint32_t key, double number) {
  return {key, {}, number, true};
}

// The host's side of the filter interface, for one document at a time: a picture, its selection,
// the callbacks and the suites. Everything that the plug-in asked for is recorded. Only one may
// exist at a time, for the callbacks carry no context.
class FakeHost {
 public:
  // A picture of `planes` interleaved planes, 16-bit for the modes that are, with a row pitch three
  // bytes (an odd number) larger than the pixels. `pixels` holds the rows without padding, in host
  // order.
  FakeHost(int16_t mode, int16_t planes, int16_t width, int16_t height,
           std::vector<uint8_t> pixels);
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;
  ~FakeHost();

  FilterRecord& Record() { return mRecord; }

  // Gives the document a selection: a filter rectangle and a mask of its size, rows one byte wider
  // than that.
  void Select(Rect rect, const std::vector<uint8_t>& mask);

  // Gives the record parameters with both suites; the descriptor may be null.
  void EnableScripting(int16_t playInfo);
  void SetDescriptor(FakeDescriptor descriptor);
  // The descriptor in the record; null when there is none.
  const FakeDescriptor* Descriptor() const;
  PIDescriptorParameters& Parameters() { return mParameters; }
  int32_t LiveHandles() const { return static_cast<int32_t>(mHandles.size()); }
  int32_t BadDisposals() const { return mBadDisposals; }

  // What one call of advanceState found in the record.
  struct Advance {
    Rect inRect, outRect, maskRect;
    int16_t inLoPlane, inHiPlane, outLoPlane, outHiPlane, planes;
    Fixed inputRate, maskRate;
    int16_t inputPadding, outputPadding, maskPadding;
    void* inData;
    void* outData;
  };
  std::vector<Advance> advances;
  // Answers of the calls of advanceState to come; a call that answers with an error delivers
  // nothing. When none is left the answer is 0.
  std::deque<int16_t> advanceAnswers;
  // Called at the begin of every call of advanceState.
  std::function<void()> onAdvance;
  // When set, the buffers that advanceState delivers are null.
  bool deliversNothing = false;

  // The delivered input without padding, as the plug-in left it.
  std::vector<uint8_t> Input() const { return Unpadded(mInput, mInputPitch, mWidth); }
  // The output buffer of the last advanceState without padding; the padding must not have been
  // touched.
  std::vector<uint8_t> Output() const;

  int32_t inputPitch() const { return mInputPitch; }

  // Sets a bad result code before each call, so that "untouched" shows.
  static constexpr int16_t kUntouched = 4711;
  int16_t result = kUntouched;

  // Calls of the descriptor suites can be made to fail.
  int32_t failGetFloat = 0;         // error of every getFloatProc
  int32_t failGetStringAfter = -1;  // so many strings are read before one fails; -1 never
  bool refuseReading = false;       // openReadDescriptorProc gives no token
  std::vector<uint32_t> keysAsked;  // what openReadDescriptorProc was given
  std::vector<std::vector<uint8_t>> rawStrings;  // all 256 bytes of each put string

 private:
  std::vector<uint8_t> Unpadded(const std::vector<uint8_t>& rows, int32_t pitch,
                                int32_t width) const;
  int16_t AdvanceState();
  Handle NewHandle(FakeDescriptor descriptor);
  void Dispose(Handle handle);

  static FakeHost* sCurrent;
  static uint8_t VM_HOST_CALL Abort();
  static void VM_HOST_CALL Progress(int32_t, int32_t);
  static OSErr VM_HOST_CALL Display(const PSPixelMap*, const VRect*, int32_t, int32_t, void*);
  static OSErr VM_HOST_CALL AdvanceProc();
  static void VM_HOST_CALL DisposeProc(Handle handle);
  static PIWriteDescriptor VM_HOST_CALL OpenWrite();
  static OSErr VM_HOST_CALL CloseWrite(PIWriteDescriptor token, Handle* out);
  static OSErr VM_HOST_CALL PutFloat(PIWriteDescriptor token, DescriptorKeyID key,
                                     const double* value);
  static OSErr VM_HOST_CALL PutString(PIWriteDescriptor token, DescriptorKeyID key,
                                      ConstPStringPtr text);
  static PIReadDescriptor VM_HOST_CALL OpenRead(Handle descriptor, const DescriptorKeyID* keys);
  static OSErr VM_HOST_CALL CloseRead(PIReadDescriptor token);
  static uint8_t VM_HOST_CALL GetKey(PIReadDescriptor token, DescriptorKeyID* key,
                                     DescriptorTypeID* type, int32_t* flags);
  static OSErr VM_HOST_CALL GetFloat(PIReadDescriptor token, double* value);
  static OSErr VM_HOST_CALL GetString(PIReadDescriptor token, PStringPtr out);

  FilterRecord mRecord{};
  PIDescriptorParameters mParameters{};
  WriteDescriptorProcs mWriteProcs{};
  ReadDescriptorProcs mReadProcs{};
  HandleProcs mHandleProcs{};
  void* mPlatformData[1] = {nullptr};

  int32_t mBytesPerPixel;
  int32_t mWidth;
  int32_t mHeight;
  int32_t mInputPitch;
  std::vector<uint8_t> mInput;
  int32_t mOutputWidth = 0;
  int32_t mOutputPitch = 0;
  std::vector<uint8_t> mOutput;
  int32_t mMaskPitch = 0;
  std::vector<uint8_t> mMask;

  struct HandleBlock {
    char* first;  // what the handle points at
    FakeDescriptor descriptor;
  };
  std::map<Handle, HandleBlock*> mHandles;
  int32_t mBadDisposals = 0;
  FakeDescriptor mBeingWritten;
  FakeDescriptor mBeingRead;
  size_t mNextRead = 0;
  int32_t mStringsRead = 0;
};

// Host bytes of 16-bit channels.
std::vector<uint8_t> HostWords(const std::vector<uint16_t>& words);

}  // namespace vm
