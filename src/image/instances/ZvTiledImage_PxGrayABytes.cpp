#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxGrayABytes>();
template class ZvTiledImage<PxGrayABytes>;
