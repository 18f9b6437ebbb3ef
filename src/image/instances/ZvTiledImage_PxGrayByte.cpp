#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxGrayByte>();
template class ZvTiledImage<PxGrayByte>;
