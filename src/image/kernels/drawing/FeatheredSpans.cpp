#include <algorithm>
#include <vector>

#include "image/kernels/drawing/Shapes.h"
#include "image/pixels/PxNumbers.h"

namespace vm {
namespace {

constexpr double kFarthest = 9999.0;  // where the search for the nearest edge starts
constexpr int32_t kChunk = 32;        // pixels that share one list of near edges
constexpr double kSlack = 0.01;       // more than any rounding in a distance

struct SoftEdge {
  ZvDSegment segment;
  int32_t topRow;  // rows topRow to endRow - 1 cross it
  int32_t endRow;
  double left, top, right, bottom;  // of the segment

  SoftEdge(const ZvPoint& a, const ZvPoint& b)
      : segment({static_cast<double>(a.x), static_cast<double>(a.y)},
                {static_cast<double>(b.x), static_cast<double>(b.y)}),
        topRow(std::min(a.y, b.y)),
        endRow(std::max(a.y, b.y)),
        left(std::min(segment.mStart.x, segment.mEnd.x)),
        top(std::min(segment.mStart.y, segment.mEnd.y)),
        right(std::max(segment.mStart.x, segment.mEnd.x)),
        bottom(std::max(segment.mStart.y, segment.mEnd.y)) {}

  double CrossingAt(double y) const {
    return segment.mStart.x + (y - segment.mStart.y) * segment.mDeltaX / segment.mDeltaY;
  }
  // No point of the segment is nearer than this.
  double AtLeast(double x, double y) const {
    return std::max(std::max(std::max(left - x, x - right), std::max(top - y, y - bottom)), 0.0);
  }
};

// Finds, for pixel after pixel of a row, the distance to the nearest of many edges: exactly the
// smallest of all distances, though few are worked out. Edges farther than `reach` need not be told
// from no edge.
class NearestEdge {
 public:
  NearestEdge(const std::vector<SoftEdge>& edges, double reach) : mEdges(edges), mReach(reach) {}

  void SetRow(int32_t y) {
    mY = y;
    mRow.clear();
    for (const SoftEdge& edge : mEdges) {
      if (std::max(edge.top - mY, mY - edge.bottom) <= mReach + kSlack)
        mRow.push_back(&edge);
    }
  }

  // The edges that can be nearest for any of `count` pixels from x on.
  void SetChunk(int32_t x, int32_t count) {
    const double half = count * 0.5;
    const ZvDPoint2d centre(x + half, mY);
    double nearest = kFarthest;
    for (const SoftEdge* const edge : mRow) {
      if (edge->AtLeast(centre.x, mY) < nearest)
        nearest = std::min(nearest, edge->segment.Distance(centre));
    }
    // Moving by `half` changes each distance by no more than that.
    const double limit = nearest + 2 * half + kSlack;
    mNear.clear();
    for (const SoftEdge* const edge : mRow) {
      if (edge->AtLeast(centre.x, mY) <= limit && edge->segment.Distance(centre) <= limit)
        mNear.push_back(edge);
    }
  }

  double DistanceAt(int32_t x) const {
    double nearest = kFarthest;
    for (const SoftEdge* const edge : mNear)
      nearest = std::min(nearest, edge->segment.Distance({static_cast<double>(x), mY}));
    return nearest;
  }

 private:
  const std::vector<SoftEdge>& mEdges;
  const double mReach;
  double mY = 0;
  std::vector<const SoftEdge*> mRow;
  std::vector<const SoftEdge*> mNear;
};

std::vector<SoftEdge> EdgesOf(int32_t count, const ZvPoint* points) {
  std::vector<SoftEdge> edges;
  edges.reserve(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) {
    const ZvPoint& a = points[i];
    const ZvPoint& b = points[i + 1 < count ? i + 1 : 0];
    if (a != b)
      edges.emplace_back(a, b);
  }
  return edges;
}

// Where the row enters and leaves the inside, from left to right. An edge owns its upper end and
// not its lower one, and a level edge none, so the crossings of a closed polygon come in pairs.
void CollectCrossings(const std::vector<SoftEdge>& edges, int32_t y,
                      std::vector<double>& crossings) {
  crossings.clear();
  for (const SoftEdge& edge : edges) {
    if (y >= edge.topRow && y < edge.endRow)
      crossings.push_back(edge.CrossingAt(y));
  }
  std::sort(crossings.begin(), crossings.end());
}

}  // namespace

void FeatheredSpans(int32_t count, const ZvPoint* points, const ZvRect& clip, float feather,
                    const CoverageSink& sink) {
  ZvRect box = kEmptyRect;
  for (int32_t i = 0; i < count; ++i)
    box.AddPoint(points[i]);
  box.Intersect(clip);
  if (count <= 0 || box.IsEmpty())
    return;
  const std::vector<SoftEdge> edges = EdgesOf(count, points);
  // Beyond the feather all coverage is 1. A negative one, or none that is a number, asks for every
  // distance.
  NearestEdge nearest(edges, feather > 0 ? std::min<double>(feather, kFarthest) : kFarthest);
  std::vector<double> crossings;
  for (int64_t row = box.fBottom; row >= box.fTop; --row) {
    const auto y = static_cast<int32_t>(row);
    CollectCrossings(edges, y, crossings);
    if (crossings.size() < 2)
      continue;
    nearest.SetRow(y);
    for (size_t pair = 0; pair + 1 < crossings.size(); pair += 2) {
      const int64_t left = std::max<int64_t>(int64_t{TruncToInt32(crossings[pair])} + 1, box.fLeft);
      const int64_t right = std::min<int64_t>(TruncToInt32(crossings[pair + 1]), box.fRight);
      for (int64_t x = left; x <= right; x += kChunk) {
        const Span span = {static_cast<int32_t>(x), y,
                           static_cast<int32_t>(std::min<int64_t>(kChunk, right - x + 1))};
        float coverage[kChunk];
        nearest.SetChunk(span.x, span.count);
        for (int32_t i = 0; i < span.count; ++i) {
          const double share = nearest.DistanceAt(span.x + i) / static_cast<double>(feather);
          coverage[i] = static_cast<float>(share > 1.0 ? 1.0 : share);
        }
        sink(span, coverage);
      }
    }
  }
}

}  // namespace vm
