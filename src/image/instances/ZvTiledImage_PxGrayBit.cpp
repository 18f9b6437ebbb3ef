#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxGrayBit>();
template class ZvTiledImage<PxGrayBit>;
