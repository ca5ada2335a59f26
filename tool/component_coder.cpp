#include "tool/component_coder.h"

#include <algorithm>
#include <cstring>

#include "base/bytes.h"
#include "base/problem.h"
#include "component/component_table.h"
#include "component/host_errors.h"
#include "component/selectors.h"
#include "vorel/pixel_formats.h"

namespace vorel::tool {

namespace {

namespace embedded = component::embedded;

constexpr u32 kRgba = FourCharacterCode("RGBA");
constexpr u32 kAbgr = FourCharacterCode("ABGR");

// Components take the code 'RGBA' for a bitmap's, of another order of bytes. The same pixels read backwards have
// a name of their own.
u32 HostFormatOf(u32 pixelFormat) {
  return pixelFormat == kRgba ? kAbgr : pixelFormat;
}

void ReversePixels(picture_io::Picture& picture) {
  u8* const end = picture.bytes.data() + picture.bytes.size() / 4 * 4;
  for (u8* pixel = picture.bytes.data(); pixel != end; pixel += 4)
    StoreNative(pixel, SwapBytes(LoadNative<u32>(pixel)));
}

// Of the pixel formats that hosts name, some have no routine under that name.
i16 BitsPerPixel(u32 pixelFormat) {
  constexpr i16 kUsual = 32;
  const VorelPixelFormatInfo* const info = VorelFindPixelFormat(pixelFormat);
  return info == nullptr ? kUsual : static_cast<i16>(info->unitBytes * 8 / info->unitPixels);
}

// A map of a whole picture. The pixels come later.
void ShapeMap(component::PixMap& map, embedded::PixelMapExtension& rows, u32 pixelFormat, u32 width,
              u32 height) {
  map = {};
  map.bounds = {0, 0, static_cast<i16>(height), static_cast<i16>(width)};
  constexpr i32 k72PerInch = 72 << 16;
  map.hRes = k72PerInch;
  map.vRes = k72PerInch;
  constexpr i16 kDirect = 16;
  map.pixelType = kDirect;
  map.pixelSize = BitsPerPixel(pixelFormat);
  map.cmpCount = 3;
  map.pixelFormat = pixelFormat;
  SetPixelMapRows(map, rows, 0, 0);
}

void SetUpCompressor(FrameCompressor& compressor, const Compression& compression, const std::string& place) {
  component::CodecCompressParams& parameters = compressor.parameters;
  const container::SampleDescription& description = compression.description;
  ShapeMap(parameters.srcPixMap, compressor.rows, HostFormatOf(compression.pixelFormat), description.width,
           description.height);
  parameters.imageDescription = compressor.description.get();
  parameters.capabilities = &compressor.capabilities;
  const component::ComponentResult result =
      embedded::CallSelector(compressor.instance.get(), component::kImageCodecPreCompressSelect, &parameters);
  if (result != component::noErr)
    throw Problem{"the compressor does not take the pictures: " + ResultText(result), place, ""};
}

// What a refusal means to people. The core tells more than a component: it is asked for the same.
[[noreturn]] void ExplainRefusal(component::ComponentResult result, const picture_io::Picture& picture,
                                 const FrameCoding& coding, const std::string& place) {
  if (result == component::codecBadDataErr) {
    throw Problem{"the self-check has failed: the frame decoded again differs from its picture", place,
                  "report this, and keep the pictures"};
  }
  FrameBuffer again;
  EncodeFrame(picture, coding, again, place);
  throw Problem{"the compressor refuses the picture: " + ResultText(result), place, ""};
}

[[noreturn]] void ExplainDamage(FrameDecompressor& decompressor, component::ComponentResult result,
                                const std::vector<u8>& frame, const DecodedClip& clip,
                                const std::string& place) {
  picture_io::Picture again;
  DecodeFrame(frame, clip, again, decompressor.scratch, place);
  throw Problem{"the decompressor refuses the frame: " + ResultText(result), place,
                "the description and the frame do not go together"};
}

}  // namespace

void OpenFrameCompressor(FrameCompressor& compressor, const Compression& compression,
                         const std::string& place) {
  compressor.instance =
      OpenInstance(component::kCompressorType, compression.compressor, component::kMaker, place);
  compressor.description = DescriptionForHost(compression.description);
  const OwnedHandle settings(component::Host->NewHandleClear(static_cast<i32>(compression.settings.size())));
  if (settings == nullptr) throw Problem{"there is not enough memory", place, ""};
  std::copy(compression.settings.begin(), compression.settings.end(), *settings);
  const component::ComponentResult result = embedded::CallSelector(
      compressor.instance.get(), component::kImageCodecSetSettingsSelect, settings.get());
  if (result != component::noErr)
    throw Problem{"the compressor does not take its settings: " + ResultText(result), place, ""};
  SetUpCompressor(compressor, compression, place);
}

void CompressFrame(FrameCompressor& compressor, const FrameCoding& coding, picture_io::Picture& picture,
                   FrameBuffer& buffer, const std::string& place) {
  component::CodecCompressParams& parameters = compressor.parameters;
  const bool isReversed = picture.pixelFormat == kRgba;
  if (isReversed) ReversePixels(picture);
  // Room for frames of this format: what a compressor asks for suffices for any, and may be thrice as much.
  buffer.words.resize(FrameBufferBytes(coding.tag, picture.width, picture.height) / 4);
  parameters.data = reinterpret_cast<component::Ptr>(buffer.words.data());
  parameters.bufferSize = static_cast<i32>(buffer.words.size() * 4);
  parameters.srcPixMap.baseAddr = picture.bytes.data();
  SetPixelMapRows(parameters.srcPixMap, compressor.rows, static_cast<i32>(picture.rowBytes), 0);
  parameters.conditionFlags = component::kConditionFirstBand | component::kConditionLastBand;
  if (!compressor.hasBegun) parameters.conditionFlags |= component::kConditionFirstFrame;
  const component::ComponentResult result = embedded::CallSelector(
      compressor.instance.get(), component::kImageCodecBandCompressSelect, &parameters);
  if (result != component::noErr) {
    if (isReversed) ReversePixels(picture);
    ExplainRefusal(result, picture, coding, place);
  }
  compressor.hasBegun = true;
  ++parameters.frameNumber;
  buffer.bytes = static_cast<u32>((*compressor.description)->dataSize);
}

void OpenFrameDecompressor(FrameDecompressor& decompressor, u32 subtype,
                           const container::SampleDescription& description, const DecodedClip& clip,
                           const std::string& place) {
  decompressor.instance = OpenInstance(component::kDecompressorType, subtype, component::kMaker, place);
  decompressor.description = DescriptionForHost(description);
  component::CodecDecompressParams& parameters = decompressor.parameters;
  ShapeMap(parameters.dstPixMap, decompressor.rows, HostFormatOf(clip.format.pixelFormat), clip.format.width,
           clip.format.height);
  parameters.imageDescription = decompressor.description.get();
  parameters.capabilities = &decompressor.capabilities;
  parameters.accuracy = 0x400;  // lossless
  component::ImageSubCodecDecompressCapabilities capabilities = {};
  capabilities.recordSize = sizeof capabilities;
  component::ComponentResult result =
      embedded::CallSelector(decompressor.instance.get(), component::kImageCodecPreflightSelect, &parameters);
  if (result == component::noErr) {
    result = embedded::CallSelector(decompressor.instance.get(), component::kImageCodecInitializeSelect,
                                    &capabilities);
  }
  if (result != component::noErr)
    throw Problem{"the decompressor does not take the movie: " + ResultText(result), place, ""};
  decompressor.frameRecord.resize(static_cast<std::size_t>(capabilities.decompressRecordSize));
}

// Bands are driven one by one, for the record of a frame tells where its bits have ended.
FrameEnd DecompressFrame(FrameDecompressor& decompressor, const std::vector<u8>& frame,
                         const DecodedClip& clip, picture_io::Picture& picture, const std::string& place) {
  CheckFrameSize(frame, clip, place);
  ShapePicture(clip.format, picture);
  component::CodecDecompressParams& parameters = decompressor.parameters;
  parameters.data = const_cast<component::Ptr>(frame.data());
  parameters.bufferSize = static_cast<i32>(frame.size());
  parameters.conditionFlags = component::kConditionFirstBand | component::kConditionLastBand;
  parameters.dstPixMap.baseAddr = picture.bytes.data();
  (*decompressor.description)->dataSize = static_cast<i32>(frame.size());
  component::ImageSubCodecDecompressRecord record = {};
  record.baseAddr = picture.bytes.data();
  record.rowBytes = static_cast<i32>(picture.rowBytes);
  record.codecData = parameters.data;
  record.userDecompressRecord = decompressor.frameRecord.data();
  const component::ComponentInstance instance = decompressor.instance.get();
  component::ComponentResult result =
      embedded::CallSelector(instance, component::kImageCodecBeginBandSelect, &parameters, &record, i32{0});
  FrameEnd end = {};
  if (result == component::noErr) {
    result = embedded::CallSelector(instance, component::kImageCodecDrawBandSelect, &record);
    const auto* const known =
        reinterpret_cast<const component::FrameRecord*>(decompressor.frameRecord.data());
    end = EndOfFrame(known->wordCursor, known->bitCursor);
    embedded::CallSelector(instance, component::kImageCodecEndBandSelect, &record,
                           static_cast<component::OSErr>(result), i32{0});
  }
  if (result != component::noErr) ExplainDamage(decompressor, result, frame, clip, place);
  if (picture.pixelFormat == kRgba) ReversePixels(picture);
  return end;
}

}  // namespace vorel::tool
