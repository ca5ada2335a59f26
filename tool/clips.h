// Clips to read: picture files and movies, by the name that stands on the command line.
#pragma once
#include <string>

#include "container/movie_reader.h"
#include "picture_io/picture_stream.h"
#include "tool/frame_coder.h"
#include "tool/options.h"
#include "tool/spool.h"

namespace vorel::tool {

// Pictures from a file, from a sequence of files, or, for "-", from stdin. YUV4MPEG2 pictures of 8 bits become `eightBits`, '2vuy' or
// 'yuvu'. Throws Problem, and UsageError for options that don't go with what the path names.
picture_io::PictureSource OpenPictures(const std::string& path, const SourceOptions& options, u32 eightBits);

// A movie with a video track. The track's samples are its frames.
struct MovieClip {
  Descriptor spooled;  // open if the movie came through a pipe; outlives the movie
  std::string name;
  container::Movie movie;
  container::VideoTrack video;
};

// Opens a movie from a file or, for "-", from stdin. Throws Problem.
MovieClip OpenMovieClip(const std::string& path);

// The frames' own tag, from the first of them, which goes before what the description says; 0 if neither
// names one.
u32 TagOfMovie(const MovieClip& clip);

// What its pictures are once decoded to this pixel format. Throws Problem if the codec is another or pictures
// change their size.
DecodedClip ClipToDecode(const MovieClip& clip, u32 pixelFormat);

// The compression type whose decompressor takes a movie's frames: the one that the movie names, or, where its
// first frame is of another family or has a signature that only the generic one reads, the generic one.
u32 DecompressorOfMovie(const MovieClip& clip, const container::SampleDescription& description);

// The description of a frame as its decompressor is given it. The tag, which some writers leave out, is that of
// the frames, and colours are told in the older way, if in any.
container::SampleDescription DescriptionOfFrame(const MovieClip& clip, u64 frame);

// "a.mov: frame 3 at byte 1234".
std::string PlaceOfFrame(const MovieClip& clip, u64 frame);

u64 LargestFrame(const MovieClip& clip);

// What decoding the media alone leaves out, for a note to people; usually empty.
std::string UnkeptOfMovie(const MovieClip& clip);

}  // namespace vorel::tool
