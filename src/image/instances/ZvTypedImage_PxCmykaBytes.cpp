#include "image/ZvTypedImage.inl"

template class vm::PixelImage<vm::RowImage, PxCmykaBytes>;
template class ZvTypedImage<PxCmykaBytes>;
