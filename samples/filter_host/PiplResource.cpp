#include "filter_host/PiplResource.h"

#include <algorithm>

#include "filter_host/Picture.h"
#include "foundation/FourCharCode.h"

namespace filter_host {

namespace {

constexpr uint32_t kVendor = FourCC("8BIM");
// No filter has anywhere near as many; a damaged count must not cost time or memory.
constexpr uint32_t kMaxProperties = 1000;

// Takes little-endian numbers off the front.
class Reader {
 public:
  explicit Reader(std::span<const uint8_t> bytes) : mRest(bytes) {}

  uint32_t Number(std::size_t bytes) {
    const std::span<const uint8_t> taken = Take(bytes);
    uint32_t value = 0;
    for (std::size_t i = bytes; i > 0; --i) {
      value = value << 8 | taken[i - 1];
    }
    return value;
  }

  std::span<const uint8_t> Take(std::size_t count) {
    if (count > mRest.size()) {
      throw Error("the PIPL resource is cut");
    }
    const std::span<const uint8_t> taken = mRest.first(count);
    mRest = mRest.subspan(count);
    return taken;
  }

  void Skip(std::size_t count) { mRest = mRest.subspan(std::min(count, mRest.size())); }

 private:
  std::span<const uint8_t> mRest;
};

// Text up to the first zero byte.
std::string Text(std::span<const uint8_t> bytes) {
  const auto end = std::find(bytes.begin(), bytes.end(), uint8_t{0});
  return std::string(bytes.begin(), end);
}

// A Pascal string; the length of some resources counts zero bytes at the end.
std::string PascalText(const PiplProperty* property) {
  if (property == nullptr || property->data.empty()) {
    return {};
  }
  const std::span<const uint8_t> data(property->data);
  const std::size_t length = std::min<std::size_t>(data[0], data.size() - 1);
  return Text(data.subspan(1, length));
}

}  // namespace

PiplResource::PiplResource(std::span<const uint8_t> bytes) {
  Reader reader(bytes);
  reader.Number(2);  // marker of the resource's own form
  const uint32_t version = reader.Number(4);
  const uint32_t count = reader.Number(4);
  if (version != 0 || count > kMaxProperties) {
    throw Error("the PIPL resource has version " + std::to_string(version) + " and " +
                std::to_string(count) + " properties, which this host does not know");
  }
  for (uint32_t i = 0; i < count; ++i) {
    PiplProperty property;
    property.vendor = reader.Number(4);
    property.key = reader.Number(4);
    property.id = static_cast<int32_t>(reader.Number(4));
    const uint32_t length = reader.Number(4);
    const std::span<const uint8_t> data = reader.Take(length);
    property.data.assign(data.begin(), data.end());
    reader.Skip((4 - length % 4) % 4);
    mProperties.push_back(std::move(property));
  }
}

const PiplProperty* PiplResource::Find(uint32_t key) const {
  for (const PiplProperty& property : mProperties) {
    if (property.vendor == kVendor && property.key == key) {
      return &property;
    }
  }
  return nullptr;
}

bool PiplResource::IsFilter() const {
  const PiplProperty* kind = Find(FourCC("kind"));
  return kind != nullptr && kind->data.size() == 4 &&
         Reader(kind->data).Number(4) == FourCC("8BFM");
}

std::string PiplResource::Name() const {
  return PascalText(Find(FourCC("name")));
}

std::string PiplResource::Category() const {
  return PascalText(Find(FourCC("catg")));
}

std::string PiplResource::EntryPoint32() const {
  const PiplProperty* property = Find(FourCC("wx86"));
  return property == nullptr ? std::string() : Text(property->data);
}

bool PiplResource::AllowsMode(int16_t imageMode) const {
  const PiplProperty* property = Find(FourCC("mode"));
  if (property == nullptr) {
    return true;
  }
  // One bit for each mode, mode 0 in the highest bit of the first byte.
  const auto byte = static_cast<std::size_t>(imageMode) / 8;
  return byte < property->data.size() && (property->data[byte] & (0x80 >> (imageMode % 8))) != 0;
}

std::optional<FilterCaseInfo> PiplResource::CaseInfo(int16_t filterCase) const {
  const PiplProperty* property = Find(FourCC("fici"));
  const auto offset = static_cast<std::size_t>(filterCase - 1) * 4;
  if (property == nullptr || filterCase < 1 || filterCase > 7 ||
      offset + 4 > property->data.size()) {
    return std::nullopt;
  }
  const uint8_t* info = property->data.data() + offset;
  return FilterCaseInfo{info[0], info[1], info[2], info[3]};
}

}  // namespace filter_host
