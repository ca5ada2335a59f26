#include "component/image_extensions.h"

#include <algorithm>
#include <cstring>

#include "base/bytes.h"
#include "component/host_errors.h"
#include "vorel/frame_codec.h"

namespace vorel::component {

namespace {

constexpr OSType kColour = FourCharacterCode("colr");
constexpr u32 kNumbers = FourCharacterCode("nclc");
constexpr i32 kNumbersBytes = 10;

u16 Load16(const u8* bytes, bool isBig) {
  return isBig ? LoadBig16(bytes) : LoadNative<u16>(bytes);
}

}  // namespace

std::optional<ExtensionBytes> ReadExtension(ImageDescriptionHandle description, OSType type, OSErr& error) {
  Handle data = nullptr;
  error = Host->GetImageDescriptionExtension(description, &data, static_cast<i32>(type), 1);
  if (error == noErr && data == nullptr) error = codecExtensionNotFoundErr;
  if (error != noErr) return std::nullopt;
  ExtensionBytes extension = {};
  extension.size = Host->GetHandleSize(data);
  const i32 kept = std::clamp<i32>(extension.size, 0, sizeof extension.bytes);
  if (kept > 0) std::memcpy(extension.bytes, *data, static_cast<std::size_t>(kept));
  Host->DisposeHandle(data);
  return extension;
}

OSErr ReplaceExtension(ImageDescriptionHandle description, OSType type, const u8* bytes, i32 size) {
  const Handle data = Host->NewHandleClear(size);
  if (data == nullptr) return memFullErr;
  std::memcpy(*data, bytes, static_cast<std::size_t>(size));
  // An old one that could not be removed would stand before the new one and be read in its place.
  OSErr error = Host->RemoveImageDescriptionExtension(description, static_cast<i32>(type), 1);
  if (error == noErr || error == codecExtensionNotFoundErr)
    error = Host->AddImageDescriptionExtension(description, data, static_cast<i32>(type));
  Host->DisposeHandle(data);
  return error;
}

OSErr ReplaceExtension32(ImageDescriptionHandle description, OSType type, u32 value) {
  u8 bytes[4];
  StoreBig32(bytes, value);
  return ReplaceExtension(description, type, bytes, sizeof bytes);
}

OSErr ReadTag(ImageDescriptionHandle description, u32& tag) {
  OSErr error = noErr;
  const std::optional<ExtensionBytes> extension = ReadExtension(description, kTagExtension, error);
  if (!extension) return error;
  if (extension->size < static_cast<i32>(sizeof tag)) return codecExtensionNotFoundErr;
  tag = VorelNormalizeFormatTag(LoadNative<u32>(extension->bytes));
  return noErr;
}

OSErr ReplaceTag(ImageDescriptionHandle description, u32 tag) {
  u8 bytes[4];
  StoreNative(bytes, tag);
  return ReplaceExtension(description, kTagExtension, bytes, sizeof bytes);
}

std::optional<ColourNumbers> ReadColour(ImageDescriptionHandle description) {
  OSErr error = noErr;
  return ReadColour(description, error);
}

std::optional<ColourNumbers> ReadColour(ImageDescriptionHandle description, OSErr& error) {
  const std::optional<ExtensionBytes> extension = ReadExtension(description, kColour, error);
  if (!extension || extension->size < kNumbersBytes) return std::nullopt;
  const u8* const bytes = extension->bytes;
  const bool isBig = LoadBig32(bytes) == kNumbers;
  if (!isBig && LoadNative<u32>(bytes) != kNumbers) return std::nullopt;
  return ColourNumbers{Load16(bytes + 4, isBig), Load16(bytes + 6, isBig), Load16(bytes + 8, isBig)};
}

OSErr ReplaceColour(ImageDescriptionHandle description, ColourNumbers numbers) {
  u8 bytes[kNumbersBytes];
  StoreBig32(bytes, kNumbers);
  StoreBig16(bytes + 4, numbers.primaries);
  StoreBig16(bytes + 6, numbers.transfer);
  StoreBig16(bytes + 8, numbers.matrix);
  return ReplaceExtension(description, kColour, bytes, sizeof bytes);
}

}  // namespace vorel::component
