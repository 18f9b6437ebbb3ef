#include "image/ZvTypedImage.inl"

template class vm::PixelImage<vm::RowImage, PxCmyka80>;
template class ZvTypedImage<PxCmyka80>;
