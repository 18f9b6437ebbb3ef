// Values that the framework and its users share. They are made at program start, in front of the
// statics of every source file that includes this header, and destroyed at exit.
#pragma once

#include "platform/CP_Region.h"
#include "platform/CP_RGBColor.h"
#include "platform/CP_ValueTypes.h"

inline const CP_Region kCP_EmptyRegion(0, 0, 0, 0);
inline const CP_Region kCP_WholePlaneRegion(-32768, -32768, 32767, 32767);

inline const CP_RGBColor kCP_White(65535, 65535, 65535);
inline const CP_RGBColor kCP_Black(0, 0, 0);
inline const CP_RGBColor kCP_LightGrey(49152, 49152, 49152);

inline constexpr CP_Point kCP_ZeroPoint;
inline constexpr CP_Rect kCP_ZeroRect;
inline constexpr CP_Size kCP_ZeroSize;
