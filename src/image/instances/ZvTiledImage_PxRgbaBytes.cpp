#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxRgbaBytes>();
template class vm::PixelImage<vm::TiledImage, PxRgbaBytes>;
template class ZvTiledImage<PxRgbaBytes>;
