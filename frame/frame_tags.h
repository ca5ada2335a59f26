// Format tags: word 4 of a frame names its layout and scan. The accepted spellings of a tag and what a tag
// stands for.
#pragma once
#include "frame/frame_layout.h"

namespace vorel {

// The canonical tag for any accepted spelling of it. Every other word is returned as it is, so that an
// unknown tag is refused where a routine is looked for.
u32 NormalizeFormatTag(u32 word);

struct TaggedLayout {
  const FrameLayout* layout;  // null for a word that is not one of the 30 canonical tags
  Scan scan;
};

TaggedLayout LayoutOfTag(u32 tag);

// Component subtype of the family that a canonical tag belongs to; 0 for every other word.
u32 FamilyOfTag(u32 tag);

}  // namespace vorel
