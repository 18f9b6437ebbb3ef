#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "foundation/ZvGeometry.h"
#include "persistence/members/ZvMemberTemplates.h"
#include "persistence/members/ZvSleekStreaming.h"

// One anchor of a path and its two handles. A point that is kInvalidDPoint2d is not there.
struct ZvBezierPoint {
  // The name that stands in front of each record of a list.
  static constexpr char kName[] = "ZvBezierPoint";

  ZvDPoint2d mAnchor = kInvalidDPoint2d;
  ZvDPoint2d mHandle1 = kInvalidDPoint2d;
  ZvDPoint2d mHandle2 = kInvalidDPoint2d;
  ZvID mTag = kInvalidID;

  // Writes '{', what is there, a line break and '}'.
  void WriteTo(ZvStream& stream) const;
  // Reads fields by name up to the closing mark or the end of the input. Unknown ones are skipped;
  // a field that doesn't come keeps its value.
  void ReadFrom(ZvStream& stream);
};

// What else belongs to a curve. A type to derive from: by itself it can be written but not read,
// for it is not registered.
class ZvAuxiliaryData : public ZvSleekStreaming {};

// Which handle of the active point is meant. The numbers have no meaning to this library.
enum class ZvBezierHandleChoice : int8_t { kNone = 0 };

// A Bezier path as data: it is kept, copied, written and read; nothing is computed on it.
class ZvBezierCurve : public ZvSleekStreaming {
 public:
  static constexpr char kClassName[] = "ZvBezierCurve";

  explicit ZvBezierCurve(ZvID id = kInvalidID);

  void ClassName(ZvString& outName) const override;

  // A new curve at count 1. It shares the auxiliary data and the sub-curve with this one.
  virtual ZvBezierCurve* Clone() const;

  ZvStreamingStructList<std::vector<ZvBezierPoint>, ZvBezierPoint> mPoints;
  ZvMemberTemplate<bool> mClosed;
  ZvMemberTemplate<bool> mFinalized;
  ZvStreamingSmartPtr<ZvAuxiliaryData> mAuxData;
  ZvStreamingSmartPtr<ZvBezierCurve> mSubCurve;
  ZvMemberTemplate<int32_t> mActivePoint;  // index into mPoints; -1 for none
  ZvStreamingEnumTemplate<ZvBezierHandleChoice> mHandle;
  ZvMemberTemplate<ZvString> mName;
  ZvStreamingID mID;

  // What editors note on a curve. Not streamed, copied by Clone.
  bool mNote1 = true;
  bool mNote2 = true;
  std::array<uint32_t, 2> mNotePair1{};
  int32_t mNoteIndex = -1;
  std::array<uint32_t, 2> mNotePair2{};
  std::array<uint32_t, 2> mNotePair3{};
  std::array<uint8_t, 16> mNoteBox{};
};
