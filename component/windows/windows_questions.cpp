// What components ask about the process and the machine, and the host's call that has an entry of its own.
#include <windows.h>

#include "component/host_errors.h"
#include "component/windows/version_resource.h"
#include "component/windows/windows_host.h"

namespace vorel::component::windows {

// The first call of every instance comes this way, so that a missing host is told, not jumped into.
ComponentResult CallWithStorage(Handle storage, ComponentParameters* parameters, SelectorFunction function) {
  const auto bind = bindHook;
  if (bind != nullptr) {
    if (const OSErr error = bind(); error != noErr) return error;
  }
  return callComponentFunctionWithStorage(storage, parameters, function);
}

u32 ExecutablePath(char* path, u32 room) {
  return GetModuleFileNameA(nullptr, path, room);
}

Boolean ExecutableVersions(u32* product, u32* file) {
  constexpr DWORD kRoom = 4096;
  char path[kRoom];
  const DWORD length = GetModuleFileNameA(nullptr, path, kRoom);
  VS_FIXEDFILEINFO version;
  if (length == 0 || length >= kRoom || !ReadVersionResource(path, version)) return 0;
  *product = HIWORD(version.dwProductVersionMS);
  *file = HIWORD(version.dwFileVersionMS);
  return 1;
}

u32 ProcessorMegahertz() {
  constexpr const char* kProcessorKey = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, kProcessorKey, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) return 0;
  DWORD speed = 0;
  DWORD size = sizeof speed;
  const LSTATUS status =
      RegQueryValueExA(key, "~MHz", nullptr, nullptr, reinterpret_cast<BYTE*>(&speed), &size);
  RegCloseKey(key);
  return status == ERROR_SUCCESS && size == sizeof speed ? speed : 0;
}

void* Allocate(std::size_t size) {
  return GlobalAlloc(GPTR, size);  // fixed and zeroed
}

void Free(void* memory) {
  GlobalFree(memory);
}

}  // namespace vorel::component::windows
