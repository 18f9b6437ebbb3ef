#include "image/ZvTypedImage.inl"

template class vm::PixelImage<vm::RowImage, PxRgb48>;
template class ZvTypedImage<PxRgb48>;
