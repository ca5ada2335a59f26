#include "component/codec_information.h"

#include <cstring>
#include <initializer_list>

#include "base/bytes.h"
#include "component/host_errors.h"

namespace vorel::component {

namespace {

constexpr OSType kCodecInfo = FourCharacterCode("cdci");
constexpr u16 kRevision = 0x0267;

template <typename Field>
void Swap(u8* bytes) {
  StoreNative(bytes, SwapBytes(LoadNative<Field>(bytes)));
}

// From the order of files to the order of the machine.
void SwapFields(u8* info) {
  for (const std::size_t offset :
       {offsetof(CodecInfo, version), offsetof(CodecInfo, revisionLevel),
        offsetof(CodecInfo, compressionSpeed), offsetof(CodecInfo, decompressionSpeed),
        offsetof(CodecInfo, minimumHeight), offsetof(CodecInfo, minimumWidth),
        offsetof(CodecInfo, decompressPipelineLatency), offsetof(CodecInfo, compressPipelineLatency)}) {
    Swap<u16>(info + offset);
  }
  for (const std::size_t offset :
       {offsetof(CodecInfo, vendor), offsetof(CodecInfo, decompressFlags), offsetof(CodecInfo, compressFlags),
        offsetof(CodecInfo, formatFlags), offsetof(CodecInfo, privateData)}) {
    Swap<u32>(info + offset);
  }
}

}  // namespace

// Some hosts turn the fields to the order of the machine as they load the resource, and some don't: the
// revision, which is known, tells.
OSErr CopyCodecInfo(ComponentInstance self, i16 id, CodecInfo* info) {
  if (info == nullptr) return paramErr;
  Handle resource = nullptr;
  if (const OSErr error = Host->GetComponentResource(self, kCodecInfo, id, &resource); error != noErr)
    return error;
  OSErr error = resNotFound;
  if (resource != nullptr && Host->GetHandleSize(resource) >= static_cast<i32>(sizeof(CodecInfo))) {
    u8 bytes[sizeof(CodecInfo)];
    std::memcpy(bytes, *resource, sizeof bytes);
    if (LoadNative<u16>(bytes + offsetof(CodecInfo, revisionLevel)) == SwapBytes(kRevision))
      SwapFields(bytes);
    std::memcpy(info, bytes, sizeof bytes);
    error = noErr;
  }
  if (resource != nullptr) Host->DisposeHandle(resource);
  return error;
}

}  // namespace vorel::component
