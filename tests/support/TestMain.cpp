#include <gmock/gmock.h>

#include "support/UnexpectedReports.h"

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  vm::FailOnUnexpectedReports();
  return RUN_ALL_TESTS();
}
