// High-throughput JPEG 2000, lossless, by OpenJPH: the reversible wavelet, and for R'G'B' the reversible colour
// transform. Chroma of pairs is a component with half the columns.
#include <openjph/ojph_arch.h>
#include <openjph/ojph_codestream.h>
#include <openjph/ojph_file.h>
#include <openjph/ojph_mem.h>
#include <openjph/ojph_params.h>
#include <openjph/ojph_version.h>

#include <cstring>

#include "bench/peer.h"

namespace vorel::bench {
namespace {

Arrangement ArrangementOf(const SampleShape&) {
  return Arrangement::planes;
}

#define VOREL_TEXT_OF(MACRO) VOREL_TEXT(MACRO)
#define VOREL_TEXT(TOKENS) #TOKENS
std::string Version() {
  return "OpenJPH " VOREL_TEXT_OF(OPENJPH_VERSION_MAJOR) "." VOREL_TEXT_OF(OPENJPH_VERSION_MINOR);
}
#undef VOREL_TEXT
#undef VOREL_TEXT_OF

// The coder's lines hold 32-bit integers.
template <typename Sample>
void Widen(const u8* bytes, u32 count, i32* __restrict line) {
  const Sample* const __restrict samples = reinterpret_cast<const Sample*>(bytes);
  for (u32 i = 0; i < count; ++i) line[i] = samples[i];
}

template <typename Sample>
void Narrow(const i32* __restrict line, u32 count, u8* bytes) {
  Sample* const __restrict samples = reinterpret_cast<Sample*>(bytes);
  for (u32 i = 0; i < count; ++i) samples[i] = static_cast<Sample>(line[i]);
}

void Describe(const SampleShape& shape, ojph::codestream& stream) {
  ojph::param_siz size = stream.access_siz();
  size.set_image_extent(ojph::point(shape.width, shape.height));
  size.set_num_components(shape.components);
  for (u32 i = 0; i < shape.components; ++i) {
    const u32 step = PlaceOf(shape, i).width == shape.width ? 1 : 2;
    size.set_component(i, ojph::point(step, 1), shape.bits, false);
  }
  ojph::param_cod coding = stream.access_cod();
  coding.set_reversible(true);
  coding.set_color_transform(shape.model == ColourModel::rgb);
  stream.set_planar(false);
}

void Encode(const Samples& picture, CodedParts& parts, Results results) {
  const SampleShape& shape = picture.shape;
  ojph::codestream stream;
  Describe(shape, stream);
  ojph::mem_outfile file;
  file.open(picture.bytes.size());
  stream.write_headers(&file);
  const u32 bytes = BytesOfSample(shape);
  u32 component = 0;
  ojph::line_buf* line = stream.exchange(nullptr, component);
  for (u32 row = 0; row < shape.height; ++row) {
    for (u32 i = 0; i < shape.components; ++i) {
      const SamplePlace place = PlaceOf(shape, component);
      const u8* const samples = &picture.bytes[(place.first + std::size_t{row} * place.width) * bytes];
      bytes == 1 ? Widen<u8>(samples, place.width, line->i32) : Widen<u16>(samples, place.width, line->i32);
      line = stream.exchange(line, component);
    }
  }
  stream.flush();
  if (results == Results::kept) {
    parts.resize(1);
    Keep(parts[0], file.get_data(), static_cast<std::size_t>(file.tell()));
  }
  stream.close();
}

void Decode(const CodedParts& parts, Samples& picture, Results) {
  const SampleShape& shape = picture.shape;
  ojph::mem_infile file;
  file.open(parts[0].room.data(), parts[0].bytes);
  ojph::codestream stream;
  stream.read_headers(&file);
  stream.set_planar(false);
  stream.create();
  const u32 bytes = BytesOfSample(shape);
  for (u32 row = 0; row < shape.height; ++row) {
    for (u32 i = 0; i < shape.components; ++i) {
      u32 component = 0;
      const ojph::line_buf* const line = stream.pull(component);
      const SamplePlace place = PlaceOf(shape, component);
      u8* const samples = &picture.bytes[(place.first + std::size_t{row} * place.width) * bytes];
      bytes == 1 ? Narrow<u8>(line->i32, place.width, samples) : Narrow<u16>(line->i32, place.width, samples);
    }
  }
  stream.close();
}

}  // namespace

const Peer kHtj2k = {"htj2k", Version, ArrangementOf, Encode, Decode};

}  // namespace vorel::bench
