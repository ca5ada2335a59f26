// JPEG-LS, lossless, by CharLS.
#include <charls/charls.h>

#include "bench/peer.h"

namespace vorel::bench {
namespace {

// Components of one size are coded in one scan, line by line; where chroma has half the columns each is a file.
Arrangement ArrangementOf(const SampleShape& shape) {
  return shape.hasHalfChroma ? Arrangement::planes : Arrangement::interleaved;
}

// Green taken from red and blue. The coder has this for three components of 8 or 16 bits; deep samples gain more
// from it than they lose by going as words whose upper bits are zero.
bool HasTransform(const SampleShape& shape, u32 components) {
  return shape.model == ColourModel::rgb && components == 3;
}

charls::frame_info FrameOf(const SampleShape& shape, u32 width, u32 components) {
  const u32 bits = HasTransform(shape, components) ? 8 * BytesOfSample(shape) : shape.bits;
  return {width, shape.height, static_cast<i32>(bits), static_cast<i32>(components)};
}

std::string Version() {
  return std::string("CharLS ") + charls_get_version_string();
}

void EncodeScan(const SampleShape& shape, u32 width, u32 components, const u8* samples, CodedPart& part) {
  charls::jpegls_encoder encoder;
  encoder.frame_info(FrameOf(shape, width, components));
  if (components > 1) encoder.interleave_mode(charls::interleave_mode::line);
  if (HasTransform(shape, components)) encoder.color_transformation(charls::color_transformation::hp1);
  Reserve(part, encoder.estimated_destination_size());
  encoder.destination(part.room.data(), part.room.size());
  part.bytes = encoder.encode(samples, std::size_t{width} * shape.height * components * BytesOfSample(shape));
}

void DecodeScan(const SampleShape& shape, u32 width, u32 components, u8* samples, const CodedPart& part) {
  charls::jpegls_decoder decoder;
  decoder.source(part.room.data(), part.bytes);
  decoder.read_header();
  decoder.decode(samples, std::size_t{width} * shape.height * components * BytesOfSample(shape));
}

}  // namespace

const Peer kJpegLs = {"jpeg-ls", Version, ArrangementOf, EncodeImages<ArrangementOf, EncodeScan>,
                      DecodeImages<ArrangementOf, DecodeScan>};

}  // namespace vorel::bench
