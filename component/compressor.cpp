// Opening and closing, and what a host asks before it compresses.
#include "component/compressor.h"

#include <algorithm>

#include "base/bytes.h"
#include "component/compression_plan.h"
#include "component/frame_record.h"
#include "component/host_errors.h"
#include "component/pixel_map.h"
#include "component/work_memory.h"

namespace vorel::component {

namespace {

// The rectangle goes before the map's bounds; an inside-out one is empty.
PictureSize SizeAskedFor(PixMapHandle source, const Rect* rectangle) {
  PictureSize size = {0, 0};
  if (rectangle != nullptr) {
    size = SizeOf(*rectangle);
  } else if (source != nullptr) {
    size = SizeOf((*source)->bounds);
  }
  return {std::max(size.width, 0), std::max(size.height, 0)};
}

// Any format of the family whose tags are the largest of it. Generic frames are at their largest as deep R'G'B'
// with alpha.
struct LargestTags {
  VorelFamily family;
  OSType pixelFormat;
};

constexpr LargestTags kLargestTags[] = {
    {VOREL_GENERIC, FourCharacterCode("b64a")},
    {VOREL_RGB_10BF, FourCharacterCode("b64a")},
    {VOREL_RGB_8BF, 32},
    {VOREL_YCBCR_10BV_444, FourCharacterCode("V416")},
    {VOREL_YCBCR_8B_444, FourCharacterCode("v408")},
    {VOREL_YCBCR_10BV_422, FourCharacterCode("V416")},
    {VOREL_YCBCR_8BV_422, FourCharacterCode("v408")},
    {VOREL_YCBCR_8BW_422, FourCharacterCode("yuvu")},
};

u32 LargestFrameBytes(VorelFamily family, const PictureSize& size) {
  for (const LargestTags& row : kLargestTags) {
    if (row.family != family) continue;
    u32 most = 0;
    for (const u32 choice :
         {0u, u32{VOREL_INTERLACED}, u32{VOREL_KEEP_ALPHA}, u32{VOREL_KEEP_ALPHA | VOREL_INTERLACED}}) {
      const u32 tag = VorelChooseFormatTag(family, row.pixelFormat, choice);
      most = std::max(most,
                      VorelMaxFrameBytes(tag, static_cast<u32>(size.width), static_cast<u32>(size.height)));
    }
    return most;
  }
  return 0;
}

constexpr OSType kAlphaValue = FourCharacterCode("Alfa");
constexpr OSType kFormValue = FourCharacterCode("Form");
constexpr OSType kGammaValue = FourCharacterCode("Gama");

// The format that the pictures should come in: theirs if it is taken.
OSType WantedFormat(VorelFamily family, const PixMap& map) {
  const FormatList list = SourceFormats(family);
  const OSType* const end = list.codes.data() + list.count;
  const OSType own = HostPixelFormat(map);
  return std::find(list.codes.data(), end, own) != end ? own : list.codes[0];
}

}  // namespace

ComponentResult OpenCompressor(ComponentInstance self, const ComponentRow& row) {
  auto* const instance = static_cast<Compressor*>(Host->Allocate(sizeof(Compressor)));
  if (instance == nullptr) return memFullErr;
  instance->self = self;
  instance->target = self;
  instance->row = &row;
  instance->subtype = row.subtype;
  instance->settings.conversion = kConversionBest;
  if (const OSErr error = ProbeHost(instance->host); error != noErr) {
    Host->Free(instance);
    return error;
  }
  RegisterPixelFormats(instance->host.quickTimeVersion);
  Host->SetComponentInstanceStorage(self, reinterpret_cast<Handle>(instance));
  return noErr;
}

ComponentResult CloseCompressor(Compressor* instance, ComponentInstance /* self */) {
  if (instance == nullptr) return noErr;
  FreeMemory(instance->picture);
  FreeMemory(instance->rowStore);
  FreeMemory(instance->frame);
  Host->Free(instance);
  return noErr;
}

ComponentResult SetCompressorTarget(Compressor* instance, ComponentInstance target) {
  if (instance == nullptr) return paramErr;
  instance->target = target;
  return noErr;
}

ComponentResult GetCompressorInfo(Compressor* instance, CodecInfo* info) {
  if (instance == nullptr) return paramErr;
  return CopyCodecInfo(instance->self, CompressorOf(instance->subtype).id, info);
}

ComponentResult GetCompressionTime(Compressor* instance, PixMapHandle source, const Rect* rectangle,
                                   i16 /* depth */, u32* spatialQuality, u32* temporalQuality, u32* time) {
  if (instance == nullptr || time == nullptr) return paramErr;
  if (spatialQuality != nullptr) *spatialQuality = kLosslessQuality;
  if (temporalQuality != nullptr) *temporalQuality = 0;
  const PictureSize size = SizeAskedFor(source, rectangle);
  *time = CompressionTime(instance->subtype, size.width, size.height);
  return noErr;
}

ComponentResult GetMaxCompressionSize(Compressor* instance, PixMapHandle source, const Rect* rectangle,
                                      i16 /* depth */, u32 /* quality */, i32* size) {
  if (instance == nullptr || size == nullptr || (source == nullptr && rectangle == nullptr)) return paramErr;
  *size = static_cast<i32>(LargestFrameBytes(instance->row->family, SizeAskedFor(source, rectangle)) +
                           VOREL_FRAME_HEADER_BYTES);
  return noErr;
}

ComponentResult PreCompress(Compressor* instance, CodecCompressParams* parameters) {
  if (instance == nullptr || parameters == nullptr || parameters->imageDescription == nullptr ||
      *parameters->imageDescription == nullptr || parameters->capabilities == nullptr) {
    return paramErr;
  }
  const ImageDescriptionHandle description = parameters->imageDescription;
  instance->busy = 1;
  instance->alphaMode = (*description)->depth == kDepthWithAlpha ? kAlphaKept : kAlphaNone;
  Host->SetGestaltValue(kAlphaValue, static_cast<i32>(instance->alphaMode));
  *parameters->capabilities = {};
  parameters->capabilities->bandMin = (*description)->height;
  instance->subtype = (*description)->cType;
  Host->SetGestaltValue(kFormValue, static_cast<i32>(instance->subtype));
  (*description)->temporalQuality = 0;
  (*description)->spatialQuality = kLosslessQuality;
  std::optional<u8> fields;
  if (const OSErr error = ReadFirstByte(description, FourCharacterCode("fiel"), fields); error != noErr)
    return error;
  instance->fields = fields == 1 ? 1 : 2;
  Host->SetGestaltValue(kGammaValue, Host->QTGetPixMapPtrGammaLevel(&parameters->srcPixMap));
  parameters->wantedSourcePixelType = WantedFormat(instance->row->family, parameters->srcPixMap);
  return noErr;
}

ComponentResult CompressorBusy(Compressor* instance, i32 /* sequence */) {
  return instance == nullptr ? -1 : static_cast<ComponentResult>(instance->busy);
}

}  // namespace vorel::component
