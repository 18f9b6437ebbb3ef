// The framework's global objects: plain pointers, null when unset, for one thread. Nothing here is
// owned.
#pragma once

#include <list>

#include "platform/os/Handles.h"

class CP_Clipboard;
class CP_M_Commander;
class CP_M_EventDispatcher;
class CP_M_Idler;
class CP_MenuBar;
class CP_WindowList;

// The application, at the top of the commander chain. Set by CP_Application while one lives.
extern CP_M_Commander* gApplication;

// Set by CP_M_EventDispatcher while one lives.
extern CP_M_EventDispatcher* gEventDispatcher;

// The commander that handles commands first.
extern CP_M_Commander* gTarget;

// Set by their objects at construction.
extern CP_MenuBar* gMenuBar;
extern CP_Clipboard* gClipboard;

// The platform menu of the menu bar.
extern os::MenuHandle gMenuBarHandle;

// Set by a program that wants them: whether menu bars are loaded from resources, who gets idle
// time, the desktop's windows, and the window that owns the framework's dialogs.
extern bool gLoadsMenuBars;
extern std::list<CP_M_Idler*>* gIdlers;
extern CP_WindowList* gDesktop;
extern os::WindowHandle gDialogOwner;
