// Opening and closing of decompressors, and their answers to the host's questions.
#include "component/decompressor.h"

#include "tests/component/decompressor_fixture.h"

namespace vorel::component {

namespace {

using std::string_literals::operator""s;

constexpr i32 kVersions[] = {0x05020000, 0x06508000, 0x06FFFFFF, 0x07000000, 0x07798000};

// --- The record of the codec ---

struct DecompressorInfoTest : DecompressorTest {
  static void ExpectInfo(const CodecInfo& info, OSType subtype) {
    const bool isWide = subtype == FourCharacterCode("Vrl4");
    EXPECT_EQ(info.version, 0);
    EXPECT_EQ(info.revisionLevel, 0x0267);
    EXPECT_EQ(info.vendor, FourCharacterCode("TmRk"));
    EXPECT_EQ(info.decompressFlags, 0x10200020);
    EXPECT_EQ(info.compressFlags, subtype == FourCharacterCode("Vrl1") ? 0 : 0x10200020);
    EXPECT_EQ(info.formatFlags, isWide ? 0x1040 : 0x1060);
    EXPECT_EQ(info.compressionAccuracy, 255);
    EXPECT_EQ(info.decompressionAccuracy, 255);
    EXPECT_EQ(info.compressionSpeed, 205);
    EXPECT_EQ(info.decompressionSpeed, 236);
    EXPECT_EQ(info.compressionLevel, 166);
    EXPECT_EQ(info.minimumHeight, 1);
    EXPECT_EQ(info.minimumWidth, 1);
    EXPECT_EQ(info.decompressPipelineLatency, 0);
    EXPECT_EQ(info.compressPipelineLatency, 0);
    EXPECT_LE(info.typeName[0], 31);
  }

  ComponentResult Ask(CodecInfo* info) const {
    return embedded::CallSelector(instance, kImageCodecGetCodecInfoSelect, info);
  }
};

TEST_F(DecompressorInfoTest, IsThatOfTheComponentsOwnResource) {
  for (int digit = 0; digit < 8; ++digit) {
    const OSType subtype = FourCharacterCode("Vrl0") + static_cast<u32>(digit);
    OpenOf(subtype);
    CodecInfo info = {};
    EXPECT_EQ(Ask(&info), noErr);
    ExpectInfo(info, subtype);
  }
  CodecInfo info = {};
  OpenOf(FourCharacterCode("Vrl4"));
  EXPECT_EQ(Ask(&info), noErr);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(info.typeName) + 1, info.typeName[0]),
            "Vorel Y'CbCr 8bw 4:2:2");
}

OSErr resourceError = noErr;
i32 resourceBytes = 72;

// A host that has turned the numbers of the resource to its own order.
OSErr GetNativeResource(ComponentInstance, OSType type, i16 id, Handle* resource) {
  EXPECT_EQ(type, FourCharacterCode("cdci"));
  EXPECT_EQ(id, 23584);
  *resource = nullptr;
  if (resourceError != noErr) return resourceError;
  CodecInfo info = {};
  info.revisionLevel = 0x0267;
  info.vendor = FourCharacterCode("TmRk");
  info.compressionSpeed = 205;
  info.formatFlags = 0x1060;
  *resource = Host->NewHandleClear(resourceBytes);
  std::memcpy(**resource, &info, static_cast<std::size_t>(std::min<i32>(resourceBytes, sizeof info)));
  return noErr;
}

TEST_F(DecompressorInfoTest, MayComeInTheOrderOfTheMachine) {
  Replace().GetComponentResource = GetNativeResource;
  CodecInfo info = {};
  EXPECT_EQ(Ask(&info), noErr);
  EXPECT_EQ(info.revisionLevel, 0x0267);
  EXPECT_EQ(info.vendor, FourCharacterCode("TmRk"));
  EXPECT_EQ(info.compressionSpeed, 205);
  EXPECT_EQ(info.formatFlags, 0x1060);
}

TEST_F(DecompressorInfoTest, StaysUntouchedWithoutAWholeResource) {
  Replace().GetComponentResource = GetNativeResource;
  CodecInfo info = {};
  info.vendor = 77;
  resourceError = -192;
  EXPECT_EQ(Ask(&info), -192);
  resourceError = noErr;
  resourceBytes = 71;
  EXPECT_EQ(Ask(&info), -192);
  resourceBytes = 72;
  EXPECT_EQ(info.vendor, 77u);
  Host = real;
  embedded::FailAllocation(1);
  EXPECT_EQ(Ask(&info), -108);
  EXPECT_EQ(info.vendor, 77u);
  EXPECT_EQ(Ask(nullptr), -50);
}

// --- Small questions ---

TEST_F(DecompressorTest, TheSizeOfAnImageIsThatOfItsDescription) {
  const ImageDescriptionHandle description = Describe(64, 48);
  (*description)->dataSize = 123456;
  i32 size = 0;
  const auto ask = [&](ImageDescriptionHandle of, i32* to) {
    return embedded::CallSelector(instance, kImageCodecGetCompressedImageSizeSelect, of, nullptr, 0, nullptr,
                                  to);
  };
  EXPECT_EQ(ask(description, &size), noErr);
  EXPECT_EQ(size, 123456);
  EXPECT_EQ(ask(nullptr, &size), -50);
  EXPECT_EQ(ask(description, nullptr), -50);
  ImageDescription* none = nullptr;
  EXPECT_EQ(ask(&none, &size), -50);
  EXPECT_EQ(size, 123456);
}

TEST_F(DecompressorTest, GammaMatchesIfAllThreeAreTheSame) {
  const ImageDescriptionHandle description = Describe(8, 8);
  AddTag(description, WordOfBytes("ARGB"));
  AddExtension(description, FourCharacterCode("gama"), "\x00\x01\xCC\xCC"s);
  CodecDecompressParams parameters = ParametersFor(description);
  ASSERT_EQ(Preflight(parameters), noErr);
  const auto canMatch = [this](Slot source, Slot destination) {
    i32 answer = -1;
    EXPECT_EQ(
        embedded::CallSelector(instance, kImageCodecRequestGammaLevelSelect, source, destination, &answer),
        noErr);
    return answer;
  };
  EXPECT_EQ(canMatch(0x1CCCC, 0x1CCCC), 1);
  EXPECT_EQ(canMatch(0x1CCCC, 0x23333), 0);
  EXPECT_EQ(canMatch(0x23333, 0x1CCCC), 0);
  EXPECT_EQ(canMatch(0x23333, 0x23333), 0);
  EXPECT_EQ(canMatch(0, 0), 0);
  const Slot rubbish = static_cast<Slot>(u64{0x7123456700000000});
  EXPECT_EQ(canMatch(rubbish | 0x1CCCC, 0x1CCCC), 1);
  EXPECT_EQ(embedded::CallSelector(instance, kImageCodecRequestGammaLevelSelect, 0, 0, nullptr), -50);
  EXPECT_EQ(embedded::CallSelector(instance, kImageCodecGetSourceDataGammaLevelSelect, nullptr), -50);
}

TEST_F(DecompressorTest, TheTargetIsKeptApartFromTheInstance) {
  EXPECT_EQ(Storage().self, instance);
  EXPECT_EQ(Storage().target, instance);
  int somebody = 0;
  EXPECT_EQ(embedded::CallSelector(instance, kComponentTargetSelect, &somebody), noErr);
  EXPECT_EQ(Storage().self, instance);
  EXPECT_EQ(reinterpret_cast<int*>(Storage().target), &somebody);
}

struct Call {
  ComponentInstance instance;
  i16 what;
  u8 paramSize;
  Slot slots[4];
};
std::vector<Call> calls;

ComponentResult NoteCall(ComponentInstance instance, ComponentParameters* parameters) {
  Call call = {instance, parameters->what, parameters->paramSize, {}};
  std::memcpy(call.slots, parameters->params,
              std::min<std::size_t>(parameters->paramSize, sizeof call.slots));
  calls.push_back(call);
  return 0;
}

TEST_F(DecompressorTest, OpenMakesTheInstanceTheTargetOfItsBase) {
  Host->CloseComponent(instance);
  instance = nullptr;
  calls.clear();
  Replace().CallComponent = NoteCall;
  OpenOf(kGenericSubtype);
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].instance, Storage().delegate);
  EXPECT_EQ(calls[0].what, -6);
  EXPECT_EQ(calls[0].paramSize, sizeof(Slot));
  EXPECT_EQ(calls[0].slots[0], reinterpret_cast<Slot>(instance));
}

TEST_F(DecompressorTest, TheBaseIsAskedForItsWorkFunctionFromVersion7On) {
  for (const i32 version : kVersions) {
    Restart({.quickTimeVersion = version});
    ComponentMPWorkFunction function = nullptr;
    void* refCon = nullptr;
    const ComponentResult result =
        embedded::CallSelector(instance, kComponentGetMPWorkFunctionSelect, &function, &refCon);
    EXPECT_EQ(result, version < 0x07000000 ? -8962 : 0) << version;
    EXPECT_EQ(function != nullptr, version >= 0x07000000);
    EXPECT_EQ(refCon != nullptr, version >= 0x07000000);
  }
}

TEST_F(DecompressorTest, TheDrawProcedureIsMadeOnceAndDraws) {
  calls.clear();
  Replace().CallComponent = NoteCall;
  ComponentMPWorkFunction function = nullptr;
  void* refCon = nullptr;
  for (int time = 0; time < 2; ++time)
    EXPECT_EQ(embedded::CallSelector(instance, kComponentGetMPWorkFunctionSelect, &function, &refCon), noErr);
  ASSERT_EQ(calls.size(), 2u);
  for (const Call& call : calls) {
    EXPECT_EQ(call.instance, Storage().delegate);
    EXPECT_EQ(call.what, 37);
    EXPECT_EQ(call.paramSize, 4 * sizeof(Slot));
    EXPECT_EQ(call.slots[0], reinterpret_cast<Slot>(&function));
    EXPECT_EQ(call.slots[1], reinterpret_cast<Slot>(&refCon));
    EXPECT_EQ(call.slots[2], calls[0].slots[2]);
    EXPECT_EQ(call.slots[3], reinterpret_cast<Slot>(instance->storage));
  }
  const auto draw = reinterpret_cast<ImageCodecMPDrawBand>(calls[0].slots[2]);
  EXPECT_EQ(draw(instance->storage, nullptr), -8972);
  Host = real;

  const Frame frame = MakeFrame(SourceOf("ARGB"), 16, 4);
  ASSERT_EQ(PreflightFor(frame), noErr);
  Band band = MakeBand(ParametersFor(Describe(frame)), 32, frame.bytes);
  Band other = MakeBand(ParametersFor(Describe(frame)), 32, frame.bytes);
  ASSERT_EQ(Begin(instance, band), noErr);
  EXPECT_EQ(draw(instance->storage, &band.record), noErr);
  EXPECT_EQ(End(instance, band, noErr), noErr);
  EXPECT_EQ(DecodeBand(instance, other), noErr);
  EXPECT_EQ(band.picture->bytes, other.picture->bytes);
}

TEST_F(DecompressorTest, TheWorkFunctionNeedsPlaces) {
  ComponentMPWorkFunction function = nullptr;
  void* refCon = nullptr;
  EXPECT_EQ(embedded::CallSelector(instance, kComponentGetMPWorkFunctionSelect, nullptr, &refCon), -50);
  EXPECT_EQ(embedded::CallSelector(instance, kComponentGetMPWorkFunctionSelect, &function, nullptr), -50);
}

// --- Initialize ---

TEST_F(DecompressorTest, InitializeTellsTheRecordAndWhetherThreadsMayDraw) {
  for (const i32 version : kVersions) {
    Restart({.quickTimeVersion = version});
    for (const i32 size : {0, 20, 32, 40}) {
      ImageSubCodecDecompressCapabilities answers;
      std::memset(&answers, 0x33, sizeof answers);
      ImageSubCodecDecompressCapabilities expected = answers;
      answers.recordSize = size;
      answers.canAsync = 7;
      EXPECT_EQ(embedded::CallSelector(instance, kImageCodecInitializeSelect, &answers), noErr);
      expected.recordSize = size == 0 ? 32 : size;
      expected.decompressRecordSize = sizeof(FrameRecord);
      expected.canAsync = version >= 0x07000000 ? 1 : 0;
      if (version >= 0x07000000) expected.subCodecIsMultiBufferAware = 1;
      EXPECT_EQ(std::memcmp(&answers, &expected, sizeof answers), 0) << version << " " << size;
    }
  }
  EXPECT_GE(sizeof(FrameRecord), 16416u);
  EXPECT_EQ(embedded::CallSelector(instance, kImageCodecInitializeSelect, nullptr), -50);
}

}  // namespace

}  // namespace vorel::component
