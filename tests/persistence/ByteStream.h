#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "persistence/ZvStream.h"

// "00 0F 61" for three bytes.
inline std::string ToHex(const uint8_t* bytes, std::size_t count) {
  std::string hex;
  for (std::size_t i = 0; i < count; ++i) {
    char text[4];
    std::snprintf(text, sizeof(text), "%02X ", bytes[i]);
    hex += text;
  }
  if (!hex.empty()) {
    hex.pop_back();
  }
  return hex;
}

inline std::string ToHex(const std::vector<uint8_t>& bytes) {
  return ToHex(bytes.data(), bytes.size());
}

// The bytes of a hex text like "00 0F 61".
inline std::vector<uint8_t> FromHex(std::string_view hex) {
  std::vector<uint8_t> bytes;
  for (std::size_t i = 0; i + 2 <= hex.size(); i += 3) {
    bytes.push_back(static_cast<uint8_t>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16)));
  }
  return bytes;
}

// The plainest stream there is, for tests of what goes through one: RawRead delivers what is left,
// RawWrite appends at the position.
class ByteStream : public ZvStream {
 public:
  ByteStream() = default;
  explicit ByteStream(std::string_view hex) : mBytes(FromHex(hex)) {}
  explicit ByteStream(std::vector<uint8_t> bytes) : mBytes(std::move(bytes)) {}

  bool IsOpen() override { return true; }
  bool CanWrite() override { return true; }
  bool CanRead() override { return true; }
  bool CanSeek() override { return true; }
  void GetFullName(ZvString& outName) override { outName = ZvString(); }
  void GetName(ZvString& outName) override { outName = mStreamName; }
  uint32_t Tell() override { return mPosition; }
  bool Seek(uint32_t position) override {
    mPosition = position;
    return true;
  }
  uint32_t GetLength() override { return static_cast<uint32_t>(mBytes.size()); }
  const uint8_t* PeekHead(uint32_t /*count*/) override { return nullptr; }

  uint32_t RawRead(void* buffer, uint32_t count) override {
    ++mReads;
    const uint32_t left = GetLength() - std::min(mPosition, GetLength());
    const uint32_t delivered = std::min(count, left);
    if (delivered != 0) {
      std::memcpy(buffer, mBytes.data() + mPosition, delivered);
    }
    mPosition += delivered;
    return delivered;
  }

  uint32_t RawWrite(const void* buffer, uint32_t count) override {
    ++mWrites;
    if (mBytes.size() < std::size_t{mPosition} + count) {
      mBytes.resize(mPosition + count);
    }
    if (count != 0) {
      std::memcpy(mBytes.data() + mPosition, buffer, count);
    }
    mPosition += count;
    return count;
  }

  const std::vector<uint8_t>& Bytes() const { return mBytes; }
  std::string Hex() const { return ToHex(mBytes); }
  int Reads() const { return mReads; }
  int Writes() const { return mWrites; }
  void Rewind() { mPosition = 0; }

 private:
  std::vector<uint8_t> mBytes;
  uint32_t mPosition = 0;
  int mReads = 0;
  int mWrites = 0;
};
