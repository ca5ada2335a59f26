// The header line: what each tag means, and what is refused with which words.
#include "picture_io/y4m_header.h"

#include <gtest/gtest.h>

#include "tests/picture_io/problem_text.h"

namespace vorel::picture_io {

namespace {

ClipFormat FormatOf(const std::string& tags) {
  return ReadY4mHeader("YUV4MPEG2 " + tags, "a.y4m").format;
}

std::string Refusal(const std::string& tags) {
  return ProblemText([&] { FormatOf(tags); });
}

constexpr const char* kHandled =
    "4:2:2 and 4:4:4 with 8 or 10 bits are handled (C422, C422p10, C444, C444p10, C444alpha); convert the "
    "clip to one of them";

}  // namespace

TEST(Y4mHeader, EveryTagIsRead) {
  const ClipFormat expected = {k2vuy, 640, 360, {24000, 1001}, ScanOrder::progressive, {10, 11}};
  EXPECT_EQ(FormatOf("W640 H360 F24000:1001 Ip A10:11 C422"), expected);
}

TEST(Y4mHeader, OrderAndBlanksDoNotMatter) {
  const ClipFormat expected = {k2vuy, 2, 3, {25, 1}, ScanOrder::bottomFirst, {1, 1}};
  EXPECT_EQ(FormatOf("C422  A1:1 Ib F25:1 H3 W2 "), expected);
}

TEST(Y4mHeader, InterlacingIsToldApart) {
  EXPECT_EQ(FormatOf("W2 H2 C422 Ip").scan, ScanOrder::progressive);
  EXPECT_EQ(FormatOf("W2 H2 C422 It").scan, ScanOrder::topFirst);
  EXPECT_EQ(FormatOf("W2 H2 C422 Ib").scan, ScanOrder::bottomFirst);
  EXPECT_EQ(FormatOf("W2 H2 C422 I?").scan, ScanOrder::unknown);
  EXPECT_EQ(FormatOf("W2 H2 C422").scan, ScanOrder::unknown);
}

TEST(Y4mHeader, AbsentAndZeroRatiosAreUnknown) {
  EXPECT_FALSE(IsKnown(FormatOf("W2 H2 C422").aspect));
  EXPECT_FALSE(IsKnown(FormatOf("W2 H2 C422 A0:0").aspect));
  EXPECT_FALSE(IsKnown(FormatOf("W2 H2 C422 F0:0").rate));
}

TEST(Y4mHeader, ChromaTellsThePixelFormatByItsBits) {
  EXPECT_EQ(FormatOf("W2 H2 C422").pixelFormat, FourCharacterCode("2vuy"));
  EXPECT_EQ(FormatOf("W2 H2 C422p10").pixelFormat, FourCharacterCode("v216"));
  EXPECT_EQ(FormatOf("W2 H2 C444").pixelFormat, FourCharacterCode("v408"));
  EXPECT_EQ(FormatOf("W2 H2 C444alpha").pixelFormat, FourCharacterCode("v408"));
  EXPECT_EQ(FormatOf("W2 H2 C444p10").pixelFormat, FourCharacterCode("v410"));
}

TEST(Y4mHeader, PlacesForAlphaThatAStreamDoesNotFillAreOpaque) {
  EXPECT_TRUE(FormatOf("W2 H2 C444").isOpaque);
  EXPECT_FALSE(FormatOf("W2 H2 C444alpha").isOpaque);
}

TEST(Y4mHeader, OlderWayOfWritingChromaIsNoComment) {
  EXPECT_EQ(ReadY4mHeader("YUV4MPEG2 W2 H2 C422p10 XYSCSS=422P10", "a.y4m").comments, "");
  EXPECT_EQ(ReadY4mHeader("YUV4MPEG2 W2 H2 C422 XYSCSS=422", "a.y4m").comments, "");
  EXPECT_EQ(ReadY4mHeader("YUV4MPEG2 W2 H2 C444 XYSCSS=444", "a.y4m").comments, "");
  EXPECT_EQ(ReadY4mHeader("YUV4MPEG2 W2 H2 C444alpha XYSCSS=444", "a.y4m").comments, "");
  EXPECT_EQ(ReadY4mHeader("YUV4MPEG2 W2 H2 C444p10 XYSCSS=444P10", "a.y4m").comments, "");
}

TEST(Y4mHeader, CommentsAreKeptAsideAndDoNoHarm) {
  const Y4mHeader header = ReadY4mHeader("YUV4MPEG2 W2 H2 C422 XYSCSS=422 XCOLORRANGE=FULL Zz", "a.y4m");
  EXPECT_EQ(header.comments, "XCOLORRANGE=FULL Zz");
  EXPECT_EQ(ReadY4mHeader("YUV4MPEG2 W2 H2 C444 XCOLORRANGE=FULL", "a.y4m").comments, "XCOLORRANGE=FULL");
}

TEST(Y4mHeader, OtherChromaIsRefusedByName) {
  for (const char* const chroma :
       {"420", "420jpeg", "420mpeg2", "420paldv", "411", "422alpha", "422p9", "422p12", "422p16", "422P10",
        "444p9", "444p12", "444p16", "444P10", "444Alpha", "444alphap10", "mono", "mono10", ""}) {
    EXPECT_EQ(Refusal(std::string("W2 H2 C") + chroma),
              std::string("a.y4m: header: chroma C") + chroma + " is not handled (" + kHandled + ")");
  }
}

TEST(Y4mHeader, AbsentChromaIsRefusedAsFourTwoZero) {
  EXPECT_EQ(
      Refusal("W2 H2 F25:1"),
      std::string("a.y4m: header: the header has no tag C, which means chroma 4:2:0 (") + kHandled + ")");
}

TEST(Y4mHeader, MixedInterlacingIsRefused) {
  EXPECT_EQ(Refusal("W2 H2 C422 Im"),
            "a.y4m: header: mixed interlacing (tag Im) is not handled "
            "(make the clip progressive, or interlaced throughout)");
}

TEST(Y4mHeader, SidesOutsideTheLimitsAreRefused) {
  for (const char* const tag : {"W0", "W32768", "W-1", "W", "W6x", "W99999999999999999999"}) {
    EXPECT_EQ(Refusal(std::string(tag) + " H2 C422"),
              std::string("a.y4m: header: the header's tag ") + tag +
                  " is not valid (width and height are whole numbers from 1 to 32767)");
  }
  EXPECT_EQ(FormatOf("W32767 H32767 C422").width, 32767u);
}

TEST(Y4mHeader, MissingSideIsNamed) {
  EXPECT_EQ(Refusal("W2 C422"), "a.y4m: header: the header has no tag H (the picture size must be known)");
  EXPECT_EQ(Refusal("H2 C422"), "a.y4m: header: the header has no tag W (the picture size must be known)");
}

TEST(Y4mHeader, RatioThatIsNoneIsRefused) {
  for (const char* const tag :
       {"F25", "F25:", "F:1", "F25:0", "F0:1", "F-25:1", "F25:1:1", "A1", "A2147483648:1"}) {
    EXPECT_EQ(Refusal(std::string("W2 H2 C422 ") + tag),
              std::string("a.y4m: header: the header's tag ") + tag +
                  " is not valid (a ratio is two whole numbers with a colon, or 0:0 for unknown)");
  }
}

TEST(Y4mHeader, TagGivenTwiceIsRefused) {
  EXPECT_EQ(Refusal("W2 W4 H2 C422"), "a.y4m: header: the header gives tag W twice (keep one of them)");
  EXPECT_EQ(Refusal("W2 H2 C422 C422"), "a.y4m: header: the header gives tag C twice (keep one of them)");
}

TEST(Y4mHeader, OtherFilesAreRefusedWithoutTheirControlCharacters) {
  EXPECT_EQ(ProblemText([] { ReadY4mHeader("\x1b[31m\x01zzzz", "a.mov"); }),
            "a.mov: not a YUV4MPEG2 stream: it begins with \".[31m.zzzz\" "
            "(raw pictures need --pixel-format, --size and --rate)");
  EXPECT_NE(ProblemText([] { ReadY4mHeader("YUV4MPEG22 W2 H2 C422", "a.y4m"); }), "");
}

TEST(Y4mHeader, LineIsWrittenInTheCustomaryOrder) {
  EXPECT_EQ(Y4mHeaderLine({k2vuy, 640, 360, {24000, 1001}, ScanOrder::progressive, {1, 1}}),
            "YUV4MPEG2 W640 H360 F24000:1001 Ip A1:1 C422\n");
  EXPECT_EQ(Y4mHeaderLine({kYuvu, 1, 2, {25, 1}, ScanOrder::unknown, {}}),
            "YUV4MPEG2 W1 H2 F25:1 I? A0:0 C422\n");
  EXPECT_EQ(Y4mHeaderLine({kYuvu, 1, 2, {25, 1}, ScanOrder::topFirst, {10, 11}}),
            "YUV4MPEG2 W1 H2 F25:1 It A10:11 C422\n");
  EXPECT_EQ(Y4mHeaderLine({kYuvu, 1, 2, {25, 1}, ScanOrder::bottomFirst, {}}),
            "YUV4MPEG2 W1 H2 F25:1 Ib A0:0 C422\n");
}

TEST(Y4mHeader, OrderOfFieldsThatIsNotKnownHasNoLetter) {
  EXPECT_EQ(Y4mHeaderLine({k2vuy, 1, 2, {25, 1}, ScanOrder::interlaced, {}}),
            "YUV4MPEG2 W1 H2 F25:1 I? A0:0 C422\n");
}

TEST(Y4mHeader, TenBitsAreWrittenAsChroma) {
  EXPECT_EQ(Y4mHeaderLine({kV216, 1, 2, {25, 1}, ScanOrder::progressive, {}}),
            "YUV4MPEG2 W1 H2 F25:1 Ip A0:0 C422p10\n");
}

TEST(Y4mHeader, FullChromaIsWrittenWithAlphaOnlyWhereThereIsAny) {
  const auto chromaOf = [](u32 pixelFormat, bool isOpaque) {
    const std::string line =
        Y4mHeaderLine({pixelFormat, 1, 2, {25, 1}, ScanOrder::progressive, {}, isOpaque});
    return line.substr(line.rfind(' ') + 1);
  };
  EXPECT_EQ(chromaOf(kV408, true), "C444\n");
  EXPECT_EQ(chromaOf(kV408, false), "C444alpha\n");
  EXPECT_EQ(chromaOf(kV410, false), "C444p10\n");
  EXPECT_EQ(chromaOf(kV410, true), "C444p10\n");
  EXPECT_EQ(chromaOf(k2vuy, true), "C422\n");
}

}  // namespace vorel::picture_io
