// Sound descriptions of versions 0, 1 and 2, as far as the size of their packets.
#include "container/sound_packets.h"

#include "base/bytes.h"

namespace vorel::container {

namespace {

// Formats whose packets are the same everywhere: bytes per channel and samples of one packet. Bytes of 0: as
// the description's sample size says.
struct SoundFormat {
  u32 code;
  u32 bytes;
  u32 samples;
};

constexpr SoundFormat kSoundFormats[] = {
    {FourCharacterCode("raw "), 0, 1}, {FourCharacterCode("NONE"), 0, 1},   {FourCharacterCode("twos"), 0, 1},
    {FourCharacterCode("sowt"), 0, 1}, {FourCharacterCode("in24"), 3, 1},   {FourCharacterCode("in32"), 4, 1},
    {FourCharacterCode("fl32"), 4, 1}, {FourCharacterCode("fl64"), 8, 1},   {FourCharacterCode("ulaw"), 1, 1},
    {FourCharacterCode("alaw"), 1, 1}, {FourCharacterCode("ima4"), 34, 64}, {FourCharacterCode("MAC3"), 2, 6},
    {FourCharacterCode("MAC6"), 1, 6},
};

std::optional<ImpliedSampleSize> PacketSize(const AtomView& description) {
  FieldReader fields = ReadFields(description);
  SkipBytes(fields, 8);  // reserved, data reference
  const u32 version = Read16(fields);
  SkipBytes(fields, 6);  // revision, vendor
  const u32 channels = Read16(fields);
  const u32 bits = Read16(fields);
  SkipBytes(fields, 8);  // compression, packet size, sample rate
  if (version == 1) {
    const u32 samplesPerPacket = Read32(fields);
    SkipBytes(fields, 4);  // bytes of one channel's packet
    const u32 bytesPerPacket = Read32(fields);
    if (samplesPerPacket != 0 && bytesPerPacket != 0)
      return ImpliedSampleSize{bytesPerPacket, samplesPerPacket};
  }
  if (version == 2) {
    SkipBytes(fields, 28);  // size, rate, channels, constant, bits, flags
    const u32 bytesPerPacket = Read32(fields);
    const u32 samplesPerPacket = Read32(fields);
    if (samplesPerPacket == 0 || bytesPerPacket == 0) return std::nullopt;
    return ImpliedSampleSize{bytesPerPacket, samplesPerPacket};
  }
  for (const SoundFormat& format : kSoundFormats) {
    if (format.code != description.type) continue;
    const u32 bytes = (format.bytes != 0 ? format.bytes : (bits + 7) / 8) * channels;
    if (bytes != 0) return ImpliedSampleSize{bytes, format.samples};
  }
  return std::nullopt;
}

}  // namespace

std::optional<ImpliedSampleSize> SoundPacketSize(const std::vector<AtomView>& descriptions) {
  std::optional<ImpliedSampleSize> common;
  for (const AtomView& description : descriptions) {
    const std::optional<ImpliedSampleSize> size = PacketSize(description);
    if (!size) return std::nullopt;
    if (common && (common->bytes != size->bytes || common->samples != size->samples)) return std::nullopt;
    common = size;
  }
  return common;
}

}  // namespace vorel::container
