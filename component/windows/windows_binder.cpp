// Binding to the host. No import names it: it is looked for when the first call goes to it, and again with every
// call until it is there.
#include <windows.h>

#include "component/host_errors.h"
#include "component/windows/quicktime_search.h"
#include "component/windows/version_resource.h"
#include "component/windows/windows_host.h"

vorel::component::OSErr (*bindHook)() = vorel::component::windows::BindQuickTime;
void* theQuickTimeDispatcher = nullptr;

namespace vorel::component::windows {

void* moduleHandle = nullptr;
ComponentResult (*callComponent)(ComponentInstance, ComponentParameters*) = nullptr;
ComponentResult (*callComponentFunctionWithStorage)(Handle, ComponentParameters*, SelectorFunction) = nullptr;

namespace {

constexpr u32 kFirstNewVersion = 0x07000200;  // 7.0.2

bool versionChecked = false;
bool versionIsNew = false;

// One byte for each of the four parts, whatever stands above it.
u32 PackVersion(const VS_FIXEDFILEINFO& version) {
  return (HIWORD(version.dwFileVersionMS) & 0xFFu) << 24 | (LOWORD(version.dwFileVersionMS) & 0xFFu) << 16 |
         (HIWORD(version.dwFileVersionLS) & 0xFFu) << 8 | (LOWORD(version.dwFileVersionLS) & 0xFFu);
}

bool IsNew(HMODULE library) {
  constexpr DWORD kRoom = 4096;
  char path[kRoom];
  const DWORD length = GetModuleFileNameA(library, path, kRoom);
  VS_FIXEDFILEINFO version;
  return length != 0 && length < kRoom && ReadVersionResource(path, version) &&
         PackVersion(version) >= kFirstNewVersion;
}

// Asked once; the answer stays.
bool VersionIsNew() {
  if (versionChecked) return versionIsNew;
  const bool isBound = moduleHandle != nullptr;
  const HMODULE library = isBound ? static_cast<HMODULE>(moduleHandle) : LoadQuickTime();
  versionIsNew = library != nullptr && IsNew(library);
  versionChecked = true;
  if (!isBound && library != nullptr) FreeLibrary(library);
  return versionIsNew;
}

template <typename Entry>
bool Resolve(const char* name, Entry& entry) {
  entry = reinterpret_cast<Entry>(
      reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(moduleHandle), name)));
  return entry != nullptr;
}

}  // namespace

OSErr BindQuickTime() {
  const bool loads = moduleHandle == nullptr;
  if (loads) moduleHandle = LoadQuickTime();
  if (moduleHandle == nullptr) return qtmlDllLoadErr;
  if (!Resolve("_CallComponentFunctionWithStorage", callComponentFunctionWithStorage) ||
      !Resolve("_CallComponent", callComponent) ||
      !Resolve("theQuickTimeDispatcher", theQuickTimeDispatcher)) {
    return qtmlDllEntryNotFoundErr;
  }
  // Another thread that finds no hook jumps through the entries at once.
  __atomic_store_n(&bindHook, nullptr, __ATOMIC_RELEASE);
  // New versions keep themselves in memory. The entries stay good when this reference to them goes.
  if (loads && VersionIsNew() && HostHoldsItself() != 0) {
    FreeLibrary(static_cast<HMODULE>(moduleHandle));
    moduleHandle = nullptr;
  }
  return noErr;
}

}  // namespace vorel::component::windows
