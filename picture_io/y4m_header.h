// The text line that opens a YUV4MPEG2 stream: its tags to a clip format and back.
//
//   YUV4MPEG2 W640 H360 F24000:1001 Ip A1:1 C422
//
//   W, H   picture size in pixels              F   frames per second
//   I      p progressive, t top field first,   A   width of a pixel to its height; absent or 0:0 for unknown
//          b bottom field first, ? unknown;    C   chroma subsampling and depth: 422, 422p10, 444, 444p10,
//          m, a mixture, is refused                444alpha; absent means 4:2:0
//                                              X   anything; kept as text, since no movie has a place for it
#pragma once
#include <string>

#include "picture_io/clip_format.h"

namespace vorel::picture_io {

struct Y4mHeader {
  ClipFormat format;     // '2vuy', 'v216', 'v408' or 'v410'; the rate may be unknown
  std::string comments;  // tags that carry nothing for `format`, as they stand, parted by spaces
};

// Reads the header line, without its line feed. `name` is the stream's, for messages. Throws Problem.
Y4mHeader ReadY4mHeader(const std::string& line, const std::string& name);

// The header line of a clip of 'yuvu' pictures or of one of these, with its line feed.
std::string Y4mHeaderLine(const ClipFormat& format);

}  // namespace vorel::picture_io
