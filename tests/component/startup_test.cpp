// What components ask of their surroundings when they open, and which pixel formats they register.
#include "component/startup.h"

#include <map>
#include <utility>

#include "base/bytes.h"
#include "component/decompressor.h"
#include "component/embedded/instances.h"
#include "tests/component/component_fixture.h"

namespace vorel::component {

namespace {

struct StartupTest : ComponentTest {
  void TearDown() override {
    if (real != nullptr) Host = real;
    ComponentTest::TearDown();
  }

  // Lets a test replace operations of the host that runs.
  HostOperations& Replace() {
    real = Host;
    replaced = *real;
    Host = &replaced;
    return replaced;
  }

  HostOperations replaced = {};
  const HostOperations* real = nullptr;
};

// --- The application around the components ---

struct ApplicationRow {
  std::string path;
  std::optional<embedded::ExecutableMajors> majors;
  bool isAfterEffects;
  bool isOld;
};

TEST_F(StartupTest, TheApplicationIsKnownByTheEndOfItsNameAndItsVersions) {
  const std::string path = "C:\\Program Files\\Effects\\AfterFX.exe";
  const ApplicationRow rows[] = {
      {path, std::nullopt, true, false},
      {path, {{7, 7}}, true, true},
      {path, {{7, 9}}, true, true},
      {path, {{9, 7}}, true, true},
      {path, {{0, 0}}, true, true},
      {path, {{8, 8}}, true, false},
      {path, {{8, 9}}, true, false},
      {path, {{9, 8}}, true, false},
      {"AfterFX.exe", {{7, 7}}, true, true},
      {"C:\\NotQuiteAfterFX.exe", {{7, 7}}, true, true},
      {"C:\\afterfx.exe", {{7, 7}}, false, false},
      {"C:\\AfterFX.EXE", {{7, 7}}, false, false},
      {"C:\\AfterFX.exe.bak", {{7, 7}}, false, false},
      {"C:\\AfterFX.exe\\player.exe", {{7, 7}}, false, false},
      {"fterFX.exe", {{7, 7}}, false, false},
      {"x", {{7, 7}}, false, false},
      {std::string(4095 - 11, 'x') + "AfterFX.exe", std::nullopt, true, false},
      {std::string(4096 - 11, 'x') + "AfterFX.exe", std::nullopt, false, false},  // cut by a character
  };
  for (const ApplicationRow& row : rows) {
    StartHost({.executablePath = row.path, .executableMajors = row.majors});
    EXPECT_EQ(HostIsAfterEffects(), row.isAfterEffects) << row.path;
    EXPECT_EQ(HostIsOldAfterEffects(), row.isOld) << row.path;
    const ComponentInstance instance = Open(kDecompressorType, kGenericSubtype);
    ASSERT_NE(instance, nullptr);
    const auto& facts = reinterpret_cast<const Decompressor*>(instance->storage)->host;
    EXPECT_EQ(facts.hostIsAfterEffects, row.isAfterEffects) << row.path;
    EXPECT_EQ(facts.hostIsOldAfterEffects, row.isOld) << row.path;
    EXPECT_EQ(Host->CloseComponent(instance), noErr);
  }
}

TEST_F(StartupTest, TheVersionOfTheHostIsKept) {
  for (const i32 version : {0x05020000, 0x06508000, 0x07798000}) {
    StartHost({.quickTimeVersion = version});
    HostFacts facts = {};
    EXPECT_EQ(ProbeHost(facts), noErr);
    EXPECT_EQ(facts.quickTimeVersion, static_cast<u32>(version));
  }
}

TEST_F(StartupTest, NoComponentOpensWithoutTheVersionOfTheHost) {
  StartHost({.quickTimeVersion = 0});
  const auto all = embedded::FindComponents(0, 0, 0);
  ASSERT_EQ(all.size(), 34u);
  for (const embedded::ComponentListing& listing : all) {
    ComponentInstance instance = nullptr;
    EXPECT_EQ(embedded::OpenComponent(listing.number, &instance), -2093) << listing.entry;
    EXPECT_EQ(embedded::CountsInUse(), embedded::HostCounts{}) << listing.entry;
  }
}

OSErr HaveNoComponents(OSType, OSType, ComponentInstance* instance) {
  *instance = nullptr;
  return -3000;
}

TEST_F(StartupTest, ADecompressorDoesNotOpenWithoutTheBase) {
  Replace().OpenADefaultComponent = HaveNoComponents;
  ComponentInstance instance = nullptr;
  const u32 number = embedded::FindComponents(kDecompressorType, kGenericSubtype, 0)[0].number;
  EXPECT_EQ(embedded::OpenComponent(number, &instance), -3000);
  EXPECT_EQ(embedded::CountsInUse(), embedded::HostCounts{});
}

// --- Pixel formats ---

struct FormatRow {
  const char (&code)[5];
  i16 bits;
  bool hasAlpha;
  Fixed gamma;
  i16 components;
  i16 componentBits;
};

constexpr FormatRow kFormats[] = {
    {"L64A", 64, true, 0, 4, 16},        {"F10k", 30, false, 0, 3, 10},
    {"R10k", 30, false, 0, 3, 10},       {"S10k", 30, false, 0, 3, 10},
    {"F210", 30, false, 0, 3, 10},       {"r210", 30, false, 0, 3, 10},
    {"S210", 30, false, 0, 3, 10},       {"VRGB", 32, true, 0, 4, 8},
    {"V416", 64, true, 0x23333, 4, 16},  {"v410", 30, false, 0x23333, 3, 10},
    {"VUYA", 32, true, 0x23333, 4, 8},   {"v210", 20, false, 0x23333, 3, 10},
    {"v216", 32, false, 0x23333, 3, 16}, {"Y216", 32, false, 0x23333, 3, 16},
    {"2Vuy", 16, false, 0x23333, 3, 8},
};

std::vector<OSType> AllCodes() {
  std::vector<OSType> codes;
  for (const FormatRow& row : kFormats) codes.push_back(FourCharacterCode(row.code));
  return codes;
}

std::vector<std::pair<OSType, ICMPixelFormatInfo>> registered;

OSErr KnowNoFormat(OSType, ICMPixelFormatInfo*) {
  return -50;
}

OSErr NoteFormat(OSType code, ICMPixelFormatInfo* info) {
  registered.emplace_back(code, *info);
  return -50;  // which nobody minds
}

// Which parts of a record a host of this version is given.
struct VersionRow {
  i32 version;
  bool subsampling;
  bool components;
};

TEST_F(StartupTest, RecordsOfPixelFormatsHoldWhatTheVersionKnows) {
  const VersionRow versions[] = {
      {0x05020000, false, false}, {0x05FFFFFF, false, false}, {0x06000000, true, false},
      {0x064FFFFF, true, false},  {0x06500000, true, true},   {0x07798000, true, true},
  };
  for (const VersionRow& version : versions) {
    if (real != nullptr) Host = real;
    StartHost({.quickTimeVersion = version.version});
    HostOperations& operations = Replace();
    operations.ICMGetPixelFormatInfo = KnowNoFormat;
    operations.ICMSetPixelFormatInfo = NoteFormat;
    registered.clear();
    const ComponentInstance instance = Open(kDecompressorType, kGenericSubtype);
    ASSERT_NE(instance, nullptr);
    ASSERT_EQ(registered.size(), std::size(kFormats));
    for (std::size_t i = 0; i < std::size(kFormats); ++i) {
      const FormatRow& row = kFormats[i];
      ICMPixelFormatInfo expected = {};
      expected.size = 100;
      expected.formatFlags = row.hasAlpha ? 0x80 : 0;
      expected.bitsPerPixel[0] = row.bits;
      expected.defaultGammaLevel = row.gamma;
      expected.horizontalSubsampling[0] = version.subsampling ? 1 : 0;
      expected.verticalSubsampling[0] = version.subsampling ? 1 : 0;
      expected.cmpCount = version.components ? row.components : i16{0};
      expected.cmpSize = version.components ? row.componentBits : i16{0};
      EXPECT_EQ(registered[i].first, FourCharacterCode(row.code)) << row.code;
      EXPECT_EQ(std::memcmp(&registered[i].second, &expected, sizeof expected), 0)
          << row.code << " " << version.version;
    }
    Host->CloseComponent(instance);
  }
}

TEST_F(StartupTest, AFormatThatIsKnownStaysAsItIs) {
  ICMPixelFormatInfo own = {};
  own.size = sizeof own;
  own.bitsPerPixel[0] = 77;
  ASSERT_EQ(Host->ICMSetPixelFormatInfo(FourCharacterCode("v210"), &own), noErr);
  const ComponentInstance instance = Open(kDecompressorType, kGenericSubtype);
  EXPECT_EQ(Host->QTGetPixelSize(FourCharacterCode("v210")), 77);
  EXPECT_EQ(Host->QTGetPixelSize(FourCharacterCode("v216")), 32);
  Host->CloseComponent(instance);
}

TEST_F(StartupTest, ASecondInstanceFindsAllFormatsKnown) {
  const ComponentInstance first = Open(kDecompressorType, kGenericSubtype);
  EXPECT_EQ(embedded::RegisteredPixelFormats(), AllCodes());
  Replace().ICMSetPixelFormatInfo = NoteFormat;
  registered.clear();
  const ComponentInstance second = Open(kCompressorType, kGenericSubtype);
  EXPECT_TRUE(registered.empty());
  Host->CloseComponent(second);
  Host->CloseComponent(first);
}

TEST_F(StartupTest, EachKindOfComponentRegistersItsFormats) {
  const std::vector<OSType> v410 = {FourCharacterCode("v410")};
  const std::vector<OSType> tenBits = {FourCharacterCode("v210"), FourCharacterCode("v216"),
                                       FourCharacterCode("Y216")};
  StartHost({});
  for (const embedded::ComponentListing& listing : embedded::FindComponents(0, 0, 0)) {
    StartHost({});
    ComponentInstance instance = nullptr;
    ASSERT_EQ(embedded::OpenComponent(listing.number, &instance), noErr);
    std::vector<OSType> expected;
    if (listing.type != kTranscoderType) expected = AllCodes();
    if (listing.entry == "Qt2") expected = v410;
    if (listing.entry == "Qt4") expected = tenBits;
    EXPECT_EQ(embedded::RegisteredPixelFormats(), expected) << listing.entry;
    Host->CloseComponent(instance);
  }
}

// --- The time that a frame takes ---

u32 TimeOf(ComponentInstance instance, PixMapHandle map, const Rect* rectangle) {
  u32 spatial = 1;
  u32 temporal = 1;
  u32 time = 1;
  EXPECT_EQ(embedded::CallSelector(instance, kImageCodecGetCompressionTimeSelect, map, rectangle, 24,
                                   &spatial, &temporal, &time),
            noErr);
  EXPECT_EQ(spatial, 1024u);
  EXPECT_EQ(temporal, 0u);
  return time;
}

// 1920 x 1080 are 2,073,600 pixels. At 30 bits (62,208,000 + 2) / 256 = 243,000, and a 3375th of it is 72; at 24
// bits 194,400 and 57; at 20 bits 162,000 and 48; at 16 bits 129,600 and 38.
TEST_F(StartupTest, TheTimeGoesByDepthAreaAndSpeed) {
  const std::map<std::string, u32> at1000 = {{"Vrl5", 72}, {"Vrl7", 72}, {"Vrl1", 57}, {"Vrl6", 48},
                                             {"Vrl3", 38}, {"Vrl4", 38}, {"Vrl2", 57}, {"Vrl0", 57}};
  const Rect rectangle = {10, 20, 1090, 1940};
  for (const auto& [subtype, expected] : at1000) {
    u32 code = 0;
    for (const char letter : subtype) code = code << 8 | static_cast<u8>(letter);
    for (const u32 megahertz : {0u, 1000u, 1u, 2400u, 72000u, 72001u}) {
      StartHost({.processorMegahertz = megahertz});
      const ComponentInstance instance = Open(kCompressorType, code);
      const u32 speed = megahertz == 0 ? 1000 : megahertz;
      EXPECT_EQ(TimeOf(instance, nullptr, &rectangle), expected * 1000 / speed) << subtype << megahertz;
      Host->CloseComponent(instance);
    }
  }
}

TEST_F(StartupTest, TheSizeIsThatOfTheRectangleElseOfTheMap) {
  StartHost({.processorMegahertz = 1000});
  const ComponentInstance instance = Open(kCompressorType, FourCharacterCode("Vrl7"));
  const Rect rectangle = {0, 0, 1080, 1920};
  PixMap map = {};
  map.bounds = {-100, 40, 440, 1000};  // 960 x 540: (15,552,000 + 2) / 256 = 60,750, a 3375th is 18
  PixMap* master = &map;
  EXPECT_EQ(TimeOf(instance, &master, &rectangle), 72u);
  EXPECT_EQ(TimeOf(instance, &master, nullptr), 18u);
  EXPECT_EQ(TimeOf(instance, nullptr, nullptr), 0u);
  Host->CloseComponent(instance);
}

TEST_F(StartupTest, TheTimeNeedsStorageAndAPlace) {
  const ComponentInstance instance = Open(kCompressorType, kGenericSubtype);
  EXPECT_EQ(embedded::CallSelector(instance, kImageCodecGetCompressionTimeSelect, nullptr, nullptr, 24,
                                   nullptr, nullptr, nullptr),
            -50);
  const Handle storage = instance->storage;
  Host->SetComponentInstanceStorage(instance, nullptr);
  u32 time = 0;
  EXPECT_EQ(embedded::CallSelector(instance, kImageCodecGetCompressionTimeSelect, nullptr, nullptr, 24,
                                   nullptr, nullptr, &time),
            -50);
  Host->SetComponentInstanceStorage(instance, storage);
  Host->CloseComponent(instance);
}

}  // namespace

}  // namespace vorel::component
