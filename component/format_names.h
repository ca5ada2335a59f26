// Names of frame formats, as compressors and transcoders put them into image descriptions. The generic
// compressor has the whole list; every other list is a part of it.
#pragma once
#include <iterator>

#include "base/bytes.h"
#include "base/integers.h"

namespace vorel::component {

// Heads without a scan first, then the four forms of each frame format in the order of its tags. There is no
// alpha in 8bw: those places repeat the plain names, so that no index meets an empty name.
inline constexpr const char* kFormatNames[] = {
    "Vorel",                        // 1
    "Vorel [A]",                    // 2
    "Vorel RGB 10bf",               // 3
    "Vorel RGBA 10bf",              // 4
    "Vorel RGB 10bf p",             // 5
    "Vorel RGB 10bf i",             // 6
    "Vorel RGBA 10bf p",            // 7
    "Vorel RGBA 10bf i",            // 8
    "Vorel RGB 8bf",                // 9
    "Vorel RGBA 8bf",               // 10
    "Vorel RGB 8bf p",              // 11
    "Vorel RGB 8bf i",              // 12
    "Vorel RGBA 8bf p",             // 13
    "Vorel RGBA 8bf i",             // 14
    "Vorel Y'CbCr 10bv 4:4:4",      // 15
    "Vorel Y'CbCrA 10bv 4:4:4:4",   // 16
    "Vorel Y'CbCr 10bv 4:4:4p",     // 17
    "Vorel Y'CbCr 10bv 4:4:4i",     // 18
    "Vorel Y'CbCrA 10bv 4:4:4:4p",  // 19
    "Vorel Y'CbCrA 10bv 4:4:4:4i",  // 20
    "Vorel Y'CbCr 8bv 4:4:4",       // 21
    "Vorel Y'CbCrA 8bv 4:4:4:4",    // 22
    "Vorel Y'CbCr 8bv 4:4:4p",      // 23
    "Vorel Y'CbCr 8bv 4:4:4i",      // 24
    "Vorel Y'CbCrA 8bv 4:4:4:4p",   // 25
    "Vorel Y'CbCrA 8bv 4:4:4:4i",   // 26
    "Vorel Y'CbCr 8bu 4:4:4p",      // 27: 8bu stands in the family of 8bv and has no heads
    "Vorel Y'CbCr 8bu 4:4:4i",      // 28
    "Vorel Y'CbCrA 8bu 4:4:4:4p",   // 29
    "Vorel Y'CbCrA 8bu 4:4:4:4i",   // 30
    "Vorel Y'CbCr 10bv 4:2:2",      // 31
    "Vorel Y'CbCrA 10bv 4:2:2:4",   // 32
    "Vorel Y'CbCr 10bv 4:2:2p",     // 33
    "Vorel Y'CbCr 10bv 4:2:2i",     // 34
    "Vorel Y'CbCrA 10bv 4:2:2:4p",  // 35
    "Vorel Y'CbCrA 10bv 4:2:2:4i",  // 36
    "Vorel Y'CbCr 8bv 4:2:2",       // 37
    "Vorel Y'CbCrA 8bv 4:2:2:4",    // 38
    "Vorel Y'CbCr 8bv 4:2:2p",      // 39
    "Vorel Y'CbCr 8bv 4:2:2i",      // 40
    "Vorel Y'CbCrA 8bv 4:2:2:4p",   // 41
    "Vorel Y'CbCrA 8bv 4:2:2:4i",   // 42
    "Vorel Y'CbCr 8bw 4:2:2",       // 43
    "Vorel Y'CbCr 8bw 4:2:2",       // 44
    "Vorel Y'CbCr 8bw 4:2:2p",      // 45
    "Vorel Y'CbCr 8bw 4:2:2i",      // 46
    "Vorel Y'CbCr 8bw 4:2:2p",      // 47
    "Vorel Y'CbCr 8bw 4:2:2i",      // 48
};
static_assert(std::size(kFormatNames) == 48);

// A list of names, 'STR#': which part of kFormatNames it is.
struct FormatNameList {
  i16 id;
  u16 first;  // counts from 1
  u16 count;
};

// A family list begins with its two heads, so that the form of a tag stands at alpha (0 or 2) + interlace (0
// or 1) + 3; the names of 8bu follow those of 8bv. A transcoder's list begins with the progressive name.
inline constexpr FormatNameList kFormatNameLists[] = {
    {23617, 1, 48},   // generic
    {23639, 3, 6},    // RGB 10bf
    {23619, 9, 6},    // RGB 8bf
    {23631, 15, 6},   // Y'CbCr 10bv 4:4:4
    {23621, 21, 10},  // Y'CbCr 8bv and 8bu 4:4:4
    {23633, 31, 6},   // Y'CbCr 10bv 4:2:2
    {23625, 37, 6},   // Y'CbCr 8bv 4:2:2
    {23629, 43, 6},   // Y'CbCr 8bw 4:2:2
    {23662, 17, 2},   // Qt2
    {23652, 23, 8},   // Qt3
    {23664, 33, 2},   // Qt4
    {23656, 39, 2},   // Qt5
    {23660, 45, 2},   // Qt6
};

// Which name belongs to a tag: that of the progressive form stands behind `base`.
struct FormatNameRow {
  u32 tags[4];  // progressive, interlaced, the two with alpha; 0 where there is none
  u16 base;
};

#define VOREL_TAGS(P, I, AP, AI) \
  { WordOfBytes(P), WordOfBytes(I), WordOfBytes(AP), WordOfBytes(AI) }
inline constexpr FormatNameRow kFormatNameRows[] = {
    {VOREL_TAGS("RGBX", "rGBX", "ARGX", "ArGX"), 4},
    {VOREL_TAGS(" RGB", " rGB", "ARGB", "ArGB"), 10},
    {VOREL_TAGS("YBR\n", "yBR\n", "CA4p", "CA4i"), 16},
    {VOREL_TAGS(" YBR", " yBR", "AYBR", "AyBR"), 22},
    {VOREL_TAGS(" YbR", " ybR", "AYbR", "AybR"), 26},
    {VOREL_TAGS("\xA2YRY", "\xA2YRy", "CA2p", "CA2i"), 32},
    {VOREL_TAGS("BYRY", "BYRy", "C82p", "C82i"), 38},
    {{WordOfBytes("YbYr"), WordOfBytes("Ybyr"), 0, 0}, 44},
};
#undef VOREL_TAGS

/// Index, from 1, of a canonical tag's name in the generic list; 0 for any other word.
constexpr u32 GenericNameIndex(u32 canonicalTag) {
  if (canonicalTag == 0) return 0;
  for (const FormatNameRow& row : kFormatNameRows) {
    for (u32 form = 0; form < 4; ++form) {
      if (row.tags[form] == canonicalTag) return row.base + form + 1;
    }
  }
  return 0;
}

}  // namespace vorel::component
