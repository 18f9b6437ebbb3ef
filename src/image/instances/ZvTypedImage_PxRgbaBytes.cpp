#include "image/ZvTypedImage.inl"

template class vm::PixelImage<vm::RowImage, PxRgbaBytes>;
template class ZvTypedImage<PxRgbaBytes>;
