#pragma once

#include <cstdint>

#include "platform/CP_M_EventHandlerAttachable.h"

class CP_Command;

// Command numbers that the framework itself answers.
inline constexpr int32_t kCP_CommandQuit = 9;
inline constexpr int32_t kCP_CommandShowInformation = 18;

// What HandleCommand gives back when it isn't the command's own result.
inline constexpr int32_t kCP_CommandNotHandled = -1;
inline constexpr int32_t kCP_CommandTakenByAttachment = 1;

// Mix-in of objects that handle commands. Commanders form a chain through their super commanders;
// handling starts at the target (`gTarget`) and goes up until somebody knows the command. A
// commander overrides the operations for the commands it knows and calls the base for the rest.
class CP_M_Commander : public virtual CP_M_EventHandlerAttachable {
 public:
  // The super commander is not owned and has to outlive this object; null makes this the top.
  explicit CP_M_Commander(CP_M_Commander* inSuperCommander);

  // Hands the target on to the super commander, or to the application where there is none.
  virtual ~CP_M_Commander();

  // Executes the command, unless the attachments refuse it. The command stays the caller's; only
  // when its execution throws, anything at all, it is destroyed and the exception ends here.
  virtual void PostCommand(CP_Command* inCommand);

  virtual bool CanBecomeTarget();

  // The base passes the command to the super commander, once that one's attachments agree.
  // Yields kCP_CommandNotHandled at the top, kCP_CommandTakenByAttachment when they don't agree,
  // and otherwise what the handling commander says.
  virtual int32_t HandleCommand(int32_t inCommandNumber);
  virtual int32_t HandleCommandWithData(int32_t inCommandNumber, void* ioData);

  // Enables the menu entries of the command if it can be given now. The base asks the super
  // commander, once that one's attachments agree.
  virtual void UpdateCommandState(int32_t inCommandNumber);

  // Two ways of feeding input to the target. The first climbs the chain through ForwardInput, the
  // second ends at this object's InputHook.
  virtual bool ProcessInput(uint32_t inFirst, uint32_t inSecond);
  virtual void ProcessOtherInput(uint32_t inFirst, uint32_t inSecond);

  // Not called by the framework; false.
  virtual bool RefusingHook();
  // Not called by the framework; true.
  virtual bool AgreeingHook();

  // True, whatever the super commander said.
  virtual bool ForwardInput(uint32_t inFirst, uint32_t inSecond);
  virtual bool InputHook(uint32_t inFirst, uint32_t inSecond);

  virtual void OnBecomeTarget();
  virtual void OnLoseTarget();

  // Makes `inNewTarget` the target. Nothing happens when it is null, is the target already, or
  // refuses.
  static void SwitchTarget(CP_M_Commander* inNewTarget);

  // Disables the commands of the menu bar and lets the target's chain enable again what can be
  // given now. Does nothing without a menu bar.
  static void UpdateMenus();

  CP_M_Commander* GetSuperCommander() const { return fSuperCommander; }
  bool IsTarget() const { return fTargetState == TargetState::kTarget; }

 protected:
  enum class TargetState : uint8_t { kTarget = 0, kNotTarget = 2 };

  // Reports "inOldTarget != NULL" at 178 for none.
  static void LoseTarget(CP_M_Commander* inOldTarget);

  CP_M_Commander* fSuperCommander;
  TargetState fTargetState = TargetState::kNotTarget;
};
