#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxRgbaBytes>();
template class ZvTiledImage<PxRgbaBytes>;
