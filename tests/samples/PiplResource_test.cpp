#include "filter_host/PiplResource.h"

#include <gtest/gtest.h>

#include "filter_host/Picture.h"
#include "foundation/FourCharCode.h"

using namespace filter_host;

namespace {

class PiplBytes {
 public:
  explicit PiplBytes(uint32_t count) {
    Number(1, 2);
    Number(0, 4);
    Number(count, 4);
  }
  PiplBytes& Number(uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
      mBytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
    }
    return *this;
  }
  PiplBytes& Property(uint32_t key, std::vector<uint8_t> data) {
    Number(FourCC("8BIM"), 4)
        .Number(key, 4)
        .Number(0, 4)
        .Number(static_cast<uint32_t>(data.size()), 4);
    mBytes.insert(mBytes.end(), data.begin(), data.end());
    while (data.size() % 4 != 0) {
      data.push_back(0);
      mBytes.push_back(0);
    }
    return *this;
  }
  const std::vector<uint8_t>& Bytes() const { return mBytes; }

 private:
  std::vector<uint8_t> mBytes;
};

std::vector<uint8_t> Text(const std::string& text) {
  return std::vector<uint8_t>(text.begin(), text.end());
}

}  // namespace

TEST(PiplResource, TellsNameCategoryAndEntryPoint) {
  const PiplBytes bytes = PiplBytes(4)
                              .Property(FourCC("kind"), {'M', 'F', 'B', '8'})
                              .Property(FourCC("name"), Text(std::string("\x05"
                                                                         "Blur\0\0\0",
                                                                         8)))
                              .Property(FourCC("catg"), Text("\x04Soft"))
                              .Property(FourCC("wx86"), Text(std::string("Main\0\0", 6)));
  const PiplResource pipl(bytes.Bytes());
  EXPECT_TRUE(pipl.IsFilter());
  EXPECT_EQ(pipl.Name(), "Blur");  // the length 5 counts a zero byte
  EXPECT_EQ(pipl.Category(), "Soft");
  EXPECT_EQ(pipl.EntryPoint32(), "Main");
  EXPECT_EQ(pipl.Properties().size(), 4u);
  EXPECT_EQ(pipl.Find(FourCC("none")), nullptr);
}

TEST(PiplResource, ReadsTheModesFromTheHighestBitOn) {
  const PiplBytes bytes = PiplBytes(1).Property(FourCC("mode"), {0x50, 0x01});
  const PiplResource pipl(bytes.Bytes());
  for (int16_t mode = 0; mode < 20; ++mode) {
    EXPECT_EQ(pipl.AllowsMode(mode), mode == 1 || mode == 3 || mode == 15) << mode;
  }
  EXPECT_TRUE(PiplResource(PiplBytes(0).Bytes()).AllowsMode(9));
}

TEST(PiplResource, TellsHowEachFilterCaseIsServed) {
  const PiplBytes bytes = PiplBytes(1).Property(FourCC("fici"), {1, 1, 0x09, 0, 4, 2, 0x0A, 7});
  const PiplResource pipl(bytes.Bytes());
  EXPECT_EQ(pipl.CaseInfo(1)->flags1, 0x09);
  EXPECT_EQ(pipl.CaseInfo(2)->input, kMatteWhite);
  EXPECT_EQ(pipl.CaseInfo(2)->output, 2);
  EXPECT_EQ(pipl.CaseInfo(2)->flags2, 7);
  EXPECT_FALSE(pipl.CaseInfo(3).has_value());
  EXPECT_FALSE(pipl.CaseInfo(0).has_value());
}

TEST(PiplResource, ACutResourceIsRefusedAtEveryLength) {
  const PiplBytes bytes = PiplBytes(2)
                              .Property(FourCC("kind"), {'M', 'F', 'B', '8'})
                              .Property(FourCC("wx86"), Text("Main"));
  for (std::size_t length = 0; length < bytes.Bytes().size(); ++length) {
    EXPECT_THROW(PiplResource(std::span(bytes.Bytes()).first(length)), Error) << length;
  }
  EXPECT_EQ(PiplResource(bytes.Bytes()).EntryPoint32(), "Main");
}

TEST(PiplResource, AbsurdCountsAndLengthsAreRefused) {
  EXPECT_THROW(PiplResource(PiplBytes(0xFFFFFFFF).Bytes()), Error);
  PiplBytes bytes(1);
  bytes.Number(FourCC("8BIM"), 4).Number(FourCC("name"), 4).Number(0, 4).Number(0xFFFFFFFF, 4);
  EXPECT_THROW(PiplResource(bytes.Bytes()), Error);
}

TEST(PiplResource, APascalLengthBehindTheDataIsCut) {
  const PiplBytes bytes = PiplBytes(1).Property(FourCC("name"), {200, 'a', 'b', 'c'});
  EXPECT_EQ(PiplResource(bytes.Bytes()).Name(), "abc");
  EXPECT_FALSE(PiplResource(bytes.Bytes()).IsFilter());
  EXPECT_EQ(PiplResource(bytes.Bytes()).EntryPoint32(), "");
}
