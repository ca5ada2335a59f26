#include "component/frame_record.h"

#include <algorithm>
#include <cstring>

#include "component/host_errors.h"
#include "vorel/frame_codec.h"

namespace vorel::component {

OSErr WriteName(ComponentInstance self, ImageDescriptionHandle description, i16 list, i16 index) {
  u8 text[256] = {};
  if (const OSErr error = Host->GetComponentIndString(self, text, list, index); error != noErr) return error;
  constexpr std::size_t kRoom = sizeof(ImageDescription::name);
  const u8 length = std::min<u8>(text[0], kRoom - 1);
  u8* const name = (*description)->name;
  std::memset(name, 0, kRoom);
  name[0] = length;
  std::memcpy(name + 1, text + 1, length);
  return noErr;
}

OSErr ReadFirstByte(ImageDescriptionHandle description, OSType type, std::optional<u8>& found) {
  OSErr error = noErr;
  const std::optional<ExtensionBytes> extension = ReadExtension(description, type, error);
  found = std::nullopt;
  if (extension && extension->size > 0) found = extension->bytes[0];
  return error == codecExtensionNotFoundErr ? noErr : error;
}

std::size_t ReadableFrameBytes(u32 frameBound, u32 width) {
  constexpr std::size_t kLongestPixel = 8;  // four codes of 16 bits
  constexpr std::size_t kLookAhead = 8;
  return frameBound + VOREL_FRAME_HEADER_BYTES + kLongestPixel * (std::size_t{width} + 1) + kLookAhead;
}

void ClearFrameTail(u8* frame, u32 wordCursor, u32 recordedBytes) {
  const u32 written = (wordCursor - VOREL_FRAME_HEADER_WORDS + 1) * 4;
  if (written < recordedBytes) std::memset(frame + written, 0, recordedBytes - written);
}

}  // namespace vorel::component
