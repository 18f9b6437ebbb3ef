#include "image/ZvTypedImage.inl"

template class ZvTypedImage<PxRgb48>;
