#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxRgbBytes>();
template class vm::PixelImage<vm::TiledImage, PxRgbBytes>;
template class ZvTiledImage<PxRgbBytes>;
