// Open resource files: each opening gives a number of its own, and all stand for the fork that the host was
// given. Number 0 is the program's own file, which has no resources.
#include "component/embedded/resource_files.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <vector>

#include "component/embedded/big_endian_reader.h"
#include "component/embedded/instances.h"
#include "component/embedded/memory.h"
#include "component/embedded/operations.h"
#include "component/embedded/platform_results.h"
#include "component/embedded/resource_source.h"

namespace vorel::component::embedded {

namespace {

constexpr OSType kStringList = FourCharacterCode("STR#");
constexpr i16 kProgramFile = 0;
constexpr i16 kLastNumber = INT16_MAX;

struct ResourceFiles {
  std::mutex mutex;
  std::vector<i16> open;  // in the order of opening
  i16 current = kProgramFile;
};

ResourceFiles files;
thread_local OSErr resourceError = noErr;

bool IsOpen(i16 reference) {
  return std::find(files.open.begin(), files.open.end(), reference) != files.open.end();
}

// The lowest number that is free; 0 if there is none.
i16 FreeNumber() {
  i16 number = 1;
  while (number < kLastNumber && IsOpen(number)) ++number;
  return IsOpen(number) ? kProgramFile : number;
}

OSErr Close(i16 reference) {
  const std::scoped_lock lock(files.mutex);
  const auto found = std::find(files.open.begin(), files.open.end(), reference);
  if (found == files.open.end()) return resFNotFound;
  files.open.erase(found);
  if (files.current == reference) files.current = files.open.empty() ? kProgramFile : files.open.back();
  return noErr;
}

}  // namespace

OSErr ResError() {
  return resourceError;
}

void SetResError(OSErr error) {
  resourceError = error;
}

i16 OpenComponentResFile(ComponentInstance component) {
  resourceError = resFNotFound;
  if (ComponentBehind(component) == nullptr) return kProgramFile;
  const std::scoped_lock lock(files.mutex);
  const i16 reference = FreeNumber();
  if (reference == kProgramFile) return reference;
  files.open.push_back(reference);
  files.current = reference;
  resourceError = noErr;
  return reference;
}

OSErr CloseComponentResFile(i16 reference) {
  return resourceError = Close(reference);
}

void CloseResFile(i16 reference) {
  resourceError = Close(reference);
}

i16 CurResFile() {
  const std::scoped_lock lock(files.mutex);
  return files.current;
}

void UseResFile(i16 reference) {
  const std::scoped_lock lock(files.mutex);
  resourceError = reference == kProgramFile || IsOpen(reference) ? noErr : resFNotFound;
  if (resourceError == noErr) files.current = reference;
}

OSErr GetComponentResource(ComponentInstance component, OSType type, i16 id, Handle* resource) {
  if (resource == nullptr) return paramErr;
  *resource = nullptr;
  if (ComponentBehind(component) == nullptr) return invalidComponentID;
  const auto bytes = FindResourceBytes(type, id);
  if (!bytes) return resNotFound;
  *resource = NewHandleOf(*bytes);
  return MemError();
}

OSErr GetComponentIndString(ComponentInstance component, u8* text, i16 list, i16 index) {
  if (text == nullptr) return paramErr;
  text[0] = 0;
  if (ComponentBehind(component) == nullptr) return invalidComponentID;
  const auto bytes = FindResourceBytes(kStringList, list);
  if (!bytes) return resNotFound;
  BigEndianReader reader = {*bytes};
  const u16 count = Read16(reader);
  if (index < 1 || index > count) return resNotFound;
  std::string wanted;
  for (i16 i = 0; i < index; ++i) wanted = ReadText(reader);
  if (!reader.complete) return resNotFound;
  text[0] = static_cast<u8>(wanted.size());
  std::memcpy(text + 1, wanted.data(), wanted.size());
  return noErr;
}

i32 ResourceFilesInUse() {
  const std::scoped_lock lock(files.mutex);
  return static_cast<i32>(files.open.size());
}

void ForgetResourceFiles() {
  const std::scoped_lock lock(files.mutex);
  files.open.clear();
  files.current = kProgramFile;
}

}  // namespace vorel::component::embedded
