// --self-check: what passes, what cannot, and what is done about it.
#include <gtest/gtest.h>

#include <algorithm>

#include "base/bytes.h"
#include "tests/tool/movies.h"
#include "tests/tool/raw_clips.h"

namespace vorel::tool {

namespace {

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

Outcome EncodeChecked(const TestFolder& folder, const std::string& name,
                      const std::vector<std::string>& more = {}) {
  std::vector<std::string> arguments = {"--self-check"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return EncodeRaw(folder, name, RawPictures(name), arguments);
}

struct Codec {
  const char* name;
  const char* pixelFormat;
  const char* subtype;
};

void PrintTo(const Codec& codec, std::ostream* out) {
  *out << codec.name << " " << codec.pixelFormat;
}

class SelfCheckEach : public testing::TestWithParam<Codec> {};

}  // namespace

TEST_P(SelfCheckEach, PassesAndTheMovieIsGood) {
  const Codec& codec = GetParam();
  const TestFolder folder;
  const Outcome made = EncodeChecked(folder, codec.pixelFormat, {"--codec", codec.name});
  ASSERT_EQ(made.status, 0) << made.err;
  EXPECT_EQ(container::CodeText(DescriptionOf(folder, "clip.mov").cType), codec.subtype);
  const Outcome verified = VerifyRaw(folder, codec.pixelFormat);
  EXPECT_EQ(verified.status, 0) << verified.err;
}

// All seven families and the generic pair. F10k and F210 are checked under the names that the check knows.
INSTANTIATE_TEST_SUITE_P(
    Every, SelfCheckEach,
    testing::Values(Codec{"rgb-10bf", "F10k", "Vrl7"}, Codec{"rgb-10bf", "F210", "Vrl7"},
                    Codec{"rgb-8bf", "24", "Vrl1"}, Codec{"rgb-8bf", "BGRA", "Vrl1"},
                    Codec{"rgb-8bf", "RGBA", "Vrl1"}, Codec{"ycbcr-10bv-444", "v410", "Vrl5"},
                    Codec{"ycbcr-8b-444", "v408", "Vrl2"}, Codec{"ycbcr-8b-444", "r408", "Vrl2"},
                    Codec{"ycbcr-10bv-422", "v210", "Vrl6"}, Codec{"ycbcr-8bv-422", "2vuy", "Vrl3"},
                    Codec{"ycbcr-8bw-422", "yuvu", "Vrl4"}, Codec{"generic", "32", "Vrl0"},
                    Codec{"generic", "24BG", "Vrl0"}, Codec{"auto", "v210", "Vrl6"},
                    Codec{"auto", "ABGR", "Vrl1"}));

TEST(SelfCheck, GenericCodecRefusesYCbCrAndSaysWhatToChoose) {
  for (const char* const name : {"2vuy", "yuvs", "yuvu", "v210", "v408", "r408", "v410"}) {
    const TestFolder folder;
    const Outcome outcome = EncodeChecked(folder, name, {"--codec", "generic"});
    EXPECT_EQ(outcome.status, 1) << name;
    EXPECT_TRUE(Contains(outcome.err, "the generic codec checks R'G'B' pictures alone")) << outcome.err;
    EXPECT_TRUE(Contains(outcome.err, "choose --codec auto")) << outcome.err;
    EXPECT_EQ(FilesIn(folder), "in.raw") << name;
  }
}

TEST(SelfCheck, FormatsWithoutAComparisonAreNamed) {
  const TestFolder folder;
  const Outcome outcome =
      EncodeRaw(folder, "A46L", std::string(kRawWidth * kRawHeight * 8 * kRawFrames, '\0'), {"--self-check"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "self-check")) << outcome.err;
  EXPECT_EQ(FilesIn(folder), "in.raw");
}

TEST(SelfCheck, FormatsThatLoseBitsCannotPass) {
  const TestFolder folder;
  const Outcome outcome =
      EncodeRaw(folder, "b64a", std::string(kRawWidth * kRawHeight * 8 * kRawFrames, 'x'), {"--self-check"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err,
                       "no self-check can pass: frames of format RGBA 10bf p do not keep the lower 6 "
                       "of 16 bits of a sample"))
      << outcome.err;
  EXPECT_EQ(FilesIn(folder), "in.raw");
}

// Components take the code 'RGBA' for another order of bytes: colours must not change places on the way.
TEST(ComponentColours, RgbaKeepsItsColours) {
  const TestFolder folder;
  std::string pictures;
  for (u32 i = 0; i < kRawWidth * kRawHeight * kRawFrames; ++i) pictures += "\x10\x20\x30\x40";
  ASSERT_EQ(EncodeRaw(folder, "RGBA", pictures).status, 0);
  ASSERT_EQ(RunVorel(folder, {"decode", "clip.mov", "--pixel-format", "24", "-o", "rgb.raw"}).status, 0);
  EXPECT_EQ(FileBytes(folder, "rgb.raw").substr(0, 6), "\x10\x20\x30\x10\x20\x30");
  ASSERT_EQ(RunVorel(folder, {"decode", "clip.mov", "--pixel-format", "RGBA", "-o", "rgba.raw"}).status, 0);
  EXPECT_EQ(FileBytes(folder, "rgba.raw"), pictures);
  ASSERT_EQ(RunVorel(folder, {"decode", "clip.mov", "--pixel-format", "32", "-o", "argb.raw"}).status, 0);
  EXPECT_EQ(FileBytes(folder, "argb.raw").substr(0, 4), "\x40\x10\x20\x30");
}

}  // namespace vorel::tool
