#include "component/frame_record.h"

#include <algorithm>
#include <cstring>

#include "component/host_errors.h"
#include "vorel/frame_codec.h"

namespace vorel::component {

OSErr WriteName(ComponentInstance self, ImageDescription& description, i16 list, i16 index) {
  u8 text[256] = {};
  if (const OSErr error = Host->GetComponentIndString(self, text, list, index); error != noErr) return error;
  constexpr u8 kMost = sizeof description.name - 1;
  const u8 length = std::min(text[0], kMost);
  std::memset(description.name, 0, sizeof description.name);
  description.name[0] = length;
  std::memcpy(description.name + 1, text + 1, length);
  return noErr;
}

void ClearFrameTail(u8* frame, u32 wordCursor, u32 recordedBytes) {
  const u32 written = (wordCursor - VOREL_FRAME_HEADER_WORDS + 1) * 4;
  if (written < recordedBytes) std::memset(frame + written, 0, recordedBytes - written);
}

}  // namespace vorel::component
