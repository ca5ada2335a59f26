// Extensions of image descriptions whose bytes are known here: fiel, colr, pasp, clap.
#include "container/atom_builder.h"
#include "container/sample_description.h"

namespace vorel::container {

namespace {

constexpr u32 kNclc = FourCharacterCode("nclc");
constexpr u32 kNclx = FourCharacterCode("nclx");

// The extension's bytes when it has exactly, or with `atLeast` no fewer than, `count` of them; else null.
const u8* BytesOf(const SampleDescription& description, u32 type, std::size_t count, bool atLeast = false) {
  const Extension* extension = FindExtension(description, type);
  if (extension == nullptr || extension->bytes.size() < count) return nullptr;
  if (!atLeast && extension->bytes.size() != count) return nullptr;
  return extension->bytes.data();
}

}  // namespace

Extension MakeFieldOrder(FieldOrder order) {
  return {kFieldOrderType, {order.fields, order.detail}};
}

Extension MakeColour(ColourParameters colour) {
  Bytes bytes;
  Put32(bytes, kNclc);
  Put16(bytes, colour.primaries);
  Put16(bytes, colour.transfer);
  Put16(bytes, colour.matrix);
  return {kColourType, std::move(bytes)};
}

Extension MakePixelAspect(PixelAspect aspect) {
  Bytes bytes;
  Put32(bytes, aspect.horizontal);
  Put32(bytes, aspect.vertical);
  return {kPixelAspectType, std::move(bytes)};
}

Extension MakeCleanAperture(const CleanAperture& aperture) {
  Bytes bytes;
  Put32(bytes, aperture.widthNumerator);
  Put32(bytes, aperture.widthDenominator);
  Put32(bytes, aperture.heightNumerator);
  Put32(bytes, aperture.heightDenominator);
  Put32(bytes, static_cast<u32>(aperture.horizontalNumerator));
  Put32(bytes, aperture.horizontalDenominator);
  Put32(bytes, static_cast<u32>(aperture.verticalNumerator));
  Put32(bytes, aperture.verticalDenominator);
  return {kCleanApertureType, std::move(bytes)};
}

std::optional<FieldOrder> FindFieldOrder(const SampleDescription& description) {
  const u8* bytes = BytesOf(description, kFieldOrderType, 2);
  if (bytes == nullptr) return std::nullopt;
  return FieldOrder{bytes[0], bytes[1]};
}

std::optional<ColourParameters> FindColour(const SampleDescription& description) {
  const u8* bytes = BytesOf(description, kColourType, 10, true);
  if (bytes == nullptr) return std::nullopt;
  const u32 kind = LoadBig32(bytes);
  if (kind == kNclc || kind == kNclx) {
    return ColourParameters{LoadBig16(bytes + 4), LoadBig16(bytes + 6), LoadBig16(bytes + 8)};
  }
  if (kind == SwapBytes(kNclc)) {
    return ColourParameters{LoadNative<u16>(bytes + 4), LoadNative<u16>(bytes + 6),
                            LoadNative<u16>(bytes + 8)};
  }
  return std::nullopt;
}

std::optional<PixelAspect> FindPixelAspect(const SampleDescription& description) {
  const u8* bytes = BytesOf(description, kPixelAspectType, 8);
  if (bytes == nullptr) return std::nullopt;
  const PixelAspect aspect = {LoadBig32(bytes), LoadBig32(bytes + 4)};
  if (aspect.horizontal == 0 || aspect.vertical == 0) return std::nullopt;
  return aspect;
}

std::optional<CleanAperture> FindCleanAperture(const SampleDescription& description) {
  const u8* bytes = BytesOf(description, kCleanApertureType, 32);
  if (bytes == nullptr) return std::nullopt;
  const auto word = [bytes](int index) { return LoadBig32(bytes + 4 * index); };
  return CleanAperture{.widthNumerator = word(0),
                       .widthDenominator = word(1),
                       .heightNumerator = word(2),
                       .heightDenominator = word(3),
                       .horizontalNumerator = static_cast<i32>(word(4)),
                       .horizontalDenominator = word(5),
                       .verticalNumerator = static_cast<i32>(word(6)),
                       .verticalDenominator = word(7)};
}

}  // namespace vorel::container
