// The application's side of the exchange files: waits for the request, answers it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "effects_app/EffectSettings.h"
#include "foundation/ZvSmartPtr.h"
#include "foundation/ZvString.h"
#include "image/ZvImage.h"

class ZvStream;

namespace effects_app {

// A request and a reply have the same shape.
struct Message {
  ZvString effectName;
  std::vector<uint8_t> parameters;
  int32_t colourType = 0;
  ZvSmartPtr<ZvImage> mask;   // null when there is none
  ZvSmartPtr<ZvImage> image;  // null when the file held none that could be read
};

// Makes every class readable that the plug-in writes: besides the toolkit's registered classes the
// two whose written names it doesn't know, "ZvImageCmyka64" and "ZvImageCmyka80". To be called
// once.
void RegisterReadableImages();

// Reads from a stream that is open and has the binary parser. Lengths that the rest of the stream
// can't hold count as 0.
Message ReadMessage(ZvStream& stream);
void WriteMessage(ZvStream& stream, const Message& message);

// The answer: the effect of the request's parameters, or of `settings` when it has none, applied to
// the request's image, which it takes over. An image of a class that the plug-in can't read back is
// answered as a tiled 16-bit RGBA image, with what it reads as in that form. The request must hold
// an image.
Message AnswerTo(Message request, const EffectSettings& settings);

enum class Outcome {
  kAnswered,
  kNoRequest,     // none came in time
  kUnreadable,    // it held no image
  kNewerRequest,  // while this one was worked on, another one was made: not answered
};

// One conversation in a folder (its path ends in `\`): waits for the flag file, reads the request,
// removes the flag, answers, closes the answer, and creates the done file last. `log` gets a line
// for each step. Throws CP_BaseException when a file can't be written.
Outcome Serve(const ZvString& folder, const AppSettings& settings,
              const std::function<void(const std::string&)>& log);

}  // namespace effects_app
