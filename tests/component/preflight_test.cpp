// What a decompressor reads of a sequence before its first frame, and what it tells the host.
#include <limits>

#include "tests/component/decompressor_fixture.h"

namespace vorel::component {

namespace {

using std::string_literals::operator""s;

constexpr i32 kVersions[] = {0x05020000, 0x06508000, 0x06FFFFFF, 0x07000000, 0x07798000};

using PreflightTest = DecompressorTest;

// --- Preflight: extensions ---

TEST_F(PreflightTest, PreflightNeedsTheTag) {
  CodecDecompressParams parameters = ParametersFor(Describe(8, 8));
  EXPECT_EQ(Preflight(parameters), -8971);
  EXPECT_EQ(parameters.wantedDestinationPixelTypes, nullptr);
  const ImageDescriptionHandle cut = Describe(8, 8);
  AddExtension(cut, FourCharacterCode("Kesp"), "ARG");
  parameters = ParametersFor(cut);
  EXPECT_EQ(Preflight(parameters), -8971);
}

TEST_F(PreflightTest, PreflightNeedsItsArguments) {
  const ImageDescriptionHandle description = Describe(8, 8);
  AddTag(description, WordOfBytes("ARGB"));
  EXPECT_EQ(embedded::CallSelector(instance, kImageCodecPreflightSelect, nullptr), -50);
  CodecDecompressParams parameters = ParametersFor(nullptr);
  EXPECT_EQ(Preflight(parameters), -50);
  ImageDescription* none = nullptr;
  parameters = ParametersFor(&none);
  EXPECT_EQ(Preflight(parameters), -50);
  parameters = ParametersFor(description);
  parameters.capabilities = nullptr;
  EXPECT_EQ(Preflight(parameters), -50);
}

TEST_F(PreflightTest, OtherSpellingsOfTheTagAreRead) {
  const ImageDescriptionHandle description = Describe(8, 8);
  AddTag(description, WordOfBytes("BGRA"));
  CodecDecompressParams parameters = ParametersFor(description);
  EXPECT_EQ(Preflight(parameters), noErr);
  EXPECT_EQ((*parameters.wantedDestinationPixelTypes)[0], 32u);
}

struct ColourRow {
  std::string gama;  // empty: none
  std::string colr;  // empty: none
  Fixed gamma;
  u32 standard;
};

TEST_F(PreflightTest, GammaAndColourStandardComeFromTheExtensions) {
  const ColourRow rows[] = {
      {"", "", 0, 0},
      {"\0\1\xCC\xCC"s, "", 0x1CCCC, 0},
      {"\0\0\0\0"s, "", 0, 0},
      {"\0\2\x33"s, "", 0, 0},  // not a whole number
      {"", "nclc\0\1\0\1\0\1"s, 0x23333, 1},
      {"", "nclc\0\6\0\1\0\6"s, 0x23333, 0},
      {"", "nclc\0\1\0\7\0\7"s, 0x23333, 2},
      {"", "nclc\0\2\0\2\0\2"s, 0, 0},
      {"", "nclc\0\1\0\2\0\1"s, 0, 1},
      {"", "nclc\0\1\0\2\0\7"s, 0, 2},
      {"", "nclc\0\1\0\x0D\0\x09"s, 0, 0},
      {"", "nclc\0\7\0\2\0\2"s, 0, 0},  // primaries don't count
      {"\0\1\xCC\xCC"s, "nclc\0\1\0\1\0\1"s, 0x23333, 1},
      {"\0\1\xCC\xCC"s, "nclc\0\1\0\2\0\1"s, 0x1CCCC, 1},
      {"\0\0\0\0"s, "nclc\0\1\0\7\0\7"s, 0x23333, 2},
      {"", "clcn\1\0\1\0\1\0"s, 0x23333, 1},
      {"", "clcn\1\0\7\0\7\0"s, 0x23333, 2},
      {"", "clcn\6\0\1\0\6\0"s, 0x23333, 0},
      {"", "prof\0\1\0\1\0\1"s, 0, 0},
      {"", "nclc\0\1\0\1\0"s, 0, 0},  // cut short
      {"", "ncl"s, 0, 0},
  };
  for (const ColourRow& row : rows) {
    // What an earlier sequence has left doesn't stay.
    Storage().gamma = 5;
    Storage().colourStandard = 5;
    const ImageDescriptionHandle description = Describe(8, 8);
    AddTag(description, WordOfBytes("BYRY"));
    if (!row.gama.empty()) AddExtension(description, FourCharacterCode("gama"), row.gama);
    if (!row.colr.empty()) AddExtension(description, FourCharacterCode("colr"), row.colr);
    CodecDecompressParams parameters = ParametersFor(description);
    ASSERT_EQ(Preflight(parameters), noErr);
    Fixed gamma = -1;
    EXPECT_EQ(embedded::CallSelector(instance, kImageCodecGetSourceDataGammaLevelSelect, &gamma), noErr);
    EXPECT_EQ(gamma, row.gamma) << row.gama << row.colr;
    EXPECT_EQ(Storage().colourStandard, row.standard) << row.gama << row.colr;
  }
}

TEST_F(PreflightTest, PreflightTellsAboutFramesInOneBand) {
  for (const i32 version : kVersions) {
    Restart({.quickTimeVersion = version});
    std::memset(&capabilities, 0x55, sizeof capabilities);
    CodecCapabilities expected = capabilities;
    const ImageDescriptionHandle description = Describe(720, 486);
    AddTag(description, WordOfBytes("BYRY"));
    CodecDecompressParams parameters = ParametersFor(description);
    ASSERT_EQ(Preflight(parameters), noErr);
    expected.flags = version < 0x07000000 ? 0 : 0x12000;
    expected.wantedPixelSize = 0;
    expected.extendWidth = 0;
    expected.extendHeight = 0;
    expected.bandMin = 486;
    expected.bandInc = 486;
    EXPECT_EQ(std::memcmp(&capabilities, &expected, sizeof expected), 0) << version;
  }
}

// --- Preflight: the list ---

std::string ListOf(const CodecDecompressParams& parameters) {
  std::string text;
  for (const OSType* code = *parameters.wantedDestinationPixelTypes; *code != 0; ++code) {
    if (*code <= 32) {
      text += std::to_string(*code) + " ";
      continue;
    }
    for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(*code >> shift);
    text += " ";
  }
  return text;
}

constexpr const char* k8bvFull =
    "2vuy 2Vuy 2VUY yuvs v210 V210 v216 Y216 v408 VUYA v410 V416 r408 S10k S210 R10k r210 F10k F210 b48r "
    "b64a "
    "L64A A46L VRGB 24 24BG 32 ABGR RGBA BGRA ";
constexpr const char* k8bvHighQuality = "2vuy 2Vuy 2VUY yuvs v408 VUYA r408 b48r b64a L64A A46L ";
constexpr const char* k8bvOnScreen = "2vuy 2Vuy 2VUY yuvs v210 V210 v216 Y216 v408 VUYA v410 V416 r408 ";
constexpr const char* k8bvAfterFx =
    "S10k S210 R10k r210 F10k F210 b48r b64a L64A A46L VRGB 24 24BG 32 ABGR RGBA BGRA ";
constexpr const char* k8bvAfterFxHighQuality = "S10k S210 R10k r210 F10k F210 b48r b64a L64A A46L ";

Ptr pixelAddress = nullptr;
PixMapHandle askedMap = nullptr;

Ptr SayPixelAddress(PixMapHandle map) {
  askedMap = map;
  return pixelAddress;
}

struct ListTest : DecompressorTest {
  // The list for an 8bv 4:2:2 frame.
  std::string Offer(u32 accuracy, CGrafPort* port) {
    const ImageDescriptionHandle description = Describe(8, 8);
    AddTag(description, WordOfBytes("BYRY"));
    parameters = ParametersFor(description);
    parameters.accuracy = accuracy;
    parameters.finalDestinationPort = port;
    EXPECT_EQ(Preflight(parameters), noErr);
    return ListOf(parameters);
  }

  CodecDecompressParams parameters = {};
  PixMap map = {};
  PixMap* master = &map;
  CGrafPort port = {0, &master};
  const Ptr lower = reinterpret_cast<Ptr>(std::intptr_t{0x1000});
  const Ptr upper = reinterpret_cast<Ptr>(std::numeric_limits<std::intptr_t>::min() + 0x1000);
};

TEST_F(ListTest, DependsOnTheQuality) {
  EXPECT_EQ(Offer(0, nullptr), k8bvFull);
  EXPECT_EQ(Offer(0x200, nullptr), k8bvFull);
  EXPECT_EQ(Offer(0x201, nullptr), k8bvHighQuality);
  EXPECT_EQ(Offer(0xFFFFFFFF, nullptr), k8bvHighQuality);
}

TEST_F(ListTest, DependsOnWhereThePixelsOfTheFinalPortAre) {
  Replace().GetPixBaseAddr = SayPixelAddress;
  pixelAddress = lower;
  EXPECT_EQ(Offer(0, &port), k8bvFull);
  EXPECT_EQ(askedMap, &master);
  pixelAddress = upper;
  EXPECT_EQ(Offer(0, &port), k8bvOnScreen);
  EXPECT_EQ(Offer(0x300, &port), k8bvOnScreen);
  EXPECT_EQ(Offer(0, nullptr), k8bvFull);
  CGrafPort withoutMap = {0, nullptr};
  EXPECT_EQ(Offer(0, &withoutMap), k8bvFull);
}

TEST_F(ListTest, DependsOnTheApplication) {
  Restart({.executablePath = "C:\\AfterFX.exe"});
  EXPECT_EQ(Offer(0x200, nullptr), k8bvAfterFx);
  EXPECT_EQ(Offer(0x201, nullptr), k8bvAfterFxHighQuality);
  Replace().GetPixBaseAddr = SayPixelAddress;
  pixelAddress = upper;
  EXPECT_EQ(Offer(0x200, &port), k8bvAfterFx);
  EXPECT_EQ(Offer(0x201, &port), k8bvAfterFxHighQuality);
}

// The host keeps the handle: it is the same one each time, and a shorter list ends where it ends.
TEST_F(ListTest, StandsInOneHandleOfTheInstance) {
  Offer(0, nullptr);
  OSType** const handle = parameters.wantedDestinationPixelTypes;
  EXPECT_EQ(reinterpret_cast<Handle>(handle), Storage().wantedPixelTypes);
  EXPECT_EQ(Host->GetHandleSize(reinterpret_cast<Handle>(handle)), 512);
  EXPECT_EQ(Offer(0x201, nullptr), k8bvHighQuality);
  EXPECT_EQ(parameters.wantedDestinationPixelTypes, handle);
  EXPECT_EQ(Offer(0, nullptr), k8bvFull);
}

struct FirstRow {
  const char (&tags)[9];  // progressive and interlaced
  u32 format;
  i16 pixelSize;
};

TEST_F(ListTest, PreferredPixelSizeIsThatOfTheFirstEntry) {
  const FirstRow rows[] = {
      {"ARGXArGX", FourCharacterCode("b64a"), 64},
      {"RGBXrGBX", FourCharacterCode("F10k"), 30},
      {"ARGBArGB", 32, 32},
      {" RGB rGB", 24, 24},
      {"CA4pCA4i", FourCharacterCode("V416"), 64},
      {"YBR\nyBR\n", FourCharacterCode("v410"), 30},
      {"AYBRAyBR", FourCharacterCode("v408"), 32},
      {" YBR yBR", FourCharacterCode("v408"), 32},
      {"AYbRAybR", FourCharacterCode("r408"), 32},
      {" YbR ybR", FourCharacterCode("r408"), 32},
      {"CA2pCA2i", FourCharacterCode("V416"), 64},
      {"\xA2YRY\xA2YRy", FourCharacterCode("v210"), 20},
      {"C82pC82i", FourCharacterCode("v408"), 32},
      {"BYRYBYRy", FourCharacterCode("2vuy"), 16},
      {"YbYrYbyr", FourCharacterCode("yuvu"), 16},
  };
  for (const FirstRow& row : rows) {
    for (const int at : {0, 4}) {
      const ImageDescriptionHandle description = Describe(8, 8);
      AddTag(description, LoadNative<u32>(row.tags + at));
      parameters = ParametersFor(description);
      ASSERT_EQ(Preflight(parameters), noErr);
      EXPECT_EQ((*parameters.wantedDestinationPixelTypes)[0], row.format) << row.tags;
      EXPECT_EQ(parameters.preferredOffscreenPixelSize, row.pixelSize) << row.tags;
    }
  }
}

TEST_F(ListTest, IsEmptyForAnUnknownTag) {
  const ImageDescriptionHandle description = Describe(8, 8);
  AddTag(description, WordOfBytes("????"));
  parameters = ParametersFor(description);
  parameters.preferredOffscreenPixelSize = 32;
  EXPECT_EQ(Preflight(parameters), noErr);
  EXPECT_EQ(ListOf(parameters), "");
  EXPECT_EQ(parameters.preferredOffscreenPixelSize, 32);
}

// --- Preflight: the pool ---

struct PoolTest : DecompressorTest {
  ComponentResult PreflightOf(u16 width) {
    const ImageDescriptionHandle description = Describe(width, 8);
    AddTag(description, WordOfBytes("ARGX"));
    CodecDecompressParams parameters = ParametersFor(description);
    return Preflight(parameters);
  }
};

// 64-bit pixels need (width + 4) * 8 bytes, and 10-bit R'G'B' rows 8 * width + 24: both are 16,416 at most up to
// 2048 pixels.
TEST_F(PoolTest, IsMadeForWideFramesAlone) {
  const i32 before = embedded::CountsInUse().blocks;
  EXPECT_EQ(PreflightOf(2048), noErr);
  EXPECT_EQ(Storage().pool.memory, nullptr);
  EXPECT_EQ(Storage().pool.blockSize, 0u);
  EXPECT_EQ(embedded::CountsInUse().blocks, before);
  EXPECT_EQ(PreflightOf(2049), noErr);
  EXPECT_EQ(embedded::CountsInUse().blocks, before + 1);
  const ScratchPool& pool = Storage().pool;
  EXPECT_GE(pool.blockSize, 2053u * 8);
  EXPECT_EQ(pool.usedBlocks, 0u);
  for (std::size_t i = 0; i < 32; ++i) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pool.blocks[i]) % 16, 0u);
    EXPECT_GE(pool.blocks[i], i == 0 ? pool.memory : pool.blocks[i - 1] + pool.blockSize);
    std::memset(pool.blocks[i], 1, pool.blockSize);  // all of it is there
  }
}

TEST_F(PoolTest, IsKeptIfItIsLargeEnough) {
  ASSERT_EQ(PreflightOf(5000), noErr);
  const ScratchPool first = Storage().pool;
  EXPECT_EQ(PreflightOf(2049), noErr);
  EXPECT_EQ(PreflightOf(100), noErr);
  EXPECT_EQ(PreflightOf(5000), noErr);
  EXPECT_EQ(Storage().pool.memory, first.memory);
  EXPECT_EQ(Storage().pool.blockSize, first.blockSize);
  const i32 blocks = embedded::CountsInUse().blocks;
  EXPECT_EQ(PreflightOf(6000), noErr);
  EXPECT_GT(Storage().pool.blockSize, first.blockSize);
  EXPECT_EQ(embedded::CountsInUse().blocks, blocks);
}

TEST_F(PoolTest, IsGoneIfALargerOneCanNotBeHad) {
  ASSERT_EQ(PreflightOf(5000), noErr);
  const i32 blocks = embedded::CountsInUse().blocks;
  const ImageDescriptionHandle description = Describe(6000, 8);
  AddTag(description, WordOfBytes("ARGX"));
  CodecDecompressParams parameters = ParametersFor(description);
  embedded::FailAllocation(2);  // the first is for the tag
  EXPECT_EQ(Preflight(parameters), -108);
  EXPECT_EQ(Storage().pool.memory, nullptr);
  EXPECT_EQ(Storage().pool.blockSize, 0u);
  EXPECT_EQ(embedded::CountsInUse().blocks, blocks - 1);
  EXPECT_EQ(PreflightOf(6000), noErr);
}

TEST_F(PoolTest, WidestFramesHaveBlocks) {
  EXPECT_EQ(PreflightOf(65535), noErr);
  EXPECT_GE(Storage().pool.blockSize, 65539u * 8);
}

TEST_F(PreflightTest, PreflightWithoutMemorySaysSo) {
  const ImageDescriptionHandle description = Describe(3000, 8);
  AddTag(description, WordOfBytes("ARGX"));
  AddExtension(description, FourCharacterCode("gama"), "\0\1\xCC\xCC"s);
  AddExtension(description, FourCharacterCode("colr"), "nclc\0\1\0\2\0\1"s);
  const embedded::HostCounts before = embedded::CountsInUse();
  i32 number = 1;
  for (;; ++number) {
    CodecDecompressParams parameters = ParametersFor(description);
    embedded::FailAllocation(number);
    const ComponentResult result = Preflight(parameters);
    if (result == noErr) break;
    EXPECT_EQ(result, -108) << number;
    EXPECT_EQ(embedded::CountsInUse(), before) << number;
    ASSERT_LT(number, 100);
  }
  embedded::FailAllocation(0);
  EXPECT_EQ(number, 5);  // the tag, the gamma, the colours, the pool
  EXPECT_EQ(Storage().gamma, 0x1CCCC);
  EXPECT_EQ(Storage().colourStandard, 1u);
}

}  // namespace

}  // namespace vorel::component
