// Movies of uncompressed samples become movies of frames that hold the same samples.
#include <gtest/gtest.h>

#include "base/bytes.h"
#include "container/movie_writer.h"
#include "tests/tool/movies.h"
#include "tests/tool/raw_clips.h"

namespace vorel::tool {

namespace {

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// A movie whose samples are the pictures of a raw file. `codec` is the name of their compression type.
void MakeUncompressed(const TestFolder& folder, const std::string& codec, const std::string& pictures,
                      u16 depth = 24) {
  container::SampleDescription description;
  for (const char letter : codec) description.cType = description.cType << 8 | static_cast<u8>(letter);
  description.width = kRawWidth;
  description.height = kRawHeight;
  description.depth = depth;
  SetExtension(description, container::MakeFieldOrder({2, 9}));
  container::MovieSettings settings;
  settings.time = {30000, 1001};
  container::MovieWriter writer(folder.path + "/in.mov", settings);
  const u32 index = writer.AddDescription(description);
  const std::size_t size = pictures.size() / kRawFrames;
  for (u32 i = 0; i < kRawFrames; ++i)
    writer.AppendFrame(reinterpret_cast<const u8*>(pictures.data()) + i * size, size, index);
  writer.Finish();
}

struct Source {
  const char* codec;
  const char* pixelFormat;
  u16 depth;
  const char* subtype;
  const char* tag;
};

void PrintTo(const Source& source, std::ostream* out) {
  *out << source.codec << " " << source.depth;
}

// Depth 32 asks for alpha where the samples have it.
const Source kSources[] = {
    {"v410", "v410", 24, "Vrl5", "yBR\n"},   {"v408", "v408", 32, "Vrl2", "AYBR"},
    {"r408", "r408", 32, "Vrl2", "AYbR"},    {"v210", "v210", 24, "Vrl6", "\xA2YRy"},
    {"v216", "v216", 24, "Vrl6", "\xA2YRy"}, {"Y216", "Y216", 24, "Vrl6", "\xA2YRy"},
    {"2vuy", "2vuy", 24, "Vrl3", "BYRy"},    {"yuvs", "yuvs", 24, "Vrl3", "BYRy"},
    {"yuv2", "yuvu", 24, "Vrl4", "Ybyr"},
};

class TranscodeEach : public testing::TestWithParam<Source> {};

}  // namespace

TEST_P(TranscodeEach, SamplesComeBackFromTheFrames) {
  const Source& source = GetParam();
  const TestFolder folder;
  const std::string pictures = RawPictures(source.pixelFormat);
  MakeUncompressed(folder, source.codec, pictures, source.depth);
  const Outcome made = RunVorel(folder, {"transcode", "in.mov", "--self-check"});
  ASSERT_EQ(made.status, 0) << made.err;
  const container::SampleDescription description = DescriptionOf(folder, "in.vorel.mov");
  EXPECT_EQ(container::CodeText(description.cType), source.subtype);
  const Frames frames = FramesOf(folder, "in.vorel.mov");
  ASSERT_EQ(frames.size(), kRawFrames);
  for (const std::vector<u8>& frame : frames)
    EXPECT_EQ(std::string(frame.begin() + 16, frame.begin() + 20), source.tag);
  const Outcome decoded = RunVorel(folder, {"decode", "in.vorel.mov", "--format", "raw", "--pixel-format",
                                            source.pixelFormat, "-o", "out.raw"});
  ASSERT_EQ(decoded.status, 0) << decoded.err;
  EXPECT_EQ(FileBytes(folder, "out.raw"), pictures);
}

INSTANTIATE_TEST_SUITE_P(Every, TranscodeEach, testing::ValuesIn(kSources));

TEST(Transcode, FieldsRateAndNameOfTheFramesStay) {
  const TestFolder folder;
  MakeUncompressed(folder, "2vuy", RawPictures("2vuy"));
  ASSERT_EQ(RunVorel(folder, {"transcode", "in.mov", "-o", "out.mov"}).status, 0);
  const std::string info = RunVorel(folder, {"info", "out.mov"}).out;
  EXPECT_TRUE(Contains(info, "30000/1001 frames/s")) << info;
  EXPECT_TRUE(Contains(info, "scan interlaced, top field first")) << info;
  EXPECT_EQ(DescriptionOf(folder, "out.mov").name,
            "Vorel Y'CbCr 8bv 4:2:2p");  // counted by the scan that is said
}

TEST(Transcode, GenericMoviesDecodeToo) {
  const TestFolder folder;
  const std::string pictures = RawPictures("v210");
  MakeUncompressed(folder, "v210", pictures);
  ASSERT_EQ(RunVorel(folder, {"transcode", "in.mov", "--generic", "-o", "out.mov"}).status, 0);
  EXPECT_EQ(DescriptionOf(folder, "out.mov").cType, FourCharacterCode("Vrl0"));
  ASSERT_EQ(RunVorel(folder, {"decode", "out.mov", "-o", "out.v210"}).status, 0);
  EXPECT_EQ(FileBytes(folder, "out.v210"), pictures);
}

TEST(Transcode, SamplesOfAnotherSizeAreNamed) {
  const TestFolder folder;
  MakeUncompressed(folder, "2vuy", RawPictures("2vuy").substr(8));
  const Outcome outcome = RunVorel(folder, {"transcode", "in.mov"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "in.mov: frame 0 at byte ")) << outcome.err;
  EXPECT_TRUE(Contains(outcome.err, "the sample has 1796 bytes, and '2vuy' samples of 50 x 18 pixels"))
      << outcome.err;
  EXPECT_EQ(FilesIn(folder), "in.mov");
}

TEST(Transcode, OtherCodecsAreRefusedWithThoseThatAreRead) {
  const TestFolder folder;
  MakeBrook(folder);
  const Outcome outcome = RunVorel(folder, {"transcode", "brook.mov"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "the video is of codec 'Vrl3', and no transcoder reads it"))
      << outcome.err;
  EXPECT_TRUE(Contains(outcome.err, "'v410', 'v408', 'r408', 'v210', 'v216', 'Y216', '2vuy', 'yuvs', 'yuv2'"))
      << outcome.err;
  EXPECT_EQ(FilesIn(folder), "brook.mov");
}

}  // namespace vorel::tool
