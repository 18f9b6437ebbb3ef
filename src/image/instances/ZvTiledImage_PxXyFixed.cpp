#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxXyFixed>();
template class ZvTiledImage<PxXyFixed>;
