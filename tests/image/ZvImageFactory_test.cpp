#include "image/ZvImageFactory.h"

#include "foundation/FourCharCode.h"
#include "image/ImageTestSupport.h"
#include "persistence/ZvClassRegistry.h"

namespace vm {
namespace {

TEST(ImageClassName, IsTheWrittenNameAndNotTheRegisteredOne) {
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxRgbBytes>>()), "ZvImageRgbBytes");
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxRgbaBytes>>()), "ZvImageRgbaBytes");
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxCmykBytes>>()), "ZvImageCmykBytes");
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxCmykaBytes>>()), "ZvImageCmykaBytes");
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxCmyk64>>()), "ZvImageCmyka64");
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxCmyka80>>()), "ZvImageCmyka80");
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxGrayByte>>()), "ZvImageGrayByte");
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxAlphaByte>>()), "ZvImageAlphaByte");
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxGrayBit>>()), "ZvImageGrayBit");
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxRgba64>>()), "ZvImageRgba64");
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxRgb48>>()), "ZvImageRgb48");
  EXPECT_EQ(ClassNameOf(*New<ZvTypedImage<PxRgbBytes>>()), "ZvRowImageRgbBytes");
  EXPECT_EQ(ClassNameOf(*New<ZvTypedImage<PxRgbaBytes>>()), "ZvRowImageRgbaBytes");
  EXPECT_EQ(ClassNameOf(*New<ZvTypedImage<PxAlphaByte>>()), "ZvRowImageAlphaByte");
  EXPECT_EQ(ClassNameOf(*New<ZvTypedImage<PxGrayByte>>()), "ZvRowImageGrayByte");
  EXPECT_EQ(ClassNameOf(*New<ZvTypedImage<PxGrayABytes>>()), "ZvRowImageGrayABytes");
}

TEST(ImageClassName, IsTheTypeNameForClassesThatAreNotListed) {
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxGrayABytes>>()), "ZvTiledImage<PxGrayABytes>");
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxDepthFloat>>()), "ZvTiledImage<PxDepthFloat>");
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxXyFixed>>()), "ZvTiledImage<PxXyFixed>");
  EXPECT_EQ(ClassNameOf(*New<ZvTiledImage<PxXyFloats>>()), "ZvTiledImage<PxXyFloats>");
  EXPECT_EQ(ClassNameOf(*New<ZvTypedImage<PxRgb48>>()), "ZvTypedImage<PxRgb48>");
  EXPECT_EQ(ClassNameOf(*New<ZvTypedImage<PxRgba64>>()), "ZvTypedImage<PxRgba64>");
  EXPECT_EQ(ClassNameOf(*New<ZvTypedImage<PxCmykBytes>>()), "ZvTypedImage<PxCmykBytes>");
  EXPECT_EQ(ClassNameOf(*New<ZvTypedImage<PxCmykaBytes>>()), "ZvTypedImage<PxCmykaBytes>");
  EXPECT_EQ(ClassNameOf(*New<ZvTypedImage<PxCmyk64>>()), "ZvTypedImage<PxCmyk64>");
  EXPECT_EQ(ClassNameOf(*New<ZvTypedImage<PxCmyka80>>()), "ZvTypedImage<PxCmyka80>");
}

TEST(ImageClassName, ListsARowImageOfBitsThatNobodyBuilds) {
  EXPECT_STREQ(StreamingNameOf("ZvTypedImage<PxGrayBit>"), "ZvRowImageGrayBit");
  EXPECT_STREQ(StreamingNameOf("ZvSomethingElse"), "ZvSomethingElse");
}

TEST(ImageRegistry, HoldsTheNineteenNamesInTheirOrder) {
  RunRegistrars();
  const std::vector<std::string> expected = {
      "ZvImageRgbBytes",      "ZvImageRgbaBytes",   "ZvImageGrayByte",     "ZvImageGrayABytes",
      "ZvImageAlphaByte",     "ZvImageGrayBit",     "ZvImageRgba64",       "ZvImageRgb48",
      "ZvRowImageRgbaBytes",  "ZvRowImageRgbBytes", "ZvRowImageAlphaByte", "ZvRowImageGrayByte",
      "ZvRowImageGrayABytes", "ZvImageDepthFloat",  "ZvImageXyFixed",      "ZvImageXyFloats",
      "ZvImageCmykBytes",     "ZvImageCmykaBytes",  "ZvImageCmyk64"};
  std::vector<std::string> names;
  for (const ZvClassRecord& record : GetClassRegistry()) {
    const std::string name = record.mClassName.c_str();
    if (name.rfind("ZvImage", 0) == 0 || name.rfind("ZvRowImage", 0) == 0)
      names.push_back(name);
  }
  ASSERT_GE(names.size(), 19u);
  EXPECT_EQ(std::vector<std::string>(names.begin(), names.begin() + 19), expected);
}

TEST(ImageRegistry, GrowsByOneSetWithEachRun) {
  RunRegistrars();
  const size_t before = GetClassRegistry().size();
  RunRegistrars();
  EXPECT_GE(GetClassRegistry().size(), before + 19);
}

template <class Image>
void ExpectCreates(const char* name, int32_t bytesPerPixel) {
  const ZvStreamableFactory factory = FindFactory(name);
  ASSERT_NE(factory, nullptr) << name;
  const auto object = ZvSmartPtr<ZvStreamable>::Adopt(factory());
  const auto* const image = dynamic_cast<const Image*>(object.Get());
  ASSERT_NE(image, nullptr) << name;
  EXPECT_EQ(image->Bounds(), ZvRect(0, 0, 0, 0));
  EXPECT_EQ(image->BytesPerPixel(), bytesPerPixel);
  EXPECT_EQ(image->GetRefCount(), 1u);
}

TEST(ImageRegistry, CreatesImagesOfOnePixel) {
  RunRegistrars();
  ExpectCreates<ZvTiledImage<PxRgbBytes>>("ZvImageRgbBytes", 3);
  ExpectCreates<ZvTiledImage<PxRgbaBytes>>("ZvImageRgbaBytes", 4);
  ExpectCreates<ZvTiledImage<PxGrayByte>>("ZvImageGrayByte", 1);
  ExpectCreates<ZvTiledImage<PxGrayABytes>>("ZvImageGrayABytes", 2);
  ExpectCreates<ZvTiledImage<PxAlphaByte>>("ZvImageAlphaByte", 1);
  ExpectCreates<ZvTiledImage<PxGrayBit>>("ZvImageGrayBit", 1);
  ExpectCreates<ZvTiledImage<PxRgba64>>("ZvImageRgba64", 8);
  ExpectCreates<ZvTiledImage<PxRgb48>>("ZvImageRgb48", 6);
  ExpectCreates<ZvTypedImage<PxRgbaBytes>>("ZvRowImageRgbaBytes", 4);
  ExpectCreates<ZvTypedImage<PxRgbBytes>>("ZvRowImageRgbBytes", 3);
  ExpectCreates<ZvTypedImage<PxAlphaByte>>("ZvRowImageAlphaByte", 1);
  ExpectCreates<ZvTypedImage<PxGrayByte>>("ZvRowImageGrayByte", 1);
  ExpectCreates<ZvTypedImage<PxGrayABytes>>("ZvRowImageGrayABytes", 2);
  ExpectCreates<ZvTiledImage<PxDepthFloat>>("ZvImageDepthFloat", 4);
  ExpectCreates<ZvTiledImage<PxXyFixed>>("ZvImageXyFixed", 4);
  ExpectCreates<ZvTiledImage<PxXyFloats>>("ZvImageXyFloats", 8);
  ExpectCreates<ZvTiledImage<PxCmykBytes>>("ZvImageCmykBytes", 4);
  ExpectCreates<ZvTiledImage<PxCmykaBytes>>("ZvImageCmykaBytes", 5);
  ExpectCreates<ZvTiledImage<PxCmyk64>>("ZvImageCmyk64", 8);
}

TEST(ImageRegistry, AnswersToNoneOfTheMismatchedNames) {
  RunRegistrars();
  for (const char* const name :
       {"ZvImageCmyka64", "ZvImageCmyka80", "ZvTiledImage<PxGrayABytes>",
        "ZvTiledImage<PxDepthFloat>", "ZvTypedImage<PxRgba64>", "ZvRowImageGrayBit"})
    EXPECT_EQ(FindFactory(name), nullptr) << name;
  EXPECT_EQ(New<ZvTiledImage<PxCmyk64>>()->CreateSameClass(), nullptr);
}

TEST(ImageRegistry, CreatesTheSameClassWithoutContents) {
  RunRegistrars();
  auto image = New<ZvTiledImage<PxRgbBytes>>(50, 40);
  image->PutRgb(PxRgbBytes::Of(1, 2, 3), 0, 0);
  const auto twin = ZvSmartPtr<ZvStreamable>::Adopt(image->CreateSameClass());
  const auto* const fresh = dynamic_cast<const ZvTiledImage<PxRgbBytes>*>(twin.Get());
  ASSERT_NE(fresh, nullptr);
  EXPECT_EQ(fresh->Bounds(), ZvRect(0, 0, 0, 0));
  EXPECT_EQ(fresh->Tiles().TileCount(), 0u);
}

TEST(ImageClassNames, AreGlobalStringsForTheCopies) {
  EXPECT_STREQ(gImageClassName.c_str(), "ZvImage");
  EXPECT_STREQ(gImageGrayBitClassName.c_str(), "ZvImageGrayBit");
  EXPECT_STREQ(gImageRgbaBytesClassName.c_str(), "ZvImageRgbaBytes");
  EXPECT_STREQ(gImageRgbBytesClassName.c_str(), "ZvImageRgbBytes");
}

template <class Image>
void ExpectMade(int32_t bits, const char (&kind)[5], bool tiled) {
  const auto image = Own(CreateImageForDepth(7, 5, bits, FourCC(kind), tiled));
  ASSERT_TRUE(image) << bits << ' ' << kind;
  EXPECT_NE(dynamic_cast<const Image*>(image.Get()), nullptr)
      << bits << ' ' << kind << ' ' << tiled;
  EXPECT_EQ(image->Bounds(), ZvRect(0, 0, 6, 4));
}

template <class P>
void ExpectBothFamilies(int32_t bits, const char (&kind)[5]) {
  ExpectMade<ZvTypedImage<P>>(bits, kind, false);
  ExpectMade<ZvTiledImage<P>>(bits, kind, true);
}

TEST(CreateImageForDepth, ChoosesByDepthAndKind) {
  ExpectBothFamilies<PxAlphaByte>(8, "AlpB");
  ExpectMade<ZvTypedImage<PxGrayByte>>(8, "GraB", false);
  ExpectMade<ZvTypedImage<PxGrayByte>>(8, "GraB", true);  // a row image all the same
  ExpectMade<ZvTypedImage<PxGrayABytes>>(16, "GraB", false);
  ExpectMade<ZvTypedImage<PxGrayABytes>>(16, "GraB", true);
  EXPECT_EQ(CreateImageForDepth(7, 5, 16, FourCC("GraA"), false), nullptr);
  EXPECT_EQ(CreateImageForDepth(7, 5, 16, FourCC("AlpB"), true), nullptr);
  ExpectBothFamilies<PxRgbBytes>(24, "RG24");
  ExpectBothFamilies<PxRgbBytes>(24, "Cmyk");
  ExpectBothFamilies<PxCmykBytes>(32, "Cmyk");
  ExpectBothFamilies<PxRgbaBytes>(32, "Rgba");
  ExpectBothFamilies<PxRgbaBytes>(32, "Cmya");
  ExpectBothFamilies<PxCmykaBytes>(40, "Cmyk");
  ExpectBothFamilies<PxCmykaBytes>(40, "Cmya");
  ExpectBothFamilies<PxRgbaBytes>(40, "Rgba");
  ExpectBothFamilies<PxRgb48>(48, "RG48");
  ExpectBothFamilies<PxRgba64>(64, "Cm64");
  ExpectBothFamilies<PxRgbaBytes>(1, "GrBt");
  ExpectBothFamilies<PxRgbaBytes>(80, "Cm80");
  ExpectBothFamilies<PxRgbaBytes>(0, "GraB");
}

TEST(ChooseLayerKind, AsksTheLastThreeImages) {
  const auto bytes = New<ZvTiledImage<PxRgbaBytes>>();
  const auto words = New<ZvTiledImage<PxRgba64>>();
  EXPECT_EQ(ChooseLayerKind(nullptr, nullptr, nullptr, nullptr), FourCC("Rgba"));
  EXPECT_EQ(ChooseLayerKind(words.Get(), bytes.Get(), nullptr, bytes.Get()), FourCC("Rgba"));
  EXPECT_EQ(ChooseLayerKind(bytes.Get(), words.Get(), nullptr, nullptr), FourCC("Rg64"));
  EXPECT_EQ(ChooseLayerKind(nullptr, nullptr, words.Get(), bytes.Get()), FourCC("Rg64"));
  EXPECT_EQ(ChooseLayerKind(nullptr, bytes.Get(), nullptr, words.Get()), FourCC("Rg64"));
}

TEST(CreateLayerImage, MakesWordsOrBytes) {
  const auto words = Own(CreateLayerImage(FourCC("Rg64"), 10, 20, true));
  EXPECT_NE(dynamic_cast<const ZvTiledImage<PxRgba64>*>(words.Get()), nullptr);
  EXPECT_EQ(words->Bounds(), ZvRect(0, 0, 9, 19));
  const auto bytes = Own(CreateLayerImage(FourCC("GraB"), 10, 20, false));
  EXPECT_NE(dynamic_cast<const ZvTiledImage<PxRgbaBytes>*>(bytes.Get()), nullptr);
}

}  // namespace
}  // namespace vm
