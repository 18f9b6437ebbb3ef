// The operations that scale, recolour or mask what they transfer.

#include <algorithm>
#include <cstring>
#include <limits>

#include "foundation/FourCharCode.h"
#include "image/ImageReports.h"
#include "image/kernels/MaskKernels.h"
#include "image/kernels/resample/ColourAdjust.h"
#include "image/PointSampler.h"
#include "image/RgbaSampler.h"
#include "image/ViewRows.h"

namespace vm {
namespace {

constexpr int32_t kMaxColumns = RgbaSampler::kMaxColumns;

// --- frames

// Where a scaling transfer goes.
struct Frame {
  Scaling scaling;
  bool sameExtents;
  ZvRect cutFrom;  // the source rectangle at the smaller extents, for the unscaled forms
  ZvPoint toPoint;
  ZvRect target;  // the part of the target rectangle that lies in the image and the clip

  bool IsUnscaled() const { return sameExtents || scaling.mode == kResampleNone; }
};

int32_t FarSide(int32_t nearSide, int64_t extent) {
  return static_cast<int32_t>(std::clamp<int64_t>(nearSide + extent, INT32_MIN, INT32_MAX));
}

Frame FrameOf(const ZvImage& to, const ZvRect& fromRect, const ZvRect& toRect, int32_t mode,
              const ZvRect* clip) {
  Frame frame;
  ScaleAxis& x = frame.scaling.x;
  ScaleAxis& y = frame.scaling.y;
  x = MakeScaleAxis(fromRect.fLeft, fromRect.fRight, toRect.fLeft, toRect.fRight);
  y = MakeScaleAxis(fromRect.fTop, fromRect.fBottom, toRect.fTop, toRect.fBottom);
  frame.scaling.mode = mode;
  frame.sameExtents = x.sourceExtent == x.targetExtent && y.sourceExtent == y.targetExtent;
  frame.cutFrom = {fromRect.fLeft, fromRect.fTop,
                   FarSide(fromRect.fLeft, std::min(x.sourceExtent, x.targetExtent)),
                   FarSide(fromRect.fTop, std::min(y.sourceExtent, y.targetExtent))};
  frame.toPoint = {toRect.fLeft, toRect.fTop};
  frame.target = toRect;
  frame.target.Intersect(to.Bounds());
  if (clip != nullptr)
    frame.target.Intersect(*clip);
  return frame;
}

// The target of a transfer through a mask, which is read at the source's coordinates.
Transfer MaskedTransfer(const ZvImage& to, const ZvImage& mask, const ZvRect& fromRect,
                        const ZvPoint& toPoint, const ZvRect* clip) {
  return CutTransfer(to, mask, fromRect, toPoint, clip);
}

// A transfer that reads what it writes goes pixel by pixel, so that it meets what it has written as
// the rule for one pixel says; any other goes all at once.
template <class Work>
void ForEachArea(const ZvRect& target, bool meetsItself, Work&& work) {
  if (target.IsEmpty())
    return;
  if (!meetsItself) {
    work(target);
    return;
  }
  for (int32_t y = target.fTop; y <= target.fBottom; ++y) {
    for (int32_t x = target.fLeft; x <= target.fRight; ++x)
      work(ZvRect(x, y, x, y));
  }
}

// `work(columns, y)` for stretches of columns that have something to read, each from the top to the
// bottom.
template <class Work>
void ForEachSampledRow(const ZvRect& area, RgbaSampler& sampler, Work&& work) {
  const int32_t preferred = sampler.PreferredColumns();
  for (int64_t x = area.fLeft; x <= area.fRight;) {
    // Stretches end with a tile.
    int64_t end = x + preferred;
    if (preferred >= kTileSize)
      end &= ~int64_t{kTileMask};
    end = std::min<int64_t>(end, int64_t{area.fRight} + 1);
    const Stretch columns =
        sampler.SetColumns({static_cast<int32_t>(x), static_cast<int32_t>(end - x)});
    if (columns.count > 0) {
      for (int32_t y = area.fTop; y <= area.fBottom; ++y)
        work(columns, y);
    }
    x = columns.count > 0 ? int64_t{columns.first} + columns.count : end;
  }
}

// --- reading

// No scaling: the source at a distance.
class UnscaledSampler final : public RgbaSampler {
 public:
  UnscaledSampler(const ZvImage& from, const Transfer& transfer)
      : mReader(from), mTransfer(transfer) {}

  Stretch SetColumns(const Stretch& columns) override { return mColumns = columns; }
  bool Row(int32_t y, PxRgbaBytes* out) override {
    mReader.Rgba(static_cast<int32_t>(mColumns.first - mTransfer.dx),
                 static_cast<int32_t>(y - mTransfer.dy), mColumns.count, out);
    return true;
  }

 private:
  ViewReader mReader;
  const Transfer mTransfer;
  Stretch mColumns{};
};

// --- writing

// `work(records, done, count)` for the runs of a piece of a row.
template <class Work>
void ForEachRunOf(RunWriter& writer, int32_t x, int32_t y, int32_t count, Work&& work) {
  for (int32_t done = 0; done < count;) {
    const Run run = writer.At(x + done, y, count - done);
    work(run.pixels, done, run.count);
    done += run.count;
  }
}

// The same for work that reads each record before it writes it. The pixel by which a tile comes
// into being reads as the default pixel, those behind it as the zeros of a new tile.
template <class Work>
void ForEachRewrite(RunImage& to, RunWriter& writer, int32_t x, int32_t y, int32_t count,
                    Work&& work) {
  const TiledImage* const tiled = to.IsTiled() ? static_cast<const TiledImage*>(&to) : nullptr;
  for (int32_t done = 0; done < count;) {
    const bool makesTile = tiled != nullptr && tiled->Tiles().Find(x + done, y) == nullptr;
    const Run run = writer.At(x + done, y, makesTile ? 1 : count - done);
    if (makesTile)
      std::memcpy(run.pixels, tiled->DefaultPixel(), to.Record().size);
    work(run.pixels, done, run.count);
    done += run.count;
  }
}

void ReadView(const RecordOps& record, const void* records, PxRgbaBytes* out, size_t count) {
  record.toRgba(records, out, count);
}
void ReadView(const RecordOps& record, const void* records, PxRgba64* out, size_t count) {
  record.toRgba64(records, out, count);
}
void WriteView(const RecordOps& record, const PxRgbaBytes* in, void* records, size_t count) {
  record.fromRgba(in, records, count);
}
void WriteView(const RecordOps& record, const PxRgba64* in, void* records, size_t count) {
  record.fromRgba64(in, records, count);
}

// Composites pixels of one view onto a piece of a row, in that view.
template <class View>
void CompositeRow(RunImage& to, RunWriter& writer, int32_t x, int32_t y, int32_t count,
                  const View* source) {
  const RecordOps& view = RecordOpsOf<View>();
  const RecordOps& record = to.Record();
  ForEachRewrite(to, writer, x, y, count, [&](uint8_t* records, int32_t done, int32_t n) {
    if (&record == &view) {
      view.composite(records, source + done, static_cast<size_t>(n));
      return;
    }
    for (int32_t i = 0; i < n; i += kViewPixels) {
      const auto part = static_cast<size_t>(std::min(n - i, kViewPixels));
      uint8_t* const place = records + static_cast<size_t>(i) * record.size;
      View pixels[kViewPixels];
      ReadView(record, place, pixels, part);
      view.composite(pixels, source + done + i, part);
      WriteView(record, pixels, place, part);
    }
  });
}

// What happens to PxRgbaBytes pixels between the sampler and the target.
struct RgbaPath {
  const ColourShift* shift;  // null: none
  const float* opacity;      // null: the pixels are stored, not composited
};

void TransferRgba(RunImage& to, const ZvRect& area, RgbaSampler& sampler, const RgbaPath& path) {
  RunWriter writer(to);
  PxRgbaBytes pixels[kMaxColumns];
  ForEachSampledRow(area, sampler, [&](const Stretch& columns, int32_t y) {
    if (!sampler.Row(y, pixels))
      return;
    if (path.shift != nullptr)
      ShiftColours(pixels, static_cast<size_t>(columns.count), *path.shift);
    if (path.opacity != nullptr) {
      ScaleAlpha(pixels, static_cast<size_t>(columns.count), *path.opacity);
      CompositeRow(to, writer, columns.first, y, columns.count, pixels);
      return;
    }
    ForEachRunOf(writer, columns.first, y, columns.count,
                 [&](uint8_t* records, int32_t done, int32_t n) {
                   to.Record().fromRgba(pixels + done, records, static_cast<size_t>(n));
                 });
  });
}

// --- modes 1 and 2

bool IsSameClassAs(const RunImage& to, const ZvImage& from) {
  const RunImage* const runs = AsRunImage(&from);
  return runs != nullptr && to.IsSameClass(*runs);
}

// Between images of one class the records themselves are stored. Such a loop asks for each source
// row.
void StoreNearest(RunImage& to, const ZvRect& area, const RunImage& from, PointSampler& sampler) {
  RunWriter writer(to);
  const size_t size = to.Record().size;
  ForEachSampledRow(area, sampler, [&](const Stretch& columns, int32_t y) {
    if (columns.first == area.fLeft)
      from.CheckRow(sampler.SourceRow(y));
    const uint8_t* const source = sampler.Records(y);
    ForEachRunOf(writer, columns.first, y, columns.count,
                 [&](uint8_t* records, int32_t done, int32_t n) {
                   std::memcpy(records, source + static_cast<size_t>(done) * size,
                               static_cast<size_t>(n) * size);
                 });
  });
}

// `pixels` of one view, stored.
template <class View, class Store>
void StoreSampled(RunImage& to, const ZvRect& area, PointSampler& sampler, Store&& store) {
  RunWriter writer(to);
  View pixels[kMaxColumns];
  ForEachSampledRow(area, sampler, [&](const Stretch& columns, int32_t y) {
    sampler.Row(y, pixels);
    ForEachRunOf(writer, columns.first, y, columns.count,
                 [&](uint8_t* records, int32_t done, int32_t n) {
                   store(pixels + done, records, static_cast<size_t>(n));
                 });
  });
}

void CopyPoints(RunImage& to, const ZvRect& area, const ZvImage& from, const Scaling& scaling) {
  PointSampler sampler(from, scaling);
  const RecordOps& record = to.Record();
  const bool nearest = scaling.mode == kResampleNearest;
  if (nearest && IsSameClassAs(to, from)) {
    StoreNearest(to, area, *AsRunImage(&from), sampler);
  } else if (nearest || record.bitsPerPixel > 24) {
    StoreSampled<PxRgba64>(to, area, sampler, record.fromRgba64);
  } else if (record.bitsPerPixel > 8) {
    StoreSampled<PxRgbBytes>(to, area, sampler, record.fromRgb);
  } else {
    StoreSampled<uint8_t>(to, area, sampler, record.fromByte);
  }
}

void CompositeWords(RunImage& to, const ZvRect& area, PointSampler& sampler, float opacity) {
  RunWriter writer(to);
  PxRgba64 pixels[kMaxColumns];
  ForEachSampledRow(area, sampler, [&](const Stretch& columns, int32_t y) {
    sampler.Row(y, pixels);
    ScaleAlpha(pixels, static_cast<size_t>(columns.count), opacity);
    CompositeRow(to, writer, columns.first, y, columns.count, pixels);
  });
}

// Coverage onto coverage, for images of at most eight bits.
void ScreenBytes(RunImage& to, const ZvRect& area, PointSampler& sampler, float opacity) {
  const RecordOps& record = to.Record();
  RunWriter writer(to);
  uint8_t source[kMaxColumns];
  ForEachSampledRow(area, sampler, [&](const Stretch& columns, int32_t y) {
    sampler.Row(y, source);
    ForEachRewrite(to, writer, columns.first, y, columns.count,
                   [&](uint8_t* records, int32_t done, int32_t n) {
                     uint8_t bytes[kMaxColumns];
                     record.toByte(records, bytes, static_cast<size_t>(n));
                     for (int32_t i = 0; i < n; ++i) {
                       const int32_t s =
                           ByteFromFloat(static_cast<float>(source[done + i]) * opacity);
                       bytes[i] = static_cast<uint8_t>(bytes[i] + s * (255 - bytes[i]) / 255);
                     }
                     record.fromByte(bytes, records, static_cast<size_t>(n));
                   });
  });
}

void BlendPoints(RunImage& to, const ZvRect& area, const ZvImage& from, const Scaling& scaling,
                 float opacity) {
  PointSampler sampler(from, scaling);
  const int32_t bits = to.BitsPerPixel();
  if (scaling.mode == kResampleNearest) {
    if (!(opacity < kFullOpacity) && IsSameClassAs(to, from))
      StoreNearest(to, area, *AsRunImage(&from), sampler);
    else
      CompositeWords(to, area, sampler, opacity);
  } else if (bits <= 8) {
    ScreenBytes(to, area, sampler, opacity);
  } else if (bits <= 32) {
    TransferRgba(to, area, sampler, {nullptr, &opacity});
  } else {
    CompositeWords(to, area, sampler, opacity);
  }
}

// --- all modes

void TransferScaled(RunImage& to, const ZvImage& from, const Frame& frame, const RgbaPath& path,
                    bool copying) {
  ForEachArea(frame.target, &from == &to, [&](const ZvRect& area) {
    if (const auto sampler = MakeRgbaSampler(from, frame.scaling, copying))
      TransferRgba(to, area, *sampler, path);
  });
}

// Same place, other colours.
void TransferUnscaled(RunImage& to, const ZvImage& from, const Frame& frame, const ZvRect* clip,
                      const RgbaPath& path) {
  const Transfer transfer = CutTransfer(to, from, frame.cutFrom, frame.toPoint, clip);
  ForEachArea(transfer.target, &from == &to, [&](const ZvRect& area) {
    UnscaledSampler sampler(from, transfer);
    TransferRgba(to, area, sampler, path);
  });
}

bool CheckSource(const RunImage& to, const ZvImage* from, const ZvRect& fromRect, int16_t line) {
  if (!CP_Check(from != nullptr, to.ReportName(), line, "from != nil"))
    return false;
  CP_Check(fromRect.fBottom != from->Height(), to.ReportName(), line,
           "fromRect.fBottom != from->Height()");
  return true;
}

// --- masks

// Calls `work(x, y, count)` for pieces of at most kViewPixels of a masked transfer's target.
template <class Work>
void ForEachMaskedPiece(const Transfer& transfer, bool meetsItself, Work&& work) {
  ForEachArea(transfer.target, meetsItself, [&](const ZvRect& area) { ForEachPiece(area, work); });
}

void BlendRgbByMask(RunImage& to, const ZvImage& from, const ZvImage& mask,
                    const Transfer& transfer, float opacity) {
  const bool storeSolid = !(opacity < kFullOpacity);
  ViewReader sources(from);
  ViewReader masks(mask);
  RunWriter writer(to);
  ForEachMaskedPiece(transfer, &from == &to, [&](int32_t x, int32_t y, int32_t count) {
    PxRgbBytes source[kViewPixels];
    uint8_t weights[kViewPixels];
    const auto fromX = static_cast<int32_t>(x - transfer.dx);
    const auto fromY = static_cast<int32_t>(y - transfer.dy);
    sources.Rgb(fromX, fromY, count, source);
    masks.Bytes(fromX, fromY, count, weights);
    ScaleMask(weights, static_cast<size_t>(count), opacity);
    ForEachRunOf(writer, x, y, count, [&](uint8_t* records, int32_t done, int32_t n) {
      BlendByMask(reinterpret_cast<PxRgbBytes*>(records), source + done, weights + done,
                  static_cast<size_t>(n), storeSolid);
    });
    writer.Store();
  });
}

// REQUIRED: replaces the target pixel by the source with less alpha; nothing of the target shines
// through.
void StoreByMask(RunImage& to, const ZvImage& from, const ZvImage& mask, const Transfer& transfer,
                 float opacity) {
  ViewReader sources(from);
  ViewReader masks(mask);
  RunWriter writer(to);
  ForEachMaskedPiece(
      transfer, &from == &to || &mask == &to, [&](int32_t x, int32_t y, int32_t count) {
        PxRgba64 source[kViewPixels];
        uint8_t coverage[kViewPixels];
        const auto fromX = static_cast<int32_t>(x - transfer.dx);
        const auto fromY = static_cast<int32_t>(y - transfer.dy);
        sources.Rgba64(fromX, fromY, count, source);
        masks.Bytes(fromX, fromY, count, coverage);
        ScaleAlphaByMask(source, coverage, static_cast<size_t>(count), opacity);
        ForEachRunOf(writer, x, y, count, [&](uint8_t* records, int32_t done, int32_t n) {
          to.Record().fromRgba64(source + done, records, static_cast<size_t>(n));
        });
        writer.Store();
      });
}

uint8_t AlphaFor(uint8_t coverage, const PxRgbaBytes&) {
  return coverage;
}
uint16_t AlphaFor(uint8_t coverage, const PxRgba64&) {
  return WordFromByte(coverage);
}

template <class View>
void PaintByMask(RunImage& to, const View& colour, const ZvImage& mask, const Transfer& transfer,
                 float opacity) {
  ViewReader masks(mask);
  RunWriter writer(to);
  ForEachMaskedPiece(transfer, &mask == &to, [&](int32_t x, int32_t y, int32_t count) {
    View source[kViewPixels];
    uint8_t coverage[kViewPixels];
    masks.Bytes(static_cast<int32_t>(x - transfer.dx), static_cast<int32_t>(y - transfer.dy), count,
                coverage);
    ScaleMask(coverage, static_cast<size_t>(count), opacity);
    // Pixels without coverage are neither rewritten nor make tiles.
    for (int32_t i = 0; i < count;) {
      int32_t n = 0;
      for (; i + n < count && coverage[i + n] != 0; ++n) {
        source[n] = colour;
        source[n].alpha = AlphaFor(coverage[i + n], colour);
      }
      CompositeRow(to, writer, x + i, y, n, source);
      i += n + 1;
    }
    writer.Store();
  });
}

}  // namespace

void RunImage::CopyScaled(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect,
                          int32_t mode, const ZvRect* clip) {
  if (!CheckSource(*this, from, fromRect, kLineCopyScaled))
    return;
  const Frame frame = FrameOf(*this, fromRect, toRect, mode, clip);
  if (frame.IsUnscaled()) {
    CopyFrom(from, frame.cutFrom, frame.toPoint, clip);
  } else if (mode == kResampleNearest || mode == kResampleBilinear) {
    ForEachArea(frame.target, from == this,
                [&](const ZvRect& area) { CopyPoints(*this, area, *from, frame.scaling); });
  } else {
    TransferScaled(*this, *from, frame, {nullptr, nullptr}, true);
  }
}

void RunImage::CopyAdjusted(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect,
                            float hue, float saturation, float lightness, int32_t mode,
                            const ZvRect* clip) {
  if (!CheckSource(*this, from, fromRect, kLineCopyAdjusted))
    return;
  const Frame frame = FrameOf(*this, fromRect, toRect, mode, clip);
  // REQUIRED: a saturation of 0 means no change here and gray everywhere below; a blend asks for 1.
  if (frame.IsUnscaled() && hue == 0 && saturation == 0 && lightness == 0) {
    CopyFrom(from, frame.cutFrom, frame.toPoint, clip);
    return;
  }
  const ColourShift shift = ColourShift::Of(hue, saturation, lightness);
  if (mode == kResampleNone)
    TransferUnscaled(*this, *from, frame, clip, {&shift, nullptr});
  else
    TransferScaled(*this, *from, frame, {&shift, nullptr}, true);
}

void RunImage::BlendScaled(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect,
                           float opacity, int32_t mode, const ZvRect* clip) {
  if (!CheckSource(*this, from, fromRect, kLineBlendScaled))
    return;
  const Frame frame = FrameOf(*this, fromRect, toRect, mode, clip);
  if (frame.IsUnscaled()) {
    BlendRect(from, frame.cutFrom, frame.toPoint, opacity, clip);
  } else if (mode == kResampleNearest || mode == kResampleBilinear) {
    ForEachArea(frame.target, from == this, [&](const ZvRect& area) {
      BlendPoints(*this, area, *from, frame.scaling, opacity);
    });
  } else {
    TransferScaled(*this, *from, frame, {nullptr, &opacity}, false);
  }
}

void RunImage::BlendAdjusted(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect,
                             float hue, float saturation, float lightness, float opacity,
                             int32_t mode, const ZvRect* clip) {
  if (!CheckSource(*this, from, fromRect, kLineBlendAdjusted))
    return;
  const Frame frame = FrameOf(*this, fromRect, toRect, mode, clip);
  if (frame.IsUnscaled() && hue == 0 && saturation == 1 && lightness == 0) {
    BlendRect(from, frame.cutFrom, frame.toPoint, opacity, clip);
    return;
  }
  const ColourShift shift = ColourShift::Of(hue, saturation, lightness);
  if (mode == kResampleNone)
    TransferUnscaled(*this, *from, frame, clip, {&shift, &opacity});
  else
    TransferScaled(*this, *from, frame, {&shift, &opacity}, true);
}

void RunImage::BlendMasked(const ZvImage* from, const ZvImage* mask, const ZvRect& fromRect,
                           const ZvPoint& toPoint, float opacity, const ZvRect* clip) {
  if (!CheckSource(*this, from, fromRect, kLineBlendMasked))
    return;
  if (mask == nullptr) {
    BlendRect(from, fromRect, toPoint, opacity, clip);
    return;
  }
  const Transfer transfer = MaskedTransfer(*this, *mask, fromRect, toPoint, clip);
  constexpr uint32_t kRgb = FourCC("RG24");
  if (PixelKind() == kRgb && from->PixelKind() == kRgb && mask->PixelKind() == FourCC("AlpB"))
    BlendRgbByMask(*this, *from, *mask, transfer, opacity);
  else
    StoreByMask(*this, *from, *mask, transfer, opacity);
}

void RunImage::PaintMasked(const PxRgba64& colour, const ZvImage* mask, const ZvRect& fromRect,
                           const ZvPoint& toPoint, float opacity, const ZvRect* clip) {
  if (mask == nullptr)
    return;
  const Transfer transfer = MaskedTransfer(*this, *mask, fromRect, toPoint, clip);
  if (BitsPerChannel() <= 8)
    PaintByMask(*this, colour.GetRgba(), *mask, transfer, opacity);
  else
    PaintByMask(*this, colour, *mask, transfer, opacity);
}

}  // namespace vm
