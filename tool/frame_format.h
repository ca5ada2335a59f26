// Frame formats and pixel formats by name, and which goes into which.
#pragma once
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "picture_io/clip_format.h"
#include "vorel/frame_codec.h"

namespace vorel::tool {

// The code of a pixel format by its name, "32" or "v210"; nothing for any other text.
std::optional<u32> PixelFormatOfName(const std::string& name);

// Its name; empty for an unknown code.
std::string PixelFormatName(u32 pixelFormat);

// The pixel format that a file's ending names: "a.v210", but not "a.32", which may be a number of any kind.
std::optional<u32> PixelFormatOfEnding(const std::string& path);

// The name of a codec as it stands on the command line: "auto" for the generic family. False for other texts.
bool ReadCodec(const std::string& name, VorelFamily& family);

// "auto, ycbcr-8bv-422, ...".
std::string CodecNames();

// The codecs, by name, that make frames with this tag of pictures in this pixel format.
std::vector<std::string> CodecsOfPair(u32 pixelFormat, u32 tag);
// Names of the codecs whose own frames for this pixel format, made with `formatChoice`, have a wanted tag.
std::string CodecsThat(u32 pixelFormat, u32 formatChoice, const std::function<bool(u32 tag)>& isWanted);

// How all pictures of a clip are coded.
struct FrameCoding {
  VorelFamily family;
  u32 formatChoice;  // VOREL_KEEP_ALPHA, VOREL_INTERLACED
  u32 colourStandard;
  u32 tag;  // of the frames that come of it
};

// Throws Problem that names `name` if the family has no frames of its own for pictures of this pixel format.
FrameCoding CodingOfClip(const picture_io::ClipFormat& format, VorelFamily family, bool keepAlpha,
                         u32 colourStandard, const std::string& name);

// The pixel formats that frames with this tag come out as, in raw files and in YUV4MPEG2 files; '2vuy' for an
// unknown tag, 0 where YUV4MPEG2 has none.
u32 RawFormatOfTag(u32 tag);
u32 Y4mFormatOfTag(u32 tag);

// Of the pixel formats that a kind of picture file holds, the one nearest to frames with this tag.
u32 PictureFormatOfTag(u32 tag, std::span<const u32> held);

// The pixel format for YUV4MPEG2 pictures of 8 bits that go with frames of this tag.
u32 EightBitFormatOfTag(u32 tag);

// The four bytes of a tag in the order of the frame, as a person reads them: YbYr, \xA2YRY.
std::string TagText(u32 tag);

// "Y'CbCr 8bw 4:2:2p"; empty for an unknown tag.
std::string FormatNameOfTag(u32 tag);

// The component that stands for a tag's family, 'Vrl4' and its like; 0 for an unknown tag.
u32 CodecOfTag(u32 tag);

bool TagHasAlpha(u32 tag);

// Bits that a pixel of this format takes without coding; 0 for an unknown tag.
u32 PixelBitsOfTag(u32 tag);

}  // namespace vorel::tool
