#include "layers/ZvLayerIterator.h"

ZvLayerIterator::ZvLayerIterator(ZvLayer* root, bool topDown) {
  Reset(root, topDown);
}

void ZvLayerIterator::Reset(ZvLayer* root, bool topDown) {
  mRoot = root;
  mStack.clear();
  mPreviousLayer = nullptr;
  mAtEnd = root == nullptr;
  if (!mAtEnd && !topDown) {
    DescendToFirst();
  }
}

// Depth 0 is the root.
ZvLayer* ZvLayerIterator::LayerAt(size_t depth) const {
  if (depth == 0) {
    return mRoot.Get();
  }
  const Position& position = mStack[depth - 1];
  return (*position.list)[position.index].Get();
}

ZvLayer* ZvLayerIterator::Current() const {
  return mAtEnd ? nullptr : LayerAt(mStack.size());
}

ZvLayer* ZvLayerIterator::Parent() const {
  return mAtEnd || mStack.empty() ? nullptr : LayerAt(mStack.size() - 1);
}

void ZvLayerIterator::DescendToFirst() {
  for (ZvLayer* layer = Current(); layer != nullptr && layer->HasSubLayers(); layer = Current()) {
    mStack.push_back({&layer->SubLayers(), 0});
  }
}

void ZvLayerIterator::Next() {
  if (mAtEnd) {
    return;
  }
  mPreviousLayer = Current();
  if (mStack.empty()) {
    mAtEnd = true;
    return;
  }
  Position& position = mStack.back();
  if (position.index + 1 < position.list->size()) {
    ++position.index;
    DescendToFirst();
  } else {
    mStack.pop_back();
  }
}

void ZvLayerIterator::Previous() {
  if (mAtEnd) {
    return;
  }
  mPreviousLayer = Current();
  if (mPreviousLayer != nullptr && mPreviousLayer->HasSubLayers()) {
    ZvLayerList& list = mPreviousLayer->SubLayers();
    mStack.push_back({&list, list.size() - 1});
    return;
  }
  while (!mStack.empty() && mStack.back().index == 0) {
    mStack.pop_back();
  }
  if (mStack.empty()) {
    mAtEnd = true;
    return;
  }
  --mStack.back().index;
}

bool ZvLayerIterator::Find(ZvLayer* root, bool topDown, const ZvLayer* layer) {
  Reset(root, topDown);
  while (!mAtEnd && Current() != layer) {
    if (topDown) {
      Previous();
    } else {
      Next();
    }
  }
  return !mAtEnd;
}
