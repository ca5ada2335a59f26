// YUV4MPEG2 clips with chroma at every pixel: into movies and back, and what is said where something is lost.
#include <gtest/gtest.h>

#include "tests/tool/movies.h"
#include "tests/tool/raw_clips.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

constexpr u32 kHeight = 16;

// Frames of narrower pictures have no room for noise.
constexpr u32 kNarrow = 8;

// Noise with two frames; gentle where the picture is narrow.
std::string ClipOf(const std::string& chroma, u32 width, const std::string& interlacing = "Ip") {
  const std::string header = "YUV4MPEG2 W" + std::to_string(width) + " H" + std::to_string(kHeight) +
                             " F25:1 " + interlacing + " A1:1 C" + chroma;
  const std::size_t pixels = std::size_t{width} * kHeight;
  const bool isDeep = chroma == "444p10";
  const std::size_t samples = pixels * (chroma == "444alpha" ? 4 : 3);
  std::string clip = isDeep ? NoiseClip10(header, samples, 2) : NoiseClip(header, samples, 2);
  if (width >= kNarrow) return clip;
  const std::size_t frameBytes = 6 + samples * (isDeep ? 2 : 1);
  for (std::size_t at = header.size() + 1; at < clip.size(); ++at) {
    const std::size_t inFrame = (at - header.size() - 1) % frameBytes;
    if (inFrame < 6) continue;
    const bool isHighByte = isDeep && inFrame % 2 != 0;
    const int low = at % 7 == 0 ? clip[at] & 1 : 0;
    clip[at] = static_cast<char>(isHighByte ? 2 : low);
  }
  return clip;
}

// Encodes `clip` as clip.mov. Returns what is said.
std::string Encode(const TestFolder& folder, const std::string& clip,
                   const std::vector<std::string>& more = {}) {
  WriteFile(folder, "clip.y4m", clip);
  std::vector<std::string> encode = {"encode", "-f", "clip.y4m"};
  encode.insert(encode.end(), more.begin(), more.end());
  const Outcome outcome = RunVorel(folder, encode);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  return outcome.err;
}

// What comes out again.
Outcome Decode(const TestFolder& folder, const std::vector<std::string>& more = {}) {
  std::vector<std::string> decode = {"decode", "clip.mov", "--format", "y4m", "-o", "-"};
  decode.insert(decode.end(), more.begin(), more.end());
  return RunVorel(folder, decode);
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::string HeaderOf(const std::string& clip) {
  return clip.substr(0, clip.find('\n'));
}

}  // namespace

class FullChroma : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Chroma, FullChroma, testing::Values("444", "444p10", "444alpha"));

TEST_P(FullChroma, EveryWidthComesBackByteForByte) {
  const TestFolder folder;
  for (u32 width = 1; width <= 70; ++width) {
    const std::string clip = ClipOf(GetParam(), width);
    Encode(folder, clip, {"-q"});
    ASSERT_TRUE(Decode(folder).out == clip) << width;
  }
}

TEST_P(FullChroma, InterlacedComesBackByteForByte) {
  const TestFolder folder;
  for (const char* const interlacing : {"It", "Ib", "I?"}) {
    const std::string clip = ClipOf(GetParam(), 131, interlacing);
    Encode(folder, clip);
    EXPECT_TRUE(Decode(folder).out == clip) << interlacing;
  }
}

TEST_P(FullChroma, NothingIsSaidToBeLost) {
  const TestFolder folder;
  EXPECT_FALSE(Contains(Encode(folder, ClipOf(GetParam(), 33)), "note:"));
  EXPECT_FALSE(Contains(Decode(folder).err, "note:"));
}

TEST_P(FullChroma, VerifyFindsAChangeInEveryPlane) {
  const TestFolder folder;
  const std::string clip = ClipOf(GetParam(), 33);
  Encode(folder, clip);
  ASSERT_EQ(RunVorel(folder, {"verify", "clip.mov", "--against", "clip.y4m"}).status, 0);
  const std::string chroma = GetParam();
  const std::size_t planeBytes = std::size_t{33} * kHeight * (chroma == "444p10" ? 2 : 1);
  const std::vector<std::string> planes = {"Y'", "Cb", "Cr", "A"};
  for (std::size_t plane = 0; plane < (chroma == "444alpha" ? 4u : 3u); ++plane) {
    std::string changed = clip;
    char& sample = changed[HeaderOf(clip).size() + 1 + 6 + plane * planeBytes];
    sample = static_cast<char>(sample ^ 1);
    WriteFile(folder, "changed.y4m", changed);
    const Outcome outcome = RunVorel(folder, {"verify", "clip.mov", "--against", "changed.y4m"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(Contains(outcome.err, "row 0, pixel 0, " + planes[plane] + " is ")) << outcome.err;
  }
}

TEST(FullChromaFrames, AreOfTheFormatThatHoldsAllOfThem) {
  const TestFolder folder;
  const auto tagOf = [&folder](const char* chroma) {
    Encode(folder, ClipOf(chroma, 8));
    return TagOfFirstFrame(folder);
  };
  EXPECT_EQ(tagOf("444"), " YBR");
  EXPECT_EQ(tagOf("444alpha"), "AYBR");
  EXPECT_EQ(tagOf("444p10"), "YBR\n");
}

TEST(FullChromaFrames, ClipWithoutAlphaIsOpaqueInOtherPixelFormats) {
  const TestFolder folder;
  Encode(folder,
         "YUV4MPEG2 W1 H16 F25:1 Ip A1:1 C444\nFRAME\n" + std::string(16, '\x7D') + std::string(32, '\x80'));
  const Outcome raw = RunVorel(folder, {"decode", "clip.mov", "--pixel-format", "v408", "-o", "-"});
  EXPECT_EQ(raw.out.substr(0, 4), "\x80\x7D\x80\xEB");
}

TEST(FullChromaFrames, LossesAreSaid) {
  const TestFolder folder;
  EXPECT_TRUE(Contains(Encode(folder, ClipOf("444", 8), {"--codec", "ycbcr-8bv-422"}),
                       "note: clip.y4m: the movie does not keep the chroma of every pixel\n"));
  EXPECT_TRUE(Contains(Encode(folder, ClipOf("444alpha", 8), {"--alpha", "drop"}),
                       "note: clip.y4m: the movie does not keep alpha\n"));
  EXPECT_EQ(HeaderOf(Decode(folder).out), "YUV4MPEG2 W8 H16 F25:1 Ip A1:1 C444");
  EXPECT_TRUE(Contains(Encode(folder, ClipOf("444p10", 8), {"--codec", "ycbcr-8b-444"}),
                       "note: clip.y4m: the movie does not keep the lower 2 of 10 bits of a sample\n"));
}

TEST(FullChromaFrames, AlphaWithTenBitsIsLostAndThatIsSaid) {
  const TestFolder folder;
  const std::string picture(std::size_t{kRawWidth} * kRawHeight * 8, '\x40');
  ASSERT_EQ(EncodeRaw(folder, "V416", picture, {"--codec", "ycbcr-10bv-444"}).status, 0);
  EXPECT_EQ(TagOfFirstFrame(folder), "CA4p");
  const Outcome decoded = Decode(folder);
  EXPECT_EQ(decoded.status, 0);
  EXPECT_TRUE(Contains(HeaderOf(decoded.out), " C444p10")) << HeaderOf(decoded.out);
  EXPECT_TRUE(Contains(decoded.err, "note: clip.mov: the pictures do not keep alpha\n")) << decoded.err;
}

TEST(FullChromaFrames, PixelFormatChoosesTheKindOfFile) {
  const TestFolder folder;
  Encode(folder, ClipOf("444", 8));
  const Outcome half = Decode(folder, {"--pixel-format", "2vuy"});
  EXPECT_EQ(HeaderOf(half.out), "YUV4MPEG2 W8 H16 F25:1 Ip A1:1 C422");
  EXPECT_TRUE(Contains(half.err, "the pictures do not keep the chroma of every pixel")) << half.err;
  EXPECT_EQ(HeaderOf(Decode(folder, {"--pixel-format", "v408"}).out), "YUV4MPEG2 W8 H16 F25:1 Ip A1:1 C444");
  Encode(folder, ClipOf("444alpha", 8));
  EXPECT_EQ(HeaderOf(Decode(folder, {"--pixel-format", "v408"}).out),
            "YUV4MPEG2 W8 H16 F25:1 Ip A1:1 C444alpha");
}

TEST(FullChromaFrames, FormatsWithoutAPlaceInYuv4mpegAreRefused) {
  const TestFolder folder;
  ASSERT_EQ(EncodeRaw(folder, "r408", RawPictures("r408")).status, 0);
  const Outcome outcome = Decode(folder);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err,
            "vorel: clip.mov: YUV4MPEG2 files don't hold pictures of format Y'CbCrA 8bu 4:4:4:4p\n"
            "       give --format raw, or a pixel format with --pixel-format\n");
  const Outcome asked = Decode(folder, {"--pixel-format", "r408"});
  EXPECT_EQ(asked.status, 2);
  EXPECT_TRUE(Contains(asked.err,
                       "YUV4MPEG2 files hold 2vuy, yuvu and v408 pictures (8 bits), v216 and v410 pictures "
                       "(10 bits), not r408"))
      << asked.err;
}

TEST(FullChromaFrames, OpaquePicturesAreComparedWithoutAlpha) {
  const TestFolder folder;
  const std::string clip = ClipOf("444alpha", 8);
  Encode(folder, clip);
  ASSERT_EQ(HeaderOf(clip), "YUV4MPEG2 W8 H16 F25:1 Ip A1:1 C444alpha");
  std::string opaque = "YUV4MPEG2 W8 H16 F25:1 Ip A1:1 C444\n";
  const std::size_t frameBytes = 6 + std::size_t{8} * kHeight * 4;
  for (std::size_t frame = 0; frame < 2; ++frame)
    opaque += clip.substr(HeaderOf(clip).size() + 1 + frame * frameBytes, frameBytes - 8 * kHeight);
  WriteFile(folder, "opaque.y4m", opaque);
  const Outcome outcome = RunVorel(folder, {"verify", "clip.mov", "--against", "opaque.y4m"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
}

}  // namespace vorel::tool
