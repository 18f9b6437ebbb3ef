#include <gtest/gtest.h>

#include "layers/LayerTest.h"
#include "layers/Recording.h"
#include "persistence/ZvClassRegistry.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

using Operations = std::vector<std::string>;

TEST(LayerStreaming, TheRegistryMakesEachClass) {
  RunRegistrars();
  for (const char* name : {"ZvLayer", "ZvImageLayer", "ZvTypeLayer", "ZvColorPos", "ZvBezierCurve",
                           "ZvStreamingPolygon"}) {
    const ZvStreamableFactory factory = FindFactory(name);
    ASSERT_NE(factory, nullptr) << name;
    const auto object = ZvSmartPtr<ZvStreamable>::Adopt(factory());
    ZvString className;
    object->ClassName(className);
    EXPECT_EQ(className, ZvString(name));
    const auto same = ZvSmartPtr<ZvStreamable>::Adopt(object->CreateSameClass());
    ASSERT_TRUE(same);
    same->ClassName(className);
    EXPECT_EQ(className, ZvString(name));
  }
}

TEST(LayerStreaming, ALayerOfDefaultsWritesItsMarks) {
  ZvLayer layer;
  EXPECT_EQ(OperationsOf(layer),
            Operations({"break", "open {", "indent 1", "break", "indent -1", "break", "close }"}));
}

TEST(LayerStreaming, ItsMembersStandInTheirOrderUnderTheirNames) {
  ZvLayer layer;
  layer.SetOffsetOnly({1, 2});
  layer.SetCropping({3, 4, 5, 6}, true);
  layer.SetRetain(static_cast<ZvRetainLevel>(7));
  layer.GetNameRef() = "n";
  layer.SetOpacity(0.5F);
  EXPECT_EQ(OperationsOf(layer), Operations({"break",
                                             "open {",
                                             "indent 1",
                                             "break",  //
                                             "open ( Offset",
                                             "SInt32 1 element",
                                             "separator",
                                             "SInt32 2 element",
                                             "close )",  //
                                             "open ( Cropping",
                                             "SInt32 3 element",
                                             "separator",
                                             "SInt32 4 element",
                                             "separator",
                                             "SInt32 5 element",
                                             "separator",
                                             "SInt32 6 element",
                                             "close )",  //
                                             "Bool true CropChanged",
                                             "SInt8 7 Retain",
                                             "String \"n\" Name",
                                             "Float 0.5 LayerOpacity",
                                             "indent -1",
                                             "break",
                                             "close }"}));
}

// Below version 1.0 the fixed form follows; "Offset" and "Cropping" stand in it only where they
// aren't defaults.
TEST(LayerStreaming, AnOldStreamGetsTheFixedFormAsWell) {
  ZvLayer layer;
  layer.SetOffsetOnly({1, 2});
  layer.MoveTo({8, 9});
  layer.SetScale(0.5F, 2);
  Operations operations = OperationsOf(layer, 0.5F);
  const auto end = std::find(operations.begin(), operations.end(), "close }");
  ASSERT_NE(end, operations.end());
  operations.erase(operations.begin(), end + 1);
  EXPECT_EQ(operations, Operations({"open ( Offset",
                                    "SInt32 1 element",
                                    "separator",
                                    "SInt32 2 element",
                                    "close )",  //
                                    "Bool false",
                                    "SInt16 10 Retain",
                                    "String \"\" Name",
                                    "Float 1 Opacity",  //
                                    "open (",
                                    "SInt32 8 element",
                                    "separator",
                                    "SInt32 9 element",
                                    "close )",  //
                                    "open (",
                                    "Float 0.5 element",
                                    "separator",
                                    "Float 2 element",
                                    "close )",  //
                                    "Float 0",
                                    "Float 0",
                                    "break",
                                    "SInt32 0 SubLayers"}));
}

// The fixed form in bytes, as it is read: point; the token of "Cropping"; bool; s16; string; float;
// transform; count.
constexpr char kFixedForm[] =
    "28 00 00 00 05 2C FF FF FF FA 29 "  // ( 5 , -6 )
    "00 07 31 2C 32 2C 33 2C 34 "        // "1,2,3,4"
    "01 "                                // set on purpose
    "00 0B "                             // retain 11
    "00 02 68 69 "                       // "hi"
    "00 00 00 3F "                       // 0.5
    "28 00 00 00 07 2C 00 00 00 08 29 "  // position 7, 8
    "28 00 00 00 40 2C 00 00 80 40 29 "  // scale 2, 4
    "00 00 80 3F 00 00 00 40 ";          // the two floats 1, 2

TEST(LayerStreaming, AnOldStreamIsReadByTheFixedFormAlone) {
  ByteStream stream(std::string(kFixedForm) + "00 00 00 00 ");
  stream.SetVersion(0.5F);
  ZvLayer layer;
  layer.ReadFrom(stream);
  EXPECT_EQ(layer.GetOffsetRef(), ZvPoint(5, -6));
  ZvRect cropping;
  EXPECT_TRUE(layer.GetCropping(cropping));
  EXPECT_EQ(cropping, ZvRect(1, 2, 3, 4));
  EXPECT_EQ(static_cast<int>(layer.GetRetain()), 11);
  EXPECT_EQ(layer.GetNameRef(), ZvString("hi"));
  EXPECT_EQ(layer.GetOpacity(), 0.5F);
  EXPECT_EQ(PositionOf(layer), ZvPoint(7, 8));
  ZvFloatPoint scale;
  layer.GetScale(scale);
  EXPECT_EQ(scale, ZvFloatPoint(2, 4));
  EXPECT_TRUE(stream.AtEnd());
}

TEST(LayerStreaming, SublayersOfTheFixedFormAreReadAndOthersReported) {
  RunRegistrars();
  ReportRecorder reports;
  // Two: a polygon, whose member table reads nothing from an old stream, and a layer.
  ByteStream stream(
      std::string(kFixedForm) +
      "00 00 00 02 "
      "00 12 5A 76 53 74 72 65 61 6D 69 6E 67 50 6F 6C 79 67 6F 6E "  // ZvStreamingPolygon
      "00 07 5A 76 4C 61 79 65 72 " +                                 // ZvLayer
      kFixedForm +
      "00 00 00 00 ");
  stream.SetVersion(0.5F);
  ZvLayer layer;
  layer.ReadFrom(stream);
  EXPECT_EQ(reports.Lines(), Reports({"ZvLayer(1126) : layer != nil"}));
  ASSERT_EQ(layer.SubLayers().size(), 1U);
  EXPECT_EQ(layer.SubLayers()[0]->GetNameRef(), ZvString("hi"));
  EXPECT_EQ(layer.SubLayers()[0].Get()->GetRefCount(), 1U);
}

TEST(LayerStreaming, ACountThatTheInputCantHoldEndsWithTheInput) {
  ReportRecorder reports;
  ByteStream stream(std::string(kFixedForm) + "7F FF FF FF ");
  stream.SetVersion(0.5F);
  ZvLayer layer;
  layer.ReadFrom(stream);
  EXPECT_TRUE(layer.SubLayers().empty());
  EXPECT_TRUE(reports.Empty());
}

TEST(LayerStreaming, ATreeSurvivesItsText) {
  RunRegistrars();
  const auto leaf = ZvSmartPtr<ZvTypeLayer>::Adopt(new ZvTypeLayer);
  leaf->GetNameRef() = "leaf, \"quoted\"";
  const auto middle = Group({leaf.Get()});
  middle->SetOpacity(0.1F);
  const auto root = Group({middle.Get()});
  root->SetCropping({-1, -2, 3, 4}, true);
  const ZvSmartPtr<ZvLayer> read = ThroughText(*root);
  ASSERT_TRUE(read);
  ZvRect cropping;
  EXPECT_TRUE(read->GetCropping(cropping));
  EXPECT_EQ(cropping, ZvRect(-1, -2, 3, 4));
  ASSERT_EQ(read->SubLayers().size(), 1U);
  EXPECT_EQ(read->SubLayers()[0]->GetOpacity(), 0.1F);
  ASSERT_EQ(read->SubLayers()[0]->SubLayers().size(), 1U);
  ZvLayer* const readLeaf = read->SubLayers()[0]->SubLayers()[0].Get();
  EXPECT_NE(dynamic_cast<ZvTypeLayer*>(readLeaf), nullptr);
  EXPECT_EQ(readLeaf->GetNameRef(), ZvString("leaf, \"quoted\""));
}

TEST(LayerStreaming, DeepTreesAreWrittenUpToALimit) {
  RunRegistrars();
  const auto root = ZvSmartPtr<ZvLayer>::Adopt(new ZvLayer);
  ZvLayer* deepest = root.Get();
  for (int i = 0; i < 2000; ++i) {
    const auto next = ZvSmartPtr<ZvLayer>::Adopt(new ZvLayer);
    deepest->SubLayers().push_back(next);
    deepest = next.Get();
  }
  const Operations operations = OperationsOf(*root);
  EXPECT_EQ(std::count(operations.begin(), operations.end(), "String \"SubLayers\""),
            kMaxLayerNesting);
  EXPECT_EQ(root->SubLayers().size(), 1U);
  // Each level of the old form doubles what is written.
  ByteStream old;
  old.SetVersion(0.5F);
  root->WriteTo(old);
  EXPECT_LT(old.Bytes().size(), 32U << 20);
}

}  // namespace
}  // namespace vm
