#pragma once

// A command as an object, for `CP_M_Commander::PostCommand`.
class CP_Command {
 public:
  CP_Command() = default;
  CP_Command(const CP_Command&) = delete;
  CP_Command& operator=(const CP_Command&) = delete;

  virtual ~CP_Command() = default;
  virtual void Execute() = 0;
};
