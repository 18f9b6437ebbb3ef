#include "pictures/Scene.h"

#include <gtest/gtest.h>

#include <set>

using filter_host::Picture;

TEST(Scene, IsTheSameEveryTimeAndAsLargeAsAsked) {
  const Picture picture = pictures::MakeScene(90, 60);
  EXPECT_EQ(picture.width, 90);
  EXPECT_EQ(picture.height, 60);
  EXPECT_EQ(picture.channels, 3);
  EXPECT_EQ(picture.samples.size(), 90u * 60u * 3u);
  EXPECT_EQ(picture.samples, pictures::MakeScene(90, 60).samples);
}

TEST(Scene, HasTheTonesOfAPhotograph) {
  const Picture picture = pictures::MakeScene(300, 200);
  std::set<uint8_t> tones[3];
  for (std::size_t i = 0; i < picture.samples.size(); ++i) {
    tones[i % 3].insert(picture.samples[i]);
  }
  // From deep shade to the sun, with nearly every tone between.
  for (const std::set<uint8_t>& channel : tones) {
    EXPECT_LT(*channel.begin(), 40);
    EXPECT_GT(*channel.rbegin(), 240);
    EXPECT_GT(channel.size(), 180u);
  }
}

TEST(JoinHalves, TakesTheLeftFromBeforeAndTheRightFromAfter) {
  const Picture before{6, 1, 1, 1, 72.0, {1, 2, 3, 4, 5, 6}};
  // 16 bits: the high byte stands second in memory and is what is shown.
  const Picture after{6, 1, 3, 2, 72.0, std::vector<uint8_t>(36, 9)};
  const Picture joined = pictures::JoinHalves(before, after);
  EXPECT_EQ(joined.samples, (std::vector<uint8_t>{1, 1, 1, 2, 2, 2, 255, 255, 255,  //
                                                  255, 255, 255, 9, 9, 9, 9, 9, 9}));
  EXPECT_THROW(pictures::JoinHalves(before, Picture{5, 1, 1, 1, 72.0, {1, 2, 3, 4, 5}}),
               filter_host::Error);
}
