#pragma once

#include <cstdint>

#include "foundation/CP_DebugAssert.h"

// The places that the image library's reports name. The numbers identify the check to whoever reads
// a report and are as fixed as the file names; they don't follow the layout of the source.
namespace vm {

inline constexpr char kReportImage[] = "ZVImage";       // operations that all images share
inline constexpr char kReportTiled[] = "ZvTiledImage";  // the tiled family
inline constexpr char kReportRow[] = "ZvImage";  // the row family: pixel loops and the row check
inline constexpr char kReportImageOps[] = "ZvImageOps";  // masks

inline constexpr int16_t kLineAddImage = 402;       // "fromImage != nil"
inline constexpr int16_t kLineSubtractImage = 470;  // "fromImage != nil"
inline constexpr int16_t kLineCopyAlpha = 530;      // "from != nil"
inline constexpr int16_t kLineRowAboveTop = 88;     // "y >= 0"
inline constexpr int16_t kLineRowBelowBottom = 89;  // "y < mHeight"
inline constexpr int16_t kLineTileIndex = 131;      // "x >= 0"
inline constexpr int16_t kLineCopyFrom = 610;       // "from != nil"
inline constexpr int16_t kLineCopyVisible = 668;    // "from != nil"
inline constexpr int16_t kLineSwapPixels = 702;     // "from != nil"
inline constexpr int16_t kLineCopyScaled =
    741;  // "from != nil", "fromRect.fBottom != from->Height()"
inline constexpr int16_t kLineCopyAdjusted = 812;  // the same two
inline constexpr int16_t kLineBlendRect = 905;     // "fromRect.fBottom != from->Height()"
inline constexpr int16_t kLineBlendMasked =
    988;  // "from != nil", "fromRect.fBottom != from->Height()"
inline constexpr int16_t kLineBlendScaled = 1061;    // the same two
inline constexpr int16_t kLineBlendAdjusted = 1134;  // the same two
inline constexpr int16_t kLineMixImage = 1283;       // "from != nil"
inline constexpr int16_t kLineFillClip = 1402;       // "mClippingRect.fBottom != this->Height()"
inline constexpr int16_t kLineDrawRect = 1451;       // "mClippingRect.fBottom != this->Height()"
inline constexpr int16_t kLineDrawLine = 1530;       // "mClippingRect.fBottom != this->Height()"
inline constexpr int16_t kLineDrawOval = 1612;       // "mClippingRect.fBottom != this->Height()"
inline constexpr int16_t kLineDrawPolygon = 1704;    // "mClippingRect.fBottom != this->Height()"
inline constexpr int16_t kLineNewRow = 1910;         // "newRow != nil"
inline constexpr int16_t kLinePutRow = 1932;         // "y != mHeight"
inline constexpr int16_t kLineGetRow = 1958;         // "y != mHeight"
inline constexpr int16_t kLineAppendBlocks = 1990;   // "y < mHeight"
inline constexpr int16_t kLineSolidMask = 44;        // "mask != nil"

}  // namespace vm
