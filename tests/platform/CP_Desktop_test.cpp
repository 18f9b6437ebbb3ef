#include "platform/CP_Desktop.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class Noting : public CP_Window {
 public:
  Noting(char name, std::string& log, bool agrees, uint32_t kind = kCP_WindowKindRegular)
      : CP_Window(kind), mName(name), mLog(log), mAgrees(agrees) {}
  bool AttemptClose() override {
    mLog += mName;
    return mAgrees;
  }

 private:
  char mName;
  std::string& mLog;
  bool mAgrees;
};

TEST(Desktop, WithoutWindowsAgreesToCloseThemAll) {
  CP_WindowList desktop;
  EXPECT_TRUE(desktop.AttemptCloseAll(1));
}

TEST(Desktop, ClosesTheWindowsFromTheFirstOn) {
  std::string log;
  Noting a('a', log, true);
  Noting b('b', log, true);
  CP_WindowList desktop;
  desktop.Add(&a);
  desktop.Add(&b);
  EXPECT_TRUE(desktop.AttemptCloseAll(1));
  EXPECT_EQ(log, "ab");
  EXPECT_EQ(desktop.Count(), 0u);
}

TEST(Desktop, TakesAClosedWindowOutOfEveryListAsOftenAsItStandsThere) {
  std::string log;
  Noting a('a', log, true);
  Noting b('b', log, true);
  CP_WindowList desktop;
  CP_WindowList other;
  for (CP_WindowList* list : {&desktop, &other}) {
    list->Add(&a);
    list->Add(&b);
    list->Add(&a);
  }
  EXPECT_TRUE(desktop.AttemptCloseAll(1));
  EXPECT_EQ(log, "ab") << "the second entry is gone with the first";
  EXPECT_EQ(desktop.Count(), 0u);
  EXPECT_EQ(other.Count(), 0u);
}

TEST(Desktop, AsksAWindowThatRefusesAgainAndNeverReachesThoseBehindIt) {
  std::string log;
  Noting a('a', log, true);
  Noting b('b', log, false);
  Noting c('c', log, true);
  CP_WindowList desktop;
  for (Noting* window : {&a, &b, &c})
    desktop.Add(window);
  EXPECT_FALSE(desktop.AttemptCloseAll(1));
  EXPECT_EQ(log, "abb");
  EXPECT_EQ(desktop.Count(), 2u);
}

TEST(Desktop, AWindowOfAnotherKindIsNotAskedAndHidesThoseBehindIt) {
  std::string log;
  Noting tool('t', log, false, 2);
  Noting a('a', log, true, 3);
  CP_WindowList desktop;
  desktop.Add(&tool);
  desktop.Add(&a);
  EXPECT_TRUE(desktop.AttemptCloseAll(1));
  EXPECT_EQ(log, "");
  EXPECT_FALSE(desktop.AttemptCloseAll(2));
  EXPECT_EQ(log, "tt");
}

TEST(Desktop, AWindowMayDestroyItselfWhileItCloses) {
  struct Vanishing : CP_Window {
    Vanishing() : CP_Window(kCP_WindowKindRegular) {}
    bool AttemptClose() override {
      delete this;
      return true;
    }
  };
  CP_WindowList desktop;
  desktop.Add(new Vanishing);
  EXPECT_TRUE(desktop.AttemptCloseAll(1));
  EXPECT_EQ(desktop.Count(), 0u);
}

TEST(Desktop, AWindowMayTakeItselfOutWhileItCloses) {
  struct Leaving : CP_Window {
    Leaving() : CP_Window(kCP_WindowKindRegular) {}
    bool AttemptClose() override {
      CP_WindowList::RemoveFromAll(this);
      return true;
    }
  };
  Leaving a;
  Leaving b;
  CP_WindowList desktop;
  desktop.Add(&a);
  desktop.Add(&b);
  EXPECT_TRUE(desktop.AttemptCloseAll(1));
  EXPECT_EQ(desktop.Count(), 0u);
}

}  // namespace
