#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxDepthFloat>();
template class ZvTiledImage<PxDepthFloat>;
