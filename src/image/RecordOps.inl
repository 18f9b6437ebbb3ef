#pragma once

// The table of one pixel type. Included by the source files under instances/ only.

#include <cstring>
#include <type_traits>

#include "image/pixels/PxRecords.h"
#include "image/RecordOps.h"

namespace vm {

template <class P>
struct RecordLoops {
    static const P* From(const void* records) { return static_cast<const P*>(records); }
    static P* To(void* records) { return static_cast<P*>(records); }

    // At this opacity the integer mixes yield the source itself; a copy says so faster.
    static constexpr bool kMixesToSource =
        !std::is_same_v<P, PxDepthFloat> && !std::is_same_v<P, PxXyFloats> && !std::is_same_v<P, PxXyFixed>;
    static constexpr bool kIsCmykBytes = std::is_same_v<P, PxCmykBytes>;

    static void ToRgba(const void* records, PxRgbaBytes* out, size_t count) {
        if constexpr (std::is_same_v<P, PxRgbaBytes>) {
            std::memcpy(out, records, count * sizeof(P));
        } else {
            for (size_t i = 0; i < count; ++i)
                out[i] = From(records)[i].GetRgba();
        }
    }
    static void FromRgba(const PxRgbaBytes* in, void* records, size_t count) {
        if constexpr (std::is_same_v<P, PxRgbaBytes>) {
            std::memcpy(records, in, count * sizeof(P));
        } else {
            for (size_t i = 0; i < count; ++i)
                To(records)[i].PutRgba(in[i]);
        }
    }
    static void ToRgb(const void* records, PxRgbBytes* out, size_t count) {
        for (size_t i = 0; i < count; ++i) {
            // A record that can't be read so reports it and leaves what the caller has.
            if constexpr (kIsCmykBytes)
                From(records)[i].GetRgb();
            else
                out[i] = From(records)[i].GetRgb();
        }
    }
    static void FromRgb(const PxRgbBytes* in, void* records, size_t count) {
        for (size_t i = 0; i < count; ++i)
            To(records)[i].PutRgb(in[i]);
    }
    static void ToByte(const void* records, uint8_t* out, size_t count) {
        for (size_t i = 0; i < count; ++i)
            out[i] = From(records)[i].GetByte();
    }
    static void FromByte(const uint8_t* in, void* records, size_t count) {
        for (size_t i = 0; i < count; ++i)
            To(records)[i].PutByte(in[i]);
    }
    static void ToRgba64(const void* records, PxRgba64* out, size_t count) {
        if constexpr (std::is_same_v<P, PxRgba64>) {
            std::memcpy(out, records, count * sizeof(P));
        } else {
            for (size_t i = 0; i < count; ++i)
                out[i] = From(records)[i].GetRgba64();
        }
    }
    static void FromRgba64(const PxRgba64* in, void* records, size_t count) {
        if constexpr (std::is_same_v<P, PxRgba64>) {
            std::memcpy(records, in, count * sizeof(P));
        } else {
            for (size_t i = 0; i < count; ++i)
                To(records)[i].PutRgba64(in[i]);
        }
    }

    static constexpr size_t kSampleBytes = static_cast<size_t>(P::kInfo.bitsPerChannel + 7) / 8;

    // The channel is a constant of each loop, so that its choice isn't made once per pixel.
    template <int32_t channel>
    static void GatherChannel(const P* records, uint8_t* samples, size_t count) {
        for (size_t i = 0; i < count; ++i)
            records[i].GetChannel(samples + i * kSampleBytes, channel);
    }
    template <int32_t channel>
    static void ScatterChannel(const uint8_t* samples, P* records, size_t count) {
        for (size_t i = 0; i < count; ++i)
            records[i].PutChannel(samples + i * kSampleBytes, channel);
    }
    static void Gather(const void* records, void* samples, size_t count, int32_t channel) {
        auto* const out = static_cast<uint8_t*>(samples);
        switch (channel) {
        case 1:
            return GatherChannel<1>(From(records), out, count);
        case 2:
            return GatherChannel<2>(From(records), out, count);
        case 3:
            return GatherChannel<3>(From(records), out, count);
        case 4:
            return GatherChannel<4>(From(records), out, count);
        default:
            return GatherChannel<0>(From(records), out, count);
        }
    }
    static void Scatter(const void* samples, void* records, size_t count, int32_t channel) {
        const auto* const in = static_cast<const uint8_t*>(samples);
        switch (channel) {
        case 1:
            return ScatterChannel<1>(in, To(records), count);
        case 2:
            return ScatterChannel<2>(in, To(records), count);
        case 3:
            return ScatterChannel<3>(in, To(records), count);
        case 4:
            return ScatterChannel<4>(in, To(records), count);
        default:
            return ScatterChannel<0>(in, To(records), count);
        }
    }

    static void Mix255(void* records, const void* source, size_t count, float t) {
        if (kMixesToSource && t == 1.0f && !std::is_same_v<P, PxGrayBit>) {
            std::memmove(records, source, count * sizeof(P));
            return;
        }
        for (size_t i = 0; i < count; ++i)
            To(records)[i].Mix255(From(source)[i], t);
    }
    static void Mix256(void* records, const void* source, size_t count, float t) {
        for (size_t i = 0; i < count; ++i)
            To(records)[i].Mix256(From(source)[i], t);
    }
    static void Composite(void* records, const void* source, size_t count) requires Compositing<P> {
        for (size_t i = 0; i < count; ++i)
            To(records)[i].Composite(From(source)[i]);
    }
    static void CompositeBy(void* records, const void* source, size_t count,
                            float t) requires Compositing<P> {
        for (size_t i = 0; i < count; ++i)
            To(records)[i].Composite(From(source)[i], t);
    }
    static void Invert(void* records, size_t count) {
        for (size_t i = 0; i < count; ++i)
            To(records)[i].Invert();
    }

    // The types whose records survive the way through a view.
    static constexpr bool kKeptByRgba = std::is_same_v<P, PxGrayByte> || std::is_same_v<P, PxGrayABytes> ||
                                        std::is_same_v<P, PxAlphaByte> || std::is_same_v<P, PxRgbBytes> ||
                                        std::is_same_v<P, PxRgbaBytes>;
    static constexpr bool kKeptByRgba64 =
        kKeptByRgba || std::is_same_v<P, PxRgb48> || std::is_same_v<P, PxRgba64>;

    static constexpr RecordOps Table() {
        RecordOps ops{};
        ops.name = P::kName;
        ops.bitsPerPixel = P::kInfo.bitsPerPixel;
        ops.bytesPerPixel = P::kInfo.bytesPerPixel;
        ops.bitsPerChannel = P::kInfo.bitsPerChannel;
        ops.channels = P::kInfo.channels;
        ops.kind = P::kInfo.kind;
        ops.model = P::kInfo.model;
        ops.hasAlpha = P::kInfo.hasAlpha;
        ops.size = sizeof(P);
        ops.align = alignof(P);
        ops.packed = P::kInfo.bitsPerPixel == 1;
        ops.keptByRgba = kKeptByRgba;
        ops.keptByRgba64 = kKeptByRgba64;
        ops.toRgba = ToRgba;
        ops.fromRgba = FromRgba;
        ops.toRgb = ToRgb;
        ops.fromRgb = FromRgb;
        ops.toByte = ToByte;
        ops.fromByte = FromByte;
        ops.toRgba64 = ToRgba64;
        ops.fromRgba64 = FromRgba64;
        ops.gather = Gather;
        ops.scatter = Scatter;
        ops.mix255 = Mix255;
        ops.mix256 = Mix256;
        if constexpr (Compositing<P>) {
            ops.composite = Composite;
            ops.compositeBy = CompositeBy;
        }
        ops.invert = Invert;
        return ops;
    }
};

template <class P>
const RecordOps& RecordOpsOf() {
    static_assert(sizeof(P) <= kMaxRecordBytes && std::is_trivially_copyable_v<P>);
    static constexpr RecordOps kTable = RecordLoops<P>::Table();
    return kTable;
}

}  // namespace vm
