#pragma once

#include <cstdint>

#include "layers/ZvLayer.h"

namespace vm {

// Counts how deep the calls down a tree have gone, so that a tree of any depth can't exhaust the
// stack.
//   const LayerNesting nesting;
//   if (nesting.TooDeep()) return;
class LayerNesting {
 public:
  LayerNesting() { ++sDepth; }
  LayerNesting(const LayerNesting&) = delete;
  LayerNesting& operator=(const LayerNesting&) = delete;
  ~LayerNesting() { --sDepth; }

  bool TooDeep() const { return sDepth > kMaxLayerNesting; }
  int32_t Depth() const { return sDepth; }

 private:
  static inline int32_t sDepth = 0;
};

}  // namespace vm
