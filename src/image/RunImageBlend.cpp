// Unscaled blends between images of any two classes.

#include <cstring>

#include "foundation/FourCharCode.h"
#include "image/ImageReports.h"
#include "image/ViewRows.h"

namespace vm {
namespace {

constexpr float kFullOpacity = 0.99f;  // from here on an opacity counts as full

alignas(16) constexpr uint8_t kZeroRecords[kViewPixels * kMaxRecordBytes] = {};

// One piece of the target and the place of its source.
struct Piece {
  uint8_t* records;
  int32_t fromX;
  int32_t fromY;
  int32_t count;
};

template <class Work>
void ForEachTargetPiece(RunImage& to, const Transfer& transfer, int32_t longest, Work&& work) {
  const auto piece = [&](Run run, int32_t x, int32_t y) {
    work(Piece{run.pixels, static_cast<int32_t>(x - transfer.dx),
               static_cast<int32_t>(y - transfer.dy), run.count});
  };
  ForEachRun(to, transfer.target, piece, longest);
}

// The source of a piece in the runs of an image of the same record: `work(records, source, count)`.
template <class Work>
void ForEachSourceRun(RunReader& reader, const Piece& piece, size_t size, Work&& work) {
  for (int32_t done = 0; done < piece.count;) {
    const ConstRun run = reader.At(piece.fromX + done, piece.fromY, piece.count - done);
    work(piece.records + static_cast<size_t>(done) * size, run.pixels,
         static_cast<size_t>(run.count));
    done += run.count;
  }
}

// Blending an image into itself meets pixels that it has just written, as going pixel by pixel
// does.
int32_t LongestPiece(const RunImage& to, const ZvImage& from, const Transfer& transfer) {
  const bool meets = &from == &to && transfer.dy == 0 && transfer.dx > 0;
  return meets ? static_cast<int32_t>(std::min<int64_t>(transfer.dx, kViewPixels)) : kViewPixels;
}

void BlendSameClass(RunImage& to, const RunImage& from, const Transfer& transfer, float opacity) {
  const RecordOps& record = to.Record();
  const bool partial = opacity < kFullOpacity;
  RunReader reader(from);
  ForEachTargetPiece(to, transfer, LongestPiece(to, from, transfer), [&](const Piece& piece) {
    ForEachSourceRun(reader, piece, record.size,
                     [&](uint8_t* records, const uint8_t* source, size_t count) {
                       if (record.composite != nullptr) {
                         if (partial)
                           record.compositeBy(records, source, count, opacity);
                         else
                           record.composite(records, source, count);
                       } else if (partial) {
                         record.mix255(records, source, count, opacity);
                       } else {
                         // REQUIRED: at full opacity the source is stored, not mixed.
                         std::memmove(records, source, count * record.size);
                       }
                     });
  });
}

// PxRgbBytes under PxRgbaBytes: composited in the bytes of the alpha form.
void CompositeOntoRgb(RunImage& to, const ZvImage& from, const Transfer& transfer, float opacity) {
  const RecordOps& rgba = RecordOpsOf<PxRgbaBytes>();
  const bool partial = opacity < kFullOpacity;
  ViewReader reader(from);
  ForEachTargetPiece(to, transfer, kViewPixels, [&](const Piece& piece) {
    PxRgbaBytes source[kViewPixels];
    PxRgbaBytes target[kViewPixels];
    const auto count = static_cast<size_t>(piece.count);
    reader.Rgba(piece.fromX, piece.fromY, piece.count, source);
    to.Record().toRgba(piece.records, target, count);
    if (partial) {
      rgba.compositeBy(target, source, count, opacity);
    } else {
      if (opacity != 1.0f) {
        for (size_t i = 0; i < count; ++i)
          source[i].alpha =
              static_cast<uint8_t>(TruncToInt32(static_cast<float>(source[i].alpha) * opacity));
      }
      rgba.composite(target, source, count);
    }
    to.Record().fromRgba(target, piece.records, count);
  });
}

void MixThroughView(RunImage& to, const ZvImage& from, const Transfer& transfer, float opacity) {
  const RecordOps& record = to.Record();
  const RunImage* const fromRuns = AsRunImage(&from);
  const bool sameRecord = fromRuns != nullptr && &fromRuns->Record() == &record;
  ViewReader views(from);
  std::optional<RunReader> runs;
  if (sameRecord)
    runs.emplace(*fromRuns);
  ForEachTargetPiece(to, transfer, kViewPixels, [&](const Piece& piece) {
    PxRgba64 words[kViewPixels];
    alignas(16) uint8_t narrowed[kViewPixels * kMaxRecordBytes];
    const auto count = static_cast<size_t>(piece.count);
    // A record that can't be written from colour keeps what it starts with: the source's own record
    // where there is one, so that inks cross between the families, else no ink.
    if (sameRecord) {
      ForEachSourceRun(*runs, {narrowed, piece.fromX, piece.fromY, piece.count}, record.size,
                       [&](uint8_t* records, const uint8_t* source, size_t n) {
                         std::memcpy(records, source, n * record.size);
                       });
    } else {
      std::memcpy(narrowed, kZeroRecords, count * record.size);
    }
    if (record.takesRgba64 && !(sameRecord && record.keptByRgba64)) {
      views.Rgba64(piece.fromX, piece.fromY, piece.count, words);
      record.fromRgba64(words, narrowed, count);
    }
    record.mix255(piece.records, narrowed, count, opacity);
  });
}

}  // namespace

void RunImage::BlendRect(const ZvImage* from, const ZvRect& fromRect, const ZvPoint& toPoint,
                         float opacity, const ZvRect* clip) {
  if (from == nullptr)
    return;
  CP_Check(fromRect.fBottom != from->Height(), ReportName(), kLineBlendRect,
           "fromRect.fBottom != from->Height()");
  const Transfer transfer = CutTransfer(*this, *from, fromRect, toPoint, clip);
  if (transfer.target.IsEmpty())
    return;
  const RunImage* const fromRuns = AsRunImage(from);
  if (fromRuns != nullptr && IsSameClass(*fromRuns))
    BlendSameClass(*this, *fromRuns, transfer, opacity);
  else if (PixelKind() == FourCC("RG24") && from->PixelKind() == FourCC("Rgba"))
    CompositeOntoRgb(*this, *from, transfer, opacity);
  else
    MixThroughView(*this, *from, transfer, opacity);
}

void RunImage::MixImage(const ZvImage* from, float t) {
  if (!CP_Check(from != nullptr, ReportName(), kLineMixImage, "from != nil"))
    return;
  ZvRect common = Bounds();
  common.Intersect(from->Bounds());
  const Transfer transfer{common, 0, 0};
  const RunImage* const fromRuns = AsRunImage(from);
  if (fromRuns != nullptr && IsSameClass(*fromRuns)) {
    RunReader reader(*fromRuns);
    ForEachTargetPiece(*this, transfer, kViewPixels, [&](const Piece& piece) {
      ForEachSourceRun(reader, piece, mRecord->size,
                       [&](uint8_t* records, const uint8_t* source, size_t count) {
                         mRecord->mix256(records, source, count, t);
                       });
    });
    return;
  }
  ViewReader views(*from);
  ForEachTargetPiece(*this, transfer, kViewPixels, [&](const Piece& piece) {
    PxRgbaBytes pixels[kViewPixels];
    alignas(16) uint8_t narrowed[kViewPixels * kMaxRecordBytes] = {};
    const auto count = static_cast<size_t>(piece.count);
    views.Rgba(piece.fromX, piece.fromY, piece.count, pixels);
    for (size_t i = 0; i < count; ++i)
      pixels[i].alpha = 255;
    mRecord->fromRgba(pixels, narrowed, count);
    mRecord->mix256(piece.records, narrowed, count, t);
  });
}

}  // namespace vm
