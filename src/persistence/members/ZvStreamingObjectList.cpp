#include "persistence/members/ZvStreamingObjectList.h"

#include "foundation/CP_DebugAssert.h"
#include "persistence/ZvStream.h"

namespace {

constexpr char kThisFile[] = "ZvStreamingObjectList";

}  // namespace

namespace vm {

void WriteBlockBegin(ZvStream& stream, const ZvString& fieldName) {
  stream.WriteLineBreak();
  stream.WriteString(fieldName, nullptr, true);
  stream.WriteLineBreak();
  stream.WriteOpen(nullptr, '{');
  stream.Indent(1);
}

void WriteBlockEnd(ZvStream& stream) {
  stream.Indent(-1);
  stream.WriteLineBreak();
  stream.WriteClose('}');
  stream.WriteLineBreak();
}

void WriteBlockObject(ZvStream& stream, ZvStreamable& object) {
  ZvString className;
  object.ClassName(className);
  stream.WriteLineBreak();
  stream.WriteString(className, nullptr, true);
  object.WriteTo(stream);
}

void ReportListParse(int16_t line) {
  CP_DebugAssert(kThisFile, line, "0");
}

void CheckStructName(const ZvString& read, const char* expected) {
  CP_Check(read == expected, kThisFile, kLineStructName, "typeid(item).name() == classID");
}

}  // namespace vm
