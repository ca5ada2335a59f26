// Single frames: buffers used again, the size that is recorded, and what decoding refuses.
#include "tool/frame_coder.h"

#include <gtest/gtest.h>

#include <cstring>

#include "base/bytes.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

picture_io::ClipFormat FormatOf(u32 width, u32 height, u32 pixelFormat = picture_io::k2vuy) {
  picture_io::ClipFormat format;
  format.pixelFormat = pixelFormat;
  format.width = width;
  format.height = height;
  return format;
}

FrameCoding CodingOf(const picture_io::Picture& picture) {
  return CodingOfClip(FormatOf(picture.width, picture.height, picture.pixelFormat), VOREL_GENERIC, true,
                      VOREL_COLOUR_601, "clip");
}

picture_io::Picture NoisePicture(u32 width, u32 height, u32 pixelFormat = picture_io::k2vuy) {
  picture_io::Picture picture;
  ShapePicture(FormatOf(width, height, pixelFormat), picture);
  const std::string noise = Noise(picture.bytes.size(), 5);
  picture.bytes.assign(noise.begin(), noise.end());
  return picture;
}

picture_io::Picture FlatPicture(u32 width, u32 height) {
  picture_io::Picture picture;
  ShapePicture(FormatOf(width, height), picture);
  std::fill(picture.bytes.begin(), picture.bytes.end(), u8{50});
  return picture;
}

std::vector<u8> BytesOf(const FrameBuffer& buffer) {
  std::vector<u8> bytes(buffer.bytes);
  std::memcpy(bytes.data(), buffer.words.data(), bytes.size());
  return bytes;
}

std::vector<u8> EncodedFresh(const picture_io::Picture& picture) {
  FrameBuffer buffer;
  EncodeFrame(picture, CodingOf(picture), buffer, "frame");
  return BytesOf(buffer);
}

std::string DecodeRefusal(const std::vector<u8>& frame, u32 width, u32 height) {
  picture_io::Picture picture;
  std::vector<u8> scratch;
  try {
    DecodeFrame(frame, {FormatOf(width, height), VOREL_COLOUR_601}, picture, scratch, "place");
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.where, "place");
    return problem.what;
  }
  return "";
}

}  // namespace

TEST(FrameCoder, BufferUsedAgainEndsLikeAFreshOne) {
  FrameBuffer buffer;
  for (const u32 width : {33u, 64u, 33u}) {
    for (const picture_io::Picture& picture : {NoisePicture(width, 20), FlatPicture(width, 20)}) {
      FrameBuffer fresh;
      EncodeFrame(picture, CodingOf(picture), fresh, "frame");
      EncodeFrame(picture, CodingOf(picture), buffer, "frame");
      EXPECT_EQ(buffer.bytes, fresh.bytes);
      EXPECT_EQ(buffer.words, fresh.words);
    }
  }
}

TEST(FrameCoder, WordsBehindTheBitsAreZero) {
  for (const picture_io::Picture& picture : {NoisePicture(64, 20), FlatPicture(64, 20)}) {
    FrameBuffer buffer;
    EncodeFrame(picture, CodingOf(picture), buffer, "frame");
    const std::vector<u8> frame = BytesOf(buffer);
    picture_io::Picture decoded;
    std::vector<u8> scratch;
    const FrameEnd end = DecodeFrame(frame, {FormatOf(64, 20), VOREL_COLOUR_601}, decoded, scratch, "frame");
    EXPECT_EQ(decoded.bytes, picture.bytes);
    EXPECT_EQ(end.recordedBytes, frame.size());
    EXPECT_EQ(end.usedBytes + 20, frame.size());
    EXPECT_EQ(std::vector<u8>(frame.end() - 16, frame.end()), std::vector<u8>(16));
    for (const u32 word : std::vector<u32>(
             buffer.words.begin() + static_cast<std::ptrdiff_t>(buffer.touchedWords), buffer.words.end())) {
      ASSERT_EQ(word, 0u);
    }
  }
}

TEST(FrameCoder, FrameCutAnywhereIsRefused) {
  const std::vector<u8> frame = EncodedFresh(NoisePicture(64, 20));
  for (std::size_t size = 0; size + 20 < frame.size(); ++size) {
    const std::vector<u8> cut(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_NE(DecodeRefusal(cut, 64, 20), "") << size;
  }
}

TEST(FrameCoder, RefusalsSayWhatTheFrameIs) {
  std::vector<u8> frame = EncodedFresh(NoisePicture(64, 20));
  const auto withTag = [&frame](const char(&tag)[5]) {
    StoreLittle32(&frame[16], WordOfBytes(tag));
    return DecodeRefusal(frame, 64, 20);
  };
  EXPECT_EQ(withTag("YbYr"),
            "frames of format Y'CbCr 8bw 4:2:2p (tag \"YbYr\") do not come as '2vuy' pictures");
  EXPECT_EQ(withTag("what"), "the frame's format tag \"what\" is unknown");
  frame = EncodedFresh(NoisePicture(64, 20));
  frame[9] ^= 1;
  EXPECT_EQ(DecodeRefusal(frame, 64, 20), "the frame's header is damaged");
  frame[0] = 'X';
  EXPECT_EQ(DecodeRefusal(frame, 64, 20), "not a VorelVideo frame");
  StoreLittle32(&frame[16], WordOfBytes("what"));
  EXPECT_EQ(DecodeRefusal(frame, 64, 20), "not a VorelVideo frame");
}

TEST(FrameCoder, FramesBelowTheSmallestOfTheirFormatAreCutShort) {
  std::vector<u8> frame = EncodedFresh(NoisePicture(64, 20));
  frame.resize(500);
  const auto refusal = [&frame](const char(&tag)[5]) {
    StoreLittle32(&frame[16], WordOfBytes(tag));
    return DecodeRefusal(frame, 64, 20);
  };
  const std::string begin =
      "the frame is cut short: it has 500 bytes, and no frame of this size has fewer than ";
  EXPECT_EQ(refusal("ARGB"), begin + "663");  // 20 rows of 1 + 4 * 64 bits
  EXPECT_EQ(refusal("CA2i"), begin + "503");  // 20 rows of 1 + 6 * 32 bits
}

TEST(FrameCoder, OtherSpellingOfTheTagDecodes) {
  std::vector<u8> frame = EncodedFresh(NoisePicture(64, 20));
  StoreLittle32(&frame[16], WordOfBytes("YRYB"));
  EXPECT_EQ(DecodeRefusal(frame, 64, 20), "");
}

TEST(FrameCoder, BuffersHoldTheBoundOfTheirFormat) {
  // 20 rows of 32 pairs: a header bit, 4 bytes or 40 bits a pair; one attempt, one word. More to decode it again: the
  // header, a row and a pixel of the longest codes, two words; up to a whole word.
  const u32 more = 20 + 65 * 8 + 8 + 1;
  EXPECT_EQ(FrameBufferBytes(WordOfBytes("BYRY"), 64, 20), 3u + 20 * 32 * 4 + 32 * 8 + 4 + more);
  EXPECT_EQ(FrameBufferBytes(WordOfBytes("\xA2YRy"), 64, 20), 3u + 20 * 32 * 5 + 32 * 8 + 4 + more);
}

TEST(FrameCoder, RefusalOfAPairNamesBothSides) {
  const picture_io::Picture picture = NoisePicture(64, 20);
  FrameCoding coding = CodingOf(picture);
  coding.family = VOREL_YCBCR_8BW_422;
  FrameBuffer buffer;
  try {
    EncodeFrame(picture, coding, buffer, "place");
    FAIL();
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.what,
              "cannot encode: no routine makes frames of format Y'CbCr 8bv 4:2:2p from '2vuy' pictures");
  }
}

TEST(FrameCoder, EveryStatusHasWords) {
  EXPECT_EQ(StatusText(VOREL_FRAME_BOUND_READ), "its bits go on beyond the bound of frames of this size");
  EXPECT_EQ(StatusText(VOREL_SCRATCH_MISSING), "there is no scratch memory");
  EXPECT_EQ(StatusText(VOREL_SCRATCH_MISSING + 1), "status 20");
}

}  // namespace vorel::tool
