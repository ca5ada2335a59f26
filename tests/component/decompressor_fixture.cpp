#include "tests/component/decompressor_fixture.h"

#include <algorithm>
#include <cstdlib>

#include "component/family_dispatch.h"

namespace vorel::component {

namespace {

constexpr TagSource kTagSources[] = {
    {"RGBX", FourCharacterCode("Vrl7"), VOREL_RGB_10BF, FourCharacterCode("b64a"), 0, false},
    {"rGBX", FourCharacterCode("Vrl7"), VOREL_RGB_10BF, FourCharacterCode("b64a"), 2, false},
    {"ARGX", FourCharacterCode("Vrl7"), VOREL_RGB_10BF, FourCharacterCode("b64a"), 1, true},
    {"ArGX", FourCharacterCode("Vrl7"), VOREL_RGB_10BF, FourCharacterCode("b64a"), 3, true},
    {" RGB", FourCharacterCode("Vrl1"), VOREL_RGB_8BF, 32, 0, false},
    {" rGB", FourCharacterCode("Vrl1"), VOREL_RGB_8BF, 32, 2, false},
    {"ARGB", FourCharacterCode("Vrl1"), VOREL_RGB_8BF, 32, 1, true},
    {"ArGB", FourCharacterCode("Vrl1"), VOREL_RGB_8BF, 32, 3, true},
    {"YBR\n", FourCharacterCode("Vrl5"), VOREL_YCBCR_10BV_444, FourCharacterCode("V416"), 0, false},
    {"yBR\n", FourCharacterCode("Vrl5"), VOREL_YCBCR_10BV_444, FourCharacterCode("V416"), 2, false},
    {"CA4p", FourCharacterCode("Vrl5"), VOREL_YCBCR_10BV_444, FourCharacterCode("V416"), 1, true},
    {"CA4i", FourCharacterCode("Vrl5"), VOREL_YCBCR_10BV_444, FourCharacterCode("V416"), 3, true},
    {" YBR", FourCharacterCode("Vrl2"), VOREL_YCBCR_8B_444, FourCharacterCode("v408"), 0, false},
    {" yBR", FourCharacterCode("Vrl2"), VOREL_YCBCR_8B_444, FourCharacterCode("v408"), 2, false},
    {"AYBR", FourCharacterCode("Vrl2"), VOREL_YCBCR_8B_444, FourCharacterCode("v408"), 1, true},
    {"AyBR", FourCharacterCode("Vrl2"), VOREL_YCBCR_8B_444, FourCharacterCode("v408"), 3, true},
    {" YbR", FourCharacterCode("Vrl2"), VOREL_YCBCR_8B_444, FourCharacterCode("r408"), 0, false},
    {" ybR", FourCharacterCode("Vrl2"), VOREL_YCBCR_8B_444, FourCharacterCode("r408"), 2, false},
    {"AYbR", FourCharacterCode("Vrl2"), VOREL_YCBCR_8B_444, FourCharacterCode("r408"), 1, true},
    {"AybR", FourCharacterCode("Vrl2"), VOREL_YCBCR_8B_444, FourCharacterCode("r408"), 3, true},
    {"\xA2YRY", FourCharacterCode("Vrl6"), VOREL_YCBCR_10BV_422, FourCharacterCode("V416"), 0, false},
    {"\xA2YRy", FourCharacterCode("Vrl6"), VOREL_YCBCR_10BV_422, FourCharacterCode("V416"), 2, false},
    {"CA2p", FourCharacterCode("Vrl6"), VOREL_YCBCR_10BV_422, FourCharacterCode("V416"), 1, true},
    {"CA2i", FourCharacterCode("Vrl6"), VOREL_YCBCR_10BV_422, FourCharacterCode("V416"), 3, true},
    {"BYRY", FourCharacterCode("Vrl3"), VOREL_YCBCR_8BV_422, FourCharacterCode("v408"), 0, false},
    {"BYRy", FourCharacterCode("Vrl3"), VOREL_YCBCR_8BV_422, FourCharacterCode("v408"), 2, false},
    {"C82p", FourCharacterCode("Vrl3"), VOREL_YCBCR_8BV_422, FourCharacterCode("v408"), 1, true},
    {"C82i", FourCharacterCode("Vrl3"), VOREL_YCBCR_8BV_422, FourCharacterCode("v408"), 3, true},
    {"YbYr", FourCharacterCode("Vrl4"), VOREL_YCBCR_8BW_422, FourCharacterCode("yuvu"), 0, false},
    {"Ybyr", FourCharacterCode("Vrl4"), VOREL_YCBCR_8BW_422, FourCharacterCode("yuvu"), 2, false},
};
static_assert(std::size(kTagSources) == 30);

constexpr i16 kNormalGroup = 48;  // pixels to which 'v210' rows are padded

// Half of the samples are noise, the others repeat, so that rows of all kinds occur.
std::vector<u8> MakeNoise(std::size_t count) {
  std::vector<u8> bytes(count);
  u32 state = 12345;
  u8 last = 0;
  for (u8& byte : bytes) {
    state = state * 1664525 + 1013904223;
    if ((state & 0x80000000) != 0) last = static_cast<u8>(state >> 16);
    byte = last;
  }
  return bytes;
}

}  // namespace

std::span<const TagSource> TagSources() {
  return kTagSources;
}

const TagSource& SourceOf(const char (&tag)[5]) {
  return *std::find_if(std::begin(kTagSources), std::end(kTagSources) - 1, [&tag](const TagSource& source) {
    return WordOfBytes(source.tag) == WordOfBytes(tag);
  });
}

u32 CodeOf(std::string_view text) {
  if (text == "32" || text == "24") return text == "32" ? 32 : 24;
  u32 code = 0;
  for (const char letter : text) code = code << 8 | static_cast<u8>(letter);
  return code;
}

std::vector<u32> CodesOf(std::string_view text) {
  std::vector<u32> codes;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    codes.push_back(CodeOf(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return codes;
}

bool Holds(std::string_view list, u32 code) {
  const std::vector<u32> codes = CodesOf(list);
  return std::find(codes.begin(), codes.end(), code) != codes.end();
}

Frame MakeFrame(const TagSource& source, u16 width, u16 height) {
  const u32 tag = WordOfBytes(source.tag);
  const i32 rowBytes = RowBytesFor(width);
  const std::vector<u8> picture = MakeNoise(static_cast<std::size_t>(rowBytes) * height);
  std::vector<u32> words(VorelMaxFrameBytes(tag, width, height) / 4 + 11);
  u32 word = 0;
  u32 bit = 0;
  EXPECT_EQ(EncodePicture(source.family, source.pixelFormat, source.formatChoice, width, height, rowBytes,
                          picture.data(), VOREL_COLOUR_601, &word, &bit, words.data(), 0),
            static_cast<VorelStatus>(VOREL_COMPLETE))
      << source.tag;
  EXPECT_EQ(words[4], tag) << source.tag;
  const auto* const bytes = reinterpret_cast<const u8*>(words.data());
  return {tag, {bytes, bytes + (word - 5) * 4 + (bit + 7) / 8}, width, height};
}

BytesAtEnd CopyToEnd(std::span<const u8> bytes, std::size_t address) {
  BytesAtEnd copy = {std::make_unique<u8[]>(bytes.size() + address), nullptr};
  copy.start = copy.block.get() + address;
  std::copy(bytes.begin(), bytes.end(), copy.start);
  return copy;
}

i32 RowBytesFor(u16 width) {
  return (width + kNormalGroup - 1) / kNormalGroup * kNormalGroup * 8;
}

std::unique_ptr<Picture> MakePicture(OSType pixelFormat, u16 width, u16 height) {
  const i32 rowBytes = RowBytesFor(width);
  auto picture = std::make_unique<Picture>();
  picture->bytes.resize(static_cast<std::size_t>(rowBytes) * height, 0xA5);
  picture->map.baseAddr = picture->bytes.data();
  picture->map.bounds = {0, 0, static_cast<i16>(height), static_cast<i16>(width)};
  picture->map.pixelSize = Host->QTGetPixelSize(pixelFormat);
  picture->map.cmpCount = 3;
  picture->map.pixelFormat = pixelFormat;
  embedded::SetPixelMapRows(picture->map, picture->extension, rowBytes, 0);
  return picture;
}

void DecompressorTest::SetUp() {
  ComponentTest::SetUp();
  OpenOf(kGenericSubtype);
}

void DecompressorTest::TearDown() {
  if (real != nullptr) Host = real;
  for (const ImageDescriptionHandle description : descriptions)
    Host->DisposeHandle(reinterpret_cast<Handle>(description));
  if (instance != nullptr) {
    EXPECT_EQ(Host->CloseComponent(instance), noErr);
  }
  ComponentTest::TearDown();
}

void DecompressorTest::Restart(const embedded::HostSettings& settings) {
  if (real != nullptr) Host = real;
  for (const ImageDescriptionHandle description : descriptions)
    Host->DisposeHandle(reinterpret_cast<Handle>(description));
  descriptions.clear();
  if (instance != nullptr) Host->CloseComponent(instance);
  instance = nullptr;
  EXPECT_EQ(embedded::CountsInUse(), embedded::HostCounts{});
  StartHost(settings);
  OpenOf(kGenericSubtype);
}

void DecompressorTest::OpenOf(OSType subtype) {
  if (instance != nullptr) Host->CloseComponent(instance);
  instance = Open(kDecompressorType, subtype);
  ASSERT_NE(instance, nullptr);
}

HostOperations& DecompressorTest::Replace() {
  if (real == nullptr) real = Host;
  replaced = *real;
  Host = &replaced;
  return replaced;
}

ImageDescriptionHandle DecompressorTest::Describe(u16 width, u16 height) {
  const ImageDescriptionHandle description = embedded::MakeImageDescription(
      FourCharacterCode("Vrl0"), static_cast<i16>(width), static_cast<i16>(height));
  descriptions.push_back(description);
  return description;
}

ImageDescriptionHandle DecompressorTest::Describe(const Frame& frame) {
  const ImageDescriptionHandle description = Describe(frame.width, frame.height);
  AddTag(description, frame.tag);
  (*description)->dataSize = static_cast<i32>(frame.bytes.size());
  return description;
}

void DecompressorTest::AddExtension(ImageDescriptionHandle description, OSType type, std::string_view bytes) {
  const Handle data = Host->NewHandleClear(static_cast<i32>(bytes.size()));
  std::copy(bytes.begin(), bytes.end(), *data);
  EXPECT_EQ(Host->AddImageDescriptionExtension(description, data, static_cast<i32>(type)), noErr);
  Host->DisposeHandle(data);
}

void DecompressorTest::AddTag(ImageDescriptionHandle description, u32 tag) {
  u8 bytes[4];
  StoreNative(bytes, tag);
  AddExtension(description, FourCharacterCode("Kesp"), {reinterpret_cast<const char*>(bytes), sizeof bytes});
}

CodecDecompressParams DecompressorTest::ParametersFor(ImageDescriptionHandle description) {
  CodecDecompressParams parameters = {};
  parameters.imageDescription = description;
  parameters.capabilities = &capabilities;
  parameters.conditionFlags = kConditionFirstBand | kConditionLastBand;
  return parameters;
}

ComponentResult DecompressorTest::Preflight(CodecDecompressParams& parameters) const {
  return embedded::CallSelector(instance, kImageCodecPreflightSelect, &parameters);
}

ComponentResult DecompressorTest::PreflightFor(const Frame& frame) {
  CodecDecompressParams parameters = ParametersFor(Describe(frame));
  return Preflight(parameters);
}

Band MakeBand(const CodecDecompressParams& parameters, OSType pixelFormat, std::span<const u8> data) {
  const ImageDescription& description = **parameters.imageDescription;
  Band band = {
      parameters,
      {},
      std::make_unique<FrameRecord>(),
      MakePicture(pixelFormat, static_cast<u16>(description.width), static_cast<u16>(description.height))};
  std::memset(static_cast<void*>(band.frame.get()), 0xEE, sizeof(FrameRecord));
  band.parameters.data = const_cast<u8*>(data.data());
  band.parameters.bufferSize = static_cast<i32>(data.size());
  band.parameters.dstPixMap = band.picture->map;
  band.record.baseAddr = band.picture->map.baseAddr;
  band.record.rowBytes = band.picture->extension.rowBytes;
  band.record.codecData = band.parameters.data;
  band.record.userDecompressRecord = band.frame.get();
  return band;
}

ComponentResult Begin(ComponentInstance instance, Band& band) {
  return embedded::CallSelector(instance, kImageCodecBeginBandSelect, &band.parameters, &band.record, 0);
}

ComponentResult Draw(ComponentInstance instance, Band& band) {
  return embedded::CallSelector(instance, kImageCodecDrawBandSelect, &band.record);
}

ComponentResult End(ComponentInstance instance, Band& band, OSErr result) {
  return embedded::CallSelector(instance, kImageCodecEndBandSelect, &band.record, result, 0);
}

ComponentResult DecodeBand(ComponentInstance instance, Band& band) {
  ComponentResult result = Begin(instance, band);
  if (result == noErr) result = Draw(instance, band);
  const ComponentResult ended = End(instance, band, static_cast<OSErr>(result));
  return result != noErr ? result : ended;
}

}  // namespace vorel::component
