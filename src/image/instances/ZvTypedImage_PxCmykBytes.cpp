#include "image/ZvTypedImage.inl"

template class ZvTypedImage<PxCmykBytes>;
