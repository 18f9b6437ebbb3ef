#include "foundation/ZvString.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

namespace {

constexpr char kConstructorLengthError[] = "string constructor: n > max_size";
constexpr char kAppendLengthError[] = "basic_string::append results in string > max_size";

// The capacity that a string has which was made in one piece for `length` bytes.
uint32_t FittedCapacity(uint32_t length) {
  return length + 3 - length % 4;
}

// The capacity that a growing string takes: 3, 7, 15, 31, 63 and so on.
uint32_t DoubledCapacity(uint32_t capacity, uint32_t length) {
  uint64_t grown = std::max<uint32_t>(3, capacity);
  while (grown < length)
    grown = 2 * grown + 3 - 2 * grown % 4;
  return static_cast<uint32_t>(std::min<uint64_t>(grown, ZvString::npos));
}

uint32_t CheckedTextLength(const char* text) {
  const size_t length = text != nullptr ? std::strlen(text) : 0;
  if (length > ZvString::kMaxLength)
    throw std::length_error(kConstructorLengthError);
  return static_cast<uint32_t>(length);
}

}  // namespace

ZvString::ZvString(const char* text) : ZvString(text, CheckedTextLength(text)) {}

ZvString::ZvString(const char* characters, uint32_t length) {
  if (length == npos)
    throw std::length_error(kConstructorLengthError);
  Reallocate(FittedCapacity(length), 0);
  CopyIn(characters, length);
}

ZvString::ZvString(const ZvString& source) {
  if (source.fBuffer == nullptr)
    return;
  Reallocate(FittedCapacity(source.fLength), 0);
  CopyIn(source.fBuffer, source.fLength);
}

ZvString::ZvString(ZvString&& source) noexcept
    : fLength(std::exchange(source.fLength, 0)),
      fCapacity(std::exchange(source.fCapacity, 0)),
      fBuffer(std::exchange(source.fBuffer, nullptr)) {}

ZvString::~ZvString() {
  std::free(fBuffer);
}

ZvString& ZvString::operator=(ZvString&& source) noexcept {
  std::swap(fLength, source.fLength);
  std::swap(fCapacity, source.fCapacity);
  std::swap(fBuffer, source.fBuffer);
  return *this;
}

ZvString& ZvString::operator=(const char* text) {
  assign(text, CheckedTextLength(text));
  return *this;
}

ZvString& ZvString::assign(const ZvString& source, uint32_t position, uint32_t count) {
  if (position > source.fLength)
    throw std::out_of_range("basic_string::assign pos out of range");
  return assign(source.c_str() + position, std::min(count, source.fLength - position));
}

ZvString& ZvString::assign(const char* characters, uint32_t length) {
  if (length == npos)
    throw std::length_error(kConstructorLengthError);
  char* const old = GrowFor(length, 0);
  CopyIn(characters, length);
  std::free(old);
  return *this;
}

ZvString& ZvString::append(const char* text) {
  return append(text, CheckedTextLength(text));
}

ZvString& ZvString::append(const char* characters, uint32_t length) {
  if (length == 0)
    return *this;
  if (length > kMaxLength - fLength)
    throw std::length_error(kAppendLengthError);
  char* const old = GrowFor(fLength + length, fLength);
  std::memmove(fBuffer + fLength, characters, length);
  SetLength(fLength + length);
  std::free(old);
  return *this;
}

ZvString& ZvString::append(const ZvString& source, uint32_t position, uint32_t count) {
  if (position > source.fLength)
    throw std::out_of_range("basic_string::append pos out of range");
  return append(source.c_str() + position, std::min(count, source.fLength - position));
}

ZvString& ZvString::append(uint32_t count, char character) {
  if (count == 0)
    return *this;
  if (count > kMaxLength - fLength)
    throw std::length_error(kAppendLengthError);
  std::free(GrowFor(fLength + count, fLength));
  std::memset(fBuffer + fLength, character, count);
  SetLength(fLength + count);
  return *this;
}

void ZvString::resize(uint32_t length, bool keep) {
  if (length == npos)
    throw std::length_error("basic_string::length error.  Resizing out of range");
  const uint32_t kept = keep ? std::min(fLength, length) : 0;
  std::free(GrowFor(length, kept));
  if (length > kept)
    std::memset(fBuffer + kept, 0, length - kept);
  SetLength(length);
}

ZvString& ZvString::replace(uint32_t position, uint32_t count, uint32_t newCount, char character) {
  if (position > fLength)
    throw std::out_of_range("basic_string::replace pos out of range");
  count = std::min(count, fLength - position);
  const uint32_t kept = fLength - count;
  if (newCount > kMaxLength - kept)
    throw std::length_error("basic_string::replace length error");
  const uint32_t newLength = kept + newCount;
  if (newLength > fCapacity)
    std::free(Reallocate(FittedCapacity(newLength), fLength));
  if (fBuffer == nullptr)
    return *this;
  const uint32_t tail = kept - position;
  std::memmove(fBuffer + position + newCount, fBuffer + position + count, tail);
  std::memset(fBuffer + position, character, newCount);
  SetLength(newLength);
  return *this;
}

uint32_t ZvString::find(char character, uint32_t from) const {
  if (from >= fLength)
    return npos;
  const size_t index = view().find(character, from);
  return index == std::string_view::npos ? npos : static_cast<uint32_t>(index);
}

int32_t ZvString::compare(uint32_t position, uint32_t count, const char* characters,
                          uint32_t length) const {
  if (position > fLength)
    throw std::out_of_range("string compare: pos > len");
  const uint32_t own = std::min(count, fLength - position);
  const uint32_t shared = std::min(own, length);
  if (shared > 0) {
    const int order = std::memcmp(fBuffer + position, characters, shared);
    if (order != 0)
      return order < 0 ? -1 : 1;
  }
  if (own == length)
    return 0;
  return own < length ? -1 : 1;
}

char* ZvString::Reallocate(uint32_t capacity, uint32_t keep) {
  const uint64_t bytes = uint64_t{capacity} + 1;
  auto* const grown =
      bytes <= PTRDIFF_MAX ? static_cast<char*>(std::malloc(static_cast<size_t>(bytes))) : nullptr;
  if (grown == nullptr)
    throw std::bad_alloc();
  if (keep > 0)
    std::memcpy(grown, fBuffer, keep);
  grown[keep] = '\0';
  fCapacity = capacity;
  return std::exchange(fBuffer, grown);
}

char* ZvString::GrowFor(uint32_t length, uint32_t keep) {
  if (length <= fCapacity)
    return nullptr;
  return Reallocate(DoubledCapacity(fCapacity, length), keep);
}

void ZvString::SetLength(uint32_t length) {
  fLength = length;
  if (fBuffer != nullptr)
    fBuffer[length] = '\0';
}

void ZvString::CopyIn(const char* characters, uint32_t length) {
  if (length > 0)
    std::memmove(fBuffer, characters, length);
  SetLength(length);
}
