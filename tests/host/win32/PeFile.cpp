#include "host/win32/PeFile.h"

#include <stdexcept>
#include <utility>

namespace vm {

PeFile::PeFile(std::string bytes) : mBytes(std::move(bytes)), mHeader(Number(0x3C, 4)) {
  if (mBytes.substr(0, 2) != "MZ" || Number(mHeader, 4) != 0x4550 ||
      Number(mHeader + 24, 2) != 0x10B)
    throw std::runtime_error("not a 32-bit Windows file");
  if (const uint32_t resources = Directory(2); resources != 0) {
    const size_t root = OffsetOf(resources);
    ReadResources(root, root, 0, {});
  }
}

uint32_t PeFile::Number(size_t offset, size_t size) const {
  uint32_t number = 0;
  for (size_t i = size; i-- > 0;)
    number = number << 8 | static_cast<uint8_t>(mBytes.at(offset + i));
  return number;
}

size_t PeFile::OffsetOf(uint32_t address) const {
  const size_t sections = mHeader + 24 + Number(mHeader + 20, 2);
  for (uint32_t i = 0; i < Number(mHeader + 6, 2); ++i) {
    const size_t section = sections + i * 40;
    const uint32_t begin = Number(section + 12, 4);
    if (address >= begin && address < begin + Number(section + 16, 4))
      return address - begin + Number(section + 20, 4);
  }
  throw std::runtime_error("address in no section");
}

uint32_t PeFile::Directory(uint32_t index) const {
  return Number(mHeader + 24 + 96 + index * 8, 4);
}

std::string PeFile::NameAt(uint32_t address) const {
  const size_t begin = OffsetOf(address);
  return mBytes.substr(begin, mBytes.find('\0', begin) - begin);
}

uint16_t PeFile::Machine() const {
  return static_cast<uint16_t>(Number(mHeader + 4, 2));
}

bool PeFile::IsLibrary() const {
  return (Number(mHeader + 22, 2) & 0x2000) != 0;
}

std::vector<std::string> PeFile::Exports() const {
  const size_t table = OffsetOf(Directory(0));
  const size_t names = OffsetOf(Number(table + 32, 4));
  std::vector<std::string> exports;
  for (uint32_t i = 0; i < Number(table + 24, 4); ++i)
    exports.push_back(NameAt(Number(names + i * 4, 4)));
  return exports;
}

std::vector<std::string> PeFile::Imports() const {
  std::vector<std::string> imports;
  for (size_t entry = OffsetOf(Directory(1)); Number(entry + 12, 4) != 0; entry += 20)
    imports.push_back(NameAt(Number(entry + 12, 4)));
  return imports;
}

void PeFile::ReadResources(size_t root, size_t table, int32_t level, ResourceId id) {
  const uint32_t count = Number(table + 12, 2) + Number(table + 14, 2);
  for (uint32_t i = 0; i < count; ++i) {
    const size_t entry = table + 16 + i * 8;
    const uint32_t key = Number(entry, 4);
    std::string text = "#" + std::to_string(key);
    if (key & 0x80000000) {
      const size_t name = root + (key & 0x7FFFFFFF);
      text.clear();
      for (uint32_t at = 0; at < Number(name, 2); ++at)
        text.push_back(static_cast<char>(Number(name + 2 + at * 2, 2)));
    }
    if (level == 0)
      id.type = text;
    else if (level == 1)
      id.name = text;
    else
      id.language = key;
    const uint32_t target = Number(entry + 4, 4);
    if (target & 0x80000000) {
      ReadResources(root, root + (target & 0x7FFFFFFF), level + 1, id);
    } else {
      const size_t data = root + target;
      mResources[id] = mBytes.substr(OffsetOf(Number(data, 4)), Number(data + 4, 4));
    }
  }
}

}  // namespace vm
