// The proof of frames, as compressors run it.
#include "component/self_check.h"

#include "component/family_dispatch.h"
#include "tests/component/encoding_fixture.h"

namespace vorel::component {

namespace {

using SelfCheckTest = EncodingTest;

struct Row {
  const char* subtype;
  const char* format;  // "32" and "24" are numbers
  i16 depth;
  OSErr result;
};

OSType CodeOf(const char* text) {
  const std::string name = text;
  if (name.size() == 2) return static_cast<OSType>(std::stoi(name));
  return LoadBig32(reinterpret_cast<const u8*>(text));
}

// One frame with self-check; also the same frame without it.
OSErr Prove(const Row& row, const CompressJob& model, u32 scan) {
  const ComponentInstance compressor = EncodingTest::OpenCompressorOf(CodeOf(row.subtype));
  const auto job = MakeJob(CodeOf(row.subtype), CodeOf(row.format), 22, 7, row.depth);
  job->picture = model.picture;
  job->parameters.srcPixMap.baseAddr = job->picture.data();
  SetRecord(compressor, Record({kModeOneWay, scan, kConversionBest, 0, 0}));
  EXPECT_EQ(Compress(compressor, *job), noErr) << row.subtype << row.format;
  const Bytes frame = FrameOf(*job);
  SetRecord(compressor, Record({kModeSelfCheck, scan, kConversionBest, 0, 0}));
  (*job->Description())->dataSize = 0;
  const auto result = static_cast<OSErr>(Compress(compressor, *job));
  if (result == noErr) {
    EXPECT_EQ(FrameOf(*job), frame);
  } else {
    EXPECT_EQ((*job->Description())->dataSize, 0);
    EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecBusySelect, 0), 1);
  }
  Host->CloseComponent(compressor);
  return result;
}

void ProveRows(std::span<const Row> rows) {
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.subtype) + " " + row.format);
    const auto job = MakeJob(CodeOf(row.subtype), CodeOf(row.format), 22, 7, row.depth);
    EXPECT_EQ(Prove(row, *job, kScanProgressive), row.result);
    EXPECT_EQ(Prove(row, *job, kScanInterlaced), row.result);
  }
}

constexpr OSErr kDiffers = codecBadDataErr;
constexpr OSErr kRefused = codecConditionErr;

TEST_F(SelfCheckTest, FamiliesProveTheirOwnPixelFormats) {
  constexpr Row kRows[] = {
      {"Vrl7", "b64a", 32, noErr}, {"Vrl7", "b64a", 24, noErr}, {"Vrl7", "L64A", 32, noErr},
      {"Vrl7", "b48r", 24, noErr}, {"Vrl7", "R10k", 24, noErr}, {"Vrl7", "r210", 24, kDiffers},
      {"Vrl7", "32", 32, noErr},   {"Vrl1", "32", 32, noErr},   {"Vrl1", "32", 24, noErr},
      {"Vrl1", "ABGR", 32, noErr}, {"Vrl1", "ABGR", 24, noErr}, {"Vrl1", "BGRA", 32, noErr},
      {"Vrl1", "BGRA", 24, noErr}, {"Vrl1", "RGBA", 32, noErr}, {"Vrl1", "24", 24, noErr},
      {"Vrl1", "24BG", 24, noErr}, {"Vrl5", "v410", 24, noErr}, {"Vrl5", "v408", 32, noErr},
      {"Vrl5", "r408", 32, noErr}, {"Vrl5", "v210", 24, noErr}, {"Vrl5", "2vuy", 24, noErr},
      {"Vrl2", "v408", 32, noErr}, {"Vrl2", "v408", 24, noErr}, {"Vrl2", "VUYA", 32, noErr},
      {"Vrl2", "VUYA", 24, noErr}, {"Vrl2", "r408", 32, noErr}, {"Vrl2", "r408", 24, noErr},
      {"Vrl2", "yuvs", 24, noErr}, {"Vrl6", "v210", 24, noErr}, {"Vrl6", "v216", 24, noErr},
      {"Vrl6", "2vuy", 24, noErr}, {"Vrl3", "2vuy", 24, noErr}, {"Vrl3", "yuvs", 24, noErr},
      {"Vrl3", "2Vuy", 24, noErr}, {"Vrl4", "yuvu", 24, noErr}, {"Vrl4", "yuv2", 24, noErr},
  };
  // 'r210' is video range by itself and loses codes in a full-range frame.
  ProveRows(kRows);
}

TEST_F(SelfCheckTest, GenericProvesRgbAndRefusesYcbcr) {
  constexpr Row kRows[] = {
      {"Vrl0", "32", 32, noErr},      {"Vrl0", "32", 24, noErr},      {"Vrl0", "24", 24, noErr},
      {"Vrl0", "24BG", 24, noErr},    {"Vrl0", "ABGR", 32, noErr},    {"Vrl0", "BGRA", 24, noErr},
      {"Vrl0", "b64a", 32, noErr},    {"Vrl0", "L64A", 32, noErr},    {"Vrl0", "b48r", 24, noErr},
      {"Vrl0", "R10k", 24, noErr},    {"Vrl0", "A46L", 32, kRefused}, {"Vrl0", "v210", 24, kRefused},
      {"Vrl0", "v216", 24, kRefused}, {"Vrl0", "Y216", 24, kRefused}, {"Vrl0", "v410", 24, kRefused},
      {"Vrl0", "v408", 32, kRefused}, {"Vrl0", "r408", 32, kRefused}, {"Vrl0", "2vuy", 24, kRefused},
      {"Vrl0", "yuvs", 24, kRefused}, {"Vrl0", "yuvu", 24, kRefused},
  };
  ProveRows(kRows);
}

TEST_F(SelfCheckTest, FormatsWithoutAComparisonAreRefused) {
  constexpr Row kRows[] = {
      {"Vrl7", "A46L", 32, kRefused}, {"Vrl7", "F10k", 24, kRefused}, {"Vrl7", "S10k", 24, kRefused},
      {"Vrl7", "F210", 24, kRefused}, {"Vrl7", "S210", 24, kRefused}, {"Vrl1", "VRGB", 24, kRefused},
      {"Vrl5", "V416", 32, kRefused}, {"Vrl0", "F10k", 24, kRefused}, {"Vrl0", "VRGB", 32, kRefused},
  };
  ProveRows(kRows);
}

TEST_F(SelfCheckTest, BitsThatAFrameCutsAreADifference) {
  struct {
    Row row;
    std::size_t byte;
    u8 bit;
  } const rows[] = {
      {{"Vrl7", "b64a", 32, kDiffers}, 3, 0x20},  // the highest of six bits
      {{"Vrl7", "b64a", 32, kDiffers}, 1, 0x01},  // of alpha
      {{"Vrl7", "b64a", 24, noErr}, 1, 0x01},     // which is left out
      {{"Vrl7", "b48r", 24, kDiffers}, 5, 0x01},
      {{"Vrl7", "L64A", 32, kDiffers}, 6, 0x01},  // B
      {{"Vrl6", "v216", 24, kDiffers}, 4, 0x20},
      {{"Vrl6", "v210", 24, noErr}, 3, 0x40},  // padding
      {{"Vrl5", "v410", 24, noErr}, 0, 0x02},  // padding
      {{"Vrl0", "b64a", 32, kDiffers}, 3, 0x20},
      {{"Vrl7", "R10k", 24, kDiffers}, 3, 0x01},  // padding, which is compared
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.row.format) + " " + std::to_string(row.byte));
    const auto job = MakeJob(CodeOf(row.row.subtype), CodeOf(row.row.format), 22, 7, row.row.depth);
    job->picture[row.byte] = static_cast<u8>(job->picture[row.byte] | row.bit);
    EXPECT_EQ(Prove(row.row, *job, kScanProgressive), row.row.result);
  }
}

// Frames without alpha give the opaque word back, and this comparison looks at it.
TEST_F(SelfCheckTest, AlphaOfL64AIsComparedWhereItIsNotKept) {
  const Row row = {"Vrl7", "L64A", 24, kDiffers};
  const auto job = MakeJob(CodeOf(row.subtype), CodeOf(row.format), 22, 7, row.depth);
  EXPECT_EQ(Prove(row, *job, kScanProgressive), kDiffers);
  for (std::size_t i = 0; i + 7 < job->picture.size(); i += 8) {
    job->picture[i] = 0xC0;  // 1023 in the upper ten bits
    job->picture[i + 1] = 0xFF;
  }
  EXPECT_EQ(Prove({"Vrl7", "L64A", 24, noErr}, *job, kScanProgressive), noErr);
}

TEST_F(SelfCheckTest, ConversionsThatLoseCodesAreADifference) {
  constexpr Row kRows[] = {{"Vrl1", "v408", 24, kDiffers},
                           {"Vrl3", "24", 24, kDiffers},
                           {"Vrl6", "v410", 24, kDiffers},
                           {"Vrl1", "b64a", 32, kDiffers}};
  ProveRows(kRows);
}

// Small pictures of noise fill their bound to the last word and beyond. The buffer ends where the bound does, so
// that a decoder that looks further is seen by a sanitizer.
TEST_F(SelfCheckTest, ProofsStayInsideTheFramesMemory) {
  constexpr Row kRows[] = {
      {"Vrl7", "b64a", 32, noErr}, {"Vrl7", "R10k", 24, noErr}, {"Vrl1", "32", 32, noErr},
      {"Vrl1", "24", 24, noErr},   {"Vrl5", "v410", 24, noErr}, {"Vrl2", "v408", 32, noErr},
      {"Vrl6", "v210", 24, noErr}, {"Vrl3", "2vuy", 24, noErr}, {"Vrl4", "yuvu", 24, noErr}};
  int proved = 0;
  for (const Row& row : kRows) {
    const ComponentInstance compressor = OpenCompressorOf(CodeOf(row.subtype));
    for (i16 width = 1; width <= 9; ++width) {
      for (i16 height = 1; height <= 5; ++height) {
        const auto job = MakeJob(CodeOf(row.subtype), CodeOf(row.format), width, height, row.depth);
        i32 most = 0;
        embedded::CallSelector(compressor, kImageCodecGetMaxCompressionSizeSelect, nullptr,
                               &job->parameters.srcPixMap.bounds, 24, 0, &most);
        SetBuffer(*job, static_cast<std::size_t>(most));
        for (const u32 scan : {kScanProgressive, kScanInterlaced}) {
          SetRecord(compressor, Record({kModeSelfCheck, scan, kConversionBest, 0, 0}));
          const ComponentResult result = Compress(compressor, *job);
          const bool isExpected = result == noErr || result == memFullErr || result == codecConditionErr;
          EXPECT_TRUE(isExpected) << row.format << " " << width << "x" << height << " " << result;
          proved += result == noErr ? 1 : 0;
        }
      }
    }
    Host->CloseComponent(compressor);
  }
  EXPECT_GT(proved, 100);
}

// ---- The check alone, on frames that were damaged after they were made

struct ProvedFrame {
  std::vector<u32> words;
  Bytes picture;
  CheckedFrame checked;
};

ProvedFrame MakeProvedFrame() {
  ProvedFrame made = {std::vector<u32>(4096), Noise(32, 22 * 4 * 7, 3), {}};
  made.checked = {32, 32, VOREL_KEEP_ALPHA, 22, 7, 88, made.picture.data(), 0, made.words.data(), 0, 0, 0};
  EXPECT_EQ(EncodePicture(VOREL_RGB_8BF, 32, VOREL_KEEP_ALPHA, 22, 7, 88, made.picture.data(), 0,
                          &made.checked.wordCursor, &made.checked.bitCursor, made.words.data(), 0),
            VorelStatus{VOREL_COMPLETE});
  return made;
}

Compressor InstanceOf(OSType subtype) {
  Compressor instance = {};
  instance.row = &CompressorOf(subtype);
  return instance;
}

void FreeInstance(Compressor& instance) {
  if (instance.picture.bytes != nullptr) Host->Free(instance.picture.bytes);
  if (instance.rowStore.bytes != nullptr) Host->Free(instance.rowStore.bytes);
}

TEST_F(SelfCheckTest, DamageIsNamedByItsKind) {
  Compressor instance = InstanceOf(FourCharacterCode("Vrl1"));
  ProvedFrame made = MakeProvedFrame();
  EXPECT_EQ(CheckFrame(instance, made.checked), noErr);

  CheckedFrame moved = made.checked;
  moved.bitCursor ^= 1;
  EXPECT_EQ(CheckFrame(instance, moved), codecBadDataErr);
  moved = made.checked;
  ++moved.wordCursor;
  EXPECT_EQ(CheckFrame(instance, moved), codecBadDataErr);

  made.picture[5] ^= 1;  // red, as if the frame had another
  EXPECT_EQ(CheckFrame(instance, made.checked), codecBadDataErr);
  made.picture[5] ^= 1;

  for (const std::size_t word : {0u, 1u, 2u, 3u, 4u}) {
    made.words[word] ^= 0x20;
    EXPECT_EQ(CheckFrame(instance, made.checked), codecConditionErr) << word;
    made.words[word] ^= 0x20;
  }
  EXPECT_EQ(CheckFrame(instance, made.checked), noErr);
  FreeInstance(instance);
}

TEST_F(SelfCheckTest, EveryBitOfTheFirstWordsCounts) {
  Compressor instance = InstanceOf(FourCharacterCode("Vrl1"));
  ProvedFrame made = MakeProvedFrame();
  for (std::size_t word = 5; word < 12; ++word) {
    for (u32 bit = 0; bit < 32; ++bit) {
      made.words[word] ^= u32{1} << bit;
      EXPECT_NE(CheckFrame(instance, made.checked), noErr) << word << " " << bit;
      made.words[word] ^= u32{1} << bit;
    }
  }
  FreeInstance(instance);
}

TEST_F(SelfCheckTest, MemoryMayRunOutAndComeBack) {
  Compressor instance = InstanceOf(FourCharacterCode("Vrl1"));
  const ProvedFrame made = MakeProvedFrame();
  for (const i32 number : {1, 2}) {
    FreeInstance(instance);
    instance.picture = instance.rowStore = {};
    embedded::FailAllocation(number);
    EXPECT_EQ(CheckFrame(instance, made.checked), memFullErr) << number;
    EXPECT_EQ(CheckFrame(instance, made.checked), noErr) << number;
  }
  FreeInstance(instance);
}

TEST_F(SelfCheckTest, WithAnotherFamilyTheFrameIsForeign) {
  Compressor instance = InstanceOf(FourCharacterCode("Vrl3"));
  const ProvedFrame made = MakeProvedFrame();
  EXPECT_EQ(CheckFrame(instance, made.checked), codecConditionErr);
  FreeInstance(instance);
}

}  // namespace

}  // namespace vorel::component
