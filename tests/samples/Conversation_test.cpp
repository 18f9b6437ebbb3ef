#include "effects_app/Conversation.h"

#include <gtest/gtest.h>

#include <thread>

#include "foundation/FourCharCode.h"
#include "image/ZvTiledImage.h"
#include "support/TempDirectory.h"

using namespace effects_app;
using namespace std::string_literals;

namespace {

const bool kRegistered = [] {
  RegisterReadableImages();
  return true;
}();

std::string Be32(uint32_t value) {
  return {static_cast<char>(value >> 24), static_cast<char>(value >> 16),
          static_cast<char>(value >> 8), static_cast<char>(value)};
}

// An image object: its name, size, whole clip, 72 dots, no compression, and its planes.
std::string Image(const std::string& name, uint32_t width, uint32_t height,
                  const std::string& planes) {
  return "\0"s + static_cast<char>(name.size()) + name + Be32(width) + Be32(height) + Be32(0) +
         Be32(0) + Be32(width - 1) + Be32(height - 1) + "\0\0\x90\x42\0\0\x90\x42"s + "\0"s +
         planes;
}

// A message with an optional parameter block.
std::string Exchange(uint32_t colourType, const std::string& block, const std::string& mask,
                     const std::string& image) {
  return Be32(0) + Be32(static_cast<uint32_t>(block.size())) + block + Be32(colourType) +
         (mask.empty() ? "\0"s : "\1"s + mask) + image;
}

class Talk : public testing::Test {
 protected:
  ZvString Folder() const { return (mFolder.Path() + "\\").c_str(); }
  Outcome Ask(const std::string& request) {
    mFolder.Write("Img.h", request);
    mFolder.Write("Flg.h", "\0\0\0\x0C"s);
    return Serve(Folder(), mSettings, [this](const std::string& line) { mLog += line + "\n"; });
  }
  // The reply that stands in the file must be this.
  void ExpectReply(const EffectSettings& effect, uint32_t colourType, const std::string& mask,
                   const std::string& image) {
    const std::vector<uint8_t> block = FormatParameters(effect);
    const std::string name = effect.name;
    EXPECT_EQ(mFolder.Read("Img.h"),
              Be32(static_cast<uint32_t>(name.size())) + "\0"s + static_cast<char>(name.size()) +
                  name + Be32(static_cast<uint32_t>(block.size())) +
                  std::string(block.begin(), block.end()) + Be32(colourType) +
                  (mask.empty() ? "\0"s : "\1"s + mask) + image);
  }

  vm::TempDirectory mFolder;
  AppSettings mSettings{{"Test", 0, 0, 100, 0, 0, 0}, {}, std::chrono::milliseconds(50), ""};
  std::string mLog;
};

}  // namespace

TEST_F(Talk, AnswersWithTheEffectInTheImagesOwnFormat) {
  // Planes: red 10, green 20, blue 30, alpha 40 of one pixel; doubled.
  EXPECT_EQ(Ask(Exchange(1, "", "", Image("ZvImageRgbaBytes", 1, 1, "\x0A\x14\x1E\x28"))),
            Outcome::kAnswered);
  ExpectReply(mSettings.effect, 1, "", Image("ZvImageRgbaBytes", 1, 1, "\x14\x28\x3C\x28"));
  EXPECT_EQ(mFolder.Read("Flg2.h"), "");
  EXPECT_FALSE(mFolder.Has("Flg.h"));
}

TEST_F(Talk, PassesTheMaskBackAndKeepsTheEffectInside) {
  const std::string mask = Image("ZvRowImageAlphaByte", 2, 1, "\xFF\0"s);
  EXPECT_EQ(Ask(Exchange(6, "", mask, Image("ZvImageGrayByte", 2, 1, "\x0A\x0A"))),
            Outcome::kAnswered);
  ExpectReply(mSettings.effect, 6, mask, Image("ZvImageGrayByte", 2, 1, "\x14\x0A"));
}

TEST_F(Talk, ParametersInTheRequestDecideTheEffect) {
  const EffectSettings recorded{"Recorded", 0, 0, -50, 0, 0, 0};
  const std::vector<uint8_t> block = FormatParameters(recorded);
  const std::string replayed = std::string(block.begin(), block.end()) + "\0"s;
  EXPECT_EQ(Ask(Exchange(6, replayed, "", Image("ZvImageGrayByte", 1, 1, "\x64"))),
            Outcome::kAnswered);
  ExpectReply(recorded, 6, "", Image("ZvImageGrayByte", 1, 1, "\x32"));
}

TEST_F(Talk, ParametersThatAreNotOursLeaveTheSettingsInForce) {
  EXPECT_EQ(Ask(Exchange(6, "whatever", "", Image("ZvImageGrayByte", 1, 1, "\x0A"))),
            Outcome::kAnswered);
  ExpectReply(mSettings.effect, 6, "", Image("ZvImageGrayByte", 1, 1, "\x14"));
  EXPECT_NE(mLog.find("are not ours"), std::string::npos);
}

TEST_F(Talk, SixteenBitCmykIsAnsweredWithAClassThatThePlugInKnows) {
  mSettings.effect.brightness = 0;
  // Inks 0 in every word: read as colour they are white, 0xFFFF three times; without alpha it is
  // opaque.
  EXPECT_EQ(Ask(Exchange(4, "", "", Image("ZvImageCmyka64", 1, 1, std::string(8, '\0')))),
            Outcome::kAnswered);
  ExpectReply(mSettings.effect, 4, "", Image("ZvImageRgba64", 1, 1, std::string(8, '\xFF')));
  // Black ink 255 takes all light away; the alpha word stays.
  EXPECT_EQ(Ask(Exchange(3, "", "", Image("ZvImageCmyka80", 1, 1, "\0\0\0\0\0\0\xFF\0\x34\x12"s))),
            Outcome::kAnswered);
  ExpectReply(mSettings.effect, 3, "", Image("ZvImageRgba64", 1, 1, "\0\0\0\0\0\0\x34\x12"s));
}

TEST_F(Talk, SixteenBitRgbOfThreePlanesHasRedAndBlueExchanged) {
  mSettings.effect = {"Red", 0, 0, 0, 100, 0, 0};
  const std::string words = "\x01\0\x01\0\x01\0\xFF\xFF"s;
  EXPECT_EQ(Ask(Exchange(2, "", "", Image("ZvImageRgba64", 1, 1, words))), Outcome::kAnswered);
  ExpectReply(mSettings.effect, 2, "", Image("ZvImageRgba64", 1, 1, "\x01\0\x01\0\x02\0\xFF\xFF"s));
  EXPECT_EQ(Ask(Exchange(1, "", "", Image("ZvImageRgba64", 1, 1, words))), Outcome::kAnswered);
  ExpectReply(mSettings.effect, 1, "", Image("ZvImageRgba64", 1, 1, "\x02\0\x01\0\x01\0\xFF\xFF"s));
}

TEST_F(Talk, EndsWhenNoRequestComes) {
  const Outcome outcome = Serve(Folder(), mSettings, [](const std::string&) {});
  EXPECT_EQ(outcome, Outcome::kNoRequest);
  EXPECT_FALSE(mFolder.Has("Flg2.h"));
}

TEST_F(Talk, WaitsForTheFlag) {
  mSettings.flagTimeout = std::chrono::seconds(30);
  mFolder.Write("Img.h", Exchange(6, "", "", Image("ZvImageGrayByte", 1, 1, "\x0A")));
  std::thread late([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    EXPECT_FALSE(mFolder.Has("Flg2.h"));
    mFolder.Write("Flg.h", "\0\0\0\x0C"s);
  });
  EXPECT_EQ(Serve(Folder(), mSettings, [](const std::string&) {}), Outcome::kAnswered);
  late.join();
}

TEST_F(Talk, LeavesANewerRequestAlone) {
  mSettings.delay = std::chrono::milliseconds(300);
  const std::string newer = Exchange(6, "", "", Image("ZvImageGrayByte", 2, 1, "\x01\x02"));
  std::thread user([&] {
    while (mFolder.Has("Flg.h") || !mFolder.Has("Img.h")) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    mFolder.Write("Img.h", newer);
    mFolder.Write("Flg.h", "\0\0\0\x0C"s);
  });
  mFolder.Write("Img.h", Exchange(6, "", "", Image("ZvImageGrayByte", 1, 1, "\x0A")));
  mFolder.Write("Flg.h", "\0\0\0\x0C"s);
  const Outcome outcome = Serve(Folder(), mSettings, [](const std::string&) {});
  user.join();
  EXPECT_EQ(outcome, Outcome::kNewerRequest);
  EXPECT_EQ(mFolder.Read("Img.h"), newer);
  EXPECT_TRUE(mFolder.Has("Flg.h"));
  EXPECT_FALSE(mFolder.Has("Flg2.h"));
}

TEST_F(Talk, ARequestWithoutAnImageIsNotAnswered) {
  EXPECT_EQ(Ask(""), Outcome::kUnreadable);
  EXPECT_FALSE(mFolder.Has("Flg2.h"));
  EXPECT_EQ(Ask(Be32(0) + Be32(0x7FFFFFFF) + Be32(6)), Outcome::kUnreadable);
  EXPECT_FALSE(mFolder.Has("Flg.h"));
}
