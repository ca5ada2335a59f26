// What a command line asks for, checked as far as that is possible without opening a file.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "base/integers.h"
#include "picture_io/clip_format.h"
#include "vorel/frame_codec.h"

namespace vorel::tool {

// A command line that can't be meant: exit status 2.
struct UsageError {
  std::string text;
};

// How pictures are read. Without a pixel format the name tells what the input is, and rate and scan replace
// what its header says; ScanOrder::interlaced leaves the order of fields as it is where that is known.
struct SourceOptions {
  std::optional<u32> pixelFormat;
  u32 width = 0;  // with a pixel format: both sides given
  u32 height = 0;
  std::optional<picture_io::Ratio> rate;
  std::optional<picture_io::ScanOrder> scan;
  std::optional<u64> start;  // number of a sequence's first picture; unset: the lowest there is
};

// Which losses are allowed where frames don't hold pictures whole.
enum class Conversion : u8 { any, perfect };

struct EncodeOptions {
  std::vector<std::string> inputs;  // "-" is stdin
  std::string output;               // empty: named after the input
  SourceOptions source;
  VorelFamily family = VOREL_GENERIC;
  bool isGeneric = false;  // the movie's compression type is the generic one
  bool selfCheck = false;
  std::string settings;  // file with a settings record; empty: none
  bool keepAlpha = true;
  Conversion conversion = Conversion::any;
  std::optional<u32> colourStandard;  // unset: by the height
  bool force = false;
  u32 threads = 0;  // 0: one for each processor
};

// Kinds of picture files. The first two hold a clip in one file, the others one picture.
enum class PictureFile : u8 { y4m, raw, png, tiff, dpx, littleEndianDpx };

struct DecodeOptions {
  std::vector<std::string> inputs;
  std::string output;
  std::optional<PictureFile> format;  // unset: told by the output's name or the pixel format
  std::optional<u32> pixelFormat;     // unset: what the frames hold
  std::optional<u64> start;           // number of a sequence's first picture; unset: 0
  bool force = false;
  u32 threads = 0;
};

struct TranscodeOptions {
  std::vector<std::string> inputs;
  std::string output;      // empty: named after the input
  bool isGeneric = false;  // the movie's compression type is the generic one
  bool selfCheck = false;
  bool force = false;
  u32 threads = 0;
};

struct SettingsOptions {
  std::string codec = "auto";
  std::string record;               // to begin with; empty: the compressor's own
  std::vector<std::string> values;  // "self-check=on" and the like, in the order given
  bool dialog = false;
  std::string output;  // where the record goes; empty: nowhere
  bool force = false;
};

struct VerifyOptions {
  std::vector<std::string> inputs;
  std::string against;  // empty: decode only
  SourceOptions source;
  u32 threads = 0;
};

struct InfoOptions {
  std::vector<std::string> inputs;
  bool json = false;
};

struct FormatsOptions {
  bool json = false;
  bool matrix = false;  // what goes into what, in place of the list
};

}  // namespace vorel::tool
