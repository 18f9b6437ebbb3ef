#pragma once

class CP_Event;

// Mix-in of objects that get some time in each pass of the event loop, through the list `gIdlers`.
class CP_M_Idler {
 public:
  CP_M_Idler() = default;
  CP_M_Idler(const CP_M_Idler&) = delete;
  CP_M_Idler& operator=(const CP_M_Idler&) = delete;

  virtual ~CP_M_Idler() = default;
  virtual void StartIdling() { fIdling = true; }
  virtual void StopIdling() { fIdling = false; }
  // `ioEvent` is the pass's event; its fields are 0 when there was none. The idler may take its own
  // node out of `gIdlers`; the node of another one is set to null instead.
  virtual void SpendIdleTime(CP_Event& ioEvent) = 0;

  bool IsIdling() const { return fIdling; }

 protected:
  bool fIdling = false;
};
