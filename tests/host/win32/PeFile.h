#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vm {

// A 32-bit Windows library as the loader sees it, read from its bytes.
class PeFile {
 public:
  explicit PeFile(std::string bytes);

  uint16_t Machine() const;
  bool IsLibrary() const;
  // Exported names, sorted as the table has them.
  std::vector<std::string> Exports() const;
  // File names of the imported libraries.
  std::vector<std::string> Imports() const;

  // A resource's place: each part is a name or, as "#1", a number.
  struct ResourceId {
    std::string type;
    std::string name;
    uint32_t language;

    auto operator<=>(const ResourceId&) const = default;
  };
  // Every resource with its bytes.
  const std::map<ResourceId, std::string>& Resources() const { return mResources; }

 private:
  uint32_t Number(size_t offset, size_t size) const;
  size_t OffsetOf(uint32_t address) const;
  uint32_t Directory(uint32_t index) const;
  std::string NameAt(uint32_t address) const;
  void ReadResources(size_t root, size_t table, int32_t level, ResourceId id);

  std::string mBytes;
  size_t mHeader;
  std::map<ResourceId, std::string> mResources;
};

}  // namespace vm
