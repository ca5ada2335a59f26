#include "component/work_memory.h"

#include "component/host.h"

namespace vorel::component {

bool GrowMemory(WorkMemory& memory, std::size_t size) {
  if (memory.bytes != nullptr && memory.size >= size) return true;
  FreeMemory(memory);
  memory.bytes = static_cast<u8*>(Host->Allocate(size));
  if (memory.bytes == nullptr) return false;
  memory.size = size;
  return true;
}

void FreeMemory(WorkMemory& memory) {
  if (memory.bytes != nullptr) Host->Free(memory.bytes);
  memory = {};
}

}  // namespace vorel::component
