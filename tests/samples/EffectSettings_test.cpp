#include "effects_app/EffectSettings.h"

#include <gtest/gtest.h>

using namespace effects_app;

namespace {

std::vector<uint8_t> Block(const std::string& text) {
  std::vector<uint8_t> block(text.begin(), text.end());
  block.push_back(0);
  return block;
}

std::string FileError(const std::string& text) {
  try {
    ParseSettingsFile(text);
  } catch (const SettingsError& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace

TEST(EffectParameters, AreTextWithAZeroByteBehind) {
  const EffectSettings settings{"Golden Hour", 1, -2, 3, 4, 5, -6};
  EXPECT_EQ(FormatParameters(settings),
            Block("velvetmoor-effect 1;name=Golden "
                  "Hour;sharpen=1;saturation=-2;brightness=3;red=4;green=5;blue=-6"));
  EXPECT_EQ(ParseParameters(FormatParameters(settings)), settings);
}

TEST(EffectParameters, SurviveTheLossOfTheLastByteAndTheBytesThatAReplayAdds) {
  const EffectSettings settings{"X", 10, 20, 30, 40, 50, 60};
  std::vector<uint8_t> block = FormatParameters(settings);
  // A recorded block loses its last byte; the replayed one has a zero byte there and one more.
  block.pop_back();
  block.insert(block.end(), {0, 0});
  EXPECT_EQ(ParseParameters(block), settings);
}

TEST(EffectParameters, ABlockThatIsCutAnywhereIsRefusedOrWhole) {
  const EffectSettings settings{"Name", 10, 20, 30, 40, 50, 6};
  const std::vector<uint8_t> whole = FormatParameters(settings);
  for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
    const std::vector<uint8_t> cut(whole.begin(),
                                   whole.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_FALSE(ParseParameters(cut).has_value()) << length;
  }
}

TEST(EffectParameters, AnythingElseIsRefused) {
  const std::string good =
      "velvetmoor-effect 1;name=a;sharpen=1;saturation=2;brightness=3;red=4;green=5;blue=6";
  EXPECT_TRUE(ParseParameters(Block(good)).has_value());
  EXPECT_FALSE(ParseParameters(Block("velvetmoor-effect 2" + good.substr(19))).has_value());
  EXPECT_FALSE(ParseParameters(Block(good + ";hue=3")).has_value());
  EXPECT_FALSE(ParseParameters(Block(good + "0000000000")).has_value());
  EXPECT_FALSE(ParseParameters(Block(good + "x")).has_value());
  EXPECT_FALSE(ParseParameters({}).has_value());
  EXPECT_FALSE(ParseParameters({0xFF, 0x00, 0x10}).has_value());
}

TEST(SettingsFile, ChangesWhatItNamesAndLeavesTheRest) {
  const AppSettings settings = ParseSettingsFile(
      "# mine\r\n\r\nname = Golden Hour\r\n  sharpen=0\nblue = -100\ndelay-ms = 250\n"
      "flag-timeout-ms = 40\nlog = Vm.log");
  EXPECT_EQ(settings.effect.name, "Golden Hour");
  EXPECT_EQ(settings.effect.sharpen, 0);
  EXPECT_EQ(settings.effect.blue, -100);
  EXPECT_EQ(settings.effect.red, EffectSettings().red);
  EXPECT_EQ(settings.delay, std::chrono::milliseconds(250));
  EXPECT_EQ(settings.flagTimeout, std::chrono::milliseconds(40));
  EXPECT_EQ(settings.log, "Vm.log");
  EXPECT_EQ(ParseSettingsFile("").effect, EffectSettings());
}

TEST(SettingsFile, SaysWhichLineIsWrong) {
  EXPECT_EQ(FileError("red = 1\nred = 101\n"), "line 2: 'red = 101' is no setting");
  EXPECT_EQ(FileError("hue = 3"), "line 1: 'hue = 3' is no setting");
  EXPECT_EQ(FileError("delay-ms = soon"), "line 1: 'delay-ms = soon' is no setting");
  EXPECT_EQ(FileError("delay-ms = -1"), "line 1: 'delay-ms = -1' is no setting");
  EXPECT_EQ(FileError("name = a;b"), "line 1: 'name = a;b' is no setting");
  EXPECT_EQ(FileError("nonsense"), "line 1: 'nonsense = ' is no setting");
}
