// Offered pixel formats against lists written out by hand, and the formats of families against what their
// encoders and decoders really do.
#include "component/format_lists.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "vorel/vorel.h"

namespace vorel::component {
namespace {

using Codes = std::vector<u32>;

u32 CodeOf(const std::string& text) {
  if (text == "32") return 32;
  if (text == "24") return 24;
  EXPECT_EQ(text.size(), 4u) << text;
  u32 code = 0;
  for (const char letter : text) code = code << 8 | static_cast<u8>(letter);
  return code;
}

Codes CodesOf(const std::string& text) {
  std::istringstream words(text);
  Codes codes;
  for (std::string word; words >> word;) codes.push_back(CodeOf(word));
  return codes;
}

std::string TextOf(const Codes& codes) {
  std::string text;
  for (const u32 code : codes) {
    text += text.empty() ? "" : " ";
    if (code < 100) {
      text += std::to_string(code);
    } else {
      for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(code >> shift & 0xFF);
    }
  }
  return text;
}

// A tag as the file spells it, as a little-endian number.
u32 TagOf(std::string text) {
  EXPECT_EQ(text.size(), 4u) << text;
  u32 tag = 0;
  for (int i = 3; i >= 0; --i) {
    const char letter = text[static_cast<std::size_t>(i)];
    const char byte = letter == '_' ? ' ' : letter == '~' ? '\n' : letter == '@' ? '\xA2' : letter;
    tag = tag << 8 | static_cast<u8>(byte);
  }
  return tag;
}

Codes Used(const FormatList& list) {
  return {list.codes.begin(), list.codes.begin() + static_cast<std::ptrdiff_t>(list.count)};
}

// The lists of the file by tag and case.
std::map<u32, std::map<std::string, std::string>> WrittenLists() {
  std::ifstream file(VOREL_SOURCE_FOLDER "/tests/component/offered_formats.txt");
  std::map<u32, std::map<std::string, std::string>> lists;
  std::vector<u32> tags;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream words(line);
    std::string first;
    words >> first;
    std::string rest;
    std::getline(words >> std::ws, rest);
    if (first.size() == 4 && rest.size() == 4) {
      tags = {TagOf(first), TagOf(rest)};
    } else {
      for (const u32 tag : tags) lists[tag][first] = rest;
    }
  }
  return lists;
}

TEST(OfferedFormats, AreTheListsWrittenOutForEveryTagAndHost) {
  struct Case {
    OfferFacts facts;
    const char* list;
  };
  // Quality does not matter on screen, the screen does not matter to a host that is given R'G'B' alone.
  const Case cases[] = {
      {{false, false, false}, "full"},
      {{true, false, false}, "high-quality"},
      {{false, true, false}, "on-screen"},
      {{true, true, false}, "on-screen"},
      {{false, false, true}, "afterfx"},
      {{false, true, true}, "afterfx"},
      {{true, false, true}, "afterfx-high-quality"},
      {{true, true, true}, "afterfx-high-quality"},
  };
  const auto lists = WrittenLists();
  ASSERT_EQ(lists.size(), 30u);
  for (const auto& [tag, byCase] : lists) {
    ASSERT_EQ(byCase.size(), 5u);
    EXPECT_EQ(VorelNormalizeFormatTag(tag), tag);
    EXPECT_GT(VorelMaxFrameBytes(tag, 1, 1), 0u) << "not a canonical tag";
    for (const Case& one : cases) {
      const FormatList offered = OfferedFormats(tag, one.facts);
      EXPECT_EQ(TextOf(Used(offered)), byCase.at(one.list)) << std::hex << tag << " " << one.list;
      for (std::size_t i = offered.count; i < kMostFormats; ++i) EXPECT_EQ(offered.codes[i], 0u);
    }
  }
}

TEST(OfferedFormats, AreNoneForWordsThatAreNoCanonicalTag) {
  for (const u32 word : {0u, 1u, 0x41524742u, 0xFFFFFFFFu}) {
    for (int facts = 0; facts < 8; ++facts) {
      EXPECT_EQ(OfferedFormats(word, {(facts & 1) != 0, (facts & 2) != 0, (facts & 4) != 0}).count, 0u);
    }
  }
}

// Every pixel format that any list names.
const char* const kAllFormats =
    "24 24BG 32 ABGR RGBA BGRA VRGB F10k F210 R10k r210 S10k S210 b48r b64a L64A A46L L555 L565 V416 v410 "
    "r408 v408 VUYA v216 Y216 v210 V210 2vuy 2Vuy 2VUY yuvs yuvu yuv2";

using Encode = VorelStatus (*)(VorelFamily, u32, u32, u32, u32, i32, const void*, u32*, u32*, u32*);

template <auto Function>
VorelStatus WithStandard(VorelFamily, u32 format, u32 choice, u32 width, u32 height, i32 rowBytes,
                         const void* base, u32* word, u32* bit, u32* frame) {
  return Function(format, choice, width, height, rowBytes, base, 1, word, bit, frame, 0);
}

VorelStatus Generic(VorelFamily, u32 format, u32 choice, u32 width, u32 height, i32 rowBytes,
                    const void* base, u32* word, u32* bit, u32* frame) {
  return VorelGenericEncode(format, choice, width, height, rowBytes, base, word, bit, frame, 0);
}

constexpr Encode kEncoders[] = {Generic,
                                WithStandard<VorelRGB10bfEncode>,
                                WithStandard<VorelRGB8bfEncode>,
                                WithStandard<VorelYCbCr10bv444Encode>,
                                WithStandard<VorelYCbCr8b444Encode>,
                                WithStandard<VorelYCbCr10bv422Encode>,
                                WithStandard<VorelYCbCr8bv422Encode>,
                                WithStandard<VorelYCbCr8bw422Encode>};

constexpr u32 kWidth = 12;
constexpr u32 kHeight = 4;
constexpr i32 kRowBytes = 128;  // more than any format needs

struct Frame {
  VorelStatus status;
  std::vector<u32> words;
};

Frame EncodeFlat(VorelFamily family, u32 format, u32 choice) {
  const std::vector<u32> picture(kRowBytes / 4 * kHeight, 0x40404040);
  Frame frame = {0, std::vector<u32>(4096)};
  u32 word = 0;
  u32 bit = 0;
  frame.status = kEncoders[family](family, format, choice, kWidth, kHeight, kRowBytes, picture.data(), &word,
                                   &bit, frame.words.data());
  return frame;
}

// A compressor maps what the host says before it encodes, with the range that its settings have.
bool IsEncoded(VorelFamily family, u32 format) {
  int complete = 0;
  for (u32 choice = 0; choice < 4; ++choice) {
    for (u32 range = 0; range < 3; ++range) {
      const u32 served = VorelNormalizePixelFormat(32, format, 0, 0, 0, range);
      const VorelStatus status = EncodeFlat(family, served, choice).status;
      EXPECT_TRUE(status == VOREL_COMPLETE || status == VOREL_NO_ROUTINE) << status;
      complete += status == VOREL_COMPLETE;
    }
  }
  EXPECT_TRUE(complete == 0 || complete == 12) << "scan, alpha or range decide";
  return complete == 12;
}

TEST(SourceFormats, AreThoseThatTheEncoderTakesAndNoOthers) {
  for (VorelFamily family = 0; family < 8; ++family) {
    const Codes offered = Used(SourceFormats(family));
    for (const u32 code : CodesOf(kAllFormats)) {
      const bool isOffered = std::count(offered.begin(), offered.end(), code) == 1;
      EXPECT_EQ(isOffered, IsEncoded(family, code)) << family << " " << TextOf({code});
    }
  }
}

// Whether any frame of the family decodes to a format as the decompressor maps it.
bool IsDecoded(VorelFamily family, u32 format) {
  u32 served = VorelNormalizePixelFormat(32, format, 0, 0, 0, 0);
  if (served == FourCharacterCode("V210")) served = FourCharacterCode("v210");
  for (const u32 source : CodesOf("b64a 32 V416 v408 r408 v210 2vuy yuvu")) {
    for (u32 choice = 0; choice < 4; ++choice) {
      const Frame frame = EncodeFlat(family, source, choice);
      if (frame.status != VOREL_COMPLETE) continue;
      std::vector<u32> picture(kRowBytes / 4 * kHeight);
      std::vector<u8> scratch(VorelScratchBytes(kWidth));
      u32 word = 5;
      u32 bit = 0;
      const VorelStatus status =
          VorelDecodeBounded(family, served, kWidth, kHeight, kRowBytes, picture.data(), 0, &word, &bit,
                             frame.words.data(), frame.words.size() * 4, 0, scratch.data());
      if (status == VOREL_COMPLETE) return true;
      EXPECT_EQ(status, static_cast<VorelStatus>(VOREL_NO_ROUTINE));
    }
  }
  return false;
}

TEST(TargetFormats, AreThoseThatTheDecoderWritesAndNoOthers) {
  for (VorelFamily family = 0; family < 8; ++family) {
    const Codes offered = Used(TargetFormats(family));
    for (const u32 code : CodesOf(kAllFormats)) {
      const bool isOffered = std::count(offered.begin(), offered.end(), code) == 1;
      EXPECT_EQ(isOffered, IsDecoded(family, code)) << family << " " << TextOf({code});
    }
  }
}

TEST(SourceFormats, KeepTheOrderOfTheFamily) {
  const char* expected[] = {
      "b64a L64A A46L b48r F10k F210 R10k r210 S10k S210 32 ABGR RGBA BGRA VRGB 24 24BG r408 v408 v410 v216 "
      "Y216 v210 2vuy 2Vuy 2VUY yuvs yuvu yuv2",
      "F10k F210 R10k r210 S10k S210 b48r b64a L64A A46L 24 24BG 32 ABGR RGBA BGRA VRGB V416 v410 r408 v408 "
      "VUYA v216 Y216 v210 2vuy 2Vuy 2VUY yuvs",
      "24 24BG 32 ABGR RGBA BGRA VRGB F10k F210 R10k r210 S10k S210 b48r b64a L64A A46L v410 V416 r408 v408 "
      "VUYA v210 v216 Y216 2vuy 2Vuy 2VUY yuvs",
      "v410 V416 v408 VUYA r408 v210 v216 Y216 2vuy 2Vuy 2VUY yuvs b64a L64A A46L S10k S210 R10k r210 F10k "
      "F210 VRGB 24 24BG 32 ABGR RGBA BGRA",
      "v408 VUYA v410 V416 r408 2vuy 2Vuy 2VUY yuvs v210 v216 Y216 S10k S210 R10k r210 F10k F210 b64a L64A "
      "A46L VRGB 24 24BG 32 ABGR RGBA BGRA",
      "v210 v216 Y216 v410 V416 2vuy 2Vuy 2VUY yuvs v408 VUYA r408 b64a L64A S10k S210 R10k r210 F10k F210 "
      "VRGB 24 24BG 32 ABGR RGBA BGRA",
      "2vuy 2Vuy 2VUY yuvs v210 v216 Y216 v408 VUYA v410 V416 r408 S10k S210 R10k r210 F10k F210 b64a L64A "
      "A46L VRGB 24 24BG 32 ABGR RGBA BGRA",
      "yuvu yuv2",
  };
  for (VorelFamily family = 0; family < 8; ++family) {
    EXPECT_EQ(TextOf(Used(SourceFormats(family))), expected[family]);
  }
}

TEST(SourceFormats, AreNoneForAnUnknownFamily) {
  EXPECT_EQ(SourceFormats(8).count, 0u);
  EXPECT_EQ(TargetFormats(8).count, 0u);
}

}  // namespace
}  // namespace vorel::component
