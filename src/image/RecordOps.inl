#pragma once

// The table of one pixel type. Included by the source files under instances/ only.

#include <type_traits>

#include "image/kernels/rows/BlendRows.h"
#include "image/kernels/rows/ChannelRows.h"
#include "image/kernels/rows/ConvertRows.h"
#include "image/kernels/rows/PlaneRows.h"
#include "image/RecordOps.h"

namespace vm {

template <class P>
struct RecordLoops {
  static std::span<const P> From(const void* records, size_t count) {
    return {static_cast<const P*>(records), count};
  }
  static std::span<P> To(void* records, size_t count) { return {static_cast<P*>(records), count}; }

  static constexpr bool kIsCmykBytes = std::is_same_v<P, PxCmykBytes>;

  static void ToRgba(const void* records, PxRgbaBytes* out, size_t count) {
    GetRgbaRow(From(records, count), out);
  }
  static void FromRgba(const PxRgbaBytes* in, void* records, size_t count) {
    PutRgbaRow(in, To(records, count));
  }
  static void ToRgb(const void* records, PxRgbBytes* out, size_t count) {
    for (const P& pixel : From(records, count)) {
      // A record that can't be read so reports it and leaves what the caller has.
      if constexpr (kIsCmykBytes)
        pixel.GetRgb();
      else
        *out++ = pixel.GetRgb();
    }
  }
  static void FromRgb(const PxRgbBytes* in, void* records, size_t count) {
    for (P& pixel : To(records, count))
      pixel.PutRgb(*in++);
  }
  static void ToByte(const void* records, uint8_t* out, size_t count) {
    for (const P& pixel : From(records, count))
      *out++ = pixel.GetByte();
  }
  static void FromByte(const uint8_t* in, void* records, size_t count) {
    for (P& pixel : To(records, count))
      pixel.PutByte(*in++);
  }
  static void ToRgba64(const void* records, PxRgba64* out, size_t count) {
    GetRgba64Row(From(records, count), out);
  }
  static void FromRgba64(const PxRgba64* in, void* records, size_t count) {
    PutRgba64Row(in, To(records, count));
  }

  static void Gather(const void* records, void* samples, size_t count, int32_t channel) {
    GatherRow(From(records, count), samples, channel);
  }
  static void Scatter(const void* samples, void* records, size_t count, int32_t channel) {
    ScatterRow(samples, To(records, count), channel);
  }

  static void Mix255(void* records, const void* source, size_t count, float t) {
    Mix255Row(To(records, count), static_cast<const P*>(source), t);
  }
  static void Mix256(void* records, const void* source, size_t count, float t) {
    Mix256Row(To(records, count), static_cast<const P*>(source), t);
  }
  static void Composite(void* records, const void* source, size_t count) requires Compositing<P> {
    CompositeRow(To(records, count), static_cast<const P*>(source));
  }
  static void CompositeBy(void* records, const void* source, size_t count,
                          float t) requires Compositing<P> {
    CompositeRow(To(records, count), static_cast<const P*>(source), t);
  }
  static void Invert(void* records, size_t count) { InvertRow(To(records, count)); }

  // The types whose records survive the way through a view.
  static constexpr bool kKeptByRgba =
      std::is_same_v<P, PxGrayByte> || std::is_same_v<P, PxGrayABytes> ||
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
    ops.takesRgba64 = !kIsCmykBytes;
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
