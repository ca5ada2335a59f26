// QOI: R'G'B' of 8 bits, with alpha or without.
#define QOI_IMPLEMENTATION
#define QOI_NO_STDIO
#include <qoi.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "bench/peer.h"

namespace vorel::bench {
namespace {

Arrangement ArrangementOf(const SampleShape& shape) {
  return shape.model == ColourModel::rgb && shape.bits == 8 ? Arrangement::interleaved : Arrangement::none;
}

std::string Version() {
  return "QOI";
}

using Allocated = std::unique_ptr<void, void (*)(void*)>;

void Encode(const Samples& picture, CodedParts& parts, Results results) {
  const SampleShape& shape = picture.shape;
  const qoi_desc description = {shape.width, shape.height, static_cast<unsigned char>(shape.components),
                                QOI_SRGB};
  int size = 0;
  const Allocated coded(qoi_encode(picture.bytes.data(), &description, &size), std::free);
  if (coded == nullptr) throw std::runtime_error("qoi: cannot encode");
  if (results == Results::left) return;
  parts.resize(1);
  Keep(parts[0], static_cast<const u8*>(coded.get()), static_cast<std::size_t>(size));
}

void Decode(const CodedParts& parts, Samples& picture, Results results) {
  qoi_desc found = {};
  const Allocated decoded(qoi_decode(parts[0].room.data(), static_cast<int>(parts[0].bytes), &found,
                                     static_cast<int>(picture.shape.components)),
                          std::free);
  if (decoded == nullptr) throw std::runtime_error("qoi: cannot decode");
  if (results == Results::kept) std::memcpy(picture.bytes.data(), decoded.get(), picture.bytes.size());
}

}  // namespace

const Peer kQoi = {"qoi", Version, ArrangementOf, Encode, Decode};

}  // namespace vorel::bench
