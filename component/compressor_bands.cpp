// The way of one picture through a compressor. A band is always a whole picture.
#include <algorithm>
#include <cstring>

#include "base/bytes.h"
#include "component/compression_plan.h"
#include "component/family_dispatch.h"
#include "component/frame_record.h"
#include "component/host_errors.h"
#include "component/pixel_map.h"
#include "component/selectors.h"
#include "component/self_check.h"
#include "component/work_memory.h"
#include "vorel/pixel_formats.h"

namespace vorel::component {

namespace {

constexpr OSType kSpace = FourCharacterCode("cspc");
constexpr OSType kColour = FourCharacterCode("colr");
constexpr OSType kGamma = FourCharacterCode("gama");
constexpr OSType kBits = FourCharacterCode("sgbt");

// A picture as its map has it.
struct SourcePicture {
  u32 width;
  u32 height;
  i32 rowBytes;
  const u8* base;
  u32 pixelFormat;
};

std::optional<u8> FirstByte(ImageDescriptionHandle description, OSType type) {
  OSErr error = noErr;
  const auto extension = ReadExtension(description, type, error);
  if (!extension || extension->size < 1) return std::nullopt;
  return extension->bytes[0];
}

bool HasExtension(ImageDescriptionHandle description, OSType type) {
  OSErr error = noErr;
  return ReadExtension(description, type, error).has_value();
}

SourceFacts FactsOf(const Compressor& instance, const CodecCompressParams& parameters) {
  const ImageDescriptionHandle description = parameters.imageDescription;
  SourceFacts facts = {};
  facts.family = instance.row->family;
  facts.subtype = instance.subtype;
  facts.hostFormat = HostPixelFormat(parameters.srcPixMap);
  facts.depth = static_cast<u16>(parameters.srcPixMap.pixelSize);
  facts.hasAlpha = (*description)->depth == kDepthWithAlpha;
  facts.settings = instance.settings;
  facts.previousTag = instance.tag;
  facts.rangeExtension = FirstByte(description, FourCharacterCode("Rnge"));
  facts.fieldsExtension = FirstByte(description, FourCharacterCode("fiel"));
  facts.hasColourExtension = HasExtension(description, kColour);
  facts.colour = ReadColour(description);
  facts.significantBits = FirstByte(description, kBits);
  return facts;
}

// The extensions as they stand before any refusal.
OSErr WriteDescription(Compressor& instance, CodecCompressParams& parameters, const CompressionPlan& plan) {
  const ImageDescriptionHandle description = parameters.imageDescription;
  if (const OSErr error = ReplaceExtension32(description, kSpace, plan.pixelFormat); error != noErr)
    return error;
  if (plan.newColour) ReplaceColour(description, *plan.newColour);
  if (!HasExtension(description, kColour)) {
    const Fixed gamma = Host->QTGetPixMapPtrGammaLevel(&parameters.srcPixMap);
    if (const OSErr error = ReplaceExtension32(description, kGamma, static_cast<u32>(gamma)); error != noErr)
      return error;
  }
  u32 oldTag = 0;
  const OSErr found = ReadTag(description, oldTag);
  if (found != noErr && found != codecExtensionNotFoundErr) return found;
  if (plan.keepsAlpha && VorelHasAlpha(plan.pixelFormat) != 0) parameters.srcPixMap.cmpCount = 4;
  if (const OSErr error =
          WriteName(instance.self, **description, FormatNamesId(*instance.row), plan.nameIndex);
      error != noErr)
    return error;
  return ReplaceTag(description, plan.tag);
}

// What is settled with the first picture of a sequence and stands for those behind it.
OSErr BeginSequence(Compressor& instance, CodecCompressParams& parameters) {
  const CompressionPlan plan = PlanCompression(FactsOf(instance, parameters));
  instance.settings = plan.settings;
  instance.tag = plan.tag;
  if (const OSErr error = WriteDescription(instance, parameters, plan); error != noErr) return error;
  if (plan.refusedSubtype != noErr) return plan.refusedSubtype;
  if (instance.row->family != VOREL_GENERIC) (*parameters.imageDescription)->cType = plan.subtype;
  if (plan.refusedBits != noErr) return plan.refusedBits;
  return ReplaceExtension(parameters.imageDescription, kBits, &plan.significantBits, 1);
}

SourcePicture ReadPicture(const Compressor& instance, CodecCompressParams& parameters) {
  const PixMap& map = parameters.srcPixMap;
  const PictureSize size = SizeOf(map.bounds);
  return {static_cast<u32>(std::max(size.width, 0)), static_cast<u32>(std::max(size.height, 0)),
          Host->QTGetPixMapPtrRowBytes(&parameters.srcPixMap), map.baseAddr,
          SourceFormat(HostPixelFormat(map), static_cast<u16>(map.pixelSize), instance.settings.rgbRange)};
}

bool IsRowTooShort(const SourcePicture& picture) {
  const u32 rowBytes =
      picture.rowBytes < 0 ? 0u - static_cast<u32>(picture.rowBytes) : static_cast<u32>(picture.rowBytes);
  return picture.pixelFormat == FourCharacterCode("v210") &&
         rowBytes < (((picture.width + 1) & ~u32{1}) * 2 + 2) / 3 * 4;
}

// Room for a frame: the caller's if the worst case fits there, else memory of the instance.
u32* FrameRoom(Compressor& instance, const CodecCompressParams& parameters, u32 worstBytes) {
  if (parameters.bufferSize > 0 && static_cast<u32>(parameters.bufferSize) >= worstBytes)
    return reinterpret_cast<u32*>(parameters.data);
  return GrowMemory(instance.frame, worstBytes) ? reinterpret_cast<u32*>(instance.frame.bytes) : nullptr;
}

OSErr CompressPicture(Compressor& instance, CodecCompressParams& parameters, const SourcePicture& picture) {
  // A picture of no tag has no bound; its encode is refused before anything is written.
  const u32 bound = VorelMaxFrameBytes(instance.tag, picture.width, picture.height);
  const u32 worstBytes = bound + VOREL_FRAME_HEADER_BYTES;
  u32* const frame = FrameRoom(instance, parameters, worstBytes);
  if (frame == nullptr) return memFullErr;
  const bool hasAlpha = (*parameters.imageDescription)->depth == kDepthWithAlpha;
  const bool isInterlaced = instance.settings.scan == kScanInterlaced;
  const u32 formatChoice =
      (hasAlpha ? u32{VOREL_KEEP_ALPHA} : 0) | (isInterlaced ? u32{VOREL_INTERLACED} : 0);
  // The room is made for the tag of the sequence: a picture that would get another one has no place here.
  if (VorelChooseFormatTag(instance.row->family, picture.pixelFormat, formatChoice) != instance.tag)
    return codecConditionErr;
  const u32 flags = instance.host.hostIsOldAfterEffects ? u32{VOREL_LITTLE_ENDIAN_B64A} : 0;
  u32 wordCursor = 0;
  u32 bitCursor = 0;
  const VorelStatus status = EncodePicture(
      instance.row->family, picture.pixelFormat, formatChoice, picture.width, picture.height,
      picture.rowBytes, picture.base, instance.settings.videoStandard, &wordCursor, &bitCursor, frame, flags);
  if (status != VOREL_COMPLETE) return codecConditionErr;
  if (instance.settings.mode != kModeOneWay) {
    const CheckedFrame checked = {HostPixelFormat(parameters.srcPixMap),
                                  picture.pixelFormat,
                                  formatChoice,
                                  picture.width,
                                  picture.height,
                                  picture.rowBytes,
                                  picture.base,
                                  instance.settings.videoStandard,
                                  frame,
                                  wordCursor,
                                  bitCursor,
                                  flags};
    if (const OSErr error = CheckFrame(instance, checked); error != noErr) return error;
  }
  const u64 recordedBytes = (u64{wordCursor} * 32 + 7 + bitCursor) / 8;
  if (recordedBytes > worstBytes) return memFullErr;
  ClearFrameTail(reinterpret_cast<u8*>(frame), wordCursor, static_cast<u32>(recordedBytes));
  if (reinterpret_cast<Ptr>(frame) != parameters.data) {
    if (parameters.bufferSize > 0 && recordedBytes > static_cast<u32>(parameters.bufferSize))
      return memFullErr;
    std::memcpy(parameters.data, frame, recordedBytes);
  }
  (*parameters.imageDescription)->dataSize = static_cast<i32>(recordedBytes);
  return noErr;
}

}  // namespace

ComponentResult BandCompress(Compressor* instance, CodecCompressParams* parameters) {
  if (instance == nullptr || parameters == nullptr || parameters->imageDescription == nullptr ||
      *parameters->imageDescription == nullptr || parameters->data == nullptr ||
      parameters->srcPixMap.baseAddr == nullptr) {
    return paramErr;
  }
  instance->busy = 1;
  constexpr i32 kBeginning = kConditionFirstBand | kConditionFirstFrame;
  if ((parameters->conditionFlags & kBeginning) == kBeginning) {
    if (const OSErr error = BeginSequence(*instance, *parameters); error != noErr) return error;
  }
  const SourcePicture picture = ReadPicture(*instance, *parameters);
  if (IsRowTooShort(picture)) return internalQuickTimeError;
  if (const OSErr error = CompressPicture(*instance, *parameters, picture); error != noErr) return error;
  if ((parameters->conditionFlags & kConditionLastBand) != 0) ++instance->frames;
  instance->busy = 0;
  return noErr;
}

}  // namespace vorel::component
