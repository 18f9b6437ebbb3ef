#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <vector>

// Growable array of plain values with at most (2^32 - 1) / sizeof(T) entries. Its capacity starts
// at 1 and doubles until it suffices.
template <class T>
class ZvValueList {
 public:
  using iterator = typename std::vector<T>::iterator;
  using const_iterator = typename std::vector<T>::const_iterator;

  static constexpr uint32_t kMaxSize = 0xFFFFFFFF / sizeof(T);

  uint32_t size() const { return static_cast<uint32_t>(mValues.size()); }
  uint32_t capacity() const { return static_cast<uint32_t>(mValues.capacity()); }
  bool empty() const { return mValues.empty(); }

  T& operator[](uint32_t index) { return mValues[index]; }
  const T& operator[](uint32_t index) const { return mValues[index]; }
  T& back() { return mValues.back(); }
  const T& back() const { return mValues.back(); }
  iterator begin() { return mValues.begin(); }
  iterator end() { return mValues.end(); }
  const_iterator begin() const { return mValues.begin(); }
  const_iterator end() const { return mValues.end(); }

  void push_back(const T& value) { insert(size(), 1, value); }

  // Puts `count` copies of `value` before the entry at `position`, which is at most `size()`.
  // Throws std::length_error "vector::insert length error", with the list unchanged, beyond
  // `kMaxSize`.
  void insert(uint32_t position, uint32_t count, const T& value) {
    if (count > kMaxSize - size())
      throw std::length_error("vector::insert length error");
    const T copy = value;
    GrowFor(size() + count);
    mValues.insert(mValues.begin() + static_cast<ptrdiff_t>(position), count, copy);
  }

  void erase(uint32_t position) {
    mValues.erase(mValues.begin() + static_cast<ptrdiff_t>(position));
  }

  // Keeps the capacity.
  void clear() { mValues.clear(); }

  bool operator==(const ZvValueList&) const = default;

 private:
  void GrowFor(uint32_t wanted) {
    uint64_t grown = std::max<uint64_t>(capacity(), 1);
    while (grown < wanted)
      grown *= 2;
    mValues.reserve(static_cast<size_t>(std::min<uint64_t>(grown, kMaxSize)));
  }

  std::vector<T> mValues;
};
