// Reads objects of every registered class from arbitrary bytes, in both forms of the stream.
//
// The first byte chooses how: bit 0 the text form, bit 1 a stream of a version below 1.0, bit 2 one
// class by number (the second byte) instead of the name at the begin of the data. What was read
// from text must write a text that reads and writes as itself.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "foundation/ReportHooks.h"
#include "persistence/members/ZvSleekStreaming.h"
#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvMemoryStream.h"
#include "persistence/ZvTextParser.h"

namespace {

enum Mode : uint8_t { kText = 1, kOldVersion = 2, kByNumber = 4 };

// Damaged data makes many reports; nobody looks at them here.
void Silence() {
  vm::CurrentReportHooks() = {
      [](const char*, const char*, uint32_t) { return vm::kReportAnswerOk; }, [](const char*) {},
      [] {}, [] {}};
}

// The objects of a stream hold a reference for their reader, who gives it back.
using Owned = std::unique_ptr<ZvStreamable>;

std::string TextOf(ZvStreamable& object) {
  ZvMemoryStream stream;
  UseTextParser(stream);
  stream.WriteObject(&object);
  return {reinterpret_cast<const char*>(stream.GetBuffer()), stream.Tell()};
}

Owned FromText(std::string text) {
  ZvMemoryStream stream(text.data(), static_cast<uint32_t>(text.size()), false);
  UseTextParser(stream);
  return Owned(stream.ReadObject());
}

std::string Rewritten(const std::string& text) {
  const Owned object = FromText(text);
  return object != nullptr ? TextOf(*object) : std::string();
}

// The first text may lack a field whose value is the member's default but not what the class starts
// with; from the second on nothing changes.
void CheckThatTextIsStable(ZvStreamable& object) {
  const std::string second = Rewritten(TextOf(object));
  const std::string third = Rewritten(second);
  if (second != third) {
    std::fprintf(stderr, "written:\n%s\nread and written again:\n%s\n", second.c_str(),
                 third.c_str());
    std::abort();
  }
}

}  // namespace

// Memory has to follow from the input: inputs are a few kilobytes, so nothing may ask for much at
// once.
extern "C" const char* __asan_default_options() {
  return "max_allocation_size_mb=256:detect_leaks=1";
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const bool initialised = [] {
    Silence();
    RunRegistrars();
    return true;
  }();
  if (!initialised || size < 2) {
    return 0;
  }
  const uint8_t mode = data[0];
  const uint8_t number = data[1];
  std::vector<uint8_t> bytes(data + 2, data + size);
  ZvMemoryStream stream(bytes.data(), static_cast<uint32_t>(bytes.size()), false);
  if ((mode & kText) != 0) {
    UseTextParser(stream);
  }
  if ((mode & kOldVersion) != 0) {
    stream.SetVersion(0.5f);
  }
  Owned object;
  if ((mode & kByNumber) != 0) {
    const std::vector<ZvClassRecord>& classes = GetClassRegistry();
    object.reset(classes[number % classes.size()].mFactory());
    object->ReadFrom(stream);
  } else {
    object.reset(stream.ReadObject());
  }
  if (dynamic_cast<ZvSleekStreaming*>(object.get()) != nullptr) {
    CheckThatTextIsStable(*object);
  }
  return 0;
}
