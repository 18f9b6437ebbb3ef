#include "persistence/ZvClassRegistry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "persistence/ZvStreamable.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class First : public ZvStreamable {};
class Second : public ZvStreamable {};

ZvStreamable* MakeFirst() {
  return new First;
}
ZvStreamable* MakeSecond() {
  return new Second;
}

std::vector<std::string> NamesBehind(std::size_t count) {
  std::vector<std::string> names;
  for (std::size_t i = count; i < GetClassRegistry().size(); ++i) {
    names.emplace_back(GetClassRegistry()[i].mClassName.view());
  }
  return names;
}

// Each test leaves the registry as it found it.
class ClassRegistry : public testing::Test {
 protected:
  ~ClassRegistry() override { GetClassRegistry().resize(mBefore); }
  const std::size_t mBefore = GetClassRegistry().size();
};

TEST_F(ClassRegistry, KeepsTheOrderOfRegistration) {
  AppendClass("Test.B", MakeSecond);
  AppendClass("Test.A", MakeFirst);
  EXPECT_THAT(NamesBehind(mBefore), ElementsAre("Test.B", "Test.A"));
}

TEST_F(ClassRegistry, KeepsBothRecordsOfADoubleNameAndFindsTheFirst) {
  AppendClass("Test.Double", MakeFirst);
  AppendClass("Test.Double", MakeSecond);
  EXPECT_THAT(NamesBehind(mBefore), ElementsAre("Test.Double", "Test.Double"));
  EXPECT_EQ(FindFactory("Test.Double"), &MakeFirst);
}

TEST_F(ClassRegistry, FindsAWholeNameOnly) {
  AppendClass("Test.Name", MakeFirst);
  EXPECT_EQ(FindFactory("Test.Nam"), nullptr);
  EXPECT_EQ(FindFactory("Test.Name2"), nullptr);
  EXPECT_EQ(FindFactory("test.Name"), nullptr);
  EXPECT_EQ(FindFactory(""), nullptr);
  EXPECT_EQ(FindFactory(ZvString("Test.Name\0", 10)), nullptr);
  EXPECT_EQ(FindFactory("Test.Name"), &MakeFirst);
}

// What the test's registrars were told, in order. They stay queued for the rest of the program.
std::vector<std::string>& Calls() {
  static std::vector<std::string> calls;
  return calls;
}

void RegistrarA(bool doRegister) {
  Calls().push_back(doRegister ? "A true" : "A false");
}
void RegistrarB(bool doRegister) {
  Calls().push_back(doRegister ? "B true" : "B false");
}

TEST_F(ClassRegistry, ARegistrarQueuedLateIsCalledAtOnceAndAgainAtEachRun) {
  RunRegistrars();
  EXPECT_TRUE(registrarsDone);
  Calls().clear();
  AddRegistrar(RegistrarA);
  AddRegistrar(RegistrarB);
  EXPECT_THAT(Calls(), ElementsAre("A true", "B true"));
  Calls().clear();
  RunRegistrars();
  EXPECT_THAT(Calls(), ElementsAre("A true", "B true"));
}

TEST_F(ClassRegistry, ARegistrarQueuedBeforeTheFirstRunWaitsForIt) {
  const bool done = registrarsDone;
  registrarsDone = false;
  Calls().clear();
  AddRegistrar(RegistrarB);
  EXPECT_THAT(Calls(), IsEmpty());
  registrarsDone = done;
}

// REQUIRED: the host bridge runs the registrars at every Start and nothing is thrown out.
TEST_F(ClassRegistry, GrowsByOneWholeSetWithEachRun) {
  const auto countOf = [](const std::string& name, const std::vector<std::string>& names) {
    return std::count(names.begin(), names.end(), name);
  };
  RunRegistrars();
  const std::vector<std::string> once = NamesBehind(mBefore);
  RunRegistrars();
  const std::vector<std::string> twice = NamesBehind(mBefore);
  ASSERT_EQ(twice.size(), 2 * once.size());
  EXPECT_TRUE(std::equal(once.begin(), once.end(), twice.begin()));
  EXPECT_TRUE(std::equal(once.begin(), once.end(), twice.begin() + once.size()));
  EXPECT_EQ(countOf("ZvMemoryStream", once), 1);
}

struct Sample : ZvStreamable {
  static constexpr char kClassName[] = "Test.Sample";
};

TEST_F(ClassRegistry, ARegistrationOfAClassAppendsItWhenTold) {
  RunRegistrars();
  const vm::ClassRegistration<Sample> registration;
  const std::unique_ptr<ZvStreamable> object(FindFactory("Test.Sample")());
  EXPECT_NE(dynamic_cast<Sample*>(object.get()), nullptr);
}

}  // namespace
