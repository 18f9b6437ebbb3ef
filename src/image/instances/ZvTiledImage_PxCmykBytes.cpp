#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxCmykBytes>();
template class vm::PixelImage<vm::TiledImage, PxCmykBytes>;
template class ZvTiledImage<PxCmykBytes>;
