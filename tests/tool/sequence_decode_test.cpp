// Movies into sequences and stills: bit for bit, under the right names, and nothing lost on the way.
#include <gtest/gtest.h>

#include <filesystem>

#include "base/bytes.h"
#include "picture_io/dpx.h"
#include "picture_io/png.h"
#include "picture_io/tiff.h"
#include "tests/tool/movies.h"
#include "tests/tool/picture_clips.h"
#include "tests/tool/raw_clips.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

using picture_io::kArgb16;
using picture_io::kPngFiles;
using picture_io::kRgb10;
using picture_io::kRgb16;
using picture_io::kRgba8;

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// a.mov of four 8-bit RGB pictures, whose seeds are 0 to 3.
void MakeMovie(const TestFolder& folder) {
  const TestFolder pictures;
  WriteSequence(pictures, "a.%d.png", kPngFiles, 24, 0, 4);
  const Outcome made = RunVorel(
      folder, {"encode", "-q", pictures.path + "/a.%d.png", "-o", folder.path + "/a.mov", "--rate", "25"});
  ASSERT_EQ(made.status, 0) << made.err;
}

u32 FirstWord(const picture_io::Picture& picture) {
  return LoadBig32(picture.bytes.data());
}

}  // namespace

TEST(SequenceDecode, PicturesOfEveryKindComeBackBitForBit) {
  struct Clip {
    const picture_io::PictureFileKind& kind;
    const char* format;
    const char* ending;
    u32 pixelFormat;
  };
  const Clip clips[] = {
      {kPngFiles, "png", "png", 24},
      {kPngFiles, "png", "png", kRgba8},
      {kPngFiles, "png", "png", kRgb16},
      {kPngFiles, "png", "png", kArgb16},
      {picture_io::kTiffFiles, "tiff", "tif", 24},
      {picture_io::kTiffFiles, "tiff", "tif", kRgba8},
      {picture_io::kTiffFiles, "tiff", "tiff", kRgb16},
      {picture_io::kTiffFiles, "tiff", "tif", kArgb16},
      {picture_io::kDpxFiles, "dpx", "dpx", kRgb10},
      {picture_io::kLittleEndianDpxFiles, "dpx-le", "dpx", kRgb10},
  };
  for (const Clip& clip : clips) {
    const TestFolder folder;
    const std::string in = std::string("in.%03d.") + clip.ending;
    const std::string out = std::string("out.%03d.") + clip.ending;
    WriteSequence(folder, in, clip.kind, clip.pixelFormat, 98, 4);
    const Outcome encoded = RunVorel(folder, {"encode", in, "-o", "a.mov"});
    ASSERT_EQ(encoded.status, 0) << encoded.err;
    const Outcome verified = RunVorel(folder, {"verify", "a.mov", "--against", in});
    EXPECT_EQ(verified.status, 0) << verified.err;
    // Without --pixel-format: frames tell what they hold, but for DPX, which holds one thing.
    const Outcome decoded = RunVorel(folder, {"decode", "a.mov", "--format", clip.format, "-o", out});
    ASSERT_EQ(decoded.status, 0) << decoded.err;
    ExpectSequence(folder, out, clip.pixelFormat, 0, 4, 98);
    EXPECT_EQ(FileBytes(folder, "out.000." + std::string(clip.ending)).substr(0, 4),
              FileBytes(folder, "in.098." + std::string(clip.ending)).substr(0, 4));
  }
}

TEST(SequenceDecode, ChangedSampleIsFoundByVerify) {
  const TestFolder folder;
  WriteSequence(folder, "a.%d.png", kPngFiles, kRgba8, 0, 3);
  ASSERT_EQ(RunVorel(folder, {"encode", "-q", "a.%d.png"}).status, 0);
  picture_io::Picture changed = NoisePicture(kRgba8, 50, 18, 1);
  changed.bytes[changed.bytes.size() - 1] ^= 1;
  WritePicture(folder, "a.1.png", kPngFiles, changed);
  const Outcome verified = RunVorel(folder, {"verify", "a.mov", "--against", "a.%d.png"});
  EXPECT_EQ(verified.status, 1);
  EXPECT_TRUE(Contains(verified.err, "differs from a.%d.png: row 17, pixel 49, A is ")) << verified.err;
}

TEST(SequenceDecode, NumbersBeginAt0OrWhereStartSays) {
  const TestFolder folder;
  MakeMovie(folder);
  ASSERT_EQ(RunVorel(folder, {"decode", "a.mov", "-o", "b%02d.png"}).status, 0);
  ASSERT_EQ(RunVorel(folder, {"decode", "a.mov", "-o", "c%02d.png", "--start", "98"}).status, 0);
  EXPECT_EQ(FilesIn(folder), "a.mov b00.png b01.png b02.png b03.png c100.png c101.png c98.png c99.png");
  ExpectSequence(folder, "c%02d.png", 24, 98, 4, 0);
  const Outcome large =
      RunVorel(folder, {"decode", "a.mov", "-o", "d%d.png", "--start", "999999999999999997"});
  EXPECT_EQ(large.status, 1);
  EXPECT_TRUE(Contains(large.err, "numbers from 999999999999999997 on are too large")) << large.err;
}

TEST(SequenceDecode, ResultsWithoutANameAreCalledAfterTheMovie) {
  const TestFolder folder;
  MakeMovie(folder);
  for (const char* const format : {"png", "tiff", "dpx"}) {
    ASSERT_EQ(RunVorel(folder, {"decode", "-q", "a.mov", "--format", format, "--start", "7"}).status, 0);
  }
  for (const char* const name : {"a.00007.png", "a.00010.png", "a.00007.tif", "a.00010.tif", "a.00007.dpx"}) {
    EXPECT_TRUE(std::filesystem::exists(folder.path + "/" + name)) << name;
  }
}

TEST(SequenceDecode, OnePictureIsWrittenOfAMovieOfOneFrame) {
  const TestFolder folder;
  WritePicture(folder, "a.png", kPngFiles, NoisePicture(24, 33, 17, 5));
  ASSERT_EQ(RunVorel(folder, {"encode", "-q", "a.png"}).status, 0);
  ASSERT_EQ(RunVorel(folder, {"decode", "-q", "a.mov", "-o", "b.png"}).status, 0);
  EXPECT_TRUE(IsSame(PictureIn(folder, "b.png"), NoisePicture(24, 33, 17, 5)));
  WriteFile(folder, "c.png", "precious");
  EXPECT_EQ(RunVorel(folder, {"decode", "-q", "a.mov", "-o", "c.png"}).status, 1);
  EXPECT_EQ(FileBytes(folder, "c.png"), "precious");
  EXPECT_EQ(RunVorel(folder, {"decode", "-q", "-f", "a.mov", "-o", "c.png"}).status, 0);
  EXPECT_TRUE(IsSame(PictureIn(folder, "c.png"), NoisePicture(24, 33, 17, 5)));
  MakeBrook(folder);
  const Outcome many = RunVorel(folder, {"decode", "brook.mov", "-o", "d.png"});
  EXPECT_EQ(many.status, 1);
  EXPECT_TRUE(Contains(many.err, "d.png: holds one picture, the movie has 8\n")) << many.err;
  EXPECT_EQ(FilesIn(folder), "a.mov a.png b.png brook.mov c.png");
}

TEST(SequenceDecode, FilesThatAreThereStayAndNothingIsWritten) {
  const TestFolder folder;
  MakeMovie(folder);
  WriteFile(folder, "b.2.png", "precious");
  const Outcome refused = RunVorel(folder, {"decode", "a.mov", "-o", "b.%d.png"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.err,
            "vorel: b.2.png: 1 of the 4 files to be written are there already, this is the first of them\n"
            "       choose another name, or overwrite them with --force\n");
  EXPECT_EQ(FileBytes(folder, "b.2.png"), "precious");
  EXPECT_EQ(FilesIn(folder), "a.mov b.2.png");
  EXPECT_EQ(RunVorel(folder, {"decode", "-f", "a.mov", "-o", "b.%d.png"}).status, 0);
  ExpectSequence(folder, "b.%d.png", 24, 0, 4, 0);
}

TEST(SequenceDecode, FilesBehindTheLastPictureAreNotTakenIntoTheClip) {
  const TestFolder folder;
  MakeMovie(folder);
  WriteFile(folder, "b.9.png", "stale");
  WriteFile(folder, "b.012.png", "of another pattern");
  const Outcome refused = RunVorel(folder, {"decode", "a.mov", "-o", "b.%d.png"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(Contains(refused.err,
                       "b.9.png: would look like part of the clip, whose last picture is to be "
                       "b.3.png\n"))
      << refused.err;
  EXPECT_EQ(FilesIn(folder), "a.mov b.012.png b.9.png");
  const Outcome forced = RunVorel(folder, {"decode", "-f", "a.mov", "-o", "b.%d.png"});
  EXPECT_EQ(forced.status, 0);
  EXPECT_TRUE(Contains(forced.err,
                       "note: b.9.png: stays, though it is behind the last picture of the clip, "
                       "b.3.png\n"))
      << forced.err;
  EXPECT_EQ(FileBytes(folder, "b.9.png"), "stale");
  // Pictures before the first one are another clip's.
  EXPECT_EQ(RunVorel(folder, {"decode", "a.mov", "-o", "b.%d.png", "--start", "10"}).status, 0);
}

TEST(SequenceDecode, DamagedFrameLeavesThePicturesBeforeItWhole) {
  const TestFolder folder;
  MakeMovie(folder);
  RemakeMovie(folder, "a.mov", "cut.mov",
              [](Frames& frames, container::SampleDescription&) { frames[2].resize(frames[2].size() / 2); });
  const Outcome decoded = RunVorel(folder, {"decode", "cut.mov", "-o", "b.%d.png"});
  EXPECT_EQ(decoded.status, 1);
  EXPECT_TRUE(Contains(decoded.err, "note: cut.mov: written are b.0.png to b.1.png\n")) << decoded.err;
  EXPECT_TRUE(Contains(decoded.err, "vorel: cut.mov: frame 2 at byte ")) << decoded.err;
  EXPECT_EQ(FilesIn(folder), "a.mov b.0.png b.1.png cut.mov");
  ExpectSequence(folder, "b.%d.png", 24, 0, 2, 0);
}

TEST(SequenceDecode, FramesTellTheNearestPixelFormat) {
  struct Case {
    const char* raw;
    const char* codec;
    const char* file;
    u32 pixelFormat;
    bool isNoted;  // that Y'CbCr becomes R'G'B'
  };
  const Case cases[] = {
      {"24", "auto", "a.png", 24, false},        {"RGBA", "auto", "a.tif", kRgba8, false},
      {"F10k", "auto", "a.png", kRgb16, false},  {"F10k", "auto", "a.dpx", kRgb10, false},
      {"b64a", "auto", "a.png", kArgb16, false}, {"24", "auto", "a.dpx", kRgb10, false},
      {"2vuy", "auto", "a.png", 24, true},       {"v408", "auto", "a.png", kRgba8, true},
      {"v210", "auto", "a.png", kRgb16, true},   {"v410", "auto", "a.tif", kRgb16, true},
      {"v210", "auto", "a.dpx", kRgb10, true},   {"b64a", "ycbcr-10bv-422", "a.png", kArgb16, true},
  };
  for (const Case& one : cases) {
    const TestFolder folder;
    const std::string clip = RawPictures(one.raw);
    ASSERT_EQ(
        EncodeRaw(folder, one.raw, clip.substr(0, clip.size() / kRawFrames), {"--codec", one.codec}).status,
        0);
    const Outcome decoded = RunVorel(folder, {"decode", "clip.mov", "-o", one.file});
    ASSERT_EQ(decoded.status, 0) << decoded.err;
    EXPECT_EQ(PictureIn(folder, one.file).pixelFormat, one.pixelFormat) << one.raw << " " << one.file;
    EXPECT_EQ(Contains(decoded.err, "note: clip.mov: the pictures do not keep Y'CbCr (it becomes R'G'B')"),
              one.isNoted)
        << one.raw << decoded.err;
  }
}

TEST(SequenceDecode, BlackAndWhiteOfTenBitVideoAreThoseOfPictures) {
  const TestFolder folder;
  for (const auto& [code, expected] : {std::pair<u32, u32>{64, 0}, {940, 0xFFF0}}) {
    std::string pictures;
    for (int i = 0; i < 50 * 18; ++i) {
      u8 word[4];
      StoreLittle32(word, 512u << 22 | code << 12 | 512u << 2);
      pictures.append(reinterpret_cast<const char*>(word), 4);
    }
    ASSERT_EQ(EncodeRaw(folder, "v410", pictures).status, 0);
    ASSERT_EQ(RunVorel(folder, {"decode", "-q", "-f", "clip.mov", "-o", "a.png"}).status, 0);
    EXPECT_EQ(FirstWord(PictureIn(folder, "a.png")), expected << 16 | expected);
  }
}

TEST(SequenceDecode, PixelFormatsThatFilesDoNotHoldAreRefused) {
  const TestFolder folder;
  MakeMovie(folder);
  const Outcome png = RunVorel(folder, {"decode", "a.mov", "--pixel-format", "F10k", "-o", "b.%d.png"});
  EXPECT_EQ(png.status, 2);
  EXPECT_TRUE(Contains(png.err,
                       "PNG files are written from pictures of pixel format 24, RGBA, b48r, b64a, not "
                       "F10k"))
      << png.err;
  EXPECT_EQ(RunVorel(folder, {"decode", "a.mov", "--pixel-format", "24", "-o", "b.%d.dpx"}).status, 2);
  EXPECT_EQ(RunVorel(folder, {"decode", "a.mov", "--pixel-format", "RGBA", "-o", "b.%d.png"}).status, 0);
  const picture_io::Picture opaque = PictureIn(folder, "b.0.png");
  EXPECT_EQ(opaque.pixelFormat, kRgba8);
  EXPECT_EQ(opaque.bytes.at(3), 0xFF);
}

TEST(SequenceDecode, WideRangeFramesAreNoPictures) {
  const TestFolder folder;
  ASSERT_EQ(EncodeRaw(folder, "yuvu", RawPictures("yuvu")).status, 0);
  const Outcome decoded = RunVorel(folder, {"decode", "clip.mov", "-o", "b.%d.png"});
  EXPECT_EQ(decoded.status, 1);
  EXPECT_TRUE(Contains(decoded.err,
                       "clip.mov: PNG files hold R'G'B', and frames of format Y'CbCr 8bw 4:2:2p "
                       "don't come as that\n"))
      << decoded.err;
  EXPECT_EQ(FilesIn(folder), "clip.mov in.raw");
}

}  // namespace vorel::tool
