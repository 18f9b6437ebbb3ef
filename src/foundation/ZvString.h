#pragma once

#include <cstdint>
#include <string_view>

// Byte string without an encoding of its own; it may hold NUL bytes. Owns its characters: copies
// are deep. Positions and counts are in bytes, and `npos` (-1) as a count means all the rest.
//
// Misuse throws the runtime's std::length_error or std::out_of_range with the text given at each
// operation; running out of memory throws std::bad_alloc.
class ZvString {
 public:
  static constexpr uint32_t npos = 0xFFFFFFFF;
  static constexpr uint32_t kMaxLength = npos - 1;

  ZvString() = default;
  // A null `text` counts as empty.
  ZvString(const char* text);
  // length_error "string constructor: n > max_size" for a length of -1.
  ZvString(const char* characters, uint32_t length);
  ZvString(const ZvString& source);
  ZvString(ZvString&& source) noexcept;
  ~ZvString();

  ZvString& operator=(const ZvString& source) {
    if (this != &source)
      assign(source, 0, npos);
    return *this;
  }
  ZvString& operator=(ZvString&& source) noexcept;
  ZvString& operator=(const char* text);

  // Replaces the contents by up to `count` characters of `source`, which may be this string itself.
  // out_of_range "basic_string::assign pos out of range" for a position beyond the length.
  ZvString& assign(const ZvString& source, uint32_t position, uint32_t count);
  // `characters` may be part of this string. length_error "string constructor: n > max_size" for a
  // length of -1.
  ZvString& assign(const char* characters, uint32_t length);

  // Every form throws length_error "basic_string::append results in string > max_size" when the
  // result would be too long. `characters` may be part of this string.
  ZvString& append(const char* text);
  ZvString& append(const char* characters, uint32_t length);
  // out_of_range "basic_string::append pos out of range" for a position beyond the length.
  ZvString& append(const ZvString& source, uint32_t position, uint32_t count);
  ZvString& append(uint32_t count, char character);

  // Sets the length. With `keep` the first characters stay as they are; all others are NUL bytes.
  // length_error "basic_string::length error.  Resizing out of range" for a length of -1.
  void resize(uint32_t length, bool keep);

  // Puts `newCount` times `character` in the place of up to `count` characters; erases with a
  // `newCount` of 0. out_of_range "basic_string::replace pos out of range" for a position beyond
  // the length, length_error "basic_string::replace length error" when the result would be too
  // long.
  ZvString& replace(uint32_t position, uint32_t count, uint32_t newCount, char character);

  // Index of the first such character at or behind `from`, or npos.
  uint32_t find(char character, uint32_t from) const;
  bool Contains(char character) const { return find(character, 0) != npos; }

  // Compares up to `count` characters from `position` with `characters`, as unsigned bytes, then by
  // length: negative, 0 or positive. out_of_range "string compare: pos > len" for a position beyond
  // the length.
  int32_t compare(uint32_t position, uint32_t count, const char* characters, uint32_t length) const;

  // Never null; valid until the string changes.
  const char* c_str() const { return fBuffer != nullptr ? fBuffer : ""; }
  uint32_t length() const { return fLength; }
  // Bytes that fit without reallocating, the terminator not counted. It never falls, save when the
  // string is moved from.
  uint32_t capacity() const { return fCapacity; }
  bool empty() const { return fLength == 0; }
  std::string_view view() const { return {c_str(), fLength}; }
  // `index` must be below the length.
  char operator[](uint32_t index) const { return fBuffer[index]; }
  // The `length()` characters for writing; null for a string that never held anything.
  char* data() { return fBuffer; }

  friend bool operator==(const ZvString& a, const ZvString& b) { return a.view() == b.view(); }
  friend bool operator==(const ZvString& a, const char* b) { return a.view() == b; }
  friend bool operator<(const ZvString& a, const ZvString& b) { return a.view() < b.view(); }

 private:
  // Moves the first `keep` bytes into a buffer for `capacity` bytes, and hands back the old buffer,
  // which the caller frees.
  char* Reallocate(uint32_t capacity, uint32_t keep);
  // Makes room for `length` bytes by doubling.
  char* GrowFor(uint32_t length, uint32_t keep);
  void SetLength(uint32_t length);
  void CopyIn(const char* characters, uint32_t length);

  uint32_t fLength = 0;
  uint32_t fCapacity = 0;
  char* fBuffer = nullptr;
};
