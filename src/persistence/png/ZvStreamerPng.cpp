#include "persistence/png/ZvStreamerPng.h"

#include <png.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <memory>

#include "foundation/FourCharCode.h"
#include "image/pixels/PxRecords.h"
#include "image/ZvImageFactory.h"
#include "layers/ZvImageLayer.h"
#include "persistence/png/PngRowLayout.h"
#include "persistence/ZvClassRegistry.h"

// libpng leaves an error by a long jump. Each function here that arms one has no object with a
// destructor between there and the calls; what has to be freed belongs to its caller.

namespace {

constexpr char kImageClassName[] = "ZvImage";
constexpr uint32_t kHeadBytes = 40;
constexpr size_t kSignatureBytes = 4;

// Pixels of room behind a row.
constexpr int32_t kRowSlack = 400;

// Deflate can't pack more into a byte.
constexpr uint64_t kMaxDeflateRatio = 1032;
constexpr uint64_t kMinPlausibleBytes = 1 << 20;

// libpng takes memory for what a chunk claims to hold before it reads on. More than its longest row
// needs it doesn't get at once; it then passes the chunk over.
constexpr png_alloc_size_t kMaxAllocation = 16 << 20;

constexpr bool kLittleEndianHost = std::endian::native == std::endian::little;

void AppendCodec(bool doRegister) {
  if (doRegister) {
    GetStreamerList().push_back(ZvSmartPtr<ZvStreamer>::Adopt(new ZvStreamerPng));
  }
}

const bool kRegistration = (AddRegistrar(AppendCodec), true);

[[noreturn]] void LeaveSilently(png_structp png, png_const_charp /*message*/) {
  png_longjmp(png, 1);
}

void IgnoreWarning(png_structp /*png*/, png_const_charp /*message*/) {}

png_voidp AllocateUpToLimit(png_structp /*png*/, png_alloc_size_t size) {
  return size <= kMaxAllocation ? std::malloc(size) : nullptr;
}

void Free(png_structp /*png*/, png_voidp block) {
  std::free(block);
}

// Exceptions of the stream must not cross libpng's frames.
void ReadFromStream(png_structp png, png_bytep data, size_t length) {
  bool read = false;
  try {
    auto& stream = *static_cast<ZvStream*>(png_get_io_ptr(png));
    const uint32_t end = stream.GetLength();
    const uint32_t position = stream.Tell();
    // All or nothing: libpng's buffer isn't cleared.
    if (end > position && end - position >= length) {
      stream.ReadBytes(data, static_cast<uint32_t>(length));
      read = true;
    }
  } catch (...) {
  }
  if (!read) {
    png_error(png, "");
  }
}

void WriteToStream(png_structp png, png_bytep data, size_t length) {
  bool written = false;
  try {
    static_cast<ZvStream*>(png_get_io_ptr(png))
        ->WriteBytes(data, static_cast<uint32_t>(length), true);
    written = true;
  } catch (...) {
  }
  if (!written) {
    png_error(png, "");
  }
}

void FlushNothing(png_structp /*png*/) {}

struct FreeBlock {
  void operator()(void* block) const { std::free(block); }
};
using RowBuffer = std::unique_ptr<uint8_t[], FreeBlock>;

// One row of the image, or as many zeroed bytes as libpng needs if that is more.
RowBuffer MakeRowBuffer(const ZvImage& image, int32_t width, size_t neededBytes) {
  RowBuffer row(static_cast<uint8_t*>(image.NewRow(width + kRowSlack)));
  const auto rowBytes =
      static_cast<size_t>(vm::DefaultRowBytes(image.BitsPerPixel(), width + kRowSlack));
  if (row != nullptr && neededBytes <= rowBytes) {
    std::fill_n(row.get(), rowBytes, uint8_t{0});
    return row;
  }
  row.reset(static_cast<uint8_t*>(std::calloc(std::max(neededBytes, rowBytes), 1)));
  return row;
}

class PngReader {
 public:
  explicit PngReader(ZvStream& stream) : mStream(stream) {
    mPng = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    if (mPng != nullptr) {
      png_set_error_fn(mPng, nullptr, LeaveSilently, IgnoreWarning);
      png_set_mem_fn(mPng, nullptr, AllocateUpToLimit, Free);
      mInfo = png_create_info_struct(mPng);
    }
  }
  PngReader(const PngReader&) = delete;
  PngReader& operator=(const PngReader&) = delete;
  ~PngReader() { png_destroy_read_struct(&mPng, &mInfo, nullptr); }

  // Null if the file can't be read.
  ZvSmartPtr<ZvImage> Read(bool useTiles) {
    if (mPng == nullptr || mInfo == nullptr || !ReadHeader() || !IsPlausible()) {
      return nullptr;
    }
    // The depth is that of the file, whatever the decoding makes of it.
    const int32_t bitsPerPixel = png_get_channels(mPng, mInfo) * mDepth;
    auto image = ZvSmartPtr<ZvImage>::Adopt(
        CreateImageForDepth(mWidth, mHeight, bitsPerPixel, FourCC("GraB"), useTiles));
    if (image == nullptr || !PrepareDecoding()) {
      return nullptr;
    }
    const RowBuffer row = MakeRowBuffer(*image, mWidth, png_get_rowbytes(mPng, mInfo));
    const vm::PngRowLayout layout(png_get_channels(mPng, mInfo), png_get_bit_depth(mPng, mInfo),
                                  png_get_color_type(mPng, mInfo) == PNG_COLOR_TYPE_PALETTE,
                                  image->PixelKind());
    RowBuffer records;
    if (!layout.IsRecordLayout()) {
      records = MakeRowBuffer(*image, mWidth, 0);
    }
    const bool ready = row != nullptr && (layout.IsRecordLayout() || records != nullptr);
    if (!ready || !ReadRows(*image, row.get(), records.get(), layout)) {
      return nullptr;
    }
    return image;
  }

 private:
  bool ReadHeader() {
    if (setjmp(png_jmpbuf(mPng))) {
      return false;
    }
    png_set_read_fn(mPng, &mStream, ReadFromStream);
    png_read_info(mPng, mInfo);
    png_uint_32 width = 0;
    png_uint_32 height = 0;
    png_get_IHDR(mPng, mInfo, &width, &height, &mDepth, &mColorType, &mInterlace, nullptr, nullptr);
    mWidth = static_cast<int32_t>(width);
    mHeight = static_cast<int32_t>(height);
    return true;
  }

  // A file that is too short for its pixels gets no memory for them.
  bool IsPlausible() const {
    uint64_t left = 0;
    try {
      left = mStream.GetLength();
    } catch (...) {
    }
    const uint64_t pixelBytes = png_get_rowbytes(mPng, mInfo) * static_cast<uint64_t>(mHeight);
    return pixelBytes <= left * kMaxDeflateRatio + kMinPlausibleBytes;
  }

  bool PrepareDecoding() {
    if (setjmp(png_jmpbuf(mPng))) {
      return false;
    }
    if (png_get_valid(mPng, mInfo, PNG_INFO_tRNS) != 0) {
      png_set_expand(mPng);
    }
    png_color_16p fileBackground = nullptr;
    if (png_get_bKGD(mPng, mInfo, &fileBackground) != 0) {
      png_set_background(mPng, fileBackground, PNG_BACKGROUND_GAMMA_FILE, 1, 1.0);
    } else {
      const auto full = static_cast<png_uint_16>(mDepth == 16 ? 0xFFFF : 0xFF);
      const png_color_16 white{0, full, full, full, full};
      png_set_background(mPng, &white, PNG_BACKGROUND_GAMMA_SCREEN, 0, 1.0);
    }
    if ((mColorType & PNG_COLOR_MASK_COLOR) != 0) {
      png_colorp palette = nullptr;
      int entries = 0;
      png_get_PLTE(mPng, mInfo, &palette, &entries);  // asked, as ever; nothing uses the answer
    }
    if (kLittleEndianHost) {
      png_set_bgr(mPng);
    }
    mPasses = png_set_interlace_handling(mPng);
    png_read_update_info(mPng, mInfo);
    return true;
  }

  // A pass of an interlaced file gives some of a row's pixels and leaves the others, so the row
  // must hold what the passes before have given.
  bool ReadRows(ZvImage& image, uint8_t* row, uint8_t* records, const vm::PngRowLayout& layout) {
    if (setjmp(png_jmpbuf(mPng))) {
      return false;
    }
    for (int pass = 0; pass < mPasses; ++pass) {
      for (int32_t y = 0; y < mHeight; ++y) {
        if (pass > 0) {
          image.GetRow(records != nullptr ? records : row, 0, y, mWidth);
          if (records != nullptr) {
            layout.FromRecords(records, row, mWidth);
          }
        }
        png_read_rows(mPng, &row, nullptr, 1);
        if (records != nullptr) {
          layout.ToRecords(row, records, mWidth);
        }
        image.PutRow(records != nullptr ? records : row, 0, y, mWidth);
      }
    }
    png_read_end(mPng, nullptr);
    return true;
  }

  ZvStream& mStream;
  png_structp mPng = nullptr;
  png_infop mInfo = nullptr;
  int32_t mWidth = 0;
  int32_t mHeight = 0;
  int mDepth = 0;
  int mColorType = 0;
  int mInterlace = 0;
  int mPasses = 0;
};

int ColorTypeFor(uint32_t pixelKind) {
  switch (pixelKind) {
    case PxGrayByte::kInfo.kind:
    case PxAlphaByte::kInfo.kind:
    case PxGrayBit::kInfo.kind:
      return PNG_COLOR_TYPE_GRAY;
    case PxRgbBytes::kInfo.kind:
    case PxRgb48::kInfo.kind:
      return PNG_COLOR_TYPE_RGB;
    default:
      return PNG_COLOR_TYPE_RGB_ALPHA;
  }
}

class PngWriter {
 public:
  explicit PngWriter(ZvStream& stream) : mStream(stream) {
    mPng = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    if (mPng != nullptr) {
      png_set_error_fn(mPng, nullptr, LeaveSilently, IgnoreWarning);
      mInfo = png_create_info_struct(mPng);
    }
  }
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;
  ~PngWriter() { png_destroy_write_struct(&mPng, &mInfo); }

  void Write(const ZvImage& image) {
    if (mPng == nullptr || mInfo == nullptr || !WriteHeader(image)) {
      return;
    }
    const RowBuffer row = MakeRowBuffer(image, image.Width(), png_get_rowbytes(mPng, mInfo));
    if (row != nullptr) {
      WriteRows(image, row.get());
    }
  }

 private:
  bool WriteHeader(const ZvImage& image) {
    if (setjmp(png_jmpbuf(mPng))) {
      return false;
    }
    png_set_write_fn(mPng, &mStream, WriteToStream, FlushNothing);
    const int32_t depth = image.BitsPerChannel();
    png_set_IHDR(mPng, mInfo, static_cast<png_uint_32>(image.Width()),
                 static_cast<png_uint_32>(image.Height()), depth, ColorTypeFor(image.PixelKind()),
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    const auto bits = static_cast<png_byte>(depth);
    const png_color_8 significant{bits, bits, bits, bits, bits};
    png_set_sBIT(mPng, mInfo, &significant);
    SetTexts();
    png_write_info(mPng, mInfo);
    if (kLittleEndianHost) {
      png_set_bgr(mPng);
      png_set_swap(mPng);
    }
    return true;
  }

  // REQUIRED: every PNG of this system says this about itself.
  void SetTexts() {
    static char keys[][12] = {"Title", "Author", "Description"};
    static char texts[][17] = {"Mona Lisa", "Anselmo Corvinus", "<long text>"};
    png_text entries[3] = {};
    for (size_t i = 0; i < 3; ++i) {
      entries[i].compression = i == 2 ? PNG_TEXT_COMPRESSION_zTXt : PNG_TEXT_COMPRESSION_NONE;
      entries[i].key = keys[i];
      entries[i].text = texts[i];
    }
    png_set_text(mPng, mInfo, entries, 3);
  }

  void WriteRows(const ZvImage& image, uint8_t* row) {
    if (setjmp(png_jmpbuf(mPng))) {
      return;
    }
    for (int32_t y = 0; y < image.Height(); ++y) {
      image.GetRow(row, 0, y, image.Width());
      png_write_rows(mPng, &row, 1);
    }
    png_write_end(mPng, mInfo);
  }

  ZvStream& mStream;
  png_structp mPng = nullptr;
  png_infop mInfo = nullptr;
};

}  // namespace

uint32_t ZvStreamerPng::GetCreatorCode() const {
  return FourCC("PiNG");
}

uint32_t ZvStreamerPng::GetFormatCode() const {
  return 0x504E4700;
}

bool ZvStreamerPng::CanRead(ZvStream& stream, ZvString& outClassName) const {
  const uint8_t* const head = stream.PeekHead(kHeadBytes);
  if (head == nullptr || png_sig_cmp(head, 0, kSignatureBytes) != 0) {
    return false;
  }
  outClassName = kImageClassName;
  return true;
}

bool ZvStreamerPng::CanWrite(const ZvString& className) const {
  return className == ZvString(kImageClassName);
}

ZvString ZvStreamerPng::GetExtension() const {
  return ZvString();
}

void ZvStreamerPng::Read(ZvStream& stream, ZvSmartPtr<ZvStreamable>& outResult,
                         ZvStreamingInfo* hint) const {
  stream.SetStreamLittleEndian(false);
  const auto* const imageHint = dynamic_cast<const ZvImageStreamInfo*>(hint);
  ZvSmartPtr<ZvImage> image;
  {
    PngReader reader(stream);
    image = reader.Read(imageHint != nullptr && imageHint->mUseTiles);
  }
  if (image == nullptr) {
    return;
  }
  auto layer = ZvSmartPtr<ZvImageLayer>::Adopt(new ZvImageLayer);
  layer->GetNameRef() = "ImageLayer";
  layer->SetImage(image.Get());
  outResult = layer.Get();
}

void ZvStreamerPng::Write(ZvStream& stream, ZvStreamable* object) const {
  const auto* const image = dynamic_cast<const ZvImage*>(object);
  if (image == nullptr) {
    return;
  }
  UseBinaryParser(stream);
  stream.SetStreamLittleEndian(false);
  PngWriter(stream).Write(*image);
}
