#include "host/FilterRecord.h"

#include <gtest/gtest.h>

#include <vector>

// The offsets are asserted where the record is declared; here stand the numbers that both sides
// use.
namespace {

using Numbers = std::vector<int32_t>;

TEST(FilterInterface, SelectorsRunFromZeroToFive) {
  EXPECT_EQ((Numbers{filterSelectorAbout, filterSelectorParameters, filterSelectorPrepare,
                     filterSelectorStart, filterSelectorContinue, filterSelectorFinish}),
            (Numbers{0, 1, 2, 3, 4, 5}));
}

TEST(FilterInterface, ImageModesRunFromZeroToThirteen) {
  EXPECT_EQ(
      (Numbers{plugInModeBitmap, plugInModeGrayScale, plugInModeIndexedColor, plugInModeRGBColor,
               plugInModeCMYKColor, plugInModeHSLColor, plugInModeHSBColor, plugInModeMultichannel,
               plugInModeDuotone, plugInModeLabColor, plugInModeGray16, plugInModeRGB48,
               plugInModeLab48, plugInModeCMYK64}),
      (Numbers{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}));
}

TEST(FilterInterface, FilterCasesRunFromOneToSeven) {
  EXPECT_EQ((Numbers{filterCaseFlatImageNoSelection, filterCaseFlatImageWithSelection,
                     filterCaseFloatingSelection, filterCaseEditableTransparencyNoSelection,
                     filterCaseEditableTransparencyWithSelection,
                     filterCaseProtectedTransparencyNoSelection,
                     filterCaseProtectedTransparencyWithSelection}),
            (Numbers{1, 2, 3, 4, 5, 6, 7}));
}

TEST(FilterInterface, ResultsAndDialogCodesAreThePublishedOnes) {
  EXPECT_EQ((Numbers{noErr, userCanceledErr, memFullErr, filterBadParameters}),
            (Numbers{0, -128, -108, -30100}));
  EXPECT_EQ((Numbers{plugInDialogDontDisplay, plugInDialogDisplay, plugInDialogSilent}),
            (Numbers{0, 1, 2}));
  EXPECT_EQ((Numbers{plugInDialogOptional, plugInDialogRequired, plugInDialogNone}),
            (Numbers{0, 1, 2}));
  EXPECT_EQ(plugInDoesNotWantPadding, -1);
  EXPECT_EQ(kFixedOne, 65536);
}

}  // namespace
