// Raw clips of noise, in every pixel format that some frames hold to the last bit.
#pragma once
#include <string>
#include <vector>

#include "tests/tool/run_vorel.h"

namespace vorel::tool {

inline constexpr u32 kRawWidth = 50;
inline constexpr u32 kRawHeight = 18;
inline constexpr u32 kRawFrames = 2;

// A pixel format, how long a row of kRawWidth pixels is in a file, and which bits of its words frames hold.
struct RawClip {
  const char* name;
  std::size_t rowBytes;
  std::size_t wordBytes;
  bool isBigEndian;
  u32 usedBits;
};

// Those that come back bit for bit from the frames that --codec auto chooses.
extern const std::vector<RawClip> kRawClips;

const RawClip& RawClipNamed(const std::string& name);

// kRawFrames pictures of noise without bits that can't be kept.
std::string RawPictures(const std::string& name);

// Writes `pictures` as in.raw and encodes it as clip.mov.
Outcome EncodeRaw(const TestFolder& folder, const std::string& name, const std::string& pictures,
                  const std::vector<std::string>& more = {});

// Compares clip.mov with in.raw.
Outcome VerifyRaw(const TestFolder& folder, const std::string& name);

// The tag of the first frame of clip.mov.
std::string TagOfFirstFrame(const TestFolder& folder);

}  // namespace vorel::tool
