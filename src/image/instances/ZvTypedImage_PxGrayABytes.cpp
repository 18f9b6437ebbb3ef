#include "image/ZvTypedImage.inl"

template class vm::PixelImage<vm::RowImage, PxGrayABytes>;
template class ZvTypedImage<PxGrayABytes>;
