#include "image/ZvPixelLoops.h"

#include <array>

#include "image/ViewRows.h"

namespace vm {
namespace {

ZvRect AreaOf(int32_t width, int32_t height) {
    return {0, 0, width - 1, height - 1};
}

// The rule itself, stretch by stretch: fetch with GetRgba64, change, store with PutRgba64.
template <class Change>
void ForEachRgba64(ZvImage& image, int32_t width, int32_t height, Change&& change) {
    ViewReader reader(image);
    ViewWriter writer(image);
    ForEachRewrite(image, AreaOf(width, height), [&](int32_t x, int32_t y, int32_t count) {
        PxRgba64 pixels[kViewPixels];
        reader.Rgba64(x, y, count, pixels);
        for (int32_t i = 0; i < count; ++i)
            change(pixels[i]);
        writer.Rgba64(x, y, count, pixels);
    });
}

// `image` as runs if its records are P, which the change can then be made in.
template <class P>
RunImage* RunsOf(ZvImage& image) {
    RunImage* const runs = AsRunImage(&image);
    return runs != nullptr && &runs->Record() == &RecordOpsOf<P>() ? runs : nullptr;
}

template <class P, class Change>
bool ForEachRecordOf(ZvImage& image, int32_t width, int32_t height, Change&& change) {
    RunImage* const runs = RunsOf<P>(image);
    if (runs == nullptr)
        return false;
    RunWriter writer(*runs);
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width;) {
            const Run run = writer.At(x, y, width - x);
            auto* const records = reinterpret_cast<P*>(run.pixels);
            for (int32_t i = 0; i < run.count; ++i)
                change(records[i]);
            x += run.count;
        }
    }
    return true;
}

// trunc(c * 1.999) kept to 16 bits, for every c.
const std::array<uint16_t, 0x10000>& ScaleTable() {
    static const auto kTable = [] {
        std::array<uint16_t, 0x10000> table{};
        for (uint32_t c = 0; c < table.size(); ++c)
            table[c] = static_cast<uint16_t>(static_cast<uint32_t>(c * 1.999));
        return table;
    }();
    return kTable;
}

}  // namespace

void SwapChannels02(ZvImage& image, int32_t width, int32_t height) {
    const auto swapRedAndBlue = [](auto& pixel) {
        const auto red = pixel.red;
        pixel.red = pixel.blue;
        pixel.blue = red;
    };
    // Widening and narrowing a byte gives it back, so these records swap in place.
    if (ForEachRecordOf<PxRgbaBytes>(image, width, height, swapRedAndBlue) ||
        ForEachRecordOf<PxRgbBytes>(image, width, height, swapRedAndBlue) ||
        ForEachRecordOf<PxRgba64>(image, width, height, swapRedAndBlue) ||
        ForEachRecordOf<PxRgb48>(image, width, height, swapRedAndBlue))
        return;
    ForEachRgba64(image, width, height, swapRedAndBlue);
}

void ScaleChannels(ZvImage& image, int32_t width, int32_t height, int32_t channels) {
    const auto& table = ScaleTable();
    const auto scale = [&table, channels](PxRgba64& pixel) {
        if (channels > 0)
            pixel.red = table[pixel.red];
        if (channels > 1)
            pixel.green = table[pixel.green];
        if (channels > 2)
            pixel.blue = table[pixel.blue];
        if (channels > 3)
            pixel.alpha = table[pixel.alpha];
    };
    if (!ForEachRecordOf<PxRgba64>(image, width, height, scale))
        ForEachRgba64(image, width, height, scale);
}

void InvertChannels(ZvImage& image, int32_t width, int32_t height) {
    RunImage* const runs = AsRunImage(&image);
    if (runs == nullptr) {
        ForEachRgba64(image, width, height, [](PxRgba64& pixel) { pixel.Invert(); });
        return;
    }
    ForEachRun(*runs, AreaOf(width, height), [runs](Run run, int32_t, int32_t) {
        runs->Record().invert(run.pixels, static_cast<size_t>(run.count));
    });
}

void HalveChannels(ZvImage& image, int32_t width, int32_t height) {
    const auto halve = [](PxRgba64& pixel) {
        pixel = {static_cast<uint16_t>(pixel.red >> 1), static_cast<uint16_t>(pixel.green >> 1),
                 static_cast<uint16_t>(pixel.blue >> 1), static_cast<uint16_t>(pixel.alpha >> 1)};
    };
    const auto halveRgb = [](PxRgb48& pixel) {
        pixel = {static_cast<uint16_t>(pixel.blue >> 1), static_cast<uint16_t>(pixel.green >> 1),
                 static_cast<uint16_t>(pixel.red >> 1)};
    };
    if (ForEachRecordOf<PxRgba64>(image, width, height, halve) ||
        ForEachRecordOf<PxRgb48>(image, width, height, halveRgb))
        return;
    ForEachRgba64(image, width, height, halve);
}

}  // namespace vm
