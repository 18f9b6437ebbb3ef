#include "platform/CP_Event.h"

void CP_Event::CopyFromPlatform(const os::Message& inMessage) {
  fMessage = inMessage.message;
  fMessageCopy = inMessage.message;
  fTime = inMessage.time;
  fWindow = inMessage.window;
  fPosition = CP_Point(static_cast<int16_t>(inMessage.x), static_cast<int16_t>(inMessage.y));
  fFirstParameter = inMessage.firstParameter;
  fSecondParameter = inMessage.secondParameter;
}

void CP_Event::CopyToPlatform(os::Message& outMessage) const {
  outMessage.message = fMessage;
  // REQUIRED: both copies go into the same place and the second one wins, so that a handler which
  // changes the first alone changes nothing for the window.
  outMessage.message = fMessageCopy;
  outMessage.time = fTime;
  outMessage.window = fWindow;
  fPosition.Get(outMessage.x, outMessage.y);
  outMessage.firstParameter = fFirstParameter;
  outMessage.secondParameter = fSecondParameter;
}
