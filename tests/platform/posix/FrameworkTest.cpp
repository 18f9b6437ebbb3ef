#include "platform/FrameworkTest.h"

#include "platform/os/posix/EventScript.h"
#include "platform/os/posix/ResourceScript.h"

namespace vm {

TestWindow::TestWindow(std::function<void(const os::Message&)> procedure)
    : mHandle(os::posix::MakeWindow(std::move(procedure))) {}

TestWindow::~TestWindow() {
  os::posix::DestroyWindow(mHandle);
}

void TestWindow::Post(uint32_t message, uint32_t firstParameter, uint32_t secondParameter) const {
  os::Message posted;
  posted.window = mHandle;
  posted.message = message;
  posted.firstParameter = firstParameter;
  posted.secondParameter = secondParameter;
  os::posix::PostEvent(posted);
}

void PostQuit(uint32_t exitCode) {
  os::posix::PostQuit(exitCode);
}

void DefineTestMenus() {
  using os::posix::DefineMenu;
  using os::posix::DefineResource;
  const auto words = [](std::initializer_list<int16_t> numbers) {
    std::vector<uint8_t> bytes;
    for (const int16_t number : numbers) {
      bytes.push_back(static_cast<uint8_t>(number & 0xFF));
      bytes.push_back(static_cast<uint8_t>(number >> 8 & 0xFF));
    }
    return bytes;
  };
  os::posix::ForgetResources();
  DefineMenu(128,
             {{"&File",
               0,
               {{"First[HIERARCHICAL201", 100, {}},
                {"Open[HIERARCHICAL201", 101, {}},
                {"Quit", 9, {}},
                {"", 0, {}},
                {"Again[HIER]", 102, {}},
                {"Last[HIERARCHICAL202", 103, {}}}},
              {"&Edit", 0, {{"Copy", 110, {}}, {"Copy once more", 110, {}}, {"About", 18, {}}}},
              {"&View", 0, {{"Zoom", 120, {}}, {"Copy from here", 110, {}}}}});
  DefineResource("CPMB", 128, words({1, 501, 777}));
  os::posix::DefineAccelerators(128);
  DefineMenu(129, {{"Only", 0, {{"Something", 1, {}}}}});
  DefineMenu(130, {{"Menu", 0, {{"Something", 1, {}}, {"Missing[HIERARCHICAL299", 2, {}}}}});
  DefineMenu(131, {{"A", 0, {{"a", 1, {}}}}, {"B", 0, {{"b", 2, {}}}}});
  DefineResource("CPMB", 131, words({5, 300}));
  DefineMenu(132, {{"A", 0, {{"a", 1, {}}}}});
  DefineResource("CPMB", 132, words({-1, 300}));
  DefineMenu(133, {{"A", 0, {{"a", 1, {}}}}, {"Go", 2, {}}});
  DefineMenu(201, {{"Sub one", 301, {}}, {"Sub two", 302, {}}});
  DefineMenu(202, {{"Deep[HIERARCHICAL203", 310, {}}, {"Flat", 311, {}}});
  DefineMenu(203, {{"Bottom", 320, {}}});
  DefineMenu(210, {{"Me[HIERARCHICAL210", 330, {}}, {"Other", 331, {}}});
}

}  // namespace vm
