#include "foundation/CP_M_ReferenceCounted.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>

#include "support/ReportRecorder.h"

namespace {

using vm::ReportRecorder;
using vm::Reports;

class Counted : public CP_M_ReferenceCounted {
 public:
  explicit Counted(bool& destroyed) : mDestroyed(destroyed) {}
  ~Counted() override { mDestroyed = true; }

  void SetCount(uint32_t count) { fRefCount = count; }

  bool& mDestroyed;
};

// One virtual table pointer, then the count.
static_assert(sizeof(CP_M_ReferenceCounted) == 2 * sizeof(void*));
static_assert(std::has_virtual_destructor_v<CP_M_ReferenceCounted>);

TEST(ReferenceCounted, ANewObjectHasOneOwner) {
  const CP_M_ReferenceCounted object;
  EXPECT_EQ(object.GetRefCount(), 1U);
}

TEST(ReferenceCounted, TheCountStandsAtTheStartOfTheObjectBehindTheVirtualTable) {
  bool destroyed = false;
  Counted object(destroyed);
  object.SetCount(0x12345678);
  uint32_t count;
  std::memcpy(&count, reinterpret_cast<const unsigned char*>(&object) + sizeof(void*),
              sizeof count);
  EXPECT_EQ(count, 0x12345678U);
}

TEST(ReferenceCounted, TheFirstReleaseOfANewObjectDeletesItThroughTheVirtualDestructor) {
  bool destroyed = false;
  CP_M_ReferenceCounted* const object = new Counted(destroyed);
  object->Release();
  EXPECT_TRUE(destroyed);
}

TEST(ReferenceCounted, EachAddedReferenceNeedsAReleaseOfItsOwn) {
  bool destroyed = false;
  Counted* const object = new Counted(destroyed);
  object->AddReference();
  object->AddReference();
  EXPECT_EQ(object->GetRefCount(), 3U);
  object->Release();
  object->Release();
  EXPECT_EQ(object->GetRefCount(), 1U);
  EXPECT_FALSE(destroyed);
  object->Release();
  EXPECT_TRUE(destroyed);
}

TEST(ReferenceCounted, ReleasingADeadObjectNeitherReportsNorDeletes) {
  bool destroyed = false;
  Counted object(destroyed);
  object.SetCount(0);
  object.Release();
  EXPECT_EQ(object.GetRefCount(), 0U);
  EXPECT_FALSE(destroyed);
}

TEST(ReferenceCounted, AddingAReferenceToADeadObjectReportsAndLeavesTheCountAtOne) {
  bool destroyed = false;
  Counted object(destroyed);
  object.SetCount(0);
  ReportRecorder reports;
  object.AddReference();
  EXPECT_EQ(reports.Lines(), Reports({"CP_M_ReferenceCounted(58) : fRefCount!=0"}));
  EXPECT_EQ(object.GetRefCount(), 1U);
}

TEST(ReferenceCounted, AddingAReferenceToADeadObjectCountsAlsoWhenTheUserCancels) {
  bool destroyed = false;
  Counted object(destroyed);
  object.SetCount(0);
  ReportRecorder reports;
  reports.Answer(vm::kReportAnswerCancel);
  object.AddReference();
  EXPECT_EQ(reports.Breaks(), 1);
  EXPECT_EQ(object.GetRefCount(), 1U);
}

TEST(ReferenceCounted, ThereIsNoUpperLimitAndTheCountWraps) {
  bool destroyed = false;
  Counted object(destroyed);
  object.SetCount(10000);
  object.AddReference();
  EXPECT_EQ(object.GetRefCount(), 10001U);
  object.SetCount(0xFFFFFFFF);
  object.AddReference();
  EXPECT_EQ(object.GetRefCount(), 0U);
}

TEST(ReferenceCounted, TheDestructorLeavesADeadCountBehind) {
  bool destroyed = false;
  alignas(Counted) static unsigned char storage[sizeof(Counted)];
  Counted* const object = new (storage) Counted(destroyed);
  object->AddReference();
  object->~Counted();
  uint32_t count;
  for (size_t i = 0; i < sizeof count; ++i) {
    reinterpret_cast<unsigned char*>(&count)[i] =
        static_cast<volatile const unsigned char*>(storage)[sizeof(void*) + i];
  }
  EXPECT_EQ(count, 0U);
}

TEST(ReferenceCounted, ACopyIsANewObjectAndAssignmentLeavesTheOwnersAlone) {
  CP_M_ReferenceCounted original;
  original.AddReference();
  CP_M_ReferenceCounted copy(original);
  EXPECT_EQ(copy.GetRefCount(), 1U);
  copy = original;
  EXPECT_EQ(copy.GetRefCount(), 1U);
  EXPECT_EQ(original.GetRefCount(), 2U);
}

}  // namespace
