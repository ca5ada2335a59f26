// The codec components: what each is called, what the host finds it by, and which resources stand for it. The
// entries, the resources and the settings dialog all read these rows.
#pragma once
#include <string_view>

#include "base/bytes.h"
#include "base/integers.h"
#include "vorel/frame_codec.h"

namespace vorel::component {

inline constexpr u32 kDecompressorType = FourCharacterCode("imdc");
inline constexpr u32 kCompressorType = FourCharacterCode("imco");
inline constexpr u32 kTranscoderType = FourCharacterCode("imtc");
inline constexpr u32 kMaker = FourCharacterCode("TmRk");
inline constexpr u32 kGenericSubtype = FourCharacterCode("Vrl0");
inline constexpr u32 kComponentVersion = 0x267;

// What all components of one type have in common.
struct ComponentKind {
  u32 type;
  u32 flags;              // of the platform entry: thread safe, and for codecs recompresses and does 32
  u32 registrationFlags;  // automatic version, multiple platforms; transcoders stay loaded
  u32 aviListType;        // resource that tells the codec types of AVI files
};

inline constexpr ComponentKind kComponentKinds[] = {
    {kDecompressorType, 0x10200020, 0x09, FourCharacterCode("avvd")},
    {kCompressorType, 0x10200020, 0x09, FourCharacterCode("avvc")},
    {kTranscoderType, 0x10000000, 0x19, FourCharacterCode("avvc")},
};

// `formatFlags` of the codec information: lossless, 24 and 32 bits; or lossless and 24 bits alone.
inline constexpr u32 kDepths24And32 = 0x1060;
inline constexpr u32 kDepth24 = 0x1040;

struct ComponentRow {
  const char* entry;     // exported function
  u32 type;              // one of kComponentKinds
  u32 subtype;           // compression type; of a transcoder the pixel format that it reads
  u32 manufacturer;      // the maker; of a transcoder the compression type that it makes
  i16 id;                // of all resources that stand for this component
  VorelFamily family;    // of the frames
  u32 compressFlags;     // of the codec information
  u32 formatFlags;       // of the codec information
  const char* name;      // for people; 31 characters at most
  const char* sentence;  // what it does
};

inline constexpr const char* kFamilyNames[] = {
    // by VorelFamily
    "Vorel",
    "Vorel RGB[A] 10bf",
    "Vorel RGB[A] 8bf",
    "Vorel Y'CbCr[A] 10bv 4:4:4[:4]",
    "Vorel Y'CbCr[A] 8bv 4:4:4[:4]",
    "Vorel Y'CbCr[A] 10bv 4:2:2[:4]",
    "Vorel Y'CbCr[A] 8bv 4:2:2[:4]",
    "Vorel Y'CbCr 8bw 4:2:2",
};

// clang-format off
#define VOREL_CODEC(ENTRY, TYPE, SUBTYPE, ID, FAMILY, COMPRESS, DEPTHS, SENTENCE)                         \
  {ENTRY, TYPE, FourCharacterCode(SUBTYPE), kMaker, ID, FAMILY, COMPRESS, DEPTHS, kFamilyNames[FAMILY],  \
   SENTENCE}
#define VOREL_DECOMPRESSOR(ENTRY, SUBTYPE, ID, FAMILY, COMPRESS, DEPTHS, SENTENCE) \
  VOREL_CODEC(ENTRY, kDecompressorType, SUBTYPE, ID, FAMILY, COMPRESS, DEPTHS, SENTENCE)
#define VOREL_COMPRESSOR(ENTRY, SUBTYPE, ID, FAMILY, DEPTHS, SENTENCE) \
  VOREL_CODEC(ENTRY, kCompressorType, SUBTYPE, ID, FAMILY, 0x10200020, DEPTHS, SENTENCE)
// A transcoder has two components for a source: one for the compression type of its family, then one for the
// generic type, with the next id.
#define VOREL_TRANSCODER(ENTRY, SOURCE, TARGET, ID, FAMILY, DEPTHS, GENERIC_DEPTHS, SENTENCE)            \
  {ENTRY, kTranscoderType, FourCharacterCode(SOURCE), FourCharacterCode(TARGET), ID, FAMILY, 0x10200020, \
   DEPTHS, kFamilyNames[FAMILY], SENTENCE},                                                              \
  {ENTRY, kTranscoderType, FourCharacterCode(SOURCE), kGenericSubtype, (ID) + 1, FAMILY, 0x10200020,     \
   GENERIC_DEPTHS, kFamilyNames[VOREL_GENERIC], SENTENCE}

inline constexpr ComponentRow kComponents[] = {
    VOREL_DECOMPRESSOR("Qd_", "Vrl0", 23584, VOREL_GENERIC, 0x10200020, kDepths24And32,
        "Decodes lossless Vorel video of every frame format."),
    VOREL_DECOMPRESSOR("Qd0", "Vrl7", 23606, VOREL_RGB_10BF, 0x10200020, kDepths24And32,
        "Decodes lossless Vorel video of 10-bit RGB, with or without alpha."),
    VOREL_DECOMPRESSOR("Qd1", "Vrl1", 23586, VOREL_RGB_8BF, 0, kDepths24And32,
        "Decodes lossless Vorel video of 8-bit RGB, with or without alpha."),
    VOREL_DECOMPRESSOR("Qd2", "Vrl5", 23598, VOREL_YCBCR_10BV_444, 0x10200020, kDepths24And32,
        "Decodes lossless Vorel video of 10-bit Y'CbCr 4:4:4, with or without alpha."),
    VOREL_DECOMPRESSOR("Qd3", "Vrl2", 23588, VOREL_YCBCR_8B_444, 0x10200020, kDepths24And32,
        "Decodes lossless Vorel video of 8-bit Y'CbCr 4:4:4, with or without alpha."),
    VOREL_DECOMPRESSOR("Qd4", "Vrl6", 23600, VOREL_YCBCR_10BV_422, 0x10200020, kDepths24And32,
        "Decodes lossless Vorel video of 10-bit Y'CbCr 4:2:2, with or without alpha."),
    VOREL_DECOMPRESSOR("Qd5", "Vrl3", 23592, VOREL_YCBCR_8BV_422, 0x10200020, kDepths24And32,
        "Decodes lossless Vorel video of 8-bit Y'CbCr 4:2:2, with or without alpha."),
    VOREL_DECOMPRESSOR("Qd6", "Vrl4", 23596, VOREL_YCBCR_8BW_422, 0x10200020, kDepth24,
        "Decodes lossless Vorel video of 8-bit wide-range Y'CbCr 4:2:2."),

    VOREL_COMPRESSOR("Qe_", "Vrl0", 23616, VOREL_GENERIC, kDepths24And32,
        "Encodes video into the Vorel frames that are nearest to its pixel format."),
    VOREL_COMPRESSOR("Qe0", "Vrl7", 23638, VOREL_RGB_10BF, kDepths24And32,
        "Encodes video into Vorel frames of 10-bit RGB, with or without alpha."),
    VOREL_COMPRESSOR("Qe1", "Vrl1", 23618, VOREL_RGB_8BF, kDepths24And32,
        "Encodes video into Vorel frames of 8-bit RGB, with or without alpha."),
    VOREL_COMPRESSOR("Qe2", "Vrl5", 23630, VOREL_YCBCR_10BV_444, kDepths24And32,
        "Encodes video into Vorel frames of 10-bit Y'CbCr 4:4:4, with or without alpha."),
    VOREL_COMPRESSOR("Qe3", "Vrl2", 23620, VOREL_YCBCR_8B_444, kDepths24And32,
        "Encodes video into Vorel frames of 8-bit Y'CbCr 4:4:4, with or without alpha."),
    VOREL_COMPRESSOR("Qe4", "Vrl6", 23632, VOREL_YCBCR_10BV_422, kDepths24And32,
        "Encodes video into Vorel frames of 10-bit Y'CbCr 4:2:2, with or without alpha."),
    VOREL_COMPRESSOR("Qe5", "Vrl3", 23624, VOREL_YCBCR_8BV_422, kDepths24And32,
        "Encodes video into Vorel frames of 8-bit Y'CbCr 4:2:2, with or without alpha."),
    VOREL_COMPRESSOR("Qe6", "Vrl4", 23628, VOREL_YCBCR_8BW_422, kDepth24,
        "Encodes video into Vorel frames of 8-bit wide-range Y'CbCr 4:2:2."),

    VOREL_TRANSCODER("Qt2", "v410", "Vrl5", 23662, VOREL_YCBCR_10BV_444, kDepth24, kDepths24And32,
        "Transcodes v410 video into Vorel frames of 10-bit Y'CbCr 4:4:4."),
    VOREL_TRANSCODER("Qt3", "v408", "Vrl2", 23652, VOREL_YCBCR_8B_444, kDepths24And32, kDepths24And32,
        "Transcodes v408 video into Vorel frames of 8-bit Y'CbCr 4:4:4."),
    VOREL_TRANSCODER("Qt3", "r408", "Vrl2", 23654, VOREL_YCBCR_8B_444, kDepths24And32, kDepths24And32,
        "Transcodes r408 video into Vorel frames of 8-bit Y'CbCr 4:4:4."),
    VOREL_TRANSCODER("Qt4", "v210", "Vrl6", 23664, VOREL_YCBCR_10BV_422, kDepth24, kDepths24And32,
        "Transcodes v210 video into Vorel frames of 10-bit Y'CbCr 4:2:2."),
    VOREL_TRANSCODER("Qt4", "v216", "Vrl6", 23666, VOREL_YCBCR_10BV_422, kDepth24, kDepths24And32,
        "Transcodes v216 video into Vorel frames of 10-bit Y'CbCr 4:2:2."),
    VOREL_TRANSCODER("Qt4", "Y216", "Vrl6", 23668, VOREL_YCBCR_10BV_422, kDepth24, kDepths24And32,
        "Transcodes Y216 video into Vorel frames of 10-bit Y'CbCr 4:2:2."),
    VOREL_TRANSCODER("Qt5", "2vuy", "Vrl3", 23656, VOREL_YCBCR_8BV_422, kDepth24, kDepths24And32,
        "Transcodes 2vuy video into Vorel frames of 8-bit Y'CbCr 4:2:2."),
    VOREL_TRANSCODER("Qt5", "yuvs", "Vrl3", 23658, VOREL_YCBCR_8BV_422, kDepth24, kDepths24And32,
        "Transcodes yuvs video into Vorel frames of 8-bit Y'CbCr 4:2:2."),
    VOREL_TRANSCODER("Qt6", "yuv2", "Vrl4", 23660, VOREL_YCBCR_8BW_422, kDepth24, kDepth24,
        "Transcodes yuv2 video into Vorel frames of 8-bit wide-range Y'CbCr 4:2:2."),
};
// clang-format on
#undef VOREL_TRANSCODER
#undef VOREL_COMPRESSOR
#undef VOREL_DECOMPRESSOR
#undef VOREL_CODEC

static_assert(std::size(kComponents) == 8 + 8 + 18);

constexpr const ComponentKind& KindOf(const ComponentRow& row) {
  for (const ComponentKind& kind : kComponentKinds) {
    if (kind.type == row.type) return kind;
  }
  return kComponentKinds[0];
}

/// The first row of an exported function, or null. A transcoder's rows follow each other.
constexpr const ComponentRow* FindComponent(std::string_view entry) {
  for (const ComponentRow& row : kComponents) {
    if (entry == row.entry) return &row;
  }
  return nullptr;
}

/// The row of a component as its description has it, or null. Manufacturer 0 stands for any.
constexpr const ComponentRow* FindComponent(u32 type, u32 subtype, u32 manufacturer = 0) {
  for (const ComponentRow& row : kComponents) {
    const bool made = manufacturer == 0 || manufacturer == row.manufacturer;
    if (type == row.type && subtype == row.subtype && made) return &row;
  }
  return nullptr;
}

/// The compressor of a compression type; the generic one for any other. Its id leads to the codec information
/// and to the settings dialog.
constexpr const ComponentRow& CompressorOf(u32 subtype) {
  const ComponentRow* row = FindComponent(kCompressorType, subtype);
  return row != nullptr ? *row : *FindComponent(kCompressorType, kGenericSubtype);
}

/// The compressor of a family.
constexpr const ComponentRow& CompressorOfFamily(VorelFamily family) {
  for (const ComponentRow& row : kComponents) {
    if (row.type == kCompressorType && row.family == family) return row;
  }
  return CompressorOf(kGenericSubtype);
}

// Resources that belong to no single component.
inline constexpr i16 kIconId = 23584;      // 'icl8' of all components, 'ICON' of the dialogs, icon family
inline constexpr i16 kVersionId = 1;       // 'vers'
inline constexpr i16 kPublicId = 1;        // under which the host asks for a component's own resources
inline constexpr i16 kGroupBoxId = 23700;  // 'CNTL': this + 10 * family + number of the group box

/// Settings text of a compressor, 'STR#'.
constexpr i16 SettingsTextId(const ComponentRow& compressor) {
  return compressor.id;
}

/// Names of a compressor's frame formats, 'STR#': see format_names.h.
constexpr i16 FormatNamesId(const ComponentRow& compressor) {
  return static_cast<i16>(compressor.id + 1);
}

/// Settings dialog of a compressor: 'DLOG', 'dlgx', 'DITL' and 'dftb' share the id.
constexpr i16 DialogId(const ComponentRow& compressor) {
  return compressor.id;
}

/// One of the dialog's group boxes, 'CNTL'. `box` counts from 0.
constexpr i16 GroupBoxId(VorelFamily family, int box) {
  return static_cast<i16>(kGroupBoxId + 10 * static_cast<int>(family) + box);
}

}  // namespace vorel::component
