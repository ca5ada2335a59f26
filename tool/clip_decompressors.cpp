#include "tool/clip_decompressors.h"

namespace vorel::tool {

FrameEnd ClipDecompressors::Decompress(u64 frame, const std::vector<u8>& bytes,
                                       picture_io::Picture& picture) {
  OfThread& own = threads.local();
  const std::string place = PlaceOfFrame(clip, frame);
  const u32 index = clip.video.samples[frame].description;
  if (own.description != index) {
    own.description.reset();
    own.decompressor = {};
    CheckFrameSize(bytes, decoded, place);
    const container::SampleDescription described = DescriptionOfFrame(clip, frame);
    OpenFrameDecompressor(own.decompressor, DecompressorOfMovie(clip, described), described, decoded, place);
    own.description = index;
  }
  return DecompressFrame(own.decompressor, bytes, decoded, picture, place);
}

u64 ClipDecompressors::BytesTaken() const {
  u64 bytes = ComponentBytes();
  for (const OfThread& own : threads)
    bytes += own.decompressor.frameRecord.capacity() + own.decompressor.scratch.capacity();
  return bytes;
}

}  // namespace vorel::tool
