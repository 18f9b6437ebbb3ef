#include "image/ZvTypedImage.inl"

template class vm::PixelImage<vm::RowImage, PxAlphaByte>;
template class ZvTypedImage<PxAlphaByte>;
