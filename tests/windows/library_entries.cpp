// The entries of VorelVideo.qtx, as a host finds them: by the names that its resources give, in the library as it
// is loaded. Before, the stand-in for the platform is there.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

#include "component/resources/resource_fork.h"
#include "tests/component/component_fixture.h"
#include "tests/windows/library_under_test.h"

namespace vorel::component {

namespace {

[[noreturn]] void Stop(const char* what) {
  std::fprintf(stderr, "library_entries: %s (%lu)\n", what, GetLastError());
  std::exit(1);
}

HMODULE Load(const char* name) {
  const HMODULE library = LoadLibraryA(name);
  if (library == nullptr) Stop(name);
  return library;
}

template <typename Function>
Function Find(HMODULE library, const char* name) {
  const auto found = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
  if (found == nullptr) Stop(name);
  return found;
}

Bytes ReadFile(const char* name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<Resource> ReadResources(const char* name) {
  const Bytes file = ReadFile(name);
  const ForkPlace place = FindFork(file.data(), file.size(), name);
  return ReadFork(file.data() + place.offset, place.bytes, name);
}

LibraryUnderTest LoadAll() {
  LibraryUnderTest all;
  const HMODULE stand = Load("QuickTime.qts");
  all.standIn = Find<GetStandIn>(stand, "GetStandIn")();
  all.standIn->host = &Host;
  const char* const shift = std::getenv("VOREL_STACK_SHIFT");
  all.standIn->stackShift = shift == nullptr ? 0 : static_cast<u32>(std::atoi(shift));
  all.module = Load("VorelVideo.qtx");
  all.callsWhileLoading = all.standIn->calls + all.standIn->storageCalls;
  all.resources = ReadResources("VorelVideo.qtx");
  return all;
}

std::vector<NamedEntry> FindEntries(LibraryUnderTest& library) {
  std::vector<NamedEntry> entries;
  for (const Resource& resource : library.resources) {
    if (resource.type != FourCharacterCode("dlle")) continue;
    const char* const name = reinterpret_cast<const char*>(resource.bytes.data());
    entries.push_back({name, Find<ComponentEntry>(static_cast<HMODULE>(library.module), name)});
  }
  return entries;
}

}  // namespace

LibraryUnderTest& TestedLibrary() {
  static LibraryUnderTest library = LoadAll();
  return library;
}

std::span<const NamedEntry> TestedEntries() {
  static const std::vector<NamedEntry> entries = FindEntries(TestedLibrary());
  return entries;
}

}  // namespace vorel::component
