// Files that hold one picture each, and sequences of them as clips. Every kind of file is a record of
// functions from the bytes of a file to a picture and back; where bytes come from and go to is the same for
// all.
#pragma once
#include <functional>
#include <span>
#include <string>

#include "picture_io/picture_stream.h"
#include "picture_io/sequence.h"

namespace vorel::picture_io {

// What a file says of its picture before the samples.
struct PictureFileHeader {
  ClipFormat format;   // rate, scan and aspect as far as the file tells
  std::string unkept;  // what else it says, see PictureSource
};

struct PictureFileKind {
  const char* name;                      // for people
  std::span<const u32> pixelFormats;     // that files are read to and written from
  std::span<const char* const> endings;  // of file names, in lower case
  // Both throw Problem that calls the file `name`.
  PictureFileHeader (*describe)(const StoredPicture& file, const std::string& name);
  void (*read)(const StoredPicture& file, const std::string& name, Picture& picture);
  // `format` is the clip's, for what is known beside the picture. Throws Problem.
  void (*write)(const Picture& picture, const ClipFormat& format, StoredPicture& file);
};

bool Holds(const PictureFileKind& kind, u32 pixelFormat);

// The kind that goes with the ending of a name, in letters of either case; null for any other ending.
const PictureFileKind* FindPictureFileKind(const std::string& path);

// The clip is what the first file says; a file that differs from it in size or pixel format is refused when
// its turn comes. Files are read in `fetch` and decoded in `unpack`. Throws Problem.
PictureSource OpenSequenceSource(const PictureFileKind& kind, PictureFiles files);

// Puts one file where it belongs, all of it. Throws Problem.
using WritePictureFile = std::function<void(const std::string& path, const StoredPicture& file)>;

// Pictures of a clip as files numbered from `first`. They are encoded in `pack`, and `store` hands each to
// `write`. Throws Problem if files of this kind don't hold the clip's pixel format.
PictureSink OpenSequenceSink(const PictureFileKind& kind, const ClipFormat& format,
                             const SequencePattern& pattern, u64 first, WritePictureFile write);

// Pictures of 16 bits a sample are big-endian words in memory: 'b48r' R G B and 'b64a' A R G B.
inline constexpr u32 kRgb8 = 24;
inline constexpr u32 kRgba8 = FourCharacterCode("RGBA");
inline constexpr u32 kRgb16 = FourCharacterCode("b48r");
inline constexpr u32 kArgb16 = FourCharacterCode("b64a");
inline constexpr u32 kRgb10 = FourCharacterCode("F10k");

// One of the first four.
constexpr u32 ChunkyPixelFormat(bool isDeep, bool hasAlpha) {
  if (isDeep) return hasAlpha ? kArgb16 : kRgb16;
  return hasAlpha ? kRgba8 : kRgb8;
}

// Throws Problem if a side is 0 or larger than kLargestSide.
void CheckPictureSize(u64 width, u64 height, const std::string& name);

}  // namespace vorel::picture_io
