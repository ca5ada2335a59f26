// Rows and tiles come from libtiff with 16-bit samples as numbers of this machine. A picture's memory grows
// as its rows arrive, so a false claim of size costs none.
#include "picture_io/tiff.h"

#include <algorithm>
#include <memory>

#include "base/bytes.h"
#include "base/problem.h"
#include "picture_io/row_geometry.h"
#include "picture_io/tiff_layout.h"
#include "picture_io/tiff_memory.h"

namespace vorel::picture_io {

namespace {

constexpr std::size_t kFirstGrowth = std::size_t{8} << 20;

ClipFormat FormatOf(const TiffLayout& layout) {
  ClipFormat format;
  format.pixelFormat = ChunkyPixelFormat(layout.isDeep, layout.hasAlpha);
  format.width = layout.width;
  format.height = layout.height;
  return format;
}

// A sample of the file and its place in a pixel of the picture, both counted in samples.
struct Channel {
  u32 from;
  u32 to;
  bool isAlpha;
};

std::vector<Channel> ChannelsOf(const TiffLayout& layout) {
  const bool isAlphaFirst = layout.isDeep && layout.hasAlpha;
  std::vector<Channel> channels;
  for (u32 i = 0; i < 3; ++i) channels.push_back({layout.isGrey ? 0 : i, isAlphaFirst ? i + 1 : i, false});
  if (layout.hasAlpha) channels.push_back({layout.samples - 1, isAlphaFirst ? 0u : 3u, true});
  return channels;
}

// `pixels` samples, at every fromStep-th place and to every toStep-th.
template <typename Sample>
void MoveSamples(const u8* from, u32 fromStep, u8* to, u32 toStep, u32 pixels, Sample flip) {
  for (std::size_t i = 0; i < pixels; ++i) {
    Sample sample = LoadNative<Sample>(from + i * fromStep * sizeof(Sample));
    if constexpr (sizeof(Sample) == 2) sample = SwapBytes(sample);
    StoreNative(to + i * toStep * sizeof(Sample), static_cast<Sample>(sample ^ flip));
  }
}

struct TiffReading {
  TIFF* tiff;
  const TiffMemory& memory;
  const std::string& name;
  TiffLayout layout;
  std::vector<Channel> channels;
  u32 fileSamples;     // that lie side by side: of a pixel, or 1 in planes
  u32 pictureSamples;  // of a pixel
  u32 sampleBytes;
};

[[noreturn]] void ThrowUnreadable(const TiffMemory& memory, const std::string& name) {
  throw Problem{"the TIFF file cannot be read: " + TiffMessage(memory), name,
                "the file is damaged or not complete"};
}

[[noreturn]] void ThrowUnreadable(const TiffReading& reading) {
  ThrowUnreadable(reading.memory, reading.name);
}

// A run of pixels of one plane, or of all samples, to the picture.
void PutPixels(const TiffReading& reading, u32 plane, const u8* from, u32 pixels, u8* to) {
  for (const Channel& channel : reading.channels) {
    if (reading.layout.isPlanar && channel.from != plane) continue;
    const u32 first = reading.layout.isPlanar ? 0 : channel.from;
    const bool isFlipped = reading.layout.isWhite0 && !channel.isAlpha;
    const u8* const source = from + first * reading.sampleBytes;
    u8* const target = to + channel.to * reading.sampleBytes;
    if (reading.layout.isDeep) {
      MoveSamples<u16>(source, reading.fileSamples, target, reading.pictureSamples, pixels,
                       isFlipped ? 0xFFFF : 0);
    } else {
      MoveSamples<u8>(source, reading.fileSamples, target, reading.pictureSamples, pixels,
                      isFlipped ? 0xFF : 0);
    }
  }
}

// Makes room for the rows before `end`.
void GrowTo(Picture& picture, std::size_t end) {
  const std::size_t whole = std::size_t{picture.rowBytes} * picture.height;
  const std::size_t needed = end * picture.rowBytes;
  if (picture.bytes.size() >= needed) return;
  picture.bytes.resize(std::min(whole, std::max({needed, kFirstGrowth, 2 * picture.bytes.size()})));
}

void ReadStrips(const TiffReading& reading, u32 plane, Picture& picture) {
  const std::size_t rowBytes = std::size_t{picture.width} * reading.fileSamples * reading.sampleBytes;
  if (TIFFScanlineSize(reading.tiff) != static_cast<tmsize_t>(rowBytes)) ThrowUnreadable(reading);
  std::vector<u8> row(rowBytes);
  for (u32 y = 0; y < picture.height; ++y) {
    if (TIFFReadScanline(reading.tiff, row.data(), y, static_cast<u16>(plane)) != 1) {
      ThrowUnreadable(reading);
    }
    GrowTo(picture, std::size_t{y} + 1);
    PutPixels(reading, plane, row.data(), picture.width,
              picture.bytes.data() + std::size_t{y} * picture.rowBytes);
  }
}

void ReadTiles(const TiffReading& reading, u32 plane, Picture& picture) {
  const u32 pixelBytes = reading.fileSamples * reading.sampleBytes;
  u32 tileWidth = 0;
  u32 tileHeight = 0;
  TIFFGetField(reading.tiff, TIFFTAG_TILEWIDTH, &tileWidth);
  TIFFGetField(reading.tiff, TIFFTAG_TILELENGTH, &tileHeight);
  const bool isSound =
      tileWidth > 0 && tileHeight > 0 && tileHeight <= kLargestTiffBlock / pixelBytes / tileWidth;
  const std::size_t tileBytes = isSound ? std::size_t{tileWidth} * tileHeight * pixelBytes : 0;
  if (!isSound || TIFFTileSize(reading.tiff) != static_cast<tmsize_t>(tileBytes)) {
    throw Problem{"tiles of " + std::to_string(tileWidth) + " x " + std::to_string(tileHeight) +
                      " pixels are not handled",
                  reading.name, ""};
  }
  const auto tile = std::make_unique_for_overwrite<u8[]>(tileBytes);
  for (u32 top = 0; top < picture.height; top += tileHeight) {
    const u32 rows = std::min(tileHeight, picture.height - top);
    for (u32 left = 0; left < picture.width; left += tileWidth) {
      const u32 pixels = std::min(tileWidth, picture.width - left);
      if (TIFFReadTile(reading.tiff, tile.get(), left, top, 0, static_cast<u16>(plane)) < 0) {
        ThrowUnreadable(reading);
      }
      GrowTo(picture, std::size_t{top} + rows);
      for (std::size_t y = 0; y < rows; ++y) {
        PutPixels(reading, plane, tile.get() + y * tileWidth * pixelBytes, pixels,
                  picture.bytes.data() + (top + y) * picture.rowBytes +
                      std::size_t{left} * reading.pictureSamples * reading.sampleBytes);
      }
    }
  }
}

TiffHandle OpenToRead(TiffMemory& memory, const std::string& name) {
  const StoredPicture& file = *memory.file;
  const bool isTiff = file.size() >= 4 && ((file[0] == 'I' && file[1] == 'I' && file[3] == 0) ||
                                           (file[0] == 'M' && file[1] == 'M' && file[2] == 0));
  if (!isTiff) throw Problem{"not a TIFF file: it does not begin like one", name, ""};
  TiffHandle tiff = OpenTiff(memory, "r");
  if (tiff == nullptr) ThrowUnreadable(memory, name);
  return tiff;
}

}  // namespace

PictureFileHeader DescribeTiff(const StoredPicture& file, const std::string& name) {
  TiffMemory memory{&file};
  const TiffHandle tiff = OpenToRead(memory, name);
  PictureFileHeader header;
  header.format = FormatOf(ReadTiffLayout(tiff.get(), name));
  u32 profileBytes = 0;
  void* profile = nullptr;
  if (TIFFGetField(tiff.get(), TIFFTAG_ICCPROFILE, &profileBytes, &profile) != 0) {
    header.unkept = "the colour profile";
  }
  if (TIFFLastDirectory(tiff.get()) == 0) {
    header.unkept += header.unkept.empty() ? "" : ", ";
    header.unkept += "the pictures behind the first in a file";
  }
  return header;
}

void ReadTiff(const StoredPicture& file, const std::string& name, Picture& picture) {
  TiffMemory memory{&file};
  const TiffHandle tiff = OpenToRead(memory, name);
  const TiffLayout layout = ReadTiffLayout(tiff.get(), name);
  const ClipFormat format = FormatOf(layout);
  picture.pixelFormat = format.pixelFormat;
  picture.width = format.width;
  picture.height = format.height;
  picture.rowBytes = RowsOf(format.pixelFormat, format.width).memoryBytes;
  const std::size_t whole = std::size_t{picture.rowBytes} * picture.height;
  if (picture.bytes.size() > whole) picture.bytes.resize(whole);
  const TiffReading reading = {.tiff = tiff.get(),
                               .memory = memory,
                               .name = name,
                               .layout = layout,
                               .channels = ChannelsOf(layout),
                               .fileSamples = layout.isPlanar ? 1 : layout.samples,
                               .pictureSamples = layout.hasAlpha ? 4u : 3u,
                               .sampleBytes = layout.isDeep ? 2u : 1u};
  const bool isTiled = TIFFIsTiled(tiff.get()) != 0;
  for (u32 plane = 0; plane < (layout.isPlanar ? layout.samples : 1); ++plane) {
    if (isTiled) {
      ReadTiles(reading, plane, picture);
    } else {
      ReadStrips(reading, plane, picture);
    }
  }
}

}  // namespace vorel::picture_io
