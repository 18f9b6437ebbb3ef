#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxXyFixed>();
template class vm::PixelImage<vm::TiledImage, PxXyFixed>;
template class ZvTiledImage<PxXyFixed>;
