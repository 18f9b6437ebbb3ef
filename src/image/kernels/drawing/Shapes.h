#pragma once

#include <cstdint>
#include <functional>

#include "foundation/ZvGeometry.h"
#include "image/kernels/drawing/SpanBatch.h"

// Which pixels lines, ovals and polygons consist of, independent of any pixel type. Coordinates may
// be any; the work is bounded by the pixels of the clip (and, for polygons, the number of points).
namespace vm {

void LineSpans(const ZvPoint& from, const ZvPoint& to, const ZvRect& clip, int32_t dash,
               SpanBatch& out);

// An empty rect has no oval. Each pixel comes once.
void OvalSpans(const ZvRect& rect, const ZvRect& clip, bool filled, SpanBatch& out);

struct OutlineStyle {
  bool skipFirst;     // the first point stays undrawn
  bool clampToImage;  // limit the ends of edges to the image first
  bool closed;
  int32_t dash;
  int32_t imageWidth;
  int32_t imageHeight;
};

// The edges of a polygon. Neighbouring edges share their corner: it comes once.
void OutlineSpans(int32_t count, const ZvPoint* points, const OutlineStyle& style,
                  const ZvRect& clip, SpanBatch& out);

// Asked for each crossing of an edge with a row, edge by edge; a crossing that isn't admitted
// doesn't count.
using AdmitCrossing = std::function<bool(int32_t x, int32_t y)>;

// The inside of a polygon, which is closed whether its points are or not: for each row the pixels
// between odd and even crossings, both included, by the even-odd rule. `admit` may be empty.
void FilledSpans(int32_t count, const ZvPoint* points, const ZvRect& clip,
                 const AdmitCrossing& admit, SpanBatch& out);

// Takes pieces of rows with a coverage for each pixel.
using CoverageSink = std::function<void(const Span& span, const float* coverage)>;

// The inside of a closed polygon with soft edges: coverage is the distance to the nearest edge
// divided by `feather`, at most 1. Rows come from the bottom up.
void FeatheredSpans(int32_t count, const ZvPoint* points, const ZvRect& clip, float feather,
                    const CoverageSink& sink);

}  // namespace vm
