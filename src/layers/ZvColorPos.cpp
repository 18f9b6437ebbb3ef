#include "layers/ZvColorPos.h"

#include "persistence/ZvClassRegistry.h"

namespace {

const vm::ClassRegistration<ZvColorPos> kRegistration;

}  // namespace

ZvColorPos::ZvColorPos()
    : mColor(this, "Color", PxRgba64{0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}), mPos(this, "Pos", 0.0F) {}

void ZvColorPos::ClassName(ZvString& outName) const {
  outName = kClassName;
}

ZvColorPos* ZvColorPos::Clone() const {
  auto* const clone = new ZvColorPos;
  clone->mColor.mValue = mColor.mValue;
  clone->mPos.mValue = mPos.mValue;
  return clone;
}

void ZvColorPos::SetColor(const PxRgba64& color) {
  mColor.mValue = color;
}

PxRgba64 ZvColorPos::GetColor() const {
  return mColor.mValue;
}

void ZvColorPos::SetPos(float pos) {
  mPos.mValue = pos;
}

float ZvColorPos::GetPos() const {
  return mPos.mValue;
}
