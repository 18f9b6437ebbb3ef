#include "layers/ZvLayerIterator.h"

#include <gtest/gtest.h>

#include <string>

#include "layers/LayerTest.h"

namespace vm {
namespace {

// root holds a, b, c; b holds d, e; e holds f.
class LayerIterator : public testing::Test {
 protected:
  LayerIterator() {
    for (const char* name : {"root", "a", "b", "c", "d", "e", "f"}) {
      auto layer = ZvSmartPtr<ZvLayer>::Adopt(new ZvLayer);
      layer->GetNameRef() = name;
      mLayers.push_back(layer);
    }
    Of("e")->AddLayer(Of("f"));
    Of("b")->AddLayer(Of("d"));
    Of("b")->AddLayer(Of("e"));
    for (const char* name : {"a", "b", "c"})
      Of("root")->AddLayer(Of(name));
  }

  ZvLayer* Of(const std::string& name) {
    for (const ZvSmartPtr<ZvLayer>& layer : mLayers)
      if (layer->GetNameRef() == ZvString(name.c_str()))
        return layer.Get();
    return nullptr;
  }

  static std::string Name(ZvLayer* layer) {
    return layer == nullptr ? "-" : std::string(layer->GetNameRef().c_str());
  }

  std::vector<ZvSmartPtr<ZvLayer>> mLayers;
};

TEST_F(LayerIterator, BottomUpAChildComesBeforeItsParent) {
  std::string walk;
  for (ZvLayerIterator iter(Of("root"), false); !iter.AtEnd(); iter.Next())
    walk += Name(iter.Current()) + " ";
  EXPECT_EQ(walk, "a d f e b c root ");
}

TEST_F(LayerIterator, TopDownAParentComesFirstAndItsLastChildNext) {
  std::string walk;
  for (ZvLayerIterator iter(Of("root"), true); !iter.AtEnd(); iter.Previous())
    walk += Name(iter.Current()) + " ";
  EXPECT_EQ(walk, "root c b e f d a ");
}

TEST_F(LayerIterator, ItKnowsTheParentAndWhereItStoodBefore) {
  std::string walk;
  for (ZvLayerIterator iter(Of("root"), true); !iter.AtEnd(); iter.Previous())
    walk += Name(iter.Parent()) + "<" + Name(iter.PreviousLayer()) + " ";
  EXPECT_EQ(walk, "-<- root<root root<c b<b e<e b<f root<d ");
}

TEST_F(LayerIterator, FindWalksToTheLayerOrToTheEnd) {
  ZvLayerIterator iter(Of("a"), false);
  EXPECT_TRUE(iter.Find(Of("root"), false, Of("e")));
  EXPECT_EQ(iter.Current(), Of("e"));
  EXPECT_EQ(iter.Parent(), Of("b"));
  EXPECT_EQ(iter.PreviousLayer(), Of("f"));
  EXPECT_TRUE(iter.Find(Of("root"), true, Of("e")));
  EXPECT_EQ(iter.PreviousLayer(), Of("b"));

  const auto stranger = Group({});
  EXPECT_FALSE(iter.Find(Of("root"), true, stranger.Get()));
  EXPECT_TRUE(iter.AtEnd());
  EXPECT_EQ(iter.Current(), nullptr);
  EXPECT_FALSE(iter.Find(Of("root"), false, stranger.Get()));
}

TEST_F(LayerIterator, ALoneRootIsTheWholeWalk) {
  ZvLayerIterator up(Of("a"), false);
  EXPECT_EQ(up.Current(), Of("a"));
  up.Next();
  EXPECT_TRUE(up.AtEnd());
  up.Next();
  EXPECT_TRUE(up.AtEnd());
  ZvLayerIterator none(nullptr, true);
  EXPECT_TRUE(none.AtEnd());
}

TEST_F(LayerIterator, ItHoldsTheRoot) {
  ZvLayerIterator iter(Of("root"), true);
  EXPECT_EQ(Of("root")->GetRefCount(), 2U);
}

}  // namespace
}  // namespace vm
