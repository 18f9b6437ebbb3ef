#include "image/kernels/resample/ScaleAxis.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "image/pixels/PxNumbers.h"

namespace vm {
namespace {

float BoxEdge(const ScaleAxis& axis, bool addOrigin, int64_t offset) {
  const float origin = addOrigin ? static_cast<float>(axis.sourceStart) : 0.0F;
  return origin + static_cast<float>(offset) * static_cast<float>(axis.sourceExtent) /
                      static_cast<float>(axis.targetExtent);
}

}  // namespace

ScaleAxis MakeScaleAxis(int32_t fromNear, int32_t fromFar, int32_t toNear, int32_t toFar) {
  const int64_t targetExtent = int64_t{toFar} - toNear;
  return {toNear, fromNear, int64_t{fromFar} - fromNear, targetExtent != 0 ? targetExtent : 1};
}

int32_t NearestSource(const ScaleAxis& axis, int32_t target) {
  // Both factors have up to 32 bits, so their product fits an unsigned 64-bit number.
  const auto offset = static_cast<uint64_t>(target - axis.targetStart);
  const auto extent = static_cast<uint64_t>(std::abs(axis.sourceExtent));
  const uint64_t distance = offset * extent / static_cast<uint64_t>(axis.targetExtent);
  constexpr uint64_t kFarthest = std::numeric_limits<int32_t>::max();
  const auto limited = static_cast<int32_t>(std::min(distance, kFarthest));
  return axis.sourceExtent < 0 ? -limited : limited;
}

float FloatSource(const ScaleAxis& axis, int32_t target) {
  return static_cast<float>(target - axis.targetStart) * static_cast<float>(axis.sourceExtent) *
         (1.0F / static_cast<float>(axis.targetExtent));
}

SplitPosition Split(float position) {
  const int32_t whole = TruncToInt32(position);
  return {whole, position - static_cast<float>(whole)};
}

SourceSpan BoxSource(const ScaleAxis& axis, bool addOrigin, int32_t limit, int32_t target) {
  const int64_t offset = target - axis.targetStart;
  const float start = BoxEdge(axis, addOrigin, offset);
  float end = BoxEdge(axis, addOrigin, offset + 1);
  if (!(end > start))
    end = start + 1;
  end = std::min(end, static_cast<float>(limit));
  return {TruncToInt32(start), static_cast<int64_t>(std::ceil(end))};
}

}  // namespace vm
