#include "host/ExchangeFiles.h"

#include "persistence/ZvModulePath.h"

namespace vm {

ZvString ExchangePath(const ZvString& name, const ZvString& directory) {
  ZvString path = name;
  ResolveRelativePath(path, directory);
  return path;
}

CP_FileSpec ExchangeFile(const ZvString& name, const ZvString& directory) {
  return CP_FileSpec(ExchangePath(name, directory).c_str());
}

std::unique_ptr<ZvFileStream> NewExchangeStream(const ZvString& name, const ZvString& directory) {
  return std::make_unique<ZvFileStream>(ExchangeFile(name, directory));
}

void Recreate(ZvFileStream& stream) {
  stream.DeleteOnDisk();
  stream.CreateOnDisk();
  stream.Open(ZvFileStream::kModeReadWrite);
}

}  // namespace vm
