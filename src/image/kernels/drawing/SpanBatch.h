#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace vm {

// Neighbouring pixels of one row.
struct Span {
  int32_t x;
  int32_t y;
  int32_t count;  // at least 1
};

// Takes the pixels of a shape. Spans arrive in drawing order; within a span no pixel comes twice,
// so its pixels may be drawn in any order.
class SpanPainter {
 public:
  virtual ~SpanPainter() = default;
  virtual void Paint(const Span* spans, size_t count) = 0;
};

// Collects pixels into spans and spans into batches, so that a painter is called seldom. Call Flush
// at the end.
class SpanBatch {
 public:
  explicit SpanBatch(SpanPainter& painter) : mPainter(painter) {}

  void Add(int32_t x, int32_t y) {
    if (mCount > 0) {
      Span& last = mSpans[mCount - 1];
      if (last.y == y && int64_t{x} == int64_t{last.x} + last.count) {
        ++last.count;
        return;
      }
      if (last.y == y && int64_t{x} == int64_t{last.x} - 1) {
        --last.x;
        ++last.count;
        return;
      }
    }
    AddRun(x, x, y);
  }

  // Columns left to right, both drawn; nothing when right lies before left.
  void AddRun(int32_t left, int32_t right, int32_t y) {
    if (left > right)
      return;
    if (mCount == mSpans.size())
      Flush();
    mSpans[mCount++] = {left, y, right - left + 1};
  }

  void Flush() {
    if (mCount > 0)
      mPainter.Paint(mSpans.data(), mCount);
    mCount = 0;
  }

 private:
  SpanPainter& mPainter;
  size_t mCount = 0;
  std::array<Span, 256> mSpans;
};

}  // namespace vm
