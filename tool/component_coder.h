// Pictures to frames and back through components. Each thread has instances of its own, which are opened when
// it first needs them.
#pragma once
#include <string>
#include <vector>

#include "component/decompressor.h"
#include "picture_io/picture_stream.h"
#include "tool/component_host.h"
#include "tool/frame_coder.h"

namespace vorel::tool {

// What all compressors of a clip are told.
struct Compression {
  u32 compressor;                            // compression type: 'Vrl0' for the generic one
  container::SampleDescription description;  // before the first frame
  u32 pixelFormat;                           // of the pictures
  std::vector<u8> settings;                  // record of the compressor's settings; empty: as it opens
};

// A compressor with all that a frame needs. Its description is complete behind the first frame.
struct FrameCompressor {
  OwnedInstance instance;
  OwnedDescription description;
  component::CodecCompressParams parameters = {};
  component::CodecCapabilities capabilities = {};
  component::embedded::PixelMapExtension rows = {};
  bool hasBegun = false;
};

// Throws Problem that names `place`.
void OpenFrameCompressor(FrameCompressor& compressor, const Compression& compression,
                         const std::string& place);

// Compresses a picture, which may be changed. Throws Problem that names `place`; `coding` is what is expected
// of the compressor and explains a failure.
void CompressFrame(FrameCompressor& compressor, const FrameCoding& coding, picture_io::Picture& picture,
                   FrameBuffer& buffer, const std::string& place);

// A decompressor with all that a frame needs.
struct FrameDecompressor {
  OwnedInstance instance;
  OwnedDescription description;
  component::CodecDecompressParams parameters = {};
  component::CodecCapabilities capabilities = {};
  component::embedded::PixelMapExtension rows = {};
  std::vector<u8> frameRecord;
  std::vector<u8> scratch;  // for the explanation of a failure
};

// `subtype` is the compression type of the component.
void OpenFrameDecompressor(FrameDecompressor& decompressor, u32 subtype,
                           const container::SampleDescription& description, const DecodedClip& clip,
                           const std::string& place);

// Decompresses a frame into a picture of the clip's format. Throws Problem that names `place`.
FrameEnd DecompressFrame(FrameDecompressor& decompressor, const std::vector<u8>& frame,
                         const DecodedClip& clip, picture_io::Picture& picture, const std::string& place);

}  // namespace vorel::tool
