// The image description of a movie's frames: 86 bytes of fixed fields, then extensions, each an atom whose
// payload is kept as bytes. The fields carry the names that the platform gives them; in files all of them are
// big-endian.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "base/integers.h"
#include "container/atoms.h"

namespace vorel::container {

/// Type and payload, without the atom's size and type fields.
struct Extension {
  u32 type;
  std::vector<u8> bytes;
};

bool operator==(const Extension& a, const Extension& b);

struct SampleDescription {
  u32 cType = 0;  // four-character code of the codec, FourCharacterCode("Vrl4")
  u32 resvd1 = 0;
  u16 resvd2 = 0;
  u16 dataRefIndex = 1;
  u16 version = 0;
  u16 revisionLevel = 0;
  u32 vendor = 0;
  u32 temporalQuality = 0;
  u32 spatialQuality = 0;
  u16 width = 0;  // pixels
  u16 height = 0;
  u32 hRes = 72u << 16;  // pixels per inch, 16.16
  u32 vRes = 72u << 16;
  u32 dataSize = 0;
  u16 frameCount = 1;  // frames in one sample
  std::string name;    // up to 31 bytes, longer ones are cut
  u16 depth = 24;      // 24, 32, or as the codec has it
  i16 clutID = -1;     // -1: no colour table
  std::vector<u8>
      colourTable;  // bytes of the table when clutID is 0 and depth names an indexed picture, else empty
  std::vector<Extension> extensions;
};

bool operator==(const SampleDescription& a, const SampleDescription& b);

constexpr u32 kImageDescriptionBytes = 86;

/// Parses one entry of a description table. `entry` is the entry as an atom: its size is idSize, its type
/// cType. A zero word behind the last extension is tolerated and not kept. Throws Problem naming the entry
/// when a length does not fit.
SampleDescription ParseSampleDescription(const AtomView& entry);

/// Parses a description that stands alone in memory (idSize first, big-endian). `name` is what messages call
/// it.
SampleDescription ParseSampleDescription(const u8* bytes, std::size_t count, const std::string& name);

/// The description as it stands in a file: idSize, fields, colour table, extensions in their order.
std::vector<u8> SerializeSampleDescription(const SampleDescription& description);

/// The first extension of a type, or null.
const Extension* FindExtension(const SampleDescription& description, u32 type);

/// Puts an extension in the place of the first of its type and drops further ones, or appends it.
void SetExtension(SampleDescription& description, Extension extension);

/// Drops every extension of a type.
void RemoveExtension(SampleDescription& description, u32 type);

// Extensions whose bytes this folder knows. Each has a builder, and a finder that gives nothing when the
// extension is missing or has another length than its kind has.

constexpr u32 kFieldOrderType = FourCharacterCode("fiel");
constexpr u32 kColourType = FourCharacterCode("colr");
constexpr u32 kPixelAspectType = FourCharacterCode("pasp");
constexpr u32 kCleanApertureType = FourCharacterCode("clap");

/// 'fiel'. fields: 1 progressive, 2 interlaced. detail: 0 unknown; temporal order 1 top first, 6 bottom
/// first; rows of both fields interleaved: 9 first row is the earlier field's, 14 first row is the later
/// field's.
struct FieldOrder {
  u8 fields;
  u8 detail;
};

/// 'colr' of kind 'nclc'. Values as the platform numbers them: primaries 1 709, 5 EBU, 6 SMPTE C; transfer 1
/// 709, 7 240M; matrix 1 709, 6 601, 7 240M; 2 is unknown.
struct ColourParameters {
  u16 primaries;
  u16 transfer;
  u16 matrix;
};

/// 'pasp'. A pixel is `horizontal` wide where it is `vertical` high.
struct PixelAspect {
  u32 horizontal;
  u32 vertical;
};

/// 'clap'. Size of the clean picture and the offset of its centre, as fractions; the offsets' numerators are
/// signed.
struct CleanAperture {
  u32 widthNumerator, widthDenominator;
  u32 heightNumerator, heightDenominator;
  i32 horizontalNumerator;
  u32 horizontalDenominator;
  i32 verticalNumerator;
  u32 verticalDenominator;
};

Extension MakeFieldOrder(FieldOrder order);
Extension MakeColour(ColourParameters colour);
Extension MakePixelAspect(PixelAspect aspect);
Extension MakeCleanAperture(const CleanAperture& aperture);

std::optional<FieldOrder> FindFieldOrder(const SampleDescription& description);
/// Reads kinds 'nclc' and 'nclx', and an 'nclc' that was stored in the other byte order.
std::optional<ColourParameters> FindColour(const SampleDescription& description);
/// Nothing when a term is zero.
std::optional<PixelAspect> FindPixelAspect(const SampleDescription& description);
std::optional<CleanAperture> FindCleanAperture(const SampleDescription& description);

}  // namespace vorel::container
