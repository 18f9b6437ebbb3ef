#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxCmyka80>();
template class vm::PixelImage<vm::TiledImage, PxCmyka80>;
template class ZvTiledImage<PxCmyka80>;
