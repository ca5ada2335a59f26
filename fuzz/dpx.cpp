// Any bytes as a DPX file: they are a picture or are refused, and a picture is written in both byte orders
// and read again unchanged.
#include "picture_io/dpx.h"

#include <cstdlib>

#include "base/problem.h"

namespace {

using namespace vorel;
using namespace vorel::picture_io;

void ReadAndWrite(const StoredPicture& file) {
  const PictureFileHeader header = DescribeDpx(file, "fuzz");
  Picture picture;
  ReadDpx(file, "fuzz", picture);
  if (picture.width != header.format.width || picture.height != header.format.height) std::abort();
  for (const DpxOrder order : {DpxOrder::bigEndian, DpxOrder::littleEndian}) {
    StoredPicture written;
    WriteDpx(picture, header.format, order, written);
    Picture again;
    ReadDpx(written, "written", again);
    if (again.bytes != picture.bytes || again.width != picture.width) std::abort();
    const ClipFormat format = DescribeDpx(written, "written").format;
    if (format.rate != header.format.rate || format.aspect != header.format.aspect) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const vorel::u8* data, std::size_t size) {
  try {
    ReadAndWrite({data, data + size});
  } catch (const vorel::Problem& problem) {
    if (problem.what.empty() || problem.where != "fuzz") std::abort();
  }
  return 0;
}
