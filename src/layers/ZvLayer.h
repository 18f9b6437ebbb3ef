#pragma once

#include <cstdint>
#include <vector>

#include "foundation/FourCharCode.h"
#include "foundation/ZvGeometry.h"
#include "foundation/ZvSmartPtr.h"
#include "foundation/ZvString.h"
#include "image/pixels/PxViews.h"
#include "image/ZvImage.h"
#include "layers/ZvDirty.h"
#include "layers/ZvRenderContext.h"
#include "persistence/members/ZvMemberTemplates.h"
#include "persistence/members/ZvSleekStreaming.h"

class ZvLayer;
using ZvLayerList = std::vector<ZvSmartPtr<ZvLayer>>;

// How long a layer is kept; one level is in use.
enum class ZvRetainLevel : int8_t { kStandard = 10 };

inline constexpr uint32_t kLayerKindBase = FourCC("BASE");
inline constexpr uint32_t kLayerKindGroup = FourCC("GRUP");
inline constexpr uint32_t kLayerKindMaskSet = FourCC("MSET");

// Sublayers that lie deeper than this take no part in what works down the tree by calls: bounds,
// moves, rendering, copies, streams.
inline constexpr int32_t kMaxLayerNesting = 256;

// Canvas coordinates beyond this on either side are cut from composites.
inline constexpr int32_t kMaxCanvasExtent = 30000;

// A node of a tree of pictures: an image of its own, if any, over what its sublayers make, over
// what lies below it.
//
// Every layer caches the composite of all that up to now: what was below when it was rendered (its
// backdrop) with the layer put on top. So rendering again costs what changed: each layer knows the
// area that it changed in (its dirty rectangle) and takes over the area in which its backdrop was
// touched; only there the composite is made anew. An unchanged tree gives its cached composite back
// without touching a pixel. A composite only ever grows.
//
// All positions are pixels of one canvas; a sublayer's position is not relative to its parent's,
// and moving a layer moves its sublayers. A layer owns its sublayers through counted references; a
// layer stands in one list at most.
class ZvLayer : public ZvSleekStreaming, public ZvDirty {
 public:
  static constexpr char kClassName[] = "ZvLayer";

  ZvLayer();
  ~ZvLayer() override;

  void ClassName(ZvString& outName) const override;
  // The member table. On a stream with a version below 1.0 the fixed form follows, which is also
  // what ReadFrom reads there (the member table reads nothing from such a stream): the two don't
  // mirror each other.
  void WriteTo(ZvStream& stream) override;
  void ReadFrom(ZvStream& stream) override;

  // The virtual operations stand in a fixed order.

  void SetDirty(bool dirty, bool addBounds) override;
  // A new layer of the same class, at count 1, with copies of the images and of the sublayers. The
  // backdrop and the "temporary" flag are not copied.
  virtual ZvLayer* Duplicate();

  virtual void SetOffsetOnly(const ZvPoint& offset);
  virtual ZvPoint& GetOffsetRef();
  virtual void SetCropping(const ZvRect& cropping, bool changed);
  // Gives the crop rectangle; true if it was set on purpose.
  virtual bool GetCropping(ZvRect& outCropping);
  virtual void MoveTo(const ZvPoint& position);
  virtual void GetPosition(ZvPoint& outPosition);
  // Moves the layer, or the picture inside its frame when there is one.
  virtual void Nudge(const ZvPoint& delta);
  // Width and height of the picture, else of the composite, else 0, 0.
  virtual void GetSize(ZvPoint& outSize);
  // The layer's own rectangle united with the bounds of its sublayers.
  virtual void GetBounds(ZvRect& outBounds);
  // The bounds united with what the composite covers.
  virtual void GetImageBounds(ZvRect& outBounds);
  // The bounding box of the pixels with an alpha above 9; with three such corners the whole
  // picture.
  virtual void GetOpaqueBounds(ZvRect& outBounds);
  virtual void SetScale(float x, float y);
  virtual void GetScale(ZvFloatPoint& outScale);
  virtual void SetRetain(ZvRetainLevel level);
  virtual ZvRetainLevel GetRetain();
  virtual void MarkDirty(bool dirty);
  virtual bool NeedsRender();
  virtual bool IsDirty();
  virtual void SetDirtyFlag(bool dirty, bool addBounds);

  // Renders the tree from here over the context's target and gives the composite, which becomes the
  // target. Null when there is nothing to show. Its pixel (0, 0) lies at the context's origin.
  virtual void Render(ZvSmartPtr<ZvImage>& outResult, ZvRenderContext& context);
  // REQUIRED: counts the sublayers' counts and nothing else, so the answer is 0 for every tree.
  virtual int32_t CountRenderable(ZvRenderContext& context);
  // The layer's share of Render.
  virtual void Composite(ZvRenderContext& context);
  virtual void Prepare(ZvRenderContext& context);
  virtual void Finish();

  virtual void SetComposite(ZvImage* image);
  virtual ZvSmartPtr<ZvImage> GetComposite();
  virtual ZvSmartPtr<ZvImage>& GetCompositeRef();
  // Gives the changed area; true if it is valid.
  virtual bool GetDirtyRect(ZvRect& outRect);
  virtual void SetDirtyRect(const ZvRect& rect, bool valid);
  virtual void AddDirtyRect(const ZvRect& rect);
  virtual ZvSmartPtr<ZvImage> GetBackdrop();
  virtual void SetBackdrop(ZvImage* image);
  // Called on the root: the place that is rendered over this layer has to be made anew. Reports
  // "iter.PreviousLayer() != nil" when there is no such place.
  virtual void InvalidateInParent(ZvLayer* layer);

  virtual void SetImage(ZvImage* image);
  virtual ZvSmartPtr<ZvImage>& GetImageRef();
  // The layer's picture; a new clear one up to rect's right and bottom if there is none:
  // PxAlphaByte for "AlpB", else PxRgbaBytes.
  virtual ZvSmartPtr<ZvImage>& EnsureImage(const ZvRect& rect, uint32_t pixelKind);
  virtual ZvSmartPtr<ZvImage> GetResultImage();
  virtual ZvSmartPtr<ZvImage> GetAlphaImage();
  virtual ZvSmartPtr<ZvImage> GetTopResultImage();

  virtual ZvString& GetNameRef();

  virtual bool HasSubLayers();
  // Called on the root. True if the layer was found below it and dropped.
  virtual bool RemoveFromTree(ZvLayer* layer);
  // On top of the sublayers. A layer can't be put into itself or what it holds: such a call is
  // ignored, like null.
  virtual void AddLayer(ZvLayer* layer);
  // Directly behind (above) `before`, which may lie anywhere below this layer; on top if `before`
  // is null. Nothing happens if it isn't found.
  virtual void InsertLayer(ZvLayer* layer, ZvLayer* before);
  virtual void AddBase(ZvLayer* layer, ZvLayer* before);
  // REQUIRED: drops nothing: temporary layers are told the same and the list is rebuilt from
  // itself.
  virtual void DropTemporaries();
  virtual void ConvertForOutput();

  virtual void SetColor(const PxRgba64& color);
  virtual PxRgba64 GetColor();
  virtual void EnableColor();
  virtual void DisableColor();
  // With a root, hiding a layer makes the place over it dirty.
  virtual void SetVisible(bool visible, ZvLayer* root);
  virtual bool IsVisible();
  virtual void SetHidden(bool hidden, ZvLayer* root);
  virtual bool IsHidden();
  virtual void SetTemp(bool temp);
  virtual bool IsTemp();
  virtual void SetLocked(bool locked);
  virtual bool IsLocked();
  virtual bool IsSelected();
  virtual void SetSelected(bool selected);
  virtual void SetFlags(uint32_t bits);
  virtual void ClearFlags(uint32_t bits);
  virtual bool TestFlags(uint32_t bits);
  virtual uint32_t GetFlags();
  // The picture's pixel at a point of the canvas; zero outside.
  virtual void GetPixel(PxRgbaBytes& outColor, const ZvPoint& point);
  virtual void GetPath(ZvString& outPath);
  virtual ZvString& GetPathRef();

  // 0 to 1. Setting it marks the layer dirty.
  float GetOpacity() const { return mOpacity.mValue; }
  void SetOpacity(float opacity);
  uint32_t GetKind() const { return mKind; }
  void SetKind(uint32_t kind) { mKind = kind; }
  bool HasColor() const { return mHasColor; }
  ZvLayerList& SubLayers() { return mSubLayers.mValue; }
  bool IsShown() const { return mVisible && !mFlagHidden; }

 protected:
  // Where a picture of this layer's stands.
  static ZvRect PlacedRect(const ZvImage* image, const ZvPoint& at);
  ZvPoint ImagePlace() const;
  ZvRect OwnRect();
  // All that has to be made anew when this tree comes or goes: its bounds, where its pictures were
  // shown last (an offset moves a picture out of its bounds), and what it has still to make anew
  // itself.
  ZvRect CoveredRect();

  // Takes over what changed below: the area the context was touched in, and, when the context has
  // another image than the one this layer was rendered over, all that either covers. Keeps the
  // context's target as the backdrop.
  void TakeOverBackdrop(const ZvRenderContext& context);
  // Makes what the layer's picture covered last time dirty if it now stands elsewhere, and its
  // place if the layer itself is dirty.
  void NotePlace(const ZvRect& place);
  // Composites `source`, standing at `at`, into the cached composite over the context's image,
  // inside `clip` (null: the layer's bounds), and makes the composite the context's target.
  void Merge(ZvRenderContext& context, ZvImage& source, const ZvPoint& at, const ZvRect* clip,
             float opacity);
  // For a layer that has nothing to show: takes what it showed before out of the composite.
  void LeaveOut(ZvRenderContext& context);
  // Puts the context's image back into the composite inside `clip`, with nothing on top.
  void RestoreBackdrop(ZvRenderContext& context, const ZvRect& clip);

  bool AnySubLayerNeedsRender();
  ZvLayer* LastShownSubLayer();
  // Copies everything that Duplicate copies into a fresh layer of the same class.
  void CopyTo(ZvLayer& copy);

  ZvStreamingArrayTemplate<ZvPoint> mOffset;
  ZvStreamingArrayTemplate<ZvRect> mCropping;
  ZvMemberTemplate<bool> mCropChanged;
  ZvStreamingEnumTemplate<ZvRetainLevel> mRetain;
  ZvMemberTemplate<ZvString> mName;
  ZvMemberTemplate<float> mOpacity;
  ZvStreamingObjectList<ZvLayerList, ZvLayer> mSubLayers;

  uint32_t mKind = 0;
  ZvSmartPtr<ZvImage> mComposite;  // the cached result
  ZvSmartPtr<ZvImage> mImage;      // the layer's own picture
  ZvSmartPtr<ZvImage> mBackdrop;   // what the layer was last rendered over
  ZvSimpleTransform mTransform;    // its position is where the layer stands
  bool mHasColor = false;
  PxRgba64 mColor;
  bool mFlagLocked = false;
  bool mVisible = true;
  bool mFlagHidden = false;
  bool mFlagTemp = false;
  bool mFlagSelected = false;
  bool mHasDirtyRect = true;
  ZvRect mDirtyRect = kEmptyRect;
  uint32_t mFlags = 0;
  ZvString mPath;

  ZvPoint mCompositeOrigin;         // where the composite's pixel (0, 0) lies
  ZvPoint mBackdropOrigin;          // the same for the backdrop
  ZvRect mMergedRect = kEmptyRect;  // where the layer's picture stands in the composite

 private:
  bool Holds(const ZvLayer* layer);
  void AddedLayer(ZvLayer& layer);
  void RenderSubLayers(ZvRenderContext& child, const ZvRect& owed);
  // Makes the composite hold `area` of the canvas. True if it was made anew.
  bool HoldInComposite(ZvRenderContext& context, const ZvImage* source, const ZvRect& area);
  void WriteFixedForm(ZvStream& stream);
  void ReadFixedForm(ZvStream& stream);
};
