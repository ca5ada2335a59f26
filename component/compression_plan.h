// How the pictures of a sequence are compressed, from what is known of the first one: the rules alone, without
// a host.
#pragma once
#include <optional>

#include "component/compressor.h"
#include "component/image_extensions.h"

namespace vorel::component {

inline constexpr u32 kLosslessQuality = 1024;
inline constexpr i16 kDepthWithAlpha = 32;  // of an image description

// What is known of a source. Extensions are those of its description.
struct SourceFacts {
  VorelFamily family;
  OSType subtype;     // that frames are asked for
  OSType hostFormat;  // as the host names it
  u32 depth;          // bits per pixel of the host's pixel map
  bool hasAlpha;      // the description's depth says so
  Settings settings;
  u32 previousTag;                      // kept for a pixel format without one
  std::optional<u8> rangeExtension;     // 'Rnge'
  std::optional<u8> fieldsExtension;    // 'fiel', the first byte
  bool hasColourExtension;              // 'colr' of any kind
  std::optional<ColourNumbers> colour;  // 'colr' of kind 'nclc'
  std::optional<u8> significantBits;    // 'sgbt'
};

struct CompressionPlan {
  u32 pixelFormat;
  Settings settings;  // scan settled, range and standard as the description has them
  std::optional<ColourNumbers> newColour;
  bool keepsAlpha;
  u32 tag;
  i16 nameIndex;   // in the compressor's list of frame formats
  OSType subtype;  // that the description is to have
  u8 significantBits;
  // The refusals of two steps, in this order; the description is written before them.
  OSErr refusedSubtype;
  OSErr refusedBits;
};

// Pixel formats of hosts go by the setting of range.
u32 SourceFormat(OSType hostFormat, u32 depth, u32 rgbRange);

CompressionPlan PlanCompression(const SourceFacts& facts);

}  // namespace vorel::component
