#include "persistence/ZvFileStream.h"

#include <algorithm>
#include <cstring>

#include "foundation/CP_Exceptions.h"
#include "foundation/FourCharCode.h"

namespace {

constexpr uint32_t kAnyCreator = FourCC("****");
constexpr uint32_t kTextType = FourCC("TEXT");

}  // namespace

ZvFileStream::ZvFileStream(const CP_FileSpec& spec)
    : mFileSpec(spec), mFile(spec), mReadAhead(std::make_unique<uint8_t[]>(kReadAheadSize)) {
  mFileSpec.GetName(mStreamName);
}

ZvFileStream::~ZvFileStream() {
  if (mIsOpen) {
    Close();
  }
}

bool ZvFileStream::IsOpen() {
  return mIsOpen;
}

bool ZvFileStream::CanWrite() {
  return mMode == kModeWrite || mMode == kModeReadWrite;
}

bool ZvFileStream::CanRead() {
  return mMode == kModeRead || mMode == kModeReadWrite;
}

bool ZvFileStream::CanSeek() {
  return true;
}

void ZvFileStream::GetFullName(ZvString& outName) {
  mFileSpec.GetFullPath(outName);
}

void ZvFileStream::GetName(ZvString& outName) {
  mFileSpec.GetName(outName);
}

uint32_t ZvFileStream::Tell() {
  return mAheadSize != 0 ? mAheadStart + mAheadOffset : mFile.GetPosition();
}

bool ZvFileStream::Seek(uint32_t position) {
  if (position >= mAheadStart && position - mAheadStart < mAheadSize) {
    mAheadOffset = position - mAheadStart;
    return true;
  }
  const uint32_t reached =
      mFile.SetPosition(CP_FILE_SEEK__FROM_BEGIN, static_cast<int32_t>(position));
  if (mMode == kModeRead) {
    FillReadAhead(position);
  }
  return reached == position;
}

uint32_t ZvFileStream::GetLength() {
  return mFile.GetLength();
}

const uint8_t* ZvFileStream::PeekHead(uint32_t count) {
  // REQUIRED: the length is asked first, so that a closed file reports "IsOpen()" before it is
  // opened; the answer isn't needed.
  try {
    mFile.GetLength();
  } catch (const CP_BaseException&) {
  }
  if (!StartHead(count)) {
    return mHeadBuffer.get();
  }
  if (mIsOpen) {
    const uint32_t position = Tell();
    Seek(0);
    RawRead(mHeadBuffer.get(), count);
    Seek(position);
  } else {
    OpenSilently(kModeRead);
    RawRead(mHeadBuffer.get(), count);
    Close();
  }
  mHeadCapacity = count;
  return mHeadBuffer.get();
}

uint32_t ZvFileStream::RawRead(void* buffer, uint32_t count) {
  if (!mIsOpen) {
    OpenSilently(mMode);
  }
  if (mMode != kModeRead) {
    return ReadFromFile(buffer, count);
  }
  auto* to = static_cast<uint8_t*>(buffer);
  uint32_t delivered = 0;
  bool lastRefillWasFull = true;
  while (true) {
    const uint32_t part = std::min(count - delivered, mAheadSize - mAheadOffset);
    std::memcpy(to + delivered, mReadAhead.get() + mAheadOffset, part);
    mAheadOffset += part;
    delivered += part;
    if (delivered == count || !lastRefillWasFull) {
      return delivered;
    }
    FillReadAhead(mFile.GetPosition());
    lastRefillWasFull = mAheadSize == kReadAheadSize;
  }
}

uint32_t ZvFileStream::RawWrite(const void* buffer, uint32_t count) {
  mFile.Write(buffer, &count);
  return count;
}

void ZvFileStream::Open(uint32_t mode) {
  if (mIsOpen) {
    Close();
  }
  mFile.Open(mode);
  mIsOpen = true;
  mMode = mode;
}

void ZvFileStream::Close() {
  mFile.Close();
  mIsOpen = false;
}

void ZvFileStream::CreateOnDisk() {
  mFile.Create(kModeReadWrite, kAnyCreator, kTextType, true);
}

void ZvFileStream::DeleteOnDisk() {
  mFile.Delete();
}

void ZvFileStream::OpenSilently(uint32_t mode) {
  try {
    Open(mode);
  } catch (const CP_BaseException&) {
    // What follows meets a closed file, and that reports.
  }
}

uint32_t ZvFileStream::ReadFromFile(void* buffer, uint32_t count) {
  mFile.Read(buffer, &count);
  return count;
}

void ZvFileStream::FillReadAhead(uint32_t position) {
  mAheadStart = position;
  mAheadOffset = 0;
  mAheadSize = 0;
  mAheadSize = ReadFromFile(mReadAhead.get(), kReadAheadSize);
}
