// The effects application's reply, read and written into a host: the first byte of the input
// chooses what document the host has, the rest is the exchange file. Run with a cap on memory:
//   fuzz_Reply -malloc_limit_mb=256 -rss_limit_mb=1024 corpus/Reply

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <vector>

#include "foundation/CP_Exceptions.h"
#include "foundation/ReportHooks.h"
#include "host/HostGlobals.h"
#include "host/ZVHostPhotoshop.h"
#include "image/ZvImage.h"
#include "persistence/ZvClassRegistry.h"

namespace {

constexpr struct {
  int16_t mode;
  int16_t planes;
  int32_t bytesPerPixel;
} kDocuments[] = {{1, 1, 1},  {1, 2, 2}, {3, 3, 3}, {3, 4, 4},  {11, 3, 6},
                  {11, 4, 8}, {4, 4, 4}, {4, 5, 5}, {13, 4, 8}, {13, 5, 10}};

// The host: delivers a buffer for the rectangle that is asked for, unless that is absurd.
constexpr int64_t kMaxOutput = int64_t{1} << 18;
FilterRecord gRecord;
int32_t gBytesPerPixel = 1;
std::vector<uint8_t> gOutput;

OSErr VM_HOST_CALL AdvanceState() {
  const int64_t rowBytes = int64_t{gRecord.outRect.right} * gBytesPerPixel;
  const int64_t size = rowBytes * gRecord.outRect.bottom;
  if (rowBytes < 0 || size < 0 || size > kMaxOutput)
    return memFullErr;
  gOutput.assign(static_cast<size_t>(size), 0);
  gRecord.outData = gOutput.data();
  gRecord.outRowBytes = static_cast<int32_t>(rowBytes);
  return noErr;
}

class FuzzedPlugIn : public ZVHostPhotoshop {
 public:
  explicit FuzzedPlugIn(int16_t& result) : ZVHostPhotoshop(nullptr, &gRecord, &result) {}

  void TakeReply(ZvStream& stream) {
    ZvSmartPtr<ZvImage> image;
    ZvSmartPtr<ZvImage> mask;
    if (ReadReply(stream, image, mask))
      PutResultImage(image, mask);
  }
};

// Damaged input is reported without end; nobody is there to read it.
void SilenceReports() {
  vm::ReportHooks& hooks = vm::CurrentReportHooks();
  hooks.showBox = [](const char*, const char*, uint32_t) { return vm::kReportAnswerOk; };
  hooks.debuggerLine = [](const char*) {};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool ready = [] {
    SilenceReports();
    RunRegistrars();
    return true;
  }();
  if (!ready || size == 0)
    return 0;

  const auto& document = kDocuments[data[0] % std::size(kDocuments)];
  gRecord = {};
  gRecord.imageMode = document.mode;
  gRecord.planes = document.planes;
  gRecord.inHiPlane = static_cast<int16_t>(document.planes - 1);
  gRecord.advanceState = &AdvanceState;
  gBytesPerPixel = document.bytesPerPixel;

  auto* const reply = static_cast<uint8_t*>(std::malloc(size));
  std::memcpy(reply, data + 1, size - 1);
  const auto stream = ZvSmartPtr<ZvMemoryStream>::Adopt(
      new ZvMemoryStream(reply, static_cast<uint32_t>(size - 1), true));
  int16_t result = 0;
  FuzzedPlugIn plugIn(result);
  try {
    plugIn.TakeReply(*stream);
  } catch (const CP_BaseException&) {
    // Leaves the plug-in, as it may.
  }
  return 0;
}
