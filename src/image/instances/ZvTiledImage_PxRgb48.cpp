#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxRgb48>();
template class vm::PixelImage<vm::TiledImage, PxRgb48>;
template class ZvTiledImage<PxRgb48>;
