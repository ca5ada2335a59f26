// Any bytes as a frame of any format, decoded to any pixel format through the bounded entry: nothing outside the
// bytes is read, nothing outside the picture and the row buffer is written, and the outcome does not depend on what
// lies behind the bytes.
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <vector>

#include "base/bytes.h"
#include "vorel/vorel.h"

namespace {

using vorel::u32;
using vorel::u8;

// How a run of the decoder ended.
struct Outcome {
  u32 status;
  u32 word;
  u32 bit;
  std::vector<u8> picture;
  bool operator==(const Outcome&) const = default;
};

struct Request {
  u32 family;
  u32 pixelFormat;
  u32 width;
  u32 height;
  vorel::i32 rowBytes;
  u32 word;
  u32 bit;
  u32 flags;
  u32 standard;
};

Outcome Decode(const Request& request, const u8* frame, std::size_t readableBytes) {
  Outcome outcome = {0, request.word, request.bit, {}};
  const std::size_t rowLength = static_cast<std::size_t>(std::abs(request.rowBytes));
  outcome.picture.assign(rowLength * request.height, 0xEE);
  // Blocks of their own, so that a sanitizer sees every byte that does not belong.
  const std::unique_ptr<u8[]> scratch(new u8[VorelScratchBytes(request.width)]);
  outcome.status =
      VorelDecodeBounded(request.family, request.pixelFormat, request.width, request.height, request.rowBytes,
                         outcome.picture.data(), request.standard, &outcome.word, &outcome.bit, frame,
                         readableBytes, request.flags, scratch.get());
  return outcome;
}

// Takes the next number of the input, 0 behind its end.
u32 Take(const u8*& data, std::size_t& size) {
  if (size == 0) return 0;
  --size;
  return *data++;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* data, std::size_t size) {
  std::size_t formats = 0;
  const VorelPixelFormatInfo* const pixelFormats = VorelPixelFormatList(&formats);
  // As frames have them; 31 is a tag that there is not.
  constexpr char kTags[][5] = {"YbYr", "Ybyr", "BYRY",  "BYRy",  "C82p",    "C82i",    "CA2p", "CA2i",
                               " YBR", " yBR", "AYBR",  "AyBR",  " YbR",    " ybR",    "AYbR", "AybR",
                               "CA4p", "CA4i", " RGB",  " rGB",  "ARGB",    "ArGB",    "RGBX", "rGBX",
                               "ARGX", "ArGX", "YBR\n", "yBR\n", "\xA2YRY", "\xA2YRy", "none"};
  Request request{};
  const u32 choice = Take(data, size);
  request.family = choice % 9;
  request.flags = choice / 9;
  const u32 tag = Take(data, size) % static_cast<u32>(std::size(kTags));
  const u32 format = Take(data, size) % static_cast<u32>(formats + 1);
  // One format that there is not.
  const VorelPixelFormatInfo& pixelFormat = pixelFormats[format == formats ? 0 : format];
  request.pixelFormat = format == formats ? vorel::FourCharacterCode("none") : pixelFormat.code;
  request.standard = tag % 5;
  // Mostly small, now and then wide enough for every way through the decoder.
  const u32 low = Take(data, size);
  const u32 high = Take(data, size);
  request.width = 1 + low + (high >= 224 ? 512 * (high - 223) : 0);
  request.height = 1 + Take(data, size) % 40;
  const u32 shape = Take(data, size);
  request.rowBytes =
      static_cast<vorel::i32>(VorelAlignedRowBytes(pixelFormat.code, request.width) + shape % 4 * 4);
  if ((shape & 4) != 0) request.rowBytes = -request.rowBytes;
  const u32 shift = shape >> 3 & 3;  // of the frame's address
  request.word = (shape & 32) != 0 ? Take(data, size) : 5;
  request.bit = (shape & 64) != 0 ? Take(data, size) : 0;

  // A header that is right as often as not, so that the rows are reached.
  std::vector<u8> header(VOREL_FRAME_HEADER_BYTES);
  std::memcpy(header.data(), "Vorl\r\n\0\n\xFFTamrick", 16);
  std::memcpy(header.data() + 16, kTags[tag], 4);
  if ((shape & 128) != 0) header.clear();

  // The frame at the very end of a block, so that a byte too far is outside.
  const std::size_t length = header.size() + size;
  const std::unique_ptr<u8[]> block(new u8[shift + length]);
  if (!header.empty()) std::memcpy(block.get() + shift, header.data(), header.size());
  if (size > 0) std::memcpy(block.get() + shift + header.size(), data, size);
  const Outcome bounded = Decode(request, block.get() + shift, length);

  // The same bytes with others behind them.
  std::vector<u8> longer(shift + length + 64, 0xDB);
  std::memcpy(longer.data() + shift, block.get() + shift, length);
  if (!(bounded == Decode(request, longer.data() + shift, length))) std::abort();
  if (bounded.bit > 31 && bounded.status < VOREL_NO_ROUTINE) std::abort();
  return 0;
}
