// Lines, ovals and polygons, shown as pictures: '#' is a drawn pixel, '.' one that was left alone.

#include <climits>
#include <limits>
#include <string>
#include <vector>

#include "foundation/ZvSmartPtr.h"
#include "gtest/gtest.h"
#include "image/ZvTiledImage.h"
#include "image/ZvTypedImage.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

using Rows = std::vector<std::string>;
constexpr PxRgba64 kWhite{0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF};

// A sheet of coverage to draw on, in both families.
template <class Image>
class Drawing : public ::testing::Test {
 protected:
  void Sheet(int32_t width, int32_t height) {
    image = ZvSmartPtr<Image>::Adopt(new Image(width, height));
  }
  void Mask() { mask = ZvSmartPtr<Image>::Adopt(new Image(image->Width(), image->Height())); }

  void Line(ZvPoint from, ZvPoint to, int32_t dash = 0, bool xorMode = false) {
    image->DrawLine(from, to, kWhite, xorMode, mask.Get(), dash);
  }
  void Oval(ZvRect rect, bool filled, bool xorMode = false) {
    image->DrawOval(rect, kWhite, filled, xorMode, mask.Get());
  }
  // An outline.
  struct Outline {
    bool closed = true;
    bool xorMode = false;
    bool skipFirst = false;
    bool clampToImage = false;
    int32_t dash = 0;
    const ZvRect* clip = nullptr;
  };
  void Draw(const std::vector<ZvPoint>& points, const Outline& style) {
    image->DrawPolygon(static_cast<int32_t>(points.size()), points.data(), kWhite, false,
                       style.xorMode, style.skipFirst, style.clampToImage, style.closed, style.dash,
                       0, mask.Get(), style.clip);
  }
  void Fill(const std::vector<ZvPoint>& points, bool closed = true, bool xorMode = false,
            float feather = 0) {
    image->DrawPolygon(static_cast<int32_t>(points.size()), points.data(), kWhite, true, xorMode,
                       false, false, closed, 0, feather, mask.Get(), nullptr);
  }

  static Rows PictureOf(const ZvImage& of) {
    Rows rows;
    for (int32_t y = 0; y < of.Height(); ++y) {
      std::string row;
      for (int32_t x = 0; x < of.Width(); ++x) {
        uint8_t byte;
        of.GetByte(byte, x, y);
        row += byte != 0 ? '#' : '.';
      }
      rows.push_back(row);
    }
    return rows;
  }
  Rows Picture() const { return PictureOf(*image); }
  uint8_t At(int32_t x, int32_t y) const {
    uint8_t byte;
    image->GetByte(byte, x, y);
    return byte;
  }

  ZvSmartPtr<Image> image;
  ZvSmartPtr<Image> mask;
};

using Families = ::testing::Types<ZvTiledImage<PxAlphaByte>, ZvTypedImage<PxAlphaByte>>;
struct FamilyNames {
  template <class T>
  static std::string GetName(int) {
    return std::is_same_v<T, ZvTiledImage<PxAlphaByte>> ? "Tiled" : "Row";
  }
};
TYPED_TEST_SUITE(Drawing, Families, FamilyNames);

// --- lines

TYPED_TEST(Drawing, AShallowLineTakesTheTruncatedRowOfEachColumn) {
  this->Sheet(8, 4);
  this->Line({0, 0}, {7, 3});                   // y = x * 3 / 7
  EXPECT_EQ(this->Picture(), (Rows{"###.....",  //
                                   "...##...",  //
                                   ".....##.",  //
                                   ".......#"}));
}

TYPED_TEST(Drawing, ASteepLineTakesTheTruncatedColumnOfEachRow) {
  this->Sheet(4, 7);
  this->Line({3, 0}, {0, 6});               // x = 3 + y * -3 / 6, truncated toward zero
  EXPECT_EQ(this->Picture(), (Rows{"...#",  //
                                   "...#",  //
                                   "..#.",  //
                                   "..#.",  //
                                   ".#..",  //
                                   ".#..",  //
                                   "#..."}));
}

TYPED_TEST(Drawing, ALineIsInterpolatedFromItsFirstEnd) {
  this->Sheet(4, 7);
  this->Line({0, 6}, {3, 0});
  EXPECT_EQ(this->Picture(), (Rows{"...#",  //
                                   "..#.",  //
                                   "..#.",  //
                                   ".#..",  //
                                   ".#..",  //
                                   "#...",  //
                                   "#..."}));
}

TYPED_TEST(Drawing, ALevelLineStaysInItsRow) {
  this->Sheet(6, 3);
  this->Line({0, 1}, {4, 1});
  EXPECT_EQ(this->Picture(), (Rows{"......",  //
                                   "#####.",  //
                                   "......"}));
}

TYPED_TEST(Drawing, ALineWithEqualEndsPlotsOnePixel) {
  this->Sheet(3, 3);
  this->Line({1, 1}, {1, 1});
  EXPECT_EQ(this->Picture(), (Rows{"...", ".#.", "..."}));
}

TYPED_TEST(Drawing, ADashOfFourPlotsPixelsFourToSevenTwelveToFifteenAndSoOn) {
  this->Sheet(24, 1);
  this->Line({0, 0}, {23, 0}, 4);
  EXPECT_EQ(this->Picture(), (Rows{"....####....####....####"}));
}

TYPED_TEST(Drawing, DashesCountFromTheLowEndWhicheverEndIsFirst) {
  this->Sheet(10, 1);
  this->Line({9, 0}, {0, 0}, 3);
  EXPECT_EQ(this->Picture(), (Rows{"...###...#"}));
}

TYPED_TEST(Drawing, DashesCountTheCandidatesInsideTheClip) {
  this->Sheet(12, 1);
  this->image->SetClip({2, 0, 10, 0});
  this->Line({0, 0}, {11, 0}, 2);
  EXPECT_EQ(this->Picture(), (Rows{"....##..##.."}));
}

TYPED_TEST(Drawing, ALineKeepsItsCourseWhenItIsClipped) {
  this->Sheet(8, 4);
  this->image->SetClip({2, 1, 6, 3});
  this->Line({0, 0}, {7, 3});
  EXPECT_EQ(this->Picture(), (Rows{"........",  //
                                   "...##...",  //
                                   ".....##.",  //
                                   "........"}));
}

TYPED_TEST(Drawing, TheSameLineInXorModeTwiceLeavesNothing) {
  this->Sheet(8, 4);
  this->Line({0, 0}, {7, 3}, 0, true);
  EXPECT_EQ(this->At(0, 0), 255);
  this->Line({0, 0}, {7, 3}, 0, true);
  EXPECT_EQ(this->Picture(), (Rows(4, "........")));
}

TYPED_TEST(Drawing, AMaskLetsEachPixelThroughOnce) {
  this->Sheet(5, 1);
  this->Mask();
  this->mask->PutByte(1, 2, 0);
  this->Line({0, 0}, {4, 0}, 0, true);
  this->Line({0, 0}, {4, 0}, 0, true);
  EXPECT_EQ(this->Picture(), (Rows{"##.##"}));
  for (const int32_t x : {0, 1, 3, 4}) {
    uint8_t byte;
    this->mask->GetByte(byte, x, 0);
    EXPECT_EQ(byte, 255) << x;
  }
  uint8_t byte;
  this->mask->GetByte(byte, 2, 0);
  EXPECT_EQ(byte, 1);
}

TYPED_TEST(Drawing, ALineCrossesTiles) {
  this->Sheet(300, 3);
  this->Line({0, 1}, {299, 1});
  EXPECT_EQ(this->Picture()[1], std::string(300, '#'));
  EXPECT_EQ(this->Picture()[0], std::string(300, '.'));
}

// --- ovals

TYPED_TEST(Drawing, AnOvalIsAnArcAndItsMirrorImage) {
  this->Sheet(7, 7);
  this->Oval({0, 0, 6, 6}, false);
  EXPECT_EQ(this->Picture(), (Rows{".#####.",  //
                                   "##...##",  //
                                   "#.....#",  //
                                   "#.....#",  //
                                   "#.....#",  //
                                   "##...##",  //
                                   ".#####."}));
}

TYPED_TEST(Drawing, AnOvalOfEvenWidth) {
  this->Sheet(8, 4);
  this->Oval({0, 0, 7, 3}, false);
  EXPECT_EQ(this->Picture(), (Rows{".######.",  //
                                   "##....##",  //
                                   "##....##",  //
                                   ".######."}));
}

TYPED_TEST(Drawing, AFilledOvalCoversItsOutline) {
  this->Sheet(7, 7);
  this->Oval({0, 0, 6, 6}, true);
  EXPECT_EQ(this->Picture(), (Rows{".#####.",  //
                                   "#######",  //
                                   "#######",  //
                                   "#######",  //
                                   "#######",  //
                                   "#######",  //
                                   ".#####."}));
}

TYPED_TEST(Drawing, AnOvalPlotsEachPixelOfARowOnce) {
  this->Sheet(8, 4);
  this->Oval({0, 0, 7, 3}, false, true);
  EXPECT_EQ(this->Picture(), (Rows{".######.",  //
                                   "##....##",  //
                                   "##....##",  //
                                   ".######."}));
}

TYPED_TEST(Drawing, AnOvalOfOnePixelHasItsMirrorImageBesideIt) {
  this->Sheet(5, 3);
  this->Oval({2, 1, 2, 1}, false);
  EXPECT_EQ(this->Picture(), (Rows{".....",  //
                                   ".##..",  //
                                   "....."}));
}

TYPED_TEST(Drawing, AnOvalIsCutByTheClipWithoutChangingItsShape) {
  this->Sheet(7, 7);
  this->image->SetClip({1, 1, 6, 5});
  this->Oval({0, 0, 6, 6}, false);
  EXPECT_EQ(this->Picture(), (Rows{".......",  //
                                   ".#...##",  //
                                   "......#",  //
                                   "......#",  //
                                   "......#",  //
                                   ".#...##",  //
                                   "......."}));
}

TYPED_TEST(Drawing, AnEmptyRectHasNoOval) {
  this->Sheet(5, 5);
  this->Oval({3, 1, 1, 3}, true);
  this->Oval({1, 3, 3, 1}, true);
  EXPECT_EQ(this->Picture(), Rows(5, "....."));
}

// --- outlines

TYPED_TEST(Drawing, APolygonOfNoPointsDrawsNothing) {
  this->Sheet(3, 1);
  this->image->DrawPolygon(0, nullptr, kWhite, false, false, false, false, true, 0, 0, nullptr,
                           nullptr);
  this->image->DrawPolygon(0, nullptr, kWhite, true, false, false, false, true, 0, 0, nullptr,
                           nullptr);
  this->image->DrawPolygon(0, nullptr, kWhite, true, false, false, false, true, 0, 5, nullptr,
                           nullptr);
  EXPECT_EQ(this->Picture(), Rows{"..."});
}

TYPED_TEST(Drawing, APolygonWalksTheLongerAxisOfEachEdge) {
  this->Sheet(7, 5);
  this->Draw({{0, 0}, {6, 0}, {0, 4}}, {});
  EXPECT_EQ(this->Picture(), (Rows{"#######",  //
                                   "#...#..",  //
                                   "#.##...",  //
                                   "##.....",  //
                                   "#......"}));
}

TYPED_TEST(Drawing, AClosedOutlineInXorModeLeavesItsCornersOnce) {
  this->Sheet(7, 6);
  this->Draw({{1, 1}, {5, 1}, {5, 4}, {1, 4}}, {.xorMode = true});
  EXPECT_EQ(this->Picture(), (Rows{".......",  //
                                   ".#####.",  //
                                   ".#...#.",  //
                                   ".#...#.",  //
                                   ".#####.",  //
                                   "......."}));
}

TYPED_TEST(Drawing, AnOpenPolygonHasNoLastEdge) {
  this->Sheet(7, 6);
  this->Draw({{1, 1}, {5, 1}, {5, 4}, {1, 4}}, {.closed = false});
  EXPECT_EQ(this->Picture(), (Rows{".......",  //
                                   ".#####.",  //
                                   ".....#.",  //
                                   ".....#.",  //
                                   ".#####.",  //
                                   "......."}));
}

TYPED_TEST(Drawing, SkipFirstLeavesTheFirstPointUndrawn) {
  this->Sheet(7, 6);
  this->Draw({{1, 1}, {5, 1}, {5, 4}, {1, 4}}, {.skipFirst = true});
  EXPECT_EQ(this->Picture(), (Rows{".......",  //
                                   "..####.",  //
                                   ".#...#.",  //
                                   ".#...#.",  //
                                   ".#####.",  //
                                   "......."}));
}

TYPED_TEST(Drawing, DashesRunOnFromEdgeToEdge) {
  this->Sheet(7, 6);
  // Candidates 0 to 15 around the square: 3 to 5, 9 to 11 and 15 are dashes. A corner that was
  // plotted doesn't count again, one in a gap counts on both of its edges.
  this->Draw({{1, 1}, {5, 1}, {5, 4}, {1, 4}}, {.dash = 3});
  EXPECT_EQ(this->Picture(), (Rows{".......",  //
                                   "....##.",  //
                                   ".#...#.",  //
                                   ".......",  //
                                   "..###..",  //
                                   "......."}));
}

TYPED_TEST(Drawing, ASinglePointIsAPolygonOnlyWhenClosed) {
  this->Sheet(3, 1);
  this->Draw({{1, 0}}, {.closed = false});
  EXPECT_EQ(this->Picture(), Rows{"..."});
  this->Draw({{1, 0}}, {.closed = true});
  EXPECT_EQ(this->Picture(), Rows{".#."});
}

// REQUIRED: the y of an edge's first end is limited by the image's width.
TYPED_TEST(Drawing, ClampingLimitsTheFirstRowByTheWidth) {
  this->Sheet(8, 4);
  // (2, 9) becomes (2, 7), which is below the image; (6, 9) becomes (6, 3).
  this->Draw({{2, 9}, {6, 9}}, {.closed = false, .clampToImage = true});
  EXPECT_EQ(this->Picture(), (Rows{"........",  //
                                   "........",  //
                                   "........",  //
                                   "......#."}));
  this->Sheet(4, 8);
  // (1, 6) becomes (1, 3); (1, 7) stays.
  this->Draw({{1, 6}, {1, 7}}, {.closed = false, .clampToImage = true});
  EXPECT_EQ(this->Picture(),
            (Rows{"....", "....", "....", ".#..", ".#..", ".#..", ".#..", ".#.."}));
}

TYPED_TEST(Drawing, ClampingLimitsToZeroBelow) {
  this->Sheet(5, 5);
  this->Draw({{-3, -7}, {4, -2}}, {.closed = false, .clampToImage = true});
  EXPECT_EQ(this->Picture(), (Rows{"#####", ".....", ".....", ".....", "....."}));
}

TYPED_TEST(Drawing, APolygonKeepsToBothClips) {
  this->Sheet(7, 6);
  this->image->SetClip({0, 0, 6, 3});
  const ZvRect clip(2, 0, 6, 5);
  this->Draw({{1, 1}, {5, 1}, {5, 4}, {1, 4}}, {.clip = &clip});
  EXPECT_EQ(this->Picture(), (Rows{".......",  //
                                   "..####.",  //
                                   ".....#.",  //
                                   ".....#.",  //
                                   ".......",  //
                                   "......."}));
}

// --- filled

TYPED_TEST(Drawing, AFilledTriangleOwnsItsUpperEdgeAndNotItsLowest) {
  this->Sheet(7, 7);
  this->Fill({{0, 0}, {6, 0}, {0, 6}});
  EXPECT_EQ(this->Picture(), (Rows{"#######",  //
                                   "######.",  //
                                   "#####..",  //
                                   "####...",  //
                                   "###....",  //
                                   "##.....",  //
                                   "......."}));
}

TYPED_TEST(Drawing, FillingClosesAnOpenPolygon) {
  this->Sheet(7, 7);
  this->Fill({{0, 0}, {6, 0}, {0, 6}}, false);
  EXPECT_EQ(this->Picture()[0], "#######");
  EXPECT_EQ(this->Picture()[5], "##.....");
}

TYPED_TEST(Drawing, ACrossedPolygonIsFilledByTheEvenOddRule) {
  this->Sheet(7, 7);
  this->Fill({{0, 0}, {6, 6}, {6, 0}, {0, 6}});
  EXPECT_EQ(this->Picture(), (Rows{"#.....#",  //
                                   "##...##",  //
                                   "###.###",  //
                                   "#######",  //
                                   "###.###",  //
                                   "##...##",  //
                                   "......."}));
}

TYPED_TEST(Drawing, AFilledPolygonIsXoredOnce) {
  this->Sheet(7, 7);
  this->Fill({{0, 0}, {6, 6}, {6, 0}, {0, 6}}, true, true);
  EXPECT_EQ(this->Picture()[3], "#######");
  EXPECT_EQ(this->Picture()[2], "###.###");
  this->Fill({{0, 0}, {6, 6}, {6, 0}, {0, 6}}, true, true);
  EXPECT_EQ(this->Picture(), Rows(7, "......."));
}

TYPED_TEST(Drawing, CrossingsLeftOfTheClipCountAtItsEdge) {
  this->Sheet(7, 3);
  this->image->SetClip({3, 0, 6, 2});
  this->Fill({{0, 0}, {5, 0}, {5, 3}, {0, 3}});
  EXPECT_EQ(this->Picture(), (Rows(3, "...###.")));
}

// REQUIRED: a crossing that the mask keeps out doesn't turn the inside on.
TYPED_TEST(Drawing, TheMaskIsAskedOnlyWhereEdgesCross) {
  this->Sheet(7, 4);
  this->Mask();
  this->mask->PutByte(255, 1, 1);  // the left crossing of row 1
  this->mask->PutByte(255, 3, 2);  // inside row 2
  this->Fill({{1, 0}, {5, 0}, {5, 3}, {1, 3}});
  EXPECT_EQ(this->Picture(), (Rows{".#####.",  //
                                   ".....#.",  // on at 5, up to the box's right side
                                   ".#####.",  //
                                   "......."}));
  EXPECT_EQ(this->PictureOf(*this->mask), (Rows{".#...#.",  //
                                                ".#...#.",  //
                                                ".#.#.#.",  //
                                                "......."}));
}

// REQUIRED: crossings are counted in a byte.
TYPED_TEST(Drawing, TwoHundredFiftySixCrossingsInOnePlaceAreNone) {
  std::vector<ZvPoint> points;
  for (int32_t i = 0; i < 128; ++i) {
    points.push_back({2, 0});
    points.push_back({2, 2});
  }
  this->Sheet(5, 3);
  this->Fill(points);
  EXPECT_EQ(this->Picture(), Rows(3, "....."));
  points.resize(254);  // an even number that a byte holds: drawn, and the inside stays off
  this->Fill(points);
  EXPECT_EQ(this->Picture(), (Rows{"..#..", "..#..", "....."}));
}

// --- feathered

TYPED_TEST(Drawing, FeatheringMixesByTheDistanceToTheNearestEdge) {
  this->Sheet(11, 11);
  this->Fill({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true, false, 4);
  // An upright edge's end stands 0.01 further right, a level one's 0.01 further down. In row 5 the
  // left edge is at 0.005 and the right one at 10.005: weights of 255 * distance / 4, truncated,
  // from 0.995, 1.995 and so on.
  const std::vector<int32_t> row = {0, 63, 127, 190, 254, 255, 255, 191, 127, 64, 0};
  // In column 5 likewise; the lowest row belongs to no edge.
  const std::vector<int32_t> column = {0, 63, 127, 190, 254, 255, 255, 191, 127, 64, 0};
  for (int32_t i = 0; i < 11; ++i) {
    EXPECT_EQ(this->At(i, 5), row[static_cast<size_t>(i)]) << "column " << i;
    EXPECT_EQ(this->At(5, i), column[static_cast<size_t>(i)]) << "row " << i;
  }
}

TYPED_TEST(Drawing, AFeatherWithinAHundredthIsNone) {
  this->Sheet(5, 3);
  this->Fill({{1, 0}, {3, 0}, {3, 2}, {1, 2}}, true, false, 0.01F);
  EXPECT_EQ(this->Picture(), (Rows{".###.", ".###.", "....."}));
}

// 255 * -d / 4 is cut to a byte: 1.995 gives -127 and so 129, 0.995 gives -63 and so 193.
TYPED_TEST(Drawing, ANegativeFeatherMixesByTheLowByteOfItsWeight) {
  this->Sheet(11, 11);
  this->Fill({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true, false, -4);
  EXPECT_EQ(this->At(1, 5), 193);
  EXPECT_EQ(this->At(2, 5), 129);
}

TYPED_TEST(Drawing, FeatheringThroughAMaskTouchesEachPixelOnce) {
  this->Sheet(11, 11);
  this->Mask();
  this->mask->PutByte(255, 5, 5);
  for (int32_t i = 0; i < 2; ++i)
    this->Fill({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true, false, 4);
  EXPECT_EQ(this->At(5, 5), 0);
  EXPECT_EQ(this->At(2, 5), 127);
}

// --- reports and bad input

// An image whose clip can be set to anything, as one that comes from a stream can have it.
class OddlyClipped final : public PixelImage<TiledImage, PxAlphaByte> {
 public:
  explicit OddlyClipped(const ZvRect& clip)
      : PixelImage(4, 4, RecordOpsOf<PxAlphaByte>(), "OddlyClipped") {
    mClippingRect = clip;
  }
  ZvImage* NewLike(bool, int32_t, int32_t) const override { return nullptr; }
};

TEST(DrawingClip, AClipThatEndsOneRowBelowTheImageIsReported) {
  const auto image = ZvSmartPtr<OddlyClipped>::Adopt(new OddlyClipped({0, 0, 3, 4}));
  const std::vector<ZvPoint> points = {{0, 0}, {3, 3}};
  ReportRecorder reports;
  image->DrawLine({0, 0}, {3, 3}, kWhite, false, nullptr, 0);
  image->DrawOval({0, 0, 3, 3}, kWhite, false, false, nullptr);
  image->DrawPolygon(2, points.data(), kWhite, false, false, false, false, false, 0, 0, nullptr,
                     nullptr);
  EXPECT_EQ(reports.Lines(),
            (Reports{"ZvTiledImage(1530) : mClippingRect.fBottom != this->Height()",
                     "ZvTiledImage(1612) : mClippingRect.fBottom != this->Height()",
                     "ZvTiledImage(1704) : mClippingRect.fBottom != this->Height()"}));
}

TEST(DrawingClip, ATiledImageIsDrawnOnWhereverItsClipLies) {
  const auto image = ZvSmartPtr<OddlyClipped>::Adopt(new OddlyClipped({-9, -9, -1, -1}));
  image->DrawLine({-20, -3}, {20, -3}, kWhite, false, nullptr, 0);
  uint8_t byte;
  image->GetByte(byte, -9, -3);
  EXPECT_EQ(byte, 255);
  image->GetByte(byte, -10, -3);
  EXPECT_EQ(byte, 0);
  image->GetByte(byte, 0, -3);
  EXPECT_EQ(byte, 0);
}

TYPED_TEST(Drawing, HugeAndFarAwayShapesCostNoMoreThanTheClip) {
  this->Sheet(64, 64);
  constexpr int32_t kFar = INT32_MAX;
  constexpr int32_t kNear = INT32_MIN;
  this->Line({kNear, kNear}, {kFar, kFar});
  this->Line({kNear, 5}, {kFar, 6}, 7);
  this->Line({kFar, kNear}, {kFar, kFar});
  this->Oval({kNear, kNear, kFar, kFar}, false);
  this->Oval({kNear, kNear, kFar, kFar}, true);
  this->Oval({10, kNear, 20, kFar}, false);
  const std::vector<ZvPoint> points = {{kNear, kNear}, {kFar, kNear}, {kFar, kFar},
                                       {kNear, kFar},  {0, 7},        {3, kFar}};
  this->Draw(points, {});
  this->Draw(points, {.clampToImage = true, .dash = INT32_MIN});
  this->Fill(points);
  this->Fill(points, true, false, 3);
  this->Fill(points, true, false, std::numeric_limits<float>::quiet_NaN());
  this->Fill(points, true, false, std::numeric_limits<float>::infinity());
  // Any of these walked in full would run into the time limit of the test programs.
  EXPECT_EQ(this->At(0, 0), 255);
}

TYPED_TEST(Drawing, AHugeDiagonalPassesThroughItsMiddle) {
  this->Sheet(5, 5);
  this->Line({-2000000000, -2000000000}, {2000000000, 2000000000});
  EXPECT_EQ(this->Picture(), (Rows{"#....", ".#...", "..#..", "...#.", "....#"}));
}

TYPED_TEST(Drawing, AnEmptyClipDrawsNothing) {
  this->Sheet(5, 2);
  this->image->SetClip({3, 0, 2, 1});
  this->Line({0, 0}, {4, 1});
  this->Oval({0, 0, 4, 1}, true);
  this->Draw({{0, 0}, {4, 0}, {4, 1}}, {});
  this->Fill({{0, 0}, {4, 0}, {4, 2}});
  this->Fill({{0, 0}, {4, 0}, {4, 2}}, true, false, 2);
  EXPECT_EQ(this->Picture(), Rows(2, "....."));
}

}  // namespace
}  // namespace vm
