// Picture files of noise for runs of the tool, and what is in those that it leaves.
#pragma once
#include <string>

#include "picture_io/picture_file.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

// Noise of another kind for every seed. Samples have 10 bits at most: the lower 6 of 16 are zero.
picture_io::Picture NoisePicture(u32 pixelFormat, u32 width, u32 height, u32 seed);

void WritePicture(const TestFolder& folder, const std::string& name, const picture_io::PictureFileKind& kind,
                  const picture_io::Picture& picture);

// Writes `count` pictures of 50 x 18 as numbers from `first` on of a pattern; their seeds are their numbers.
void WriteSequence(const TestFolder& folder, const std::string& pattern,
                   const picture_io::PictureFileKind& kind, u32 pixelFormat, u32 first, u32 count);

// The picture of a file, by the ending of its name. Of a file that can't be read an empty one, and the test
// fails.
picture_io::Picture PictureIn(const TestFolder& folder, const std::string& name);

// Whether size, pixel format and all samples are the same.
bool IsSame(const picture_io::Picture& first, const picture_io::Picture& second);

// Whether files first.. first + count - 1 of a pattern hold the pictures that WriteSequence made under the
// numbers from `seed` on.
void ExpectSequence(const TestFolder& folder, const std::string& pattern, u32 pixelFormat, u32 first,
                    u32 count, u32 seed);

}  // namespace vorel::tool
