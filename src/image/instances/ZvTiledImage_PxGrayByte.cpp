#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxGrayByte>();
template class vm::PixelImage<vm::TiledImage, PxGrayByte>;
template class ZvTiledImage<PxGrayByte>;
