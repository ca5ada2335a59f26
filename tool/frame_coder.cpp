// Calls of the core for single frames.
#include "tool/frame_coder.h"

#include <algorithm>

#include "base/bytes.h"
#include "component/frame_record.h"
#include "frame/frame_header.h"
#include "frame/frame_tags.h"

namespace vorel::tool {

namespace {

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

using EncodeFunction = VorelStatus(u32 pixelFormat, u32 formatChoice, u32 width, u32 height, i32 rowBytes,
                                   const void* base, u32 colourStandard, u32* wordCursor, u32* bitCursor,
                                   u32* frame, u32 flags);

VorelStatus EncodeGenerically(u32 pixelFormat, u32 formatChoice, u32 width, u32 height, i32 rowBytes,
                              const void* base, u32 /* colourStandard */, u32* wordCursor, u32* bitCursor,
                              u32* frame, u32 flags) {
  return VorelGenericEncode(pixelFormat, formatChoice, width, height, rowBytes, base, wordCursor, bitCursor,
                            frame, flags);
}

// By VorelFamily.
constexpr EncodeFunction* kEncodeFunctions[] = {
    EncodeGenerically,     VorelRGB10bfEncode,      VorelRGB8bfEncode,      VorelYCbCr10bv444Encode,
    VorelYCbCr8b444Encode, VorelYCbCr10bv422Encode, VorelYCbCr8bv422Encode, VorelYCbCr8bw422Encode};
static_assert(std::size(kEncodeFunctions) == VOREL_YCBCR_8BW_422 + 1);

u32 SamplesPerRow(const FrameLayout& layout, u32 width) {
  return UnitsPerRow(layout, width) * SamplesPerUnit(layout);
}

// An attempted row that was given up may have left codes behind the frame's end: 16 bits for each sample at
// most.
std::size_t AttemptWords(u32 tag, u32 width) {
  const FrameLayout* const layout = LayoutOfTag(tag).layout;
  return layout == nullptr ? 0 : std::size_t{SamplesPerRow(*layout, width)} / 2 + 4;
}

void PrepareBuffer(FrameBuffer& buffer, u32 tag, u32 width, u32 height) {
  const std::size_t words = FrameBufferBytes(tag, width, height) / 4;
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

// The smallest frame that can hold a picture: a bit for each row and each sample. A frame below it is not
// decoded, so that its picture needs no memory.
u64 SmallestFrameBytes(const FrameLayout& layout, u32 width, u32 height) {
  return VOREL_FRAME_HEADER_BYTES + (u64{height} * (1 + SamplesPerRow(layout, width)) + 7) / 8;
}

bool HasReadableSignature(const std::vector<u8>& frame) {
  HeaderWords header;
  for (std::size_t i = 0; i < header.size(); ++i) header[i] = LoadLittle32(frame.data() + 4 * i);
  return IsReadableSignature(header);
}

// Why no routine handles a frame; it has a whole header.
Problem UnknownFrame(const std::vector<u8>& frame, u32 pixelFormat, const std::string& place) {
  const u32 signature = LoadLittle32(frame.data());
  if (signature != kWrittenSignature[0] && signature != kOtherFirstWord) {
    return {"not a VorelVideo frame", place, "the movie is damaged, or its frames are of another codec"};
  }
  const u32 tag = TagOfFrame(frame);
  const std::string name = FormatNameOfTag(tag);
  if (name.empty())
    return {"the frame's format tag \"" + TagText(tag) + "\" is unknown", place, "the frame is damaged"};
  if (!HasReadableSignature(frame))
    return {"the frame's header is damaged", place, "fetch or make the movie again"};
  return {"frames of format " + name + " (tag \"" + TagText(tag) + "\") do not come as '" +
              PixelFormatName(pixelFormat) + "' pictures",
          place, "choose another pixel format with --pixel-format"};
}

}  // namespace

u64 FrameBufferBytes(u32 tag, u32 width, u32 height) {
  return (component::ReadableFrameBytes(VorelMaxFrameBytes(tag, width, height), width) + 3) / 4 * 4;
}

void EncodeFrame(const picture_io::Picture& picture, const FrameCoding& coding, FrameBuffer& buffer,
                 const std::string& place) {
  PrepareBuffer(buffer, coding.tag, picture.width, picture.height);
  u32 wordCursor = 0;
  u32 bitCursor = 0;
  const VorelStatus status =
      kEncodeFunctions[coding.family](picture.pixelFormat, coding.formatChoice, picture.width, picture.height,
                                      static_cast<i32>(picture.rowBytes), picture.bytes.data(),
                                      coding.colourStandard, &wordCursor, &bitCursor, buffer.words.data(), 0);
  if (status == VOREL_NO_ROUTINE) {
    throw Problem{"cannot encode: no routine makes frames of format " + FormatNameOfTag(coding.tag) +
                      " from '" + PixelFormatName(picture.pixelFormat) + "' pictures",
                  place, "choose another codec with --codec, or another pixel format"};
  }
  if (status == VOREL_FRAME_BOUND_WRITTEN)
    throw Problem{"cannot encode: " + StatusText(status), place, kTinyAdvice};
  if (status != VOREL_COMPLETE) throw Problem{"cannot encode: " + StatusText(status), place, ""};
  const u64 bound = VorelMaxFrameBytes(coding.tag, picture.width, picture.height);
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
  const std::size_t end = std::min(behind + AttemptWords(coding.tag, picture.width), buffer.words.size());
  std::fill(buffer.words.data() + behind, buffer.words.data() + end, 0u);
  buffer.bytes = recorded;
  buffer.touchedWords = behind;
}

FrameEnd EndOfFrame(u32 wordCursor, u32 bitCursor) {
  return {u64{wordCursor - VOREL_FRAME_HEADER_WORDS} * 4 + (bitCursor + 7) / 8,
          RecordedBytes(wordCursor, bitCursor)};
}

void CheckFrameSize(const std::vector<u8>& frame, const DecodedClip& clip, const std::string& place) {
  const picture_io::ClipFormat& format = clip.format;
  const bool hasHeader = frame.size() >= VOREL_FRAME_HEADER_BYTES;
  const FrameLayout* const layout = LayoutOfTag(TagOfFrame(frame)).layout;
  if (hasHeader && layout == nullptr) throw UnknownFrame(frame, format.pixelFormat, place);
  // Of a frame without a tag that much is known: no layout has fewer samples.
  const u64 smallest =
      SmallestFrameBytes(layout == nullptr ? YCbCr8bw422 : *layout, format.width, format.height);
  if (frame.size() < smallest) {
    throw Problem{"the frame is cut short: it has " + std::to_string(frame.size()) +
                      " bytes, and no frame of this size has fewer than " + std::to_string(smallest),
                  place, "fetch or make the movie again"};
  }
}

FrameEnd DecodeFrame(const std::vector<u8>& frame, const DecodedClip& clip, picture_io::Picture& picture,
                     std::vector<u8>& scratch, const std::string& place) {
  CheckFrameSize(frame, clip, place);
  const picture_io::ClipFormat& format = clip.format;
  ShapePicture(format, picture);
  scratch.resize(VorelScratchBytes(picture.width));
  u32 wordCursor = VOREL_FRAME_HEADER_WORDS;
  u32 bitCursor = 0;
  const VorelStatus status =
      VorelDecodeBounded(VOREL_GENERIC, picture.pixelFormat, picture.width, picture.height,
                         static_cast<i32>(picture.rowBytes), picture.bytes.data(), clip.colourStandard,
                         &wordCursor, &bitCursor, frame.data(), frame.size(), 0, scratch.data());
  if (status == VOREL_NO_ROUTINE) throw UnknownFrame(frame, format.pixelFormat, place);
  if (status != VOREL_COMPLETE) {
    throw Problem{"cannot decode: " + StatusText(status), place,
                  "the frame is damaged; fetch or make the movie again"};
  }
  const FrameEnd end = EndOfFrame(wordCursor, bitCursor);
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

std::string StatusText(VorelStatus status) {
  if (status < std::size(kStatusTexts)) return kStatusTexts[status];
  return "status " + std::to_string(status);
}

}  // namespace vorel::tool
