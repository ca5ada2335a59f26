// JPEG XL, lossless at effort 1, by libjxl. Without a parallel runner it works in the caller's thread.
#include <jxl/decode.h>
#include <jxl/encode.h>

#include <memory>
#include <stdexcept>

#include "bench/peer.h"

namespace vorel::bench {
namespace {

struct Closed {
  void operator()(JxlEncoder* encoder) const { JxlEncoderDestroy(encoder); }
  void operator()(JxlDecoder* decoder) const { JxlDecoderDestroy(decoder); }
};

// Pixels are R'G'B' or grey there: components of Y'CbCr go as grey pictures.
Arrangement ArrangementOf(const SampleShape& shape) {
  return shape.model == ColourModel::rgb ? Arrangement::interleaved : Arrangement::planes;
}

std::string Version() {
  const u32 version = JxlEncoderVersion();
  return "libjxl " + std::to_string(version / 1000000) + '.' + std::to_string(version / 1000 % 1000) + '.' +
         std::to_string(version % 1000);
}

void Check(bool isRight, const char* message) {
  if (!isRight) throw std::runtime_error(message);
}

// Deep samples go as 16-bit ones whose upper bits are zero: words of fewer bits would be scaled.
JxlPixelFormat FormatOf(const SampleShape& shape, u32 components) {
  return {components, shape.bits > 8 ? JXL_TYPE_UINT16 : JXL_TYPE_UINT8, JXL_NATIVE_ENDIAN, 0};
}

void EncodeImage(const SampleShape& shape, u32 width, u32 components, const u8* samples, CodedPart& part) {
  const std::unique_ptr<JxlEncoder, Closed> encoder(JxlEncoderCreate(nullptr));
  JxlBasicInfo info;
  JxlEncoderInitBasicInfo(&info);
  info.xsize = width;
  info.ysize = shape.height;
  info.bits_per_sample = BytesOfSample(shape) * 8;
  info.num_color_channels = components == 1 ? 1 : 3;
  info.num_extra_channels = components == 4 ? 1 : 0;
  info.alpha_bits = components == 4 ? info.bits_per_sample : 0;
  info.uses_original_profile = JXL_TRUE;
  Check(JxlEncoderSetBasicInfo(encoder.get(), &info) == JXL_ENC_SUCCESS, "jpeg xl: refuses the picture");
  JxlColorEncoding colour;
  JxlColorEncodingSetToSRGB(&colour, components == 1 ? JXL_TRUE : JXL_FALSE);
  Check(JxlEncoderSetColorEncoding(encoder.get(), &colour) == JXL_ENC_SUCCESS,
        "jpeg xl: refuses the colours");
  JxlEncoderFrameSettings* const settings = JxlEncoderFrameSettingsCreate(encoder.get(), nullptr);
  Check(JxlEncoderSetFrameLossless(settings, JXL_TRUE) == JXL_ENC_SUCCESS, "jpeg xl: not lossless");
  Check(JxlEncoderFrameSettingsSetOption(settings, JXL_ENC_FRAME_SETTING_EFFORT, 1) == JXL_ENC_SUCCESS,
        "jpeg xl: refuses effort 1");
  const JxlPixelFormat format = FormatOf(shape, components);
  const std::size_t bytes = std::size_t{width} * shape.height * components * BytesOfSample(shape);
  Check(JxlEncoderAddImageFrame(settings, &format, samples, bytes) == JXL_ENC_SUCCESS,
        "jpeg xl: refuses the samples");
  JxlEncoderCloseInput(encoder.get());
  // Room for more than any picture takes, so that one call is enough.
  Reserve(part, 2 * bytes + 65536);
  u8* next = part.room.data();
  std::size_t left = part.room.size();
  Check(JxlEncoderProcessOutput(encoder.get(), &next, &left) == JXL_ENC_SUCCESS, "jpeg xl: cannot encode");
  part.bytes = part.room.size() - left;
}

void DecodeImage(const SampleShape& shape, u32 width, u32 components, u8* samples, const CodedPart& part) {
  const std::unique_ptr<JxlDecoder, Closed> decoder(JxlDecoderCreate(nullptr));
  const JxlPixelFormat format = FormatOf(shape, components);
  const std::size_t bytes = std::size_t{width} * shape.height * components * BytesOfSample(shape);
  JxlDecoderSubscribeEvents(decoder.get(), JXL_DEC_FULL_IMAGE);
  JxlDecoderSetInput(decoder.get(), part.room.data(), part.bytes);
  JxlDecoderCloseInput(decoder.get());
  Check(JxlDecoderProcessInput(decoder.get()) == JXL_DEC_NEED_IMAGE_OUT_BUFFER, "jpeg xl: no picture");
  Check(JxlDecoderSetImageOutBuffer(decoder.get(), &format, samples, bytes) == JXL_DEC_SUCCESS,
        "jpeg xl: refuses the buffer");
  Check(JxlDecoderProcessInput(decoder.get()) == JXL_DEC_FULL_IMAGE, "jpeg xl: cannot decode");
}

}  // namespace

const Peer kJpegXl = {"jpeg-xl", Version, ArrangementOf, EncodeImages<ArrangementOf, EncodeImage>,
                      DecodeImages<ArrangementOf, DecodeImage>};

}  // namespace vorel::bench
