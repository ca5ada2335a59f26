#include "component/self_check.h"

#include "component/family_dispatch.h"
#include "component/host_errors.h"
#include "component/work_memory.h"
#include "vorel/pixel_formats.h"

namespace vorel::component {

OSErr CheckFrame(Compressor& instance, const CheckedFrame& checked) {
  const u32 stride =
      checked.rowBytes < 0 ? 0u - static_cast<u32>(checked.rowBytes) : static_cast<u32>(checked.rowBytes);
  if (!GrowMemory(instance.picture, std::size_t{stride} * checked.height) ||
      !GrowMemory(instance.rowStore, VorelScratchBytes(checked.width))) {
    return memFullErr;
  }
  u32 wordCursor = 0;
  u32 bitCursor = 0;
  const VorelStatus decoded =
      DecodeStrictly(instance.row->family, checked.pixelFormat, checked.formatChoice, checked.width,
                     checked.height, checked.rowBytes, instance.picture.bytes, checked.colourStandard,
                     &wordCursor, &bitCursor, checked.frame, checked.flags, instance.rowStore.bytes);
  if (decoded != VOREL_COMPLETE) return codecConditionErr;
  if (wordCursor != checked.wordCursor || bitCursor != checked.bitCursor) return codecBadDataErr;
  // 'R10k' and 'r210' are compared under these names and not under those that they are coded as.
  const auto compare = [&](u32 format) {
    return VorelComparePictures(format, (checked.formatChoice & VOREL_KEEP_ALPHA) != 0 ? 1 : 0, checked.flags,
                                checked.width, checked.height, checked.rowBytes, checked.base,
                                instance.picture.bytes);
  };
  VorelStatus compared = compare(checked.hostFormat);
  if (compared == VOREL_NO_ROUTINE) compared = compare(checked.pixelFormat);
  if (compared == VOREL_PICTURES_DIFFER) return codecBadDataErr;
  return compared == VOREL_COMPLETE ? noErr : codecConditionErr;
}

}  // namespace vorel::component
