#include "image/RecordOps.h"

#include <algorithm>
#include <utility>

#include "image/kernels/RowTestSupport.h"
#include "support/ReportRecorder.h"

namespace {

using namespace vm::test;
using vm::RecordOps;
using vm::RecordOpsOf;

constexpr uint8_t kGuard = 0xA5;

template <class P>
class RecordOpsTable : public ::testing::Test {
 protected:
  const RecordOps& mOps = RecordOpsOf<P>();

  // Whether reading a row by `read` gives for each record what `rule` gives, and writes nothing
  // behind it.
  template <class View, class Read, class Rule>
  static void ReadsAs(Read read, Rule rule) {
    for (const auto& row : Rows<P>()) {
      std::vector<View> views(row.size() + 1);
      std::memset(static_cast<void*>(views.data()), kGuard, views.size() * sizeof(View));
      std::vector<View> expected = views;
      read(row.data(), views.data(), row.size());
      for (size_t i = 0; i < row.size(); ++i)
        expected[i] = rule(row[i]);
      ASSERT_TRUE(std::memcmp(views.data(), expected.data(), views.size() * sizeof(View)) == 0)
          << row.size() << " records, " << vm::SeedHint();
    }
  }

  // Whether writing views by `write` leaves in each record what `rule` leaves in it.
  template <class View, class Write, class Rule>
  static void WritesAs(const std::vector<std::vector<View>>& inputs, Write write, Rule rule) {
    for (const auto& views : inputs) {
      auto row = RandomRow<P>(views.size() + 1, 700);
      auto expected = row;
      write(views.data(), row.data(), views.size());
      for (size_t i = 0; i < views.size(); ++i)
        rule(expected[i], views[i]);
      ASSERT_TRUE(SameRows(row, expected));
    }
  }

  // Whether `blend` changes each record of a row, given a source row, as `rule` does.
  template <class Blend, class Rule>
  static void BlendsAs(Blend blend, Rule rule) {
    for (const auto& original : Rows<P>()) {
      const auto source = RandomRow<P>(original.size(), 701);
      auto row = original;
      auto expected = original;
      blend(row.data(), source.data(), row.size());
      for (size_t i = 0; i < row.size(); ++i)
        rule(expected[i], source[i]);
      ASSERT_TRUE(SameRows(row, expected));
    }
  }
};
TYPED_TEST_SUITE(RecordOpsTable, AllRecords, RecordNames);

// Every byte, and random ones in the other lengths.
std::vector<std::vector<uint8_t>> RowsOfBytes() {
  std::vector<std::vector<uint8_t>> rows;
  for (const auto& row : Rows<PxGrayByte>()) {
    rows.emplace_back();
    for (const PxGrayByte& pixel : row)
      rows.back().push_back(pixel.gray);
  }
  return rows;
}

TYPED_TEST(RecordOpsTable, CarriesTheFiguresOfTheRecord) {
  const RecordOps& ops = this->mOps;
  EXPECT_STREQ(ops.name, TypeParam::kName);
  EXPECT_EQ(ops.bitsPerPixel, TypeParam::kInfo.bitsPerPixel);
  EXPECT_EQ(ops.bytesPerPixel, TypeParam::kInfo.bytesPerPixel);
  EXPECT_EQ(ops.bitsPerChannel, TypeParam::kInfo.bitsPerChannel);
  EXPECT_EQ(ops.channels, TypeParam::kInfo.channels);
  EXPECT_EQ(ops.kind, TypeParam::kInfo.kind);
  EXPECT_EQ(ops.model, TypeParam::kInfo.model);
  EXPECT_EQ(ops.hasAlpha, TypeParam::kInfo.hasAlpha);
  EXPECT_EQ(ops.size, sizeof(TypeParam));
  EXPECT_EQ(ops.align, alignof(TypeParam));
  EXPECT_LE(ops.size, vm::kMaxRecordBytes);
  EXPECT_EQ(ops.packed, (std::is_same_v<TypeParam, PxGrayBit>));
}

TYPED_TEST(RecordOpsTable, ReadsEachViewAsTheRecordDoes) {
  const RecordOps& ops = this->mOps;
  this->template ReadsAs<PxRgbaBytes>(ops.toRgba, [](const TypeParam& p) { return p.GetRgba(); });
  this->template ReadsAs<uint8_t>(ops.toByte, [](const TypeParam& p) { return p.GetByte(); });
  this->template ReadsAs<PxRgba64>(ops.toRgba64, [](const TypeParam& p) { return p.GetRgba64(); });
  if constexpr (!std::is_same_v<TypeParam, PxCmykBytes>)
    this->template ReadsAs<PxRgbBytes>(ops.toRgb, [](const TypeParam& p) { return p.GetRgb(); });
}

TYPED_TEST(RecordOpsTable, WritesEachViewAsTheRecordDoes) {
  const RecordOps& ops = this->mOps;
  this->WritesAs(RowsOfBytes(), ops.fromByte, [](TypeParam& p, uint8_t in) { p.PutByte(in); });
  this->WritesAs(Rows<PxRgba64>(), ops.fromRgba64,
                 [](TypeParam& p, const PxRgba64& in) { p.PutRgba64(in); });
  if constexpr (!std::is_same_v<TypeParam, PxCmykBytes>) {
    this->WritesAs(Rows<PxRgbaBytes>(), ops.fromRgba,
                   [](TypeParam& p, const PxRgbaBytes& in) { p.PutRgba(in); });
    this->WritesAs(Rows<PxRgbBytes>(), ops.fromRgb,
                   [](TypeParam& p, const PxRgbBytes& in) { p.PutRgb(in); });
  }
}

TYPED_TEST(RecordOpsTable, GathersAndScattersEachChannelAsTheRecordDoes) {
  const RecordOps& ops = this->mOps;
  constexpr size_t kBytes = (TypeParam::kInfo.bitsPerChannel + 7) / 8;
  for (int32_t channel = -1; channel <= 5; ++channel) {
    const auto row = RandomRow<TypeParam>(300, 702);
    std::vector<uint8_t> samples((row.size() + 1) * kBytes, kGuard);
    std::vector<uint8_t> expected = samples;
    ops.gather(row.data(), samples.data(), row.size(), channel);
    for (size_t i = 0; i < row.size(); ++i)
      row[i].GetChannel(expected.data() + i * kBytes, channel);
    ASSERT_EQ(samples, expected) << "channel " << channel << ", " << vm::SeedHint();

    auto target = RandomRow<TypeParam>(300, 703);
    auto expectedTarget = target;
    ops.scatter(samples.data(), target.data(), target.size(), channel);
    for (size_t i = 0; i < target.size(); ++i)
      expectedTarget[i].PutChannel(samples.data() + i * kBytes, channel);
    ASSERT_TRUE(SameRows(target, expectedTarget)) << "channel " << channel;
  }
}

TYPED_TEST(RecordOpsTable, BlendsAndInvertsAsTheRecordDoes) {
  const RecordOps& ops = this->mOps;
  for (const float t : {0.0F, 0.3F, 0.5F, 0.99F, 1.0F}) {
    SCOPED_TRACE(t);
    this->BlendsAs(
        [&](TypeParam* row, const TypeParam* from, size_t n) { ops.mix255(row, from, n, t); },
        [t](TypeParam& p, const TypeParam& from) { p.Mix255(from, t); });
    this->BlendsAs(
        [&](TypeParam* row, const TypeParam* from, size_t n) { ops.mix256(row, from, n, t); },
        [t](TypeParam& p, const TypeParam& from) { p.Mix256(from, t); });
    if constexpr (vm::Compositing<TypeParam>) {
      this->BlendsAs([&](TypeParam* row, const TypeParam* from,
                         size_t n) { ops.compositeBy(row, from, n, t); },
                     [t](TypeParam& p, const TypeParam& from) { p.Composite(from, t); });
    }
  }
  if constexpr (vm::Compositing<TypeParam>) {
    this->BlendsAs(
        [&](TypeParam* row, const TypeParam* from, size_t n) { ops.composite(row, from, n); },
        [](TypeParam& p, const TypeParam& from) { p.Composite(from); });
  }
  this->BlendsAs([&](TypeParam* row, const TypeParam*, size_t n) { ops.invert(row, n); },
                 [](TypeParam& p, const TypeParam&) { p.Invert(); });
}

TYPED_TEST(RecordOpsTable, CompositesWhereTheRecordDoesAndOnlyThere) {
  EXPECT_EQ(this->mOps.composite != nullptr, vm::Compositing<TypeParam>);
  EXPECT_EQ(this->mOps.compositeBy != nullptr, vm::Compositing<TypeParam>);
}

// Transfers between images of one type copy bytes where these say that the view would keep them.
TYPED_TEST(RecordOpsTable, ARecordThatIsSaidToBeKeptByAViewIsKept) {
  const RecordOps& ops = this->mOps;
  for (const auto& row : Rows<TypeParam>()) {
    if (ops.keptByRgba) {
      std::vector<PxRgbaBytes> views(row.size());
      auto back = RandomRow<TypeParam>(row.size(), 704);
      ops.toRgba(row.data(), views.data(), row.size());
      ops.fromRgba(views.data(), back.data(), row.size());
      ASSERT_TRUE(SameRows(back, row));
    }
    if (ops.keptByRgba64) {
      std::vector<PxRgba64> views(row.size());
      auto back = RandomRow<TypeParam>(row.size(), 705);
      ops.toRgba64(row.data(), views.data(), row.size());
      ops.fromRgba64(views.data(), back.data(), row.size());
      ASSERT_TRUE(SameRows(back, row));
    }
  }
}

// The records on the road of a filter run, for every value that they can hold.

TEST(RecordOpsOfEveryValue, RgbBytesReadAndComeBackThroughTheViews) {
  const RecordOps& ops = RecordOpsOf<PxRgbBytes>();
  constexpr size_t kCount = 0x10000;
  std::vector<PxRgbBytes> row(kCount);
  std::vector<PxRgbBytes> back(kCount);
  std::vector<uint8_t> bytes(kCount);
  std::vector<PxRgbaBytes> rgba(kCount);
  std::vector<PxRgba64> rgba64(kCount);
  for (uint32_t red = 0; red < 256; ++red) {
    for (uint32_t i = 0; i < kCount; ++i)
      row[i] = PxRgbBytes::Of(static_cast<uint8_t>(red), static_cast<uint8_t>(i >> 8),
                              static_cast<uint8_t>(i));
    ops.toByte(row.data(), bytes.data(), kCount);
    ops.toRgba(row.data(), rgba.data(), kCount);
    ops.toRgba64(row.data(), rgba64.data(), kCount);
    uint32_t wrong = 0;
    for (uint32_t i = 0; i < kCount; ++i) {
      const uint32_t g = i >> 8;
      const uint32_t b = i & 0xFF;
      wrong += bytes[i] != (red + g + b) / 3;
      wrong +=
          rgba[i].red != red || rgba[i].green != g || rgba[i].blue != b || rgba[i].alpha != 255;
      wrong += rgba64[i].red != red * 257 || rgba64[i].green != g * 257 ||
               rgba64[i].blue != b * 257 || rgba64[i].alpha != 0xFFFF;
    }
    ASSERT_EQ(wrong, 0U) << "red " << red;
    ops.fromRgba(rgba.data(), back.data(), kCount);
    ASSERT_TRUE(std::memcmp(back.data(), row.data(), kCount * 3) == 0) << "red " << red;
    ops.fromRgba64(rgba64.data(), back.data(), kCount);
    ASSERT_TRUE(std::memcmp(back.data(), row.data(), kCount * 3) == 0) << "red " << red;
  }
}

TEST(RecordOpsOfEveryValue, GrayIsTheTruncatedAverageOfEveryColour) {
  const RecordOps& gray = RecordOpsOf<PxGrayByte>();
  const RecordOps& bit = RecordOpsOf<PxGrayBit>();
  constexpr size_t kCount = 0x10000;
  std::vector<PxRgbaBytes> views(kCount);
  std::vector<PxGrayByte> grays(kCount);
  std::vector<PxGrayBit> bits(kCount);
  for (uint32_t red = 0; red < 256; ++red) {
    for (uint32_t i = 0; i < kCount; ++i)
      views[i] = PxRgbaBytes::Of(static_cast<uint8_t>(red), static_cast<uint8_t>(i >> 8),
                                 static_cast<uint8_t>(i), static_cast<uint8_t>(i * 7));
    gray.fromRgba(views.data(), grays.data(), kCount);
    bit.fromRgba(views.data(), bits.data(), kCount);
    uint32_t wrong = 0;
    for (uint32_t i = 0; i < kCount; ++i) {
      const uint32_t sum = red + (i >> 8) + (i & 0xFF);
      wrong += grays[i].gray != sum / 3;
      wrong += bits[i].value != (sum > 382 ? 1 : 0);
    }
    ASSERT_EQ(wrong, 0U) << "red " << red;
  }
}

TEST(RecordOpsOfEveryValue, WordsNarrowToTheirHighByteInEveryChannel) {
  constexpr size_t kCount = 0x10000;
  std::vector<PxRgba64> words(kCount);
  std::vector<PxRgbaBytes> bytes(kCount);
  for (uint32_t i = 0; i < kCount; ++i) {
    const auto word = [i](uint32_t offset) { return static_cast<uint16_t>(i + offset); };
    words[i] = {word(0), word(1), word(2), word(3)};
  }
  const auto expectNarrowed = [&] {
    for (uint32_t i = 0; i < kCount; ++i) {
      ASSERT_EQ(
          bytes[i],
          PxRgbaBytes::Of(static_cast<uint8_t>(i >> 8), static_cast<uint8_t>((i + 1) >> 8),
                          static_cast<uint8_t>((i + 2) >> 8), static_cast<uint8_t>((i + 3) >> 8)));
    }
  };
  RecordOpsOf<PxRgba64>().toRgba(words.data(), bytes.data(), kCount);
  expectNarrowed();
  std::fill(bytes.begin(), bytes.end(), PxRgbaBytes{});
  RecordOpsOf<PxRgbaBytes>().fromRgba64(words.data(), bytes.data(), kCount);
  expectNarrowed();
}

// PxCmykBytes can't be read as RGB or written from colour.

TEST(RecordOpsOfCmykBytes, ReadingRgbReportsEachRecordAndLeavesWhatTheCallerHas) {
  const std::vector<PxCmykBytes> row(3, {1, 2, 3, 4});
  std::vector<PxRgbBytes> views(3, {7, 8, 9});
  vm::ReportRecorder reports;
  RecordOpsOf<PxCmykBytes>().toRgb(row.data(), views.data(), 3);
  EXPECT_EQ(reports.Lines(), vm::Reports(3, "ZvCmykPixels(210) : 0"));
  EXPECT_EQ(views, std::vector<PxRgbBytes>(3, {7, 8, 9}));
}

TEST(RecordOpsOfCmykBytes, WritingBytesReportsEachRecordAndKeepsItsInks) {
  std::vector<PxCmykBytes> row(2, {1, 2, 3, 4});
  vm::ReportRecorder reports;
  const std::vector<PxRgbaBytes> rgba(2);
  RecordOpsOf<PxCmykBytes>().fromRgba(rgba.data(), row.data(), 2);
  EXPECT_EQ(reports.Lines(), vm::Reports(2, "ZvCmykPixels(226) : 0"));
  reports.Clear();
  const std::vector<PxRgbBytes> rgb(2);
  RecordOpsOf<PxCmykBytes>().fromRgb(rgb.data(), row.data(), 2);
  EXPECT_EQ(reports.Lines(), vm::Reports(2, "ZvCmykPixels(233) : 0"));
  EXPECT_EQ(row, std::vector<PxCmykBytes>(2, {1, 2, 3, 4}));
}

TYPED_TEST(RecordOpsTable, SaysOfWhichTypeAloneColourCannotBeWritten) {
  EXPECT_EQ(this->mOps.takesRgba64, (!std::is_same_v<TypeParam, PxCmykBytes>));
}

TEST(RecordOpsOfCmykBytes, WritingWordsKeepsTheInksInSilence) {
  std::vector<PxCmykBytes> row(2, {1, 2, 3, 4});
  const std::vector<PxRgba64> words(2, kRgba64White);
  vm::ReportRecorder reports;
  RecordOpsOf<PxCmykBytes>().fromRgba64(words.data(), row.data(), 2);
  EXPECT_EQ(row, std::vector<PxCmykBytes>(2, {1, 2, 3, 4}));
  EXPECT_TRUE(reports.Empty());
}

}  // namespace
