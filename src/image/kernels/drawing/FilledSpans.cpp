#include <algorithm>
#include <vector>

#include "image/kernels/drawing/LineWalk.h"
#include "image/kernels/drawing/Shapes.h"

namespace vm {
namespace {

ZvRect BoundsOf(int32_t count, const ZvPoint* points) {
  ZvRect bounds = kEmptyRect;
  for (int32_t i = 0; i < count; ++i)
    bounds.AddPoint(points[i]);
  return bounds;
}

// An edge on its way down the rows of the box.
class FallingEdge {
 public:
  // `upper` has the smaller y.
  FallingEdge(const ZvPoint& upper, const ZvPoint& lower, const ZvRect& box)
      : mFirstRow(std::max(upper.y, box.fTop)),
        mLastRow(std::min(lower.y - 1, box.fBottom)),
        mBase(upper.x),
        mLeftwards(lower.x < upper.x),
        mOffset(static_cast<uint64_t>(int64_t{mFirstRow} - upper.y),
                static_cast<uint64_t>(std::abs(int64_t{lower.x} - upper.x)),
                static_cast<uint64_t>(int64_t{lower.y} - upper.y)) {}

  int32_t FirstRow() const { return mFirstRow; }
  int32_t LastRow() const { return mLastRow; }

  // The crossing with the present row, limited to the box.
  int32_t Crossing(const ZvRect& box) const {
    const auto distance = static_cast<int64_t>(mOffset.Value());
    return static_cast<int32_t>(std::clamp<int64_t>(
        mLeftwards ? mBase - distance : mBase + distance, box.fLeft, box.fRight));
  }
  void Down() { mOffset.Up(); }

  // Where the answers about this edge's crossings begin.
  size_t mAdmitted = 0;

 private:
  int32_t mFirstRow;
  int32_t mLastRow;
  int64_t mBase;
  bool mLeftwards;
  Proportion mOffset;
};

// The edges that reach into the box's rows, in the order of the points. Horizontal ones cross
// nothing.
std::vector<FallingEdge> EdgesOf(int32_t count, const ZvPoint* points, const ZvRect& box) {
  std::vector<FallingEdge> edges;
  edges.reserve(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) {
    const ZvPoint& a = points[i];
    const ZvPoint& b = points[i + 1 < count ? i + 1 : 0];
    const ZvPoint& upper = a.y < b.y ? a : b;
    const ZvPoint& lower = a.y < b.y ? b : a;
    if (upper.y == lower.y || upper.y > box.fBottom || lower.y <= box.fTop)
      continue;
    edges.emplace_back(upper, lower, box);
  }
  return edges;
}

// Asks about all crossings, edge by edge from its top: an answer may depend on those before.
std::vector<bool> AskAll(std::vector<FallingEdge>& edges, const ZvRect& box,
                         const AdmitCrossing& admit) {
  std::vector<bool> answers;
  for (FallingEdge& edge : edges) {
    edge.mAdmitted = answers.size();
    FallingEdge walker = edge;
    for (int64_t y = edge.FirstRow(); y <= edge.LastRow(); ++y, walker.Down())
      answers.push_back(admit(walker.Crossing(box), static_cast<int32_t>(y)));
  }
  return answers;
}

// One row: a pixel with crossings is drawn and, if their number is odd, turns the inside on or off.
// REQUIRED: the number is a byte, so 256 crossings in one place are none.
void ScanRow(std::vector<int32_t>& crossings, const ZvRect& box, int32_t y, SpanBatch& out) {
  std::sort(crossings.begin(), crossings.end());
  bool inside = false;
  int32_t start = 0;
  for (size_t i = 0; i < crossings.size();) {
    const int32_t x = crossings[i];
    const size_t before = i;
    while (i < crossings.size() && crossings[i] == x)
      ++i;
    const auto number = static_cast<uint8_t>(i - before);
    if (number == 0)
      continue;
    if (!inside)
      start = x;
    if (number % 2 != 0)
      inside = !inside;
    if (!inside && (number % 2 != 0 || start == x))
      out.AddRun(start, x, y);
  }
  if (inside)
    out.AddRun(start, box.fRight, y);
}

}  // namespace

void FilledSpans(int32_t count, const ZvPoint* points, const ZvRect& clip,
                 const AdmitCrossing& admit, SpanBatch& out) {
  ZvRect box = BoundsOf(count, points);
  box.Intersect(clip);
  if (count <= 0 || box.IsEmpty())
    return;
  std::vector<FallingEdge> edges = EdgesOf(count, points, box);
  std::vector<bool> admitted;
  if (admit)
    admitted = AskAll(edges, box, admit);
  std::sort(edges.begin(), edges.end(),
            [](const FallingEdge& a, const FallingEdge& b) { return a.FirstRow() < b.FirstRow(); });

  std::vector<FallingEdge> active;
  std::vector<int32_t> crossings;
  auto next = edges.begin();
  for (int64_t y = box.fTop; y <= box.fBottom; ++y) {
    std::erase_if(active, [y](const FallingEdge& edge) { return edge.LastRow() < y; });
    for (; next != edges.end() && next->FirstRow() == y; ++next)
      active.push_back(*next);
    if (active.empty()) {
      if (next == edges.end())
        break;
      y = int64_t{next->FirstRow()} - 1;
      continue;
    }
    crossings.clear();
    for (FallingEdge& edge : active) {
      if (!admit || admitted[edge.mAdmitted++])
        crossings.push_back(edge.Crossing(box));
      edge.Down();
    }
    ScanRow(crossings, box, static_cast<int32_t>(y), out);
  }
}

}  // namespace vm
