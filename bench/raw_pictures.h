// Pictures in a file that any program here reads without a library: of each its width and height, 32 bits each in the
// byte order of the machine, then its 'b64a' words.
#pragma once
#include <istream>

#include "bench/pictures.h"

namespace vorel::bench {

// Writes the first picture of each sequence. Throws std::runtime_error.
void WriteRawPictures(const std::string& path, const std::vector<Sequence>& sequences);

// The next picture as a sequence of its own; returns whether there was one. Throws std::runtime_error if it is cut.
bool ReadRawPicture(std::istream& file, Sequence& sequence);

}  // namespace vorel::bench
