// Recorded calls of an independent implementation, with their exact results.
#include <gtest/gtest.h>

#include "frame/catalogue.h"
#include "frame/frame_bounds.h"
#include "frame/frame_tags.h"
#include "frame/stream_cursor.h"
#include "frame/tag_rules.h"
#include "tests/core/guarded.h"
#include "tests/core/vector_file.h"
#include "vorel/vorel.h"

namespace vorel {
namespace {

std::size_t PictureBytes(const VectorCase& fields) {
  const i32 rowBytes = std::stoi(fields.at("row_bytes"));
  return static_cast<std::size_t>(std::abs(rowBytes)) * Number(fields, "height");
}

const FrameRoutine* RoutineOf(const VectorCase& fields) {
  for (const FrameRoutine& routine : AllRoutines()) {
    if (routine.name == fields.at("routine") &&
        routine.pixelFormat == PixelFormatFromText(fields.at("pixel_format"))) {
      return &routine;
    }
  }
  return nullptr;
}

void RunEncodeCase(const VectorCase& fields, const FrameRoutine& routine) {
  const std::vector<u8> picture = FromHex(fields.at("picture"));
  const std::vector<u8> lead = FromHex(fields.at("lead"));
  const std::vector<u8> expected = FromHex(fields.at("stream_after"));
  u32 word = Number(fields, "word_cursor");
  u32 bit = Number(fields, "bit_cursor");
  const std::size_t first = std::size_t{word} + bit / 32;
  const u32 bound =
      MaxFrameBytesOfTag(TagFromHex(fields.at("tag")), Number(fields, "width"), Number(fields, "height"));
  ASSERT_EQ(picture.size(), PictureBytes(fields));
  Guarded source(picture.size(), 0);
  std::copy(picture.begin(), picture.end(), source.data());
  Guarded frame(4 * first + bound, 0x5A);
  std::copy(lead.begin(), lead.end(), frame.data() + 4 * first);
  const u32 width = Number(fields, "width");
  const u32 height = Number(fields, "height");
  const i32 rowBytes = std::stoi(fields.at("row_bytes"));
  u32* const words = reinterpret_cast<u32*>(frame.data());
  const u32 status =
      routine.takesColourStandard
          ? routine.exported.matrixEncode(width, height, rowBytes, source.data(),
                                          Number(fields, "colour_standard"), &word, &bit, words)
          : routine.exported.encode(width, height, rowBytes, source.data(), &word, &bit, words);
  EXPECT_EQ(status, Number(fields, "status"));
  EXPECT_EQ(word, Number(fields, "word_cursor_after"));
  EXPECT_EQ(bit, Number(fields, "bit_cursor_after"));
  const std::vector<u8> stream(frame.data() + 4 * first, frame.data() + 4 * first + expected.size());
  EXPECT_EQ(stream, expected);
  EXPECT_TRUE(frame.MarksIntact());
  for (std::size_t i = 0; i < 4 * first; ++i)
    EXPECT_EQ(frame.data()[i], 0x5A) << "before the first word, byte " << i;
}

void RunDecodeCase(const VectorCase& fields, const FrameRoutine& routine) {
  const std::vector<u8> stream = FromHex(fields.at("stream"));
  const std::vector<u8> expected = FromHex(fields.at("picture_after"));
  u32 word = Number(fields, "word_cursor");
  u32 bit = Number(fields, "bit_cursor");
  const u32 width = Number(fields, "width");
  const u32 height = Number(fields, "height");
  const i32 rowBytes = std::stoi(fields.at("row_bytes"));
  const std::size_t first = std::size_t{word} + bit / 32;
  std::vector<u32> frame(
      first + stream.size() / 4 + MaxFrameBytesOfTag(TagFromHex(fields.at("tag")), width, height) + 64, 0);
  std::memcpy(reinterpret_cast<u8*>(frame.data()) + 4 * first, stream.data(), stream.size());
  Guarded picture(PictureBytes(fields), FromHex(fields.at("fill"))[0]);
  Guarded scratch(RowStoreBytes(width), 0x77);
  const u32 standard = routine.takesColourStandard ? Number(fields, "colour_standard") : 0;
  u32 status = 0;
  if (routine.takesScratch && routine.takesColourStandard) {
    status = routine.exported.matrixScratchDecode(width, height, rowBytes, picture.data(), standard, &word,
                                                  &bit, frame.data(), scratch.data());
  } else if (routine.takesScratch) {
    status = routine.exported.scratchDecode(width, height, rowBytes, picture.data(), &word, &bit,
                                            frame.data(), scratch.data());
  } else if (routine.takesColourStandard) {
    status = routine.exported.matrixDecode(width, height, rowBytes, picture.data(), standard, &word, &bit,
                                           frame.data());
  } else {
    status = routine.exported.decode(width, height, rowBytes, picture.data(), &word, &bit, frame.data());
  }
  EXPECT_EQ(status, Number(fields, "status"));
  EXPECT_EQ(word, Number(fields, "word_cursor_after"));
  EXPECT_EQ(bit, Number(fields, "bit_cursor_after"));
  EXPECT_EQ(std::vector<u8>(picture.data(), picture.data() + picture.size()), expected);
  EXPECT_TRUE(picture.MarksIntact());
  EXPECT_TRUE(scratch.MarksIntact());
}

// Two calls of each routine, but for the four encoders that no rule leads to.
TEST(Vectors, RoutinesOfEveryLayout) {
  std::map<const FrameRoutine*, int> cases;
  for (const char* file :
       {"RGB8bf.txt", "RGBA8bf.txt", "RGB10bf.txt", "RGBA10bf.txt", "YCbCr8bw422.txt", "YCbCr8bv422.txt",
        "YCbCrA8bv4224.txt", "YCbCr10bv422.txt", "YCbCrA10bv4224.txt", "YCbCr8bv444.txt", "YCbCrA8bv4444.txt",
        "YCbCr8bu444.txt", "YCbCrA8bu4444.txt", "YCbCr10bv444.txt", "YCbCrA10bv4444.txt"}) {
    for (const VectorCase& fields : LoadCases(file)) {
      SCOPED_TRACE(std::string(file) + " case " + fields.at("case") + ' ' + fields.at("routine"));
      const FrameRoutine* routine = RoutineOf(fields);
      ASSERT_NE(routine, nullptr);
      ASSERT_EQ(routine->takesColourStandard, fields.contains("colour_standard"));
      if (routine->direction == Direction::encode) {
        RunEncodeCase(fields, *routine);
      } else {
        RunDecodeCase(fields, *routine);
      }
      ++cases[routine];
    }
  }
  std::vector<std::string> without;
  for (const FrameRoutine& routine : AllRoutines()) {
    if (cases[&routine] < 2) without.push_back(routine.name);
  }
  EXPECT_EQ(without, (std::vector<std::string>{
                         "VorelYCbCr10bv422pFrom_46LEncode", "VorelYCbCrA10bv4224pFromA46LEncode",
                         "VorelYCbCr10bv422iFrom_46LEncode", "VorelYCbCrA10bv4224iFromA46LEncode"}));
}

using GenericEncode = VorelStatus(u32, u32, u32, u32, i32, const void*, u32*, u32*, u32*, u32);
using FamilyEncode = VorelStatus(u32, u32, u32, u32, i32, const void*, u32, u32*, u32*, u32*, u32);

FamilyEncode* FamilyEncodeOf(const std::string& compressor) {
  static const std::map<std::string, FamilyEncode*> kEncoders = {
      {"RGB10bf", VorelRGB10bfEncode},           {"RGB8bf", VorelRGB8bfEncode},
      {"YCbCr10bv444", VorelYCbCr10bv444Encode}, {"YCbCr8b444", VorelYCbCr8b444Encode},
      {"YCbCr10bv422", VorelYCbCr10bv422Encode}, {"YCbCr8bv422", VorelYCbCr8bv422Encode},
      {"YCbCr8bw422", VorelYCbCr8bw422Encode}};
  return kEncoders.at(compressor);
}

TEST(Vectors, WholeFrames) {
  std::size_t cases = 0;
  for (const VectorCase& fields : LoadCases("frames.txt")) {
    SCOPED_TRACE("frames.txt case " + fields.at("case"));
    const u32 width = Number(fields, "width");
    const u32 height = Number(fields, "height");
    const std::vector<u8> picture = FromHex(fields.at("picture"));
    const std::vector<u8> expected = FromHex(fields.at("frame_after"));
    const u32 pixelFormat = PixelFormatFromText(fields.at("pixel_format"));
    Guarded source(picture.size(), 0);
    std::copy(picture.begin(), picture.end(), source.data());
    Guarded frame(std::size_t{width} * height * 8 + 4096, 0);
    u32 word = 0;
    u32 bit = 0;
    const u32 choice = Number(fields, "format_choice");
    const i32 rowBytes = std::stoi(fields.at("row_bytes"));
    u32* words = reinterpret_cast<u32*>(frame.data());
    u32 status = 0;
    if (fields.at("compressor") == "Generic") {
      status = VorelGenericEncode(pixelFormat, choice, width, height, rowBytes, source.data(), &word, &bit,
                                  words, 0);
    } else {
      status =
          FamilyEncodeOf(fields.at("compressor"))(pixelFormat, choice, width, height, rowBytes, source.data(),
                                                  Number(fields, "colour_standard"), &word, &bit, words, 0);
    }
    EXPECT_EQ(status, Number(fields, "status"));
    EXPECT_EQ(word, Number(fields, "word_cursor_after"));
    EXPECT_EQ(bit, Number(fields, "bit_cursor_after"));
    EXPECT_EQ(RecordedFrameBytes({word, bit}), Number(fields, "recorded_size"));
    EXPECT_EQ(std::vector<u8>(frame.data(), frame.data() + expected.size()), expected);
    ++cases;
  }
  EXPECT_EQ(cases, 506u);
}

TEST(Vectors, FrameBounds) {
  const auto lines = LoadLines("functions.txt", "frame_bound");
  ASSERT_EQ(lines.size(), 210u);
  for (const auto& line : lines) {
    const u32 width = static_cast<u32>(std::stoull(line[2]));
    const u32 height = static_cast<u32>(std::stoull(line[3]));
    EXPECT_EQ(VorelMaxFrameBytes(TagFromHex(line[1]), width, height), std::stoull(line[4]))
        << line[1] << ' ' << width << ' ' << height;
  }
}

TEST(Vectors, TagNormaliser) {
  const auto lines = LoadLines("functions.txt", "normalize_tag");
  ASSERT_EQ(lines.size(), 46u);
  for (const auto& line : lines)
    EXPECT_EQ(VorelNormalizeFormatTag(TagFromHex(line[1])), TagFromHex(line[2])) << line[1];
}

TEST(Vectors, ChoiceOfATag) {
  const std::vector<std::string> subtypes = {"Vrl0", "Vrl7", "Vrl1", "Vrl5", "Vrl2", "Vrl6", "Vrl3", "Vrl4"};
  const auto lines = LoadLines("functions.txt", "choose_tag");
  ASSERT_EQ(lines.size(), 240u);
  for (const auto& line : lines) {
    const auto found = std::find(subtypes.begin(), subtypes.end(), line[1]);
    ASSERT_NE(found, subtypes.end());
    for (u32 choice = 0; choice < 4; ++choice) {
      EXPECT_EQ(ChooseTag(static_cast<u32>(found - subtypes.begin()), PixelFormatFromText(line[2]), choice),
                TagFromHex(line[3 + choice]))
          << line[1] << ' ' << line[2] << ' ' << choice;
    }
  }
}

TEST(Vectors, RowStores) {
  const auto lines = LoadLines("functions.txt", "row_store");
  ASSERT_EQ(lines.size(), 14u);
  for (const auto& line : lines)
    EXPECT_EQ(VorelScratchBytes(static_cast<u32>(std::stoul(line[1]))), std::stoul(line[2])) << line[1];
}

}  // namespace
}  // namespace vorel
