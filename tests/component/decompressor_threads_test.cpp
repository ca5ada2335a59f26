// One decompressor and its base, with frames on many threads. ThreadSanitizer is the judge of what is not seen
// here.
#include "component/decompressor.h"
#include "tests/component/decompressor_fixture.h"

namespace vorel::component {

namespace {

constexpr std::size_t kFrames = 72;  // more than the pool has blocks
constexpr u16 kWidth = 2100;
constexpr u16 kHeight = 3;

using DecompressorThreadsTest = DecompressorTest;

std::vector<int> completions;
std::vector<OSErr> results;

void NoteCompletion(OSErr result, i16 flags, Slot frame) {
  EXPECT_EQ(flags, 3);
  ++completions[static_cast<std::size_t>(frame)];
  results[static_cast<std::size_t>(frame)] = result;
}

TEST_F(DecompressorThreadsTest, EightThreadsDecodeWideFrames) {
  Restart({.baseThreads = 8});
  const Frame frames[] = {MakeFrame(SourceOf("ARGX"), kWidth, kHeight),
                          MakeFrame(SourceOf("CA4p"), kWidth, kHeight),
                          MakeFrame(SourceOf("ArGB"), kWidth, kHeight)};
  std::vector<u8> cut = frames[0].bytes;
  cut.resize(cut.size() / 2);
  std::vector<std::vector<u8>> expected;
  CodecDecompressParams parameters = ParametersFor(Describe(frames[0]));
  parameters.dstPixMap = MakePicture(FourCharacterCode("b64a"), kWidth, kHeight)->map;
  ASSERT_EQ(embedded::CallSelector(instance, kImageCodecPreDecompressSelect, &parameters), noErr);
  for (const Frame& frame : frames) {
    Band band = MakeBand(parameters, FourCharacterCode("b64a"), frame.bytes);
    ASSERT_EQ(DecodeBand(instance, band), noErr);
    expected.push_back(band.picture->bytes);
  }
  const u32 before = Storage().framesDecoded;

  completions.assign(kFrames, 0);
  results.assign(kFrames, 1);
  std::vector<std::unique_ptr<Picture>> pictures;
  for (std::size_t i = 0; i < kFrames; ++i) {
    const std::vector<u8>& data = i % 9 == 8 ? cut : frames[i % 3].bytes;
    pictures.push_back(MakePicture(FourCharacterCode("b64a"), kWidth, kHeight));
    CodecDecompressParams call = parameters;
    call.data = const_cast<u8*>(data.data());
    call.bufferSize = static_cast<i32>(data.size());
    call.dstPixMap = pictures.back()->map;
    call.completionProcRecord = {NoteCompletion, static_cast<Slot>(i)};
    ASSERT_EQ(embedded::CallSelector(instance, kImageCodecBandDecompressSelect, &call), noErr) << i;
  }
  ASSERT_EQ(embedded::CallSelector(instance, kImageCodecFlushSelect), noErr);

  u32 good = 0;
  for (std::size_t i = 0; i < kFrames; ++i) {
    EXPECT_EQ(completions[i], 1) << i;
    EXPECT_EQ(results[i], i % 9 == 8 ? -8972 : 0) << i;
    if (results[i] != 0) continue;
    ++good;
    EXPECT_EQ(pictures[i]->bytes, expected[i % 3]) << i;
  }
  EXPECT_EQ(good, 64u);
  EXPECT_EQ(Storage().framesDecoded, before + good);
  EXPECT_EQ(Storage().pool.usedBlocks, 0u);
}

}  // namespace

}  // namespace vorel::component
