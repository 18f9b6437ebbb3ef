#include "image/ZvTypedImage.inl"

template class vm::PixelImage<vm::RowImage, PxCmykBytes>;
template class ZvTypedImage<PxCmykBytes>;
