#include "image/ZvTiledImage.inl"

template const vm::RecordOps& vm::RecordOpsOf<PxCmykaBytes>();
template class vm::PixelImage<vm::TiledImage, PxCmykaBytes>;
template class ZvTiledImage<PxCmykaBytes>;
