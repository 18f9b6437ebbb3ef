// Unscaled copies between images of any two classes.

#include <cstring>

#include "foundation/FourCharCode.h"
#include "image/ImageReports.h"
#include "image/ViewRows.h"
#include "image/ZvImageFactory.h"

namespace vm {
namespace {

enum class View { kRaw, kRedAboveHalf, kBytes, kRgba, kRgba64 };

bool HasClassName(const ZvImage& image, const ZvString& name) {
  ZvString className;
  image.ClassName(className);
  return className == name;
}

// The view through which records of this type are written. The choice is the target's.
View ViewFor(const RecordOps& record) {
  if (record.kind == FourCC("AlpB"))
    return View::kBytes;
  return record.bitsPerChannel <= 8 ? View::kRgba : View::kRgba64;
}

// Decided once per call. Where going through a view would give the same records back, bytes are
// copied.
View ChooseView(const RunImage& to, const ZvImage& from, const RunImage* fromRuns) {
  const RecordOps& record = to.Record();
  const View view = ViewFor(record);
  if (fromRuns == nullptr)
    return view;
  if (&record == &fromRuns->Record()) {
    const bool kept = view == View::kRgba64 ? record.keptByRgba64 : record.keptByRgba;
    if (fromRuns->IsTiled() || !to.IsTiled() || kept)
      return View::kRaw;
  }
  // REQUIRED: between these two classes a bit is set by the red byte alone, not by the sum of the
  // three colours.
  if (HasClassName(to, gImageGrayBitClassName) && HasClassName(from, gImageRgbaBytesClassName))
    return View::kRedAboveHalf;
  return view;
}

// Reads `count` source pixels and stores them as records, through one view.
class RecordReader {
 public:
  RecordReader(const RunImage& to, const ZvImage& from)
      : mRecord(to.Record()), mView(ChooseView(to, from, AsRunImage(&from))), mViews(from) {
    if (mView == View::kRaw)
      mRuns.emplace(*AsRunImage(&from));
  }

  void Read(int32_t x, int32_t y, int32_t count, uint8_t* records) {
    if (mView == View::kRaw)
      ReadRaw(x, y, count, records);
    else if (mView == View::kRgba && &mRecord == &RecordOpsOf<PxRgbaBytes>())
      mViews.Rgba(x, y, count, reinterpret_cast<PxRgbaBytes*>(records));
    else if (mView == View::kRgba64 && &mRecord == &RecordOpsOf<PxRgba64>())
      mViews.Rgba64(x, y, count, reinterpret_cast<PxRgba64*>(records));
    else
      ReadViews(x, y, count, records);
  }

 private:
  void ReadRaw(int32_t x, int32_t y, int32_t count, uint8_t* records) {
    for (int32_t done = 0; done < count;) {
      const ConstRun run = mRuns->At(x + done, y, count - done);
      // Source and target may be the same pixels.
      std::memmove(records + static_cast<size_t>(done) * mRecord.size, run.pixels,
                   static_cast<size_t>(run.count) * mRecord.size);
      done += run.count;
    }
  }

  void ReadViews(int32_t x, int32_t y, int32_t count, uint8_t* records) {
    for (int32_t done = 0; done < count;) {
      const int32_t part = std::min(count - done, kViewPixels);
      ReadPiece(x + done, y, part, records + static_cast<size_t>(done) * mRecord.size);
      done += part;
    }
  }

  void ReadPiece(int32_t x, int32_t y, int32_t count, uint8_t* records) {
    const auto n = static_cast<size_t>(count);
    if (mView == View::kBytes) {
      uint8_t bytes[kViewPixels];
      mViews.Bytes(x, y, count, bytes);
      mRecord.fromByte(bytes, records, n);
    } else if (mView == View::kRgba64) {
      PxRgba64 pixels[kViewPixels];
      mViews.Rgba64(x, y, count, pixels);
      mRecord.fromRgba64(pixels, records, n);
    } else {
      PxRgbaBytes pixels[kViewPixels];
      mViews.Rgba(x, y, count, pixels);
      if (mView == View::kRgba) {
        mRecord.fromRgba(pixels, records, n);
        return;
      }
      for (size_t i = 0; i < n; ++i)
        records[i] = pixels[i].red > 127 ? 1 : 0;
    }
  }

  const RecordOps& mRecord;
  View mView;
  ViewReader mViews;
  std::optional<RunReader> mRuns;
};

// Within one image, a copy to the right in the same row moves pixel by pixel from the left and
// meets what it has written: a run may only be as long as the distance, so that copying it at once
// does the same.
int32_t LongestRun(const RunImage& to, const ZvImage& from, const Transfer& transfer) {
  const bool smears = &from == &to && transfer.dy == 0 && transfer.dx > 0;
  return smears ? static_cast<int32_t>(std::min<int64_t>(transfer.dx, INT32_MAX)) : INT32_MAX;
}

}  // namespace

void RunImage::CopyFrom(const ZvImage* from, const ZvRect& fromRect, const ZvPoint& toPoint,
                        const ZvRect* clip) {
  if (!CP_Check(from != nullptr, ReportName(), kLineCopyFrom, "from != nil"))
    return;
  const Transfer transfer = CutTransfer(*this, *from, fromRect, toPoint, clip);
  if (transfer.target.IsEmpty())
    return;
  RecordReader reader(*this, *from);
  const auto copy = [&](Run run, int32_t x, int32_t y) {
    reader.Read(static_cast<int32_t>(x - transfer.dx), static_cast<int32_t>(y - transfer.dy),
                run.count, run.pixels);
  };
  ForEachRun(*this, transfer.target, copy, LongestRun(*this, *from, transfer));
}

void RunImage::CopyVisible(const ZvImage* from, const ZvRect& fromRect, const ZvPoint& toPoint,
                           const ZvRect* clip) {
  if (!CP_Check(from != nullptr, ReportName(), kLineCopyVisible, "from != nil"))
    return;
  const Transfer transfer = CutTransfer(*this, *from, fromRect, toPoint, clip);
  ViewReader visible(*from);
  RecordReader reader(*this, *from);
  RunWriter writer(*this);
  const int32_t longest = std::min(kViewPixels, LongestRun(*this, *from, transfer));
  // Only what is visible is written, and so only that makes tiles.
  ForEachPiece(transfer.target, [&](int32_t left, int32_t y, int32_t count) {
    const auto fromY = static_cast<int32_t>(y - transfer.dy);
    for (int32_t i = 0; i < count;) {
      PxRgbaBytes alphas[kViewPixels];
      const int32_t part = std::min(count - i, longest);
      const auto fromX = static_cast<int32_t>(left + i - transfer.dx);
      visible.Rgba(fromX, fromY, part, alphas);
      for (int32_t k = 0; k < part;) {
        const bool shows = alphas[k].alpha != 0;
        int32_t same = 1;
        while (k + same < part && (alphas[k + same].alpha != 0) == shows)
          ++same;
        if (shows) {
          for (int32_t done = 0; done < same;) {
            const Run run = writer.At(left + i + k + done, y, same - done);
            reader.Read(fromX + k + done, fromY, run.count, run.pixels);
            done += run.count;
          }
        }
        k += same;
      }
      writer.Store();
      i += part;
    }
  });
}

void RunImage::SwapPixels(ZvImage* other, const ZvPoint& otherPoint, const ZvRect& rect) {
  if (!CP_Check(other != nullptr, ReportName(), kLineSwapPixels, "from != nil"))
    return;
  // The same cut as for a copy that comes from `otherPoint`.
  const int64_t dx = int64_t{rect.fLeft} - otherPoint.x;
  const int64_t dy = int64_t{rect.fTop} - otherPoint.y;
  const int64_t left = std::max<int64_t>({rect.fLeft, 0, dx});
  const int64_t top = std::max<int64_t>({rect.fTop, 0, dy});
  const int64_t right = std::min<int64_t>({rect.fRight, mWidth - 1, dx + other->Width() - 1});
  const int64_t bottom = std::min<int64_t>({rect.fBottom, mHeight - 1, dy + other->Height() - 1});
  if (left > right || top > bottom)
    return;
  const ZvRect target(static_cast<int32_t>(left), static_cast<int32_t>(top),
                      static_cast<int32_t>(right), static_cast<int32_t>(bottom));

  RunImage* const otherRuns = AsRunImage(other);
  if (otherRuns != nullptr && IsSameClass(*otherRuns)) {
    RunWriter own(*this);
    RunWriter foreign(*otherRuns);
    ForEachPiece(target, [&](int32_t x, int32_t y, int32_t count) {
      for (int32_t done = 0; done < count;) {
        // Within one image the areas may overlap: pixel by pixel, and each stored before the next
        // is read.
        const int32_t want = other == this ? 1 : count - done;
        const Run a = own.At(x + done, y, want);
        const Run b =
            foreign.At(static_cast<int32_t>(x + done - dx), static_cast<int32_t>(y - dy), a.count);
        const int32_t part = std::min(a.count, b.count);
        std::swap_ranges(a.pixels, a.pixels + static_cast<size_t>(part) * mRecord->size, b.pixels);
        own.Store();
        foreign.Store();
        done += part;
      }
    });
    return;
  }

  ViewReader ownReader(*this);
  ViewWriter ownWriter(*this);
  ViewReader otherReader(*other);
  ViewWriter otherWriter(*other);
  ForEachPiece(target, [&](int32_t x, int32_t y, int32_t count) {
    PxRgba64 own[kViewPixels];
    PxRgba64 foreign[kViewPixels];
    const auto otherX = static_cast<int32_t>(x - dx);
    const auto otherY = static_cast<int32_t>(y - dy);
    ownReader.Rgba64(x, y, count, own);
    otherReader.Rgba64(otherX, otherY, count, foreign);
    ownWriter.Rgba64(x, y, count, foreign);
    otherWriter.Rgba64(otherX, otherY, count, own);
  });
}

}  // namespace vm
