// Any bytes as a YUV4MPEG2 stream: they are read or refused, and what is read is written and read again
// unchanged, in either form that 8 bits come in.
#include "picture_io/y4m.h"

#include <cstdlib>

#include "base/problem.h"

namespace {

using namespace vorel;
using namespace vorel::picture_io;

// Larger pictures only cost time.
constexpr u64 kMostPixels = 1 << 16;

void ReadAndWrite(std::vector<u8> bytes, u32 eightBits) {
  const PictureSource source = OpenY4mSource(ByteInputOf(std::move(bytes), "fuzz"), eightBits);
  std::vector<u8> written;
  const PictureSink sink = OpenY4mSink(source.format, [&written](const u8* data, std::size_t size) {
    written.insert(written.end(), data, data + size);
  });
  const PictureSource again = OpenY4mSource(ByteInputOf(written, "header"), eightBits);
  if (again.format != source.format) std::abort();

  StoredPicture stored;
  StoredPicture packed;
  Picture picture;
  while (source.fetch(stored)) {
    if (u64{source.format.width} * source.format.height > kMostPixels) continue;
    const StoredPicture planes = stored;
    source.unpack(stored, picture);
    sink.pack(picture, packed);
    if (packed.size() < planes.size() || !std::equal(planes.rbegin(), planes.rend(), packed.rbegin()))
      std::abort();
    sink.store(packed);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const vorel::u8* data, std::size_t size) {
  try {
    ReadAndWrite({data, data + size}, k2vuy);
    ReadAndWrite({data, data + size}, kYuvu);
  } catch (const vorel::Problem& problem) {
    if (problem.what.empty() || problem.where.empty()) std::abort();
  }
  return 0;
}
