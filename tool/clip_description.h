// What a movie says of a clip: the image description made from a clip's format, and the format read back from
// one.
#pragma once
#include "container/sample_description.h"
#include "container/time_base.h"
#include "picture_io/clip_format.h"
#include "tool/frame_format.h"

namespace vorel::tool {

inline constexpr u32 kFormatTagExtension = FourCharacterCode("Kesp");

// The description of a clip to be coded in frames of coding.tag, as a host begins it; the compressor adds the
// tag, names and qualities. Field order and pixel aspect are said when they are known, and only then, so that
// reading gives the same format back; the colour standard is always said.
container::SampleDescription DescribeClip(const picture_io::ClipFormat& format, const FrameCoding& coding);

// The format of a clip that is decoded to pictures of `pixelFormat`. Width and height are as the description
// has them.
picture_io::ClipFormat ClipOfDescription(const container::SampleDescription& description,
                                         container::FrameRate rate, u32 pixelFormat);

// The tag of the extension 'Kesp' in its one spelling; 0 without that extension.
u32 TagOfDescription(const container::SampleDescription& description);

// Whether frames under this codec are VorelVideo's: 'Vrl0' to 'Vrl7'.
bool IsVorelCodec(u32 codec);

}  // namespace vorel::tool
