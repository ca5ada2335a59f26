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

OSErr ReadFacts(ImageDescriptionHandle description, SourceFacts& facts) {
  struct {
    OSType type;
    std::optional<u8>& byte;
  } const rows[] = {{FourCharacterCode("Rnge"), facts.rangeExtension},
                    {FourCharacterCode("fiel"), facts.fieldsExtension},
                    {kBits, facts.significantBits}};
  for (const auto& row : rows) {
    if (const OSErr error = ReadFirstByte(description, row.type, row.byte); error != noErr) return error;
  }
  OSErr error = noErr;
  facts.colour = ReadColour(description, error);
  facts.hasColourExtension = error == noErr;
  return error == codecExtensionNotFoundErr ? noErr : error;
}

OSErr FactsOf(const Compressor& instance, const CodecCompressParams& parameters, SourceFacts& facts) {
  const ImageDescriptionHandle description = parameters.imageDescription;
  facts.family = instance.row->family;
  facts.subtype = instance.subtype;
  facts.hostFormat = HostPixelFormat(parameters.srcPixMap);
  facts.depth = static_cast<u16>(parameters.srcPixMap.pixelSize);
  facts.hasAlpha = (*description)->depth == kDepthWithAlpha;
  facts.settings = instance.settings;
  facts.previousTag = instance.tag;
  return ReadFacts(description, facts);
}

// A colour extension, or where none can be made the gamma in its place.
OSErr WriteColour(CodecCompressParams& parameters, const CompressionPlan& plan) {
  if (!plan.newColour) return noErr;
  const ImageDescriptionHandle description = parameters.imageDescription;
  if (ReplaceColour(description, *plan.newColour) == noErr) return noErr;
  const Fixed gamma = Host->QTGetPixMapPtrGammaLevel(&parameters.srcPixMap);
  return ReplaceExtension32(description, kGamma, static_cast<u32>(gamma));
}

// The extensions as they stand before any refusal.
OSErr WriteDescription(Compressor& instance, CodecCompressParams& parameters, const CompressionPlan& plan) {
  const ImageDescriptionHandle description = parameters.imageDescription;
  if (const OSErr error = ReplaceExtension32(description, kSpace, plan.pixelFormat); error != noErr)
    return error;
  if (const OSErr error = WriteColour(parameters, plan); error != noErr) return error;
  u32 oldTag = 0;
  const OSErr found = ReadTag(description, oldTag);
  if (found != noErr && found != codecExtensionNotFoundErr) return found;
  if (plan.keepsAlpha && VorelHasAlpha(plan.pixelFormat) != 0) parameters.srcPixMap.cmpCount = 4;
  if (const OSErr error = WriteName(instance.self, description, FormatNamesId(*instance.row), plan.nameIndex);
      error != noErr)
    return error;
  return ReplaceTag(description, plan.tag);
}

// What is settled with the first picture of a sequence and stands for those behind it.
OSErr BeginSequence(Compressor& instance, CodecCompressParams& parameters) {
  SourceFacts facts = {};
  if (const OSErr error = FactsOf(instance, parameters, facts); error != noErr) return error;
  const CompressionPlan plan = PlanCompression(facts);
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

// Room for a frame: the caller's if all that is written and read there fits, else memory of the instance.
u32* FrameRoom(Compressor& instance, const CodecCompressParams& parameters, std::size_t bytes) {
  if (parameters.bufferSize > 0 && static_cast<u32>(parameters.bufferSize) >= bytes)
    return reinterpret_cast<u32*>(parameters.data);
  return GrowMemory(instance.frame, bytes) ? reinterpret_cast<u32*>(instance.frame.bytes) : nullptr;
}

// Encodes a picture and proves the frame if that is asked for. The frame's fields are the encoder's to set.
OSErr MakeFrame(Compressor& instance, const SourcePicture& picture, u32* words, CheckedFrame& frame) {
  const VorelStatus status =
      EncodePicture(instance.row->family, picture.pixelFormat, frame.formatChoice, picture.width,
                    picture.height, picture.rowBytes, picture.base, frame.colourStandard, &frame.wordCursor,
                    &frame.bitCursor, words, frame.flags);
  if (status != VOREL_COMPLETE) return codecConditionErr;
  return instance.settings.mode == kModeOneWay ? noErr : CheckFrame(instance, frame);
}

// What the encoder is told beside the picture.
u32 FormatChoice(const Compressor& instance, const CodecCompressParams& parameters) {
  const bool hasAlpha = (*parameters.imageDescription)->depth == kDepthWithAlpha;
  const bool isInterlaced = instance.settings.scan == kScanInterlaced;
  return (hasAlpha ? u32{VOREL_KEEP_ALPHA} : 0) | (isInterlaced ? u32{VOREL_INTERLACED} : 0);
}

// Hands a frame to the caller. Nothing is stored there if it doesn't fit.
OSErr DeliverFrame(CodecCompressParams& parameters, u8* frame, u32 wordCursor, u32 recordedBytes) {
  ClearFrameTail(frame, wordCursor, recordedBytes);
  if (frame != parameters.data) {
    const bool isRoomKnown = parameters.bufferSize > 0;
    if (isRoomKnown && recordedBytes > static_cast<u32>(parameters.bufferSize)) return memFullErr;
    std::memcpy(parameters.data, frame, recordedBytes);
  }
  (*parameters.imageDescription)->dataSize = static_cast<i32>(recordedBytes);
  return noErr;
}

OSErr CompressPicture(Compressor& instance, CodecCompressParams& parameters, const SourcePicture& picture) {
  // The room is made for the tag of the sequence: a picture that would get another one has no place here.
  const u32 formatChoice = FormatChoice(instance, parameters);
  const u32 tag = VorelChooseFormatTag(instance.row->family, picture.pixelFormat, formatChoice);
  if (tag == 0 || tag != instance.tag) return codecConditionErr;
  const u32 bound = VorelMaxFrameBytes(tag, picture.width, picture.height);
  const u32 worstBytes = bound + VOREL_FRAME_HEADER_BYTES;
  const bool isChecked = instance.settings.mode != kModeOneWay;
  u32* const words =
      FrameRoom(instance, parameters, isChecked ? ReadableFrameBytes(bound, picture.width) : worstBytes);
  if (words == nullptr) return memFullErr;
  CheckedFrame frame = {HostPixelFormat(parameters.srcPixMap),
                        picture.pixelFormat,
                        formatChoice,
                        picture.width,
                        picture.height,
                        picture.rowBytes,
                        picture.base,
                        instance.settings.videoStandard,
                        words,
                        0,
                        0,
                        instance.host.hostIsOldAfterEffects ? u32{VOREL_LITTLE_ENDIAN_B64A} : 0};
  if (const OSErr error = MakeFrame(instance, picture, words, frame); error != noErr) return error;
  const u64 recordedBytes = (u64{frame.wordCursor} * 32 + 7 + frame.bitCursor) / 8;
  if (recordedBytes > worstBytes) return memFullErr;
  return DeliverFrame(parameters, reinterpret_cast<u8*>(words), frame.wordCursor,
                      static_cast<u32>(recordedBytes));
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
