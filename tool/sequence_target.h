// Where pictures go that have a file each: a sequence, or a single still.
#pragma once
#include <string>

#include "picture_io/picture_file.h"
#include "tool/console.h"

namespace vorel::tool {

struct SequenceTarget {
  picture_io::SequencePattern pattern;
  u64 first;  // number of the first picture
  bool force;
};

// Takes `path`, a pattern or the name of one file, for `frames` pictures. Throws Problem, before anything is
// written, if a file exists already, and if others of the sequence stand behind the last one, where they would
// look like part of the clip. With `force` the former are replaced when their turn comes, and the latter stay
// and are named in a note.
SequenceTarget OpenSequenceTarget(const std::string& path, u64 first, u64 frames, bool force,
                                  Console& console);

// Writes each file under a temporary name; it gets its own when it is complete.
picture_io::WritePictureFile WriterOf(const SequenceTarget& target);

// "shot.00000.png to shot.00041.png", for messages; at least one.
std::string WrittenText(const SequenceTarget& target, u64 frames);

}  // namespace vorel::tool
