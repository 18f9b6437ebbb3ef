#include "layers/ZvBezierCurve.h"

#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvStream.h"

namespace {

const vm::ClassRegistration<ZvBezierCurve> kRegistration;

void WritePoint(ZvStream& stream, const char* key, const ZvDPoint2d& point) {
  ZvStreamingArrayTemplate<ZvDPoint2d>(nullptr, key, point, kInvalidDPoint2d).WriteValue(stream);
}

bool Is(const ZvString& text, const char* word) {
  return text == ZvString(word);
}

}  // namespace

void ZvBezierPoint::WriteTo(ZvStream& stream) const {
  stream.WriteOpen(nullptr, '{');
  WritePoint(stream, "Anchor", mAnchor);
  WritePoint(stream, "Handle1", mHandle1);
  WritePoint(stream, "Handle2", mHandle2);
  if (mTag != kInvalidID) {
    stream.WriteFourCC(mTag, "Tag", true);
  }
  stream.WriteLineBreak();
  stream.WriteClose('}');
}

// REQUIRED: nothing counts the passes: only the closing mark, or the end of the input, ends the
// record.
void ZvBezierPoint::ReadFrom(ZvStream& stream) {
  stream.ReadOpen();
  ZvParser& parser = *stream.GetParser();
  while (!stream.ReadClose()) {
    ZvString value;
    ZvString key;
    stream.ReadField(value, key);
    if (key.empty() && !value.empty()) {
      std::swap(key, value);
    }
    ZvDPoint2d* const point = Is(key, "Anchor")    ? &mAnchor
                              : Is(key, "Handle1") ? &mHandle1
                              : Is(key, "Handle2") ? &mHandle2
                                                   : nullptr;
    if (point != nullptr) {
      parser.ResolveVariable(value);
      vm::ParseTuple(parser, *point, value);
    } else if (Is(key, "Tag")) {
      parser.ResolveVariable(value);
      parser.ParseFourCC(&mTag, value);
    }
  }
}

ZvBezierCurve::ZvBezierCurve(ZvID id)
    : mPoints(this, "Points"),
      mClosed(this, "Closed", false),
      mFinalized(this, "Finalized", false),
      mAuxData(this, "AuxData"),
      mSubCurve(this, "SubCurve"),
      mActivePoint(this, "ActivePoint", -1),
      mHandle(this, "Handle", ZvBezierHandleChoice::kNone),
      mName(this, "Name", ZvString()),
      mID(this, "ID", kInvalidID) {
  mID.mValue = id;
}

void ZvBezierCurve::ClassName(ZvString& outName) const {
  outName = kClassName;
}

ZvBezierCurve* ZvBezierCurve::Clone() const {
  auto* const clone = new ZvBezierCurve;
  clone->mPoints = mPoints;
  clone->mClosed = mClosed;
  clone->mFinalized = mFinalized;
  clone->mAuxData = mAuxData;
  clone->mSubCurve = mSubCurve;
  clone->mActivePoint = mActivePoint;
  clone->mHandle = mHandle;
  clone->mName = mName;
  clone->mID = mID;
  clone->mNote1 = mNote1;
  clone->mNote2 = mNote2;
  clone->mNotePair1 = mNotePair1;
  clone->mNoteIndex = mNoteIndex;
  clone->mNotePair2 = mNotePair2;
  clone->mNotePair3 = mNotePair3;
  clone->mNoteBox = mNoteBox;
  return clone;
}
