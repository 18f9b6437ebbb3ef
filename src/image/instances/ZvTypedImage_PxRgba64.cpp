#include "image/ZvTypedImage.inl"

template class ZvTypedImage<PxRgba64>;
