// A small program on the application framework: a window with a line of text that can be typed,
// copied, pasted, zoomed and coloured, and a menu of troubles that shows what reports look like.

#include <cstring>

#include "framework_demo/Trace.h"
#include "framework_demo/win32/DemoApplication.h"

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--trace") == 0)
            demo::EnableTrace();
    }
    {
        DemoApplication application;
        application.Run();
        demo::Trace("application: left the loop");
    }
    demo::Trace("application: gone");
    return 0;
}
