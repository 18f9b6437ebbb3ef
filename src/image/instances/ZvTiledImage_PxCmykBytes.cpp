#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxCmykBytes>();
template class ZvTiledImage<PxCmykBytes>;
