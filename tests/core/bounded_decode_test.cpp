// VorelDecodeBounded: nothing outside the lent bytes is read, wherever a frame ends; bits behind the end are
// zero.
#include <gtest/gtest.h>

#include "base/bytes.h"
#include "frame/frame_bounds.h"
#include "tests/core/guarded.h"
#include "vorel/vorel.h"

namespace vorel {
namespace {

constexpr u32 kYuvu = FourCharacterCode("yuvu");

std::vector<u8> MakeFrame(const reference::Picture& rows, u32 width, bool interlaced) {
  const i32 rowBytes = static_cast<i32>((width + 1) / 2 * 4);
  const u32 height = static_cast<u32>(rows.size());
  const std::vector<u8> picture = RowsToBytes(rows, rowBytes, 0);
  std::vector<u32> frame(MaxFrameBytes(YCbCr8bw422, width, height) / 4 + 16, 0);
  u32 word = 0;
  u32 bit = 0;
  const u32 status = VorelGenericEncode(kYuvu, interlaced ? VOREL_INTERLACED : 0, width, height, rowBytes,
                                        picture.data(), &word, &bit, frame.data(), 0);
  EXPECT_EQ(status, 0u);
  const u8* bytes = reinterpret_cast<const u8*>(frame.data());
  return {bytes, bytes + ((word - 5) * 32 + bit + 7) / 8};  // to the last byte that holds bits
}

struct Result {
  u32 status;
  u32 word;
  u32 bit;
  std::vector<u8> picture;
  bool operator==(const Result&) const = default;
};

Result Decode(const u8* frame, std::size_t readable, u32 width, u32 height,
              VorelFamily family = VOREL_GENERIC) {
  Result result = {0, 5, 0, {}};
  const std::size_t rowBytes = std::size_t{(width + 1) / 2} * 4;
  result.picture.assign(rowBytes * height, 0xA5);
  std::vector<u8> scratch(VorelScratchBytes(width));
  result.status =
      VorelDecodeBounded(family, kYuvu, width, height, static_cast<i32>(rowBytes), result.picture.data(), 0,
                         &result.word, &result.bit, frame, readable, 0, scratch.data());
  return result;
}

TEST(BoundedDecode, AWholeFrameAtTheEndOfMemory) {
  for (const bool interlaced : {false, true}) {
    for (const Kind kind : {Kind::flat, Kind::photo, Kind::noise}) {
      for (const u32 width : {1u, 6u, 64u, 200u}) {
        const reference::Picture rows = MakePicture(kind, width, 11, width);
        const std::vector<u8> bytes = MakeFrame(rows, width, interlaced);
        Fenced frame(bytes);
        const Result result = Decode(frame.data(), frame.size(), width, 11);
        ASSERT_EQ(result.status, 0u);
        ASSERT_EQ(result.picture, RowsToBytes(rows, static_cast<i32>((width + 1) / 2 * 4), 0));
      }
    }
  }
}

TEST(BoundedDecode, AFrameCutAnywhereReadsAsIfZerosFollowed) {
  for (const bool interlaced : {false, true}) {
    const reference::Picture rows = MakePicture(Kind::photo, 30, 12, 3);
    const std::vector<u8> whole = MakeFrame(rows, 30, interlaced);
    for (std::size_t length = 0; length <= whole.size(); ++length) {
      const std::vector<u8> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
      Fenced frame(cut);
      // The same bytes and zeros, at an address that is as far from a multiple of four.
      std::vector<u32> padded(whole.size() / 4 + 1000, 0);
      u8* start = reinterpret_cast<u8*>(padded.data()) + reinterpret_cast<std::uintptr_t>(frame.data()) % 4;
      std::copy(cut.begin(), cut.end(), start);
      const Result result = Decode(frame.data(), length, 30, 12);
      const Result expected = Decode(start, whole.size() + 3900, 30, 12);
      ASSERT_EQ(result, expected) << length;
      if (length < 20) {
        ASSERT_EQ(result.status, 7u) << length;
      }
    }
  }
}

TEST(BoundedDecode, AnyAddressAndNothingBeforeOrBehind) {
  const reference::Picture rows = MakePicture(Kind::photo, 50, 9, 4);
  const std::vector<u8> bytes = MakeFrame(rows, 50, false);
  // A frame that ends at the fence begins at any address; and one that begins right behind a fence.
  for (std::size_t extra = 0; extra < 4; ++extra) {
    std::vector<u8> longer = bytes;
    longer.resize(bytes.size() + extra, 0xFF);
    Fenced frame(longer);
    ASSERT_EQ(Decode(frame.data(), frame.size(), 50, 9).picture, RowsToBytes(rows, 100, 0));
  }
  const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  std::vector<u8> first(page, 0);
  std::copy(bytes.begin(), bytes.end(), first.begin() + 1);
  Fenced block(first);
  ASSERT_EQ(Decode(block.data() + 1, bytes.size(), 50, 9).picture, RowsToBytes(rows, 100, 0));
}

// The alignment step may move the position before the first lent byte: such bits are zero too.
TEST(BoundedDecode, APositionBeforeTheFrameReadsZeros) {
  const std::vector<u8> bytes = MakeFrame(MakePicture(Kind::photo, 8, 2, 5), 8, false);
  const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  std::vector<u8> first(page, 0);
  std::copy(bytes.begin(), bytes.end(), first.begin() + 1);
  Fenced block(first);
  u32 word = 0;
  u32 bit = 30;  // 38 with the leading byte, then 6 of the word before
  std::vector<u8> picture(32, 0xA5);
  std::vector<u8> scratch(VorelScratchBytes(8));
  const u32 status = VorelDecodeBounded(VOREL_GENERIC, kYuvu, 8, 2, 16, picture.data(), 0, &word, &bit,
                                        block.data() + 1, bytes.size(), 0, scratch.data());
  EXPECT_TRUE(status == 0 || status == 4);
  EXPECT_EQ(picture[0], 128);  // symbol 0 from zero bits
}

TEST(BoundedDecode, ACursorFarBehindTheFrameReadsZeros) {
  const std::vector<u8> bytes = MakeFrame(MakePicture(Kind::photo, 8, 2, 5), 8, false);
  Fenced frame(bytes);
  for (const u32 word : {1000u, 0x40000000u, 0xFFFFFFF0u}) {
    u32 wordCursor = word;
    u32 bitCursor = 0xFFFFFFFFu;
    std::vector<u8> picture(32, 0xA5);
    std::vector<u8> scratch(VorelScratchBytes(8));
    EXPECT_EQ(VorelDecodeBounded(VOREL_GENERIC, kYuvu, 8, 2, 16, picture.data(), 0, &wordCursor, &bitCursor,
                                 frame.data(), frame.size(), 0, scratch.data()),
              0u);
    if (word < 0xF0000000u) {
      for (std::size_t i = 0; i < picture.size(); ++i) EXPECT_EQ(picture[i], i % 2 == 0 ? 128 : 0);
    }
  }
}

// The argument check alone would let such widths through: its products wrap in 32 bits.
TEST(BoundedDecode, WidthsThatWrapAreRefused) {
  const std::vector<u8> bytes = MakeFrame(MakePicture(Kind::photo, 8, 2, 5), 8, true);
  for (const u32 width : {0x01000001u, 0x08000000u, 0x10000000u, 0x7FFFFFFFu}) {
    Guarded picture(64, 0x3C);
    u32 word = 5;
    u32 bit = 0;
    EXPECT_EQ(VorelDecodeBounded(VOREL_GENERIC, kYuvu, width, 1, 64, picture.data(), 0, &word, &bit,
                                 bytes.data(), bytes.size(), 0, nullptr),
              8u);
    EXPECT_TRUE(picture.MarksIntact());
  }
}

// A pixel may have fewer significant bits than are stored: 160 of eight pixels of v210 are 20 bytes, but they
// take 24.
TEST(BoundedDecode, RowsThatDoNotHoldTheirPixelsAreRefused) {
  struct Row {
    u32 pixelFormat;
    i32 tooShort, enough;
  };
  for (const Row& row : {Row{FourCharacterCode("v210"), 20, 24}, Row{FourCharacterCode("b48r"), 44, 48},
                         Row{FourCharacterCode("b64a"), 60, 64}, Row{kYuvu, 12, 16}}) {
    for (const i32 sign : {1, -1}) {
      std::vector<u8> picture(64, 0xA5);
      std::vector<u8> scratch(VorelScratchBytes(8));
      const u32 frame[16] = {};
      u32 word = 5;
      u32 bit = 0;
      const auto decode = [&](i32 rowBytes) {
        return VorelDecodeBounded(VOREL_GENERIC, row.pixelFormat, 8, 1, sign * rowBytes, picture.data(), 0,
                                  &word, &bit, frame, sizeof frame, 0, scratch.data());
      };
      EXPECT_EQ(decode(row.tooShort), VOREL_ROW_TOO_SHORT);
      EXPECT_EQ(decode(row.enough), VOREL_NO_ROUTINE);  // as these are no frame's bytes
      EXPECT_EQ(word, 5u);
      EXPECT_EQ(bit, 0u);
      EXPECT_EQ(picture, std::vector<u8>(64, 0xA5));
    }
  }
}

TEST(BoundedDecode, FamiliesKnowTheirOwnFrames) {
  const std::vector<u8> bytes = MakeFrame(MakePicture(Kind::photo, 8, 2, 5), 8, true);
  for (VorelFamily family = 0; family < 10; ++family) {
    const bool knows = family == VOREL_GENERIC || family == VOREL_YCBCR_8BW_422;
    EXPECT_EQ(Decode(bytes.data(), bytes.size(), 8, 2, family).status, knows ? 0u : 7u) << family;
  }
}

}  // namespace
}  // namespace vorel
