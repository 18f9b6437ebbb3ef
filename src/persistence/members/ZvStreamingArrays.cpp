#include "persistence/members/ZvStreamingArrays.h"

#include "image/pixels/PxNumbers.h"

void ZvStreamingRgba64::WriteValue(ZvStream& stream) {
  if (mValue == mDefault) {
    return;
  }
  vm::WriteTuple(stream, mValue, FieldName.c_str(), [&stream](uint16_t channel) {
    stream.WriteFloat(static_cast<float>(channel) * (1.0f / 65535.0f), nullptr, false);
  });
}

void ZvStreamingRgba64::ParseValue(ZvParser& parser, const ZvString& text) {
  vm::ParseTuple(parser, mValue, text, [&parser](uint16_t& channel, const ZvString& field) {
    float fraction = 0;
    parser.ParseFloat(&fraction, field);
    channel = vm::WordFromFloat(65535.0f * fraction + 0.5f);
  });
}
