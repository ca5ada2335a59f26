// The way from a frame, or a picture, to its routine: signatures, tags, cursors, the order of tests.
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <set>

#include "frame/catalogue.h"
#include "frame/frame_header.h"
#include "frame/stream_cursor.h"
#include "tests/core/guarded.h"
#include "vorel/vorel.h"

namespace vorel {
namespace {

constexpr u32 kYuvu = FourCharacterCode("yuvu");

using LenientDecode = decltype(VorelGenericLenientDecode)*;
struct Decoder {
  const char* name;
  LenientDecode decode;
  bool knowsWideFrames;
};
const std::array<Decoder, 8> kDecoders = {{{"generic", VorelGenericLenientDecode, true},
                                           {"RGB 10bf", VorelRGB10bfLenientDecode, false},
                                           {"RGB 8bf", VorelRGB8bfLenientDecode, false},
                                           {"10bv 4:4:4", VorelYCbCr10bv444LenientDecode, false},
                                           {"8b 4:4:4", VorelYCbCr8b444LenientDecode, false},
                                           {"10bv 4:2:2", VorelYCbCr10bv422LenientDecode, false},
                                           {"8bv 4:2:2", VorelYCbCr8bv422LenientDecode, false},
                                           {"8bw 4:2:2", VorelYCbCr8bw422LenientDecode, true}}};

// A frame of 4 x 2 pixels in a buffer of words, with room behind.
class Dispatch : public testing::Test {
 public:
  Dispatch() { EncodeInto(0); }
  void EncodeInto(u32 choice) {
    frame.assign(64, 0);
    u32 word = 0;
    u32 bit = 0;
    ASSERT_EQ(VorelYCbCr8bw422Encode(kYuvu, choice, 4, 2, 8, picture.data(), 0, &word, &bit, frame.data(), 0),
              0u);
    end = {word, bit};
  }
  u8* Bytes() { return reinterpret_cast<u8*>(frame.data()); }
  u32 Decode(LenientDecode decode, u32 pixelFormat = kYuvu) {
    word = 5;
    bit = 0;
    copy.fill(0);
    return decode(pixelFormat, 4, 2, 8, copy.data(), 0, &word, &bit, frame.data(), 0, scratch.data());
  }
  u32 DecodeStrictly(u32 choice = 0) {
    word = 0;
    bit = 0;
    copy.fill(0);
    return VorelYCbCr8bw422StrictDecode(kYuvu, choice, 4, 2, 8, copy.data(), 0, &word, &bit, frame.data(), 0,
                                        scratch.data());
  }

  alignas(4) std::array<u8, 16> picture = {16, 1, 235, 255, 40, 0, 50, 128, 16, 2, 200, 254, 41, 1, 51, 127};
  alignas(4) std::array<u8, 16> copy = {};
  std::vector<u32> frame;
  std::array<u32, 32> scratch = {};
  StreamCursor end = {};
  u32 word = 0;
  u32 bit = 0;
};

TEST_F(Dispatch, EncodeWritesTheHeaderAndMovesTheCursorByFive) {
  const u8 expected[20] = {0x56, 0x6F, 0x72, 0x6C, 0x0D, 0x0A, 0x00, 0x0A, 0xFF, 0x54,
                           0x61, 0x6D, 0x72, 0x69, 0x63, 0x6B, 0x59, 0x62, 0x59, 0x72};
  EXPECT_EQ(std::vector<u8>(Bytes(), Bytes() + 20), std::vector<u8>(expected, expected + 20));
  EXPECT_EQ(frame[1], 0x0A000A0Du);
  // Five for the header, five counted again, and the words of the stream.
  const reference::Picture rows = {{picture.begin(), picture.begin() + 8},
                                   {picture.begin() + 8, picture.end()}};
  const auto expectedFrame = reference::EncodeWide(rows, false, 4, reference::Bits(160), 5, 1000);
  EXPECT_EQ(end.word, 5 + expectedFrame.bits.size() / 32);
  EXPECT_EQ(end.bit, expectedFrame.bits.size() % 32);
}

TEST_F(Dispatch, EncodeChoosesTheScanByTheFlag) {
  EncodeInto(VOREL_INTERLACED);
  EXPECT_EQ(LoadBig32(&frame[4]), FourCharacterCode("Ybyr"));
  EncodeInto(VOREL_KEEP_ALPHA);  // 'yuvu' has none
  EXPECT_EQ(LoadBig32(&frame[4]), FourCharacterCode("YbYr"));
}

TEST_F(Dispatch, AFrameIsDecodedByTheGenericAndItsOwnFamilyAlone) {
  for (const Decoder& decoder : kDecoders) {
    EXPECT_EQ(Decode(decoder.decode), decoder.knowsWideFrames ? 0u : 7u) << decoder.name;
    if (!decoder.knowsWideFrames) continue;
    EXPECT_EQ(copy, picture) << decoder.name;
    EXPECT_EQ(word, end.word) << decoder.name;
    EXPECT_EQ(bit, end.bit);
  }
}

TEST_F(Dispatch, BothSignaturesAndTheirMixturesAreRead) {
  for (const char* first : {"Vorl", "Kesp"}) {
    for (const u8 marker : {u8{0xFF}, u8{0xAD}}) {
      std::memcpy(Bytes(), first, 4);
      Bytes()[8] = marker;
      for (const Decoder& decoder : kDecoders) {
        EXPECT_EQ(Decode(decoder.decode), decoder.knowsWideFrames ? 0u : 7u)
            << decoder.name << first << int{marker};
      }
    }
  }
}

TEST(Signature, TenBitFamiliesKnowTheWrittenOneAlone) {
  HeaderWords header = {kWrittenSignature[0], kWrittenSignature[1], kWrittenSignature[2],
                        kWrittenSignature[3], 0};
  EXPECT_TRUE(IsWrittenSignature(header));
  EXPECT_TRUE(IsReadableSignature(header));
  header[0] = 0x7073654B;  // "Kesp"
  EXPECT_FALSE(IsWrittenSignature(header));
  EXPECT_TRUE(IsReadableSignature(header));
  header[2] = 0x6D6154AD;
  EXPECT_TRUE(IsReadableSignature(header));
  header[1] ^= 1;
  EXPECT_FALSE(IsReadableSignature(header));
  header[1] ^= 1;
  header[3] ^= 0x80000000u;
  EXPECT_FALSE(IsReadableSignature(header));
}

TEST_F(Dispatch, ABadSignatureIsRefusedByteForByte) {
  for (std::size_t i = 0; i < 16; ++i) {
    Bytes()[i] ^= 0x20;
    for (const Decoder& decoder : kDecoders) EXPECT_EQ(Decode(decoder.decode), 7u) << i;
    Bytes()[i] ^= 0x20;
  }
}

TEST_F(Dispatch, TheLenientDecodeTakesEverySpellingAndTheStrictOneItsOwn) {
  EXPECT_EQ(DecodeStrictly(), 0u);
  EXPECT_EQ(copy, picture);
  EXPECT_EQ(word, end.word);
  EXPECT_EQ(bit, end.bit);
  std::memcpy(Bytes() + 16, "rYbY", 4);
  EXPECT_EQ(Decode(VorelGenericLenientDecode), 0u);
  EXPECT_EQ(copy, picture);
  EXPECT_EQ(DecodeStrictly(), 7u);
  std::memcpy(Bytes() + 16, "none", 4);
  EXPECT_EQ(Decode(VorelGenericLenientDecode), 7u);
}

TEST_F(Dispatch, TheStrictDecodeMovesTheCursorBeforeItJudges) {
  Bytes()[0] ^= 1;
  EXPECT_EQ(DecodeStrictly(), 7u);
  EXPECT_EQ(word, 5u);
  Bytes()[0] ^= 1;
  EXPECT_EQ(DecodeStrictly(VOREL_INTERLACED), 7u);  // another tag than the frame's
  EXPECT_EQ(word, 5u);
  word = 3;
  bit = 0;
  EXPECT_EQ(VorelYCbCr8bw422StrictDecode(FourCharacterCode("2vuy"), 0, 4, 2, 8, copy.data(), 0, &word, &bit,
                                         frame.data(), 0, scratch.data()),
            7u);
  EXPECT_EQ(word, 3u);  // no tag at all: nothing has moved
  std::memcpy(Bytes(), "Kesp", 4);
  Bytes()[8] = 0xAD;
  EXPECT_EQ(DecodeStrictly(), 7u);
}

// The tag is looked for at the cursor, the signature in the first words of the frame pointer.
TEST_F(Dispatch, TheStrictDecodeFindsItsTagAtTheWordCursor) {
  std::vector<u32> moved(frame.size() + 2, 0);
  std::copy(frame.begin(), frame.begin() + 4, moved.begin());
  moved[2 + 4] = frame[4];
  std::copy(frame.begin() + 5, frame.end(), moved.begin() + 2 + 5);
  word = 2;
  bit = 0;
  EXPECT_EQ(VorelYCbCr8bw422StrictDecode(kYuvu, 0, 4, 2, 8, copy.data(), 0, &word, &bit, moved.data(), 0,
                                         scratch.data()),
            0u);
  EXPECT_EQ(copy, picture);
}

TEST_F(Dispatch, TheGenericStrictDecodeKnowsNoYCbCr) {
  word = 0;
  EXPECT_EQ(
      VorelGenericStrictDecode(kYuvu, 0, 4, 2, 8, copy.data(), &word, &bit, frame.data(), 0, scratch.data()),
      7u);
  EXPECT_EQ(word, 5u);
}

TEST_F(Dispatch, AWideFrameGoesIntoNoOtherPixelFormat) {
  for (const Decoder& decoder : kDecoders) {
    for (const u32 pixelFormat :
         {FourCharacterCode("2vuy"), FourCharacterCode("yuvs"), u32{32}, FourCharacterCode("L565")}) {
      EXPECT_EQ(Decode(decoder.decode, pixelFormat), 7u) << decoder.name;
    }
  }
}

TEST_F(Dispatch, EncodersWithoutATagLeaveTheFrameUntouched) {
  std::vector<u32> untouched(64, 0x5A5A5A5A);
  word = 0;
  bit = 0;
  EXPECT_EQ(VorelGenericEncode(FourCharacterCode("VUYA"), 0, 4, 2, 16, picture.data(), &word, &bit,
                               untouched.data(), 0),
            7u);
  EXPECT_EQ(VorelRGB8bfEncode(kYuvu, 0, 4, 2, 8, picture.data(), 0, &word, &bit, untouched.data(), 0), 7u);
  EXPECT_EQ(VorelYCbCr8bw422Encode(FourCharacterCode("2vuy"), 0, 4, 2, 8, picture.data(), 0, &word, &bit,
                                   untouched.data(), 0),
            7u);
  EXPECT_EQ(word, 0u);
  for (const u32 value : untouched) EXPECT_EQ(value, 0x5A5A5A5Au);
}

// The rule gives 'V416' a tag of 10bv 4:4:4, and the generic encoder has no routine for it: the header stays.
TEST_F(Dispatch, TheHeaderStaysWrittenWhenNoRoutineIsFound) {
  std::vector<u32> words(64, 0);
  word = 0;
  bit = 0;
  EXPECT_EQ(
      VorelGenericEncode(FourCharacterCode("V416"), 0, 1, 1, 8, picture.data(), &word, &bit, words.data(), 0),
      7u);
  EXPECT_EQ(word, 5u);
  EXPECT_EQ(LoadBig32(&words[4]), FourCharacterCode("YBR\n"));
  EXPECT_EQ(words[5], 0u);
}

TEST_F(Dispatch, AFrameAtAnyAddressIsReadWithItsWordsAlignedDownward) {
  for (const std::size_t shift : {1u, 2u, 3u}) {
    std::vector<u32> moved(frame.size() + 1, 0x6B6B6B6B);
    u8* at = reinterpret_cast<u8*>(moved.data()) + shift;
    std::memcpy(at, frame.data(), frame.size() * 4);
    word = 5;
    bit = 0;
    copy.fill(0);
    EXPECT_EQ(VorelGenericLenientDecode(kYuvu, 4, 2, 8, copy.data(), 0, &word, &bit,
                                        reinterpret_cast<const u32*>(at), 0, scratch.data()),
              0u);
    EXPECT_EQ(copy, picture);
    // Position of the end, counted from the aligned word: 8 bits a byte further on.
    const u32 bits = (end.word - 5) * 32 + end.bit + 8 * static_cast<u32>(shift);
    EXPECT_EQ(word, 5 + bits / 32);
    EXPECT_EQ(bit, bits % 32);
    // A strict decode hands the pointer on as it stands.
    word = 0;
    bit = 0;
    EXPECT_EQ(VorelYCbCr8bw422StrictDecode(kYuvu, 0, 4, 2, 8, copy.data(), 0, &word, &bit,
                                           reinterpret_cast<const u32*>(at), 0, scratch.data()),
              18u);
  }
}

TEST_F(Dispatch, RealigningMovesTheBitCursorAlsoWhenTheFrameIsRefused) {
  std::vector<u32> moved(frame.size() + 1, 0);
  const u8* at = reinterpret_cast<u8*>(moved.data()) + 3;
  word = 5;
  bit = 0;
  EXPECT_EQ(VorelGenericLenientDecode(kYuvu, 4, 2, 8, copy.data(), 0, &word, &bit,
                                      reinterpret_cast<const u32*>(at), 0, nullptr),
            7u);
  EXPECT_EQ(word, 5u);
  EXPECT_EQ(bit, 24u);
  bit = 8;  // 8 + 24 is exactly 32 and stays
  VorelGenericLenientDecode(kYuvu, 4, 2, 8, copy.data(), 0, &word, &bit, reinterpret_cast<const u32*>(at), 0,
                            nullptr);
  EXPECT_EQ(bit, 32u);
  bit = 9;  // 33 goes one word back
  VorelGenericLenientDecode(kYuvu, 4, 2, 8, copy.data(), 0, &word, &bit, reinterpret_cast<const u32*>(at), 0,
                            nullptr);
  EXPECT_EQ(bit, 1u);
}

// Beyond 32 the alignment step moves the frame pointer one word back and so the stream two words: to where
// the stream then stands.
TEST_F(Dispatch, RealigningFromALateBitMovesTheStreamTwoWordsBack) {
  // The frame begins at byte 1; bit cursor 31 becomes 39 and then 7, counted from the word before.
  std::vector<u32> words(128, 0);
  u8* base = reinterpret_cast<u8*>(words.data()) + 64;
  std::memcpy(base + 1, frame.data(), 20);
  // Encode the picture so that its first bit is at word 9, bit 7 counted from base - 4.
  u32 encodeWord = 9;
  u32 encodeBit = 7;
  ASSERT_EQ(VorelYCbCr8bw422pFromyuvuEncode(4, 2, 8, picture.data(), &encodeWord, &encodeBit,
                                            reinterpret_cast<u32*>(base - 4)),
            0u);
  word = 9;
  bit = 31;
  copy.fill(0);
  EXPECT_EQ(VorelGenericLenientDecode(kYuvu, 4, 2, 8, copy.data(), 0, &word, &bit,
                                      reinterpret_cast<const u32*>(base + 1), 0, scratch.data()),
            0u);
  EXPECT_EQ(copy, picture);
  EXPECT_EQ(word, encodeWord);
  EXPECT_EQ(bit, encodeBit);
}

TEST_F(Dispatch, MissingPointersAreToldAndNotFollowed) {
  EXPECT_EQ(VorelGenericLenientDecode(kYuvu, 4, 2, 8, copy.data(), 0, nullptr, &bit, frame.data(), 0,
                                      scratch.data()),
            13u);
  EXPECT_EQ(VorelGenericLenientDecode(kYuvu, 4, 2, 8, copy.data(), 0, &word, nullptr, frame.data(), 0,
                                      scratch.data()),
            15u);
  EXPECT_EQ(
      VorelGenericLenientDecode(kYuvu, 4, 2, 8, copy.data(), 0, &word, &bit, nullptr, 0, scratch.data()),
      17u);
  EXPECT_EQ(VorelGenericEncode(kYuvu, 0, 4, 2, 8, picture.data(), nullptr, &bit, frame.data(), 0), 13u);
  EXPECT_EQ(VorelYCbCr8bw422StrictDecode(kYuvu, 0, 4, 2, 8, copy.data(), 0, &word, &bit, nullptr, 0,
                                         scratch.data()),
            17u);
}

// What the dispatch need not look through is left to the routine's own tests, in their order.
TEST_F(Dispatch, PointersThatItDoesNotUseDoNotComeFirst) {
  const u32* const words = frame.data();
  u32* const none = nullptr;
  void* const store = scratch.data();
  EXPECT_EQ(VorelGenericLenientDecode(kYuvu, 0, 2, 8, copy.data(), 0, none, none, words, 0, store), 8u);
  EXPECT_EQ(VorelGenericLenientDecode(kYuvu, 4, 2, 8, nullptr, 0, none, &bit, words, 0, store), 11u);
  EXPECT_EQ(VorelGenericLenientDecode(32, 4, 2, 8, copy.data(), 0, none, none, words, 0, store), 7u);
  word = 0;
  EXPECT_EQ(VorelGenericEncode(kYuvu, 0, 4, 2, 8, picture.data(), &word, none, frame.data(), 0), 15u);
  EXPECT_EQ(word, 5u);  // the header has been written
  word = 0;
  EXPECT_EQ(VorelGenericEncode(kYuvu, 0, 0, 2, 8, picture.data(), &word, none, frame.data(), 0), 8u);
  Bytes()[0] ^= 1;
  word = 0;
  EXPECT_EQ(VorelYCbCr8bw422StrictDecode(kYuvu, 0, 4, 2, 8, copy.data(), 0, &word, none, words, 0, store),
            7u);
  EXPECT_EQ(word, 5u);
}

TEST_F(Dispatch, MisalignedCursorsAreToldByTheRoutine) {
  std::array<u32, 4> cursors = {};
  u32* const odd = reinterpret_cast<u32*>(reinterpret_cast<u8*>(cursors.data()) + 1);
  const u32* const words = frame.data();
  void* const store = scratch.data();
  bit = 0;
  word = 5;
  EXPECT_EQ(VorelGenericLenientDecode(kYuvu, 4, 2, 8, copy.data(), 0, odd, &bit, words, 0, store), 14u);
  EXPECT_EQ(VorelGenericLenientDecode(kYuvu, 4, 2, 8, copy.data(), 0, &word, odd, words, 0, store), 16u);
  EXPECT_EQ(VorelGenericEncode(kYuvu, 0, 4, 2, 8, picture.data(), odd, &bit, frame.data(), 0), 14u);
  EXPECT_EQ(LoadNative<u32>(odd), 5u);
  word = 0;
  EXPECT_EQ(VorelGenericEncode(kYuvu, 0, 4, 2, 8, picture.data(), &word, odd, frame.data(), 0), 16u);
  StoreNative(odd, u32{0});
  EXPECT_EQ(VorelYCbCr8bw422StrictDecode(kYuvu, 0, 4, 2, 8, copy.data(), 0, odd, &bit, words, 0, store), 14u);
}

TEST_F(Dispatch, FlagsMeanNothingToYuvu) {
  word = 5;
  bit = 0;
  const u32 status = VorelGenericLenientDecode(kYuvu, 4, 2, 8, copy.data(), 0, &word, &bit, frame.data(),
                                               0xFFFFFFFF, scratch.data());
  EXPECT_EQ(status, 0u);
  EXPECT_EQ(copy, picture);
}

TEST_F(Dispatch, ProgressiveFramesNeedScratchAndInterlacedOnesDoNot) {
  word = 5;
  bit = 0;
  EXPECT_EQ(VorelGenericLenientDecode(kYuvu, 4, 2, 8, copy.data(), 0, &word, &bit, frame.data(), 0, nullptr),
            19u);
  EncodeInto(VOREL_INTERLACED);
  EXPECT_EQ(VorelGenericLenientDecode(kYuvu, 4, 2, 8, copy.data(), 0, &word, &bit, frame.data(), 0, nullptr),
            0u);
  EXPECT_EQ(copy, picture);
}

// The pixel part of a routine's name, by the code and by whether the frame has alpha.
std::string PixelPart(u32 code, bool alpha) {
  static const std::map<u32, std::pair<std::string, std::string>> kTwoNames = {
      {32, {"ARGB", "_RGB"}},
      {FourCharacterCode("RGBA"), {"RGBA", "RGB_"}},
      {FourCharacterCode("ABGR"), {"ABGR", "_BGR"}},
      {FourCharacterCode("BGRA"), {"BGRA", "BGR_"}},
      {FourCharacterCode("VRGB"), {"AVRGB", "_VRGB"}},
      {FourCharacterCode("b64a"), {"b64a", "b64_"}},
      {FourCharacterCode("L64A"), {"L64A", "L64_"}},
      {FourCharacterCode("A46L"), {"A46L", "_46L"}},
      {FourCharacterCode("V416"), {"AV416", "_V416"}},
      {FourCharacterCode("VUYA"), {"VUYA", "VUY_"}},
      {FourCharacterCode("v408"), {"Av408", "_v408"}},
      {FourCharacterCode("r408"), {"Ar408", "_r408"}},
      {24, {"RGB", "RGB"}},
      {FourCharacterCode("24BG"), {"BGR", "BGR"}}};
  if (const auto found = kTwoNames.find(code); found != kTwoNames.end())
    return alpha ? found->second.first : found->second.second;
  return {static_cast<char>(code >> 24), static_cast<char>(code >> 16), static_cast<char>(code >> 8),
          static_cast<char>(code)};
}

// Frame parts of the names by the tags of progressive frames.
TEST(Catalogue, NamesFollowFromTagScanAndPixelFormatAndOneStandsTwice) {
  static const std::map<u32, std::string> kFrameParts = {
      {WordOfBytes("RGBX"), "RGB10bf"},         {WordOfBytes("ARGX"), "RGBA10bf"},
      {WordOfBytes(" RGB"), "RGB8bf"},          {WordOfBytes("ARGB"), "RGBA8bf"},
      {WordOfBytes("YBR\n"), "YCbCr10bv444"},   {WordOfBytes("CA4p"), "YCbCrA10bv4444"},
      {WordOfBytes(" YBR"), "YCbCr8bv444"},     {WordOfBytes("AYBR"), "YCbCrA8bv4444"},
      {WordOfBytes(" YbR"), "YCbCr8bu444"},     {WordOfBytes("AYbR"), "YCbCrA8bu4444"},
      {WordOfBytes("\xA2YRY"), "YCbCr10bv422"}, {WordOfBytes("CA2p"), "YCbCrA10bv4224"},
      {WordOfBytes("BYRY"), "YCbCr8bv422"},     {WordOfBytes("C82p"), "YCbCrA8bv4224"},
      {WordOfBytes("YbYr"), "YCbCr8bw422"}};
  std::multiset<std::string> names;
  for (const FrameRoutine& routine : AllRoutines()) {
    const bool encode = routine.direction == Direction::encode;
    const std::string& frame = kFrameParts.at(routine.layout->tags[0]);
    const bool alpha = frame.find("CbCrA") != std::string::npos || frame.starts_with("RGBA");
    std::string expected = "Vorel" + frame + (routine.scan == Scan::p ? "p" : "i") +
                           (encode ? "From" : "To") + PixelPart(routine.pixelFormat, alpha) +
                           (encode ? "Encode" : "Decode");
    if (expected == "VorelYCbCr8bv444pToBGRDecode") expected = "VorelYCbCr8bv444pToRGBDecode";
    EXPECT_EQ(routine.name, expected);
    names.insert(routine.name);
    EXPECT_EQ(routine.takesScratch, !encode && routine.scan == Scan::p);
  }
  EXPECT_EQ(names.size(), 1082u);
  EXPECT_EQ(names.count("VorelYCbCr8bv444pToRGBDecode"), 2u);
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), 1081u);
}

// The exported symbol of the routine with its neighbour's name is its own.
TEST(Catalogue, TheDoubledNameHasTwoSymbols) {
  const u32 tag = WordOfBytes(" YBR");
  const FrameRoutine* rgb = FindRoutine(Direction::decode, 24, tag);
  const FrameRoutine* bgr = FindRoutine(Direction::decode, FourCharacterCode("24BG"), tag);
  ASSERT_NE(rgb, nullptr);
  ASSERT_NE(bgr, nullptr);
  EXPECT_EQ(rgb->exported.matrixScratchDecode, &VorelYCbCr8bv444pToRGBDecode);
  EXPECT_EQ(bgr->exported.matrixScratchDecode, &VorelYCbCr8bv444pToBGRDecode);
  EXPECT_STREQ(bgr->name, "VorelYCbCr8bv444pToRGBDecode");
}

}  // namespace
}  // namespace vorel
