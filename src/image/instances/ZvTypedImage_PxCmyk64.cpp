#include "image/ZvTypedImage.inl"

template class ZvTypedImage<PxCmyk64>;
