#pragma once

#include <windows.h>

#include "platform/CP_Desktop.h"
#include "platform/CP_M_Idler.h"

class DemoDocument;

// The window of the document. Commands of the menu bar come in here and start at the target.
class DemoWindow : public CP_Window, public CP_M_Idler {
 public:
  explicit DemoWindow(DemoDocument& inDocument);
  ~DemoWindow() override;

  HWND GetHandle() const { return mHandle; }
  void KeepOpen() { mKeepsOpen = !mKeepsOpen; }

  // Refuses while the user wants the window kept.
  bool AttemptClose() override;

  // Lets the caret blink.
  void SpendIdleTime(CP_Event& ioEvent) override;

 private:
  static LRESULT CALLBACK Procedure(HWND inWindow, UINT inMessage, WPARAM inFirst, LPARAM inSecond);
  LRESULT Handle(UINT inMessage, WPARAM inFirst, LPARAM inSecond);
  void Paint();

  DemoDocument& mDocument;
  HWND mHandle;
  bool mKeepsOpen = false;
  bool mCaretShown = true;
};

// Gives a command to the target, unless an attachment of the target takes it, and updates the
// menus.
void GiveCommand(int32_t inCommandNumber);
