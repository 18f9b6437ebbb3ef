#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxCmyk64>();
template class vm::PixelImage<vm::TiledImage, PxCmyk64>;
template class ZvTiledImage<PxCmyk64>;
