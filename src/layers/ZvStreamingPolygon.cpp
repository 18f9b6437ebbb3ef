#include "layers/ZvStreamingPolygon.h"

#include "persistence/ZvClassRegistry.h"

namespace {

const vm::ClassRegistration<ZvStreamingPolygon> kRegistration;

}  // namespace

ZvStreamingPolygon::ZvStreamingPolygon() : mPoints(this, "Points") {}

void ZvStreamingPolygon::ClassName(ZvString& outName) const {
  outName = kClassName;
}

ZvStreamingPolygon* ZvStreamingPolygon::Clone() const {
  auto* const clone = new ZvStreamingPolygon;
  clone->mPoints = mPoints;
  clone->mSegments = mSegments;
  return clone;
}
