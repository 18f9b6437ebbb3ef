#include "image/kernels/rows/BlendRows.h"

#include <algorithm>
#include "image/kernels/rows/Words.h"

namespace vm {
namespace {

bool IsFraction(float t) {
    return t >= 0 && t <= 1;
}

// (src*w + dst*(255-w) + 127) / 255 on bytes. The sum fits 16 bits, and there x / 255 is (x + 1 + x/256) /
// 256.
void MixBytes255(void* row, const void* source, size_t count, float t) {
    auto* const dst = static_cast<uint8_t*>(row);
    const auto* const src = static_cast<const uint8_t*>(source);
    const auto w = static_cast<uint16_t>(Weight255(t));
    const auto rest = static_cast<uint16_t>(255 - w);
    for (size_t i = 0; i < count; ++i) {
        const auto sum = static_cast<uint16_t>(src[i] * w + dst[i] * rest + 0x7F);
        dst[i] = static_cast<uint8_t>(static_cast<uint16_t>(sum + 1 + (sum >> 8)) >> 8);
    }
}

// (src*w + dst*(256-w) + rounding) >> 8 on bytes, kept to 16 bits on the way: for w up to 256 nothing is
// lost.
void MixBytes256(void* row, const void* source, size_t count, float t, uint16_t rounding) {
    auto* const dst = static_cast<uint8_t*>(row);
    const auto* const src = static_cast<const uint8_t*>(source);
    const auto w = static_cast<uint16_t>(Weight256(t));
    const auto rest = static_cast<uint16_t>(256 - w);
    for (size_t i = 0; i < count; ++i) {
        const auto sum = static_cast<uint16_t>(src[i] * w + dst[i] * rest + rounding);
        dst[i] = static_cast<uint8_t>(sum >> 8);
    }
}

template <class P>
void Mix255Bytes(std::span<P> row, const P* source, float t) {
    if (t == 1)
        CopyRow(row, source);
    else
        MixBytes255(row.data(), source, row.size_bytes(), t);
}
template <class P>
void Mix256Bytes(std::span<P> row, const P* source, float t, uint16_t rounding) {
    if (IsFraction(t))
        MixBytes256(row.data(), source, row.size_bytes(), t, rounding);
    else
        scalar::Mix256(row, source, t);
}

void MixWords(std::span<PxRgba64> row, const PxRgba64* source, float t) {
    if (t == 1)
        return CopyRow(row, source);
    const auto w = static_cast<uint32_t>(TruncToInt32(65535 * t + 1));
    uint16_t* const dst = &row.data()->red;
    const uint16_t* const src = &source->red;
    for (size_t i = 0; i < row.size() * 4; ++i)
        dst[i] = PxRgba64::MixWord(dst[i], src[i], w);
}

// Pixels whose alphas are looked at together: rows are mostly opaque or mostly clear in long stretches.
constexpr size_t kBlock = 16;

// What all source alphas of a block have in common.
enum class Cover { kNone, kFull, kMixed };
Cover CoverOf(const PxRgbaBytes* source, size_t count) {
    uint32_t all = 0xFF000000U;
    uint32_t any = 0;
    for (size_t i = 0; i < count; ++i) {
        const auto number = Load<uint32_t>(source + i);
        all &= number;
        any |= number;
    }
    return all == 0xFF000000U ? Cover::kFull : (any & 0xFF000000U) == 0 ? Cover::kNone : Cover::kMixed;
}

// One colour of the source over the row's. All three terms are integers below 2^24, so single precision holds
// their sum exactly; and a quotient of two such integers, with a divisor up to 255, lies too far below the
// next integer to be rounded up to it. So this is the integer division.
uint32_t OverColour(uint32_t dst, uint32_t src, int shift, float s, float rest, float half, float divisor) {
    const auto d = static_cast<float>(static_cast<int32_t>(dst >> shift & 0xFF));
    const auto c = static_cast<float>(static_cast<int32_t>(src >> shift & 0xFF));
    return static_cast<uint32_t>(static_cast<int32_t>((s * c + rest * d + half) / divisor)) << shift;
}

// `s` and the new alpha `A` come as integers; s = 0 leaves the pixel.
uint32_t OverPixel(uint32_t dst, uint32_t src, int32_t s, int32_t A) {
    const auto divisor = static_cast<float>(std::max(A, 1));
    const auto share = static_cast<float>(s);
    const auto rest = static_cast<float>(A - s);
    const auto half = static_cast<float>(A >> 1);
    const uint32_t over = OverColour(dst, src, 0, share, rest, half, divisor) |
                          OverColour(dst, src, 8, share, rest, half, divisor) |
                          OverColour(dst, src, 16, share, rest, half, divisor) |
                          static_cast<uint32_t>(A) << 24;
    const uint32_t changed = s == 0 ? 0 : 0xFFFFFFFFU;
    return (over & changed) | (dst & ~changed);
}

int32_t AlphaOf(uint32_t pixel) {
    return static_cast<int32_t>(pixel >> 24);
}

// One colour word over another in double precision, which holds all 32-bit terms; see OverColour.
uint16_t OverColour64(uint16_t dst, uint16_t src, double s, double rest, double divisor) {
    return static_cast<uint16_t>(static_cast<int32_t>((src * s + dst * rest) / divisor));
}

void OverPixel64(PxRgba64& dst, const PxRgba64& src, int32_t s) {
    if (s == 0)
        return;
    const double A = static_cast<int32_t>((0xFFFF - dst.alpha) * static_cast<double>(s) / 0xFFFF) + dst.alpha;
    const double rest = A - s;
    dst = {OverColour64(dst.red, src.red, s, rest, A), OverColour64(dst.green, src.green, s, rest, A),
           OverColour64(dst.blue, src.blue, s, rest, A), static_cast<uint16_t>(static_cast<int32_t>(A))};
}

}  // namespace

void Mix255Row(std::span<PxGrayByte> row, const PxGrayByte* source, float t) {
    Mix255Bytes(row, source, t);
}
void Mix255Row(std::span<PxGrayABytes> row, const PxGrayABytes* source, float t) {
    Mix255Bytes(row, source, t);
}
void Mix255Row(std::span<PxAlphaByte> row, const PxAlphaByte* source, float t) {
    Mix255Bytes(row, source, t);
}
void Mix255Row(std::span<PxRgbBytes> row, const PxRgbBytes* source, float t) {
    Mix255Bytes(row, source, t);
}
void Mix255Row(std::span<PxRgbaBytes> row, const PxRgbaBytes* source, float t) {
    Mix255Bytes(row, source, t);
}
void Mix255Row(std::span<PxCmykBytes> row, const PxCmykBytes* source, float t) {
    Mix255Bytes(row, source, t);
}
void Mix255Row(std::span<PxCmykaBytes> row, const PxCmykaBytes* source, float t) {
    Mix255Bytes(row, source, t);
}

void Mix255Row(std::span<PxRgb48> row, const PxRgb48* source, float t) {
    if (!IsFraction(t))
        return scalar::Mix255(row, source, t);
    if (t == 1)
        return CopyRow(row, source);
    uint16_t* const dst = &row.data()->blue;
    const uint16_t* const src = &source->blue;
    for (size_t i = 0; i < row.size() * 3; ++i) {
        const float mix = static_cast<float>(dst[i]) * (1 - t) + static_cast<float>(src[i]) * t;
        dst[i] = static_cast<uint16_t>(static_cast<int32_t>(mix));
    }
}
void Mix255Row(std::span<PxRgba64> row, const PxRgba64* source, float t) {
    MixWords(row, source, t);
}

void Mix256Row(std::span<PxGrayByte> row, const PxGrayByte* source, float t) {
    Mix256Bytes(row, source, t, 0);
}
void Mix256Row(std::span<PxGrayABytes> row, const PxGrayABytes* source, float t) {
    Mix256Bytes(row, source, t, 0x7F);
}
void Mix256Row(std::span<PxAlphaByte> row, const PxAlphaByte* source, float t) {
    Mix256Bytes(row, source, t, 0);
}
void Mix256Row(std::span<PxRgbBytes> row, const PxRgbBytes* source, float t) {
    Mix256Bytes(row, source, t, 0);
}
void Mix256Row(std::span<PxRgbaBytes> row, const PxRgbaBytes* source, float t) {
    Mix256Bytes(row, source, t, 0x7F);
}
void Mix256Row(std::span<PxRgba64> row, const PxRgba64* source, float t) {
    MixWords(row, source, t);
}

void CompositeRow(std::span<PxRgbaBytes> row, const PxRgbaBytes* source) {
    for (size_t start = 0; start < row.size(); start += kBlock) {
        const size_t count = std::min(kBlock, row.size() - start);
        PxRgbaBytes* const dst = row.data() + start;
        const PxRgbaBytes* const src = source + start;
        const Cover cover = CoverOf(src, count);
        if (cover == Cover::kFull)
            std::memmove(dst, src, count * sizeof *dst);
        if (cover != Cover::kMixed)
            continue;
        for (size_t i = 0; i < count; ++i) {
            const auto from = Load<uint32_t>(src + i);
            const auto to = Load<uint32_t>(dst + i);
            const int32_t s = AlphaOf(from);
            Store(dst + i, OverPixel(to, from, s, std::min(AlphaOf(to) + s, 255)));
        }
    }
}

void CompositeRow(std::span<PxRgbaBytes> row, const PxRgbaBytes* source, float t) {
    if (!IsFraction(t))
        return scalar::Composite(row, source, t);
    for (size_t i = 0; i < row.size(); ++i) {
        const auto from = Load<uint32_t>(source + i);
        const auto to = Load<uint32_t>(&row[i]);
        const auto s = static_cast<int32_t>(static_cast<float>(AlphaOf(from)) * t);
        const int32_t alpha = AlphaOf(to);
        const int32_t share = s * (255 - alpha);
        Store(&row[i], OverPixel(to, from, s, alpha + ((share + 1 + (share >> 8)) >> 8)));
    }
}

void CompositeRow(std::span<PxRgba64> row, const PxRgba64* source) {
    for (size_t i = 0; i < row.size(); ++i)
        OverPixel64(row[i], source[i], source[i].alpha);
}
void CompositeRow(std::span<PxRgba64> row, const PxRgba64* source, float t) {
    if (!IsFraction(t))
        return scalar::Composite(row, source, t);
    for (size_t i = 0; i < row.size(); ++i)
        OverPixel64(row[i], source[i], static_cast<int32_t>(static_cast<float>(source[i].alpha) * t));
}

}  // namespace vm
