// Opening and closing, and the answers to the host's questions.
#include "component/decompressor.h"

#include <algorithm>
#include <cstring>

#include "base/bytes.h"
#include "component/host_errors.h"
#include "component/image_extensions.h"
#include "component/selector_dispatch.h"
#include "vorel/pixel_formats.h"

namespace vorel::component {

namespace {

constexpr i32 kWantedBytes = kMostFormats * sizeof(OSType);

// Frees what an instance holds so far, and the instance.
void FreeDecompressor(Decompressor* instance) {
  if (instance->delegate != nullptr) Host->CloseComponent(instance->delegate);
  if (instance->wantedPixelTypes != nullptr) Host->DisposeHandle(instance->wantedPixelTypes);
  FreePool(instance->pool);
  Host->Free(instance);
}

OSErr SetUp(Decompressor* instance) {
  instance->wantedPixelTypes = Host->NewHandleClear(kWantedBytes);
  if (instance->wantedPixelTypes == nullptr) return memFullErr;
  if (const OSErr error = ProbeHost(instance->host); error != noErr) return error;
  RegisterPixelFormats(instance->host.quickTimeVersion);
  const OSErr error =
      Host->OpenADefaultComponent(FourCharacterCode("imdc"), FourCharacterCode("base"), &instance->delegate);
  if (error != noErr) return error;
  CallSelector(instance->delegate, kComponentTargetSelect, instance->self);
  return noErr;
}

constexpr u32 kMatrix709 = 1;
constexpr u32 kMatrix240M = 7;
constexpr Fixed kVideoGamma = 0x00023333;

// A description may lack what tells of colour; that is the only failure to read it which is none.
OSErr WithoutMissing(OSErr error) {
  return error == codecExtensionNotFoundErr ? noErr : error;
}

OSErr ReadColourOfSource(Decompressor* instance, ImageDescriptionHandle description) {
  OSErr error = noErr;
  instance->gamma = 0;
  instance->colourStandard = VOREL_COLOUR_601;
  const auto gamma = ReadExtension(description, FourCharacterCode("gama"), error);
  if (WithoutMissing(error) != noErr) return error;
  if (gamma && gamma->size >= static_cast<i32>(sizeof(Fixed)))
    instance->gamma = static_cast<Fixed>(LoadBig32(gamma->bytes));
  const std::optional<ColourNumbers> colour = ReadColour(description, error);
  if (!colour) return WithoutMissing(error);
  if (colour->matrix == kMatrix709) instance->colourStandard = VOREL_COLOUR_709;
  if (colour->matrix == kMatrix240M) instance->colourStandard = VOREL_COLOUR_240M;
  constexpr u16 kTransfer709 = 1;
  constexpr u16 kTransfer240M = 7;
  if (colour->transfer == kTransfer709 || colour->transfer == kTransfer240M) instance->gamma = kVideoGamma;
  return noErr;
}

// An address in the upper half is one of video memory, where the host says it so.
bool IsOnScreen(const CGrafPort* port) {
  if (port == nullptr || port->portPixMap == nullptr) return false;
  return reinterpret_cast<Slot>(Host->GetPixBaseAddr(port->portPixMap)) < 0;
}

OSErr OfferFormats(Decompressor* instance, CodecDecompressParams* parameters, u32 tag) {
  constexpr u32 kNormalQuality = 0x200;
  const OfferFacts facts = {parameters->accuracy > kNormalQuality,
                            IsOnScreen(parameters->finalDestinationPort), instance->host.hostIsAfterEffects};
  const FormatList list = OfferedFormats(tag, facts);
  if (list.count >= kMostFormats) return memAdrErr;
  std::memcpy(*instance->wantedPixelTypes, list.codes.data(), kWantedBytes);
  parameters->wantedDestinationPixelTypes = reinterpret_cast<OSType**>(instance->wantedPixelTypes);
  if (list.count > 0) parameters->preferredOffscreenPixelSize = Host->QTGetPixelSize(list.codes[0]);
  return noErr;
}

// Blocks serve whatever frame comes: they hold the longest row store and a row of the longest pixels.
OSErr SizeScratch(Decompressor* instance, u32 width) {
  constexpr u32 kLongestPixel = 8;
  const u32 size = std::max(VorelScratchBytes(width), (width + 4) * kLongestPixel);
  if (size <= kInlineStoreBytes) return noErr;
  return SizePool(instance->pool, size) ? noErr : memFullErr;
}

// The draw procedure that the base calls on its threads; its refCon is the instance.
ComponentResult DrawOnThread(void* refCon, ImageSubCodecDecompressRecord* record) {
  return DrawBand(static_cast<Decompressor*>(refCon), record);
}

}  // namespace

ComponentResult OpenDecompressor(ComponentInstance self, VorelFamily family, i16 resourceId) {
  auto* const instance = static_cast<Decompressor*>(Host->Allocate(sizeof(Decompressor)));
  if (instance == nullptr) return memFullErr;
  instance->self = self;
  instance->target = self;
  instance->family = family;
  instance->resourceId = resourceId;
  if (const OSErr error = SetUp(instance); error != noErr) {
    FreeDecompressor(instance);
    return error;
  }
  Host->SetComponentInstanceStorage(self, reinterpret_cast<Handle>(instance));
  return noErr;
}

ComponentResult CloseDecompressor(Decompressor* instance, ComponentInstance /* self */) {
  if (instance != nullptr) FreeDecompressor(instance);
  return noErr;
}

ComponentResult GetWorkFunction(Decompressor* instance, ComponentMPWorkFunction* function, void** refCon) {
  if (instance == nullptr || function == nullptr || refCon == nullptr) return paramErr;
  if (instance->host.quickTimeVersion < kQuickTime7) return codecUnimpErr;
  if (instance->drawProcedure == nullptr) instance->drawProcedure = DrawOnThread;
  return CallSelector(instance->delegate, kImageCodecGetBaseMPWorkFunctionSelect, function, refCon,
                      instance->drawProcedure, instance);
}

ComponentResult SetDecompressorTarget(Decompressor* instance, ComponentInstance target) {
  if (instance == nullptr) return paramErr;
  instance->target = target;
  return noErr;
}

ComponentResult GetDecompressorInfo(Decompressor* instance, CodecInfo* info) {
  if (instance == nullptr) return paramErr;
  return CopyCodecInfo(instance->self, instance->resourceId, info);
}

ComponentResult GetCompressedImageSize(Decompressor* instance, ImageDescriptionHandle description,
                                       Ptr /* data */, i32 /* bufferSize */,
                                       ICMDataProcRecord* /* dataProcedure */, i32* size) {
  if (instance == nullptr || description == nullptr || *description == nullptr || size == nullptr)
    return paramErr;
  *size = (*description)->dataSize;
  return noErr;
}

ComponentResult RequestGammaLevel(Decompressor* instance, Fixed source, Fixed destination, i32* canMatch) {
  if (instance == nullptr || canMatch == nullptr) return paramErr;
  *canMatch = source == destination && source == instance->gamma ? 1 : 0;
  return noErr;
}

ComponentResult GetSourceDataGammaLevel(Decompressor* instance, Fixed* gamma) {
  if (instance == nullptr || gamma == nullptr) return paramErr;
  *gamma = instance->gamma;
  return noErr;
}

ComponentResult Preflight(Decompressor* instance, CodecDecompressParams* parameters) {
  if (instance == nullptr || parameters == nullptr || parameters->imageDescription == nullptr ||
      *parameters->imageDescription == nullptr || parameters->capabilities == nullptr) {
    return paramErr;
  }
  const ImageDescriptionHandle description = parameters->imageDescription;
  u32 tag = 0;
  if (const OSErr error = ReadTag(description, tag); error != noErr) return error;
  if (const OSErr error = ReadColourOfSource(instance, description); error != noErr) return error;

  constexpr i32 kAsynchronous = 0x12000;
  CodecCapabilities* const capabilities = parameters->capabilities;
  capabilities->flags = instance->host.quickTimeVersion < kQuickTime7 ? 0 : kAsynchronous;
  capabilities->wantedPixelSize = 0;
  capabilities->extendWidth = 0;
  capabilities->extendHeight = 0;
  capabilities->bandMin = (*description)->height;
  capabilities->bandInc = (*description)->height;

  if (const OSErr error = OfferFormats(instance, parameters, tag); error != noErr) return error;
  return SizeScratch(instance, static_cast<u16>((*description)->width));
}

ComponentResult Initialize(Decompressor* instance, ImageSubCodecDecompressCapabilities* capabilities) {
  if (instance == nullptr || capabilities == nullptr) return paramErr;
  const bool isNew = instance->host.quickTimeVersion >= kQuickTime7;
  capabilities->decompressRecordSize = sizeof(FrameRecord);
  if (capabilities->recordSize == 0) capabilities->recordSize = sizeof *capabilities;
  capabilities->canAsync = isNew ? 1 : 0;
  if (isNew) capabilities->subCodecIsMultiBufferAware = 1;
  return noErr;
}

}  // namespace vorel::component
