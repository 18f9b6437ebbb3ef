#include "persistence/ZvMemoryStream.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "foundation/CP_DebugAssert.h"
#include "persistence/ZvClassRegistry.h"

namespace {

const vm::ClassRegistration<ZvMemoryStream> kRegistration;

constexpr char kThisFile[] = "ZvMemoryStream";
constexpr int16_t kLineForeignMemory = 118;

std::shared_ptr<uint8_t> OwnBlock(uint8_t* block) {
  return {block, [](uint8_t* bytes) { std::free(bytes); }};
}

// What a stream can still deliver at most.
uint32_t BytesLeft(ZvStream& stream) {
  const uint32_t length = stream.GetLength();
  const uint32_t position = stream.Tell();
  return length > position ? length - position : 0;
}

}  // namespace

ZvMemoryStream::ZvMemoryStream() = default;

ZvMemoryStream::ZvMemoryStream(void* buffer, uint32_t size, bool ownMemory)
    : mBuffer(static_cast<uint8_t*>(buffer)),
      mDoWeOwnMemory(ownMemory),
      mCapacity(size),
      mSize(size) {
  if (mDoWeOwnMemory) {
    mOwnedBlock = OwnBlock(mBuffer);
  }
}

ZvMemoryStream::~ZvMemoryStream() = default;

void ZvMemoryStream::ClassName(ZvString& outName) const {
  outName = ZvString(kClassName);
}

void ZvMemoryStream::WriteTo(ZvStream& stream) {
  stream.WriteString(mBlobName, "Name", true);
  stream.WriteString(mBlobClass, "BlobClass", true);
  stream.WriteUInt32(mSize, "Size", true);
  if (mSize != 0) {
    stream.WriteBytes(mBuffer, mSize, true);
  }
}

void ZvMemoryStream::ReadFrom(ZvStream& stream) {
  stream.ReadString(mBlobName);
  stream.ReadString(mBlobClass);
  mSize = stream.ReadUInt32();
  if (mSize == 0) {
    return;
  }
  mSize = std::min(mSize, BytesLeft(stream));
  Reserve(mSize);
  mSize = std::min(mSize, mCapacity);
  if (mSize != 0) {
    stream.ReadBytes(mBuffer, mSize);
  }
}

bool ZvMemoryStream::IsOpen() {
  return mIsOpen;
}

bool ZvMemoryStream::CanWrite() {
  return true;
}

bool ZvMemoryStream::CanRead() {
  return true;
}

bool ZvMemoryStream::CanSeek() {
  return true;
}

void ZvMemoryStream::GetFullName(ZvString& outName) {
  outName = ZvString();
}

void ZvMemoryStream::GetName(ZvString& outName) {
  outName = mBlobName;
}

uint32_t ZvMemoryStream::Tell() {
  return mPosition;
}

bool ZvMemoryStream::Seek(uint32_t position) {
  if (position > mCapacity && Reserve(position)) {
    mCapacity = position;
  }
  mPosition = position;
  return true;
}

uint32_t ZvMemoryStream::GetLength() {
  return mSize;
}

const uint8_t* ZvMemoryStream::PeekHead(uint32_t count) {
  if (!StartHead(count)) {
    return mHeadBuffer.get();
  }
  const uint32_t readable = std::min(count, mCapacity);
  if (mIsOpen) {
    const uint32_t position = mPosition;
    Seek(0);
    RawRead(mHeadBuffer.get(), readable);
    Seek(position);
  } else {
    Open();
    RawRead(mHeadBuffer.get(), readable);
    Close();
  }
  mHeadCapacity = count;
  return mHeadBuffer.get();
}

uint32_t ZvMemoryStream::RawRead(void* buffer, uint32_t count) {
  if (mPosition >= mSize) {
    return 0;
  }
  const uint32_t copied = std::min(count, mSize - mPosition);
  if (copied != 0) {
    std::memcpy(buffer, mBuffer + mPosition, copied);
    mPosition += copied;
  }
  // REQUIRED: what is left behind the read, not what was read.
  return std::min(count, mSize - mPosition);
}

uint32_t ZvMemoryStream::RawWrite(const void* buffer, uint32_t count) {
  const uint64_t end = uint64_t{mPosition} + count;
  std::shared_ptr<uint8_t> previousBlock;
  if (end > mCapacity) {
    previousBlock = mOwnedBlock;  // The bytes may come from this very stream.
    if (!Grow(end) && mDoWeOwnMemory) {
      return 0;
    }
  }
  if (mBuffer == nullptr || end > std::numeric_limits<uint32_t>::max()) {
    return 0;
  }
  if (count != 0) {
    std::memmove(mBuffer + mPosition, buffer, count);
  }
  mPosition = static_cast<uint32_t>(end);
  mSize = std::max(mSize, mPosition);
  return count;
}

ZvMemoryStream* ZvMemoryStream::Duplicate() {
  auto* copy = new ZvMemoryStream;
  if (mHeadCapacity != 0) {
    copy->mHeadBuffer.reset(static_cast<uint8_t*>(std::malloc(mHeadCapacity)));
    if (copy->mHeadBuffer != nullptr) {
      std::memcpy(copy->mHeadBuffer.get(), mHeadBuffer.get(), mHeadCapacity);
      copy->mHeadCapacity = mHeadCapacity;
    }
  }
  copy->mStreamName = mStreamName;
  copy->mVersion = mVersion;
  copy->mFlagA = mFlagA;
  copy->mCompress = mCompress;
  copy->mParser = mParser;
  copy->mBuffer = mBuffer;
  copy->mDoWeOwnMemory = mDoWeOwnMemory;
  copy->mCapacity = mCapacity;
  copy->mSize = mSize;
  copy->mPosition = mPosition;
  copy->mBlobName = mBlobName;
  copy->mBlobClass = mBlobClass;
  copy->mIsOpen = mIsOpen;
  copy->mOwnedBlock = mOwnedBlock;
  return copy;
}

void ZvMemoryStream::SetBlobName(const ZvString& name) {
  mBlobName = name;
}

ZvString ZvMemoryStream::GetBlobClass() {
  return mBlobClass;
}

void ZvMemoryStream::SetBlobClass(const ZvString& blobClass) {
  mBlobClass = blobClass;
}

void ZvMemoryStream::Open() {
  if (mIsOpen) {
    Close();
  }
  mIsOpen = true;
  mPosition = 0;
}

void ZvMemoryStream::Close() {
  mIsOpen = false;
  mPosition = 0;
}

bool ZvMemoryStream::Reserve(uint32_t size) {
  return Grow(size);
}

bool ZvMemoryStream::Grow(uint64_t size) {
  if (!CP_Check(mDoWeOwnMemory, kThisFile, kLineForeignMemory, "mDoWeOwnMemory")) {
    return false;
  }
  if (size > mCapacity) {
    const uint64_t capacity = size + size / 2;
    if (capacity > std::numeric_limits<uint32_t>::max()) {
      return false;
    }
    auto* block = static_cast<uint8_t*>(std::calloc(static_cast<std::size_t>(capacity), 1));
    if (block == nullptr) {
      return false;
    }
    if (mBuffer != nullptr && mCapacity != 0) {
      std::memcpy(block, mBuffer, mCapacity);
    }
    mOwnedBlock = OwnBlock(block);
    mBuffer = block;
    mCapacity = static_cast<uint32_t>(capacity);
    size = capacity;
  }
  mSize = std::max(mSize, static_cast<uint32_t>(size));
  return true;
}
