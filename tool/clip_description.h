// What a movie says of a clip: the image description made from a clip's format, and the format read back from
// one.
#pragma once
#include "container/sample_description.h"
#include "container/time_base.h"
#include "picture_io/clip_format.h"

namespace vorel::tool {

inline constexpr u32 kFormatTagExtension = FourCharacterCode("Kesp");
inline constexpr u32 kCodecOf8bw = FourCharacterCode("Vrl4");
inline constexpr u32 kGenericCodec = FourCharacterCode("Vrl0");

// The description of a 'yuvu' clip coded as Y'CbCr 8bw 4:2:2. Field order and pixel aspect are said when they
// are known, and only then, so that reading gives the same format back. Colour is not said, since no input
// tells it.
container::SampleDescription DescribeClip(const picture_io::ClipFormat& format, u32 firstFrameBytes);

// The format of a clip that is decoded to 'yuvu'. Width and height are as the description has them.
picture_io::ClipFormat ClipOfDescription(const container::SampleDescription& description,
                                         container::FrameRate rate);

// The tag of the extension 'Kesp' in its one spelling; 0 without that extension.
u32 TagOfDescription(const container::SampleDescription& description);

// Whether frames under this codec are VorelVideo's: 'Vrl0' to 'Vrl7'.
bool IsVorelCodec(u32 codec);

}  // namespace vorel::tool
