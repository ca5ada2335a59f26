// Frames on their way through a decompressor: from BeginBand to EndBand.
#include "component/decompressor.h"
#include "tests/component/decompressor_fixture.h"

namespace vorel::component {

namespace {

using BandTest = DecompressorTest;

// --- Arguments ---

TEST_F(BandTest, BeginNeedsItsArguments) {
  const Frame frame = MakeFrame(SourceOf("ARGB"), 8, 4);
  Band band = MakeBand(ParametersFor(Describe(frame)), 32, frame.bytes);
  const auto begin = [this](CodecDecompressParams* parameters, ImageSubCodecDecompressRecord* record) {
    return embedded::CallSelector(instance, kImageCodecBeginBandSelect, parameters, record, 0);
  };
  EXPECT_EQ(begin(nullptr, &band.record), -50);
  EXPECT_EQ(begin(&band.parameters, nullptr), -50);
  ImageDescription* none = nullptr;
  for (const ImageDescriptionHandle description : {ImageDescriptionHandle{nullptr}, &none}) {
    CodecDecompressParams parameters = band.parameters;
    parameters.imageDescription = description;
    EXPECT_EQ(begin(&parameters, &band.record), -50);
  }
  ImageSubCodecDecompressRecord record = band.record;
  record.userDecompressRecord = nullptr;
  EXPECT_EQ(begin(&band.parameters, &record), -50);
  record = band.record;
  record.codecData = nullptr;
  EXPECT_EQ(begin(&band.parameters, &record), -50);
}

// The base may end what could not be begun, and the record is full of rubbish before.
TEST_F(BandTest, EndIsSafeAfterABeginThatFailed) {
  const Frame frame = MakeFrame(SourceOf("ARGB"), 8, 4);
  for (const bool withParameters : {false, true}) {
    Band band = MakeBand(ParametersFor(Describe(8, 4)), 32, frame.bytes);  // without the tag
    const ComponentResult begun = embedded::CallSelector(
        instance, kImageCodecBeginBandSelect, withParameters ? &band.parameters : nullptr, &band.record, 0);
    EXPECT_EQ(begun, withParameters ? -8971 : -50);
    EXPECT_EQ(Draw(instance, band), kRefused);
    EXPECT_EQ(End(instance, band, static_cast<OSErr>(begun)), noErr);
    EXPECT_EQ(End(instance, band, noErr), noErr);
  }
}

TEST_F(BandTest, EndNeedsItsArguments) {
  EXPECT_EQ(embedded::CallSelector(instance, kImageCodecEndBandSelect, nullptr, 0, 0), -50);
  ImageSubCodecDecompressRecord record = {};
  EXPECT_EQ(embedded::CallSelector(instance, kImageCodecEndBandSelect, &record, 0, 0), -50);
  EXPECT_EQ(Storage().framesDecoded, 0u);
}

TEST_F(BandTest, DrawRefusesWhatIsIncomplete) {
  const Frame frame = MakeFrame(SourceOf("ARGB"), 8, 4);
  Band band = MakeBand(ParametersFor(Describe(frame)), 32, frame.bytes);
  ASSERT_EQ(Begin(instance, band), noErr);
  const std::vector<u8> before = band.picture->bytes;
  const auto draw = [this](ImageSubCodecDecompressRecord* record) {
    return embedded::CallSelector(instance, kImageCodecDrawBandSelect, record);
  };
  EXPECT_EQ(draw(nullptr), kRefused);
  ImageSubCodecDecompressRecord record = band.record;
  record.codecData = nullptr;
  EXPECT_EQ(draw(&record), kRefused);
  record = band.record;
  record.baseAddr = nullptr;
  EXPECT_EQ(draw(&record), kRefused);
  record = band.record;
  record.userDecompressRecord = nullptr;
  EXPECT_EQ(draw(&record), kRefused);
  record = band.record;
  record.rowBytes = 20;  // too short for 8 pixels
  EXPECT_EQ(draw(&record), kRefused);
  EXPECT_EQ(band.picture->bytes, before);
  ComponentParameters parameters = {
      0, sizeof(Slot), kImageCodecDrawBandSelect, {reinterpret_cast<Slot>(&band.record)}};
  EXPECT_EQ(Qd_(&parameters, nullptr), kRefused);
  EXPECT_EQ(Draw(instance, band), noErr);
  EXPECT_EQ(End(instance, band, noErr), noErr);
}

TEST_F(BandTest, CallsWithoutStorageAreRefused) {
  for (const int selector : {0x200, 0x201, 0x202, 0x204, 0, 8, 40, 41, -8, -6}) {
    ComponentParameters parameters = {0, 0, static_cast<i16>(selector), {0}};
    EXPECT_EQ(Qd_(&parameters, nullptr), -50) << selector;
  }
}

// --- Steps of BeginBand ---

TEST_F(BandTest, EveryFrameIsAKeyFrame) {
  const Frame frame = MakeFrame(SourceOf("ARGB"), 8, 4);
  Band band = MakeBand(ParametersFor(Describe(frame)), 32, frame.bytes);
  band.record.frameType = 9;
  ASSERT_EQ(Begin(instance, band), noErr);
  EXPECT_EQ(band.record.frameType, 1);
  EXPECT_EQ(band.frame->tag, WordOfBytes("ARGB"));
  EXPECT_EQ(band.frame->width, 8u);
  EXPECT_EQ(band.frame->height, 4u);
  EXPECT_EQ(band.frame->pixelFormat, 32u);
  EXPECT_EQ(band.frame->wordCursor, 5u);
  EXPECT_EQ(band.frame->bitCursor, 0u);
  EXPECT_EQ(band.frame->block, -1);
  EXPECT_EQ(band.frame->dataCopy, nullptr);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(band.frame->scratch) % 16, 0u);
  EXPECT_EQ(End(instance, band, noErr), noErr);
  EXPECT_EQ(band.frame->scratch, nullptr);
}

TEST_F(BandTest, OtherBandsThanTheFirstAreNotPrepared) {
  const Frame frame = MakeFrame(SourceOf("ARGB"), 8, 4);
  Band band = MakeBand(ParametersFor(Describe(8, 4)), 32, frame.bytes);  // the tag is not looked for
  band.parameters.conditionFlags = ~kConditionFirstBand;
  EXPECT_EQ(Begin(instance, band), noErr);
  EXPECT_EQ(band.record.frameType, 1);
  EXPECT_EQ(band.parameters.dstPixMap.cmpCount, 3);
  EXPECT_EQ(Draw(instance, band), kRefused);
  EXPECT_EQ(End(instance, band, noErr), noErr);
}

TEST_F(BandTest, BeginNeedsTheTagOfTheDescription) {
  const Frame frame = MakeFrame(SourceOf("ARGB"), 8, 4);
  Band band = MakeBand(ParametersFor(Describe(8, 4)), 32, frame.bytes);
  EXPECT_EQ(Begin(instance, band), -8971);
}

TEST_F(BandTest, TheTagOfTheFrameGoesBeforeThatOfTheDescription) {
  Frame frame = MakeFrame(SourceOf("ARGB"), 8, 4);
  Band plain = MakeBand(ParametersFor(Describe(frame)), 32, frame.bytes);
  ASSERT_EQ(DecodeBand(instance, plain), noErr);
  const ImageDescriptionHandle description = Describe(8, 4);
  AddTag(description, WordOfBytes("YbYr"));
  Band band = MakeBand(ParametersFor(description), 32, frame.bytes);
  EXPECT_EQ(DecodeBand(instance, band), noErr);
  EXPECT_EQ(band.picture->bytes, plain.picture->bytes);
  StoreLittle32(&frame.bytes[16], WordOfBytes("BGRA"));
  Band spelled = MakeBand(ParametersFor(description), 32, frame.bytes);
  EXPECT_EQ(DecodeBand(instance, spelled), noErr);
  EXPECT_EQ(spelled.picture->bytes, plain.picture->bytes);
  StoreLittle32(&frame.bytes[16], WordOfBytes("????"));
  Band unknown = MakeBand(ParametersFor(Describe(frame)), 32, frame.bytes);
  EXPECT_EQ(Begin(instance, unknown), kRefused);
}

TEST_F(BandTest, AMapWithoutACodeIsNamedByItsDepth) {
  const Frame frame = MakeFrame(SourceOf("ARGB"), 8, 4);
  for (const OSType depth : {32u, 24u}) {
    Band named = MakeBand(ParametersFor(Describe(frame)), depth, frame.bytes);
    Band bare = MakeBand(ParametersFor(Describe(frame)), depth, frame.bytes);
    bare.parameters.dstPixMap.pixelFormat = 0;
    EXPECT_EQ(DecodeBand(instance, named), noErr);
    EXPECT_EQ(DecodeBand(instance, bare), noErr);
    EXPECT_EQ(named.picture->bytes, bare.picture->bytes);
  }
  Band band = MakeBand(ParametersFor(Describe(frame)), 16, frame.bytes);
  band.parameters.dstPixMap.pixelFormat = 0;
  EXPECT_EQ(Begin(instance, band), kRefused);
}

// --- Row stores ---

struct StoreRow {
  const char (&tag)[5];
  std::string_view format;
  u16 width;
  bool isInline;
};

// (width + 4) * 8 is 16,416 at 2048 pixels, (width + 4) * 4 at 4100; and rows of the frame fit up to there.
TEST_F(BandTest, ANeedOfExactly16416BytesIsMetInline) {
  const StoreRow rows[] = {{"ARGX", "b64a", 2048, true},  {"ARGX", "b64a", 2049, false},
                           {"ARGB", "b64a", 2049, false}, {"ARGB", "32", 4100, true},
                           {"ARGB", "32", 4101, false},   {"BYRY", "2vuy", 4100, true},
                           {"ARGX", "2vuy", 2048, true},  {"ARGX", "2vuy", 2050, false}};
  for (const StoreRow& row : rows) {
    const Frame frame = MakeFrame(SourceOf(row.tag), row.width, 2);
    ASSERT_EQ(PreflightFor(frame), noErr);
    Band band = MakeBand(ParametersFor(Describe(frame)), CodeOf(row.format), frame.bytes);
    ASSERT_EQ(Begin(instance, band), noErr) << row.width;
    EXPECT_EQ(band.frame->block, row.isInline ? -1 : 0) << row.tag << row.width;
    const auto* const store = reinterpret_cast<const u8*>(band.frame.get());
    const bool isInside = band.frame->scratch >= store && band.frame->scratch < store + sizeof(FrameRecord);
    EXPECT_EQ(isInside, row.isInline) << row.tag << row.width;
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(band.frame->scratch) % 16, 0u);
    EXPECT_EQ(Draw(instance, band), noErr);
    EXPECT_EQ(End(instance, band, noErr), noErr);
    EXPECT_EQ(Storage().pool.usedBlocks, 0u);
  }
}

TEST_F(BandTest, WideFramesNeedThePoolOfAPreflight) {
  const Frame frame = MakeFrame(SourceOf("ARGX"), 2049, 2);
  const Frame wider = MakeFrame(SourceOf("ARGX"), 2100, 2);
  Band band = MakeBand(ParametersFor(Describe(frame)), CodeOf("b64a"), frame.bytes);
  EXPECT_EQ(Begin(instance, band), kRefused);
  ASSERT_EQ(PreflightFor(frame), noErr);
  EXPECT_EQ(DecodeBand(instance, band), noErr);
  Band widerBand = MakeBand(ParametersFor(Describe(wider)), CodeOf("b64a"), wider.bytes);
  EXPECT_EQ(Begin(instance, widerBand), kRefused);
  EXPECT_EQ(Storage().pool.usedBlocks, 0u);
}

TEST_F(BandTest, The33rdWideFrameWaitsForOneThatEnds) {
  const Frame frame = MakeFrame(SourceOf("RGBX"), 2049, 1);
  ASSERT_EQ(PreflightFor(frame), noErr);
  const CodecDecompressParams parameters = ParametersFor(Describe(frame));
  std::vector<Band> bands;
  for (i32 i = 0; i < 33; ++i) bands.push_back(MakeBand(parameters, CodeOf("b64a"), frame.bytes));
  for (i32 i = 0; i < 32; ++i) {
    ASSERT_EQ(Begin(instance, bands[static_cast<std::size_t>(i)]), noErr);
    EXPECT_EQ(bands[static_cast<std::size_t>(i)].frame->block, i);
  }
  EXPECT_EQ(Begin(instance, bands[32]), -8977);
  EXPECT_EQ(bands[32].frame->block, -1);
  EXPECT_EQ(Storage().pool.usedBlocks, 0xFFFFFFFF);
  EXPECT_EQ(PreflightFor(MakeFrame(SourceOf("RGBX"), 3000, 1)), -108);  // frames hold the pool
  for (const std::size_t ended : {20u, 7u}) {
    EXPECT_EQ(Draw(instance, bands[ended]), noErr);
    EXPECT_EQ(End(instance, bands[ended], noErr), noErr);
    EXPECT_EQ(bands[ended].frame->block, -1);
  }
  EXPECT_EQ(Begin(instance, bands[32]), noErr);
  EXPECT_EQ(bands[32].frame->block, 7);  // the lowest that is free
  EXPECT_EQ(Begin(instance, bands[20]), noErr);
  EXPECT_EQ(bands[20].frame->block, 20);
  EXPECT_EQ(Begin(instance, bands[7]), -8977);
  for (Band& band : bands) EXPECT_EQ(End(instance, band, noErr), noErr);
  EXPECT_EQ(Storage().pool.usedBlocks, 0u);
}

// --- Drawing ---

TEST_F(BandTest, RowsOfV210MustHoldTheirGroups) {
  // ((width + 1) / 2 * 4 + 2) / 3 * 4, by hand
  struct Row {
    u16 width;
    i32 least;
  };
  for (const Row row : {Row{1, 8}, Row{2, 8}, Row{3, 12}, Row{5, 16}, Row{6, 16}, Row{8, 24}, Row{48, 128}}) {
    const Frame frame = MakeFrame(SourceOf("\xA2YRY"), row.width, 2);
    for (const std::string_view format : {"v210", "V210"}) {
      for (const i32 sign : {1, -1}) {
        Band band = MakeBand(ParametersFor(Describe(frame)), CodeOf(format), frame.bytes);
        band.parameters.dstPixMap.pixelSize = 20;
        ASSERT_EQ(Begin(instance, band), noErr);
        band.record.rowBytes = sign * (row.least - 4);
        const std::vector<u8> before = band.picture->bytes;
        EXPECT_EQ(Draw(instance, band), -2034) << row.width;
        EXPECT_EQ(band.picture->bytes, before);
        band.record.rowBytes = sign * row.least;
        EXPECT_EQ(Draw(instance, band), noErr) << row.width;
        EXPECT_EQ(End(instance, band, noErr), noErr);
      }
    }
  }
}

TEST_F(BandTest, OldAfterEffectsGetsLittleEndianWordsForB64a) {
  struct Row {
    std::optional<embedded::ExecutableMajors> majors;
    std::string_view same;  // what 'b64a' is drawn as
  };
  for (const Row& row : {Row{{{7, 7}}, "L64A"}, Row{{{8, 8}}, "b64a"}, Row{std::nullopt, "b64a"}}) {
    for (const TagSource& source : TagSources()) {
      if (source.subtype == FourCharacterCode("Vrl4")) continue;
      Restart({.executablePath = "AfterFX.exe", .executableMajors = row.majors});
      const Frame frame = MakeFrame(source, 8, 2);
      Band band = MakeBand(ParametersFor(Describe(frame)), CodeOf("b64a"), frame.bytes);
      EXPECT_EQ(DecodeBand(instance, band), noErr);
      Restart({});
      Band plain = MakeBand(ParametersFor(Describe(frame)), CodeOf(row.same), frame.bytes);
      EXPECT_EQ(DecodeBand(instance, plain), noErr);
      EXPECT_EQ(band.picture->bytes, plain.picture->bytes) << source.tag;
    }
  }
}

TEST_F(BandTest, TheColourStandardOfTheDescriptionIsUsed) {
  const Frame frame = MakeFrame(SourceOf("BYRY"), 16, 2);
  std::vector<std::vector<u8>> pictures;
  for (const char matrix : {'\6', '\1', '\7'}) {
    const ImageDescriptionHandle description = Describe(frame);
    AddExtension(description, FourCharacterCode("colr"), std::string("nclc\0\1\0\1\0", 9) + matrix);
    CodecDecompressParams parameters = ParametersFor(description);
    ASSERT_EQ(Preflight(parameters), noErr);
    Band band = MakeBand(parameters, 32, frame.bytes);
    EXPECT_EQ(DecodeBand(instance, band), noErr);
    pictures.push_back(band.picture->bytes);
  }
  EXPECT_NE(pictures[0], pictures[1]);
  EXPECT_NE(pictures[0], pictures[2]);
  EXPECT_NE(pictures[1], pictures[2]);
}

TEST_F(BandTest, FramesAreCountedIfTheyEndWell) {
  const Frame frame = MakeFrame(SourceOf("ARGB"), 8, 4);
  Band band = MakeBand(ParametersFor(Describe(frame)), 32, frame.bytes);
  const Slot rubbish = static_cast<Slot>(0x7EDCBA98) << 16;
  struct Row {
    Slot result;
    u32 count;
  };
  for (const Row row :
       {Row{0, 1}, Row{-8972, 1}, Row{1, 1}, Row{0, 2}, Row{rubbish, 3}, Row{rubbish | 1, 3}}) {
    ASSERT_EQ(Begin(instance, band), noErr);
    EXPECT_EQ(embedded::CallSelector(instance, kImageCodecEndBandSelect, &band.record, row.result, 0), noErr);
    EXPECT_EQ(Storage().framesDecoded, row.count);
  }
}

TEST_F(BandTest, BeginWithoutMemorySaysSo) {
  const Frame frame = MakeFrame(SourceOf("ARGB"), 8, 4);
  Band band = MakeBand(ParametersFor(Describe(frame)), 32, frame.bytes);
  const embedded::HostCounts before = embedded::CountsInUse();
  embedded::FailAllocation(1);
  EXPECT_EQ(DecodeBand(instance, band), -108);
  EXPECT_EQ(embedded::CountsInUse(), before);
  EXPECT_EQ(DecodeBand(instance, band), noErr);
  EXPECT_EQ(embedded::CountsInUse(), before);
}

}  // namespace

}  // namespace vorel::component
