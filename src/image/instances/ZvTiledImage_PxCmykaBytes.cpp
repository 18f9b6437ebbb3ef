#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxCmykaBytes>();
template class ZvTiledImage<PxCmykaBytes>;
