#include "frame/frame_tags.h"

namespace vorel {
namespace {

struct Spelling {
  u32 accepted;
  u32 canonical;
};

// clang-format off
#define VOREL_SPELLING(ACCEPTED, CANONICAL) {WordOfBytes(ACCEPTED), WordOfBytes(CANONICAL)}
constexpr Spelling kSpellings[] = {
    VOREL_SPELLING("RGBA", "ARGB"), VOREL_SPELLING("BGRA", "ARGB"), VOREL_SPELLING("ABGR", "ARGB"),
    VOREL_SPELLING("rGBA", "ArGB"), VOREL_SPELLING("BGrA", "ArGB"), VOREL_SPELLING("ABGr", "ArGB"),
    VOREL_SPELLING("RGB ", " RGB"), VOREL_SPELLING("BGR ", " RGB"), VOREL_SPELLING("RGB3", " RGB"),
    VOREL_SPELLING("BGR3", " RGB"), VOREL_SPELLING(" BGR", " RGB"),
    VOREL_SPELLING("rGB ", " rGB"), VOREL_SPELLING("BGr ", " rGB"), VOREL_SPELLING("rGB3", " rGB"),
    VOREL_SPELLING("BGr3", " rGB"), VOREL_SPELLING(" BGr", " rGB"),
    VOREL_SPELLING("RBYA", "AYBR"), VOREL_SPELLING("RByA", "AyBR"),
    VOREL_SPELLING("RBY ", " YBR"), VOREL_SPELLING("RBy ", " yBR"),
    VOREL_SPELLING("RbYA", "AYbR"), VOREL_SPELLING("RbyA", "AybR"),
    VOREL_SPELLING("RbY ", " YbR"), VOREL_SPELLING("Rby ", " ybR"),
    VOREL_SPELLING("YRYB", "BYRY"), VOREL_SPELLING("YBYR", "BYRY"),
    VOREL_SPELLING("yRYB", "BYRy"), VOREL_SPELLING("YByR", "BYRy"),
    VOREL_SPELLING("rYbY", "YbYr"), VOREL_SPELLING("rybY", "Ybyr"),
    VOREL_SPELLING("\nRBY", "YBR\n"), VOREL_SPELLING("\nRBy", "yBR\n"),
    VOREL_SPELLING("\x82YRY", "\xA2YRY"), VOREL_SPELLING("\x82YrY", "\xA2YRY"),
    VOREL_SPELLING("YRY\xA2", "\xA2YRY"),
    VOREL_SPELLING("\x82YRy", "\xA2YRy"), VOREL_SPELLING("\x82Yry", "\xA2YRy"),
    VOREL_SPELLING("yRY\xA2", "\xA2YRy"),
    VOREL_SPELLING("XGRA", "ARGX"), VOREL_SPELLING("XGrA", "ArGX"),
    VOREL_SPELLING("XBGR", "RGBX"), VOREL_SPELLING(" RGX", "RGBX"),
    VOREL_SPELLING("XBGr", "rGBX"), VOREL_SPELLING(" rGX", "rGBX"),
};
#undef VOREL_SPELLING
// clang-format on

// Every spelling stands once, is no canonical tag itself and leads to one.
constexpr bool SpellingsAreConsistent() {
  for (const Spelling& one : kSpellings) {
    int same = 0;
    bool known = false;
    for (const Spelling& other : kSpellings) same += one.accepted == other.accepted;
    for (const FrameLayout* layout : kFrameLayouts) {
      for (const u32 tag : layout->tags) {
        if (tag == one.accepted) return false;
        known = known || tag == one.canonical;
      }
    }
    if (same != 1 || !known) return false;
  }
  return true;
}
static_assert(SpellingsAreConsistent());

}  // namespace

u32 NormalizeFormatTag(u32 word) {
  for (const Spelling& spelling : kSpellings) {
    if (spelling.accepted == word) return spelling.canonical;
  }
  return word;
}

TaggedLayout LayoutOfTag(u32 tag) {
  for (const FrameLayout* layout : kFrameLayouts) {
    if (tag == layout->tags[0]) return {layout, Scan::p};
    if (tag == layout->tags[1]) return {layout, Scan::i};
  }
  return {nullptr, Scan::p};
}

u32 FamilyOfTag(u32 tag) {
  const TaggedLayout found = LayoutOfTag(tag);
  return found.layout == nullptr ? 0 : found.layout->family;
}

}  // namespace vorel
