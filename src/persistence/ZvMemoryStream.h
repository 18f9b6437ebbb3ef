#pragma once

#include <cstdint>
#include <memory>

#include "persistence/ZvStream.h"

// A stream over a block of memory, which can itself be streamed as an object (its two names, its
// length, its bytes). It needs no opening: reads and writes never look at the open flag.
//
// An owning stream grows as it is written and frees its block; a stream over foreign memory
// neither frees nor grows it.
class ZvMemoryStream : public ZvStream {
 public:
  static constexpr char kClassName[] = "ZvMemoryStream";

  // An empty stream that owns what it will hold.
  ZvMemoryStream();
  // A stream over `size` bytes at `buffer`, position 0. An owned buffer comes from malloc.
  ZvMemoryStream(void* buffer, uint32_t size, bool ownMemory);
  ~ZvMemoryStream() override;

  void ClassName(ZvString& outName) const override;
  void WriteTo(ZvStream& stream) override;
  // REQUIRED: reads 1.5 times the stored length (cut) into a stream that has to grow for it, and so
  // takes in what follows. A stored length beyond what the stream holds is cut to that first.
  void ReadFrom(ZvStream& stream) override;

  bool IsOpen() override;
  bool CanWrite() override;
  bool CanRead() override;
  bool CanSeek() override;
  // Yields the empty string.
  void GetFullName(ZvString& outName) override;
  // Yields the blob's name.
  void GetName(ZvString& outName) override;
  uint32_t Tell() override;
  // Always true. A position beyond the capacity grows the block; the capacity then becomes exactly
  // the position, whatever was allocated.
  bool Seek(uint32_t position) override;
  uint32_t GetLength() override;
  const uint8_t* PeekHead(uint32_t count) override;
  // REQUIRED: the result is min(count, bytes left behind what was read), not the number of bytes
  // copied; it is 0 whenever the read reached the end.
  uint32_t RawRead(void* buffer, uint32_t count) override;
  // Gives `count`; 0, with nothing written, when an owning stream can't grow to hold the bytes.
  // REQUIRED: a stream over foreign memory that would have to grow reports "mDoWeOwnMemory" and
  // then writes behind its block. Whoever hands memory over answers for its room.
  uint32_t RawWrite(const void* buffer, uint32_t count) override;

  // A new stream at count 1 with the same names, counts and position over the same block, which is
  // freed with the last owning stream. It shares this stream's parser too, and that parser stays
  // bound to this stream: give the copy a parser of its own before typed traffic.
  virtual ZvMemoryStream* Duplicate();
  virtual void SetBlobName(const ZvString& name);
  virtual ZvString GetBlobClass();
  virtual void SetBlobClass(const ZvString& blobClass);

  // Open and Close rewind and keep a flag; nothing else depends on them.
  void Open();
  void Close();

  // Makes room for `size` bytes. A block that must grow gets 1.5 times the size (cut), zero behind
  // the old bytes.
  // REQUIRED: the length then becomes the whole new capacity, not `size`.
  // A stream over foreign memory reports "mDoWeOwnMemory" and does nothing. False when the room
  // isn't there: that, a capacity above 2^32 - 1, or a failed allocation; nothing is changed then.
  bool Reserve(uint32_t size);

  // The block, valid until the next growth; GetLength bytes of it are data.
  uint8_t* GetBuffer() { return mBuffer; }
  uint32_t GetCapacity() const { return mCapacity; }

 private:
  bool Grow(uint64_t size);

  uint8_t* mBuffer = nullptr;
  bool mDoWeOwnMemory = true;
  uint32_t mCapacity = 0;
  uint32_t mSize = 0;
  uint32_t mPosition = 0;
  ZvString mBlobName;
  ZvString mBlobClass;
  bool mIsOpen = false;
  std::shared_ptr<uint8_t> mOwnedBlock;  // Frees mBuffer; shared with duplicates. Null if foreign.
};
