#include "image/ZvTypedImage.inl"

template class vm::PixelImage<vm::RowImage, PxGrayByte>;
template class ZvTypedImage<PxGrayByte>;
