// Where results go. A file gets its name when it is complete and never replaces another unless that is asked
// for; stdout, pipes and devices are written as they are.
#pragma once
#include <optional>
#include <string>

#include "container/movie_writer.h"
#include "container/output_file.h"
#include "picture_io/picture_stream.h"
#include "tool/spool.h"

namespace vorel::tool {

// A picture file in the making.
struct PictureTarget {
  container::OutputFile file;
  Descriptor stream;  // open if the target is a stream
  u64 bytes = 0;      // written so far
  std::string name;
};

// Opens `path`, "-" for stdout. Throws Problem, and UsageError if that is a terminal.
void OpenPictureTarget(PictureTarget& target, const std::string& path, bool force);

// Appends. The target must outlive the function.
picture_io::WriteBytes WriterOf(PictureTarget& target);

// Gives a file its name. Nothing is left of a target that goes without.
void FinishPictureTarget(PictureTarget& target);

// A movie in the making. A movie for a stream is built in an anonymous file first.
struct MovieTarget {
  Descriptor stream;     // open if the target is a stream
  Descriptor anonymous;  // open if the target is a stream
  std::string name;
  std::optional<container::MovieWriter> writer;
};

void OpenMovieTarget(MovieTarget& target, const std::string& path, const container::MovieSettings& settings);

void FinishMovieTarget(MovieTarget& target);

// The moment that a movie says it was made: unset for now, or what SOURCE_DATE_EPOCH says where results must not
// depend on it.
std::optional<u64> CreationTime();

// Throws UsageError if `path` is a terminal, or "-" and stdout is one.
void RefuseTerminal(const std::string& path);

}  // namespace vorel::tool
