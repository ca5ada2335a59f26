// Pictures, and the two small interfaces through which every kind of picture file is read and written. Each
// side has a part that goes file position by file position and a part that any thread may do, so that one
// thread moves bytes while others rearrange samples.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "base/integers.h"
#include "base/problem.h"
#include "picture_io/clip_format.h"

namespace vorel::picture_io {

// Rows from top to bottom, rowBytes apart, a multiple of 4; `bytes` is aligned for any integer.
struct Picture {
  u32 pixelFormat = 0;
  u32 width = 0;
  u32 height = 0;
  u32 rowBytes = 0;
  std::vector<u8> bytes;
};

// One picture as its bytes stand in a file.
using StoredPicture = std::vector<u8>;

// The pictures of one file or pipe, in order.
struct PictureSource {
  std::string name;           // for people
  ClipFormat format;          // of every picture
  std::string unkept;         // what the header says beyond `format`, for a note to people; usually empty
  u64 expectedFrames = 0;     // from the size of the file; 0 where that is not known. For estimates only
  bool keepsPadding = false;  // whether what lies behind the last pixel of an odd width comes from the file
  // One after the other: takes the next picture from the file. False at the end. Throws Problem.
  std::function<bool(StoredPicture& stored)> fetch;
  // On any thread, several at once: makes a picture of what was fetched. `stored` may be used up.
  std::function<void(StoredPicture& stored, Picture& picture)> unpack;
};

// Where the bytes of a picture file go. Throws Problem.
using WriteBytes = std::function<void(const u8* bytes, std::size_t size)>;

// A picture file in the making. Its header is written when it is opened.
struct PictureSink {
  // On any thread, several at once: the bytes of one picture as the file holds them. `picture` may be used
  // up.
  std::function<void(Picture& picture, StoredPicture& stored)> pack;
  // One after the other: appends a picture.
  std::function<void(const StoredPicture& stored)> store;
};

// "a.y4m: frame 3 at byte 1234", for messages. Frames are counted from 0.
std::string FramePlace(const std::string& name, u64 frame, u64 position);

// Says that a picture is not all there.
Problem CutShort(const std::string& place, std::size_t expected, std::size_t found,
                 const std::string& advice);

// Bytes of one picture of a clip in a raw file.
u64 RawPictureBytes(const ClipFormat& format);

// Gives a picture the shape of a clip's, keeping its memory where that suffices. Samples are unspecified.
void ShapePicture(const ClipFormat& format, Picture& picture);

}  // namespace vorel::picture_io
