#include "image/ZvTypedImage.inl"

template class vm::PixelImage<vm::RowImage, PxCmyk64>;
template class ZvTypedImage<PxCmyk64>;
