#include "image/ZvTypedImage.inl"

template class vm::PixelImage<vm::RowImage, PxRgba64>;
template class ZvTypedImage<PxRgba64>;
