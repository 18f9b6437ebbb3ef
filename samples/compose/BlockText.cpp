#include "compose/BlockText.h"

#include <algorithm>
#include <array>

#include "image/pixels/PxRecords.h"
#include "image/ZvTiledImage.h"

namespace compose {

namespace {

constexpr int32_t kLetterWidth = 5;
constexpr int32_t kLetterHeight = 7;
constexpr int32_t kAdvance = kLetterWidth + 1;

struct Letter {
  char character;
  std::array<const char*, kLetterHeight> rows;
};

constexpr Letter kLetters[] = {
    {'D', {"####.", "#...#", "#...#", "#...#", "#...#", "#...#", "####."}},
    {'E', {"#####", "#....", "#....", "####.", "#....", "#....", "#####"}},
    {'L', {"#....", "#....", "#....", "#....", "#....", "#....", "#####"}},
    {'M', {"#...#", "##.##", "#.#.#", "#...#", "#...#", "#...#", "#...#"}},
    {'O', {".###.", "#...#", "#...#", "#...#", "#...#", "#...#", ".###."}},
    {'R', {"####.", "#...#", "#...#", "####.", "#.#..", "#..#.", "#...#"}},
    {'T', {"#####", "..#..", "..#..", "..#..", "..#..", "..#..", "..#.."}},
    {'V', {"#...#", "#...#", "#...#", "#...#", "#...#", ".#.#.", "..#.."}},
};

const Letter* Find(char character) {
  const auto* const found =
      std::find_if(std::begin(kLetters), std::end(kLetters),
                   [character](const Letter& letter) { return letter.character == character; });
  return found == std::end(kLetters) ? nullptr : found;
}

}  // namespace

BlockText::BlockText(const std::string& text, int32_t blockSize, const ZvPoint& position,
                     const CP_RGBColor& color)
    : mText(text), mBlockSize(std::max(1, blockSize)), mPosition(position), mColor(color) {
  const int32_t width = static_cast<int32_t>(mText.size()) * kAdvance * mBlockSize;
  mPicture.TakeOver(new ZvTiledImage<PxRgbaBytes>(width, kLetterHeight * mBlockSize));
  Draw({mColor.GetRed(), mColor.GetGreen(), mColor.GetBlue(), 0xFFFF});
}

void BlockText::SetColor(const PxRgba64& color, bool redraw) {
  mColor = CP_RGBColor(color.red, color.green, color.blue);
  if (redraw)
    Draw(color);
}

void BlockText::LayerGone(ZvTypeLayer& /*layer*/) {}

void BlockText::Draw(const PxRgba64& color) {
  mPicture->Clear();
  int32_t left = 0;
  for (const char character : mText) {
    if (const Letter* const letter = Find(character)) {
      for (int32_t row = 0; row < kLetterHeight; ++row)
        for (int32_t column = 0; column < kLetterWidth; ++column)
          if (letter->rows[static_cast<size_t>(row)][column] == '#') {
            const int32_t x = left + column * mBlockSize;
            const int32_t y = row * mBlockSize;
            mPicture->DrawRect({x, y, x + mBlockSize - 1, y + mBlockSize - 1}, color, true, false,
                               nullptr);
          }
    }
    left += kAdvance * mBlockSize;
  }
}

}  // namespace compose
