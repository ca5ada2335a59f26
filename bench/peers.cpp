// Peers work in memory, through their ordinary functions and with the memory that these allocate.
#include "bench/peers.h"

#include <png.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

#ifdef VOREL_HAVE_QOI
#define QOI_IMPLEMENTATION
#define QOI_NO_STDIO
#include <qoi.h>
#endif

namespace vorel::bench {
namespace {

using Bytes = std::vector<u8>;

// Pixels without gaps between rows.
struct Image {
  u32 width;
  u32 height;
  u32 channels;  // 3 or 4
  const u8* pixels;
};

// Whether results go where the caller wants them, for a check. A user has them where a peer leaves them, so
// that is no part of its time.
enum class Results : u8 { kept, left };

struct Peer {
  const char* name;
  void (*encode)(const Image& image, Bytes& file, Results results);
  void (*decode)(const Bytes& file, Image shape, Bytes& pixels, Results results);
};

std::size_t SizeOf(const Image& image) {
  return std::size_t{image.width} * image.height * image.channels;
}

[[noreturn]] void PngFails(png_structp, const char* message) {
  throw std::runtime_error(message);
}

// A file in memory, as libpng reads it.
struct ReadPosition {
  const u8* next;
};

void EncodePng(const Image& image, Bytes& file, Results) {
  file.clear();
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, PngFails, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(
      png, &file,
      [](png_structp writing, png_bytep bytes, png_size_t size) {
        Bytes& out = *static_cast<Bytes*>(png_get_io_ptr(writing));
        out.insert(out.end(), bytes, bytes + size);
      },
      nullptr);
  png_set_compression_level(png, 1);
  png_set_IHDR(png, info, image.width, image.height, 8,
               image.channels == 4 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  const std::size_t rowBytes = std::size_t{image.width} * image.channels;
  for (u32 row = 0; row < image.height; ++row) png_write_row(png, image.pixels + row * rowBytes);
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
}

void DecodePng(const Bytes& file, Image shape, Bytes& pixels, Results) {
  pixels.resize(SizeOf(shape));
  ReadPosition position = {file.data()};
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, PngFails, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_read_fn(png, &position, [](png_structp reading, png_bytep bytes, png_size_t size) {
    ReadPosition& from = *static_cast<ReadPosition*>(png_get_io_ptr(reading));
    std::memcpy(bytes, from.next, size);
    from.next += size;
  });
  png_read_info(png, info);
  const std::size_t rowBytes = std::size_t{shape.width} * shape.channels;
  for (u32 row = 0; row < shape.height; ++row) png_read_row(png, pixels.data() + row * rowBytes, nullptr);
  png_destroy_read_struct(&png, &info, nullptr);
}

#ifdef VOREL_HAVE_QOI
void EncodeQoi(const Image& image, Bytes& file, Results results) {
  const qoi_desc shape = {image.width, image.height, static_cast<unsigned char>(image.channels), QOI_SRGB};
  int size = 0;
  const std::unique_ptr<void, void (*)(void*)> coded(qoi_encode(image.pixels, &shape, &size), std::free);
  if (coded == nullptr) throw std::runtime_error("qoi: cannot encode");
  const u8* const bytes = static_cast<const u8*>(coded.get());
  if (results == Results::kept) file.assign(bytes, bytes + size);
}

void DecodeQoi(const Bytes& file, Image shape, Bytes& pixels, Results results) {
  qoi_desc found = {};
  const std::unique_ptr<void, void (*)(void*)> decoded(
      qoi_decode(file.data(), static_cast<int>(file.size()), &found, static_cast<int>(shape.channels)),
      std::free);
  if (decoded == nullptr) throw std::runtime_error("qoi: cannot decode");
  const u8* const bytes = static_cast<const u8*>(decoded.get());
  if (results == Results::kept) pixels.assign(bytes, bytes + SizeOf(shape));
}
#endif

constexpr Peer kPeers[] = {
#ifdef VOREL_HAVE_QOI
    {"qoi", EncodeQoi, DecodeQoi},
#endif
    {"png1", EncodePng, DecodePng},
};

// The pictures of a sequence without the gaps that align their rows.
std::vector<Bytes> PackedPictures(const std::vector<Item>& items, u32 channels) {
  std::vector<Bytes> packed;
  for (const Item& item : items) {
    const Sequence& sequence = *item.job->sequence;
    const std::size_t rowBytes = std::size_t{sequence.width} * channels;
    Bytes& pixels = packed.emplace_back(rowBytes * sequence.height);
    for (u32 row = 0; row < sequence.height; ++row) {
      std::memcpy(&pixels[row * rowBytes], &PictureOf(item)[row * static_cast<u32>(item.job->rowBytes)],
                  rowBytes);
    }
  }
  return packed;
}

// Files of all pictures, each of which decodes to its source.
struct CodedPictures {
  std::vector<Item> items;
  std::vector<Bytes> pixels;
  std::vector<Image> images;
  std::vector<Bytes> files;
  std::size_t bytes = 0;
};

CodedPictures CodeAll(const Peer& peer, const std::string& pixelName,
                      const std::vector<const Sequence*>& sequences) {
  CodedPictures coded;
  const u32 channels = static_cast<u32>(pixelName.size());
  coded.items = ItemsOf(JobsOf(sequences, pixelName));
  coded.pixels = PackedPictures(coded.items, channels);
  coded.files.resize(coded.items.size());
  for (std::size_t i = 0; i < coded.items.size(); ++i) {
    const Sequence& sequence = *coded.items[i].job->sequence;
    coded.images.push_back({sequence.width, sequence.height, channels, coded.pixels[i].data()});
    peer.encode(coded.images[i], coded.files[i], Results::kept);
    coded.bytes += coded.files[i].size();
    Bytes copy;
    peer.decode(coded.files[i], coded.images[i], copy, Results::kept);
    if (copy != coded.pixels[i]) std::abort();
  }
  return coded;
}

void Encode(benchmark::State& state, const Peer& peer, const std::string& pixelName,
            const std::vector<const Sequence*>& sequences) {
  const CodedPictures coded = CodeAll(peer, pixelName, sequences);
  Bytes file;
  Measure(state, coded.items, coded.bytes,
          [&](std::size_t i) { peer.encode(coded.images[i], file, Results::left); });
}

void Decode(benchmark::State& state, const Peer& peer, const std::string& pixelName,
            const std::vector<const Sequence*>& sequences) {
  const CodedPictures coded = CodeAll(peer, pixelName, sequences);
  Bytes pixels;
  Measure(state, coded.items, coded.bytes, [&](std::size_t i) {
    peer.decode(coded.files[i], coded.images[i], pixels, Results::left);
    benchmark::DoNotOptimize(pixels.data());
  });
}

}  // namespace

void RegisterPeers(const std::string& name, const std::vector<const Sequence*>& sequences) {
  for (const Peer& peer : kPeers) {
    for (const std::string pixelName : {"RGB", "RGBA"}) {
      const std::string title = std::string(peer.name) + '/' + pixelName + '/' + name;
      benchmark::RegisterBenchmark(("encode/" + title).c_str(), Encode, peer, pixelName, sequences)
          ->Unit(benchmark::kMillisecond);
      benchmark::RegisterBenchmark(("decode/" + title).c_str(), Decode, peer, pixelName, sequences)
          ->Unit(benchmark::kMillisecond);
    }
  }
}

}  // namespace vorel::bench
