// Pictures to frames and back through the core, with its statuses put in words. Components do the same work in
// the tool; the core tells why one of them refuses a frame.
#pragma once
#include <string>
#include <vector>

#include "base/problem.h"
#include "picture_io/picture_stream.h"
#include "tool/frame_format.h"
#include "vorel/frame_codec.h"

namespace vorel::tool {

// Memory that a frame is encoded into, used again for the next one. Words behind touchedWords are zero.
struct FrameBuffer {
  std::vector<u32> words;
  std::size_t touchedWords = 0;
  std::size_t bytes = 0;  // size of the frame as it is recorded
};

// Bytes that a buffer takes for a frame with this tag of a picture of this size, to be encoded into and, for a check,
// decoded from.
u64 FrameBufferBytes(u32 tag, u32 width, u32 height);

// Encodes a picture. `place` names the frame in the Problem that is thrown when that fails.
void EncodeFrame(const picture_io::Picture& picture, const FrameCoding& coding, FrameBuffer& buffer,
                 const std::string& place);

// How a frame ended: the bytes that its bits fill, header included, and the size that it is recorded with.
struct FrameEnd {
  u64 usedBytes;
  u64 recordedBytes;
};

// By the cursors that a decoder leaves.
FrameEnd EndOfFrame(u32 wordCursor, u32 bitCursor);

// What a movie's frames are decoded to.
struct DecodedClip {
  picture_io::ClipFormat format;
  u32 colourStandard;
};

// Decodes a frame into a picture of the clip's format. Throws Problem that names `place` and says why: not a
// frame, of a format that does not come as such pictures, damaged, or cut short. `scratch` is used again and
// again.
FrameEnd DecodeFrame(const std::vector<u8>& frame, const DecodedClip& clip, picture_io::Picture& picture,
                     std::vector<u8>& scratch, const std::string& place);

// Throws Problem for a frame of an unknown tag and for one that is shorter than any frame of its size.
void CheckFrameSize(const std::vector<u8>& frame, const DecodedClip& clip, const std::string& place);

// The format tag of a frame in its one spelling; 0 if the bytes are too few for a header.
u32 TagOfFrame(const std::vector<u8>& frame);

// What a status means.
std::string StatusText(VorelStatus status);

}  // namespace vorel::tool
