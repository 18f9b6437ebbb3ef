#include "platform/CP_M_EventHandlerAttachable.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/CP_EventHandlerAttachment.h"

namespace {

struct Attachable : CP_M_EventHandlerAttachable {
  using CP_M_EventHandlerAttachable::fAttachments;
};

class Noting : public CP_EventHandlerAttachment {
 public:
  Noting(uint32_t code, std::string& log, char name, bool answer)
      : CP_EventHandlerAttachment(code), mLog(log), mName(name), mAnswer(answer) {}
  ~Noting() override { mLog += '~'; }
  bool HandleEvent(uint32_t, void*) override {
    mLog += mName;
    return mAnswer;
  }

 private:
  std::string& mLog;
  char mName;
  bool mAnswer;
};

TEST(Attachments, EventCodesAreTheirLettersFirstOneOnTop) {
  EXPECT_EQ(kCP_EventAny, 0x4556616Eu);
  EXPECT_EQ(kCP_EventRaw, 0x45566576u);
  EXPECT_EQ(kCP_EventCommandNumber, 0x45566D63u);
  EXPECT_EQ(kCP_EventCommandState, 0x4556656Eu);
  EXPECT_EQ(kCP_EventCommandObject, 0x45567063u);
}

TEST(Attachments, AnObjectWithoutAnyAgreesToEveryEvent) {
  Attachable object;
  EXPECT_EQ(object.fAttachments, nullptr);
  EXPECT_EQ(object.AttachmentCount(), 0u);
  EXPECT_TRUE(object.ExecuteAttachments(kCP_EventRaw, nullptr));
  EXPECT_TRUE(object.ExecuteAttachments(0, nullptr));
}

TEST(Attachments, OnlyThoseOfTheCodeAndThoseForAnyCodeAreCalled) {
  std::string log;
  Attachable object;
  object.AddAttachment(std::make_unique<Noting>(kCP_EventRaw, log, 'r', true));
  object.AddAttachment(std::make_unique<Noting>(kCP_EventCommandNumber, log, 'c', true));
  object.AddAttachment(std::make_unique<Noting>(kCP_EventAny, log, 'a', true));
  EXPECT_EQ(object.AttachmentCount(), 3u);
  EXPECT_TRUE(object.ExecuteAttachments(kCP_EventCommandNumber, nullptr));
  EXPECT_EQ(log, "ca");
}

TEST(Attachments, OneThatIsNotConcernedCountsAsAgreeing) {
  std::string log;
  Attachable object;
  object.AddAttachment(std::make_unique<Noting>(kCP_EventRaw, log, 'r', false));
  EXPECT_TRUE(object.ExecuteAttachments(kCP_EventCommandNumber, nullptr));
  EXPECT_EQ(log, "");
}

TEST(Attachments, AllRunInOrderAlthoughTheFirstRefusedAndTheResultIsRefusal) {
  std::string log;
  Attachable object;
  object.AddAttachment(std::make_unique<Noting>(kCP_EventRaw, log, '1', false));
  object.AddAttachment(std::make_unique<Noting>(kCP_EventRaw, log, '2', true));
  object.AddAttachment(std::make_unique<Noting>(kCP_EventAny, log, '3', true));
  EXPECT_FALSE(object.ExecuteAttachments(kCP_EventRaw, nullptr));
  EXPECT_EQ(log, "123");
}

TEST(Attachments, TheCodeForAnyEventIsNoWildcardAsAnEvent) {
  std::string log;
  Attachable object;
  object.AddAttachment(std::make_unique<Noting>(kCP_EventRaw, log, 'r', false));
  EXPECT_TRUE(object.ExecuteAttachments(kCP_EventAny, nullptr));
  EXPECT_EQ(log, "");
}

TEST(Attachments, GoWithTheirObject) {
  std::string log;
  {
    Attachable object;
    object.AddAttachment(std::make_unique<Noting>(kCP_EventRaw, log, 'r', true));
    object.AddAttachment(std::make_unique<Noting>(kCP_EventAny, log, 'a', true));
    object.AddAttachment(nullptr);
    EXPECT_EQ(object.AttachmentCount(), 2u);
  }
  EXPECT_EQ(log, "~~");
}

TEST(Attachments, GetCodeAndDataOfTheEvent) {
  struct Looking : CP_EventHandlerAttachment {
    Looking() : CP_EventHandlerAttachment(kCP_EventAny) {}
    bool HandleEvent(uint32_t code, void* data) override {
      seenCode = code;
      seenCommand = CP_CommandOfEventData(data);
      return true;
    }
    uint32_t seenCode = 0;
    int32_t seenCommand = 0;
  };
  Attachable object;
  auto attachment = std::make_unique<Looking>();
  Looking& looking = *attachment;
  object.AddAttachment(std::move(attachment));
  for (const int32_t number : {0, 1, -1, 2147483647, -2147483647 - 1}) {
    EXPECT_TRUE(object.ExecuteAttachments(kCP_EventCommandNumber, CP_EventDataOfCommand(number)));
    EXPECT_EQ(looking.seenCode, kCP_EventCommandNumber);
    EXPECT_EQ(looking.seenCommand, number);
  }
}

TEST(Attachments, MayAddAnotherWhileTheyRunWhichThenRunsToo) {
  struct Adding : CP_EventHandlerAttachment {
    Adding(CP_M_EventHandlerAttachable& object, std::string& log)
        : CP_EventHandlerAttachment(kCP_EventRaw), mObject(object), mLog(log) {}
    bool HandleEvent(uint32_t, void*) override {
      mObject.AddAttachment(std::make_unique<Noting>(kCP_EventRaw, mLog, 'n', true));
      mLog += 'a';
      return true;
    }
    CP_M_EventHandlerAttachable& mObject;
    std::string& mLog;
  };
  std::string log;
  Attachable object;
  object.AddAttachment(std::make_unique<Adding>(object, log));
  EXPECT_TRUE(object.ExecuteAttachments(kCP_EventRaw, nullptr));
  EXPECT_EQ(log, "an");
}

}  // namespace
