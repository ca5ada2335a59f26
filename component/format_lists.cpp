#include "component/format_lists.h"

#include <iterator>

#include "base/bytes.h"

namespace vorel::component {
namespace {

// Kinds of pixel formats, a bit each.
enum Kind : u32 {
  kRgb5 = 1,  // 16 bits a pixel
  kRgb8 = 2,
  kRgb10 = 4,
  kRgb16 = 8,
  kYcc8 = 16,
  kYcc10 = 32,       // 4:2:2
  kYccDeep444 = 64,  // 10 bits and more at 4:4:4
  kWide = 128,       // what 8bw frames hold
};
constexpr u32 kRgb = kRgb5 | kRgb8 | kRgb10 | kRgb16;
constexpr u32 kYcc = kYcc8 | kYcc10 | kYccDeep444;
constexpr u32 kAll = kRgb | kYcc | kWide;
// Not a kind: the deep 4:4:4 formats as long as no other Y'CbCr format stands before them.
constexpr u32 kLeadingDeep444 = 256;

// A list from codes with blanks between them; 32 and 24 are numbers.
constexpr FormatList ListOf(const char* text) {
  FormatList list{};
  while (*text != 0) {
    u32 code = 0;
    int letters = 0;
    for (; *text != 0 && *text != ' '; ++text, ++letters) code = code << 8 | static_cast<u8>(*text);
    if (letters == 2) code = ((code >> 8 & 0xF) * 10) + (code & 0xF);
    list.codes[list.count++] = code;
    if (*text == ' ') ++text;
  }
  return list;
}
static_assert(ListOf("b64a 32 24").count == 3 && ListOf("b64a 32 24").codes[1] == 32);
static_assert(ListOf("b64a").codes[0] == FourCharacterCode("b64a"));

constexpr bool Contains(const FormatList& list, u32 code) {
  for (std::size_t i = 0; i < list.count; ++i) {
    if (list.codes[i] == code) return true;
  }
  return false;
}

struct KindRow {
  Kind kind;
  FormatList formats;
};

constexpr KindRow kKinds[] = {
    {kRgb5, ListOf("L555 L565")},
    {kRgb8, ListOf("32 ABGR RGBA BGRA VRGB 24 24BG")},
    {kRgb10, ListOf("F10k F210 R10k r210 S10k S210")},
    {kRgb16, ListOf("b64a L64A A46L b48r")},
    {kYcc8, ListOf("r408 v408 VUYA 2vuy 2Vuy 2VUY yuvs")},
    {kYcc10, ListOf("v210 V210 v216 Y216")},
    {kYccDeep444, ListOf("V416 v410")},
    {kWide, ListOf("yuvu yuv2")},
};

constexpr u32 KindOf(u32 code) {
  for (const KindRow& row : kKinds) {
    if (Contains(row.formats, code)) return row.kind;
  }
  return 0;
}

// What frames are, as far as offers differ by it, and the kinds that are offered.
struct OfferRow {
  u32 offScreen;
  u32 offScreenHighQuality;
  u32 onScreen;
  u32 afterFx;
  u32 afterFxHighQuality;
};

constexpr OfferRow kRgb8Frames = {kAll, kRgb8 | kRgb10 | kRgb16 | kLeadingDeep444, kRgb, kRgb,
                                  kRgb8 | kRgb10 | kRgb16};
constexpr OfferRow kRgb10Frames = {kAll, kRgb10 | kRgb16 | kLeadingDeep444, kRgb, kRgb, kRgb10 | kRgb16};
constexpr OfferRow kYcc8Frames = {kAll, kYcc8 | kRgb16, kYcc, kRgb, kRgb10 | kRgb16};
constexpr OfferRow kYcc10Frames = {kAll, kYcc10 | kYccDeep444 | kRgb16, kYcc, kRgb, kRgb10 | kRgb16};
// No 10-bit R'G'B' format has a place for alpha.
constexpr OfferRow kYcc10AlphaFrames = {kAll, kYcc10 | kYccDeep444 | kRgb16, kYcc, kRgb, kRgb16};
constexpr OfferRow kWideFrames = {kWide, kWide, kWide, kWide, kWide};

struct TagRow {
  u32 tags[2];  // progressive, interlaced
  const OfferRow* offer;
  FormatList full;
};

// clang-format off
#define VOREL_TAGS(P, I) {WordOfBytes(P), WordOfBytes(I)}
constexpr TagRow kTagRows[] = {
    {VOREL_TAGS("ARGX", "ArGX"), &kRgb10Frames,
     ListOf("b64a L64A A46L b48r F10k F210 R10k r210 S10k S210 32 ABGR RGBA BGRA VRGB 24 24BG L555 L565 "
            "V416 r408 v408 VUYA v410 v216 Y216 v210 V210 2vuy 2Vuy 2VUY yuvs")},
    {VOREL_TAGS("RGBX", "rGBX"), &kRgb10Frames,
     ListOf("F10k F210 R10k r210 S10k S210 b48r b64a L64A A46L 24 24BG 32 ABGR RGBA BGRA VRGB L555 L565 "
            "V416 v410 r408 v408 VUYA v216 Y216 v210 V210 2vuy 2Vuy 2VUY yuvs")},
    {VOREL_TAGS("ARGB", "ArGB"), &kRgb8Frames,
     ListOf("32 ABGR RGBA BGRA b64a L64A A46L VRGB 24 24BG F10k F210 R10k r210 S10k S210 b48r L555 L565 "
            "V416 v410 r408 v408 VUYA v210 V210 v216 Y216 2vuy 2Vuy 2VUY yuvs")},
    {VOREL_TAGS(" RGB", " rGB"), &kRgb8Frames,
     ListOf("24 24BG 32 ABGR RGBA BGRA VRGB F10k F210 R10k r210 S10k S210 b48r b64a L64A A46L L555 L565 "
            "v410 V416 r408 v408 VUYA v210 V210 v216 Y216 2vuy 2Vuy 2VUY yuvs")},
    {VOREL_TAGS("CA4p", "CA4i"), &kYcc10AlphaFrames,
     ListOf("V416 v410 v408 VUYA r408 v210 V210 v216 Y216 2vuy 2Vuy 2VUY yuvs "
            "b64a L64A A46L b48r VRGB 32 ABGR RGBA BGRA S10k S210 R10k r210 F10k F210 24 24BG")},
    {VOREL_TAGS("YBR\n", "yBR\n"), &kYcc10Frames,
     ListOf("v410 V416 v408 VUYA r408 v210 V210 v216 Y216 2vuy 2Vuy 2VUY yuvs "
            "b48r b64a L64A A46L S10k S210 R10k r210 F10k F210 VRGB 24 24BG 32 ABGR RGBA BGRA")},
    {VOREL_TAGS("AYBR", "AyBR"), &kYcc8Frames,
     ListOf("v408 VUYA V416 r408 v410 2vuy 2Vuy 2VUY yuvs v210 V210 v216 Y216 "
            "b64a L64A A46L S10k S210 R10k r210 F10k F210 VRGB 32 ABGR RGBA BGRA 24 24BG")},
    {VOREL_TAGS(" YBR", " yBR"), &kYcc8Frames,
     ListOf("v408 VUYA v410 V416 r408 2vuy 2Vuy 2VUY yuvs v210 V210 v216 Y216 "
            "S10k S210 R10k r210 F10k F210 b48r b64a L64A A46L VRGB 24 24BG 32 ABGR RGBA BGRA")},
    {VOREL_TAGS("AYbR", "AybR"), &kYcc8Frames,
     ListOf("r408 v408 VUYA V416 v410 2vuy 2Vuy 2VUY yuvs v210 V210 v216 Y216 "
            "b64a L64A A46L S10k S210 R10k r210 F10k F210 VRGB 32 ABGR RGBA BGRA 24 24BG")},
    {VOREL_TAGS(" YbR", " ybR"), &kYcc8Frames,
     ListOf("r408 v408 VUYA v410 V416 2vuy 2Vuy 2VUY yuvs v210 V210 v216 Y216 "
            "b48r b64a L64A A46L S10k S210 R10k r210 F10k F210 VRGB 24 24BG 32 ABGR RGBA BGRA")},
    {VOREL_TAGS("CA2p", "CA2i"), &kYcc10AlphaFrames,
     ListOf("V416 v210 V210 v216 Y216 v410 v408 VUYA r408 2vuy 2Vuy 2VUY yuvs "
            "b64a L64A A46L b48r VRGB 32 ABGR RGBA BGRA S10k S210 R10k r210 F10k F210 24 24BG")},
    {VOREL_TAGS("\xA2YRY", "\xA2YRy"), &kYcc10Frames,
     ListOf("v210 V210 v216 Y216 v410 V416 2vuy 2Vuy 2VUY yuvs v408 VUYA r408 "
            "b48r b64a L64A A46L S10k S210 R10k r210 F10k F210 VRGB 24 24BG 32 ABGR RGBA BGRA")},
    {VOREL_TAGS("C82p", "C82i"), &kYcc8Frames,
     ListOf("v408 VUYA V416 r408 2vuy 2Vuy 2VUY yuvs v210 V210 v216 Y216 v410 "
            "b64a L64A A46L S10k S210 R10k r210 F10k F210 b48r VRGB 32 ABGR RGBA BGRA 24 24BG")},
    {VOREL_TAGS("BYRY", "BYRy"), &kYcc8Frames,
     ListOf("2vuy 2Vuy 2VUY yuvs v210 V210 v216 Y216 v408 VUYA v410 V416 r408 "
            "S10k S210 R10k r210 F10k F210 b48r b64a L64A A46L VRGB 24 24BG 32 ABGR RGBA BGRA")},
    {VOREL_TAGS("YbYr", "Ybyr"), &kWideFrames, ListOf("yuvu yuv2")},
};
#undef VOREL_TAGS
// clang-format on

constexpr const TagRow* FindTagRow(u32 tag) {
  for (const TagRow& row : kTagRows) {
    if (row.tags[0] == tag || row.tags[1] == tag) return &row;
  }
  return nullptr;
}

constexpr FormatList FullList(const char (&tag)[5]) {
  return FindTagRow(WordOfBytes(tag))->full;
}

// Formats of the wanted kinds, in the order of the list.
FormatList Cut(const FormatList& full, u32 kinds) {
  FormatList cut{};
  bool leading = (kinds & kLeadingDeep444) != 0;
  for (std::size_t i = 0; i < full.count; ++i) {
    const u32 kind = KindOf(full.codes[i]);
    if ((kind & kYcc) != 0 && kind != kYccDeep444) leading = false;
    if ((kind & kinds) != 0 || (leading && kind == kYccDeep444)) cut.codes[cut.count++] = full.codes[i];
  }
  return cut;
}

u32 OfferedKinds(const OfferRow& row, OfferFacts facts) {
  if (facts.afterFx) return facts.highQuality ? row.afterFxHighQuality : row.afterFx;
  if (facts.onScreen) return row.onScreen;
  return facts.highQuality ? row.offScreenHighQuality : row.offScreen;
}

// What a family's components know of all formats. Its list is that of its tags without alpha, which begins
// with the family's own pixel format.
struct FamilyRow {
  FormatList full;
  FormatList notEncoded;  // no encoder of the family takes them
  FormatList notDecoded;  // no decoder of the family writes them
};

// The generic components know the deepest list and what 8bw frames hold.
constexpr FormatList GenericList() {
  FormatList list = FullList("ARGX");
  const FormatList wide = FullList("YbYr");
  for (std::size_t i = 0; i < wide.count; ++i) list.codes[list.count++] = wide.codes[i];
  return list;
}

// 'V210' is another name of 'v210' for decompressors alone.
constexpr FamilyRow kFamilies[] = {
    // by VorelFamily
    {GenericList(), ListOf("V416 VUYA V210 L555 L565"), ListOf("")},
    {FullList("RGBX"), ListOf("V210 L555 L565"), ListOf("")},
    {FullList(" RGB"), ListOf("V210 L555 L565"), ListOf("")},
    {FullList("YBR\n"), ListOf("b48r V210"), ListOf("b48r")},
    {FullList(" YBR"), ListOf("b48r V210"), ListOf("b48r")},
    {FullList("\xA2YRY"), ListOf("b48r A46L V210"), ListOf("b48r A46L")},
    {FullList("BYRY"), ListOf("b48r V210"), ListOf("b48r")},
    {FullList("YbYr"), ListOf(""), ListOf("")},
};

FormatList Without(const FormatList& full, const FormatList& withheld) {
  FormatList left{};
  for (std::size_t i = 0; i < full.count; ++i) {
    if (!Contains(withheld, full.codes[i])) left.codes[left.count++] = full.codes[i];
  }
  return left;
}

// Every format has a kind and stands once; the 13 Y'CbCr formats of a Y'CbCr frame come first.
constexpr bool FullListsAreConsistent() {
  for (const TagRow& row : kTagRows) {
    const bool isYcc = (row.offer->onScreen & kYcc) != 0;
    for (std::size_t i = 0; i < row.full.count; ++i) {
      const u32 kind = KindOf(row.full.codes[i]);
      if (kind == 0 || (isYcc && ((kind & kYcc) != 0) != (i < 13))) return false;
      for (std::size_t k = 0; k < i; ++k) {
        if (row.full.codes[k] == row.full.codes[i]) return false;
      }
    }
  }
  return true;
}
static_assert(FullListsAreConsistent());
static_assert(std::size(kTagRows) == 15 && std::size(kFamilies) == VOREL_YCBCR_8BW_422 + 1);

}  // namespace

FormatList OfferedFormats(u32 canonicalTag, OfferFacts facts) {
  const TagRow* row = FindTagRow(canonicalTag);
  return row == nullptr ? FormatList{} : Cut(row->full, OfferedKinds(*row->offer, facts));
}

FormatList SourceFormats(VorelFamily family) {
  if (family >= std::size(kFamilies)) return {};
  return Without(kFamilies[family].full, kFamilies[family].notEncoded);
}

FormatList TargetFormats(VorelFamily family) {
  if (family >= std::size(kFamilies)) return {};
  return Without(kFamilies[family].full, kFamilies[family].notDecoded);
}

}  // namespace vorel::component
