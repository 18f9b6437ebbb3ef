#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxGrayABytes>();
template class vm::PixelImage<vm::TiledImage, PxGrayABytes>;
template class ZvTiledImage<PxGrayABytes>;
