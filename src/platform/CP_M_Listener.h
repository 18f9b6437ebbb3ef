#pragma once

#include <list>

class CP_M_Broadcaster;

// Mix-in of objects that hear broadcasters. It keeps the list of those it hears; entering itself
// there is the broadcaster's business.
class CP_M_Listener {
 public:
  CP_M_Listener();
  CP_M_Listener(const CP_M_Listener&) = delete;
  CP_M_Listener& operator=(const CP_M_Listener&) = delete;
  virtual ~CP_M_Listener();

 protected:
  // Owned, the broadcasters in it are not. With null, or with the lowest bit of the pointer set,
  // the list belongs to somebody else and the destructor leaves it alone.
  std::list<CP_M_Broadcaster*>* fBroadcasters;
};
