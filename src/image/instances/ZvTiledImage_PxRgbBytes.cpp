#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxRgbBytes>();
template class ZvTiledImage<PxRgbBytes>;
