// Calls of the core for single frames.
#include "tool/frame_coder.h"

#include <algorithm>

#include "base/bytes.h"
#include "frame/frame_tags.h"

namespace vorel::tool {

namespace {

constexpr u32 kProgressiveTag = WordOfBytes("YbYr");
constexpr u32 kInterlacedTag = WordOfBytes("Ybyr");

constexpr const char* kStatusTexts[] = {
    "complete",
    "the frame has grown beyond its bound",
    "the decoder has left the picture",
    "a row holds more samples than the picture is wide",
    "its bits go on beyond the bound of frames of this size",
    "the encoder has left the picture",
    "the decoded picture differs from its source",
    "no routine handles this frame",
    "the width is not valid",
    "the height is not valid",
    "the rows of the picture are too short",
    "there is no picture",
    "the picture is not aligned",
    "there is no word cursor",
    "the word cursor is not aligned",
    "there is no bit cursor",
    "the bit cursor is not aligned",
    "there is no frame",
    "the frame is not aligned",
    "there is no scratch memory",
};

constexpr const char* kTinyAdvice = "pictures of a few pixels can end so; use larger ones";

// An attempted row that was given up may have left codes behind the frame's end: 16 bits for each sample at
// most.
std::size_t AttemptWords(u32 width) {
  return std::size_t{picture_io::YuvuRowBytes(width)} / 2 + 4;
}

void PrepareBuffer(FrameBuffer& buffer, u32 width, u32 height) {
  const std::size_t words = FrameBufferBytes(width, height) / 4;
  if (buffer.words.size() == words) {
    std::fill_n(buffer.words.begin(), std::min(buffer.touchedWords, words), 0u);
  } else {
    buffer.words.assign(words, 0);
  }
  buffer.touchedWords = words;
}

u64 RecordedBytes(u32 wordCursor, u32 bitCursor) {
  return (u64{wordCursor} * 32 + 7 + bitCursor) / 8;
}

// The smallest frame that can hold a picture of a 4:2:2 format without alpha: a bit for each row and each
// sample. A frame below it is not decoded, so that its picture needs no memory.
u64 SmallestFrameBytes(u32 width, u32 height) {
  return VOREL_FRAME_HEADER_BYTES + (u64{height} * (1 + picture_io::YuvuRowBytes(width)) + 7) / 8;
}

Problem UnknownFrame(const std::vector<u8>& frame, const std::string& place) {
  const u32 signature = frame.size() >= 4 ? LoadLittle32(frame.data()) : 0;
  if (signature != WordOfBytes("Vorl") && signature != WordOfBytes("Kesp")) {
    return {"not a VorelVideo frame", place, "the movie is damaged, or its frames are of another codec"};
  }
  const u32 tag = TagOfFrame(frame);
  const std::string name = FormatNameOfTag(tag);
  if (name.empty())
    return {"the frame's format tag \"" + TagText(tag) + "\" is unknown", place, "the frame is damaged"};
  if (tag == kProgressiveTag || tag == kInterlacedTag) {
    return {"the frame's header is damaged", place, "fetch or make the movie again"};
  }
  return {"frames of format " + name + " (tag \"" + TagText(tag) + "\") are not handled for now", place,
          "only Y'CbCr 8bw 4:2:2 is"};
}

}  // namespace

u64 FrameBufferBytes(u32 width, u32 height) {
  constexpr u64 kSlack = 40;
  const u64 bound = std::max(VorelMaxFrameBytes(kProgressiveTag, width, height),
                             VorelMaxFrameBytes(kInterlacedTag, width, height));
  return (bound + kSlack + 3) / 4 * 4;
}

void EncodeFrame(const picture_io::Picture& picture, bool interlaced, FrameBuffer& buffer,
                 const std::string& place) {
  PrepareBuffer(buffer, picture.width, picture.height);
  u32 wordCursor = 0;
  u32 bitCursor = 0;
  const VorelStatus status =
      VorelGenericEncode(picture.pixelFormat, interlaced ? VOREL_INTERLACED : 0, picture.width,
                         picture.height, static_cast<i32>(picture.rowBytes), picture.bytes.data(),
                         &wordCursor, &bitCursor, buffer.words.data(), 0);
  if (status == VOREL_FRAME_BOUND_WRITTEN)
    throw Problem{"cannot encode: " + StatusText(status), place, kTinyAdvice};
  if (status != VOREL_COMPLETE) throw Problem{"cannot encode: " + StatusText(status), place, ""};
  const u64 bound =
      VorelMaxFrameBytes(interlaced ? kInterlacedTag : kProgressiveTag, picture.width, picture.height);
  const u64 recorded = RecordedBytes(wordCursor, bitCursor);
  if (recorded > bound + VOREL_FRAME_HEADER_BYTES) {
    throw Problem{"cannot encode: the frame takes " + std::to_string(recorded) + " bytes, more than the " +
                      std::to_string(bound + VOREL_FRAME_HEADER_BYTES) + " that frames of this size may take",
                  place, kTinyAdvice};
  }
  // The cursor counts the header's words twice, so the words behind the last one written are recorded too: as
  // zeros.
  const std::size_t behind =
      std::min<std::size_t>(wordCursor - VOREL_FRAME_HEADER_WORDS + 1, buffer.words.size());
  const std::size_t end = std::min(behind + AttemptWords(picture.width), buffer.words.size());
  std::fill(buffer.words.data() + behind, buffer.words.data() + end, 0u);
  buffer.bytes = recorded;
  buffer.touchedWords = behind;
}

FrameEnd DecodeFrame(const std::vector<u8>& frame, const picture_io::ClipFormat& format,
                     picture_io::Picture& picture, std::vector<u8>& scratch, const std::string& place) {
  if (frame.size() >= VOREL_FRAME_HEADER_BYTES) {
    if (const u32 tag = TagOfFrame(frame); tag != kProgressiveTag && tag != kInterlacedTag) {
      throw UnknownFrame(frame, place);
    }
  }
  const u64 smallest = SmallestFrameBytes(format.width, format.height);
  if (frame.size() < smallest) {
    throw Problem{"the frame is cut short: it has " + std::to_string(frame.size()) +
                      " bytes, and no frame of this " + "size has fewer than " + std::to_string(smallest),
                  place, "fetch or make the movie again"};
  }
  ShapePicture(format, picture);
  scratch.resize(VorelScratchBytes(picture.width));
  u32 wordCursor = VOREL_FRAME_HEADER_WORDS;
  u32 bitCursor = 0;
  const VorelStatus status =
      VorelDecodeBounded(VOREL_GENERIC, picture.pixelFormat, picture.width, picture.height,
                         static_cast<i32>(picture.rowBytes), picture.bytes.data(), VOREL_COLOUR_601,
                         &wordCursor, &bitCursor, frame.data(), frame.size(), 0, scratch.data());
  if (status == VOREL_NO_ROUTINE) throw UnknownFrame(frame, place);
  if (status != VOREL_COMPLETE) {
    throw Problem{"cannot decode: " + StatusText(status), place,
                  "the frame is damaged; fetch or make the movie again"};
  }
  const FrameEnd end = {u64{wordCursor - VOREL_FRAME_HEADER_WORDS} * 4 + (bitCursor + 7) / 8,
                        RecordedBytes(wordCursor, bitCursor)};
  if (end.usedBytes > frame.size()) {
    throw Problem{"the frame is cut short or damaged: its bits need " + std::to_string(end.usedBytes) +
                      " bytes, it has " + std::to_string(frame.size()),
                  place, "fetch or make the movie again"};
  }
  return end;
}

u32 TagOfFrame(const std::vector<u8>& frame) {
  constexpr std::size_t kTagOffset = 16;
  if (frame.size() < VOREL_FRAME_HEADER_BYTES) return 0;
  return VorelNormalizeFormatTag(LoadLittle32(frame.data() + kTagOffset));
}

std::string TagText(u32 tag) {
  std::string text;
  for (int shift = 0; shift < 32; shift += 8) {
    const unsigned byte = tag >> shift & 0xFF;
    constexpr char kDigits[] = "0123456789ABCDEF";
    if (byte >= ' ' && byte <= '~') {
      text += static_cast<char>(byte);
    } else {
      text += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return text;
}

std::string FormatNameOfTag(u32 tag) {
  const TaggedLayout tagged = LayoutOfTag(tag);
  return tagged.layout == nullptr ? ""
                                  : tagged.layout->shownName[static_cast<std::size_t>(Index(tagged.scan))];
}

u32 PixelBitsOfTag(u32 tag) {
  const FrameLayout* const layout = LayoutOfTag(tag).layout;
  if (layout == nullptr) return 0;
  return layout->unit == Unit::pair ? RawBitsPerUnit(*layout) / 2 : RawBitsPerUnit(*layout);
}

std::string StatusText(VorelStatus status) {
  if (status < std::size(kStatusTexts)) return kStatusTexts[status];
  return "status " + std::to_string(status);
}

}  // namespace vorel::tool
