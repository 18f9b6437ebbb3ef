#include "effects_app/Conversation.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>
#include <thread>

#include "effects_app/Effect.h"
#include "foundation/CP_Exceptions.h"
#include "foundation/FourCharCode.h"
#include "image/ZvTiledImage.h"
#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvFileStream.h"
#include "persistence/ZvModulePath.h"

namespace effects_app {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr char kImageFile[] = ".\\Img.h";
constexpr char kFlagFile[] = ".\\Flg.h";
constexpr char kDoneFile[] = ".\\Flg2.h";
constexpr milliseconds kPollPeriod{20};

// Names under which the plug-in writes images that its own registry does not know.
constexpr char kWrittenCmyk64[] = "ZvImageCmyka64";
constexpr char kWrittenCmyka80[] = "ZvImageCmyka80";
// Colour type of three-plane RGB. 16-bit images of that type arrive with red and blue exchanged.
constexpr int32_t kColourTypeRgb = 2;

CP_FileSpec FileIn(const ZvString& folder, const char* name) {
  ZvString path(name);
  ResolveRelativePath(path, folder);
  return CP_FileSpec(path.c_str());
}

bool Exists(const CP_FileSpec& file) {
  ZvFileStream stream(file);
  try {
    stream.Open(ZvFileStream::kModeRead);
  } catch (const CP_BaseException&) {
    return false;
  }
  stream.Close();
  return true;
}

// What changes when a file is written anew; empty for a file that isn't there.
struct FileState {
  std::filesystem::file_time_type time;
  std::uintmax_t size;
  bool operator==(const FileState&) const = default;
};

std::optional<FileState> StateOf(const ZvString& folder, const char* name) {
  ZvString text(name);
  ResolveRelativePath(text, folder);
  std::string path(text.view());
  if constexpr (std::filesystem::path::preferred_separator == '/') {
    std::replace(path.begin(), path.end(), '\\', '/');
  }
  std::error_code error;
  const FileState state{std::filesystem::last_write_time(path, error),
                        std::filesystem::file_size(path, error)};
  return error ? std::nullopt : std::optional(state);
}

uint32_t Remaining(ZvStream& stream) {
  const uint32_t length = stream.GetLength();
  return length - std::min(length, stream.Tell());
}

ZvSmartPtr<ZvImage> ReadImage(ZvStream& stream) {
  ZvStreamable* const object = stream.ReadObject();
  auto* const image = dynamic_cast<ZvImage*>(object);
  if (object != nullptr && image == nullptr) {
    object->Release();
  }
  return ZvSmartPtr<ZvImage>::Adopt(image);
}

}  // namespace

void RegisterReadableImages() {
  RunRegistrars();
  AppendClass(kWrittenCmyk64, []() -> ZvStreamable* { return new ZvTiledImage<PxCmyk64>; });
  AppendClass(kWrittenCmyka80, []() -> ZvStreamable* { return new ZvTiledImage<PxCmyka80>; });
}

Message ReadMessage(ZvStream& stream) {
  Message message;
  if (stream.ReadSInt32() != 0) {
    stream.ReadString(message.effectName);
  }
  const int32_t size = stream.ReadSInt32();
  if (size > 0 && static_cast<uint32_t>(size) <= Remaining(stream)) {
    message.parameters.resize(static_cast<std::size_t>(size));
    stream.ReadBytes(message.parameters.data(), static_cast<uint32_t>(size));
  }
  message.colourType = stream.ReadSInt32();
  if (stream.ReadBool()) {
    message.mask = ReadImage(stream);
  }
  message.image = ReadImage(stream);
  return message;
}

void WriteMessage(ZvStream& stream, const Message& message) {
  stream.WriteSInt32(static_cast<int32_t>(message.effectName.length()), nullptr, true);
  if (!message.effectName.empty()) {
    stream.WriteString(message.effectName, "EffectName", true);
  }
  const auto size = static_cast<uint32_t>(message.parameters.size());
  stream.WriteSInt32(static_cast<int32_t>(size), nullptr, true);
  if (size != 0) {
    stream.WriteBytes(message.parameters.data(), size, true);
  }
  stream.WriteSInt32(message.colourType, "ColorType", true);
  stream.WriteBool(message.mask.Get() != nullptr, "Mask?", true);
  if (message.mask.Get() != nullptr) {
    stream.WriteObject(message.mask.Get());
  }
  stream.WriteObject(message.image.Get());
}

Message AnswerTo(Message request, const EffectSettings& settings) {
  EffectSettings effect = settings;
  if (!request.parameters.empty()) {
    effect = ParseParameters(request.parameters).value_or(settings);
  }
  const uint32_t kind = request.image->PixelKind();
  if (kind == FourCC("Cm64") || kind == FourCC("Cm80")) {
    const auto readable = ZvSmartPtr<ZvImage>::Adopt(
        new ZvTiledImage<PxRgba64>(request.image->Width(), request.image->Height()));
    readable->CopyImage(request.image.Get());
    readable->SetResolution(request.image->XRes(), request.image->YRes());
    request.image = readable;
  }
  const bool exchanged = kind == FourCC("Rg64") && request.colourType == kColourTypeRgb;
  ApplyEffect(*request.image.Get(), request.mask.Get(), effect, exchanged);
  request.effectName = effect.name.c_str();
  request.parameters = FormatParameters(effect);
  return request;
}

Outcome Serve(const ZvString& folder, const AppSettings& settings,
              const std::function<void(const std::string&)>& log) {
  const Clock::time_point start = Clock::now();
  const CP_FileSpec flag = FileIn(folder, kFlagFile);
  while (!Exists(flag)) {
    if (Clock::now() - start >= settings.flagTimeout) {
      log("no request came");
      return Outcome::kNoRequest;
    }
    std::this_thread::sleep_for(kPollPeriod);
  }

  Message request;
  {
    ZvFileStream stream(FileIn(folder, kImageFile));
    stream.Open(ZvFileStream::kModeRead);
    UseBinaryParser(stream);
    request = ReadMessage(stream);
    stream.Close();
  }
  const std::optional<FileState> requestState = StateOf(folder, kImageFile);
  // The request is taken: whoever finds a flag from now on finds another one.
  ZvFileStream(flag).DeleteOnDisk();
  if (request.image.Get() == nullptr) {
    log("the request holds no image");
    return Outcome::kUnreadable;
  }
  ZvString className;
  request.image->ClassName(className);
  log("read a request: " + std::to_string(request.image->Width()) + " by " +
      std::to_string(request.image->Height()) + ", " + className.c_str() + ", colour type " +
      std::to_string(request.colourType) + (request.mask.Get() != nullptr ? ", with a mask" : "") +
      (request.parameters.empty() ? "" : ", with parameters"));

  if (!request.parameters.empty() && !ParseParameters(request.parameters).has_value()) {
    log("the parameters are not ours: the settings are used");
  }
  const Message answer = AnswerTo(std::move(request), settings.effect);
  log("applied '" + std::string(answer.effectName.view()) + "'");
  std::this_thread::sleep_for(settings.delay);

  // The user may have cancelled and started another run meanwhile; the file is then that run's.
  if (Exists(flag) || StateOf(folder, kImageFile) != requestState) {
    log("a newer request is there: this one is left unanswered");
    return Outcome::kNewerRequest;
  }
  {
    ZvFileStream stream(FileIn(folder, kImageFile));
    stream.DeleteOnDisk();
    stream.CreateOnDisk();
    stream.Open(ZvFileStream::kModeReadWrite);
    UseBinaryParser(stream);
    WriteMessage(stream, answer);
    stream.Close();
  }
  answer.image->ClassName(className);
  ZvFileStream(FileIn(folder, kDoneFile)).CreateOnDisk();
  log(std::string("answered with ") + className.c_str());
  return Outcome::kAnswered;
}

}  // namespace effects_app
