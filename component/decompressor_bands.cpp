// The way of one frame through a decompressor. A band is always a whole frame.
#include <algorithm>
#include <cstring>

#include "base/bytes.h"
#include "component/decompressor.h"
#include "component/host_errors.h"
#include "component/image_extensions.h"
#include "component/pixel_map.h"
#include "component/selectors.h"
#include "vorel/pixel_formats.h"

namespace vorel::component {

namespace {

constexpr u32 kV210 = FourCharacterCode("v210");
constexpr u32 kOtherV210 =
    FourCharacterCode("V210");  // the host's second name, which normalising leaves alone

// Pixel formats that frames decode to, besides the ones that they decode to on a table of its own.
constexpr u32 kTargets[] = {24,
                            32,
                            FourCharacterCode("24BG"),
                            FourCharacterCode("ABGR"),
                            FourCharacterCode("RGBA"),
                            FourCharacterCode("BGRA"),
                            FourCharacterCode("VRGB"),
                            FourCharacterCode("b64a"),
                            FourCharacterCode("L64A"),
                            FourCharacterCode("A46L"),
                            FourCharacterCode("F10k"),
                            FourCharacterCode("S10k"),
                            FourCharacterCode("F210"),
                            FourCharacterCode("S210"),
                            FourCharacterCode("R10k"),
                            FourCharacterCode("r210"),
                            FourCharacterCode("V416"),
                            FourCharacterCode("v410"),
                            FourCharacterCode("v408"),
                            FourCharacterCode("VUYA"),
                            FourCharacterCode("r408"),
                            kV210,
                            FourCharacterCode("v216"),
                            FourCharacterCode("Y216"),
                            FourCharacterCode("2vuy"),
                            FourCharacterCode("yuvs")};
constexpr u32 kTargetsOfRgb[] = {FourCharacterCode("b48r"), FourCharacterCode("L555"),
                                 FourCharacterCode("L565")};
constexpr u32 kYuvu = FourCharacterCode("yuvu");

template <std::size_t Count>
bool Holds(const u32 (&list)[Count], u32 pixelFormat) {
  return std::find(std::begin(list), std::end(list), pixelFormat) != std::end(list);
}

bool IsTarget(u32 tag, u32 pixelFormat) {
  switch (VorelSubtypeOfTag(tag)) {
    case 0:
      return false;
    case FourCharacterCode("Vrl4"):
      return pixelFormat == kYuvu;
    case FourCharacterCode("Vrl1"):
    case FourCharacterCode("Vrl7"):
      return Holds(kTargets, pixelFormat) || Holds(kTargetsOfRgb, pixelFormat);
    default:
      return Holds(kTargets, pixelFormat);
  }
}

// By the spelling: tags of frames with alpha, and no others, begin with one of these.
bool TagHasAlpha(u32 tag) {
  u8 letters[4];
  StoreLittle32(letters, tag);
  return letters[0] == 'A' || letters[0] == 'C';
}

u32 TargetFormat(const Decompressor* instance, const PixMap& map) {
  const u32 format = VorelNormalizePixelFormat(static_cast<u16>(map.pixelSize), HostPixelFormat(map), 0, 0, 0,
                                               instance->rgbRange);
  return format == kOtherV210 ? kV210 : format;
}

void ForgetCopy(FrameRecord* frame) {
  if (frame->dataCopy != nullptr) Host->Free(frame->dataCopy);
  frame->dataCopy = nullptr;
}

// Pulls a frame through the host's procedure. It may say that the file has ended once all of it is there.
OSErr PullFrame(const CodecDecompressParams* parameters, const ICMDataProcRecord& procedure,
                FrameRecord* frame) {
  const i32 size = (*parameters->imageDescription)->dataSize;
  if (size <= 0) return paramErr;
  frame->dataCopy = static_cast<u8*>(Host->Allocate(static_cast<std::size_t>(size)));
  if (frame->dataCopy == nullptr) return memFullErr;
  Ptr piece = parameters->data;
  const i32 most = parameters->bufferSize > 0 ? parameters->bufferSize : size;
  for (i32 done = 0; done < size;) {
    const i32 wanted = std::min(most, size - done);
    const OSErr error = procedure.dataProc(&piece, wanted, procedure.dataRefCon);
    const bool isLast = done + wanted == size;
    if (error != noErr && !(error == eofErr && isLast)) return error;
    if (piece == nullptr) return paramErr;
    std::memcpy(frame->dataCopy + done, piece, static_cast<std::size_t>(wanted));
    piece += wanted;
    done += wanted;
  }
  frame->dataBytes = static_cast<u32>(size);
  return noErr;
}

OSErr LendScratch(Decompressor* instance, FrameRecord* frame, u32 tag, const PixMap& map) {
  const u32 rowOfPixels = (frame->width + 4) * (static_cast<u16>(map.pixelSize) / 8u);
  const u32 need = std::max(rowOfPixels, VorelRowStoreBytes(tag, frame->width));
  if (need <= kInlineStoreBytes) {
    frame->scratch = AlignScratch(frame->inlineStore);
    return noErr;
  }
  if (need > instance->pool.blockSize) return codecConditionErr;
  frame->block = LendBlock(instance->pool);
  if (frame->block < 0) return codecNoMemoryPleaseWaitErr;
  frame->scratch = AlignScratch(instance->pool.blocks[static_cast<std::size_t>(frame->block)]);
  return noErr;
}

// All that a band needs, its data at hand.
OSErr PrepareFrame(Decompressor* instance, CodecDecompressParams* parameters, FrameRecord* frame,
                   const u8* data) {
  const ImageDescription& description = **parameters->imageDescription;
  frame->height = static_cast<u16>(description.height);
  frame->width = static_cast<u16>(description.width);
  frame->pixelFormat = TargetFormat(instance, parameters->dstPixMap);
  if (const OSErr error = ReadTag(parameters->imageDescription, frame->tag); error != noErr) return error;
  if (VorelHasFrameSignature(instance->family, data, frame->dataBytes) == 0) return readErr;
  // The frame goes before its description, which need not agree with it.
  constexpr std::size_t kTagOffset = 16;
  const u32 tag = VorelNormalizeFormatTag(LoadLittle32(data + kTagOffset));
  if (!IsTarget(tag, frame->pixelFormat)) return codecConditionErr;
  if (const OSErr error = LendScratch(instance, frame, tag, parameters->dstPixMap); error != noErr)
    return error;
  if (TagHasAlpha(tag) && VorelHasAlpha(frame->pixelFormat) != 0) parameters->dstPixMap.cmpCount = 4;
  return noErr;
}

// Whatever the record held before is of another frame: EndBand may come for any record that was begun, and
// DrawBand finds nothing to do in one that was not prepared.
void HoldNothing(FrameRecord* frame) {
  frame->tag = 0;
  frame->height = 0;
  frame->width = 0;
  frame->pixelFormat = 0;
  frame->wordCursor = VOREL_FRAME_HEADER_WORDS;
  frame->bitCursor = 0;
  frame->block = -1;
  frame->scratch = nullptr;
  frame->dataCopy = nullptr;
  frame->dataBytes = 0;
}

// Bytes from the frame's start that the host lends; without a procedure all of them are in memory.
u32 LentBytes(const CodecDecompressParams* parameters) {
  const i32 size =
      parameters->bufferSize > 0 ? parameters->bufferSize : (*parameters->imageDescription)->dataSize;
  return size > 0 ? static_cast<u32>(size) : 0;
}

// Bytes of the frame up to the last bit that was read. The cursors count from the aligned word in which the frame
// begins.
u64 UsedBytes(const FrameRecord& frame, const u8* data) {
  const u64 leading = reinterpret_cast<std::uintptr_t>(data) % 4;
  return u64{frame.wordCursor - VOREL_FRAME_HEADER_WORDS} * 4 + (frame.bitCursor + 7) / 8 - leading;
}

}  // namespace

ComponentResult BeginBand(Decompressor* instance, CodecDecompressParams* parameters,
                          ImageSubCodecDecompressRecord* record, i32 /* flags */) {
  if (record == nullptr || record->userDecompressRecord == nullptr) return paramErr;
  auto* const frame = static_cast<FrameRecord*>(record->userDecompressRecord);
  HoldNothing(frame);
  if (instance == nullptr || parameters == nullptr || parameters->imageDescription == nullptr ||
      *parameters->imageDescription == nullptr) {
    return paramErr;
  }
  constexpr u8 kKeyFrame = 1;
  record->frameType = kKeyFrame;
  frame->dataBytes = LentBytes(parameters);
  OSErr error = noErr;
  const ICMDataProcRecord& procedure = record->dataProcRecord;
  if (procedure.dataProc != nullptr) error = PullFrame(parameters, procedure, frame);
  if (error == noErr && (parameters->conditionFlags & kConditionFirstBand) != 0) {
    const u8* const data = frame->dataCopy != nullptr ? frame->dataCopy : record->codecData;
    error = data == nullptr ? paramErr : PrepareFrame(instance, parameters, frame, data);
  }
  if (error != noErr) ForgetCopy(frame);
  return error;
}

ComponentResult DrawBand(Decompressor* instance, ImageSubCodecDecompressRecord* record) {
  if (instance == nullptr || record == nullptr || record->codecData == nullptr ||
      record->baseAddr == nullptr || record->userDecompressRecord == nullptr) {
    return codecConditionErr;
  }
  auto* const frame = static_cast<FrameRecord*>(record->userDecompressRecord);
  const u8* const data = frame->dataCopy != nullptr ? frame->dataCopy : record->codecData;
  const u32 rowBytes =
      record->rowBytes < 0 ? 0u - static_cast<u32>(record->rowBytes) : static_cast<u32>(record->rowBytes);
  if (frame->pixelFormat == kV210 && rowBytes < ((frame->width + 1) / 2 * 4 + 2) / 3 * 4)
    return internalQuickTimeError;
  const u32 flags = instance->host.hostIsOldAfterEffects ? u32{VOREL_LITTLE_ENDIAN_B64A} : 0;
  const VorelStatus status =
      VorelDecodeBounded(instance->family, frame->pixelFormat, frame->width, frame->height, record->rowBytes,
                         record->baseAddr, instance->colourStandard, &frame->wordCursor, &frame->bitCursor,
                         data, frame->dataBytes, flags, frame->scratch);
  if (status != VOREL_COMPLETE) return codecConditionErr;
  // A frame that is cut short decodes to its end all the same, from zeros.
  return UsedBytes(*frame, data) <= frame->dataBytes ? noErr : codecConditionErr;
}

ComponentResult EndBand(Decompressor* instance, ImageSubCodecDecompressRecord* record, OSErr result,
                        i32 /* flags */) {
  if (instance == nullptr || record == nullptr || record->userDecompressRecord == nullptr) return paramErr;
  auto* const frame = static_cast<FrameRecord*>(record->userDecompressRecord);
  if (result == noErr) ++instance->framesDecoded;
  ForgetCopy(frame);
  if (frame->block >= 0) ReturnBlock(instance->pool, frame->block);
  frame->block = -1;
  frame->scratch = nullptr;
  return noErr;
}

}  // namespace vorel::component
