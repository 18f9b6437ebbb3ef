#include "persistence/ZvModulePath.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/os/Modules.h"

void GetModuleDirectory(ZvString& outDirectory, void* module) {
  constexpr uint32_t kNameSize = 256;
  char name[kNameSize] = {};
  os::ModuleFileName(module, name, kNameSize);
  const std::string_view path(name);
  const std::size_t lastMark = path.find_last_of("\\:");
  outDirectory = ZvString();
  if (lastMark != std::string_view::npos) {
    outDirectory.assign(name, static_cast<uint32_t>(lastMark + 1));
  }
}

void ParentDirectory(ZvString& path) {
  const std::string_view text = path.view();
  const std::size_t lastOfName = text.find_last_not_of('\\');
  if (lastOfName == std::string_view::npos) {
    return;
  }
  const std::size_t separator = text.find_last_of('\\', lastOfName);
  if (separator == std::string_view::npos) {
    return;
  }
  const std::size_t lastOfParent = text.find_last_not_of('\\', separator);
  if (lastOfParent == std::string_view::npos) {
    return;
  }
  path.resize(static_cast<uint32_t>(lastOfParent + 2), true);
}

void ResolveRelativePath(ZvString& path, const ZvString& directory) {
  const ZvString saved = path;
  const std::string_view given = saved.view();
  path = directory;
  std::size_t skip = 0;
  if (given.starts_with("..")) {
    ParentDirectory(path);
    skip = 2;
  } else if (given.starts_with(".")) {
    skip = 1;
  } else if (!given.starts_with("\\") && !path.empty() && !path.view().ends_with("\\")) {
    path.append(1, '\\');
  }
  if (path.view().ends_with("\\") && skip < given.size() && given[skip] == '\\') {
    ++skip;
  }
  path.append(saved, static_cast<uint32_t>(skip), ZvString::npos);
}
