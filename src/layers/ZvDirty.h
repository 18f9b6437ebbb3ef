#pragma once

// Something that remembers whether it changed since it was last shown.
class ZvDirty {
 public:
  // With `addBounds` what the object covers is noted as the changed area.
  virtual void SetDirty(bool dirty, bool addBounds) = 0;

 protected:
  ZvDirty() = default;
  ZvDirty(const ZvDirty&) = default;
  ZvDirty& operator=(const ZvDirty&) = default;
  ~ZvDirty() = default;

  bool mDirty = false;
};
