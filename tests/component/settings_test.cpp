// The settings record and the settings as text.
#include "component/settings.h"

#include "tests/component/encoding_fixture.h"

namespace vorel::component {

namespace {

using SettingsTest = EncodingTest;

constexpr OSType kFirst = FourCharacterCode("Vrl0");

Bytes Swapped(Bytes bytes) {
  for (std::size_t i = 0; i + 3 < bytes.size(); i += 4) {
    std::swap(bytes[i], bytes[i + 3]);
    std::swap(bytes[i + 1], bytes[i + 2]);
  }
  return bytes;
}

TEST_F(SettingsTest, NewCompressorConvertsBestAndLeavesTheRest) {
  for (const char* subtype : {"Vrl0", "Vrl1", "Vrl2", "Vrl3", "Vrl4", "Vrl5", "Vrl6", "Vrl7"}) {
    const ComponentInstance compressor = OpenCompressorOf(LoadBig32(reinterpret_cast<const u8*>(subtype)));
    EXPECT_EQ(GetRecord(compressor), Pairs({{kFirst, 0},
                                            {FourCharacterCode("Scan"), 0},
                                            {FourCharacterCode("Dest"), 1},
                                            {FourCharacterCode("Vide"), 0},
                                            {FourCharacterCode("Rnge"), 0}}))
        << subtype;
    Host->CloseComponent(compressor);
  }
}

TEST_F(SettingsTest, RecordComesBackAsItWasSet) {
  const ComponentInstance compressor = OpenCompressorOf(kFirst);
  EXPECT_EQ(SetRecord(compressor, Record({1, 2, 0, 3, 2})), noErr);
  EXPECT_EQ(GetRecord(compressor), Record({1, 2, 0, 3, 2}));
  Host->CloseComponent(compressor);
}

TEST_F(SettingsTest, RecordIsWrittenOverWhateverStoodInTheHandle) {
  const ComponentInstance compressor = OpenCompressorOf(kFirst);
  const Handle handle = HandleOf(Bytes(100, 0xEE));
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecGetSettingsSelect, handle), noErr);
  EXPECT_EQ(BytesOfHandle(handle), Record({0, 0, 1, 0, 0}));
  Host->DisposeHandle(handle);
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecGetSettingsSelect, nullptr), paramErr);
  Host->CloseComponent(compressor);
}

TEST_F(SettingsTest, RecordOfTheOtherByteOrderIsRead) {
  const ComponentInstance compressor = OpenCompressorOf(kFirst);
  EXPECT_EQ(SetRecord(compressor, Swapped(Record({1, 2, 0, 3, 2}))), noErr);
  EXPECT_EQ(GetRecord(compressor), Record({1, 2, 0, 3, 2}));
  EXPECT_EQ(Published(FourCharacterCode("Vide")), 3);
  Host->CloseComponent(compressor);
}

TEST_F(SettingsTest, OrderIsToldPairByPair) {
  const ComponentInstance compressor = OpenCompressorOf(kFirst);
  Bytes record = Pairs({{kFirst, 1}});
  const Bytes rest = Swapped(Pairs({{FourCharacterCode("Vide"), 4}}));
  record.insert(record.end(), rest.begin(), rest.end());
  EXPECT_EQ(SetRecord(compressor, record), noErr);
  EXPECT_EQ(GetRecord(compressor), Record({1, 0, 1, 4, 0}));
  Host->CloseComponent(compressor);
}

TEST_F(SettingsTest, LastOfTwoPairsCounts) {
  const ComponentInstance compressor = OpenCompressorOf(kFirst);
  EXPECT_EQ(
      SetRecord(
          compressor,
          Pairs({{kFirst, 1}, {FourCharacterCode("Vide"), 1}, {FourCharacterCode("Vide"), 3}, {kFirst, 0}})),
      noErr);
  EXPECT_EQ(GetRecord(compressor), Record({0, 0, 1, 3, 0}));
  Host->CloseComponent(compressor);
}

TEST_F(SettingsTest, UnknownKeysAndMissingKeysChangeNothing) {
  const ComponentInstance compressor = OpenCompressorOf(kFirst);
  SetRecord(compressor, Record({1, 2, 0, 3, 2}));
  EXPECT_EQ(SetRecord(compressor, Pairs({{kFirst, 0}, {FourCharacterCode("Abcd"), 9}})), noErr);
  EXPECT_EQ(GetRecord(compressor), Record({0, 2, 0, 3, 2}));
  const Bytes extended = [] {
    Bytes bytes = Record({1, 1, 1, 1, 1});
    const Bytes more = Pairs({{FourCharacterCode("More"), 5}});
    bytes.insert(bytes.end(), more.begin(), more.end());
    return bytes;
  }();
  const Handle handle = HandleOf(extended);
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecSetSettingsSelect, handle), noErr);
  EXPECT_EQ(BytesOfHandle(handle), extended);  // the host's copy keeps what is unknown here
  Host->DisposeHandle(handle);
  EXPECT_EQ(GetRecord(compressor), Record({1, 1, 1, 1, 1}));
  Host->CloseComponent(compressor);
}

TEST_F(SettingsTest, NothingIsNoRecordAndNoError) {
  const ComponentInstance compressor = OpenCompressorOf(kFirst);
  SetRecord(compressor, Record({1, 2, 0, 3, 2}));
  EXPECT_EQ(SetRecord(compressor, {}), noErr);
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecSetSettingsSelect, nullptr), noErr);
  EXPECT_EQ(GetRecord(compressor), Record({1, 2, 0, 3, 2}));
  Host->CloseComponent(compressor);
}

TEST_F(SettingsTest, RecordsOfAnotherSizeOrSignatureAreRefusedWhole) {
  const ComponentInstance compressor = OpenCompressorOf(kFirst);
  const Bytes good = Record({1, 2, 0, 3, 2});
  for (std::size_t size = 1; size < good.size(); ++size) {
    if (size % 8 == 0) continue;
    EXPECT_EQ(SetRecord(compressor, Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size))),
              paramErr)
        << size;
  }
  EXPECT_EQ(SetRecord(compressor, Pairs({{FourCharacterCode("Scan"), 2}, {kFirst, 1}})), paramErr);
  EXPECT_EQ(SetRecord(compressor, Pairs({{0, 0}})), paramErr);
  EXPECT_EQ(GetRecord(compressor), Record({0, 0, 1, 0, 0}));
  EXPECT_EQ(Published(FourCharacterCode("Scan")), std::nullopt);
  Host->CloseComponent(compressor);
}

TEST_F(SettingsTest, ValuesArePublishedForTheWholeProcess) {
  const ComponentInstance compressor = OpenCompressorOf(kFirst);
  EXPECT_EQ(Published(FourCharacterCode("Vorl")), std::nullopt);
  SetRecord(compressor, Record({1, 2, 0, 3, 2}));
  EXPECT_EQ(Published(FourCharacterCode("Vorl")), 1);
  EXPECT_EQ(Published(FourCharacterCode("Scan")), 2);
  EXPECT_EQ(Published(FourCharacterCode("Dest")), 0);
  EXPECT_EQ(Published(FourCharacterCode("Vide")), 3);
  EXPECT_EQ(Published(FourCharacterCode("Rnge")), 2);
  EXPECT_EQ(Published(kFirst), std::nullopt);
  Host->CloseComponent(compressor);
}

TEST_F(SettingsTest, MemoryThatRunsOutLeavesTheHandle) {
  const ComponentInstance compressor = OpenCompressorOf(kFirst);
  const Handle handle = HandleOf({1, 2, 3});
  embedded::FailAllocation(1);
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecGetSettingsSelect, handle), memFullErr);
  EXPECT_EQ(BytesOfHandle(handle), (Bytes{1, 2, 3}));
  Host->DisposeHandle(handle);
  Host->CloseComponent(compressor);
}

// ---- Values in a record

TEST(SettingPairsTest, NativePairGoesBeforeAReversedOne) {
  Bytes record = Swapped(Pairs({{kFirst, 7}}));
  const Bytes native = Pairs({{kFirst, 5}});
  EXPECT_EQ(FindSetting(record.data(), 1, kFirst), 7u);
  record.insert(record.begin(), native.begin(), native.end());
  EXPECT_EQ(FindSetting(record.data(), 2, kFirst), 5u);
  EXPECT_EQ(FindSetting(record.data(), 2, FourCharacterCode("Scan")), std::nullopt);
  EXPECT_EQ(FindSetting(nullptr, 0, kFirst), std::nullopt);
}

TEST(SettingPairsTest, ReplacingKeepsOrderAndPlaceOfThePair) {
  const OSType scan = FourCharacterCode("Scan");
  Bytes record = Pairs({{kFirst, 1}, {scan, 1}, {scan, 2}});
  ReplaceSetting(record.data(), 3, scan, 9);
  EXPECT_EQ(record, Pairs({{kFirst, 1}, {scan, 1}, {scan, 9}}));
  ReplaceSetting(record.data(), 3, FourCharacterCode("Vide"), 4);
  EXPECT_EQ(record, Pairs({{kFirst, 1}, {scan, 1}, {scan, 9}}));
  record = Swapped(Pairs({{kFirst, 1}, {scan, 1}}));
  ReplaceSetting(record.data(), 2, scan, 2);
  EXPECT_EQ(record, Swapped(Pairs({{kFirst, 1}, {scan, 2}})));
}

TEST(SettingPairsTest, RecordIsKnownByItsFirstKeyAlone) {
  const Bytes native = Pairs({{kFirst, 0}, {1, 1}});
  EXPECT_TRUE(IsSettingsRecord(native.data(), 2));
  EXPECT_TRUE(IsSettingsRecord(Swapped(native).data(), 2));
  EXPECT_FALSE(IsSettingsRecord(native.data(), 0));
  EXPECT_FALSE(IsSettingsRecord(Pairs({{1, 1}, {kFirst, 0}}).data(), 2));
}

// ---- Text

std::string TextOf(ComponentInstance compressor) {
  Handle text = nullptr;
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecGetSettingsAsTextSelect, &text), noErr);
  if (text == nullptr) return {};
  const Bytes bytes = BytesOfHandle(text);
  Host->DisposeHandle(text);
  return {bytes.begin(), bytes.end()};
}

std::string ModeLine(u32 mode) {
  return mode == 0 ? "Mode: One-way\r" : "Mode: Self-check\r";
}

std::string OtherLines(u32 conversion, u32 standard, u32 range) {
  std::string text = conversion == 0 ? "Conversion: Perfect\r" : "Conversion: Best\r";
  text += "Video Color Standard: ";
  text += standard == 1   ? "HD\r"
          : standard == 2 ? "HD 1035\r"
          : standard == 3 ? "PAL|S\x83"
                            "CAM\r"
          : standard == 4 ? "unknown\r"
                          : "NTSC\r";
  text += range == 1 ? "RGB Input Range: Full\r"
                     : (range == 2 ? "RGB Input Range: Video\r" : "RGB Input Range: Automatic\r");
  return text;
}

TEST_F(SettingsTest, TextHasALineForEverySetting) {
  const ComponentInstance compressor = OpenCompressorOf(kFirst);
  const std::string names[] = {"Vorel\r", "Vorel p\r", "Vorel i\r", "Vorel\r"};
  for (u32 mode = 0; mode < 3; ++mode) {
    for (u32 scan = 0; scan < 4; ++scan) {
      for (u32 conversion = 0; conversion < 3; ++conversion) {
        for (u32 standard = 0; standard < 6; ++standard) {
          for (u32 range = 0; range < 4; ++range) {
            SetRecord(compressor, Record({mode, scan, conversion, standard, range}));
            EXPECT_EQ(TextOf(compressor),
                      names[scan] + ModeLine(mode) + OtherLines(conversion, standard, range));
          }
        }
      }
    }
  }
  Host->CloseComponent(compressor);
}

struct NameRow {
  const char* subtype;
  const char* format;
  const char* names[6];  // automatic, progressive, interlaced, then with alpha
};

constexpr NameRow kNameRows[] = {
    {"Vrl0", "BGRA", {"Vorel", "Vorel p", "Vorel i", "Vorel A", "Vorel A p", "Vorel A i"}},
    {"Vrl7",
     "b64a",
     {"Vorel RGB 10bf", "Vorel RGB 10bf p", "Vorel RGB 10bf i", "Vorel RGBA 10bf", "Vorel RGBA 10bf p",
      "Vorel RGBA 10bf i"}},
    {"Vrl1",
     "BGRA",
     {"Vorel RGB 8bf", "Vorel RGB 8bf p", "Vorel RGB 8bf i", "Vorel RGBA 8bf", "Vorel RGBA 8bf p",
      "Vorel RGBA 8bf i"}},
    {"Vrl5",
     "v410",
     {"Vorel Y'CbCr 10bv 4:4:4", "Vorel Y'CbCr 10bv 4:4:4p", "Vorel Y'CbCr 10bv 4:4:4i",
      "Vorel Y'CbCrA 10bv 4:4:4:4", "Vorel Y'CbCrA 10bv 4:4:4:4p", "Vorel Y'CbCrA 10bv 4:4:4:4i"}},
    {"Vrl2",
     "v408",
     {"Vorel Y'CbCr 8bv 4:4:4", "Vorel Y'CbCr 8bv 4:4:4p", "Vorel Y'CbCr 8bv 4:4:4i",
      "Vorel Y'CbCrA 8bv 4:4:4:4", "Vorel Y'CbCrA 8bv 4:4:4:4p", "Vorel Y'CbCrA 8bv 4:4:4:4i"}},
    {"Vrl6",
     "v210",
     {"Vorel Y'CbCr 10bv 4:2:2", "Vorel Y'CbCr 10bv 4:2:2p", "Vorel Y'CbCr 10bv 4:2:2i",
      "Vorel Y'CbCrA 10bv 4:2:2:4", "Vorel Y'CbCrA 10bv 4:2:2:4p", "Vorel Y'CbCrA 10bv 4:2:2:4i"}},
    {"Vrl3",
     "2vuy",
     {"Vorel Y'CbCr 8bv 4:2:2", "Vorel Y'CbCr 8bv 4:2:2p", "Vorel Y'CbCr 8bv 4:2:2i",
      "Vorel Y'CbCrA 8bv 4:2:2:4", "Vorel Y'CbCrA 8bv 4:2:2:4p", "Vorel Y'CbCrA 8bv 4:2:2:4i"}},
    {"Vrl4",
     "yuvu",
     {"Vorel Y'CbCr 8bw 4:2:2", "Vorel Y'CbCr 8bw 4:2:2p", "Vorel Y'CbCr 8bw 4:2:2i",
      "Vorel Y'CbCr 8bw 4:2:2", "Vorel Y'CbCr 8bw 4:2:2p", "Vorel Y'CbCr 8bw 4:2:2i"}},
};

TEST_F(SettingsTest, TextBeginsWithTheFamilysNameByScanAndAlpha) {
  for (const NameRow& row : kNameRows) {
    const OSType subtype = LoadBig32(reinterpret_cast<const u8*>(row.subtype));
    const ComponentInstance compressor = OpenCompressorOf(subtype);
    for (const u32 form : {0u, 1u, 2u, 3u, 4u, 5u}) {
      const auto job = MakeJob(subtype, LoadBig32(reinterpret_cast<const u8*>(row.format)), 8, 8,
                               form < 3 ? i16{24} : i16{32});
      ASSERT_EQ(Prepare(compressor, *job), noErr);
      SetRecord(compressor, Record({1, form % 3, 0, 3, 2}));
      const bool isWide = subtype == FourCharacterCode("Vrl4");  // whose list has two modes and no more
      EXPECT_EQ(TextOf(compressor),
                std::string(row.names[form]) + "\r" + ModeLine(1) + (isWide ? "" : OtherLines(0, 3, 2)));
    }
    Host->CloseComponent(compressor);
  }
}

TEST_F(SettingsTest, AlphaOfTheProcessCountsBeforeTheFirstPicture) {
  const ComponentInstance first = OpenCompressorOf(kFirst);
  const auto job = MakeJob(kFirst, 32, 8, 8, 32);
  ASSERT_EQ(Prepare(first, *job), noErr);
  const ComponentInstance second = OpenCompressorOf(kFirst);
  EXPECT_EQ(TextOf(second).substr(0, 8), "Vorel A\r");
  (*job->Description())->depth = 24;
  ASSERT_EQ(Prepare(second, *job), noErr);  // from here on its own, and the process's
  EXPECT_EQ(TextOf(second).substr(0, 6), "Vorel\r");
  EXPECT_EQ(TextOf(first).substr(0, 8), "Vorel A\r");
  Host->CloseComponent(second);
  Host->CloseComponent(first);
}

TEST_F(SettingsTest, EveryAllocationMayFailInTheText) {
  const ComponentInstance compressor = OpenCompressorOf(kFirst);
  i32 failures = 0;
  for (i32 number = 1; number < 50; ++number) {
    Handle text = nullptr;
    embedded::FailAllocation(number);
    const ComponentResult result =
        embedded::CallSelector(compressor, kImageCodecGetSettingsAsTextSelect, &text);
    embedded::FailAllocation(0);
    if (result == noErr) {
      Host->DisposeHandle(text);
      break;
    }
    EXPECT_EQ(result, memFullErr) << number;
    EXPECT_EQ(text, nullptr) << number;
    EXPECT_EQ(embedded::CountsInUse().handles, 0) << number;
    ++failures;
  }
  EXPECT_EQ(failures, 6);  // the handle and five lines
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecGetSettingsAsTextSelect, nullptr), paramErr);
  Host->CloseComponent(compressor);
}

}  // namespace

}  // namespace vorel::component
