#include "image/ZvTypedImage.inl"

template class ZvTypedImage<PxCmyka80>;
