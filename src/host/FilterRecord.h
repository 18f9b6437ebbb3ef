// The published filter interface of the host image editor: the record that a host and a filter
// plug-in share, the suites that hang off it, and the numbers that both sides use.
//
// Everything here is layout and constants, no behaviour. The names are the published ones, so that
// a field can be looked up by the name that plug-in writers know. The structures belong to the
// host; a plug-in reads and writes fields but never allocates or frees one.
//
// `FilterRecord` is packed to 4 bytes at most, on 32-bit and on 64-bit hosts alike; the suites are
// naturally aligned. The assertions at the end prove every offset for both pointer sizes.
#pragma once

#include <cstddef>
#include <cstdint>

// Calling convention of the entry point and of every callback.
#if defined(_WIN32)
#define VM_HOST_CALL __cdecl
#else
#define VM_HOST_CALL
#endif

// --- Elementary types --------------------------------------------------------------------------

using OSErr = int16_t;        // 0 is success
using Handle = char**;        // made and disposed of by the host's handle suite
using Fixed = int32_t;        // 16.16 fixed point
using PStringPtr = uint8_t*;  // length byte, then that many characters
using ConstPStringPtr = const uint8_t*;
using Str255 = uint8_t[256];  // room for the longest Pascal string

inline constexpr Fixed kFixedOne = 1 << 16;

struct Point {
  int16_t v;  // vertical, down
  int16_t h;  // horizontal
};

// `bottom` and `right` are exclusive.
struct Rect {
  int16_t top;
  int16_t left;
  int16_t bottom;
  int16_t right;
};

struct RGB16 {
  uint16_t red;
  uint16_t green;
  uint16_t blue;
};

// Structures of the interface that only pass through; their contents are not needed here.
struct PSPixelMap;
struct VRect;
struct PIDescriptorSimpleReference;
struct OpaqueReadDescriptor;
struct OpaqueWriteDescriptor;
using PIReadDescriptor = OpaqueReadDescriptor*;    // token of a descriptor that is being read
using PIWriteDescriptor = OpaqueWriteDescriptor*;  // token of a descriptor that is being written
using DescriptorKeyID = uint32_t;                  // four-character code
using DescriptorTypeID = uint32_t;                 // four-character code

// --- Numbers -----------------------------------------------------------------------------------

// Selectors of the entry point.
inline constexpr int16_t filterSelectorAbout = 0;  // the record is an about record, not a filter's
inline constexpr int16_t filterSelectorParameters = 1;
inline constexpr int16_t filterSelectorPrepare = 2;
inline constexpr int16_t filterSelectorStart = 3;
inline constexpr int16_t filterSelectorContinue = 4;
inline constexpr int16_t filterSelectorFinish = 5;

// Values of `FilterRecord::imageMode`. A 16-bit channel spans 0 to 32768.
inline constexpr int16_t plugInModeBitmap = 0;
inline constexpr int16_t plugInModeGrayScale = 1;
inline constexpr int16_t plugInModeIndexedColor = 2;
inline constexpr int16_t plugInModeRGBColor = 3;
inline constexpr int16_t plugInModeCMYKColor = 4;
inline constexpr int16_t plugInModeHSLColor = 5;
inline constexpr int16_t plugInModeHSBColor = 6;
inline constexpr int16_t plugInModeMultichannel = 7;
inline constexpr int16_t plugInModeDuotone = 8;
inline constexpr int16_t plugInModeLabColor = 9;
inline constexpr int16_t plugInModeGray16 = 10;
inline constexpr int16_t plugInModeRGB48 = 11;
inline constexpr int16_t plugInModeLab48 = 12;
inline constexpr int16_t plugInModeCMYK64 = 13;

// Values of `FilterRecord::filterCase`.
inline constexpr int16_t filterCaseFlatImageNoSelection = 1;
inline constexpr int16_t filterCaseFlatImageWithSelection = 2;
inline constexpr int16_t filterCaseFloatingSelection = 3;
inline constexpr int16_t filterCaseEditableTransparencyNoSelection = 4;
inline constexpr int16_t filterCaseEditableTransparencyWithSelection = 5;
inline constexpr int16_t filterCaseProtectedTransparencyNoSelection = 6;
inline constexpr int16_t filterCaseProtectedTransparencyWithSelection = 7;

// Results.
inline constexpr int16_t noErr = 0;
inline constexpr int16_t memFullErr = -108;
inline constexpr int16_t userCanceledErr = -128;
inline constexpr int16_t filterBadParameters = -30100;

// Values of `PIDescriptorParameters::playInfo`.
inline constexpr int16_t plugInDialogDontDisplay = 0;
inline constexpr int16_t plugInDialogDisplay = 1;
inline constexpr int16_t plugInDialogSilent = 2;

// Values of `PIDescriptorParameters::recordInfo`.
inline constexpr int16_t plugInDialogOptional = 0;
inline constexpr int16_t plugInDialogRequired = 1;
inline constexpr int16_t plugInDialogNone = 2;

// Value of the three padding fields: deliver the rectangles as they stand, unpadded.
inline constexpr int16_t plugInDoesNotWantPadding = -1;

// Values of `ColorServicesInfo::selector` and of its colour spaces.
inline constexpr int16_t plugIncolorServicesChooseColor = 0;
inline constexpr int16_t plugIncolorServicesConvertColor = 1;
inline constexpr int16_t plugIncolorServicesSamplePoint = 2;
inline constexpr int16_t plugIncolorServicesGetSpecialColor = 3;
inline constexpr int16_t plugIncolorServicesRGBSpace = 0;

// --- Suites (naturally aligned) ----------------------------------------------------------------

struct HandleProcs {
  int16_t handleProcsVersion;
  int16_t numHandleProcs;
  Handle(VM_HOST_CALL* newProc)(int32_t size);
  void(VM_HOST_CALL* disposeProc)(Handle handle);
  int32_t(VM_HOST_CALL* getSizeProc)(Handle handle);
  OSErr(VM_HOST_CALL* setSizeProc)(Handle handle, int32_t newSize);
  char*(VM_HOST_CALL* lockProc)(Handle handle, uint8_t moveHigh);
  void(VM_HOST_CALL* unlockProc)(Handle handle);
  void(VM_HOST_CALL* recoverSpaceProc)(int32_t size);
  void(VM_HOST_CALL* disposeRegularHandleProc)(Handle handle);
};

struct WriteDescriptorProcs {
  int16_t writeDescriptorProcsVersion;
  int16_t numWriteDescriptorProcs;
  PIWriteDescriptor(VM_HOST_CALL* openWriteDescriptorProc)();
  OSErr(VM_HOST_CALL* closeWriteDescriptorProc)(PIWriteDescriptor token, Handle* outDescriptor);
  OSErr(VM_HOST_CALL* putIntegerProc)(PIWriteDescriptor token, DescriptorKeyID key, int32_t value);
  OSErr(VM_HOST_CALL* putFloatProc)(PIWriteDescriptor token, DescriptorKeyID key,
                                    const double* value);
  OSErr(VM_HOST_CALL* putUnitFloatProc)(PIWriteDescriptor token, DescriptorKeyID key, uint32_t unit,
                                        const double* value);
  OSErr(VM_HOST_CALL* putBooleanProc)(PIWriteDescriptor token, DescriptorKeyID key, uint8_t value);
  OSErr(VM_HOST_CALL* putTextProc)(PIWriteDescriptor token, DescriptorKeyID key, Handle text);
  OSErr(VM_HOST_CALL* putAliasProc)(PIWriteDescriptor token, DescriptorKeyID key, Handle alias);
  OSErr(VM_HOST_CALL* putEnumeratedProc)(PIWriteDescriptor token, DescriptorKeyID key,
                                         DescriptorTypeID type, uint32_t value);
  OSErr(VM_HOST_CALL* putClassProc)(PIWriteDescriptor token, DescriptorKeyID key, uint32_t value);
  OSErr(VM_HOST_CALL* putSimpleReferenceProc)(PIWriteDescriptor token, DescriptorKeyID key,
                                              const PIDescriptorSimpleReference* reference);
  OSErr(VM_HOST_CALL* putObjectProc)(PIWriteDescriptor token, DescriptorKeyID key,
                                     DescriptorTypeID type, Handle object);
  OSErr(VM_HOST_CALL* putCountProc)(PIWriteDescriptor token, DescriptorKeyID key, uint32_t count);
  OSErr(VM_HOST_CALL* putStringProc)(PIWriteDescriptor token, DescriptorKeyID key,
                                     ConstPStringPtr string);
  OSErr(VM_HOST_CALL* putScopedClassProc)(PIWriteDescriptor token, DescriptorKeyID key,
                                          uint32_t value);
  OSErr(VM_HOST_CALL* putScopedObjectProc)(PIWriteDescriptor token, DescriptorKeyID key,
                                           DescriptorTypeID type, Handle object);
};

struct ReadDescriptorProcs {
  int16_t readDescriptorProcsVersion;
  int16_t numReadDescriptorProcs;
  // `keys` ends with 0. The host copies it or marks found keys in place, so it must be writable
  // memory although the interface publishes it as constant.
  PIReadDescriptor(VM_HOST_CALL* openReadDescriptorProc)(Handle descriptor,
                                                         const DescriptorKeyID* keys);
  OSErr(VM_HOST_CALL* closeReadDescriptorProc)(PIReadDescriptor token);
  uint8_t(VM_HOST_CALL* getKeyProc)(PIReadDescriptor token, DescriptorKeyID* key,
                                    DescriptorTypeID* type, int32_t* flags);
  OSErr(VM_HOST_CALL* getIntegerProc)(PIReadDescriptor token, int32_t* value);
  OSErr(VM_HOST_CALL* getFloatProc)(PIReadDescriptor token, double* value);
  OSErr(VM_HOST_CALL* getUnitFloatProc)(PIReadDescriptor token, uint32_t* unit, double* value);
  OSErr(VM_HOST_CALL* getBooleanProc)(PIReadDescriptor token, uint8_t* value);
  OSErr(VM_HOST_CALL* getTextProc)(PIReadDescriptor token, Handle* text);
  OSErr(VM_HOST_CALL* getAliasProc)(PIReadDescriptor token, Handle* alias);
  OSErr(VM_HOST_CALL* getEnumeratedProc)(PIReadDescriptor token, uint32_t* value);
  OSErr(VM_HOST_CALL* getClassProc)(PIReadDescriptor token, uint32_t* value);
  OSErr(VM_HOST_CALL* getSimpleReferenceProc)(PIReadDescriptor token,
                                              PIDescriptorSimpleReference* reference);
  OSErr(VM_HOST_CALL* getObjectProc)(PIReadDescriptor token, DescriptorTypeID* type,
                                     Handle* object);
  OSErr(VM_HOST_CALL* getCountProc)(PIReadDescriptor token, uint32_t* count);
  OSErr(VM_HOST_CALL* getStringProc)(PIReadDescriptor token, PStringPtr string);  // room for 256
  OSErr(VM_HOST_CALL* getPinnedIntegerProc)(PIReadDescriptor token, int32_t min, int32_t max,
                                            int32_t* value);
  OSErr(VM_HOST_CALL* getPinnedFloatProc)(PIReadDescriptor token, const double* min,
                                          const double* max, double* value);
  void* getPinnedUnitFloatProc;  // not called here; only its place in the suite matters
};

struct PIDescriptorParameters {
  int16_t descriptorParametersVersion;
  int16_t playInfo;    // set by the host: plugInDialogDontDisplay, ...Display or ...Silent
  int16_t recordInfo;  // set by the plug-in: plugInDialogOptional, ...Required or ...None
  Handle descriptor;   // the recorded parameters, or null
  WriteDescriptorProcs* writeDescriptorProcs;
  ReadDescriptorProcs* readDescriptorProcs;
};

struct ColorServicesInfo {
  int32_t infoSize;  // sizeof(ColorServicesInfo)
  int16_t selector;
  int16_t sourceSpace;
  int16_t resultSpace;
  uint8_t resultGamutInfoValid;
  uint8_t resultInGamut;
  void* reservedSourceSpaceInfo;
  void* reservedResultSpaceInfo;
  int16_t colorComponents[4];
  void* reserved;
  // What it points to depends on the selector; for choosing a colour: the prompt, or null.
  union {
    ConstPStringPtr pickerPrompt;
    Point* globalSamplePoint;
    int32_t specialColorID;
  } selectorParameter;
};

// --- The filter record -------------------------------------------------------------------------

#pragma pack(push, 4)
struct FilterRecord {
  int32_t serial;
  uint8_t(VM_HOST_CALL* abortProc)();  // not 0 when the user asked to stop
  void(VM_HOST_CALL* progressProc)(int32_t done, int32_t total);
  Handle parameters;  // null at first
  Point imageSize;    // of the image, in pixels
  int16_t planes;     // of the image
  Rect filterRect;
  RGB16 background;
  RGB16 foreground;
  int32_t maxSpace;
  int32_t bufferSpace;
  Rect inRect;
  int16_t inLoPlane;
  int16_t inHiPlane;
  Rect outRect;
  int16_t outLoPlane;
  int16_t outHiPlane;
  void* inData;  // first byte of the delivered input: pixels interleaved, plane 0 first
  int32_t inRowBytes;
  void* outData;  // first byte of the output buffer
  int32_t outRowBytes;
  uint8_t isFloating;
  uint8_t haveMask;  // not 0 when there is a selection
  uint8_t autoMask;
  Rect maskRect;
  void* maskData;  // first byte of the selection mask, one byte per pixel
  int32_t maskRowBytes;
  uint8_t backColor[4];
  uint8_t foreColor[4];
  uint32_t hostSig;  // four-character code of the host
  void(VM_HOST_CALL* hostProcs)(int16_t selector, void* data);
  int16_t imageMode;  // one of plugInMode...
  Fixed imageHRes;
  Fixed imageVRes;
  Point floatCoord;
  Point wholeSize;
  Fixed monitor[10];   // gamma, red x y, green x y, blue x y, white x y, ambient
  void* platformData;  // on Windows its first word is the owner window
  void* bufferProcs;
  void* resourceProcs;
  void(VM_HOST_CALL* processEvent)(void* event);
  OSErr(VM_HOST_CALL* displayPixels)(const PSPixelMap* source, const VRect* sourceRect, int32_t row,
                                     int32_t column, void* platformContext);
  HandleProcs* handleProcs;
  uint8_t supportsDummyChannels;
  uint8_t supportsAlternateLayouts;
  int16_t wantLayout;
  int16_t filterCase;  // one of filterCase...
  int16_t dummyPlaneValue;
  void* premiereHook;
  // Delivers `inRect`, `outRect` and `maskRect` for the planes in the record, and takes back what
  // was written through the former `outData`.
  OSErr(VM_HOST_CALL* advanceState)();
  uint8_t supportsAbsolute;
  uint8_t wantsAbsolute;
  OSErr(VM_HOST_CALL* getPropertyObsolete)(uint32_t signature, uint32_t key, int32_t index,
                                           intptr_t* simple, Handle* complex);
  uint8_t cannotUndo;
  uint8_t supportsPadding;
  int16_t inputPadding;
  int16_t outputPadding;
  int16_t maskPadding;
  uint8_t samplingSupport;  // not 0 when the host can scale
  uint8_t reservedByte;
  Fixed inputRate;
  Fixed maskRate;
  OSErr(VM_HOST_CALL* colorServices)(ColorServicesInfo* info);
  int16_t inLayerPlanes;
  int16_t inTransparencyMask;
  int16_t inLayerMasks;
  int16_t inInvertedLayerMasks;
  int16_t inNonLayerPlanes;
  int16_t outLayerPlanes;
  int16_t outTransparencyMask;
  int16_t outLayerMasks;
  int16_t outInvertedLayerMasks;
  int16_t outNonLayerPlanes;
  int16_t absLayerPlanes;
  int16_t absTransparencyMask;
  int16_t absLayerMasks;
  int16_t absInvertedLayerMasks;
  int16_t absNonLayerPlanes;
  int16_t inPreDummyPlanes;
  int16_t inPostDummyPlanes;
  int16_t outPreDummyPlanes;
  int16_t outPostDummyPlanes;
  int32_t inColumnBytes;
  int32_t inPlaneBytes;
  int32_t outColumnBytes;
  int32_t outPlaneBytes;
  void* imageServicesProcs;
  void* propertyProcs;
  int16_t inTileHeight;
  int16_t inTileWidth;
  Point inTileOrigin;
  int16_t absTileHeight;
  int16_t absTileWidth;
  Point absTileOrigin;
  int16_t outTileHeight;
  int16_t outTileWidth;
  Point outTileOrigin;
  int16_t maskTileHeight;
  int16_t maskTileWidth;
  Point maskTileOrigin;
  PIDescriptorParameters* descriptorParameters;
  PStringPtr errorString;  // room for 256
  void* channelPortProcs;
  void* documentInfo;
  void* sSPBasic;
  void* plugInRef;
  int32_t depth;  // bits per channel
  void* iccProfileData;
  int32_t iccProfileSize;
  int32_t canUseICCProfiles;
  uint8_t reserved[54];
};
#pragma pack(pop)

// Signature of the exported entry point. `data` is one word that the host keeps for the plug-in.
using PlugInEntryPoint = void(VM_HOST_CALL*)(int16_t selector, FilterRecord* filterRecord,
                                             intptr_t* data, int16_t* result);

// --- Proof of the layout -----------------------------------------------------------------------

namespace vm::layout {

// The figure that holds for this build's pointer size.
constexpr std::size_t ForPointerSize(std::size_t bits32, std::size_t bits64) {
  return sizeof(void*) == 4 ? bits32 : bits64;
}

}  // namespace vm::layout

#define VM_OFFSET(field, bits32, bits64) \
  static_assert(offsetof(FilterRecord, field) == vm::layout::ForPointerSize(bits32, bits64))

VM_OFFSET(serial, 0, 0);
VM_OFFSET(abortProc, 4, 4);
VM_OFFSET(progressProc, 8, 12);
VM_OFFSET(parameters, 12, 20);
VM_OFFSET(imageSize, 16, 28);
VM_OFFSET(planes, 20, 32);
VM_OFFSET(filterRect, 22, 34);
VM_OFFSET(background, 30, 42);
VM_OFFSET(foreground, 36, 48);
VM_OFFSET(maxSpace, 44, 56);
VM_OFFSET(bufferSpace, 48, 60);
VM_OFFSET(inRect, 52, 64);
VM_OFFSET(inLoPlane, 60, 72);
VM_OFFSET(inHiPlane, 62, 74);
VM_OFFSET(outRect, 64, 76);
VM_OFFSET(outLoPlane, 72, 84);
VM_OFFSET(outHiPlane, 74, 86);
VM_OFFSET(inData, 76, 88);
VM_OFFSET(inRowBytes, 80, 96);
VM_OFFSET(outData, 84, 100);
VM_OFFSET(outRowBytes, 88, 108);
VM_OFFSET(isFloating, 92, 112);
VM_OFFSET(haveMask, 93, 113);
VM_OFFSET(autoMask, 94, 114);
VM_OFFSET(maskRect, 96, 116);
VM_OFFSET(maskData, 104, 124);
VM_OFFSET(maskRowBytes, 108, 132);
VM_OFFSET(backColor, 112, 136);
VM_OFFSET(foreColor, 116, 140);
VM_OFFSET(hostSig, 120, 144);
VM_OFFSET(hostProcs, 124, 148);
VM_OFFSET(imageMode, 128, 156);
VM_OFFSET(imageHRes, 132, 160);
VM_OFFSET(imageVRes, 136, 164);
VM_OFFSET(floatCoord, 140, 168);
VM_OFFSET(wholeSize, 144, 172);
VM_OFFSET(monitor, 148, 176);
VM_OFFSET(platformData, 188, 216);
VM_OFFSET(bufferProcs, 192, 224);
VM_OFFSET(resourceProcs, 196, 232);
VM_OFFSET(processEvent, 200, 240);
VM_OFFSET(displayPixels, 204, 248);
VM_OFFSET(handleProcs, 208, 256);
VM_OFFSET(supportsDummyChannels, 212, 264);
VM_OFFSET(supportsAlternateLayouts, 213, 265);
VM_OFFSET(wantLayout, 214, 266);
VM_OFFSET(filterCase, 216, 268);
VM_OFFSET(dummyPlaneValue, 218, 270);
VM_OFFSET(premiereHook, 220, 272);
VM_OFFSET(advanceState, 224, 280);
VM_OFFSET(supportsAbsolute, 228, 288);
VM_OFFSET(wantsAbsolute, 229, 289);
VM_OFFSET(getPropertyObsolete, 232, 292);
VM_OFFSET(cannotUndo, 236, 300);
VM_OFFSET(supportsPadding, 237, 301);
VM_OFFSET(inputPadding, 238, 302);
VM_OFFSET(outputPadding, 240, 304);
VM_OFFSET(maskPadding, 242, 306);
VM_OFFSET(samplingSupport, 244, 308);
VM_OFFSET(reservedByte, 245, 309);
VM_OFFSET(inputRate, 248, 312);
VM_OFFSET(maskRate, 252, 316);
VM_OFFSET(colorServices, 256, 320);
VM_OFFSET(inLayerPlanes, 260, 328);
VM_OFFSET(inTransparencyMask, 262, 330);
VM_OFFSET(inLayerMasks, 264, 332);
VM_OFFSET(inInvertedLayerMasks, 266, 334);
VM_OFFSET(inNonLayerPlanes, 268, 336);
VM_OFFSET(outLayerPlanes, 270, 338);
VM_OFFSET(outTransparencyMask, 272, 340);
VM_OFFSET(outLayerMasks, 274, 342);
VM_OFFSET(outInvertedLayerMasks, 276, 344);
VM_OFFSET(outNonLayerPlanes, 278, 346);
VM_OFFSET(absLayerPlanes, 280, 348);
VM_OFFSET(absTransparencyMask, 282, 350);
VM_OFFSET(absLayerMasks, 284, 352);
VM_OFFSET(absInvertedLayerMasks, 286, 354);
VM_OFFSET(absNonLayerPlanes, 288, 356);
VM_OFFSET(inPreDummyPlanes, 290, 358);
VM_OFFSET(inPostDummyPlanes, 292, 360);
VM_OFFSET(outPreDummyPlanes, 294, 362);
VM_OFFSET(outPostDummyPlanes, 296, 364);
VM_OFFSET(inColumnBytes, 300, 368);
VM_OFFSET(inPlaneBytes, 304, 372);
VM_OFFSET(outColumnBytes, 308, 376);
VM_OFFSET(outPlaneBytes, 312, 380);
VM_OFFSET(imageServicesProcs, 316, 384);
VM_OFFSET(propertyProcs, 320, 392);
VM_OFFSET(inTileHeight, 324, 400);
VM_OFFSET(inTileWidth, 326, 402);
VM_OFFSET(inTileOrigin, 328, 404);
VM_OFFSET(absTileHeight, 332, 408);
VM_OFFSET(absTileWidth, 334, 410);
VM_OFFSET(absTileOrigin, 336, 412);
VM_OFFSET(outTileHeight, 340, 416);
VM_OFFSET(outTileWidth, 342, 418);
VM_OFFSET(outTileOrigin, 344, 420);
VM_OFFSET(maskTileHeight, 348, 424);
VM_OFFSET(maskTileWidth, 350, 426);
VM_OFFSET(maskTileOrigin, 352, 428);
VM_OFFSET(descriptorParameters, 356, 432);
VM_OFFSET(errorString, 360, 440);
VM_OFFSET(channelPortProcs, 364, 448);
VM_OFFSET(documentInfo, 368, 456);
VM_OFFSET(sSPBasic, 372, 464);
VM_OFFSET(plugInRef, 376, 472);
VM_OFFSET(depth, 380, 480);
VM_OFFSET(iccProfileData, 384, 484);
VM_OFFSET(iccProfileSize, 388, 492);
VM_OFFSET(canUseICCProfiles, 392, 496);
VM_OFFSET(reserved, 396, 500);

#undef VM_OFFSET

static_assert(sizeof(FilterRecord) == vm::layout::ForPointerSize(452, 556));
static_assert(alignof(FilterRecord) == 4);
static_assert(sizeof(HandleProcs) == vm::layout::ForPointerSize(4, 8) + 8 * sizeof(void*));
static_assert(sizeof(WriteDescriptorProcs) ==
              vm::layout::ForPointerSize(4, 8) + 16 * sizeof(void*));
static_assert(sizeof(ReadDescriptorProcs) == vm::layout::ForPointerSize(4, 8) + 18 * sizeof(void*));
static_assert(offsetof(PIDescriptorParameters, descriptor) == 8);
static_assert(sizeof(PIDescriptorParameters) == 8 + 3 * sizeof(void*));
static_assert(sizeof(ColorServicesInfo) == vm::layout::ForPointerSize(36, 56));
static_assert(offsetof(ColorServicesInfo, colorComponents) == vm::layout::ForPointerSize(20, 32));
static_assert(offsetof(ColorServicesInfo, selectorParameter) == vm::layout::ForPointerSize(32, 48));
static_assert(sizeof(Point) == 4 && sizeof(Rect) == 8 && sizeof(RGB16) == 6);
