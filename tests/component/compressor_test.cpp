// Compressors on the embedded host: what they answer, what they write, and the frames that they make.
#include "component/compressor.h"

#include "tests/component/encoding_fixture.h"
#include "vorel/frame_codec.h"

namespace vorel::component {

namespace {

using CompressorTest = EncodingTest;

constexpr OSType kSubtypes[] = {FourCharacterCode("Vrl0"), FourCharacterCode("Vrl7"),
                                FourCharacterCode("Vrl1"), FourCharacterCode("Vrl5"),
                                FourCharacterCode("Vrl2"), FourCharacterCode("Vrl6"),
                                FourCharacterCode("Vrl3"), FourCharacterCode("Vrl4")};

constexpr OSType kTagType = FourCharacterCode("Kesp");
constexpr OSType kSpace = FourCharacterCode("cspc");
constexpr OSType kColour = FourCharacterCode("colr");
constexpr OSType kBits = FourCharacterCode("sgbt");

// ---- Questions before a sequence

i32 MaxSize(ComponentInstance compressor, PixMapHandle map, const Rect* rectangle) {
  i32 size = -1;
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecGetMaxCompressionSizeSelect, map, rectangle, 24,
                                   1024, &size),
            noErr);
  return size;
}

// 5 x 3: three pairs a row, one group of rows. Of the tags with alpha: ((40 * 3 + 64) * 5 + 3 + 7) / 8 + 4 = 120;
// 4 * 15 + 8 * 5 + 1 + 4 = 105; (3 + 60 * 9 + 96 * 3 + 7) / 8 + 4 = 108; 1 + 6 * 9 + 12 * 3 + 4 = 95; of 8bw
// 1 + 4 * 9 + 8 * 3 + 4 = 65. The header takes 20 more.
TEST_F(CompressorTest, LargestFrameIsTheBoundOfTheFamilysLargestTag) {
  constexpr i32 kExpected[] = {140, 140, 125, 140, 125, 128, 115, 85};
  const Rect rectangle = {10, 20, 13, 25};
  for (std::size_t i = 0; i < std::size(kSubtypes); ++i) {
    const ComponentInstance compressor = OpenCompressorOf(kSubtypes[i]);
    EXPECT_EQ(MaxSize(compressor, nullptr, &rectangle), kExpected[i]) << i;
    Host->CloseComponent(compressor);
  }
}

TEST_F(CompressorTest, RectangleGoesBeforeTheMapForTheLargestFrame) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl4"));
  PixMap map = {};
  map.bounds = {0, 0, 3, 5};
  PixMap* master = &map;
  const Rect empty = {4, 4, 4, 9};
  const Rect insideOut = {9, 9, 4, 4};
  EXPECT_EQ(MaxSize(compressor, &master, nullptr), 85);
  EXPECT_EQ(MaxSize(compressor, &master, &empty), 20);
  EXPECT_EQ(MaxSize(compressor, &master, &insideOut), 20);
  i32 size = 7;
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecGetMaxCompressionSizeSelect, nullptr, nullptr, 24,
                                   0, &size),
            paramErr);
  EXPECT_EQ(size, 7);
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecGetMaxCompressionSizeSelect, &master, nullptr, 24,
                                   0, nullptr),
            paramErr);
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, PreCompressPreparesTheDescriptionAndPublishesWhatTheDialogNeeds) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl6"));
  const auto job = MakeJob(FourCharacterCode("Vrl6"), FourCharacterCode("v210"), 12, 5, 32);
  (*job->Description())->temporalQuality = 77;
  (*job->Description())->spatialQuality = 77;
  job->capabilities = {-1, 1, 1, 1, 1, 1, 1, 1, 1};
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecBusySelect, 0), 0);
  ASSERT_EQ(Prepare(compressor, *job), noErr);
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecBusySelect, 0), 1);
  EXPECT_EQ((*job->Description())->temporalQuality, 0u);
  EXPECT_EQ((*job->Description())->spatialQuality, 1024u);
  EXPECT_EQ(job->capabilities.bandMin, 5);
  EXPECT_EQ(job->capabilities.flags, 0);
  EXPECT_EQ(job->capabilities.time, 0u);
  EXPECT_EQ(job->capabilities.extendWidth, 0);
  EXPECT_EQ(job->parameters.wantedSourcePixelType, FourCharacterCode("v210"));
  EXPECT_EQ(Published(FourCharacterCode("Alfa")), 2);
  EXPECT_EQ(Published(FourCharacterCode("Form")), static_cast<i32>(FourCharacterCode("Vrl6")));
  EXPECT_EQ(Published(FourCharacterCode("Gama")), 0x00018000);
  (*job->Description())->depth = 24;
  ASSERT_EQ(Prepare(compressor, *job), noErr);
  EXPECT_EQ(Published(FourCharacterCode("Alfa")), 1);
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, PreCompressReadsTheFields) {
  Compressor* storage = nullptr;
  const OSType type = FourCharacterCode("Vrl6");
  const ComponentInstance compressor = OpenWithStorage(kCompressorType, type, 0, storage);
  struct {
    Bytes extension;
    u32 fields;
  } const rows[] = {{{1, 0}, 1}, {{2, 9}, 2}, {{0, 0}, 2}, {{}, 2}};
  for (const auto& row : rows) {
    const auto job = MakeJob(type, FourCharacterCode("v210"), 12, 5);
    AddExtension(job->Description(), FourCharacterCode("fiel"), row.extension);
    ASSERT_EQ(Prepare(compressor, *job), noErr);
    EXPECT_EQ(storage->fields, row.fields);
    EXPECT_EQ(storage->subtype, type);
  }
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, MissingArgumentsAreRefused) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl1"));
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecPreCompressSelect, nullptr), paramErr);
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecBandCompressSelect, nullptr), paramErr);
  const auto job = MakeJob(FourCharacterCode("Vrl1"), 32, 8, 8);
  CodecCompressParams whole = job->parameters;
  CodecCompressParams lacking = whole;
  lacking.imageDescription = nullptr;
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecPreCompressSelect, &lacking), paramErr);
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecBandCompressSelect, &lacking), paramErr);
  lacking = whole;
  lacking.capabilities = nullptr;
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecPreCompressSelect, &lacking), paramErr);
  lacking = whole;
  lacking.data = nullptr;
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecBandCompressSelect, &lacking), paramErr);
  lacking = whole;
  lacking.srcPixMap.baseAddr = nullptr;
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecBandCompressSelect, &lacking), paramErr);
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecBusySelect, 0), 0);
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, WithoutStorageNothingIsTouched) {
  EXPECT_EQ(CompressorBusy(nullptr, 0), -1);
  EXPECT_EQ(CloseCompressor(nullptr, nullptr), noErr);
  EXPECT_EQ(PreCompress(nullptr, nullptr), paramErr);
  EXPECT_EQ(BandCompress(nullptr, nullptr), paramErr);
  EXPECT_EQ(GetMaxCompressionSize(nullptr, nullptr, nullptr, 0, 0, nullptr), paramErr);
  EXPECT_EQ(GetCompressionTime(nullptr, nullptr, nullptr, 0, nullptr, nullptr, nullptr), paramErr);
  EXPECT_EQ(GetCompressorInfo(nullptr, nullptr), paramErr);
  EXPECT_EQ(SetCompressorTarget(nullptr, nullptr), paramErr);
}

TEST_F(CompressorTest, OpeningWithoutMemoryOrVersionLeavesNothing) {
  const auto found = embedded::FindComponents(kCompressorType, FourCharacterCode("Vrl1"), 0);
  ComponentInstance compressor = nullptr;
  embedded::FailAllocation(1);
  EXPECT_EQ(embedded::OpenComponent(found[0].number, &compressor), memFullErr);
  EXPECT_EQ(compressor, nullptr);
  EXPECT_EQ(embedded::CountsInUse(), embedded::HostCounts{});
  StartHost({.quickTimeVersion = 0});
  const auto again = embedded::FindComponents(kCompressorType, FourCharacterCode("Vrl1"), 0);
  EXPECT_EQ(embedded::OpenComponent(again[0].number, &compressor), qtmlDllLoadErr);
}

// ---- The first frame and its description

struct FirstFrame {
  OSType subtype;  // of the compressor
  OSType format;
  i16 depth;
  u32 scan;
  u32 tag;
  const char* name;
  OSType frameSubtype;  // in the description, behind the frame
  u8 bits;
};

constexpr FirstFrame kFirstFrames[] = {
    {FourCharacterCode("Vrl0"), 32, 32, 1, 0x42475241, "Vorel RGBA 8bf p", FourCharacterCode("Vrl0"), 8},
    {FourCharacterCode("Vrl0"), 24, 24, 2, 0x42477220, "Vorel RGB 8bf i", FourCharacterCode("Vrl0"), 8},
    {FourCharacterCode("Vrl0"), FourCharacterCode("b64a"), 32, 2, 0x58477241, "Vorel RGBA 10bf i",
     FourCharacterCode("Vrl0"), 10},
    {FourCharacterCode("Vrl0"), FourCharacterCode("v210"), 24, 1, 0x595259A2, "Vorel Y'CbCr 10bv 4:2:2p",
     FourCharacterCode("Vrl0"), 10},
    {FourCharacterCode("Vrl0"), FourCharacterCode("r408"), 32, 1, 0x52625941, "Vorel Y'CbCrA 8bu 4:4:4:4p",
     FourCharacterCode("Vrl0"), 8},
    {FourCharacterCode("Vrl0"), FourCharacterCode("yuv2"), 24, 2, 0x72796259, "Vorel Y'CbCr 8bw 4:2:2i",
     FourCharacterCode("Vrl0"), 8},
    {FourCharacterCode("Vrl7"), FourCharacterCode("b64a"), 24, 1, 0x58424752, "Vorel RGB 10bf p",
     FourCharacterCode("Vrl7"), 10},
    {FourCharacterCode("Vrl1"), FourCharacterCode("BGRA"), 32, 2, 0x42477241, "Vorel RGBA 8bf i",
     FourCharacterCode("Vrl1"), 8},
    {FourCharacterCode("Vrl5"), FourCharacterCode("V416"), 32, 1, 0x70344143, "Vorel Y'CbCrA 10bv 4:4:4:4p",
     FourCharacterCode("Vrl5"), 10},
    {FourCharacterCode("Vrl2"), FourCharacterCode("v408"), 24, 2, 0x52427920, "Vorel Y'CbCr 8bv 4:4:4i",
     FourCharacterCode("Vrl2"), 8},
    {FourCharacterCode("Vrl2"), FourCharacterCode("yuvs"), 24, 1, 0x59525942, "Vorel Y'CbCr 8bv 4:4:4p",
     FourCharacterCode("Vrl3"), 8},
    {FourCharacterCode("Vrl6"), FourCharacterCode("VUYA"), 32, 2, 0x69324143, "Vorel Y'CbCrA 10bv 4:2:2:4i",
     FourCharacterCode("Vrl6"), 8},
    {FourCharacterCode("Vrl3"), FourCharacterCode("v408"), 32, 1, 0x70323843, "Vorel Y'CbCrA 8bv 4:2:2:4p",
     FourCharacterCode("Vrl3"), 8},
    {FourCharacterCode("Vrl4"), FourCharacterCode("yuvu"), 24, 1, 0x72596259, "Vorel Y'CbCr 8bw 4:2:2p",
     FourCharacterCode("Vrl4"), 8},
};

TEST_F(CompressorTest, FirstFrameDescribesItself) {
  for (const FirstFrame& row : kFirstFrames) {
    SCOPED_TRACE(row.name);
    const ComponentInstance compressor = OpenCompressorOf(row.subtype);
    SetRecord(compressor, Record({0, row.scan, 1, 0, 0}));
    const auto job = MakeJob(row.subtype, row.format, 14, 6, row.depth);
    ASSERT_EQ(Prepare(compressor, *job), noErr);
    ASSERT_EQ(Compress(compressor, *job), noErr);
    EXPECT_EQ(Extension(job->Description(), kTagType), TagBytes(row.tag));
    EXPECT_EQ(LoadNative<u32>(&job->buffer[16]), row.tag);
    EXPECT_EQ(NameOf(job->Description()), row.name);
    EXPECT_EQ((*job->Description())->cType, row.frameSubtype);
    EXPECT_EQ(Extension(job->Description(), kBits), Bytes{row.bits});
    EXPECT_EQ(Extension(job->Description(), kColour), (Bytes{'n', 'c', 'l', 'c', 0, 6, 0, 1, 0, 6}));
    EXPECT_EQ(Extension(job->Description(), FourCharacterCode("gama")), std::nullopt);
    Host->CloseComponent(compressor);
  }
}

TEST_F(CompressorTest, SpaceIsTheMappedFormatBigEndian) {
  struct {
    OSType format;
    u32 range;
    Bytes space;
  } const rows[] = {{32, 0, {0, 0, 0, 32}},
                    {32, 2, {'V', 'R', 'G', 'B'}},
                    {FourCharacterCode("r210"), 1, {'F', '2', '1', '0'}},
                    {FourCharacterCode("R10k"), 2, {'S', '1', '0', 'k'}},
                    {FourCharacterCode("yuv2"), 0, {'y', 'u', 'v', 'u'}},
                    {FourCharacterCode("RGBA"), 0, {'B', 'G', 'R', 'A'}}};
  for (const auto& row : rows) {
    const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl0"));
    SetRecord(compressor, Record({0, 0, 1, 0, row.range}));
    const auto job = MakeJob(FourCharacterCode("Vrl0"), row.format, 14, 6);
    AddExtension(job->Description(), kSpace, {'o', 'l', 'd', '!'});
    ASSERT_EQ(Compress(compressor, *job), noErr);
    EXPECT_EQ(Extension(job->Description(), kSpace), row.space);
    EXPECT_EQ(Extension(job->Description(), kSpace, 2), std::nullopt);
    Host->CloseComponent(compressor);
  }
}

TEST_F(CompressorTest, TagOfAnEarlierSequenceIsReplacedAndNotDoubled) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl0"));
  const auto job = MakeJob(FourCharacterCode("Vrl0"), 32, 14, 6);
  AddExtension(job->Description(), kTagType, TagBytes(0x59525942));
  ASSERT_EQ(Compress(compressor, *job), noErr);
  ASSERT_EQ(Compress(compressor, *job), noErr);
  EXPECT_EQ(Extension(job->Description(), kTagType), TagBytes(0x42475220));
  EXPECT_EQ(Extension(job->Description(), kTagType, 2), std::nullopt);
  EXPECT_EQ(Extension(job->Description(), kBits, 2), std::nullopt);
  EXPECT_EQ(Extension(job->Description(), kColour, 2), std::nullopt);
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, ColourNumbersAreReadInBothOrdersAndLeftAsTheyAre) {
  struct {
    Bytes extension;
    u32 standard;
  } const rows[] = {{{'n', 'c', 'l', 'c', 0, 1, 0, 1, 0, 1}, 1}, {{'c', 'l', 'c', 'n', 1, 0, 1, 0, 1, 0}, 1},
                    {{'n', 'c', 'l', 'c', 0, 6, 0, 7, 0, 7}, 2}, {{'c', 'l', 'c', 'n', 6, 0, 7, 0, 7, 0}, 2},
                    {{'n', 'c', 'l', 'c', 0, 6, 0, 1, 0, 6}, 0}, {{'c', 'l', 'c', 'n', 6, 0, 1, 0, 6, 0}, 0},
                    {{'n', 'c', 'l', 'c', 0, 5, 0, 1, 0, 6}, 3}, {{'p', 'r', 'o', 'f', 1, 2, 3, 4, 5, 1}, 4},
                    {{'n', 'c', 'l', 'c', 0, 1, 0, 1, 0}, 4}};
  for (const auto& row : rows) {
    Compressor* storage = nullptr;
    const OSType type = FourCharacterCode("Vrl1");
    const ComponentInstance compressor = OpenWithStorage(kCompressorType, type, 0, storage);
    SetRecord(compressor, Record({0, 0, 1, 4, 0}));
    const auto job = MakeJob(type, FourCharacterCode("v410"), 14, 6);
    AddExtension(job->Description(), kColour, row.extension);
    ASSERT_EQ(Compress(compressor, *job), noErr);
    EXPECT_EQ(storage->settings.videoStandard, row.standard);
    EXPECT_EQ(Extension(job->Description(), kColour), row.extension);
    EXPECT_EQ(Extension(job->Description(), kColour, 2), std::nullopt);
    EXPECT_EQ(Extension(job->Description(), FourCharacterCode("gama")), std::nullopt);
    Host->CloseComponent(compressor);
  }
}

TEST_F(CompressorTest, NewColourExtensionFollowsTheVideoStandard) {
  const Bytes expected[] = {{'n', 'c', 'l', 'c', 0, 6, 0, 1, 0, 6},
                            {'n', 'c', 'l', 'c', 0, 1, 0, 1, 0, 1},
                            {'n', 'c', 'l', 'c', 0, 6, 0, 7, 0, 7},
                            {'n', 'c', 'l', 'c', 0, 5, 0, 1, 0, 6},
                            {'n', 'c', 'l', 'c', 0, 2, 0, 2, 0, 2}};
  for (u32 standard = 0; standard < 5; ++standard) {
    const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl0"));
    SetRecord(compressor, Record({0, 0, 1, standard, 0}));
    const auto job = MakeJob(FourCharacterCode("Vrl0"), 32, 14, 6);
    ASSERT_EQ(Compress(compressor, *job), noErr);
    EXPECT_EQ(Extension(job->Description(), kColour), expected[standard]);
    Host->CloseComponent(compressor);
  }
}

const HostOperations* usualHost = nullptr;

TEST_F(CompressorTest, GammaStandsInForAColourThatCouldNotBeAdded) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl0"));
  const auto job = MakeJob(FourCharacterCode("Vrl0"), 32, 14, 6);
  AddExtension(job->Description(), FourCharacterCode("gama"), {9, 9, 9, 9});
  usualHost = Host;
  HostOperations operations = *Host;
  operations.AddImageDescriptionExtension = [](ImageDescriptionHandle description, Handle data, i32 type) {
    if (static_cast<OSType>(type) == kColour) return OSErr{-4};
    return usualHost->AddImageDescriptionExtension(description, data, type);
  };
  Host = &operations;
  const ComponentResult result = Compress(compressor, *job);
  Host = usualHost;
  EXPECT_EQ(result, noErr);
  EXPECT_EQ(Extension(job->Description(), kColour), std::nullopt);
  EXPECT_EQ(Extension(job->Description(), FourCharacterCode("gama")), (Bytes{0, 1, 0x80, 0}));
  EXPECT_EQ(Extension(job->Description(), FourCharacterCode("gama"), 2), std::nullopt);
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, NameThatCannotBeFetchedEndsTheCallWithoutATag) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl0"));
  const auto job = MakeJob(FourCharacterCode("Vrl0"), 32, 14, 6);
  usualHost = Host;
  HostOperations operations = *Host;
  operations.GetComponentIndString = [](ComponentInstance, u8*, i16, i16) { return resNotFound; };
  Host = &operations;
  const ComponentResult result = Compress(compressor, *job);
  Host = usualHost;
  EXPECT_EQ(result, resNotFound);
  EXPECT_EQ(Extension(job->Description(), kTagType), std::nullopt);
  EXPECT_EQ(NameOf(job->Description()), "");
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, OtherErrorsThanAMissingTagEndTheCall) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl0"));
  const auto job = MakeJob(FourCharacterCode("Vrl0"), 32, 14, 6);
  usualHost = Host;
  HostOperations operations = *Host;
  operations.GetImageDescriptionExtension = [](ImageDescriptionHandle description, Handle* data, i32 type,
                                               i32 index) {
    if (static_cast<OSType>(type) == kTagType) return OSErr{-192};
    return usualHost->GetImageDescriptionExtension(description, data, type, index);
  };
  Host = &operations;
  const ComponentResult result = Compress(compressor, *job);
  Host = usualHost;
  EXPECT_EQ(result, -192);
  EXPECT_EQ(Extension(job->Description(), kTagType), std::nullopt);
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, ScanAndRangeOfTheFirstFrameStayInTheSettings) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl0"));
  const auto job = MakeJob(FourCharacterCode("Vrl0"), FourCharacterCode("R10k"), 14, 6);
  AddExtension(job->Description(), FourCharacterCode("fiel"), {2, 6});
  AddExtension(job->Description(), FourCharacterCode("Rnge"), {2});
  ASSERT_EQ(Compress(compressor, *job), noErr);
  EXPECT_EQ(GetRecord(compressor), Record({0, 2, 1, 0, 2}));
  EXPECT_EQ(LoadNative<u32>(&job->buffer[16]), 0x58424772u);
  EXPECT_EQ(Extension(job->Description(), kSpace), (Bytes{'S', '1', '0', 'k'}));
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, ComponentCountBecomesFourWhereAlphaIsKept) {
  struct {
    OSType subtype;
    OSType format;
    i16 depth;
    i16 count;
  } const rows[] = {{FourCharacterCode("Vrl0"), 32, 32, 4},
                    {FourCharacterCode("Vrl0"), 32, 24, 3},
                    {FourCharacterCode("Vrl0"), FourCharacterCode("v210"), 32, 3},
                    {FourCharacterCode("Vrl3"), FourCharacterCode("v408"), 32, 4}};
  for (const auto& row : rows) {
    const ComponentInstance compressor = OpenCompressorOf(row.subtype);
    const auto job = MakeJob(row.subtype, row.format, 14, 6, row.depth);
    ASSERT_EQ(Compress(compressor, *job), noErr);
    EXPECT_EQ(job->parameters.srcPixMap.cmpCount, row.count);
    Host->CloseComponent(compressor);
  }
}

TEST_F(CompressorTest, OnlyTheFirstBandOfTheFirstFrameDescribes) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl0"));
  const auto job = MakeJob(FourCharacterCode("Vrl0"), 32, 14, 6);
  for (const i32 flags : {3, 2, 6, 1, 4}) {  // nothing is settled yet
    job->parameters.conditionFlags = flags;
    EXPECT_EQ(Compress(compressor, *job), codecConditionErr) << flags;
    EXPECT_TRUE(embedded::ExtensionBytes(job->Description()).empty()) << flags;
  }
  job->parameters.conditionFlags = 5;
  EXPECT_EQ(Compress(compressor, *job), noErr);
  EXPECT_FALSE(embedded::ExtensionBytes(job->Description()).empty());
  const Bytes frame = FrameOf(*job);
  const auto later = MakeJob(FourCharacterCode("Vrl0"), 32, 14, 6);
  later->parameters.conditionFlags = kWholeFrame;
  EXPECT_EQ(Compress(compressor, *later), noErr);
  EXPECT_TRUE(embedded::ExtensionBytes(later->Description()).empty());
  EXPECT_EQ(FrameOf(*later), frame);
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, FramesAndBusyTellOfSuccess) {
  Compressor* storage = nullptr;
  const ComponentInstance compressor =
      OpenWithStorage(kCompressorType, FourCharacterCode("Vrl0"), 0, storage);
  const auto job = MakeJob(FourCharacterCode("Vrl0"), 32, 14, 6);
  ASSERT_EQ(Prepare(compressor, *job), noErr);
  EXPECT_EQ(storage->busy, 1u);
  ASSERT_EQ(Compress(compressor, *job), noErr);
  EXPECT_EQ(storage->busy, 0u);
  EXPECT_EQ(storage->frames, 1u);
  job->parameters.conditionFlags = 5;  // not the last band
  ASSERT_EQ(Compress(compressor, *job), noErr);
  EXPECT_EQ(storage->frames, 1u);
  job->parameters.conditionFlags = kWholeFrame;
  ASSERT_EQ(Compress(compressor, *job), noErr);
  EXPECT_EQ(storage->frames, 2u);
  job->parameters.srcPixMap.pixelSize = 16;  // a picture without a tag
  EXPECT_EQ(Compress(compressor, *job), codecConditionErr);
  EXPECT_EQ(storage->busy, 1u);
  EXPECT_EQ(storage->frames, 2u);
  Host->CloseComponent(compressor);
}

// ---- Refusals

TEST_F(CompressorTest, PerfectConversionRefusesToDropBits) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl0"));
  SetRecord(compressor, Record({0, 0, 0, 0, 0}));
  const auto deep = MakeJob(FourCharacterCode("Vrl0"), FourCharacterCode("b64a"), 14, 6);
  EXPECT_EQ(Compress(compressor, *deep), codecConditionErr);
  EXPECT_EQ(deep->buffer, Bytes(kAmple, 0xA5));
  EXPECT_EQ(Extension(deep->Description(), kBits), std::nullopt);
  const auto told = MakeJob(FourCharacterCode("Vrl0"), FourCharacterCode("b64a"), 14, 6);
  AddExtension(told->Description(), kBits, {10});
  EXPECT_EQ(Compress(compressor, *told), noErr);
  EXPECT_EQ(Extension(told->Description(), kBits), Bytes{10});
  SetRecord(compressor, Record({0, 0, 1, 0, 0}));
  EXPECT_EQ(Compress(compressor, *deep), noErr);
  EXPECT_EQ(Extension(deep->Description(), kBits), Bytes{10});
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, GenericRefusesFramesOfAnotherFamilyThanAskedFor) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl0"));
  const auto job = MakeJob(FourCharacterCode("Vrl6"), 32, 14, 6);
  ASSERT_EQ(Prepare(compressor, *job), noErr);
  EXPECT_EQ(Compress(compressor, *job), codecConditionErr);
  EXPECT_EQ(job->buffer, Bytes(kAmple, 0xA5));
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, PicturesThatNoRoutineTakesAreRefused) {
  struct {
    OSType subtype;
    const char* format;
  } const rows[] = {{FourCharacterCode("Vrl0"), "VUYA"},
                    {FourCharacterCode("Vrl0"), "V416"},  // has a tag and no routine
                    {FourCharacterCode("Vrl0"), "L555"},
                    {FourCharacterCode("Vrl6"), "A46L"},
                    {FourCharacterCode("Vrl4"), "2vuy"}};
  for (const auto& row : rows) {
    const ComponentInstance compressor = OpenCompressorOf(row.subtype);
    const OSType format = LoadBig32(reinterpret_cast<const u8*>(row.format));
    const auto job = MakeJob(row.subtype, format, 14, 6);
    EXPECT_EQ(Compress(compressor, *job), codecConditionErr) << row.format;
    Host->CloseComponent(compressor);
  }
}

TEST_F(CompressorTest, ArgumentsThatRoutinesRefuseGiveOneError) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl1"));
  const auto job = MakeJob(FourCharacterCode("Vrl1"), 32, 14, 6);
  ASSERT_EQ(Compress(compressor, *job), noErr);
  const CodecCompressParams good = job->parameters;
  job->parameters.srcPixMap.bounds.right = 0;
  EXPECT_EQ(Compress(compressor, *job), codecConditionErr);
  job->parameters = good;
  job->parameters.srcPixMap.bounds.bottom = 0;
  EXPECT_EQ(Compress(compressor, *job), codecConditionErr);
  job->parameters = good;
  job->parameters.srcPixMap.baseAddr += 1;
  EXPECT_EQ(Compress(compressor, *job), codecConditionErr);
  job->parameters = good;
  job->parameters.data += 1;
  job->parameters.bufferSize -= 1;
  EXPECT_EQ(Compress(compressor, *job), codecConditionErr);
  job->parameters = good;
  embedded::SetPixelMapRows(job->parameters.srcPixMap, job->rows, 40, 0);  // 10 pixels
  EXPECT_EQ(Compress(compressor, *job), codecConditionErr);
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, LaterPictureOfAnotherFormatIsRefused) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl0"));
  const auto job = MakeJob(FourCharacterCode("Vrl0"), FourCharacterCode("2vuy"), 14, 6);
  ASSERT_EQ(Compress(compressor, *job), noErr);
  const auto other = MakeJob(FourCharacterCode("Vrl0"), 32, 14, 6);
  other->parameters.conditionFlags = kWholeFrame;
  EXPECT_EQ(Compress(compressor, *other), codecConditionErr);
  EXPECT_EQ(other->buffer, Bytes(kAmple, 0xA5));
  Host->CloseComponent(compressor);
}

// ((width + 1) & ~1) * 2 + 2) / 3 * 4: width 1 and 2 need 8, 3 and 4 need 12, 6 needs 16, 13 needs 40.
TEST_F(CompressorTest, ShortRowsOfV210AreRefused) {
  struct {
    i16 width;
    i32 enough;
  } const rows[] = {{1, 8}, {2, 8}, {3, 12}, {4, 12}, {6, 16}, {13, 40}};
  for (const auto& row : rows) {
    for (const OSType subtype : {FourCharacterCode("Vrl0"), FourCharacterCode("Vrl6")}) {
      const ComponentInstance compressor = OpenCompressorOf(subtype);
      const auto job = MakeJob(subtype, FourCharacterCode("v210"), row.width, 40);
      SetRows(*job, row.enough - 4);
      EXPECT_EQ(Compress(compressor, *job), internalQuickTimeError) << row.width;
      SetRows(*job, 4 - row.enough);
      EXPECT_EQ(Compress(compressor, *job), internalQuickTimeError) << row.width;
      SetRows(*job, row.enough);
      std::fill(job->picture.begin(), job->picture.end(), u8{0});
      EXPECT_EQ(Compress(compressor, *job), noErr) << row.width;
      Host->CloseComponent(compressor);
    }
  }
}

// One pixel: the bound is 3 + 6 + 1 + 4 = 14, and a frame of two words or more is recorded as 20 + 8 + 20 bytes.
TEST_F(CompressorTest, TinyPicturesExceedTheirBoundByTheRecordedSize) {
  for (const u32 mode : {0u, 1u}) {
    const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl1"));
    SetRecord(compressor, Record({mode, 0, 1, 0, 0}));
    const auto job = MakeJob(FourCharacterCode("Vrl1"), 24, 1, 1);
    SetBuffer(*job, 34);
    EXPECT_EQ(Compress(compressor, *job), memFullErr) << mode;
    EXPECT_EQ((*job->Description())->dataSize, 0);
    Host->CloseComponent(compressor);
  }
}

// ---- Frames

// What the encode function makes, with zeros behind it up to the size that its cursors give.
template <typename Encode>
Bytes Expected(Encode encode, u32 tag, u32 width, u32 height) {
  std::vector<u32> words(VorelMaxFrameBytes(tag, width, height) / 4 + 11);
  u32 wordCursor = 0;
  u32 bitCursor = 0;
  EXPECT_EQ(encode(&wordCursor, &bitCursor, words.data()), VorelStatus{VOREL_COMPLETE});
  const std::size_t written = (wordCursor - 5 + 1) * std::size_t{4};
  Bytes bytes((std::size_t{wordCursor} * 32 + 7 + bitCursor) / 8, 0);
  std::memcpy(bytes.data(), words.data(), std::min(written, bytes.size()));
  return bytes;
}

TEST_F(CompressorTest, FrameIsThatOfTheEncodeFunctionAndZerosFollow) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl1"));
  SetRecord(compressor, Record({0, 2, 1, 1, 0}));
  const auto job = MakeJob(FourCharacterCode("Vrl1"), FourCharacterCode("v410"), 37, 9);
  ASSERT_EQ(Compress(compressor, *job), noErr);
  const auto expected = [&](u32 standard) {
    return Expected(
        [&](u32* wordCursor, u32* bitCursor, u32* frame) {
          return VorelRGB8bfEncode(FourCharacterCode("v410"), VOREL_INTERLACED, 37, 9, job->rows.rowBytes,
                                   job->picture.data(), standard, wordCursor, bitCursor, frame, 0);
        },
        0x42477220, 37, 9);
  };
  EXPECT_EQ(FrameOf(*job), expected(1));
  EXPECT_NE(FrameOf(*job), expected(0));
  const Bytes frame = FrameOf(*job);
  EXPECT_EQ(Bytes(frame.end() - 20, frame.end()), Bytes(20, 0));
  // The worst case of 37 x 9 in 8bf is 1247 bytes; nothing is stored behind it.
  EXPECT_EQ(Bytes(job->buffer.begin() + 1247, job->buffer.end()), Bytes(kAmple - 1247, 0xA5));
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, GenericFrameIsThatOfTheGenericEncodeFunction) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl0"));
  const auto job = MakeJob(FourCharacterCode("Vrl0"), FourCharacterCode("r210"), 37, 9);
  ASSERT_EQ(Compress(compressor, *job), noErr);
  EXPECT_EQ(FrameOf(*job), Expected(
                               [&](u32* wordCursor, u32* bitCursor, u32* frame) {
                                 return VorelGenericEncode(FourCharacterCode("S210"), 0, 37, 9,
                                                           job->rows.rowBytes, job->picture.data(),
                                                           wordCursor, bitCursor, frame, 0);
                               },
                               0x58424752, 37, 9));
  Host->CloseComponent(compressor);
}

TEST_F(CompressorTest, BottomUpPictureIsReadFromItsLastRow) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl1"));
  const auto up = MakeJob(FourCharacterCode("Vrl1"), 32, 8, 4);
  SetRows(*up, -32);
  const auto down = MakeJob(FourCharacterCode("Vrl1"), 32, 8, 4);
  for (std::size_t row = 0; row < 4; ++row)
    std::memcpy(&down->picture[row * 32], &up->picture[(3 - row) * 32], 32);
  ASSERT_EQ(Compress(compressor, *up), noErr);
  ASSERT_EQ(Compress(compressor, *down), noErr);
  EXPECT_EQ(FrameOf(*up), FrameOf(*down));
  Host->CloseComponent(compressor);
}

// The worst case of 37 x 9 in 8bf is 3 * 37 * 9 + 6 * 37 + 2 + 4 + 20 = 1247 bytes.
TEST_F(CompressorTest, FramesFitBuffersThatAreSmallerThanTheWorstCase) {
  for (const u32 mode : {0u, 1u}) {
    const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl1"));
    SetRecord(compressor, Record({mode, 0, 1, 0, 0}));
    const auto job = MakeJob(FourCharacterCode("Vrl1"), 24, 37, 9);
    std::fill(job->picture.begin(), job->picture.end(), u8{40});
    ASSERT_EQ(Compress(compressor, *job), noErr);
    const Bytes frame = FrameOf(*job);
    ASSERT_LT(frame.size(), 1247u);
    for (const std::size_t size : {std::size_t{1248}, std::size_t{1247}, std::size_t{1246}, frame.size()}) {
      SetBuffer(*job, size);
      ASSERT_EQ(Compress(compressor, *job), noErr) << size;
      EXPECT_EQ(FrameOf(*job), frame) << size;
    }
    (*job->Description())->dataSize = 0;
    SetBuffer(*job, frame.size() - 1);
    EXPECT_EQ(Compress(compressor, *job), memFullErr);
    EXPECT_EQ(job->buffer, Bytes(frame.size() - 1, 0xA5));
    EXPECT_EQ((*job->Description())->dataSize, 0);
    Host->CloseComponent(compressor);
  }
}

// The frame of a picture of little-endian words that are called by `format`.
Bytes FrameOfLittleEndian(OSType format, u32 mode) {
  const ComponentInstance compressor = EncodingTest::OpenCompressorOf(FourCharacterCode("Vrl7"));
  SetRecord(compressor, Record({mode, 0, 1, 0, 0}));
  const auto job = MakeJob(FourCharacterCode("Vrl7"), format, 14, 6, 32);
  job->picture = Noise(FourCharacterCode("L64A"), job->picture.size(), 11);
  job->parameters.srcPixMap.baseAddr = job->picture.data();
  EXPECT_EQ(Compress(compressor, *job), noErr);
  Host->CloseComponent(compressor);
  return FrameOf(*job);
}

TEST_F(CompressorTest, OldAfterEffectsHandsB64aInLittleEndianWords) {
  StartHost({.executablePath = "C:\\Adobe\\AfterFX.exe", .executableMajors = {{7, 7}}});
  const Bytes frame = FrameOfLittleEndian(FourCharacterCode("L64A"), 0);
  EXPECT_EQ(FrameOfLittleEndian(FourCharacterCode("b64a"), 0), frame);
  EXPECT_EQ(FrameOfLittleEndian(FourCharacterCode("b64a"), 1), frame);
  StartHost({.executablePath = "C:\\Adobe\\AfterFX.exe", .executableMajors = {{8, 8}}});
  EXPECT_EQ(FrameOfLittleEndian(FourCharacterCode("L64A"), 0), frame);
  EXPECT_NE(FrameOfLittleEndian(FourCharacterCode("b64a"), 0), frame);
}

// ---- Memory

TEST_F(CompressorTest, EveryAllocationMayFailInPreCompress) {
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl1"));
  const auto job = MakeJob(FourCharacterCode("Vrl1"), 32, 14, 6);
  AddExtension(job->Description(), FourCharacterCode("fiel"), {1, 0});
  embedded::FailAllocation(1);
  EXPECT_EQ(Prepare(compressor, *job), memFullErr);
  embedded::FailAllocation(0);
  EXPECT_EQ(Prepare(compressor, *job), noErr);
  Host->CloseComponent(compressor);
}

// Whatever fails: the error says so, no other frame is made than with memory, and the next try is as good as new.
TEST_F(CompressorTest, EveryAllocationMayFailInTheFirstFrame) {
  const OSType type = FourCharacterCode("Vrl0");
  const auto make = [&] {
    auto job = MakeJob(type, FourCharacterCode("R10k"), 37, 9);
    for (const auto& [kind, bytes] :
         std::vector<std::pair<OSType, Bytes>>{{FourCharacterCode("fiel"), {2, 6}},
                                               {FourCharacterCode("Rnge"), {2}},
                                               {kBits, {9}},
                                               {kTagType, TagBytes(0x59525942)},
                                               {kColour, {'n', 'c', 'l', 'c', 0, 1, 0, 1, 0, 1}}})
      AddExtension(job->Description(), kind, bytes);
    SetBuffer(*job,
              1700);  // below the worst case of (318 * 37 + 9 + 7) / 8 + 24 = 1496 and a row of look-ahead
    return job;
  };
  const auto open = [&] {
    const ComponentInstance compressor = OpenCompressorOf(type);
    SetRecord(compressor, Record({0, 0, 1, 0, 0}));
    return compressor;
  };
  const ComponentInstance plain = open();
  const auto model = make();
  ASSERT_EQ(Compress(plain, *model), noErr);
  Host->CloseComponent(plain);
  int failures = 0;
  for (i32 number = 1;; ++number) {
    ASSERT_LT(number, 200);
    const ComponentInstance compressor = open();
    const auto job = make();
    embedded::FailAllocation(number);
    const ComponentResult result = Compress(compressor, *job);
    const bool isUntouched = job->buffer == Bytes(1700, 0xA5);
    embedded::FailAllocation(0);
    if (result == noErr) {
      EXPECT_EQ(FrameOf(*job), FrameOf(*model)) << number;
      EXPECT_EQ(embedded::ExtensionBytes(job->Description()), embedded::ExtensionBytes(model->Description()));
    } else {
      ++failures;
      EXPECT_EQ(result, memFullErr) << number;
      EXPECT_TRUE(isUntouched) << number;
      const auto next = make();
      ASSERT_EQ(Compress(compressor, *next), noErr) << number;
      EXPECT_EQ(FrameOf(*next), FrameOf(*model)) << number;
    }
    Host->CloseComponent(compressor);
    if (result == noErr) break;
  }
  EXPECT_GE(failures, 12);
}

}  // namespace

}  // namespace vorel::component
