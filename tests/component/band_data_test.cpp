// The bytes of frames: how they come, and what happens to those that are cut short or hostile.
#include <algorithm>
#include <random>

#include "component/pixel_map.h"
#include "tests/component/decompressor_fixture.h"

namespace vorel::component {

namespace {

// --- Data procedure ---

struct Feeder {
  std::span<const u8> data;
  std::vector<u8> piece;  // what stands ready; it moves with every call
  std::vector<i32> asked;
  std::size_t at;
  std::size_t failsAt;  // call
  OSErr error;
};
Feeder feeder;

OSErr Feed(Ptr* data, i32 bytesNeeded, Slot refCon) {
  EXPECT_EQ(refCon, 4711);
  feeder.asked.push_back(bytesNeeded);
  const bool fails = feeder.asked.size() - 1 == feeder.failsAt;
  if (fails && feeder.error != eofErr) return feeder.error;
  const std::size_t count = std::min(static_cast<std::size_t>(bytesNeeded), feeder.data.size() - feeder.at);
  const std::span<const u8> next = feeder.data.subspan(feeder.at, count);
  feeder.piece = std::vector<u8>(next.begin(), next.end());
  feeder.at += count;
  *data = feeder.piece.data();
  return fails ? feeder.error : noErr;
}

struct DataProcedureTest : DecompressorTest {
  void SetUp() override {
    DecompressorTest::SetUp();
    frame = MakeFrame(SourceOf("ARGB"), 64, 32);
    Band whole = MakeBand(ParametersFor(Describe(frame)), 32, frame.bytes);
    ASSERT_EQ(DecodeBand(instance, whole), noErr);
    expected = whole.picture->bytes;
  }

  // A band whose data come in pieces of this size; at first only a stray piece is there.
  Band MakePieces(i32 pieceBytes, std::size_t failsAt, OSErr error) {
    feeder = {frame.bytes, {}, {}, 0, failsAt, error};
    Band band = MakeBand(ParametersFor(Describe(frame)), 32, stray);
    band.parameters.bufferSize = pieceBytes;
    band.record.dataProcRecord = {Feed, 4711};
    return band;
  }

  static constexpr std::size_t kNever = 1000000;
  Frame frame;
  std::vector<u8> expected;
  std::vector<u8> stray = std::vector<u8>(4, 0);
};

TEST_F(DataProcedureTest, FramesComeInPiecesOfTheBufferSize) {
  const i32 size = static_cast<i32>(frame.bytes.size());
  for (const i32 piece : {1000, 1024, size - 1, size, size + 1, 0}) {
    Band band = MakePieces(piece, kNever, noErr);
    ASSERT_EQ(Begin(instance, band), noErr) << piece;
    const i32 most = piece == 0 ? size : std::min(piece, size);
    EXPECT_EQ(feeder.asked.size(), static_cast<std::size_t>((size + most - 1) / most)) << piece;
    i32 sum = 0;
    for (const i32 asked : feeder.asked) {
      EXPECT_LE(asked, most);
      sum += asked;
    }
    EXPECT_EQ(sum, size);
    feeder.piece.assign(feeder.piece.size(), 0);  // the copy is the decompressor's own
    EXPECT_EQ(Draw(instance, band), noErr) << piece;
    EXPECT_EQ(End(instance, band, noErr), noErr);
    EXPECT_EQ(band.picture->bytes, expected) << piece;
  }
}

TEST_F(DataProcedureTest, TheEndOfTheFileIsHarmlessAtTheLastPiece) {
  const std::size_t pieces = (frame.bytes.size() + 999) / 1000;
  Band band = MakePieces(1000, pieces - 1, -39);
  EXPECT_EQ(DecodeBand(instance, band), noErr);
  EXPECT_EQ(band.picture->bytes, expected);
}

TEST_F(DataProcedureTest, ErrorsGoBackAndTheCopyIsFreed) {
  const i32 blocks = embedded::CountsInUse().blocks;
  const std::size_t pieces = (frame.bytes.size() + 999) / 1000;
  ASSERT_GE(pieces, 3u);
  struct Row {
    std::size_t at;
    OSErr error;
  };
  for (const Row row : {Row{0, -39}, Row{pieces - 2, -39}, Row{0, -36}, Row{1, -128}, Row{pieces - 1, -36}}) {
    Band band = MakePieces(1000, row.at, row.error);
    EXPECT_EQ(Begin(instance, band), row.error) << row.at;
    EXPECT_EQ(feeder.asked.size(), row.at + 1);
    EXPECT_EQ(embedded::CountsInUse().blocks, blocks);
    EXPECT_EQ(End(instance, band, row.error), noErr);
  }
}

TEST_F(DataProcedureTest, TheCopyIsFreedAtTheEndAndIfTheFrameIsRefused) {
  const i32 blocks = embedded::CountsInUse().blocks;
  Band band = MakePieces(1000, kNever, noErr);
  ASSERT_EQ(Begin(instance, band), noErr);
  EXPECT_EQ(embedded::CountsInUse().blocks, blocks + 1);
  EXPECT_EQ(End(instance, band, noErr), noErr);
  EXPECT_EQ(embedded::CountsInUse().blocks, blocks);
  frame.bytes[0] ^= 1;
  Band bad = MakePieces(1000, kNever, noErr);
  EXPECT_EQ(Begin(instance, bad), -19);
  EXPECT_EQ(embedded::CountsInUse().blocks, blocks);
}

TEST_F(DataProcedureTest, WithoutMemoryOrSizeThereIsNoFrame) {
  const embedded::HostCounts before = embedded::CountsInUse();
  Band band = MakePieces(1000, kNever, noErr);
  embedded::FailAllocation(1);
  EXPECT_EQ(Begin(instance, band), -108);
  embedded::FailAllocation(2);  // the tag's
  EXPECT_EQ(Begin(instance, band), -108);
  embedded::FailAllocation(0);
  EXPECT_EQ(embedded::CountsInUse().blocks, before.blocks);
  for (const i32 size : {0, -1, std::numeric_limits<i32>::min()}) {
    (*band.parameters.imageDescription)->dataSize = size;
    EXPECT_EQ(Begin(instance, band), -50) << size;
  }
  EXPECT_TRUE(feeder.asked.empty() || feeder.asked.size() <= frame.bytes.size() / 1000 + 1);
}

// --- Damaged frames ---

using DamagedFrameTest = DecompressorTest;

TEST_F(DamagedFrameTest, AFrameIsCompleteFromItsLastUsedByteOn) {
  for (const TagSource& source : TagSources()) {
    const Frame frame = MakeFrame(source, 9, 2);
    const OSType target = source.subtype == FourCharacterCode("Vrl4") ? FourCharacterCode("yuvu") : 32;
    const CodecDecompressParams parameters = ParametersFor(Describe(frame));
    Band whole = MakeBand(parameters, target, frame.bytes);
    ASSERT_EQ(DecodeBand(instance, whole), noErr);
    for (std::size_t address = 0; address < 4; ++address) {
      for (std::size_t count = 0; count <= frame.bytes.size(); ++count) {
        const BytesAtEnd copy = CopyToEnd({frame.bytes.data(), count}, address);
        Band band = MakeBand(parameters, target, {copy.start, count});
        (*parameters.imageDescription)->dataSize = static_cast<i32>(count);
        const ComponentResult expected = count < 20 ? -19 : count < frame.bytes.size() ? kRefused : 0;
        ASSERT_EQ(DecodeBand(instance, band), expected) << source.tag << address << " " << count;
        ASSERT_TRUE(expected != 0 || band.picture->bytes == whole.picture->bytes) << source.tag;
      }
    }
  }
}

TEST_F(DamagedFrameTest, HostileFramesTouchNothingElse) {
  std::mt19937 random(7);
  for (const TagSource& source : TagSources()) {
    const OSType target = source.subtype == FourCharacterCode("Vrl4") ? FourCharacterCode("yuvu") : 32;
    for (int round = 0; round < 60; ++round) {
      const u16 width = static_cast<u16>(1 + random() % 70);
      const u16 height = static_cast<u16>(1 + random() % 4);
      std::vector<u8> bytes(20 + random() % 200);
      VorelWriteFrameHeader(WordOfBytes(source.tag), bytes.data());
      const int kind = round % 3;
      for (std::size_t i = 20; i < bytes.size(); ++i)
        bytes[i] = kind == 0 ? static_cast<u8>(random()) : kind == 1 ? u8{0xFF} : u8{0};
      const BytesAtEnd copy = CopyToEnd(bytes, random() % 4);
      const ImageDescriptionHandle description = Describe(width, height);
      AddTag(description, WordOfBytes(source.tag));
      Band band = MakeBand(ParametersFor(description), target, {copy.start, bytes.size()});
      const ComponentResult result = DecodeBand(instance, band);
      ASSERT_TRUE(result == 0 || result == kRefused) << source.tag << result;
    }
  }
}

TEST_F(DamagedFrameTest, AnEmptyPictureIsRefused) {
  const Frame frame = MakeFrame(SourceOf("ARGB"), 8, 4);
  for (const PictureSize size : {PictureSize{0, 4}, PictureSize{8, 0}, PictureSize{0, 0}}) {
    const ImageDescriptionHandle description =
        Describe(static_cast<u16>(size.width), static_cast<u16>(size.height));
    AddTag(description, frame.tag);
    Band band = MakeBand(ParametersFor(description), 32, frame.bytes);
    std::vector<u8> room(256, 0xA5);
    band.record.baseAddr = room.data();
    band.record.rowBytes = 64;
    EXPECT_EQ(DecodeBand(instance, band), kRefused);
    EXPECT_EQ(room, std::vector<u8>(256, 0xA5));
  }
}

}  // namespace

}  // namespace vorel::component
