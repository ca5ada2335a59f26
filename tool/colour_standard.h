// Colour standards of clips: their names on the command line, their codes, and the numbers by which movies
// tell them.
#pragma once
#include <string>

#include "container/sample_description.h"

namespace vorel::tool {

// Reads "ntsc", "pal", "hd", "hd1035" or "unknown". False for anything else.
bool ReadStandard(const std::string& text, u32& standard);

// The standard of a clip that none is known of: HD from 720 rows on.
u32 StandardForHeight(u32 height);

// What the extension 'colr' of a movie says for one of the five codes.
container::ColourParameters ColourOfStandard(u32 standard);

// The code that a movie's frames are decoded with: by the matrix of its extension 'colr', 0 without one.
u32 StandardOfDescription(const container::SampleDescription& description);

// The name of the standard whose numbers a movie gives; empty for others and for none.
std::string StandardName(const container::SampleDescription& description);

}  // namespace vorel::tool
