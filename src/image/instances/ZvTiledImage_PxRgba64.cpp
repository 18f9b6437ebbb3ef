#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxRgba64>();
template class vm::PixelImage<vm::TiledImage, PxRgba64>;
template class ZvTiledImage<PxRgba64>;
