// A decompressor on the embedded host, and frames of every tag for it.
#pragma once
#include <memory>
#include <string_view>

#include "base/bytes.h"
#include "component/decompressor.h"
#include "component/embedded/instances.h"
#include "tests/component/component_fixture.h"

namespace vorel::component {

// A tag, and an encoder's choice that leads to it.
struct TagSource {
  const char (&tag)[5];
  OSType subtype;  // of the family's decompressor
  VorelFamily family;
  u32 pixelFormat;
  u32 formatChoice;  // 1 with alpha, 2 interlaced
  bool hasAlpha;
};

// All 30.
std::span<const TagSource> TagSources();

const TagSource& SourceOf(const char (&tag)[5]);

inline constexpr ComponentResult kRefused = -8972;  // whatever is wrong with a frame

// Codes of pixel formats and component types as text, with blanks between them; 32 and 24 are numbers.
u32 CodeOf(std::string_view text);
std::vector<u32> CodesOf(std::string_view text);
bool Holds(std::string_view list, u32 code);

struct Frame {
  u32 tag;
  std::vector<u8> bytes;  // as many as hold bits
  u16 width;
  u16 height;
};

// A frame of noise. Equal arguments give equal frames.
Frame MakeFrame(const TagSource& source, u16 width, u16 height);

// Bytes that end where their block of memory ends, so that a sanitizer sees what is read behind them. `address`
// is what the start is beyond a multiple of 4.
struct BytesAtEnd {
  std::unique_ptr<u8[]> block;
  u8* start;
};

BytesAtEnd CopyToEnd(std::span<const u8> bytes, std::size_t address);

// A destination. Rows have room for every pixel format.
struct Picture {
  PixMap map;
  embedded::PixelMapExtension extension;
  std::vector<u8> bytes;
};

i32 RowBytesFor(u16 width);
std::unique_ptr<Picture> MakePicture(OSType pixelFormat, u16 width, u16 height);

struct DecompressorTest : ComponentTest {
  void SetUp() override;
  void TearDown() override;

  // Starts another host than the usual one, without an instance.
  void Restart(const embedded::HostSettings& settings);

  // The instance that the test is about.
  void OpenOf(OSType subtype);
  Decompressor& Storage() const { return *reinterpret_cast<Decompressor*>(instance->storage); }

  // Lets a test replace operations of the host it started with.
  HostOperations& Replace();

  // A description with these extensions, disposed of at the end.
  ImageDescriptionHandle Describe(u16 width, u16 height);
  ImageDescriptionHandle Describe(const Frame& frame);  // with the tag
  static void AddExtension(ImageDescriptionHandle description, OSType type, std::string_view bytes);
  static void AddTag(ImageDescriptionHandle description, u32 tag);

  // Parameters of a call about this description, with the instance's own capabilities.
  CodecDecompressParams ParametersFor(ImageDescriptionHandle description);
  ComponentResult Preflight(CodecDecompressParams& parameters) const;
  ComponentResult PreflightFor(const Frame& frame);

  ComponentInstance instance = nullptr;
  CodecCapabilities capabilities = {};
  HostOperations replaced = {};
  const HostOperations* real = nullptr;
  std::vector<ImageDescriptionHandle> descriptions;
};

// A frame between BeginBand and EndBand, without a base: the record of the band and the one of the frame, which
// is full of rubbish as the base may leave it.
struct Band {
  CodecDecompressParams parameters;
  ImageSubCodecDecompressRecord record;
  std::unique_ptr<FrameRecord> frame;
  std::unique_ptr<Picture> picture;
};

Band MakeBand(const CodecDecompressParams& parameters, OSType pixelFormat, std::span<const u8> data);
ComponentResult Begin(ComponentInstance instance, Band& band);
ComponentResult Draw(ComponentInstance instance, Band& band);
ComponentResult End(ComponentInstance instance, Band& band, OSErr result);

// Begins, draws and ends. The first failure.
ComponentResult DecodeBand(ComponentInstance instance, Band& band);

}  // namespace vorel::component
