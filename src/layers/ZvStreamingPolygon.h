#pragma once

#include <vector>

#include "foundation/ZvGeometry.h"
#include "persistence/members/ZvMemberTemplates.h"
#include "persistence/members/ZvSleekStreaming.h"

// A polygon as data: a list of points, streamed up to eight on a line, and a list of segments
// beside it.
class ZvStreamingPolygon : public ZvSleekStreaming {
 public:
  static constexpr char kClassName[] = "ZvStreamingPolygon";

  ZvStreamingPolygon();

  void ClassName(ZvString& outName) const override;

  // A new polygon at count 1 that shares nothing with this one.
  virtual ZvStreamingPolygon* Clone() const;

  ZvStreamingStructList<std::vector<ZvDPoint2d>, ZvDPoint2d> mPoints;

  // Not streamed; whoever fills it keeps it in step with the points.
  std::vector<ZvDSegment> mSegments;
};
