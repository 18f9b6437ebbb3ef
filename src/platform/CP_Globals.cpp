#include "platform/CP_Globals.h"

CP_M_Commander* gApplication = nullptr;
CP_M_EventDispatcher* gEventDispatcher = nullptr;
CP_M_Commander* gTarget = nullptr;
CP_MenuBar* gMenuBar = nullptr;
CP_Clipboard* gClipboard = nullptr;
os::MenuHandle gMenuBarHandle = nullptr;
bool gLoadsMenuBars = false;
std::list<CP_M_Idler*>* gIdlers = nullptr;
CP_WindowList* gDesktop = nullptr;
os::WindowHandle gDialogOwner = nullptr;
