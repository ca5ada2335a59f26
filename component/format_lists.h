// Which pixel formats components offer to their host, nearest to the frame first.
#pragma once
#include <array>

#include "base/integers.h"
#include "vorel/frame_codec.h"

namespace vorel::component {

// Entries of the host's list, the 0 at its end among them.
inline constexpr std::size_t kMostFormats = 128;

struct FormatList {
  std::array<u32, kMostFormats> codes;  // zeros from `count` on
  std::size_t count;                    // below kMostFormats
};

// What a host tells about the pictures that it wants.
struct OfferFacts {
  bool highQuality;
  bool onScreen;  // the pictures go straight to the screen
  bool afterFx;   // a host that is given R'G'B' only
};

/// Formats that a decompressor offers for frames of a tag, in the host's order of preference. Empty for a word
/// that is not one of the 30 canonical tags.
FormatList OfferedFormats(u32 canonicalTag, OfferFacts facts);

/// Formats that the compressor of a family takes, as a host may name them. Empty for an unknown family.
FormatList SourceFormats(VorelFamily family);

/// Formats that the decompressor of a family writes, as a host may name them. Empty for an unknown family.
FormatList TargetFormats(VorelFamily family);

}  // namespace vorel::component
