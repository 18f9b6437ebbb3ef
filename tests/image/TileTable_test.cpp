#include "image/TileTable.h"

#include <set>

#include "image/ImageTestSupport.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

TEST(TileTable, WalksSquareShellsAroundTheOrigin) {
  // Codes: 0 -> 0, -1 -> 1, 1 -> 2, -2 -> 3. Index b*b + b + 1 + a for a < b, else a*a + b.
  EXPECT_EQ(TileTable::IndexOf(0, 0), 0);
  EXPECT_EQ(TileTable::IndexOf(-1, 0), 1);   // a 1, b 0
  EXPECT_EQ(TileTable::IndexOf(-1, -1), 2);  // a 1, b 1
  EXPECT_EQ(TileTable::IndexOf(0, -1), 3);   // a 0, b 1: 1 + 1 + 1 + 0
  EXPECT_EQ(TileTable::IndexOf(1, 0), 4);    // a 2, b 0
  EXPECT_EQ(TileTable::IndexOf(1, 1), 6);    // a 2, b 2
  EXPECT_EQ(TileTable::IndexOf(0, 1), 7);    // a 0, b 2: 4 + 2 + 1 + 0
  EXPECT_EQ(TileTable::IndexOf(-1, 1), 8);   // a 1, b 2
  EXPECT_EQ(TileTable::IndexOf(-2, 0), 9);   // a 3, b 0
}

TEST(TileTable, GivesEachTileOfAShellItsOwnIndex) {
  std::set<int64_t> indices;
  for (int32_t y = -10; y < 10; ++y) {
    for (int32_t x = -10; x < 10; ++x)
      indices.insert(TileTable::IndexOf(x, y));
  }
  EXPECT_EQ(indices.size(), 400u);
  EXPECT_EQ(*indices.begin(), 0);
  EXPECT_EQ(*indices.rbegin(), 399);
}

TEST(TileTable, HasTilesOfThePackedSize) {
  EXPECT_EQ(TileTable(24).TileBytes(), 49152u);
  EXPECT_EQ(TileTable(1).TileBytes(), 2048u);
  EXPECT_EQ(TileTable(80).TileBytes(), 163840u);
}

TEST(TileTable, IsAsLongAsItsHighestIndexAsksFor) {
  TileTable table(8);
  EXPECT_EQ(table.Size(), 0u);
  table.Make(-1, -1);
  EXPECT_EQ(table.Size(), 3u);  // codes (1, 1), index 2
  table.Make(0, 0);
  EXPECT_EQ(table.Size(), 3u);
  EXPECT_EQ(table.TileCount(), 2u);
  // The square of two by two tiles is full up to index 3; the next one lies in the next shell.
  table.Make(0, -1);
  EXPECT_EQ(table.Size(), 4u);
  table.Make(128, 0);
  EXPECT_EQ(table.Size(), 5u);
}

TEST(TileTable, FindsNothingWithoutMaking) {
  TileTable table(8);
  EXPECT_EQ(table.Find(0, 0), nullptr);
  EXPECT_EQ(table.Find(-2000000000, 2000000000), nullptr);
  EXPECT_EQ(table.Size(), 0u);
  table.Make(300, 300);
  EXPECT_EQ(table.Find(0, 0), nullptr);
  EXPECT_NE(table.Find(256, 383), nullptr);
  EXPECT_EQ(table.Find(255, 383), nullptr);
}

TEST(TileTable, FillsANewTileWithZeros) {
  TileTable table(24);
  const uint8_t* const tile = table.Make(5, 5);
  for (size_t i = 0; i < table.TileBytes(); ++i)
    ASSERT_EQ(tile[i], 0);
}

TEST(TileTable, RefusesWhatLiesTooFarOut) {
  ReportRecorder reports;
  TileTable table(8);
  // The tile at x code 16384 has index 2^28 and is the last one that can be had.
  EXPECT_NE(table.Make(8192 * 128, 0), nullptr);
  EXPECT_TRUE(reports.Empty());
  EXPECT_EQ(table.Make(8193 * 128, 0), nullptr);
  EXPECT_EQ(table.Make(INT32_MIN, INT32_MAX), nullptr);
  ASSERT_EQ(reports.Lines().size(), 2u);
  EXPECT_NE(reports.Lines()[0].find("ZvTiledImage("), std::string::npos);
  EXPECT_NE(reports.Lines()[0].find("x >= 0"), std::string::npos);
  EXPECT_EQ(table.TileCount(), 1u);
}

TEST(TileTable, DecodesOnlyTheFirstTileToWhereItLies) {
  // Index 0: s 0, not above s*s+s, so a = -1 (odd: -1 - (-1 >> 1) = 0) and b = 0.
  EXPECT_EQ(TileTable::DecodedArea(0), ZvRect(0, 0, 127, 127));
  // Index 1: s 1, a = 1 - 1 - 1 - 1 = -2 (even: -1), b = 1 (odd: -1).
  EXPECT_EQ(TileTable::DecodedArea(1), ZvRect(-128, -128, -1, -1));
  // Index 2: s 1, a = -1 (0), b = 1 (-1).
  EXPECT_EQ(TileTable::DecodedArea(2), ZvRect(0, -128, 127, -1));
  // Index 3: s 1, above 2: a = s = 1 (-1), b = 3 - 1 = 2 (1).
  EXPECT_EQ(TileTable::DecodedArea(3), ZvRect(-128, 128, -1, 255));
  // Index 4: s 2, a = 4 - 4 - 2 - 1 = -3 (odd: -1 - (-3 >> 1) = -1 + 2 = 1), b = 2 (1).
  EXPECT_EQ(TileTable::DecodedArea(4), ZvRect(128, 128, 255, 255));
}

TEST(TileTable, SharesTilesAndFreesThemWithTheLastHolder) {
  TileTable first(8);
  first.Make(0, 0)[7] = 42;
  {
    TileTable second(8);
    second.Make(1000, 1000);
    second.ShareTilesOf(first);
    EXPECT_EQ(second.Find(0, 0), first.Find(0, 0));
    EXPECT_EQ(second.Find(1000, 1000), nullptr);
    EXPECT_EQ(second.Size(), 1u);
    second.Find(0, 0)[7] = 43;
    first.Clear();
    EXPECT_EQ(second.Find(0, 0)[7], 43);
    first.ShareTilesOf(second);
  }
  EXPECT_EQ(first.Find(0, 0)[7], 43);
}

}  // namespace
}  // namespace vm
