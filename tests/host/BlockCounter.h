#pragma once

#include <cstddef>
#include <cstdint>

namespace vm {

// Counts the live blocks of one size that `new` has given since it was made. Works through this
// program's own operators; one thread, one counter at a time.
class BlockCounter {
 public:
  explicit BlockCounter(size_t size);
  BlockCounter(const BlockCounter&) = delete;
  BlockCounter& operator=(const BlockCounter&) = delete;
  ~BlockCounter();

  // How many more of them there are than there were.
  int32_t Live() const;

  // Lets `count` more blocks of this size be made and refuses all behind them, until FailNone.
  static void FailAfter(size_t size, int32_t count);
  static void FailNone();
};

}  // namespace vm
