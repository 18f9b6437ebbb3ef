#include "foundation/ZvSmartPtr.h"

#include <gtest/gtest.h>

#include <new>
#include <type_traits>
#include <utility>

#include "support/ReportRecorder.h"

namespace {

using vm::ReportRecorder;
using vm::Reports;

class Counted : public CP_M_ReferenceCounted {
 public:
  ~Counted() override { ++sDestroyed; }

  void SetCount(uint32_t count) { fRefCount = count; }

  int32_t value = 7;

  static int32_t sDestroyed;
};

int32_t Counted::sDestroyed = 0;

class Special : public Counted {};

using Handle = ZvSmartPtr<Counted>;

static_assert(sizeof(Handle) == sizeof(void*));
static_assert(!std::is_polymorphic_v<Handle>);

class SmartPtr : public testing::Test {
 protected:
  void SetUp() override { Counted::sDestroyed = 0; }
};

TEST_F(SmartPtr, IsNullByDefault) {
  const Handle handle;
  EXPECT_EQ(handle.Get(), nullptr);
  EXPECT_FALSE(handle);
  EXPECT_TRUE(handle == nullptr);
}

TEST_F(SmartPtr, MadeFromARawPointerTakesAReferenceOfItsOwn) {
  Counted* const object = new Counted;
  {
    const Handle handle(object);
    EXPECT_EQ(object->GetRefCount(), 2U);
    EXPECT_EQ(handle.Get(), object);
  }
  EXPECT_EQ(object->GetRefCount(), 1U);
  object->Release();
  EXPECT_EQ(Counted::sDestroyed, 1);
}

TEST_F(SmartPtr, CarriesAnObjectThroughItsUsualLife) {
  Counted* const object = new Counted;
  Handle handle(object);
  object->Release();
  EXPECT_EQ(object->GetRefCount(), 1U);
  handle.Clear();
  EXPECT_EQ(Counted::sDestroyed, 1);
  EXPECT_FALSE(handle);
}

TEST_F(SmartPtr, CopiesShareTheObject) {
  const Handle first = Handle::Adopt(new Counted);
  const Handle second = first;  // NOLINT(performance-unnecessary-copy-initialization)
  EXPECT_EQ(first->GetRefCount(), 2U);
  EXPECT_TRUE(first == second);
}

TEST_F(SmartPtr, AHandleOnADerivedClassConverts) {
  const ZvSmartPtr<Special> special = ZvSmartPtr<Special>::Adopt(new Special);
  Handle handle = special;
  EXPECT_EQ(handle.Get(), special.Get());
  EXPECT_EQ(handle->GetRefCount(), 2U);
  handle = nullptr;
  handle = special;
  EXPECT_EQ(handle->GetRefCount(), 2U);
}

TEST_F(SmartPtr, AssignmentReleasesTheOldObjectAndKeepsTheNew) {
  Handle handle = Handle::Adopt(new Counted);
  const Handle other = Handle::Adopt(new Counted);
  handle = other;
  EXPECT_EQ(Counted::sDestroyed, 1);
  EXPECT_EQ(other->GetRefCount(), 2U);
}

TEST_F(SmartPtr, AssigningAHandleToItselfLeavesCountAndObjectAloneAlsoAtCountOne) {
  Handle handle = Handle::Adopt(new Counted);
  Handle& same = handle;
  handle = same;
  EXPECT_EQ(Counted::sDestroyed, 0);
  EXPECT_EQ(handle->GetRefCount(), 1U);
  handle = handle.Get();
  EXPECT_EQ(Counted::sDestroyed, 0);
  EXPECT_EQ(handle->GetRefCount(), 1U);
  handle = std::move(same);
  EXPECT_EQ(Counted::sDestroyed, 0);
  EXPECT_EQ(handle->GetRefCount(), 1U);
}

TEST_F(SmartPtr, AssigningNullReleases) {
  Handle handle = Handle::Adopt(new Counted);
  handle = nullptr;
  EXPECT_EQ(Counted::sDestroyed, 1);
  handle = Handle::Adopt(new Counted);
  handle = Handle();
  EXPECT_EQ(Counted::sDestroyed, 2);
  handle = static_cast<Counted*>(nullptr);
  EXPECT_FALSE(handle);
}

TEST_F(SmartPtr, TakingOverAddsNoReferenceAndReleasesTheOldObject) {
  Handle handle = Handle::Adopt(new Counted);
  Counted* const object = new Counted;
  handle.TakeOver(object);
  EXPECT_EQ(Counted::sDestroyed, 1);
  EXPECT_EQ(handle.Get(), object);
  EXPECT_EQ(object->GetRefCount(), 1U);
}

TEST_F(SmartPtr, ClearingAnEmptyHandleDoesNothing) {
  Handle handle;
  handle.Clear();
  EXPECT_FALSE(handle);
}

TEST_F(SmartPtr, MovingHandsTheReferenceOver) {
  Handle first = Handle::Adopt(new Counted);
  Counted* const object = first.Get();
  Handle second = std::move(first);
  EXPECT_EQ(first.Get(), nullptr);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(object->GetRefCount(), 1U);
  Handle third;
  third = std::move(second);
  EXPECT_EQ(third.Get(), object);
  EXPECT_EQ(object->GetRefCount(), 1U);
  EXPECT_EQ(Counted::sDestroyed, 0);
}

// What a handle's destructor leaves in the memory it stood in.
Counted* PointerLeftBehindBy(Counted* object) {
  alignas(Handle) static unsigned char storage[sizeof(Handle)];
  volatile unsigned char* const bytes = storage;
  Handle* const handle = new (storage) Handle();
  handle->TakeOver(object);
  for (size_t i = 0; i < sizeof storage; ++i)
    bytes[i] = bytes[i];
  handle->~Handle();
  Counted* left;
  for (size_t i = 0; i < sizeof storage; ++i)
    reinterpret_cast<unsigned char*>(&left)[i] = bytes[i];
  return left;
}

TEST_F(SmartPtr, DestroyingTheLastHandleDeletesTheObjectAndLeavesNull) {
  EXPECT_EQ(PointerLeftBehindBy(new Counted), nullptr);
  EXPECT_EQ(Counted::sDestroyed, 1);
}

TEST_F(SmartPtr, DestroyingOneOfTwoHandlesLeavesThePointerAsItWas) {
  Counted* const object = new Counted;
  object->AddReference();
  EXPECT_EQ(PointerLeftBehindBy(object), object);
  EXPECT_EQ(object->GetRefCount(), 1U);
  object->Release();
}

// The object of the checks below, with a count of the test's choice.
class CheckedAccess : public SmartPtr {
 protected:
  CheckedAccess() : handle(Handle::Adopt(new Counted)) {}
  ~CheckedAccess() override { handle.Get()->SetCount(1); }

  void SetCount(uint32_t count) const { handle.Get()->SetCount(count); }

  Handle handle;
  ReportRecorder reports;
};

TEST_F(CheckedAccess, CountsFrom1To10000AreNotReported) {
  for (const uint32_t count : {1U, 2U, 9999U, 10000U}) {
    SetCount(count);
    EXPECT_EQ(handle->value, 7);
    EXPECT_EQ((*handle).value, 7);
  }
  EXPECT_TRUE(reports.Empty());
}

TEST_F(CheckedAccess, TheArrowReportsACountOf10001AtLine169AndCarriesOn) {
  SetCount(10001);
  EXPECT_EQ(handle->value, 7);
  EXPECT_EQ(reports.Lines(), Reports({"ZvPtr(169) : 0"}));
  EXPECT_EQ(reports.Boxes().at(0).text, "Assertion thrown\rError: 0\rFile: ZvPtr\rLine:169");
}

TEST_F(CheckedAccess, TheStarReportsAtLine171) {
  SetCount(10001);
  EXPECT_EQ((*handle).value, 7);
  EXPECT_EQ(reports.Lines(), Reports({"ZvPtr(171) : 0"}));
}

TEST_F(CheckedAccess, ADeadObjectIsReportedAtEachAccess) {
  SetCount(0);
  EXPECT_EQ(handle->value, 7);
  EXPECT_EQ((*handle).value, 7);
  EXPECT_EQ(handle->value, 7);
  EXPECT_EQ(reports.Lines(), Reports({"ZvPtr(169) : 0", "ZvPtr(171) : 0", "ZvPtr(169) : 0"}));
}

TEST_F(CheckedAccess, TheCountIsReadWithoutASign) {
  SetCount(0xFFFFFFFF);
  EXPECT_EQ(handle->value, 7);
  EXPECT_EQ(reports.Lines(), Reports({"ZvPtr(169) : 0"}));
}

TEST_F(CheckedAccess, GoesOnAfterCancelToo) {
  SetCount(0);
  reports.Answer(vm::kReportAnswerCancel);
  EXPECT_EQ(handle->value, 7);
  EXPECT_EQ(reports.Breaks(), 1);
}

TEST_F(CheckedAccess, TestsAndComparisonsCheckNothing) {
  SetCount(0);
  EXPECT_TRUE(handle);
  EXPECT_TRUE(handle == handle.Get());
  EXPECT_TRUE(handle != Handle());
  EXPECT_TRUE(reports.Empty());
}

}  // namespace
