#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxGrayBit>();
template class vm::PixelImage<vm::TiledImage, PxGrayBit>;
template class ZvTiledImage<PxGrayBit>;
