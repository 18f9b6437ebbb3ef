#include "persistence/ZvGeometryStreaming.h"

#include <gtest/gtest.h>

#include "persistence/ByteStream.h"

namespace {

TEST(GeometryStreaming, APointIsTwoIntegersBetweenMarks) {
  ByteStream stream;
  WriteTo(ZvPoint(1, -2), stream);
  EXPECT_EQ(stream.Hex(), "28 00 00 00 01 2C FF FF FF FE 29");
  stream.Rewind();
  ZvPoint point;
  ReadFrom(point, stream);
  EXPECT_EQ(point, ZvPoint(1, -2));
  EXPECT_TRUE(stream.AtEnd());
}

TEST(GeometryStreaming, AFloatPointIsTwoFloatsBetweenMarks) {
  ByteStream stream;
  WriteTo(ZvFloatPoint(1.0f, -2.0f), stream);
  EXPECT_EQ(stream.Hex(), "28 00 00 80 3F 2C 00 00 00 C0 29");
  stream.Rewind();
  ZvFloatPoint point;
  ReadFrom(point, stream);
  EXPECT_EQ(point, ZvFloatPoint(1.0f, -2.0f));
  EXPECT_TRUE(stream.AtEnd());
}

TEST(GeometryStreaming, ADoublePointIsTwoDoublesBetweenMarks) {
  ByteStream stream;
  WriteTo(ZvDPoint2d(1.0, -2.0), stream);
  EXPECT_EQ(stream.Hex(), "28 00 00 00 00 00 00 F0 3F 2C 00 00 00 00 00 00 00 C0 29");
  stream.Rewind();
  ZvDPoint2d point;
  ReadFrom(point, stream);
  EXPECT_EQ(point.x, 1.0);
  EXPECT_EQ(point.y, -2.0);
  EXPECT_TRUE(stream.AtEnd());
}

TEST(GeometryStreaming, ATransformIsItsPositionScaleAndTwoFloatsWithoutAMarkAroundThem) {
  ZvSimpleTransform transform;
  transform.mPosition = ZvPoint(1, 2);
  transform.mExtra1 = 1.0f;
  transform.mExtra2 = 2.0f;
  ByteStream stream;
  WriteTo(transform, stream);
  EXPECT_EQ(stream.Hex(),
            "28 00 00 00 01 2C 00 00 00 02 29 "
            "28 00 00 80 3F 2C 00 00 80 3F 29 "
            "00 00 80 3F 00 00 00 40");
  stream.Rewind();
  ZvSimpleTransform read;
  ReadFrom(read, stream);
  EXPECT_EQ(read, transform);
  EXPECT_TRUE(stream.AtEnd());
}

TEST(GeometryStreaming, APointReadFromACutStreamIsZeroBehindTheCut) {
  ByteStream stream("28 00 00 00 01 2C");
  ZvPoint point(7, 8);
  ReadFrom(point, stream);
  EXPECT_EQ(point, ZvPoint(1, 0));
}

}  // namespace
