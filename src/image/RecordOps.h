#pragma once

#include <cstddef>
#include <cstdint>

struct PxRgbaBytes;
struct PxRgbBytes;
struct PxRgba64;

namespace vm {

inline constexpr size_t kMaxRecordBytes = 10;

// What one pixel type can do, on stretches of its records: the bridge between code that is written
// once for all pixel types and the records. One constant table per type. `records` are `count`
// records in storage form, aligned for their type; a PxGrayBit takes a byte here, of which the low
// bit counts.
struct RecordOps {
  const char* name;  // "PxRgbBytes"

  // The figures that an image of this type reports.
  int32_t bitsPerPixel;
  int32_t bytesPerPixel;
  int32_t bitsPerChannel;
  int32_t channels;
  uint32_t kind;
  uint32_t model;
  bool hasAlpha;

  // Storage.
  size_t size;   // bytes of a record
  size_t align;  // alignment that a record needs
  bool packed;   // stored as bits: eight pixels in a byte, most significant bit first

  // Whether going through this view and back gives the same record, so that a transfer through it
  // between two images of this type may copy bytes.
  bool keptByRgba;
  bool keptByRgba64;
  // False for the one type into which colour can't be written: fromRgba64 stores nothing there.
  bool takesRgba64;

  // Views.
  void (*toRgba)(const void* records, PxRgbaBytes* out, size_t count);
  void (*fromRgba)(const PxRgbaBytes* in, void* records, size_t count);
  void (*toRgb)(const void* records, PxRgbBytes* out, size_t count);
  void (*fromRgb)(const PxRgbBytes* in, void* records, size_t count);
  void (*toByte)(const void* records, uint8_t* out, size_t count);
  void (*fromByte)(const uint8_t* in, void* records, size_t count);
  void (*toRgba64)(const void* records, PxRgba64* out, size_t count);
  void (*fromRgba64)(const PxRgba64* in, void* records, size_t count);

  // One channel as packed samples of (bitsPerChannel + 7) / 8 bytes, which need no alignment.
  void (*gather)(const void* records, void* samples, size_t count, int32_t channel);
  void (*scatter)(const void* samples, void* records, size_t count, int32_t channel);

  // Blends of `source` into `records`.
  void (*mix255)(void* records, const void* source, size_t count, float t);
  void (*mix256)(void* records, const void* source, size_t count, float t);
  // Null for the types that don't composite with their own.
  void (*composite)(void* records, const void* source, size_t count);
  void (*compositeBy)(void* records, const void* source, size_t count, float t);

  void (*invert)(void* records, size_t count);
};

template <class P>
const RecordOps& RecordOpsOf();

// XORs the stored bits of each record with those of `colour`, one record.
void XorRecords(void* records, const void* colour, size_t count, size_t recordSize);
// Stores `record` in each of the records.
void FillRecords(void* records, const void* record, size_t count, size_t recordSize);

}  // namespace vm
