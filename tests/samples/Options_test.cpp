#include "filter_host/Options.h"

#include <gtest/gtest.h>

using namespace filter_host;

namespace {

std::string OptionError(const std::vector<std::string>& arguments) {
  try {
    ParseOptions(arguments);
  } catch (const Error& error) {
    return error.what();
  }
  return "no error";
}

std::vector<std::string> WithFiles(std::vector<std::string> options) {
  options.insert(options.end(), {"f.8bf", "in.png", "out.png"});
  return options;
}

}  // namespace

TEST(Options, ThreeNamesAreEnough) {
  const Options options = ParseOptions({"f.8bf", "in.png", "out.png"});
  EXPECT_EQ(options.plugin, "f.8bf");
  EXPECT_EQ(options.input, "in.png");
  EXPECT_EQ(options.output, "out.png");
  EXPECT_EQ(options.format, nullptr);
  EXPECT_TRUE(options.askParameters);
  EXPECT_EQ(options.runs, 1);
  EXPECT_EQ(options.session.playInfo, plugInDialogDisplay);
}

TEST(Options, TakeEveryValue) {
  const Options options = ParseOptions(WithFiles(
      {"--mode",        "cmyka80", "--mask",        "m.png",   "--filter-rect",  "selection",
       "--filter-case", "7",       "--play-info",   "silent",  "--record",       "r",
       "--runs",        "3",       "--abort-after", "250",     "--row-padding",  "3",
       "--without",     "abort",   "--without",     "display", "--fail-advance", "2-4:-108",
       "--pick-colour", "1,2,255", "--foreground",  "255,0,1", "--image-mode",   "9",
       "--selector",    "-1",      "--trace"}));
  EXPECT_STREQ(options.format->name, "cmyka80");
  EXPECT_TRUE(options.selectionBounds);
  EXPECT_EQ(options.session.filterCase, 7);
  EXPECT_EQ(options.session.playInfo, plugInDialogSilent);
  EXPECT_EQ(options.runs, 3);
  EXPECT_EQ(options.session.abortAfter, std::chrono::milliseconds(250));
  EXPECT_EQ(options.session.rowPadding, 3);
  EXPECT_TRUE(options.session.withoutAbort);
  EXPECT_TRUE(options.session.withoutDisplay);
  EXPECT_FALSE(options.session.withoutProgress);
  EXPECT_EQ(options.session.failAdvanceFirst, 2);
  EXPECT_EQ(options.session.failAdvanceLast, 4);
  EXPECT_EQ(options.session.failAdvanceWith, -108);
  EXPECT_EQ((*options.session.pickedColour)[2], 255);
  EXPECT_EQ(options.session.foreground[0], 0xFFFF);
  EXPECT_EQ(options.session.foreground[2], 0x0101);
  EXPECT_EQ(options.session.imageMode, 9);
  EXPECT_EQ(options.extraSelectors, (std::vector<int16_t>{-1}));
  EXPECT_TRUE(options.trace);
}

TEST(Options, AReplayAsksNothing) {
  const Options replay = ParseOptions(WithFiles({"--replay", "r"}));
  EXPECT_FALSE(replay.askParameters);
  EXPECT_EQ(replay.session.playInfo, plugInDialogDontDisplay);
  const Options shown = ParseOptions(WithFiles({"--play-info", "display", "--replay", "r"}));
  EXPECT_EQ(shown.session.playInfo, plugInDialogDisplay);
}

TEST(Options, OneLineSaysWhatIsWrong) {
  EXPECT_NE(OptionError({}).find("wants three arguments"), std::string::npos);
  EXPECT_NE(OptionError({"--info"}).find("wants one argument"), std::string::npos);
  EXPECT_EQ(OptionError({"--colour"}), "unknown option '--colour'; --help lists them");
  EXPECT_EQ(OptionError({"--mode"}), "--mode wants a value");
  EXPECT_NE(OptionError({"--mode", "lab"}).find("not 'lab'"), std::string::npos);
  EXPECT_EQ(OptionError({"--filter-case", "8"}),
            "--filter-case wants a number from 1 to 7, not '8'");
  EXPECT_EQ(OptionError({"--runs", "2x"}), "--runs wants a number from 1 to 1000, not '2x'");
  EXPECT_EQ(OptionError({"--runs", ""}), "--runs wants a number from 1 to 1000, not ''");
  EXPECT_NE(OptionError({"--fail-advance", "3"}).find("FIRST[-LAST]:CODE"), std::string::npos);
  EXPECT_NE(OptionError({"--pick-colour", "1,2"}).find("RED,GREEN,BLUE"), std::string::npos);
  EXPECT_NE(OptionError({"--pick-colour", "1,2,256"}).find("0 to 255"), std::string::npos);
  EXPECT_NE(OptionError({"--without", "hands"}).find("not 'hands'"), std::string::npos);
  EXPECT_NE(OptionError({"--play-info", "x"}).find("not 'x'"), std::string::npos);
  EXPECT_EQ(OptionError(WithFiles({"--filter-rect", "selection"})),
            "--filter-rect selection wants a --mask");
  for (const std::string& message :
       {OptionError({}), OptionError({"--mode", "lab"}), OptionError({"--without", "hands"})}) {
    EXPECT_EQ(message.find('\n'), std::string::npos);
  }
}

TEST(Options, HelpNamesEveryOptionAndMode) {
  const std::string help = HelpText();
  for (const char* name :
       {"--mode",        "--mask",       "--filter-rect", "--filter-case", "--foreground",
        "--background",  "--record",     "--replay",      "--play-info",   "--no-parameters",
        "--trace",       "--window",     "--cd",          "--runs",        "--abort-after",
        "--pick-colour", "--image-mode", "--row-padding", "--without",     "--fail-advance",
        "--selector",    "--info",       "--about"}) {
    EXPECT_NE(help.find(name), std::string::npos) << name;
  }
  for (const PlaneFormat& format : PlaneFormats()) {
    EXPECT_NE(help.find(format.name), std::string::npos) << format.name;
  }
  EXPECT_TRUE(ParseOptions({"--help"}).help);
}

TEST(Options, TheNaturalFormatFollowsThePicture) {
  EXPECT_STREQ(NaturalFormat(Picture{1, 1, 1, 1, 72, {0}}).name, "gray");
  EXPECT_STREQ(NaturalFormat(Picture{1, 1, 4, 1, 72, {0, 0, 0, 0}}).name, "rgba");
  EXPECT_STREQ(NaturalFormat(Picture{1, 1, 3, 2, 72, {0, 0, 0, 0, 0, 0}}).name, "rgb48");
}
