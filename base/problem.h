// What went wrong outside the core, in the words that a person reads. Everything above the frame routines
// reports failures by throwing one of these; the tool prints it in one place.
#pragma once
#include <string>

namespace vorel {

struct Problem {
  std::string what;  // what is wrong: "sample table reaches beyond the end of the file"
  std::string
      where;  // file, then atom, frame or line and offset: "a.mov: moov/trak/mdia/minf/stbl/stsz at 1234"
  std::string advice;  // what to do about it; may be empty
};

}  // namespace vorel
