#include "component/transcoder.h"

#include <algorithm>
#include <cstring>

#include "base/bytes.h"
#include "component/compression_plan.h"
#include "component/frame_record.h"
#include "component/host_errors.h"
#include "component/work_memory.h"
#include "vorel/frame_routines.h"
#include "vorel/pixel_formats.h"

namespace vorel::component {

using EncodeRoutine = decltype(VorelYCbCr10bv444pFromv410Encode);
using ProgressiveRoutine = decltype(VorelYCbCr10bv444pTov410Decode);
using InterlacedRoutine = decltype(VorelYCbCr10bv444iTov410Decode);

// One pixel format, with or without alpha, and the routines of its frames in both scans.
struct TranscodedFormat {
  u32 pixelFormat;
  bool hasAlpha;
  VorelFamily family;
  u32 tags[2];  // progressive, interlaced
  EncodeRoutine* encode[2];
  ProgressiveRoutine* decodeProgressive;
  InterlacedRoutine* decodeInterlaced;
};

namespace {

#define VOREL_TRANSCODED(CODE, ALPHA, FAMILY, LAYOUT, PIXEL, P, I)                  \
  {                                                                                 \
    FourCharacterCode(CODE), ALPHA, FAMILY, {WordOfBytes(P), WordOfBytes(I)},       \
        {Vorel##LAYOUT##pFrom##PIXEL##Encode, Vorel##LAYOUT##iFrom##PIXEL##Encode}, \
        Vorel##LAYOUT##pTo##PIXEL##Decode, Vorel##LAYOUT##iTo##PIXEL##Decode        \
  }
const TranscodedFormat kFormats[] = {
    VOREL_TRANSCODED("v410", false, VOREL_YCBCR_10BV_444, YCbCr10bv444, v410, "YBR\n", "yBR\n"),
    VOREL_TRANSCODED("v408", false, VOREL_YCBCR_8B_444, YCbCr8bv444, _v408, " YBR", " yBR"),
    VOREL_TRANSCODED("v408", true, VOREL_YCBCR_8B_444, YCbCrA8bv4444, Av408, "AYBR", "AyBR"),
    VOREL_TRANSCODED("r408", false, VOREL_YCBCR_8B_444, YCbCr8bu444, _r408, " YbR", " ybR"),
    VOREL_TRANSCODED("r408", true, VOREL_YCBCR_8B_444, YCbCrA8bu4444, Ar408, "AYbR", "AybR"),
    VOREL_TRANSCODED("v210", false, VOREL_YCBCR_10BV_422, YCbCr10bv422, v210, "\xA2YRY", "\xA2YRy"),
    VOREL_TRANSCODED("v216", false, VOREL_YCBCR_10BV_422, YCbCr10bv422, v216, "\xA2YRY", "\xA2YRy"),
    VOREL_TRANSCODED("Y216", false, VOREL_YCBCR_10BV_422, YCbCr10bv422, Y216, "\xA2YRY", "\xA2YRy"),
    VOREL_TRANSCODED("2vuy", false, VOREL_YCBCR_8BV_422, YCbCr8bv422, 2vuy, "BYRY", "BYRy"),
    VOREL_TRANSCODED("yuvs", false, VOREL_YCBCR_8BV_422, YCbCr8bv422, yuvs, "BYRY", "BYRy"),
    VOREL_TRANSCODED("yuvu", false, VOREL_YCBCR_8BW_422, YCbCr8bw422, yuvu, "YbYr", "Ybyr"),
};
#undef VOREL_TRANSCODED

// The format of the instance's samples, if it is one of this transcoder.
const TranscodedFormat* FindFormat(const Transcoder& instance) {
  for (const TranscodedFormat& format : kFormats) {
    if (format.pixelFormat == instance.pixelFormat && format.family == instance.row->family &&
        format.hasAlpha == instance.keepsAlpha) {
      return &format;
    }
  }
  return nullptr;
}

// The two words of tags are counted from 1, though fields are: one field takes the interlaced tag, and two
// fields find nothing. So it stands, and frames of record were made so; 4:4:4 of 8 bits alone counts right.
u32 TagOfFields(const TranscodedFormat& format, u32 fields) {
  if (format.family == VOREL_YCBCR_8B_444) return format.tags[fields == 2 ? 1 : 0];
  return fields == 1 ? format.tags[1] : 0;
}

OSErr ReadFields(ImageDescriptionHandle description, u32& fields) {
  i32 said = 0;
  if (Host->Gestalt(FourCharacterCode("Scan"), &said) == noErr && said != 0) {
    fields = static_cast<u32>(said);
    return noErr;
  }
  std::optional<u8> extension;
  const OSErr error = ReadFirstByte(description, FourCharacterCode("fiel"), extension);
  fields = extension == 1 ? 1 : 2;
  return error;
}

struct TranscoderNames {
  VorelFamily family;
  i16 list;  // 'STR#'
  u8 bits;   // of the samples
};

constexpr TranscoderNames kNames[] = {{VOREL_YCBCR_10BV_444, 23662, 10},
                                      {VOREL_YCBCR_8B_444, 23652, 8},
                                      {VOREL_YCBCR_10BV_422, 23664, 10},
                                      {VOREL_YCBCR_8BV_422, 23656, 8},
                                      {VOREL_YCBCR_8BW_422, 23660, 8}};

const TranscoderNames& NamesOf(VorelFamily family) {
  return *std::find_if(std::begin(kNames), std::end(kNames) - 1,
                       [family](const TranscoderNames& row) { return row.family == family; });
}

// The list of the 8-bit 4:4:4 transcoder has four names for each of its two ranges, the others have two names.
i16 NameIndex(const Transcoder& instance) {
  const i16 second = instance.fields == 2 ? 1 : 0;
  if (instance.row->family != VOREL_YCBCR_8B_444) return static_cast<i16>(second + 1);
  const i16 range = instance.pixelFormat == FourCharacterCode("r408") ? 4 : 0;
  return static_cast<i16>(range + (instance.keepsAlpha ? 2 : 0) + second + 1);
}

OSErr WriteExtensions(const Transcoder& instance, ImageDescriptionHandle description) {
  const u8 most = NamesOf(instance.row->family).bits;
  if (const OSErr error = ReplaceExtension32(description, FourCharacterCode("cspc"), instance.pixelFormat);
      error != noErr) {
    return error;
  }
  i32 gamma = 0;
  if (Host->Gestalt(FourCharacterCode("Gama"), &gamma) == noErr) {
    const OSErr error = ReplaceExtension32(description, FourCharacterCode("gama"), static_cast<u32>(gamma));
    if (error != noErr) return error;
  }
  std::optional<u8> said;
  if (const OSErr error = ReadFirstByte(description, FourCharacterCode("sgbt"), said); error != noErr)
    return error;
  const u8 bits = std::min(said.value_or(most), most);
  return ReplaceExtension(description, FourCharacterCode("sgbt"), &bits, 1);
}

OSErr DescribeFrames(Transcoder& instance, ImageDescriptionHandle description) {
  if (const OSErr error = WriteExtensions(instance, description); error != noErr) return error;
  i32 mode = 0;
  instance.mode = Host->Gestalt(FourCharacterCode("Vorl"), &mode) == noErr ? static_cast<u32>(mode) : 0;
  const i16 list = NamesOf(instance.row->family).list;
  if (const OSErr error = WriteName(instance.self, description, list, NameIndex(instance)); error != noErr)
    return error;
  u32 oldTag = 0;
  const OSErr found = ReadTag(description, oldTag);
  if (found != noErr && found != codecExtensionNotFoundErr) return found;
  const TranscodedFormat* const format = FindFormat(instance);
  instance.tag = format == nullptr ? 0 : TagOfFields(*format, instance.fields);
  if (const OSErr error = ReplaceTag(description, instance.tag); error != noErr) return error;
  (*description)->cType = CompressorOfFamily(instance.row->family).subtype;
  (*description)->temporalQuality = 0;
  (*description)->spatialQuality = kLosslessQuality;
  return noErr;
}

// The bytes of a sample. Samples of a foreign pixel format are measured as the transcoder's first own: it is
// the conversion that refuses them.
u64 SampleBytes(const Transcoder& instance) {
  u32 measured = 0;
  for (const TranscodedFormat& format : kFormats) {
    if (format.family != instance.row->family) continue;
    if (measured == 0 || format.pixelFormat == instance.pixelFormat) measured = format.pixelFormat;
  }
  return u64{SampleRowBytes(measured, instance.width)} * instance.height;
}

// A frame in the making.
struct TranscodedFrame {
  const u8* picture;
  i32 rowBytes;
  u32* words;
  u32 wordCursor;
  u32 bitCursor;
};

OSErr CheckTranscoded(Transcoder& instance, const TranscodedFormat& format, const TranscodedFrame& frame) {
  constexpr std::size_t kTagWord = 4;
  if (VorelHasFrameSignature(format.family, frame.words, VOREL_FRAME_HEADER_BYTES) == 0 ||
      frame.words[kTagWord] != instance.tag) {
    return codecBadDataErr;
  }
  const std::size_t bytes = static_cast<std::size_t>(frame.rowBytes) * instance.height;
  if (!GrowMemory(instance.picture, bytes) ||
      !GrowMemory(instance.rowStore, VorelScratchBytes(instance.width))) {
    return memFullErr;
  }
  u32 wordCursor = VOREL_FRAME_HEADER_WORDS;
  u32 bitCursor = 0;
  const bool isInterlaced = instance.tag == format.tags[1];
  const VorelStatus decoded =
      isInterlaced
          ? format.decodeInterlaced(instance.width, instance.height, frame.rowBytes, instance.picture.bytes,
                                    &wordCursor, &bitCursor, frame.words)
          : format.decodeProgressive(instance.width, instance.height, frame.rowBytes, instance.picture.bytes,
                                     &wordCursor, &bitCursor, frame.words, instance.rowStore.bytes);
  if (decoded != VOREL_COMPLETE) return codecConditionErr;
  if (wordCursor != frame.wordCursor || bitCursor != frame.bitCursor) return codecBadDataErr;
  const VorelStatus compared =
      VorelComparePictures(format.pixelFormat, format.hasAlpha ? 1 : 0, 0, instance.width, instance.height,
                           frame.rowBytes, frame.picture, instance.picture.bytes);
  if (compared == VOREL_PICTURES_DIFFER) return codecBadDataErr;
  return compared == VOREL_COMPLETE ? noErr : codecConditionErr;
}

OSErr MakeFrame(Transcoder& instance, TranscodedFrame& frame, u32 roomBytes, u32& recordedBytes) {
  VorelWriteFrameHeader(instance.tag, frame.words);
  frame.wordCursor = VOREL_FRAME_HEADER_WORDS;
  const TranscodedFormat* const format = FindFormat(instance);
  if (format == nullptr || instance.tag == 0) return codecConditionErr;
  const bool isInterlaced = instance.tag == format->tags[1];
  const VorelStatus status =
      format->encode[isInterlaced ? 1 : 0](instance.width, instance.height, frame.rowBytes, frame.picture,
                                           &frame.wordCursor, &frame.bitCursor, frame.words);
  if (status != VOREL_COMPLETE) return codecConditionErr;
  if (instance.mode != kModeOneWay) {
    if (const OSErr error = CheckTranscoded(instance, *format, frame); error != noErr) return error;
  }
  const u64 recorded = (u64{frame.wordCursor} * 32 + 7 + frame.bitCursor) / 8;
  if (recorded > roomBytes) return memFullErr;
  recordedBytes = static_cast<u32>(recorded);
  ClearFrameTail(reinterpret_cast<u8*>(frame.words), frame.wordCursor, recordedBytes);
  return noErr;
}

}  // namespace

u32 SampleRowBytes(u32 pixelFormat, u32 width) {
  constexpr u32 kBlockPixels = 48;
  constexpr u32 kBlockBytes = 128;
  switch (pixelFormat) {
    case FourCharacterCode("v210"):
      return (width + kBlockPixels - 1) / kBlockPixels * kBlockBytes;
    case FourCharacterCode("v216"):
    case FourCharacterCode("Y216"):
      return (width + 1) / 2 * 8;
    case FourCharacterCode("2vuy"):
    case FourCharacterCode("yuvs"):
    case FourCharacterCode("yuvu"):
      return (width + 1) / 2 * 4;
    case FourCharacterCode("v408"):
    case FourCharacterCode("r408"):
    case FourCharacterCode("v410"):
      return width * 4;
    default:
      return 0;
  }
}

ComponentResult OpenTranscoder(ComponentInstance self, const ComponentRow& row) {
  auto* const instance = static_cast<Transcoder*>(Host->Allocate(sizeof(Transcoder)));
  if (instance == nullptr) return memFullErr;
  instance->self = self;
  instance->target = self;
  instance->row = &row;
  if (const OSErr error = ProbeHost(instance->host); error != noErr) {
    Host->Free(instance);
    return error;
  }
  for (const TranscodedFormat& format : kFormats) {
    if (format.family == row.family) RegisterPixelFormat(format.pixelFormat, instance->host.quickTimeVersion);
  }
  Host->SetComponentInstanceStorage(self, reinterpret_cast<Handle>(instance));
  return noErr;
}

ComponentResult CloseTranscoder(Transcoder* instance, ComponentInstance /* self */) {
  if (instance == nullptr) return noErr;
  FreeMemory(instance->picture);
  FreeMemory(instance->rowStore);
  Host->Free(instance);
  return noErr;
}

ComponentResult SetTranscoderTarget(Transcoder* instance, ComponentInstance target) {
  if (instance == nullptr) return paramErr;
  instance->target = target;
  return noErr;
}

ComponentResult BeginTranscoding(Transcoder* instance, ImageDescriptionHandle source,
                                 ImageDescriptionHandle* result, void* /* data */, i32 dataSize) {
  if (instance == nullptr || source == nullptr || *source == nullptr || result == nullptr) return paramErr;
  const ImageDescription& description = **source;
  instance->description = nullptr;
  instance->width = static_cast<u32>(std::max<i32>(description.width, 0));
  instance->height = static_cast<u32>(std::max<i32>(description.height, 0));
  instance->pixelFormat = VorelNormalizePixelFormat(static_cast<u16>(description.depth), description.cType, 0,
                                                    0, 0, VOREL_RGB_RANGE_AUTOMATIC);
  instance->keepsAlpha = instance->row->family == VOREL_YCBCR_8B_444 && description.depth == kDepthWithAlpha;
  const u64 wanted = SampleBytes(*instance);
  if (wanted == 0 || dataSize < 0 || static_cast<u64>(dataSize) != wanted) return paramErr;

  Handle copy = reinterpret_cast<Handle>(source);
  if (const OSErr error = Host->HandToHand(&copy); error != noErr) return error;
  const auto frames = reinterpret_cast<ImageDescriptionHandle>(copy);
  OSErr error = ReadFields(frames, instance->fields);
  if (error == noErr) error = DescribeFrames(*instance, frames);
  if (error != noErr) {
    Host->DisposeHandle(copy);
    return error;
  }
  instance->description = frames;
  *result = frames;
  return noErr;
}

ComponentResult Transcode(Transcoder* instance, void* data, i32 dataSize, void** frame, i32* frameSize) {
  if (instance == nullptr || data == nullptr || frame == nullptr || frameSize == nullptr ||
      instance->description == nullptr) {
    return paramErr;
  }
  if (dataSize < 0 || static_cast<u64>(dataSize) < SampleBytes(*instance)) return paramErr;
  const u32 bound = VorelMaxFrameBytes(instance->tag, instance->width, instance->height);
  const u32 room = bound + VOREL_FRAME_HEADER_BYTES;
  TranscodedFrame made = {};
  made.picture = static_cast<const u8*>(data);
  made.rowBytes = static_cast<i32>(SampleRowBytes(instance->pixelFormat, instance->width));
  made.words = static_cast<u32*>(Host->Allocate(ReadableFrameBytes(bound, instance->width)));
  if (made.words == nullptr) return memFullErr;
  u32 recordedBytes = 0;
  if (const OSErr error = MakeFrame(*instance, made, room, recordedBytes); error != noErr) {
    Host->Free(made.words);
    return error;
  }
  (*instance->description)->dataSize = static_cast<i32>(recordedBytes);
  *frame = made.words;
  *frameSize = static_cast<i32>(recordedBytes);
  ++instance->frames;
  return noErr;
}

ComponentResult DisposeFrame(Transcoder* instance, void* frame) {
  if (instance == nullptr) return paramErr;
  if (frame != nullptr) Host->Free(frame);
  return noErr;
}

ComponentResult EndTranscoding(Transcoder* instance) {
  if (instance == nullptr) return paramErr;
  FreeMemory(instance->picture);
  FreeMemory(instance->rowStore);
  instance->description = nullptr;
  return noErr;
}

}  // namespace vorel::component
