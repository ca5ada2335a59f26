// Where the fields of a DPX file stand, in bytes from its start, and the numbers in them that matter here.
#pragma once
#include "base/bytes.h"

namespace vorel::picture_io::dpx {

// As a number in the byte order of the file.
inline constexpr u32 kSignature = FourCharacterCode("SDPX");

// File, in bytes from its start.
inline constexpr std::size_t kImageOffset = 4;
inline constexpr std::size_t kVersion = 8;
inline constexpr std::size_t kFileSize = 16;
inline constexpr std::size_t kGenericSize = 24;
inline constexpr std::size_t kIndustrySize = 28;
inline constexpr std::size_t kUserSize = 32;
inline constexpr std::size_t kCreator = 160;
inline constexpr std::size_t kEncryptionKey = 660;
// Picture.
inline constexpr std::size_t kOrientation = 768;
inline constexpr std::size_t kElements = 770;
inline constexpr std::size_t kWidth = 772;
inline constexpr std::size_t kHeight = 776;
// Its first element.
inline constexpr std::size_t kSign = 780;
inline constexpr std::size_t kLowData = 784;
inline constexpr std::size_t kHighData = 792;
inline constexpr std::size_t kDescriptor = 800;
inline constexpr std::size_t kTransfer = 801;
inline constexpr std::size_t kColorimetric = 802;
inline constexpr std::size_t kBitDepth = 803;
inline constexpr std::size_t kPacking = 804;
inline constexpr std::size_t kEncoding = 806;
inline constexpr std::size_t kDataOffset = 808;
inline constexpr std::size_t kRowPadding = 812;
inline constexpr std::size_t kPicturePadding = 816;
// Source, film and television.
inline constexpr std::size_t kAspect = 1628;
inline constexpr std::size_t kGenericBytes = 1664;
inline constexpr std::size_t kFilmRate = 1724;
inline constexpr std::size_t kInterlace = 1928;
inline constexpr std::size_t kVideoRate = 1940;
inline constexpr std::size_t kHeaderBytes = 2048;

struct FieldRun {
  std::size_t first;
  std::size_t bytes;
};
// Every byte is set where a field is unknown, but for text, which is empty then, and bytes without a use.
inline constexpr FieldRun kTexts[] = {
    {8, 8},     {36, 624},  {664, 104}, {820, 32},  {892, 32},   {964, 32},  {1036, 32},  {1108, 32},
    {1180, 32}, {1252, 32}, {1324, 32}, {1356, 52}, {1432, 188}, {1636, 76}, {1732, 188}, {1972, 76},
};

inline constexpr u32 kUnknown32 = 0xFFFFFFFF;
inline constexpr u8 kUnknown8 = 0xFF;
inline constexpr u16 kUnknown16 = 0xFFFF;
inline constexpr u8 kDescriptorRgb = 50;
inline constexpr u8 kTwoFields = 1;
inline constexpr u8 kTenBits = 10;
inline constexpr u16 kFilledUpperBits = 1;
inline constexpr u32 kSampleBits = 0xFFFFFFFC;  // of a word, as a number

}  // namespace vorel::picture_io::dpx
