// Noise, masked word by word.
#include "tests/tool/raw_clips.h"

#include <algorithm>

#include "tests/tool/movies.h"

namespace vorel::tool {

namespace {

// Reads or writes a word of `clip`.
u32 WordAt(const RawClip& clip, const std::string& bytes, std::size_t at) {
  u32 word = 0;
  for (std::size_t i = 0; i < clip.wordBytes; ++i) {
    const std::size_t place = clip.isBigEndian ? i : clip.wordBytes - 1 - i;
    word = word << 8 | static_cast<u8>(bytes[at + place]);
  }
  return word;
}

void PutWord(const RawClip& clip, u32 word, std::string& bytes, std::size_t at) {
  for (std::size_t i = 0; i < clip.wordBytes; ++i) {
    const std::size_t place = clip.isBigEndian ? clip.wordBytes - 1 - i : i;
    bytes[at + place] = static_cast<char>(word >> 8 * i & 0xFF);
  }
}

// Rows of 25 pairs take 34 words; the last has one sample of 10 bits, and zeros follow.
u32 KeptOfV210(u32 word, std::size_t atInRow) {
  if (atInRow >= 136) return 0;
  return atInRow == 132 ? word & 0x3FF : word;
}

// Samples of 'Y216' are limited to what video interfaces carry.
u32 KeptOfY216(u32 word) {
  return std::clamp(word, 4u << 4, 1019u << 4);
}

std::vector<std::string> RawOptions(const std::string& name) {
  return {"--pixel-format", name, "--size", std::to_string(kRawWidth) + "x" + std::to_string(kRawHeight)};
}

std::vector<std::string> Joined(std::vector<std::string> first, const std::vector<std::string>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

}  // namespace

const std::vector<RawClip> kRawClips = {
    {"32", 200, 1, false, 0xFF},     {"ABGR", 200, 1, false, 0xFF},      {"RGBA", 200, 1, false, 0xFF},
    {"BGRA", 200, 1, false, 0xFF},   {"24", 150, 1, false, 0xFF},        {"24BG", 150, 1, false, 0xFF},
    {"b64a", 400, 2, true, 0xFFC0},  {"L64A", 400, 2, false, 0xFFC0},    {"A46L", 400, 2, false, 0xFFC0},
    {"b48r", 300, 2, true, 0xFFC0},  {"F10k", 200, 4, true, 0xFFFFFFFC}, {"F210", 200, 4, true, 0x3FFFFFFF},
    {"r408", 200, 1, false, 0xFF},   {"v408", 200, 1, false, 0xFF},      {"v410", 200, 4, false, 0xFFFFFFFC},
    {"2vuy", 100, 1, false, 0xFF},   {"yuvs", 100, 1, false, 0xFF},      {"yuvu", 100, 1, false, 0xFF},
    {"v216", 200, 2, false, 0xFFC0}, {"Y216", 200, 2, false, 0x3FF0},    {"v210", 256, 4, false, 0x3FFFFFFF},
};

const RawClip& RawClipNamed(const std::string& name) {
  return *std::find_if(kRawClips.begin(), kRawClips.end(),
                       [&name](const RawClip& clip) { return name == clip.name; });
}

std::string RawPictures(const std::string& name) {
  const RawClip& clip = RawClipNamed(name);
  std::string bytes = Noise(clip.rowBytes * kRawHeight * kRawFrames, 11);
  for (std::size_t at = 0; at < bytes.size(); at += clip.wordBytes) {
    u32 word = WordAt(clip, bytes, at) & clip.usedBits;
    if (name == "v210") word = KeptOfV210(word, at % clip.rowBytes);
    if (name == "Y216") word = KeptOfY216(word);
    PutWord(clip, word, bytes, at);
  }
  return bytes;
}

Outcome EncodeRaw(const TestFolder& folder, const std::string& name, const std::string& pictures,
                  const std::vector<std::string>& more) {
  WriteFile(folder, "in.raw", pictures);
  const std::vector<std::string> encode = {"encode", "-f", "-q", "in.raw", "-o", "clip.mov", "--rate", "25"};
  return RunVorel(folder, Joined(Joined(encode, RawOptions(name)), more));
}

Outcome VerifyRaw(const TestFolder& folder, const std::string& name) {
  return RunVorel(folder, Joined({"verify", "clip.mov", "--against", "in.raw"}, RawOptions(name)));
}

std::string TagOfFirstFrame(const TestFolder& folder) {
  const std::vector<u8> frame = FramesOf(folder, "clip.mov").at(0);
  return {frame.begin() + 16, frame.begin() + 20};
}

}  // namespace vorel::tool
