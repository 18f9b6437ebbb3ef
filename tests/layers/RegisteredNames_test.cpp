// Which classes can be read by name once everything is linked and the registrars have run.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvStreamable.h"

namespace {

using testing::ElementsAreArray;
using testing::UnorderedElementsAre;

// The names that one run of the registrars adds.
std::vector<std::string> NamesOfOneRun() {
  const std::size_t before = GetClassRegistry().size();
  RunRegistrars();
  std::vector<std::string> names;
  for (std::size_t i = before; i < GetClassRegistry().size(); ++i) {
    names.emplace_back(GetClassRegistry()[i].mClassName.view());
  }
  return names;
}

bool IsImageName(const std::string& name) {
  return (name.starts_with("ZvImage") && name != "ZvImageLayer") || name.starts_with("ZvRowImage");
}

TEST(RegisteredNames, OfImagesAreNineteenInTheirOrder) {
  std::vector<std::string> names = NamesOfOneRun();
  std::erase_if(names, [](const std::string& name) { return !IsImageName(name); });
  EXPECT_THAT(names, ElementsAreArray({"ZvImageRgbBytes", "ZvImageRgbaBytes", "ZvImageGrayByte",
                                       "ZvImageGrayABytes", "ZvImageAlphaByte", "ZvImageGrayBit",
                                       "ZvImageRgba64", "ZvImageRgb48", "ZvRowImageRgbaBytes",
                                       "ZvRowImageRgbBytes", "ZvRowImageAlphaByte",
                                       "ZvRowImageGrayByte", "ZvRowImageGrayABytes",
                                       "ZvImageDepthFloat", "ZvImageXyFixed", "ZvImageXyFloats",
                                       "ZvImageCmykBytes", "ZvImageCmykaBytes", "ZvImageCmyk64"}));
}

// The files' initialisers run in an order that is the linker's affair, so only the set is fixed.
TEST(RegisteredNames, OfOtherClassesAreTheStreamTheLayersAndTheShapes) {
  std::vector<std::string> names = NamesOfOneRun();
  std::erase_if(names, IsImageName);
  EXPECT_THAT(names,
              UnorderedElementsAre("ZvMemoryStream", "ZvLayer", "ZvImageLayer", "ZvTypeLayer",
                                   "ZvColorPos", "ZvBezierCurve", "ZvStreamingPolygon"));
}

// REQUIRED: nothing looks for doubles; the host bridge runs the registrars at every Start.
TEST(RegisteredNames, ComeAgainWithEachRun) {
  const std::vector<std::string> first = NamesOfOneRun();
  EXPECT_THAT(NamesOfOneRun(), ElementsAreArray(first));
}

TEST(RegisteredNames, AllMakeAnObjectWithOneOwner) {
  for (const std::string& name : NamesOfOneRun()) {
    const ZvStreamableFactory factory = FindFactory(name.c_str());
    ASSERT_NE(factory, nullptr) << name;
    const std::unique_ptr<ZvStreamable> object(factory());
    EXPECT_EQ(object->GetRefCount(), 1u) << name;
  }
}

}  // namespace
