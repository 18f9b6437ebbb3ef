#include <gtest/gtest.h>

#include "layers/Recording.h"
#include "layers/ZvBezierCurve.h"
#include "layers/ZvColorPos.h"
#include "layers/ZvStreamingPolygon.h"
#include "persistence/ZvClassRegistry.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

using Operations = std::vector<std::string>;

template <class T>
ZvSmartPtr<T> Made() {
  RunRegistrars();
  const ZvStreamableFactory factory = FindFactory(T::kClassName);
  return factory == nullptr ? ZvSmartPtr<T>() : ZvSmartPtr<T>::Adopt(dynamic_cast<T*>(factory()));
}

TEST(ColorPos, ANewOneIsOpaqueWhiteAtZeroAndWritesNothing) {
  const ZvSmartPtr<ZvColorPos> stop = Made<ZvColorPos>();
  ASSERT_TRUE(stop);
  EXPECT_EQ(stop->GetColor(), (PxRgba64{65535, 65535, 65535, 65535}));
  EXPECT_EQ(stop->GetPos(), 0.0F);
  EXPECT_EQ(OperationsOf(*stop),
            Operations({"open {", "indent 1", "indent -1", "soft break", "close }"}));
}

TEST(ColorPos, ItWritesItsFieldsInOrder) {
  ZvColorPos stop;
  stop.SetColor({1, 2, 3, 4});
  stop.SetPos(0.25F);
  EXPECT_EQ(OperationsOf(stop),
            Operations({"open {", "indent 1", "open ( Color", "UInt16 1 element", "separator",
                        "UInt16 2 element", "separator", "UInt16 3 element", "separator",
                        "UInt16 4 element", "close )", "Float 0.25 Pos", "indent -1", "soft break",
                        "close }"}));
}

TEST(ColorPos, ACloneHasTheColorAndPositionAndSharesNothing) {
  ZvColorPos stop;
  stop.SetColor({1, 2, 3, 4});
  stop.SetPos(0.5F);
  const auto clone = ZvSmartPtr<ZvColorPos>::Adopt(stop.Clone());
  EXPECT_EQ(clone.Get()->GetRefCount(), 1U);
  EXPECT_EQ(clone->GetColor(), stop.GetColor());
  EXPECT_EQ(clone->GetPos(), 0.5F);
  clone->SetPos(0.75F);
  EXPECT_EQ(stop.GetPos(), 0.5F);
  ZvString name;
  clone->ClassName(name);
  EXPECT_EQ(name, ZvString("ZvColorPos"));
}

TEST(ColorPos, ItSurvivesItsText) {
  RunRegistrars();
  ZvColorPos stop;
  stop.SetColor({0, 65535, 513, 40000});
  stop.SetPos(0.1F);
  const ZvSmartPtr<ZvColorPos> read = ThroughText(stop);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->GetColor(), stop.GetColor());
  EXPECT_EQ(read->GetPos(), 0.1F);
}

TEST(BezierCurve, ANewOneWritesNothingButItsMarks) {
  const ZvSmartPtr<ZvBezierCurve> curve = Made<ZvBezierCurve>();
  ASSERT_TRUE(curve);
  EXPECT_EQ(curve->mActivePoint.mValue, -1);
  EXPECT_EQ(curve->mID.mValue, kInvalidID);
  EXPECT_EQ(OperationsOf(*curve),
            Operations({"break", "open {", "indent 1", "break", "indent -1", "break", "close }"}));
}

TEST(BezierCurve, TheConstructorSetsTheIdAndNotItsDefault) {
  ZvBezierCurve curve(0x61626364);
  EXPECT_EQ(curve.mID.mValue, 0x61626364U);
  EXPECT_EQ(curve.mID.mDefault, kInvalidID);
  const Operations operations = OperationsOf(curve);
  EXPECT_NE(std::find(operations.begin(), operations.end(), "FourCC 1633837924 ID"),
            operations.end());
}

TEST(BezierCurve, ItsMembersStandInTheirOrder) {
  ZvBezierCurve curve(5);
  curve.mPoints.mValue.resize(1);
  curve.mClosed.mValue = true;
  curve.mFinalized.mValue = true;
  curve.mAuxData.TakeOver(new ZvAuxiliaryData);
  curve.mSubCurve.TakeOver(new ZvBezierCurve);
  curve.mActivePoint.mValue = 0;
  curve.mHandle.mValue = static_cast<ZvBezierHandleChoice>(2);
  curve.mName.mValue = "n";
  Operations names;
  for (const std::string& operation : OperationsOf(curve))
    for (const char* name : {"\"Points\"", "Closed", "Finalized", "\"AuxData\"", "\"SubCurve\"",
                             "ActivePoint", " Handle", " Name", " ID"})
      if (operation.size() >= std::strlen(name) &&
          operation.compare(operation.size() - std::strlen(name), std::string::npos, name) == 0)
        names.push_back(name);
  EXPECT_EQ(names, Operations({"\"Points\"", "Closed", "Finalized", "\"AuxData\"", "\"SubCurve\"",
                               "ActivePoint", " Handle", " Name", " ID"}));
}

TEST(BezierPoint, OneThatIsNotThereWritesJustItsMarksAroundALineBreak) {
  ByteStream stream;
  const auto parser = ZvSmartPtr<RecordingParser>::Adopt(new RecordingParser);
  stream.AttachParser(parser.Get());
  ZvBezierPoint().WriteTo(stream);
  EXPECT_EQ(parser->Lines(), Operations({"open {", "break", "close }"}));
}

TEST(BezierPoint, APositionAtTheOriginIsWritten) {
  ByteStream stream;
  const auto parser = ZvSmartPtr<RecordingParser>::Adopt(new RecordingParser);
  stream.AttachParser(parser.Get());
  ZvBezierPoint point;
  point.mHandle1 = {0, 0};
  point.mTag = 1;
  point.WriteTo(stream);
  EXPECT_EQ(parser->Lines(),
            Operations({"open {", "open ( Handle1", "Double 0 element", "separator",
                        "Double 0 element", "close )", "FourCC 1 Tag", "break", "close }"}));
}

ZvBezierPoint ReadPoint(const char* text, bool* atEnd = nullptr) {
  std::string bytes = text;
  ZvMemoryStream stream(reinterpret_cast<uint8_t*>(bytes.data()),
                        static_cast<uint32_t>(bytes.size()), false);
  UseTextParser(stream);
  ZvBezierPoint point;
  point.mAnchor = {7, 8};
  point.ReadFrom(stream);
  if (atEnd != nullptr)
    *atEnd = stream.AtEnd();
  return point;
}

TEST(BezierPoint, ItReadsItsFieldsByName) {
  const ZvBezierPoint point = ReadPoint("{ Tag='abcd' Handle2=(3, 4) Anchor=(1.5, -2) }");
  EXPECT_EQ(point.mAnchor, ZvDPoint2d(1.5, -2));
  EXPECT_EQ(point.mHandle1, kInvalidDPoint2d);
  EXPECT_EQ(point.mHandle2, ZvDPoint2d(3, 4));
  EXPECT_EQ(point.mTag, 0x61626364U);
}

TEST(BezierPoint, ABareWordIsAKeyWithoutAValueAndItsFieldKeepsItsOwn) {
  const ZvBezierPoint point = ReadPoint("{ Anchor Unknown Handle1=(1, 2) }");
  EXPECT_EQ(point.mAnchor, ZvDPoint2d(7, 8));
  EXPECT_EQ(point.mHandle1, ZvDPoint2d(1, 2));
}

TEST(BezierPoint, TheEndOfTheInputEndsIt) {
  bool atEnd = false;
  const ZvBezierPoint point = ReadPoint("{ Anchor=(1, 2)", &atEnd);
  EXPECT_EQ(point.mAnchor, ZvDPoint2d(1, 2));
  EXPECT_TRUE(atEnd);
}

TEST(BezierCurve, ItSurvivesItsText) {
  RunRegistrars();
  ZvBezierCurve curve(0x66696E65);
  curve.mPoints.mValue.resize(2);
  curve.mPoints.mValue[0].mAnchor = {0.1, 1e-9};
  curve.mPoints.mValue[1].mHandle2 = {-3.25, 4};
  curve.mPoints.mValue[1].mTag = 0x7A7A7A7A;
  curve.mClosed.mValue = true;
  curve.mActivePoint.mValue = 1;
  curve.mHandle.mValue = static_cast<ZvBezierHandleChoice>(2);
  curve.mName.mValue = "a \"curve\"";
  curve.mSubCurve.TakeOver(new ZvBezierCurve(0x73756263));
  const ZvSmartPtr<ZvBezierCurve> read = ThroughText(curve);
  ASSERT_TRUE(read);
  ASSERT_EQ(read->mPoints.mValue.size(), 2U);
  EXPECT_EQ(read->mPoints.mValue[0].mAnchor.x, 0.1);
  EXPECT_EQ(read->mPoints.mValue[0].mAnchor.y, 1e-9);
  EXPECT_EQ(read->mPoints.mValue[0].mHandle1, kInvalidDPoint2d);
  EXPECT_EQ(read->mPoints.mValue[1].mHandle2, ZvDPoint2d(-3.25, 4));
  EXPECT_EQ(read->mPoints.mValue[1].mTag, 0x7A7A7A7AU);
  EXPECT_TRUE(read->mClosed.mValue);
  EXPECT_FALSE(read->mFinalized.mValue);
  EXPECT_EQ(read->mActivePoint.mValue, 1);
  EXPECT_EQ(static_cast<int>(read->mHandle.mValue), 2);
  EXPECT_EQ(read->mName.mValue, ZvString("a \"curve\""));
  EXPECT_EQ(read->mID.mValue, 0x66696E65U);
  ASSERT_NE(read->mSubCurve.Get(), nullptr);
  EXPECT_EQ(read->mSubCurve.Get()->mID.mValue, 0x73756263U);
  EXPECT_EQ(read->mSubCurve.Get()->GetRefCount(), 1U);
}

ZvSmartPtr<ZvBezierCurve> CurveFromText(const char* text) {
  RunRegistrars();
  std::string bytes = text;
  ZvMemoryStream stream(reinterpret_cast<uint8_t*>(bytes.data()),
                        static_cast<uint32_t>(bytes.size()), false);
  UseTextParser(stream);
  return ZvSmartPtr<ZvBezierCurve>::Adopt(dynamic_cast<ZvBezierCurve*>(stream.ReadObject()));
}

TEST(BezierCurve, PointsReadTwiceAreThoseOfTheSecondReading) {
  const auto curve = CurveFromText(
      "ZvBezierCurve { Points { ZvBezierPoint { Anchor=(1, 1) } ZvBezierPoint { } } "
      "Points { ZvBezierPoint { Anchor=(2, 2) } } }");
  ASSERT_TRUE(curve);
  ASSERT_EQ(curve->mPoints.mValue.size(), 1U);
  EXPECT_EQ(curve->mPoints.mValue[0].mAnchor, ZvDPoint2d(2, 2));
}

TEST(BezierCurve, OfTwoSubCurvesTheLastStays) {
  const auto curve = CurveFromText(
      "ZvBezierCurve { SubCurve { ZvBezierCurve { Name=\"one\" } ZvBezierCurve { Name=\"two\" } } "
      "}");
  ASSERT_TRUE(curve && curve->mSubCurve.Get() != nullptr);
  EXPECT_EQ(curve->mSubCurve.Get()->mName.mValue, ZvString("two"));
}

TEST(BezierCurve, AnObjectOfAnotherClassIsDropped) {
  const auto curve =
      CurveFromText("ZvBezierCurve { SubCurve { ZvColorPos { Pos=0.5 } } Name=\"kept\" }");
  ASSERT_TRUE(curve);
  EXPECT_EQ(curve->mSubCurve.Get(), nullptr);
  EXPECT_EQ(curve->mName.mValue, ZvString("kept"));
}

TEST(BezierCurve, AuxiliaryDataHasNoFactory) {
  RunRegistrars();
  EXPECT_EQ(FindFactory("ZvAuxiliaryData"), nullptr);
  ReportRecorder reports;
  const auto curve = CurveFromText("ZvBezierCurve { AuxData { ZvAuxiliaryData { } } }");
  ASSERT_TRUE(curve);
  EXPECT_EQ(curve->mAuxData.Get(), nullptr);
  EXPECT_EQ(reports.Lines(), Reports({"ZvStreamingObjectList(122) : object != NULL"}));
}

TEST(BezierCurve, ARecordUnderAnotherNameIsReportedAndReadAllTheSame) {
  ReportRecorder reports;
  const auto curve = CurveFromText("ZvBezierCurve { Points { ZvOtherPoint { Anchor=(5, 6) } } }");
  ASSERT_TRUE(curve);
  ASSERT_EQ(curve->mPoints.mValue.size(), 1U);
  EXPECT_EQ(curve->mPoints.mValue[0].mAnchor, ZvDPoint2d(5, 6));
  EXPECT_EQ(reports.Lines(),
            Reports({"ZvStreamingObjectList(196) : typeid(item).name() == classID"}));
}

TEST(BezierCurve, ItsListAndItsPointersCantBeParsed) {
  ReportRecorder reports;
  ZvBezierCurve curve;
  ByteStream stream;
  curve.mPoints.ParseValue(*stream.GetParser(), "x");
  curve.mSubCurve.ParseValue(*stream.GetParser(), "x");
  EXPECT_EQ(reports.Lines(),
            Reports({"ZvStreamingObjectList(209) : 0", "ZvStreamingObjectList(144) : 0"}));
}

TEST(BezierCurve, ACloneSharesItsDataAndSubCurveAndCopiesAllElse) {
  ZvBezierCurve curve(9);
  curve.mPoints.mValue.resize(3);
  curve.mPoints.mAlwaysWrite = true;
  curve.mPoints.FieldName = "Pts";
  curve.mClosed.mValue = true;
  curve.mAuxData.TakeOver(new ZvAuxiliaryData);
  curve.mSubCurve.TakeOver(new ZvBezierCurve);
  curve.mActivePoint.mValue = 2;
  curve.mHandle.mValue = static_cast<ZvBezierHandleChoice>(1);
  curve.mName.mValue = "n";
  curve.mNote1 = false;
  curve.mNoteIndex = 4;
  curve.mNotePair2 = {5, 6};
  curve.mNoteBox[15] = 7;
  const auto clone = ZvSmartPtr<ZvBezierCurve>::Adopt(curve.Clone());
  EXPECT_EQ(clone->mPoints.mValue.size(), 3U);
  EXPECT_TRUE(clone->mPoints.mAlwaysWrite);
  EXPECT_EQ(clone->mPoints.FieldName, ZvString("Pts"));
  EXPECT_TRUE(clone->mClosed.mValue);
  EXPECT_EQ(clone->mAuxData.Get(), curve.mAuxData.Get());
  EXPECT_EQ(clone->mAuxData.Get()->GetRefCount(), 2U);
  EXPECT_EQ(clone->mSubCurve.Get(), curve.mSubCurve.Get());
  EXPECT_EQ(clone->mActivePoint.mValue, 2);
  EXPECT_EQ(static_cast<int>(clone->mHandle.mValue), 1);
  EXPECT_EQ(clone->mName.mValue, ZvString("n"));
  EXPECT_EQ(clone->mID.mValue, 9U);
  EXPECT_FALSE(clone->mNote1);
  EXPECT_TRUE(clone->mNote2);
  EXPECT_EQ(clone->mNoteIndex, 4);
  EXPECT_EQ(clone->mNotePair2, curve.mNotePair2);
  EXPECT_EQ(clone->mNoteBox[15], 7);
}

TEST(StreamingPolygon, AnEmptyOneWritesNothingWhateverAlwaysWriteSays) {
  const ZvSmartPtr<ZvStreamingPolygon> polygon = Made<ZvStreamingPolygon>();
  ASSERT_TRUE(polygon);
  polygon->mPoints.mAlwaysWrite = true;
  ByteStream stream;
  const auto parser = ZvSmartPtr<RecordingParser>::Adopt(new RecordingParser);
  stream.AttachParser(parser.Get());
  polygon->mPoints.WriteValue(stream);
  EXPECT_TRUE(parser->Lines().empty());
  EXPECT_FALSE(polygon->mPoints.IsDefault());
}

TEST(StreamingPolygon, NinePointsBreakTheLineBeforeTheFirstAndTheNinth) {
  ZvStreamingPolygon polygon;
  for (int i = 0; i < 9; ++i)
    polygon.mPoints.mValue.emplace_back(i, -i);
  ByteStream stream;
  const auto parser = ZvSmartPtr<RecordingParser>::Adopt(new RecordingParser);
  stream.AttachParser(parser.Get());
  polygon.mPoints.WriteValue(stream);

  Operations expected{"break", "String \"Points\"", "break", "open {", "indent 1"};
  for (int i = 0; i < 9; ++i) {
    if (i % 8 == 0)
      expected.push_back("break");
    expected.push_back("open (");
    expected.push_back("Double " + std::to_string(i) + " element");
    expected.push_back("separator");
    expected.push_back("Double " + std::string(i == 0 ? "0" : "-" + std::to_string(i)) +
                       " element");
    expected.push_back("close )");
    if (i != 8)
      expected.push_back("separator");
  }
  for (const char* line : {"indent -1", "break", "close }", "break"})
    expected.push_back(line);
  EXPECT_EQ(parser->Lines(), expected);
}

TEST(StreamingPolygon, ItSurvivesItsTextWithoutItsSegments) {
  RunRegistrars();
  ZvStreamingPolygon polygon;
  for (int i = 0; i < 20; ++i)
    polygon.mPoints.mValue.emplace_back(i * 0.1, 1.0 / (i + 1));
  polygon.mSegments.emplace_back(ZvDPoint2d(0, 0), ZvDPoint2d(1, 1));
  const ZvSmartPtr<ZvStreamingPolygon> read = ThroughText(polygon);
  ASSERT_TRUE(read);
  ASSERT_EQ(read->mPoints.mValue.size(), 20U);
  for (size_t i = 0; i < 20; ++i) {
    EXPECT_EQ(read->mPoints.mValue[i].x, polygon.mPoints.mValue[i].x);
    EXPECT_EQ(read->mPoints.mValue[i].y, polygon.mPoints.mValue[i].y);
  }
  EXPECT_TRUE(read->mSegments.empty());
}

TEST(StreamingPolygon, ACloneSharesNothing) {
  ZvStreamingPolygon polygon;
  polygon.mPoints.mValue.emplace_back(1, 2);
  polygon.mPoints.mAlwaysWrite = true;
  polygon.mSegments.emplace_back(ZvDPoint2d(0, 0), ZvDPoint2d(3, 4));
  const auto clone = ZvSmartPtr<ZvStreamingPolygon>::Adopt(polygon.Clone());
  EXPECT_TRUE(clone->mPoints.mAlwaysWrite);
  ASSERT_EQ(clone->mSegments.size(), 1U);
  EXPECT_EQ(clone->mSegments[0].mLength, 5.0);
  clone->mPoints.mValue[0] = {9, 9};
  EXPECT_EQ(polygon.mPoints.mValue[0], ZvDPoint2d(1, 2));
}

TEST(StreamingPolygon, ItsPointsCantBeParsed) {
  ReportRecorder reports;
  ZvStreamingPolygon polygon;
  ByteStream stream;
  polygon.mPoints.ParseValue(*stream.GetParser(), "1,2");
  EXPECT_EQ(reports.Lines(), Reports({"ZvStreamingObjectList(283) : 0"}));
}

}  // namespace
}  // namespace vm
