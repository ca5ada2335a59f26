// LZ4 at its ordinary speed on left-predicted planes, one call for all components of a picture.
#include <lz4.h>

#include <stdexcept>

#include "bench/left_prediction.h"
#include "bench/peer.h"

namespace vorel::bench {
namespace {

Arrangement ArrangementOf(const SampleShape&) {
  return Arrangement::planes;
}

std::string Version() {
  return std::string("LZ4 ") + LZ4_versionString();
}

void Encode(const Samples& picture, CodedParts& parts, Results) {
  const Bytes& residuals = PredictFromLeft(picture);
  const int size = static_cast<int>(residuals.size());
  parts.resize(1);
  Reserve(parts[0], static_cast<std::size_t>(LZ4_compressBound(size)));
  const int bytes = LZ4_compress_default(reinterpret_cast<const char*>(residuals.data()),
                                         reinterpret_cast<char*>(parts[0].room.data()), size,
                                         static_cast<int>(parts[0].room.size()));
  if (bytes <= 0) throw std::runtime_error("lz4: cannot encode");
  parts[0].bytes = static_cast<std::size_t>(bytes);
}

void Decode(const CodedParts& parts, Samples& picture, Results) {
  Bytes& residuals = RoomForResiduals(picture);
  const int bytes = LZ4_decompress_safe(reinterpret_cast<const char*>(parts[0].room.data()),
                                        reinterpret_cast<char*>(residuals.data()),
                                        static_cast<int>(parts[0].bytes), static_cast<int>(residuals.size()));
  if (bytes != static_cast<int>(residuals.size())) throw std::runtime_error("lz4: cannot decode");
  RestoreFromLeft(residuals, picture);
}

}  // namespace

const Peer kLz4 = {"lz4", Version, ArrangementOf, Encode, Decode};

}  // namespace vorel::bench
