#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxXyFloats>();
template class vm::PixelImage<vm::TiledImage, PxXyFloats>;
template class ZvTiledImage<PxXyFloats>;
