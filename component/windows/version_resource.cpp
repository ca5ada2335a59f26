#include "component/windows/version_resource.h"

namespace vorel::component::windows {

namespace {

bool ReadFixedPart(const char* path, void* block, DWORD size, VS_FIXEDFILEINFO& version) {
  if (GetFileVersionInfoA(path, 0, size, block) == FALSE) return false;
  void* fixed = nullptr;
  UINT length = 0;
  if (VerQueryValueA(block, "\\", &fixed, &length) == FALSE) return false;
  if (fixed == nullptr || length < sizeof version) return false;
  version = *static_cast<const VS_FIXEDFILEINFO*>(fixed);
  return true;
}

}  // namespace

bool ReadVersionResource(const char* path, VS_FIXEDFILEINFO& version) {
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeA(path, &ignored);
  if (size == 0) return false;
  void* const block = GlobalAlloc(GPTR, size);
  if (block == nullptr) return false;
  const bool found = ReadFixedPart(path, block, size, version);
  GlobalFree(block);
  return found;
}

}  // namespace vorel::component::windows
