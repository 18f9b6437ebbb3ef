#include "persistence/ZvStreamable.h"

#include <gtest/gtest.h>

#include <memory>

#include "persistence/ByteStream.h"
#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvMemoryStream.h"

template <class T>
class Basket : public ZvStreamable {};
struct Apple {};
class Plain : public ZvStreamable {};

namespace {

std::string NameOf(const ZvStreamable& object) {
  ZvString name;
  object.ClassName(name);
  return std::string(name.view());
}

TEST(Streamable, IsNamedByItsTypeAsTheSourceWritesIt) {
  EXPECT_EQ(NameOf(Plain()), "Plain");
  EXPECT_EQ(NameOf(Basket<Apple>()), "Basket<Apple>");
}

TEST(Streamable, WritesAndReadsNothingByItself) {
  Plain object;
  ByteStream stream("01 02");
  object.WriteTo(stream);
  object.ReadFrom(stream);
  EXPECT_EQ(stream.Hex(), "01 02");
  EXPECT_EQ(stream.Tell(), 0u);
}

TEST(CreateSameClass, MakesTheSameClassWithNoneOfTheContent) {
  RunRegistrars();
  ZvMemoryStream source;
  source.SetBlobName("name");
  source.RawWrite("\x01", 1);
  const std::unique_ptr<ZvStreamable> object(source.CreateSameClass());
  auto* made = dynamic_cast<ZvMemoryStream*>(object.get());
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->GetRefCount(), 1u);
  EXPECT_EQ(made->GetLength(), 0u);
  ZvString name;
  made->GetName(name);
  EXPECT_EQ(name, "");
}

TEST(CreateSameClass, GivesNullForAClassThatIsNotRegistered) {
  EXPECT_EQ(Plain().CreateSameClass(), nullptr);
}

}  // namespace
