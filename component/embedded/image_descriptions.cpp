// Extensions of image descriptions. They follow the 86 bytes as size, type and data; size and type are native in
// memory and big-endian in files, the data are big-endian in both. What does not fit ends the walk and is kept:
// new extensions go in front of it.
#include <algorithm>
#include <cstring>

#include "base/bytes.h"
#include "component/embedded/memory.h"
#include "component/embedded/operations.h"
#include "component/embedded/platform_results.h"

namespace vorel::component::embedded {

namespace {

constexpr i32 kDescriptionBytes = sizeof(ImageDescription);
constexpr i32 kHeaderBytes = 8;
constexpr std::size_t kLongestListEnd = 3;
constexpr Fixed k72Dpi = 72 << 16;

struct Extension {
  i32 position;  // of its size, from the start of the description
  i32 bytes;     // header included
  u32 type;
};

// Whole extensions in order; `end` is where the last one ends.
struct ExtensionList {
  std::vector<Extension> extensions;
  i32 end;
};

Handle HandleOf(ImageDescriptionHandle description) {
  return reinterpret_cast<Handle>(description);
}

bool IsDescription(std::span<const u8> bytes) {
  return bytes.size() >= kDescriptionBytes;
}

// Bytes that the description claims, as far as it has them.
i32 ClaimedBytes(std::span<const u8> description) {
  const i32 claimed = LoadNative<i32>(description.data() + offsetof(ImageDescription, idSize));
  return std::clamp(claimed, kDescriptionBytes, static_cast<i32>(description.size()));
}

ExtensionList ListExtensions(std::span<const u8> description) {
  ExtensionList list = {{}, kDescriptionBytes};
  const i32 limit = ClaimedBytes(description);
  while (limit - list.end >= kHeaderBytes) {
    const u8* header = description.data() + list.end;
    const i32 bytes = LoadNative<i32>(header);
    if (bytes < kHeaderBytes || bytes > limit - list.end) break;
    list.extensions.push_back({list.end, bytes, LoadNative<u32>(header + 4)});
    list.end += bytes;
  }
  return list;
}

const Extension* FindExtension(const ExtensionList& list, u32 type, i32 index) {
  for (const Extension& extension : list.extensions)
    if (extension.type == type && --index == 0) return &extension;
  return nullptr;
}

void StoreDescriptionSize(Handle description, i32 size) {
  StoreNative<i32>(*description + offsetof(ImageDescription, idSize), size);
}

// Takes all extension bytes of a file apart into what memory holds. False for damaged bytes.
bool ReadFileForm(std::span<const u8> bytes, std::vector<u8>& memoryForm) {
  memoryForm.assign(bytes.begin(), bytes.end());
  std::size_t position = 0;
  while (bytes.size() - position >= kHeaderBytes) {
    const u32 size = LoadBig32(&bytes[position]);
    if (size == 0) break;
    if (size < kHeaderBytes || size > bytes.size() - position) return false;
    StoreNative<u32>(&memoryForm[position], size);
    StoreNative<u32>(&memoryForm[position + 4], LoadBig32(&bytes[position + 4]));
    position += size;
  }
  const std::span<const u8> rest = bytes.subspan(position);
  const bool zeros = std::all_of(rest.begin(), rest.end(), [](u8 byte) { return byte == 0; });
  memoryForm.resize(position);
  return zeros || rest.size() <= kLongestListEnd;
}

}  // namespace

OSErr GetImageDescriptionExtension(ImageDescriptionHandle description, Handle* data, i32 type, i32 index) {
  if (description == nullptr || data == nullptr) return paramErr;
  *data = nullptr;
  const std::span<const u8> bytes = HandleBytes(HandleOf(description));
  if (!IsDescription(bytes)) return paramErr;
  const ExtensionList list = ListExtensions(bytes);
  const Extension* extension = FindExtension(list, static_cast<u32>(type), index);
  if (extension == nullptr) return codecExtensionNotFoundErr;
  const auto position = static_cast<std::size_t>(extension->position);
  const auto size = static_cast<std::size_t>(extension->bytes);
  *data = NewHandleOf(bytes.subspan(position + kHeaderBytes, size - kHeaderBytes));
  return MemError();
}

OSErr AddImageDescriptionExtension(ImageDescriptionHandle description, Handle data, i32 type) {
  if (description == nullptr || data == nullptr) return paramErr;
  const i32 dataBytes = GetHandleSize(data);
  if (const OSErr error = MemError(); error != noErr) return error;
  const Handle handle = HandleOf(description);
  const std::span<const u8> before = HandleBytes(handle);
  if (!IsDescription(before)) return paramErr;
  const i32 end = ListExtensions(before).end;
  const i32 claimed = ClaimedBytes(before);
  if (dataBytes > INT32_MAX - kHeaderBytes) return memFullErr;
  const i32 added = kHeaderBytes + dataBytes;
  if (const OSErr error = InsertBytes(handle, end, added); error != noErr) return error;
  u8* header = *handle + end;
  StoreNative<i32>(header, added);
  StoreNative<i32>(header + 4, type);
  std::memcpy(header + kHeaderBytes, *data, static_cast<std::size_t>(dataBytes));
  StoreDescriptionSize(handle, claimed + added);
  return noErr;
}

OSErr RemoveImageDescriptionExtension(ImageDescriptionHandle description, i32 type, i32 index) {
  if (description == nullptr) return paramErr;
  const Handle handle = HandleOf(description);
  const std::span<const u8> before = HandleBytes(handle);
  if (!IsDescription(before)) return paramErr;
  const ExtensionList list = ListExtensions(before);
  const Extension* extension = FindExtension(list, static_cast<u32>(type), index);
  if (extension == nullptr) return codecExtensionNotFoundErr;
  const i32 claimed = ClaimedBytes(before);
  if (const OSErr error = RemoveBytes(handle, extension->position, extension->bytes); error != noErr)
    return error;
  StoreDescriptionSize(handle, claimed - extension->bytes);
  return noErr;
}

ImageDescriptionHandle MakeImageDescription(OSType type, i16 width, i16 height) {
  ImageDescription fields = {};
  fields.idSize = kDescriptionBytes;
  fields.cType = type;
  fields.width = width;
  fields.height = height;
  fields.hRes = k72Dpi;
  fields.vRes = k72Dpi;
  fields.frameCount = 1;
  fields.depth = 24;
  fields.clutID = -1;
  const Handle handle = NewHandleClear(kDescriptionBytes);
  if (handle != nullptr) std::memcpy(*handle, &fields, sizeof fields);
  return reinterpret_cast<ImageDescriptionHandle>(handle);
}

std::vector<u8> ExtensionBytes(ImageDescriptionHandle description) {
  const std::span<const u8> bytes = HandleBytes(HandleOf(description));
  if (!IsDescription(bytes)) return {};
  const ExtensionList list = ListExtensions(bytes);
  std::vector<u8> fileForm(bytes.begin() + kDescriptionBytes, bytes.begin() + list.end);
  for (const Extension& extension : list.extensions) {
    u8* header = &fileForm[static_cast<std::size_t>(extension.position - kDescriptionBytes)];
    StoreBig32(header, static_cast<u32>(extension.bytes));
    StoreBig32(header + 4, extension.type);
  }
  return fileForm;
}

OSErr AddExtensionBytes(ImageDescriptionHandle description, std::span<const u8> bytes) {
  std::vector<u8> memoryForm;
  if (bytes.size() > INT32_MAX || !ReadFileForm(bytes, memoryForm)) return codecBadDataErr;
  const Handle handle = HandleOf(description);
  const std::span<const u8> before = HandleBytes(handle);
  if (!IsDescription(before)) return paramErr;
  if (memoryForm.empty()) return noErr;
  const i32 end = ListExtensions(before).end;
  const i32 claimed = ClaimedBytes(before);
  const i32 added = static_cast<i32>(memoryForm.size());
  if (const OSErr error = InsertBytes(handle, end, added); error != noErr) return error;
  std::memcpy(*handle + end, memoryForm.data(), memoryForm.size());
  StoreDescriptionSize(handle, claimed + added);
  return noErr;
}

}  // namespace vorel::component::embedded
