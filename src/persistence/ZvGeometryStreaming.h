#pragma once

#include "foundation/ZvGeometry.h"

class ZvStream;

// The stream forms of the geometry values. A point of any kind is "(", first value, separator,
// second value, ")"; ZvPoint holds 32-bit integers, ZvFloatPoint floats, ZvDPoint2d doubles. A
// transform is its position, its scale and its two floats, with no mark around them. Rectangles are
// streamed by ZvStreamingArrayTemplate<ZvRect>.
//
// Reading consumes one byte for each mark, whatever it is.

void WriteTo(const ZvPoint& point, ZvStream& stream);
void WriteTo(const ZvFloatPoint& point, ZvStream& stream);
void WriteTo(const ZvDPoint2d& point, ZvStream& stream);
void WriteTo(const ZvSimpleTransform& transform, ZvStream& stream);

void ReadFrom(ZvPoint& point, ZvStream& stream);
void ReadFrom(ZvFloatPoint& point, ZvStream& stream);
void ReadFrom(ZvDPoint2d& point, ZvStream& stream);
void ReadFrom(ZvSimpleTransform& transform, ZvStream& stream);
