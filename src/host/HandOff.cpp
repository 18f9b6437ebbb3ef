// The Start selector: the picture goes out to the effects application in the exchange file, and its
// answer comes back in the same file. Order alone keeps the file safe: the application starts after
// the request is closed, and creates its done file after the reply is.

#include <cstdlib>
#include <memory>
#include <new>

#include "host/ExchangeFiles.h"
#include "host/HostGlobals.h"
#include "host/WaitDialog.h"
#include "host/ZVHostPhotoshop.h"
#include "image/ZvImage.h"
#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvModulePath.h"
#include "platform/os/Process.h"

namespace {

// What the flag file holds. No reader knows a meaning of it.
constexpr int32_t kFlagMarker = 12;

// A parameter block may claim this many bytes more than its file has left; a larger claim counts as
// one that memory doesn't suffice for, so that a damaged file cannot take memory that it doesn't
// justify.
constexpr uint32_t kBlockTolerance = ZvFileStream::kReadAheadSize;

// REQUIRED: refuses nothing. No number equals all four, so layers with transparency are filtered
// like any other picture.
bool IsRefusedFilterCase(int16_t filterCase) {
  return filterCase == filterCaseEditableTransparencyNoSelection &&
         filterCase == filterCaseEditableTransparencyWithSelection &&
         filterCase == filterCaseProtectedTransparencyNoSelection &&
         filterCase == filterCaseProtectedTransparencyWithSelection;
}

// Tells the application that a request waits. A run goes on without the file if it can't be
// written.
void WriteFlagFile(const ZvString& directory) {
  try {
    const auto stream = vm::NewExchangeStream(gFlagFileName, directory);
    vm::Recreate(*stream);
    stream->WriteSInt32(kFlagMarker, nullptr, true);
    stream->Close();
  } catch (...) {
  }
}

// A done file that an earlier, cancelled run has left behind must not end this run.
void DeleteStaleDoneFile(const ZvString& directory) {
  try {
    CP_File(vm::ExchangeFile(gDoneFileName, directory)).Delete();
  } catch (...) {
  }
}

os::WindowHandle OwnerWindow() {
  void* const platformData = gFilterRecord->platformData;
  return platformData != nullptr ? *static_cast<os::WindowHandle*>(platformData) : nullptr;
}

// Holds the host until the reply is complete (true) or can't be waited for any more.
bool WaitForReply() {
  return os::RunModalDialog(gModule, vm::kWaitDialogTemplate, OwnerWindow(), &DissolveProc, 0) ==
         vm::kReplyArrived;
}

// The next object of the stream if it is an image, else null.
ZvSmartPtr<ZvImage> ReadImage(ZvStream& stream) {
  ZvStreamable* const object = stream.ReadObject();
  auto* const image = dynamic_cast<ZvImage*>(object);
  if (image == nullptr)
    delete object;
  return ZvSmartPtr<ZvImage>::Adopt(image);
}

struct FreeBlock {
  void operator()(void* block) const { std::free(block); }
};

// Reads a block of `size` bytes and makes it the one that Finish records. What the file doesn't
// hold is zero. False, with the earlier block still in force, when the memory can't be had.
bool ReadScriptState(ZvStream& stream, int32_t size) {
  if (size < 0 || static_cast<uint64_t>(stream.Tell()) + static_cast<uint32_t>(size) >
                      static_cast<uint64_t>(stream.GetLength()) + kBlockTolerance)
    return false;
  const auto count = static_cast<uint32_t>(size);
  std::unique_ptr<void, FreeBlock> buffer(std::calloc(count, 1));
  if (!buffer)
    return false;
  stream.ReadBytes(buffer.get(), count);
  auto* const block = new ZvMemoryStream(buffer.get(), count, true);
  static_cast<void>(buffer.release());
  gScriptState.TakeOver(block);
  return true;
}

}  // namespace

namespace vm {

// REQUIRED: the stream of a reply that was read to its end is closed but never deleted; a finished
// run leaves its memory behind. This function stands in the allocation's call stack, so that leak
// checkers can be told by its name.
__attribute__((noinline)) ZvFileStream* NewUnreleasedReplyStream(const CP_FileSpec& spec) {
  return new ZvFileStream(spec);
}

}  // namespace vm

void ZVHostPhotoshop::DoStart() {
  mScriptStateSize = 0;
  if (!IsImageModeSupported() || !HasAbortProc() || !HasProgressProc() || !HasAdvanceState() ||
      !HasDisplayPixels() || IsRefusedFilterCase(mFilterRecord->filterCase)) {
    StopFiltering(userCanceledErr);
    return;
  }

  RunRegistrars();
  ZvString directory;
  GetModuleDirectory(directory, mModule);

  if (!WriteRequest(directory))
    return;
  WriteFlagFile(directory);
  DeleteStaleDoneFile(directory);

  bool done = false;
  if (os::StartProcess(vm::ExchangePath(gAppFileName, directory).c_str(), directory.c_str()))
    done = WaitForReply();
  else
    *mResult = memFullErr;
  if (!done) {
    // REQUIRED: also over the code of a process that can't start; the host never sees memFullErr.
    *mResult = userCanceledErr;
    return;
  }

  ZvSmartPtr<ZvImage> image;
  ZvSmartPtr<ZvImage> mask;
  if (!FetchReply(directory, image, mask)) {
    *mResult = userCanceledErr;
    return;
  }
  PutResultImage(image, mask);
  *mResult = noErr;
}

bool ZVHostPhotoshop::WriteRequest(const ZvString& directory) {
  std::unique_ptr<ZvFileStream> stream;
  try {
    stream = vm::NewExchangeStream(gImageFileName, directory);
    vm::Recreate(*stream);
  } catch (...) {
    return false;
  }
  UseBinaryParser(*stream);

  stream->WriteSInt32(static_cast<int32_t>(gEffectName.length()), nullptr, true);
  if (!gEffectName.empty())
    stream->WriteString(gEffectName, "EffectName", true);

  const bool askUser = ReadScriptParameters();
  // REQUIRED: a block that was recorded doesn't go out when the user is asked.
  stream->WriteSInt32(askUser ? 0 : mScriptStateSize, nullptr, true);
  // REQUIRED: also without a block. Nothing is written then, and the file reports the null pointer.
  if (!askUser)
    stream->WriteBytes(mScriptState, static_cast<uint32_t>(mScriptStateSize), true);

  ZvSmartPtr<ZvImage> image;
  ZvSmartPtr<ZvImage> mask;
  uint8_t colorType = 0;
  try {
    GetSourceImage(image, mask, colorType);
  } catch (...) {
  }
  if (!image)
    return false;

  stream->WriteSInt32(colorType, "ColorType", true);
  stream->WriteBool(static_cast<bool>(mask), "Mask?", true);
  if (mask)
    stream->WriteObject(mask.Get());
  stream->WriteObject(image.Get());
  mask.Clear();
  image.Clear();
  stream->Close();
  return true;
}

bool ZVHostPhotoshop::FetchReply(const ZvString& directory, ZvSmartPtr<ZvImage>& image,
                                 ZvSmartPtr<ZvImage>& mask) {
  std::unique_ptr<ZvFileStream> stream;
  try {
    stream.reset(vm::NewUnreleasedReplyStream(vm::ExchangeFile(gImageFileName, directory)));
  } catch (const std::bad_alloc&) {
    return false;
  }
  stream->Open(ZvFileStream::kModeReadWrite);
  UseBinaryParser(*stream);
  if (!ReadReply(*stream, image, mask))
    return false;
  stream->Close();
  static_cast<void>(stream.release());
  return true;
}

bool ZVHostPhotoshop::ReadReply(ZvStream& stream, ZvSmartPtr<ZvImage>& image,
                                ZvSmartPtr<ZvImage>& mask) {
  if (stream.ReadSInt32() != 0)
    stream.ReadString(gEffectName);
  const int32_t blockSize = stream.ReadSInt32();
  if (blockSize != 0 && !ReadScriptState(stream, blockSize))
    return false;
  // REQUIRED: the reply's colour type is read and has no effect, whatever it says.
  static_cast<void>(stream.ReadSInt32());
  if (stream.ReadBool())
    mask = ReadImage(stream);
  image = ReadImage(stream);
  return true;
}
