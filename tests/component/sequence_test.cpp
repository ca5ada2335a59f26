// A whole sequence as an editor runs it: compress with proof, describe, decompress through the base, draw.
#include <fstream>

#include "tests/component/encoding_fixture.h"
#include "vorel/frame_codec.h"

namespace vorel::component {

namespace {

constexpr u32 kWidth = 96;
constexpr u32 kHeight = 54;
constexpr int kFrames = 100;
constexpr u32 kColourStandard = VOREL_COLOUR_709;

// Windows of a real clip, 640 x 360 in planes of 4:2:2, as '2vuy'. Each is a step further.
Bytes WindowOfClip(const std::string& clip, int frame) {
  constexpr std::size_t kClipWidth = 640;
  constexpr std::size_t kPlane = kClipWidth * 360;
  constexpr std::size_t kFrameHead = 6;  // "FRAME" and its line end
  const std::size_t head = clip.find('\n') + 1;
  const auto step = static_cast<std::size_t>(frame);
  const std::size_t at = head + (step % 8) * (kFrameHead + 2 * kPlane) + kFrameHead;
  const auto* const luma = reinterpret_cast<const u8*>(clip.data() + at);
  const std::size_t left = step * 4;
  const std::size_t top = step * 3;
  Bytes picture;
  for (std::size_t y = top; y < top + kHeight; ++y) {
    const u8* const lumaRow = luma + y * kClipWidth;
    const u8* const blueRow = luma + kPlane + y * kClipWidth / 2;
    const u8* const redRow = blueRow + kPlane / 2;
    for (std::size_t x = left; x < left + kWidth; x += 2)
      picture.insert(picture.end(), {blueRow[x / 2], lumaRow[x], redRow[x / 2], lumaRow[x + 1]});
  }
  return picture;
}

// The window in any pixel format. What 8bw frames hold has chroma around 0.
Bytes PictureOf(const Bytes& window, u32 pixelFormat, i32 rowBytes) {
  if (pixelFormat == FourCharacterCode("yuvu")) {
    Bytes turned(window.size());
    for (std::size_t i = 0; i < window.size(); i += 2) {
      turned[i] = window[i + 1];
      turned[i + 1] = window[i] ^ 0x80;
    }
    return turned;
  }
  std::vector<u32> words(VorelMaxFrameBytes(0x59525942, kWidth, kHeight) / 4 + 11);
  u32 wordCursor = 0;
  u32 bitCursor = 0;
  EXPECT_EQ(VorelYCbCr8bv422Encode(FourCharacterCode("2vuy"), 0, kWidth, kHeight, kWidth * 2, window.data(),
                                   0, &wordCursor, &bitCursor, words.data(), 0),
            VorelStatus{VOREL_COMPLETE});
  Bytes picture(static_cast<std::size_t>(rowBytes) * kHeight);
  std::vector<u32> scratch(VorelScratchBytes(kWidth) / 4 + 1);
  wordCursor = 5;
  bitCursor = 0;
  EXPECT_EQ(VorelDecodeBounded(VOREL_GENERIC, pixelFormat, kWidth, kHeight, rowBytes, picture.data(),
                               kColourStandard, &wordCursor, &bitCursor, words.data(), words.size() * 4, 0,
                               scratch.data()),
            VorelStatus{VOREL_COMPLETE});
  return picture;
}

u32 CoreFormat(OSType hostFormat) {
  const u32 code = VorelNormalizePixelFormat(32, hostFormat, 0, 0, 0, VOREL_RGB_RANGE_AUTOMATIC);
  return code == FourCharacterCode("V210") ? FourCharacterCode("v210") : code;
}

struct Sequence {
  const char* subtype;
  const char* format;  // "32" is the number
  u32 scan;
  u32 tag;
};

std::string NameOfSequence(const testing::TestParamInfo<Sequence>& parameter) {
  return std::string(parameter.param.subtype) + "_" + parameter.param.format;
}

// The pictures of a sequence, and the frames that were made of them.
struct Movie {
  std::unique_ptr<CompressJob> job;  // holds the description
  std::vector<Bytes> pictures;
  std::vector<Bytes> frames;
};

struct SequenceTest : EncodingTest, testing::WithParamInterface<Sequence> {
  OSType Subtype() const { return LoadBig32(reinterpret_cast<const u8*>(GetParam().subtype)); }

  OSType Format() const {
    const std::string name = GetParam().format;
    return name == "32" ? 32 : LoadBig32(reinterpret_cast<const u8*>(name.data()));
  }

  void CompressAll(Movie& movie) const {
    std::ifstream file(VOREL_SOURCE_FOLDER "/samples/brook_640x360p_8.y4m", std::ios::binary);
    const std::string clip((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    ASSERT_EQ(clip.size(), 3686493u);
    const ComponentInstance compressor = OpenCompressorOf(Subtype());
    ASSERT_EQ(SetRecord(compressor, Record({1, GetParam().scan, 1, 1, 0})), noErr);
    movie.job = MakeJob(Subtype(), Format(), kWidth, kHeight);
    CompressJob& job = *movie.job;
    i32 most = 0;
    ASSERT_EQ(embedded::CallSelector(compressor, kImageCodecGetMaxCompressionSizeSelect, nullptr,
                                     &job.parameters.srcPixMap.bounds, 24, 1024, &most),
              noErr);
    SetBuffer(job, static_cast<std::size_t>(most));
    ASSERT_EQ(Prepare(compressor, job), noErr);
    EXPECT_EQ(job.parameters.wantedSourcePixelType, Format());
    for (int frame = 0; frame < kFrames; ++frame) {
      job.picture = PictureOf(WindowOfClip(clip, frame), CoreFormat(Format()), job.rows.rowBytes);
      job.parameters.srcPixMap.baseAddr = job.picture.data();
      job.parameters.frameNumber = frame;
      ASSERT_EQ(Compress(compressor, job), noErr) << frame;
      EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecBusySelect, 0), 0);
      movie.pictures.push_back(job.picture);
      movie.frames.push_back(FrameOf(job));
      job.parameters.conditionFlags = kWholeFrame;
    }
    EXPECT_EQ(Host->CloseComponent(compressor), noErr);
  }
};

// Where a decompressor draws.
struct Screen {
  Bytes pixels;
  CodecCapabilities capabilities = {};
  embedded::PixelMapExtension rows = {};
  CodecDecompressParams parameters = {};
};

void AimAt(Screen& screen, OSType hostFormat) {
  PixMap& map = screen.parameters.dstPixMap;
  const auto rowBytes = static_cast<i32>(VorelAlignedRowBytes(CoreFormat(hostFormat), kWidth));
  screen.pixels = Bytes(static_cast<std::size_t>(rowBytes) * kHeight, 0x5A);
  map.bounds = {0, 0, static_cast<i16>(kHeight), static_cast<i16>(kWidth)};
  map.pixelFormat = hostFormat <= 32 ? 0 : hostFormat;
  const u32 bits = VorelBytesPerPixel(CoreFormat(hostFormat)) * 8;
  map.pixelSize = hostFormat <= 32 ? static_cast<i16>(hostFormat) : static_cast<i16>(bits);
  map.baseAddr = screen.pixels.data();
  embedded::SetPixelMapRows(map, screen.rows, rowBytes, 0);
}

ComponentResult Draw(ComponentInstance decompressor, Screen& screen, Bytes& frame) {
  screen.parameters.data = frame.data();
  screen.parameters.bufferSize = static_cast<i32>(frame.size());
  screen.parameters.conditionFlags = kWholeFirstFrame;
  return embedded::CallSelector(decompressor, kImageCodecBandDecompressSelect, &screen.parameters);
}

// What the core makes of a frame in a pixel format, over the same pixels.
Bytes DrawnByTheCore(const Bytes& frame, OSType hostFormat) {
  const u32 code = CoreFormat(hostFormat);
  const std::size_t rowBytes = VorelAlignedRowBytes(code, kWidth);
  Bytes picture(rowBytes * kHeight, 0x5A);
  std::vector<u32> scratch(VorelScratchBytes(kWidth) / 4 + 1);
  u32 wordCursor = 5;
  u32 bitCursor = 0;
  EXPECT_EQ(VorelDecodeBounded(VOREL_GENERIC, code, kWidth, kHeight, static_cast<i32>(rowBytes),
                               picture.data(), kColourStandard, &wordCursor, &bitCursor, frame.data(),
                               frame.size(), 0, scratch.data()),
            VorelStatus{VOREL_COMPLETE});
  return picture;
}

// The lists name 'b48r' for all frames, and 10-bit 4:2:2 frames also 'A46L', which are refused when it comes to it.
bool IsOfferedInVain(const std::string& subtype, OSType type) {
  const bool isRgb = subtype == "Vrl7" || subtype == "Vrl1" || subtype == "Vrl0";  // generic: of RGB here
  if (type == FourCharacterCode("b48r")) return !isRgb;
  return type == FourCharacterCode("A46L") && subtype == "Vrl6";
}

TEST_P(SequenceTest, ComesBackWholeAndIsDrawnInEveryOfferedFormat) {
  Movie movie;
  CompressAll(movie);
  ASSERT_EQ(movie.frames.size(), std::size_t{kFrames});
  const ImageDescriptionHandle description = movie.job->Description();
  EXPECT_EQ(Extension(description, FourCharacterCode("Kesp")), TagBytes(GetParam().tag));

  const ComponentInstance decompressor = Open(kDecompressorType, (*description)->cType);
  ASSERT_NE(decompressor, nullptr);
  Screen screen;
  screen.parameters.imageDescription = description;
  screen.parameters.capabilities = &screen.capabilities;
  ASSERT_EQ(embedded::CallSelector(decompressor, kImageCodecPreDecompressSelect, &screen.parameters), noErr);
  ASSERT_NE(screen.parameters.wantedDestinationPixelTypes, nullptr);
  std::vector<OSType> offered;
  for (const OSType* type = *screen.parameters.wantedDestinationPixelTypes; *type != 0; ++type)
    offered.push_back(*type);
  EXPECT_NE(std::find(offered.begin(), offered.end(), Format()), offered.end());

  AimAt(screen, Format());
  for (std::size_t frame = 0; frame < movie.frames.size(); ++frame) {
    std::fill(screen.pixels.begin(), screen.pixels.end(), u8{0x5A});
    ASSERT_EQ(Draw(decompressor, screen, movie.frames[frame]), noErr) << frame;
    ASSERT_EQ(screen.pixels, movie.pictures[frame]) << frame;
  }
  for (const OSType type : offered) {
    AimAt(screen, type);
    if (IsOfferedInVain(GetParam().subtype, type)) {
      EXPECT_EQ(Draw(decompressor, screen, movie.frames[7]), codecConditionErr) << type;
      continue;
    }
    EXPECT_EQ(Draw(decompressor, screen, movie.frames[7]), noErr) << type;
    EXPECT_EQ(screen.pixels, DrawnByTheCore(movie.frames[7], type)) << type;
  }
  EXPECT_EQ(Host->CloseComponent(decompressor), noErr);
}

INSTANTIATE_TEST_SUITE_P(
    Families, SequenceTest,
    testing::Values(Sequence{"Vrl7", "R10k", 1, 0x58424752}, Sequence{"Vrl1", "32", 2, 0x42477220},
                    Sequence{"Vrl5", "v410", 1, 0x0A524259}, Sequence{"Vrl2", "v408", 2, 0x52427920},
                    Sequence{"Vrl2", "r408", 1, 0x52625920}, Sequence{"Vrl6", "v210", 1, 0x595259A2},
                    Sequence{"Vrl3", "2vuy", 2, 0x79525942}, Sequence{"Vrl4", "yuvu", 1, 0x72596259},
                    Sequence{"Vrl0", "32", 1, 0x42475220}, Sequence{"Vrl0", "R10k", 2, 0x58424772}),
    NameOfSequence);

}  // namespace

}  // namespace vorel::component
