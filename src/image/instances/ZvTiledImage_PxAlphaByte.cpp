#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxAlphaByte>();
template class vm::PixelImage<vm::TiledImage, PxAlphaByte>;
template class ZvTiledImage<PxAlphaByte>;
