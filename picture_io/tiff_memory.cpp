// The functions by which libtiff reads, writes and complains. None of them throws: there is C below them.
#include "picture_io/tiff_memory.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <exception>

namespace vorel::picture_io {

namespace {

TiffMemory& MemoryOf(thandle_t handle) {
  return *static_cast<TiffMemory*>(handle);
}

bool Grow(StoredPicture& file, std::size_t size) noexcept {
  try {
    if (file.size() < size) file.resize(size);
  } catch (const std::exception&) {
    return false;
  }
  return true;
}

extern "C" {

tmsize_t ReadTiffBytes(thandle_t handle, void* bytes, tmsize_t size) {
  TiffMemory& memory = MemoryOf(handle);
  if (size <= 0 || memory.position >= memory.file->size()) return 0;
  const std::size_t count = std::min(static_cast<std::size_t>(size), memory.file->size() - memory.position);
  std::memcpy(bytes, memory.file->data() + memory.position, count);
  memory.position += count;
  return static_cast<tmsize_t>(count);
}

tmsize_t WriteTiffBytes(thandle_t handle, void* bytes, tmsize_t size) {
  TiffMemory& memory = MemoryOf(handle);
  if (memory.written == nullptr || size < 0) return -1;
  const std::size_t count = static_cast<std::size_t>(size);
  if (!Grow(*memory.written, memory.position + count)) return -1;
  std::memcpy(memory.written->data() + memory.position, bytes, count);
  memory.position += count;
  return size;
}

toff_t SeekTiff(thandle_t handle, toff_t offset, int whence) {
  TiffMemory& memory = MemoryOf(handle);
  if (whence == SEEK_CUR) offset += memory.position;
  if (whence == SEEK_END) offset += memory.file->size();
  memory.position = offset;
  return offset;
}

toff_t SizeOfTiff(thandle_t handle) {
  return MemoryOf(handle).file->size();
}

int CloseTiff(thandle_t) {
  return 0;
}

int MapTiff(thandle_t handle, void** bytes, toff_t* size) {
  TiffMemory& memory = MemoryOf(handle);
  if (memory.written != nullptr) return 0;
  *bytes = const_cast<u8*>(memory.file->data());  // only read: there is nothing to write through it
  *size = memory.file->size();
  return 1;
}

void UnmapTiff(thandle_t, void*, toff_t) {}

int OnTiffError(TIFF*, void* user, const char*, const char* format, va_list arguments) {
  TiffMemory& memory = MemoryOf(user);
  if (memory.error[0] == 0) std::vsnprintf(memory.error, sizeof memory.error, format, arguments);
  return 1;
}

int OnTiffWarning(TIFF*, void* user, const char*, const char* format, va_list arguments) {
  TiffMemory& memory = MemoryOf(user);
  if (memory.warning[0] == 0) std::vsnprintf(memory.warning, sizeof memory.warning, format, arguments);
  return 1;
}

}  // extern "C"

}  // namespace

TiffHandle OpenTiff(TiffMemory& memory, const char* mode) {
  TIFFOpenOptions* const options = TIFFOpenOptionsAlloc();
  if (options == nullptr) return nullptr;
  TIFFOpenOptionsSetMaxSingleMemAlloc(options, kLargestTiffBlock);
  TIFFOpenOptionsSetErrorHandlerExtR(options, OnTiffError, &memory);
  TIFFOpenOptionsSetWarningHandlerExtR(options, OnTiffWarning, &memory);
  TIFF* const tiff = TIFFClientOpenExt("", mode, &memory, ReadTiffBytes, WriteTiffBytes, SeekTiff, CloseTiff,
                                       SizeOfTiff, MapTiff, UnmapTiff, options);
  TIFFOpenOptionsFree(options);
  return TiffHandle(tiff);
}

std::string TiffMessage(const TiffMemory& memory) {
  if (memory.error[0] != 0) return memory.error;
  return memory.warning[0] != 0 ? memory.warning : "no reason given";
}

}  // namespace vorel::picture_io
