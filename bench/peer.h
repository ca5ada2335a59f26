// What a lossless coder of others offers for comparison: functions from samples to bytes in memory and back,
// through its ordinary calls, in one thread. They throw std::runtime_error where the coder fails.
#pragma once
#include "bench/samples.h"

namespace vorel::bench {

// A coder's output. The room only grows, so that no time goes into clearing it for every picture.
struct CodedPart {
  Bytes room;
  std::size_t bytes = 0;
};

// The files of one picture: more than one where components are coded on their own.
using CodedParts = std::vector<CodedPart>;

// Whether results go where the caller wants them, for a check. A user has them where a coder leaves them, so
// that is no part of its time.
enum class Results : u8 { kept, left };

struct Peer {
  const char* name;
  std::string (*version)();  // and name of the library
  // How it gets its samples.
  Arrangement (*arrangement)(const SampleShape& shape);
  void (*encode)(const Samples& picture, CodedParts& parts, Results results);
  // `picture` has its shape and the right number of bytes.
  void (*decode)(const CodedParts& parts, Samples& picture, Results results);
};

inline void Reserve(CodedPart& part, std::size_t bytes) {
  if (part.room.size() < bytes) part.room.resize(bytes);
}

// For coders whose result lies in memory of their own.
inline void Keep(CodedPart& part, const u8* bytes, std::size_t count) {
  part.room.assign(bytes, bytes + count);
  part.bytes = count;
}

// For coders of images: one for a picture whose components lie interleaved, or one of one component for each plane.
// EncodeImage(shape, width, components, samples, part); DecodeImage takes the part as it stands.
template <auto ArrangementOf, auto CodeImage, typename SamplesOf, typename Parts>
void ForEachImage(SamplesOf& picture, Parts& parts) {
  const SampleShape& shape = picture.shape;
  if (ArrangementOf(shape) == Arrangement::interleaved) {
    CodeImage(shape, shape.width, shape.components, picture.bytes.data(), parts[0]);
    return;
  }
  for (u32 i = 0; i < shape.components; ++i) {
    const SamplePlace place = PlaceOf(shape, i);
    CodeImage(shape, place.width, 1, &picture.bytes[place.first * BytesOfSample(shape)], parts[i]);
  }
}
template <auto ArrangementOf, auto EncodeImage>
void EncodeImages(const Samples& picture, CodedParts& parts, Results) {
  const bool isOne = ArrangementOf(picture.shape) == Arrangement::interleaved;
  parts.resize(isOne ? 1 : picture.shape.components);
  ForEachImage<ArrangementOf, EncodeImage>(picture, parts);
}
template <auto ArrangementOf, auto DecodeImage>
void DecodeImages(const CodedParts& parts, Samples& picture, Results) {
  ForEachImage<ArrangementOf, DecodeImage>(picture, parts);
}

extern const Peer kPng;
extern const Peer kQoi;
extern const Peer kJpegXl;
extern const Peer kJpegLs;
extern const Peer kHtj2k;
extern const Peer kZstd;
extern const Peer kLz4;

}  // namespace vorel::bench
