#pragma once

#include "platform/CP_M_Commander.h"
#include "platform/CP_M_EventDispatcher.h"

// The application object: root of the commander chain and owner of the event loop. A program
// derives from it, overrides StartUp, HandleCommand and UpdateCommandState, and calls Run. There is
// one at a time, `gApplication`.
class CP_Application : public CP_M_EventDispatcher, public CP_M_Commander {
 public:
  CP_Application();
  ~CP_Application() override;

  // Sets up the menus, then handles events until the application is done: a pass takes at most one
  // message, offers it to the attachments as kCP_EventRaw, dispatches it, gives the idlers their
  // time and rests for a millisecond. An exception ends the loop; one of the CP_BaseException
  // family is reported, any other is swallowed.
  virtual void Run();
  // The program's own beginning: the menu bar stands, no event was taken yet.
  virtual void StartUp();
  // Does nothing and isn't called.
  virtual void StartUpHook();

  // Handles kCP_CommandQuit (yields what AttemptQuit says) and kCP_CommandShowInformation (yields
  // 0).
  int32_t HandleCommand(int32_t inCommandNumber) override;
  // kCP_CommandNotHandled.
  int32_t HandleCommandWithData(int32_t inCommandNumber, void* ioData) override;
  // Enables the commands of HandleCommand, if there is a menu bar.
  void UpdateCommandState(int32_t inCommandNumber) override;

  // Tells the user about the program.
  virtual void ShowInformation();
  // Asks the regular windows of the desktop to close, and ends the loop if they agree. Yields
  // whether the loop is to end.
  virtual bool AttemptQuit();
  // Takes one message from the queue. False, with `outEvent` untouched, when there is none.
  virtual bool GetEvent(CP_Event& outEvent);
  // Makes the menu bar and the clipboard object. They outlive the application and stay until
  // the program ends.
  virtual void Initialize();
  // Loads menu resource 128 into the menu bar object, if there is one.
  virtual void MakeMenuBar();

  // Do nothing and aren't called.
  virtual void FirstSpareHook();
  virtual void SecondSpareHook();
  bool AgreeingHook() override;

 protected:
  bool fDone = false;

 private:
  void RunLoop();
};
