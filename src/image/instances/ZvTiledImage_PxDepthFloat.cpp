#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxDepthFloat>();
template class vm::PixelImage<vm::TiledImage, PxDepthFloat>;
template class ZvTiledImage<PxDepthFloat>;
