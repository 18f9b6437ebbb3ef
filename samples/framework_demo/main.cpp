// A program on the application framework: a window with a line of text that can be typed, copied,
// pasted, zoomed and coloured, and a menu of troubles that shows what reports look like.

#include <cstdio>
#include <string_view>

#include "foundation/CP_Exceptions.h"
#include "framework_demo/Trace.h"
#include "framework_demo/win32/DemoApplication.h"
#include "platform/CP_Globals.h"

namespace {

constexpr char kHelp[] =
    "framework_demo [--trace] [--no-menus] [--report-at-end]\n"
    "  --trace          write what happens to standard output\n"
    "  --no-menus       run without loading the menu bar\n"
    "  --report-at-end  report an exception when the application is gone\n";

}  // namespace

int main(int argc, char** argv) {
  bool withMenus = true;
  bool reportsAtEnd = false;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--trace") {
      demo::EnableTrace();
    } else if (argument == "--no-menus") {
      withMenus = false;
    } else if (argument == "--report-at-end") {
      reportsAtEnd = true;
    } else if (argument == "--help") {
      std::fputs(kHelp, stdout);
      return 0;
    } else {
      std::fprintf(stderr, "framework_demo: error: unknown argument '%s'\n%s", argv[i], kHelp);
      return 2;
    }
  }
  {
    DemoApplication application;
    gLoadsMenuBars = withMenus;
    application.Run();
    demo::Trace("application: left the loop");
  }
  if (reportsAtEnd)
    CP_RuntimeException("Late", "DemoApplication", 3).Report();
  demo::Trace("application: gone");
  return 0;
}
