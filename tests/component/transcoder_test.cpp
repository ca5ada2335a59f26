// Transcoders on the embedded host.
#include "component/transcoder.h"

#include "tests/component/encoding_fixture.h"
#include "vorel/frame_routines.h"

namespace vorel::component {

namespace {

using TranscoderTest = EncodingTest;

OSType Code(const char* text) {
  return LoadBig32(reinterpret_cast<const u8*>(text));
}

ComponentInstance OpenTranscoderOf(const char* source, const char* target) {
  const ComponentInstance instance = EncodingTest::Open(kTranscoderType, Code(source), Code(target));
  EXPECT_NE(instance, nullptr);
  return instance;
}

// A sequence as a host runs it, with samples of noise.
struct Job {
  ImageDescriptionHandle source;
  ImageDescriptionHandle result = nullptr;
  Bytes sample;
  Job(const char* format, i16 width, i16 height, std::size_t sampleBytes, i16 depth = 24)
      : source(embedded::MakeImageDescription(Code(format), width, height)),
        sample(Noise(Code(format), sampleBytes, 5)) {
    (*source)->depth = depth;
  }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;
  ~Job() {
    Dispose(source);
    if (result != nullptr) Dispose(result);
  }
};

ComponentResult Begin(ComponentInstance transcoder, Job& job) {
  return embedded::CallSelector(transcoder, kImageTranscoderBeginSequenceSelect, job.source, &job.result,
                                job.sample.data(), job.sample.size());
}

struct Converted {
  ComponentResult result;
  Bytes frame;
};

Converted Convert(ComponentInstance transcoder, Job& job, std::size_t sampleBytes) {
  u8* frame = nullptr;
  i32 size = -1;
  Converted converted = {};
  converted.result = embedded::CallSelector(transcoder, kImageTranscoderConvertSelect, job.sample.data(),
                                            sampleBytes, &frame, &size);
  if (converted.result == noErr) {
    converted.frame.assign(frame, frame + size);
    EXPECT_EQ((*job.result)->dataSize, size);
    EXPECT_EQ(embedded::CallSelector(transcoder, kImageTranscoderDisposeDataSelect, frame), noErr);
  } else {
    EXPECT_EQ(frame, nullptr);
    EXPECT_EQ(size, -1);
  }
  return converted;
}

Converted Convert(ComponentInstance transcoder, Job& job) {
  return Convert(transcoder, job, job.sample.size());
}

void Close(ComponentInstance transcoder) {
  EXPECT_EQ(embedded::CallSelector(transcoder, kImageTranscoderEndSequenceSelect), noErr);
  Host->CloseComponent(transcoder);
}

void SetScan(i32 scan) {
  Host->SetGestaltValue(FourCharacterCode("Scan"), scan);
}

// 5 x 3 and, for the blocks of 48 pixels of 'v210', 49 x 3.
TEST_F(TranscoderTest, SampleSizeIsThatOfThePixelFormat) {
  struct {
    const char* format;
    const char* target;
    i16 width;
    i32 bytes;
  } const rows[] = {{"v410", "Vrl5", 5, 60},  {"v408", "Vrl2", 5, 60},   {"r408", "Vrl2", 5, 60},
                    {"v210", "Vrl6", 5, 384}, {"v210", "Vrl6", 49, 768}, {"v216", "Vrl6", 5, 72},
                    {"Y216", "Vrl6", 5, 72},  {"2vuy", "Vrl3", 5, 36},   {"yuvs", "Vrl3", 5, 36},
                    {"yuv2", "Vrl4", 5, 36}};
  SetScan(1);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.format);
    for (const char* target : {row.target, "Vrl0"}) {
      const ComponentInstance transcoder = OpenTranscoderOf(row.format, target);
      Job job(row.format, row.width, 3, static_cast<std::size_t>(row.bytes));
      for (const i32 wrong : {row.bytes - 1, row.bytes + 1, 0, -1}) {
        EXPECT_EQ(embedded::CallSelector(transcoder, kImageTranscoderBeginSequenceSelect, job.source,
                                         &job.result, job.sample.data(), wrong),
                  paramErr);
        EXPECT_EQ(job.result, nullptr);
      }
      EXPECT_EQ(Begin(transcoder, job), noErr);
      EXPECT_EQ((*job.result)->cType, Code(row.target));  // also for a generic target
      Close(transcoder);
    }
  }
}

TEST_F(TranscoderTest, ResultIsACopyThatIsDescribedAnew) {
  SetScan(1);
  Host->SetGestaltValue(FourCharacterCode("Gama"), 0x00018000);
  const ComponentInstance transcoder = OpenTranscoderOf("v410", "Vrl5");
  Job job("v410", 20, 4, 320);
  (*job.source)->temporalQuality = 5;
  (*job.source)->spatialQuality = 6;
  AddExtension(job.source, FourCharacterCode("cspc"), {1, 2, 3, 4});
  AddExtension(job.source, FourCharacterCode("gama"), {1, 2, 3, 4});
  AddExtension(job.source, FourCharacterCode("pasp"), {0, 0, 0, 1, 0, 0, 0, 1});
  AddExtension(job.source, FourCharacterCode("Kesp"), {'o', 'l', 'd', '!'});
  const std::vector<u8> before = embedded::ExtensionBytes(job.source);
  ASSERT_EQ(Begin(transcoder, job), noErr);
  EXPECT_NE(job.result, job.source);
  EXPECT_EQ(embedded::ExtensionBytes(job.source), before);
  EXPECT_EQ((*job.source)->cType, Code("v410"));
  EXPECT_EQ((*job.result)->cType, Code("Vrl5"));
  EXPECT_EQ((*job.result)->width, 20);
  EXPECT_EQ((*job.result)->temporalQuality, 0u);
  EXPECT_EQ((*job.result)->spatialQuality, 1024u);
  EXPECT_EQ(Extension(job.result, FourCharacterCode("cspc")), (Bytes{'v', '4', '1', '0'}));
  EXPECT_EQ(Extension(job.result, FourCharacterCode("gama")), (Bytes{0, 1, 0x80, 0}));
  EXPECT_EQ(Extension(job.result, FourCharacterCode("pasp")), (Bytes{0, 0, 0, 1, 0, 0, 0, 1}));
  EXPECT_EQ(Extension(job.result, FourCharacterCode("Kesp")), (Bytes{'y', 'B', 'R', '\n'}));
  for (const char* type : {"cspc", "gama", "Kesp", "sgbt"})
    EXPECT_EQ(Extension(job.result, Code(type), 2), std::nullopt) << type;
  Close(transcoder);
}

TEST_F(TranscoderTest, GammaStaysWhereTheProcessHasNone) {
  SetScan(1);
  const ComponentInstance transcoder = OpenTranscoderOf("2vuy", "Vrl3");
  Job with("2vuy", 8, 4, 64);
  AddExtension(with.source, FourCharacterCode("gama"), {1, 2, 3, 4});
  ASSERT_EQ(Begin(transcoder, with), noErr);
  EXPECT_EQ(Extension(with.result, FourCharacterCode("gama")), (Bytes{1, 2, 3, 4}));
  Job without("2vuy", 8, 4, 64);
  ASSERT_EQ(Begin(transcoder, without), noErr);
  EXPECT_EQ(Extension(without.result, FourCharacterCode("gama")), std::nullopt);
  Close(transcoder);
}

TEST_F(TranscoderTest, SignificantBitsAreThoseOfTheSourceAtMost) {
  struct {
    const char* format;
    const char* target;
    std::size_t bytes;
    std::optional<u8> said;
    u8 written;
  } const rows[] = {{"v410", "Vrl5", 128, std::nullopt, 10},
                    {"v410", "Vrl5", 128, 16, 10},
                    {"v410", "Vrl5", 128, 8, 8},
                    {"v408", "Vrl2", 128, std::nullopt, 8},
                    {"r408", "Vrl2", 128, 10, 8},
                    {"v216", "Vrl6", 128, std::nullopt, 10},
                    {"Y216", "Vrl6", 128, 9, 9},
                    {"2vuy", "Vrl3", 64, 10, 8},
                    {"yuvs", "Vrl3", 64, 7, 7},
                    {"yuv2", "Vrl4", 64, std::nullopt, 8}};
  SetScan(1);
  for (const auto& row : rows) {
    const ComponentInstance transcoder = OpenTranscoderOf(row.format, row.target);
    Job job(row.format, 8, 4, row.bytes);
    if (row.said) AddExtension(job.source, FourCharacterCode("sgbt"), {*row.said});
    ASSERT_EQ(Begin(transcoder, job), noErr);
    EXPECT_EQ(Extension(job.result, FourCharacterCode("sgbt")), Bytes{row.written}) << row.format;
    Close(transcoder);
  }
}

struct FieldRow {
  std::optional<i32> scan;
  std::optional<Bytes> extension;
  u32 fields;
};

// The process's scan goes before the extension, and nothing said at all means two fields.
const FieldRow kFieldRows[] = {
    {std::nullopt, std::nullopt, 2},
    {std::nullopt, Bytes{1, 0}, 1},
    {std::nullopt, Bytes{2, 9}, 2},
    {std::nullopt, Bytes{0, 0}, 2},
    {std::nullopt, Bytes{}, 2},
    {0, Bytes{1, 0}, 1},
    {0, std::nullopt, 2},
    {1, Bytes{2, 9}, 1},
    {1, std::nullopt, 1},
    {2, Bytes{1, 0}, 2},
};

TEST_F(TranscoderTest, FieldsComeFromTheProcessOrTheSource) {
  for (const FieldRow& row : kFieldRows) {
    StartHost({});
    if (row.scan) SetScan(*row.scan);
    const ComponentInstance transcoder = OpenTranscoderOf("v410", "Vrl5");
    {
      Job job("v410", 20, 4, 320);
      if (row.extension) AddExtension(job.source, FourCharacterCode("fiel"), *row.extension);
      ASSERT_EQ(Begin(transcoder, job), noErr);
      // One field takes the interlaced tag, two fields take none.
      const bool isOne = row.fields == 1;
      EXPECT_EQ(Extension(job.result, FourCharacterCode("Kesp")),
                isOne ? (Bytes{'y', 'B', 'R', '\n'}) : (Bytes{0, 0, 0, 0}));
      EXPECT_EQ(NameOf(job.result), isOne ? "Vorel Y'CbCr 10bv 4:4:4p" : "Vorel Y'CbCr 10bv 4:4:4i");
      EXPECT_EQ(Convert(transcoder, job).result, isOne ? noErr : codecConditionErr);
    }
    Close(transcoder);
  }
}

struct TagRow {
  const char* format;
  const char* target;
  i16 depth;
  std::size_t bytes;  // of 20 x 4
  const char* one;    // tag and name of one field
  const char* oneName;
  const char* two;  // of two fields; null: the conversion fails
  const char* twoName;
};

constexpr TagRow kTagRows[] = {
    {"v410", "Vrl5", 24, 320, "yBR\n", "10bv 4:4:4p", nullptr, "10bv 4:4:4i"},
    {"v410", "Vrl5", 32, 320, "yBR\n", "10bv 4:4:4p", nullptr, "10bv 4:4:4i"},
    {"v408", "Vrl2", 24, 320, " YBR", "8bv 4:4:4p", " yBR", "8bv 4:4:4i"},
    {"v408", "Vrl2", 32, 320, "AYBR", "8bv 4:4:4:4p", "AyBR", "8bv 4:4:4:4i"},
    {"r408", "Vrl2", 24, 320, " YbR", "8bu 4:4:4p", " ybR", "8bu 4:4:4i"},
    {"r408", "Vrl2", 32, 320, "AYbR", "8bu 4:4:4:4p", "AybR", "8bu 4:4:4:4i"},
    {"v210", "Vrl6", 24, 512, "\xA2YRy", "10bv 4:2:2p", nullptr, "10bv 4:2:2i"},
    {"v216", "Vrl6", 24, 320, "\xA2YRy", "10bv 4:2:2p", nullptr, "10bv 4:2:2i"},
    {"Y216", "Vrl6", 24, 320, "\xA2YRy", "10bv 4:2:2p", nullptr, "10bv 4:2:2i"},
    {"2vuy", "Vrl3", 24, 160, "BYRy", "8bv 4:2:2p", nullptr, "8bv 4:2:2i"},
    {"yuvs", "Vrl3", 24, 160, "BYRy", "8bv 4:2:2p", nullptr, "8bv 4:2:2i"},
    {"yuv2", "Vrl4", 24, 160, "Ybyr", "8bw 4:2:2p", nullptr, "8bw 4:2:2i"},
};

std::string FullName(const char* name, const char* tag) {
  const bool hasAlpha = tag != nullptr && tag[0] == 'A';
  return std::string(hasAlpha ? "Vorel Y'CbCrA " : "Vorel Y'CbCr ") + name;
}

TEST_F(TranscoderTest, TagsAndNamesFollowTheFields) {
  for (const TagRow& row : kTagRows) {
    SCOPED_TRACE(std::string(row.format) + " " + std::to_string(row.depth));
    for (const u32 mode : {0u, 1u}) {
      Host->SetGestaltValue(FourCharacterCode("Vorl"), static_cast<i32>(mode));
      const ComponentInstance transcoder = OpenTranscoderOf(row.format, row.target);
      for (const i32 fields : {1, 2}) {
        SetScan(fields);
        Job job(row.format, 20, 4, row.bytes, row.depth);
        ASSERT_EQ(Begin(transcoder, job), noErr);
        const char* const tag = fields == 1 ? row.one : row.two;
        EXPECT_EQ(NameOf(job.result), FullName(fields == 1 ? row.oneName : row.twoName, tag));
        const Converted converted = Convert(transcoder, job);
        if (tag == nullptr) {
          EXPECT_EQ(converted.result, codecConditionErr);
          EXPECT_EQ(Extension(job.result, FourCharacterCode("Kesp")), (Bytes{0, 0, 0, 0}));
          continue;
        }
        const Bytes tagBytes(tag, tag + 4);
        EXPECT_EQ(Extension(job.result, FourCharacterCode("Kesp")), tagBytes);
        ASSERT_EQ(converted.result, noErr);
        EXPECT_EQ(Bytes(&converted.frame[16], &converted.frame[20]), tagBytes);
      }
      Close(transcoder);
    }
  }
}

// What a routine makes behind the header, with zeros up to the recorded size.
template <typename Routine>
Bytes Expected(Routine routine, const char* tag, const Job& job, i32 rowBytes) {
  const auto width = static_cast<u32>((*job.source)->width);
  const auto height = static_cast<u32>((*job.source)->height);
  std::vector<u32> words(4096);
  const Bytes header = {'V', 'o', 'r', 'l', '\r', '\n', 0, '\n', 0xFF, 'T', 'a', 'm', 'r', 'i', 'c', 'k'};
  std::memcpy(words.data(), header.data(), 16);
  std::memcpy(&words[4], tag, 4);
  u32 wordCursor = 5;
  u32 bitCursor = 0;
  EXPECT_EQ(routine(width, height, rowBytes, job.sample.data(), &wordCursor, &bitCursor, words.data()),
            VorelStatus{VOREL_COMPLETE});
  const std::size_t size = (std::size_t{wordCursor} * 32 + 7 + bitCursor) / 8;
  const std::size_t written = (wordCursor - 5 + 1) * std::size_t{4};
  Bytes frame(size, 0);
  std::memcpy(frame.data(), words.data(), std::min(size, written));
  return frame;
}

TEST_F(TranscoderTest, FrameIsThatOfTheRoutine) {
  SetScan(1);
  const ComponentInstance deep = OpenTranscoderOf("v410", "Vrl5");
  Job v410("v410", 20, 4, 320);
  ASSERT_EQ(Begin(deep, v410), noErr);
  EXPECT_EQ(Convert(deep, v410).frame, Expected(VorelYCbCr10bv444iFromv410Encode, "yBR\n", v410, 80));
  Close(deep);
  const ComponentInstance pairs = OpenTranscoderOf("v210", "Vrl6");
  Job v210("v210", 50, 4, 1024);
  ASSERT_EQ(Begin(pairs, v210), noErr);
  EXPECT_EQ(Convert(pairs, v210).frame, Expected(VorelYCbCr10bv422iFromv210Encode, "\xA2YRy", v210, 256));
  Close(pairs);
  const ComponentInstance wide = OpenTranscoderOf("yuv2", "Vrl4");
  Job yuvu("yuv2", 21, 4, 176);
  ASSERT_EQ(Begin(wide, yuvu), noErr);
  EXPECT_EQ(Extension(yuvu.result, FourCharacterCode("cspc")), (Bytes{'y', 'u', 'v', 'u'}));
  EXPECT_EQ(Convert(wide, yuvu).frame, Expected(VorelYCbCr8bw422iFromyuvuEncode, "Ybyr", yuvu, 44));
  Close(wide);
  const ComponentInstance alpha = OpenTranscoderOf("r408", "Vrl2");
  Job r408("r408", 20, 4, 320, 32);
  ASSERT_EQ(Begin(alpha, r408), noErr);
  EXPECT_EQ(Convert(alpha, r408).frame, Expected(VorelYCbCrA8bu4444pFromAr408Encode, "AYbR", r408, 80));
  Close(alpha);
}

TEST_F(TranscoderTest, FramesAreCounted) {
  SetScan(1);
  Transcoder* storage = nullptr;
  const ComponentInstance transcoder = OpenWithStorage(kTranscoderType, Code("2vuy"), Code("Vrl3"), storage);
  Job job("2vuy", 20, 4, 160);
  ASSERT_EQ(Begin(transcoder, job), noErr);
  for (u32 i = 1; i <= 3; ++i) {
    EXPECT_EQ(Convert(transcoder, job).result, noErr);
    EXPECT_EQ(storage->frames, i);
  }
  EXPECT_EQ(Convert(transcoder, job, 159).result, paramErr);
  EXPECT_EQ(storage->frames, 3u);
  Close(transcoder);
}

// Low bits of 'v216' are cut; only the self-check sees it.
TEST_F(TranscoderTest, SelfCheckFindsWhatAFrameCuts) {
  SetScan(1);
  struct {
    const char* format;
    const char* target;
    std::size_t bytes;
    std::size_t byte;
    u8 bit;
    OSErr result;
  } const rows[] = {{"v216", "Vrl6", 320, 2, 0x20, codecBadDataErr},
                    {"Y216", "Vrl6", 320, 2, 0x08, codecBadDataErr},
                    {"v410", "Vrl5", 320, 0, 0x01, noErr},  // padding
                    {"v210", "Vrl6", 512, 3, 0x40, noErr}};
  for (const auto& row : rows) {
    for (const i32 mode : {0, 1}) {
      Host->SetGestaltValue(FourCharacterCode("Vorl"), mode);
      const ComponentInstance transcoder = OpenTranscoderOf(row.format, row.target);
      Job job(row.format, 20, 4, row.bytes);
      job.sample[row.byte] = static_cast<u8>(job.sample[row.byte] | row.bit);
      ASSERT_EQ(Begin(transcoder, job), noErr);
      EXPECT_EQ(Convert(transcoder, job).result, mode == 0 ? noErr : row.result) << row.format;
      Close(transcoder);
    }
  }
}

TEST_F(TranscoderTest, ForeignSourcesBeginAndAreNotConverted) {
  SetScan(1);
  const ComponentInstance transcoder = OpenTranscoderOf("v410", "Vrl5");
  for (const char* format : {"2vuy", "v408", "abcd"}) {
    Job job(format, 20, 4, 320);  // as much as 'v410' takes
    ASSERT_EQ(Begin(transcoder, job), noErr) << format;
    EXPECT_EQ(Convert(transcoder, job).result, codecConditionErr) << format;
  }
  Job short2vuy("2vuy", 20, 4, 160);
  EXPECT_EQ(Begin(transcoder, short2vuy), paramErr);
  Close(transcoder);
}

TEST_F(TranscoderTest, ArgumentsAndOrderOfCallsAreTested) {
  SetScan(1);
  const ComponentInstance transcoder = OpenTranscoderOf("2vuy", "Vrl3");
  Job job("2vuy", 20, 4, 160);
  EXPECT_EQ(Convert(transcoder, job).result, paramErr);  // nothing has begun
  EXPECT_EQ(embedded::CallSelector(transcoder, kImageTranscoderBeginSequenceSelect, nullptr, &job.result,
                                   job.sample.data(), 160),
            paramErr);
  EXPECT_EQ(embedded::CallSelector(transcoder, kImageTranscoderBeginSequenceSelect, job.source, nullptr,
                                   job.sample.data(), 160),
            paramErr);
  ASSERT_EQ(Begin(transcoder, job), noErr);
  void* frame = nullptr;
  i32 size = 0;
  EXPECT_EQ(embedded::CallSelector(transcoder, kImageTranscoderConvertSelect, nullptr, 160, &frame, &size),
            paramErr);
  EXPECT_EQ(embedded::CallSelector(transcoder, kImageTranscoderConvertSelect, job.sample.data(), 160, nullptr,
                                   &size),
            paramErr);
  EXPECT_EQ(embedded::CallSelector(transcoder, kImageTranscoderConvertSelect, job.sample.data(), 160, &frame,
                                   nullptr),
            paramErr);
  for (const i32 length : {159, 0, -1}) {
    EXPECT_EQ(embedded::CallSelector(transcoder, kImageTranscoderConvertSelect, job.sample.data(), length,
                                     &frame, &size),
              paramErr)
        << length;
  }
  EXPECT_EQ(embedded::CallSelector(transcoder, kImageTranscoderDisposeDataSelect, nullptr), noErr);
  EXPECT_EQ(embedded::CallSelector(transcoder, kImageTranscoderEndSequenceSelect), noErr);
  EXPECT_EQ(Convert(transcoder, job).result, paramErr);  // it is over
  Close(transcoder);
  EXPECT_EQ(BeginTranscoding(nullptr, nullptr, nullptr, nullptr, 0), paramErr);
  EXPECT_EQ(Transcode(nullptr, nullptr, 0, nullptr, nullptr), paramErr);
  EXPECT_EQ(DisposeFrame(nullptr, nullptr), paramErr);
  EXPECT_EQ(EndTranscoding(nullptr), paramErr);
  EXPECT_EQ(CloseTranscoder(nullptr, nullptr), noErr);
}

TEST_F(TranscoderTest, TinyPicturesExceedTheirBoundByTheRecordedSize) {
  SetScan(1);
  for (const i32 mode : {0, 1}) {
    Host->SetGestaltValue(FourCharacterCode("Vorl"), mode);
    const ComponentInstance transcoder = OpenTranscoderOf("2vuy", "Vrl3");
    Job job("2vuy", 1, 1, 4);
    ASSERT_EQ(Begin(transcoder, job), noErr);
    EXPECT_EQ(Convert(transcoder, job).result, memFullErr);
    Close(transcoder);
  }
}

TEST_F(TranscoderTest, EmptyPicturesAreRefused) {
  const ComponentInstance transcoder = OpenTranscoderOf("2vuy", "Vrl3");
  for (const i16 width : {i16{0}, i16{-4}}) {
    Job job("2vuy", width, 4, 0);
    EXPECT_EQ(Begin(transcoder, job), paramErr);
  }
  Close(transcoder);
}

TEST_F(TranscoderTest, OpeningRegistersTheUnknownSourceFormats) {
  struct {
    const char* format;
    const char* target;
    std::vector<OSType> registered;
  } const rows[] = {
      {"v410", "Vrl5", {FourCharacterCode("v410")}},
      {"v408", "Vrl2", {}},
      {"v210", "Vrl6", {FourCharacterCode("v210"), FourCharacterCode("v216"), FourCharacterCode("Y216")}},
      {"2vuy", "Vrl3", {}},
      {"yuv2", "Vrl4", {}}};
  for (const auto& row : rows) {
    StartHost({});
    const ComponentInstance transcoder = OpenTranscoderOf(row.format, row.target);
    EXPECT_EQ(embedded::RegisteredPixelFormats(), row.registered) << row.format;
    Host->CloseComponent(transcoder);
  }
  StartHost({.quickTimeVersion = 0});
  ComponentInstance none = nullptr;
  const auto found = embedded::FindComponents(kTranscoderType, Code("v410"), 0);
  EXPECT_EQ(embedded::OpenComponent(found[0].number, &none), qtmlDllLoadErr);
}

TEST_F(TranscoderTest, EveryAllocationMayFail) {
  SetScan(0);
  Host->SetGestaltValue(FourCharacterCode("Vorl"), 1);
  Host->SetGestaltValue(FourCharacterCode("Gama"), 0x00018000);
  int beginFailures = 0;
  for (i32 number = 1; number < 100; ++number) {
    const ComponentInstance transcoder = OpenTranscoderOf("v408", "Vrl2");
    Job job("v408", 20, 4, 320);
    AddExtension(job.source, FourCharacterCode("fiel"), {1, 0});
    AddExtension(job.source, FourCharacterCode("sgbt"), {6});
    AddExtension(job.source, FourCharacterCode("Kesp"), {'o', 'l', 'd', '!'});
    embedded::FailAllocation(number);
    const ComponentResult result = Begin(transcoder, job);
    embedded::FailAllocation(0);
    if (result != noErr) {
      ++beginFailures;
      EXPECT_EQ(result, memFullErr) << number;
      EXPECT_EQ(job.result, nullptr) << number;
      EXPECT_EQ(embedded::CountsInUse().handles, 1) << number;  // the source
    }
    if (result == noErr) {
      EXPECT_EQ(Extension(job.result, FourCharacterCode("Kesp")), (Bytes{' ', 'Y', 'B', 'R'}));
      EXPECT_EQ(Extension(job.result, FourCharacterCode("sgbt")), Bytes{6});
      for (const i32 step : {1, 2, 3}) {  // the frame, the picture, the row store
        const i32 blocks = embedded::CountsInUse().blocks;
        embedded::FailAllocation(step);
        EXPECT_EQ(Convert(transcoder, job).result, memFullErr) << step;
        embedded::CallSelector(transcoder, kImageTranscoderEndSequenceSelect);
        EXPECT_EQ(embedded::CountsInUse().blocks, blocks) << step;
        Dispose(job.result);
        job.result = nullptr;
        ASSERT_EQ(Begin(transcoder, job), noErr);
      }
      EXPECT_EQ(Convert(transcoder, job).result, noErr);
      Close(transcoder);
      break;
    }
    ASSERT_EQ(Begin(transcoder, job), noErr) << number;
    EXPECT_EQ(Convert(transcoder, job).result, noErr) << number;
    Close(transcoder);
  }
  EXPECT_GE(beginFailures, 12);
}

}  // namespace

}  // namespace vorel::component
