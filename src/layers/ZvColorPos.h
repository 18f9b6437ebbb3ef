#pragma once

#include "image/pixels/PxViews.h"
#include "persistence/members/ZvMemberTemplates.h"
#include "persistence/members/ZvSleekStreaming.h"

// One stop of a colour ramp: a colour and a position.
class ZvColorPos : public ZvSleekStreaming {
 public:
  static constexpr char kClassName[] = "ZvColorPos";

  // Opaque white at 0.
  ZvColorPos();

  void ClassName(ZvString& outName) const override;

  // A new stop at count 1 that shares nothing with this one.
  virtual ZvColorPos* Clone() const;
  virtual void SetColor(const PxRgba64& color);
  virtual PxRgba64 GetColor() const;
  virtual void SetPos(float pos);
  virtual float GetPos() const;

 private:
  ZvStreamingArrayTemplate<PxRgba64> mColor;
  ZvMemberTemplate<float> mPos;
};
