#pragma once

#include <vector>

#include "layers/ZvLayer.h"

// Walks a tree of layers without recursion, from a root on which it holds a reference. The tree
// must not change during a walk.
//
// Bottom up, a layer comes after its sublayers, first child first: begin on the first leaf, go on
// with Next, end behind the root. Top down, a layer comes before its sublayers, last child first:
// begin on the root, go on with Previous, end behind the first leaf.
class ZvLayerIterator {
 public:
  ZvLayerIterator(ZvLayer* root, bool topDown);

  bool AtEnd() const { return mAtEnd; }
  // The layer it stands on; null at the end.
  ZvLayer* Current() const;
  // The layer that holds the current one; null on the root and at the end.
  ZvLayer* Parent() const;
  // The layer it stood on before the last step; null before the first step.
  ZvLayer* PreviousLayer() const { return mPreviousLayer; }

  void Next();
  void Previous();

  // Starts anew and walks until it stands on `layer` (true) or the end comes (false).
  bool Find(ZvLayer* root, bool topDown, const ZvLayer* layer);

 private:
  // A place in the list of sublayers of the layer one level up.
  struct Position {
    ZvLayerList* list;
    size_t index;
  };

  void Reset(ZvLayer* root, bool topDown);
  void DescendToFirst();
  ZvLayer* LayerAt(size_t depth) const;

  ZvSmartPtr<ZvLayer> mRoot;
  std::vector<Position> mStack;  // below the root, outermost first
  bool mAtEnd = true;
  ZvLayer* mPreviousLayer = nullptr;
};
