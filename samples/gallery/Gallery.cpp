#include "gallery/Gallery.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "image/ZvTiledImage.h"
#include "pictures/Scene.h"

namespace gallery {
namespace {

using Rgba = ZvTiledImage<PxRgbaBytes>;
using Mask = ZvTiledImage<PxAlphaByte>;

constexpr int32_t kColumns = 6;
constexpr int32_t kRows = 5;
constexpr int32_t kCellWidth = 168;
constexpr int32_t kCellHeight = 112;
constexpr int32_t kGap = 12;
constexpr int32_t kLabel = 16;

constexpr PxRgba64 kPaper{0xF5F5, 0xF3F3, 0xEEEE, 0xFFFF};
constexpr PxRgba64 kInk{0x2222, 0x2828, 0x3030, 0xFFFF};
constexpr PxRgba64 kRed{0xC8C8, 0x3C3C, 0x3232, 0xFFFF};
constexpr PxRgba64 kBlue{0x2828, 0x6464, 0xB4B4, 0xFFFF};
constexpr PxRgba64 kGreen{0x3C3C, 0x8C8C, 0x5050, 0xFFFF};
constexpr PxRgba64 kXor{0xFFFF, 0xFFFF, 0xFFFF, 0};

// Letters of 3 by 5 pixels: a digit per row from the top, its bits from left to right.
struct Glyph {
  char letter;
  char rows[6];
};
constexpr Glyph kGlyphs[] = {
    {'a', "25755"}, {'b', "65656"}, {'c', "34443"}, {'d', "65556"}, {'e', "74647"}, {'f', "74644"},
    {'g', "34553"}, {'h', "55755"}, {'i', "72227"}, {'j', "11152"}, {'k', "55655"}, {'l', "44447"},
    {'m', "57755"}, {'n', "65555"}, {'o', "25552"}, {'p', "65644"}, {'q', "25563"}, {'r', "65655"},
    {'s', "34216"}, {'t', "72222"}, {'u', "55557"}, {'v', "55552"}, {'w', "55775"}, {'x', "55255"},
    {'y', "55222"}, {'z', "71247"}, {'0', "75557"}, {'1', "26227"}, {'2', "61247"}, {'3', "61216"},
    {'4', "55711"}, {'5', "74616"}, {'7', "71122"}, {'/', "11244"}, {'-', "00700"}, {'+', "02720"}};

class Sheet {
 public:
  Sheet()
      : mImage(ZvSmartPtr<Rgba>::Adopt(new Rgba(kGap + kColumns * (kCellWidth + kGap),
                                                kGap + kRows * (kCellHeight + kLabel + kGap)))) {
    mImage->FillClip(kPaper);
  }

  ZvSmartPtr<ZvImage> Image() const { return mImage; }

  static ZvRect Cell(int32_t column, int32_t row) {
    const int32_t left = kGap + column * (kCellWidth + kGap);
    const int32_t top = kGap + row * (kCellHeight + kLabel + kGap);
    return {left, top, left + kCellWidth - 1, top + kCellHeight - 1};
  }

  // Labels a cell and limits drawing to it.
  ZvRect Begin(int32_t column, int32_t row, std::string_view label) {
    mImage->ResetClip();
    const ZvRect cell = Cell(column, row);
    Write(label, cell.fLeft, cell.fBottom + 4);
    mImage->SetClip(cell);
    return cell;
  }

  Rgba& operator*() const { return *mImage; }
  Rgba* operator->() const { return mImage.Get(); }

 private:
  void Write(std::string_view text, int32_t x, int32_t y) {
    constexpr int32_t kScale = 2;
    for (const char letter : text) {
      for (const Glyph& glyph : kGlyphs) {
        if (glyph.letter == letter)
          WriteGlyph(glyph, x, y, kScale);
      }
      x += 4 * kScale;
    }
  }

  void WriteGlyph(const Glyph& glyph, int32_t x, int32_t y, int32_t scale) {
    for (int32_t row = 0; row < 5; ++row) {
      for (int32_t column = 0; column < 3; ++column) {
        if (((glyph.rows[row] - '0') >> (2 - column) & 1) == 0)
          continue;
        const int32_t left = x + column * scale;
        const int32_t top = y + row * scale;
        mImage->DrawRect({left, top, left + scale - 1, top + scale - 1}, kInk, true, false,
                         nullptr);
      }
    }
  }

  ZvSmartPtr<Rgba> mImage;
};

ZvSmartPtr<Rgba> Photo(int32_t width, int32_t height) {
  const filter_host::Picture scene = pictures::MakeScene(width, height);
  const auto image = ZvSmartPtr<Rgba>::Adopt(new Rgba(width, height));
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* const row = scene.Row(y);
    for (int32_t x = 0; x < width; ++x)
      image->PutRgba(PxRgbaBytes::Of(row[3 * x], row[3 * x + 1], row[3 * x + 2], 255), x, y);
  }
  return image;
}

// A part of a picture as one of its own: most modes read from the source's corner.
ZvSmartPtr<Rgba> CutOut(const Rgba& from, const ZvRect& rect) {
  const auto part =
      ZvSmartPtr<Rgba>::Adopt(new Rgba(rect.fRight - rect.fLeft + 1, rect.fBottom - rect.fTop + 1));
  part->CopyFrom(&from, rect, {0, 0}, nullptr);
  return part;
}

// Coverage that falls off from the middle.
ZvSmartPtr<Mask> SoftSpot() {
  const auto mask = ZvSmartPtr<Mask>::Adopt(new Mask(kCellWidth, kCellHeight));
  for (int32_t y = 0; y < kCellHeight; ++y) {
    for (int32_t x = 0; x < kCellWidth; ++x) {
      const double dx = (x - kCellWidth / 2) / (kCellWidth * 0.45);
      const double dy = (y - kCellHeight / 2) / (kCellHeight * 0.45);
      const double share = 1.5 * (1 - std::sqrt(dx * dx + dy * dy));
      mask->PutByte(static_cast<uint8_t>(255 * std::fmax(0.0, std::fmin(1.0, share))), x, y);
    }
  }
  return mask;
}

// A star of `points` beams in a cell.
std::vector<ZvPoint> Star(const ZvRect& cell, int32_t points, double inner) {
  std::vector<ZvPoint> star;
  for (int32_t i = 0; i < 2 * points; ++i) {
    const double angle = 3.14159265358979 * (i / static_cast<double>(points) - 0.5);
    const double radius = (kCellHeight / 2 - 4) * (i % 2 == 0 ? 1.0 : inner);
    star.push_back({(cell.fLeft + cell.fRight) / 2 +
                        static_cast<int32_t>(std::lround(radius * std::cos(angle))),
                    (cell.fTop + cell.fBottom) / 2 +
                        static_cast<int32_t>(std::lround(radius * std::sin(angle)))});
  }
  return star;
}

struct PolygonStyle {
  bool filled = false;
  bool xorMode = false;
  int32_t dash = 0;
  float feather = 0;
};

void Polygon(Rgba& image, const std::vector<ZvPoint>& points, const PxRgba64& colour,
             const PolygonStyle& style) {
  image.DrawPolygon(static_cast<int32_t>(points.size()), points.data(), colour, style.filled,
                    style.xorMode, false, false, true, style.dash, style.feather, nullptr, nullptr);
}

void ShowModes(Sheet& sheet, const Rgba& photo, const Rgba& detail) {
  struct Mode {
    int32_t mode;
    std::string_view down;
    std::string_view up;
  };
  constexpr std::array<Mode, kColumns> kModes = {
      {{kResampleNearest, "down 1 nearest", "up 1 nearest"},
       {kResampleBilinear, "down 2 bilinear", "up 2 bilinear"},
       {kResampleCubic, "down 3 cubic", "up 3 cubic"},
       {kResampleCubicFixed, "down 4 fixed", "up 4 fixed"},
       {kResampleCubicBlend, "down 5 blend", "up 5 blend"},
       {kResampleBox, "down 7 box", "up 7 box"}}};
  for (int32_t i = 0; i < kColumns; ++i) {
    const Mode& mode = kModes[static_cast<size_t>(i)];
    const ZvRect down = sheet.Begin(i, 0, mode.down);
    sheet->CopyScaled(&photo, photo.Bounds(), down, mode.mode, nullptr);
    const ZvRect up = sheet.Begin(i, 1, mode.up);
    sheet->CopyScaled(&detail, detail.Bounds(), up, mode.mode, nullptr);
  }
}

void ShowColours(Sheet& sheet, const Rgba& photo, const Rgba& small) {
  const auto adjusted = [&](int32_t column, std::string_view label, float hue, float saturation,
                            float lightness) {
    sheet->CopyAdjusted(&photo, photo.Bounds(), sheet.Begin(column, 2, label), hue, saturation,
                        lightness, kResampleBox, nullptr);
  };
  adjusted(0, "hue +120", 120, 1, 0);
  adjusted(1, "saturation 0", 0, 0, 0);
  const ZvRect scaled = sheet.Begin(2, 2, "blend scaled");
  sheet->BlendScaled(&photo, photo.Bounds(), scaled, 0.5F, kResampleBox, nullptr);
  const ZvRect tinted = sheet.Begin(3, 2, "blend adjusted");
  sheet->CopyScaled(&photo, photo.Bounds(), tinted, kResampleBox, nullptr);
  const ZvRect half(tinted.fLeft + kCellWidth / 2, tinted.fTop, tinted.fRight, tinted.fBottom);
  sheet->BlendAdjusted(&photo, photo.Bounds(), tinted, 200, 1.5F, 0, 0.7F, kResampleBox, &half);
  const auto spot = SoftSpot();
  const ZvRect masked = sheet.Begin(4, 2, "blend masked");
  // A masked blend stores the source with less alpha; on paper it shows when it is composited.
  const auto through = ZvSmartPtr<Rgba>::Adopt(new Rgba(kCellWidth, kCellHeight));
  through->BlendMasked(&small, spot.Get(), small.Bounds(), {0, 0}, 1, nullptr);
  sheet->BlendRect(through.Get(), through->Bounds(), {masked.fLeft, masked.fTop}, 1, nullptr);
  const ZvRect painted = sheet.Begin(5, 2, "paint masked");
  sheet->CopyFrom(&small, small.Bounds(), {painted.fLeft, painted.fTop}, nullptr);
  sheet->PaintMasked(kRed, spot.Get(), spot->Bounds(), {painted.fLeft, painted.fTop}, 0.8F,
                     nullptr);
}

void ShowLinesAndOvals(Sheet& sheet, const Rgba& small) {
  const ZvRect fan = sheet.Begin(0, 3, "lines");
  for (int32_t i = 0; i <= 14; ++i)
    sheet->DrawLine({fan.fLeft, fan.fBottom}, {fan.fRight, fan.fTop + i * (kCellHeight - 1) / 14},
                    i % 2 == 0 ? kInk : kBlue, false, nullptr, 0);
  const ZvRect dashes = sheet.Begin(1, 3, "dashes");
  for (int32_t i = 0; i < 10; ++i)
    sheet->DrawLine({dashes.fLeft, dashes.fTop + 6 + 11 * i},
                    {dashes.fRight, dashes.fTop + 2 + 11 * i}, kInk, false, nullptr, i + 1);
  const ZvRect ovals = sheet.Begin(2, 3, "ovals");
  for (int32_t i = 0; i < 7; ++i)
    sheet->DrawOval({ovals.fLeft + 4 + 11 * i, ovals.fTop + 4 + 3 * i, ovals.fRight - 4 - 3 * i,
                     ovals.fBottom - 4 - 7 * i},
                    i % 2 == 0 ? kInk : kRed, false, false, nullptr);
  const ZvRect disks = sheet.Begin(3, 3, "filled ovals");
  sheet->DrawOval({disks.fLeft + 8, disks.fTop + 6, disks.fLeft + 100, disks.fBottom - 6}, kBlue,
                  true, false, nullptr);
  sheet->DrawOval({disks.fLeft + 84, disks.fTop + 30, disks.fRight - 8, disks.fBottom - 30}, kRed,
                  true, false, nullptr);
  const ZvRect xored = sheet.Begin(4, 3, "xor");
  sheet->CopyFrom(&small, small.Bounds(), {xored.fLeft, xored.fTop}, nullptr);
  sheet->DrawOval({xored.fLeft + 10, xored.fTop + 10, xored.fLeft + 110, xored.fBottom - 10}, kXor,
                  true, true, nullptr);
  sheet->DrawOval({xored.fLeft + 60, xored.fTop + 10, xored.fRight - 10, xored.fBottom - 10}, kXor,
                  true, true, nullptr);
  const ZvRect once = sheet.Begin(5, 3, "through a mask");
  // One mask for all: what is drawn first stays.
  const auto mask = ZvSmartPtr<Mask>::Adopt(new Mask(sheet->Width(), sheet->Height()));
  const std::array<PxRgba64, 3> colours = {kRed, kGreen, kBlue};
  for (int32_t i = 0; i < 3; ++i)
    sheet->DrawOval(
        {once.fLeft + 8 + 36 * i, once.fTop + 10, once.fLeft + 88 + 36 * i, once.fBottom - 10},
        colours[static_cast<size_t>(i)], true, false, mask.Get());
}

void ShowPolygons(Sheet& sheet, const Rgba& small) {
  const ZvRect outline = sheet.Begin(0, 4, "outline");
  Polygon(*sheet, Star(outline, 7, 0.55), kInk, {});
  const ZvRect dashed = sheet.Begin(1, 4, "dashed outline");
  Polygon(*sheet, Star(dashed, 5, 0.5), kRed, {.dash = 4});
  const ZvRect filled = sheet.Begin(2, 4, "filled");
  Polygon(*sheet, Star(filled, 9, 0.6), kGreen, {.filled = true});
  const ZvRect crossed = sheet.Begin(3, 4, "even-odd");
  const std::vector<ZvPoint> corners = Star(crossed, 5, 1);
  // Every fourth of ten corners: the pentagram crosses itself.
  std::vector<ZvPoint> pentagram;
  for (size_t i = 0; i < 5; ++i)
    pentagram.push_back(corners[i * 4 % 10]);
  Polygon(*sheet, pentagram, kBlue, {.filled = true});
  const ZvRect soft = sheet.Begin(4, 4, "feather 12");
  sheet->CopyFrom(&small, small.Bounds(), {soft.fLeft, soft.fTop}, nullptr);
  Polygon(*sheet, Star(soft, 6, 0.7), kPaper, {.filled = true, .feather = 12});
  const ZvRect rect = sheet.Begin(5, 4, "rects");
  for (int32_t i = 0; i < 6; ++i)
    sheet->DrawRect({rect.fLeft + 6 + 13 * i, rect.fTop + 6 + 8 * i, rect.fRight - 6 - 13 * i,
                     rect.fBottom - 6 - 8 * i},
                    i % 2 == 0 ? kInk : kGreen, i == 5, false, nullptr);
}

}  // namespace

ZvSmartPtr<ZvImage> MakeGallery() {
  const auto photo = Photo(3 * kCellWidth, 3 * kCellHeight);
  const auto small = ZvSmartPtr<Rgba>::Adopt(new Rgba(kCellWidth, kCellHeight));
  small->CopyScaled(photo.Get(), photo->Bounds(), small->Bounds(), kResampleBox, nullptr);
  const auto detail = CutOut(*photo, {360, 225, 360 + kCellWidth / 6 - 1, 225 + kCellHeight / 6});
  Sheet sheet;
  ShowModes(sheet, *photo, *detail);
  ShowColours(sheet, *photo, *small);
  ShowLinesAndOvals(sheet, *small);
  ShowPolygons(sheet, *small);
  sheet->ResetClip();
  return sheet.Image();
}

}  // namespace gallery
