// zstd at level 1 on left-predicted planes, one call for all components of a picture. Contexts are kept, as a user's
// would be.
#include <zstd.h>

#include <stdexcept>

#include "bench/left_prediction.h"
#include "bench/peer.h"

namespace vorel::bench {
namespace {

Arrangement ArrangementOf(const SampleShape&) {
  return Arrangement::planes;
}

std::string Version() {
  return std::string("zstd ") + ZSTD_versionString();
}

void Encode(const Samples& picture, CodedParts& parts, Results) {
  static ZSTD_CCtx* const context = ZSTD_createCCtx();
  const Bytes& residuals = PredictFromLeft(picture);
  parts.resize(1);
  Reserve(parts[0], ZSTD_compressBound(residuals.size()));
  parts[0].bytes = ZSTD_compressCCtx(context, parts[0].room.data(), parts[0].room.size(), residuals.data(),
                                     residuals.size(), 1);
  if (ZSTD_isError(parts[0].bytes) != 0) throw std::runtime_error("zstd: cannot encode");
}

void Decode(const CodedParts& parts, Samples& picture, Results) {
  static ZSTD_DCtx* const context = ZSTD_createDCtx();
  Bytes& residuals = RoomForResiduals(picture);
  const std::size_t bytes =
      ZSTD_decompressDCtx(context, residuals.data(), residuals.size(), parts[0].room.data(), parts[0].bytes);
  if (bytes != residuals.size()) throw std::runtime_error("zstd: cannot decode");
  RestoreFromLeft(residuals, picture);
}

}  // namespace

const Peer kZstd = {"zstd1", Version, ArrangementOf, Encode, Decode};

}  // namespace vorel::bench
