#include "image/ZvTypedImage.inl"

template class vm::PixelImage<vm::RowImage, PxRgbBytes>;
template class ZvTypedImage<PxRgbBytes>;
