#include <gtest/gtest.h>

#include <sys/resource.h>

#include "host/TestPlugIn.h"
#include "image/ZvTiledImage.h"

namespace vm {
namespace {

// Most memory that this process ever had, in KiB.
int64_t PeakMemory() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

TEST(ResultMemory, WithoutABufferAPictureLargerThanTheDocumentGetsNoMemory) {
  FakeHost host(plugInModeGrayScale, 1, 2, 2, std::vector<uint8_t>(4));
  host.deliversNothing = true;
  TestPlugIn plugIn(host);
  Rect whole;
  plugIn.GetWholeImageRect(whole);
  plugIn.RequestRects(whole, 0, 1.0);
  // 900 million pixels that nobody has stored.
  auto image = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxGrayByte>(30000, 30000));
  ZvSmartPtr<ZvImage> mask;
  // Only the request's own rectangle may be wide; the fake host would make a buffer for it.
  host.advanceAnswers = {memFullErr};
  const int64_t before = PeakMemory();
  EXPECT_TRUE(plugIn.PutResultImage(image, mask));
  EXPECT_LT(PeakMemory() - before, 100 * 1024);
}

}  // namespace
}  // namespace vm
