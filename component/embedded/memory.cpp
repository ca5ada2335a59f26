// Handles, blocks, and the allocation that is to fail. Every resize moves the block of a handle: a pointer that
// was kept across it is stale at once, where a sanitizer sees it, and not only now and then.
#include "component/embedded/memory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "component/embedded/operations.h"
#include "component/embedded/platform_results.h"

namespace vorel::component::embedded {

namespace {

struct HandleBlock {
  u8* master;  // the handle is the address of this field
  i32 size;
};

struct Memory {
  std::mutex mutex;
  std::unordered_map<Handle, std::unique_ptr<HandleBlock>> handles;
  std::unordered_map<void*, std::size_t> blocks;  // with their sizes
  i32 allocationsUntilFailure = 0;                // 0: none is to fail
  i32 misuses = 0;
};

Memory memory;
thread_local OSErr memoryError = noErr;

// The mutex is held. Whether this allocation is the one to fail.
bool IsToFail() {
  return memory.allocationsUntilFailure > 0 && --memory.allocationsUntilFailure == 0;
}

void* Zeroed(std::size_t size) {
  return std::calloc(std::max<std::size_t>(size, 1), 1);
}

// The mutex is held. Null when this allocation is the one to fail.
void* AllocateZeroed(std::size_t size) {
  return IsToFail() ? nullptr : Zeroed(size);
}

// The mutex is held. Null for what is no live handle.
HandleBlock* FindHandle(Handle handle) {
  const auto found = memory.handles.find(handle);
  if (found != memory.handles.end()) return found->second.get();
  if (handle != nullptr) ++memory.misuses;
  memoryError = nilHandleErr;
  return nullptr;
}

Handle MakeHandle(i64 size) {
  memoryError = memFullErr;
  if (size < 0 || size > std::numeric_limits<i32>::max()) return nullptr;
  u8* bytes = static_cast<u8*>(AllocateZeroed(static_cast<std::size_t>(size)));
  if (bytes == nullptr) return nullptr;
  auto block = std::make_unique<HandleBlock>(HandleBlock{bytes, static_cast<i32>(size)});
  const Handle handle = &block->master;
  memory.handles.emplace(handle, std::move(block));
  memoryError = noErr;
  return handle;
}

bool Resize(HandleBlock& block, i64 size) {
  memoryError = memFullErr;
  if (size < 0 || size > std::numeric_limits<i32>::max()) return false;
  u8* bytes = static_cast<u8*>(AllocateZeroed(static_cast<std::size_t>(size)));
  if (bytes == nullptr) return false;
  std::memcpy(bytes, block.master, static_cast<std::size_t>(std::min<i64>(size, block.size)));
  std::free(block.master);
  block.master = bytes;
  block.size = static_cast<i32>(size);
  memoryError = noErr;
  return true;
}

}  // namespace

OSErr MemError() {
  return memoryError;
}

Handle NewHandleClear(i32 size) {
  const std::scoped_lock lock(memory.mutex);
  return MakeHandle(size);
}

void DisposeHandle(Handle handle) {
  const std::scoped_lock lock(memory.mutex);
  memoryError = noErr;
  if (handle == nullptr) return;
  const HandleBlock* block = FindHandle(handle);
  if (block == nullptr) return;
  std::free(block->master);
  memory.handles.erase(handle);
}

void SetHandleSize(Handle handle, i32 size) {
  const std::scoped_lock lock(memory.mutex);
  if (HandleBlock* block = FindHandle(handle)) Resize(*block, size);
}

i32 GetHandleSize(Handle handle) {
  const std::scoped_lock lock(memory.mutex);
  const HandleBlock* block = FindHandle(handle);
  if (block == nullptr) return 0;
  memoryError = noErr;
  return block->size;
}

OSErr HandToHand(Handle* handle) {
  const std::scoped_lock lock(memory.mutex);
  const HandleBlock* source = handle == nullptr ? FindHandle(nullptr) : FindHandle(*handle);
  if (source == nullptr) return memoryError;
  const Handle copy = MakeHandle(source->size);
  if (copy == nullptr) return memoryError;
  std::memcpy(*copy, source->master, static_cast<std::size_t>(source->size));
  *handle = copy;
  return noErr;
}

OSErr HandAndHand(Handle source, Handle destination) {
  const std::scoped_lock lock(memory.mutex);
  const HandleBlock* from = FindHandle(source);
  if (from == nullptr) return memoryError;
  HandleBlock* to = FindHandle(destination);
  if (to == nullptr) return memoryError;
  const i32 count = from->size;  // both may be the same handle
  const i32 position = to->size;
  if (!Resize(*to, i64{position} + count)) return memoryError;
  std::memcpy(to->master + position, from->master, static_cast<std::size_t>(count));
  return noErr;
}

// Blocks are as large as frames: zeroing one, and giving it back to the system, holds no other thread up.
void* Allocate(std::size_t size) {
  {
    const std::scoped_lock lock(memory.mutex);
    if (IsToFail()) return nullptr;
  }
  void* const block = Zeroed(size);
  if (block == nullptr) return nullptr;
  const std::scoped_lock lock(memory.mutex);
  memory.blocks.emplace(block, size);
  return block;
}

void Free(void* block) {
  if (block == nullptr) return;
  {
    const std::scoped_lock lock(memory.mutex);
    if (memory.blocks.erase(block) == 0) {
      ++memory.misuses;
      return;
    }
  }
  std::free(block);
}

Handle NewHandleOf(std::span<const u8> bytes) {
  const std::scoped_lock lock(memory.mutex);
  const Handle handle = MakeHandle(static_cast<i64>(bytes.size()));
  if (handle != nullptr && !bytes.empty()) std::memcpy(*handle, bytes.data(), bytes.size());
  return handle;
}

std::span<u8> HandleBytes(Handle handle) {
  const std::scoped_lock lock(memory.mutex);
  const HandleBlock* block = FindHandle(handle);
  if (block == nullptr) return {};
  return {block->master, static_cast<std::size_t>(block->size)};
}

OSErr InsertBytes(Handle handle, i32 position, i32 count) {
  const std::scoped_lock lock(memory.mutex);
  HandleBlock* block = FindHandle(handle);
  if (block == nullptr) return memoryError;
  const i32 behind = block->size - position;
  if (!Resize(*block, i64{block->size} + count)) return memoryError;
  u8* gap = block->master + position;
  std::memmove(gap + count, gap, static_cast<std::size_t>(behind));
  std::memset(gap, 0, static_cast<std::size_t>(count));
  return noErr;
}

OSErr RemoveBytes(Handle handle, i32 position, i32 count) {
  const std::scoped_lock lock(memory.mutex);
  HandleBlock* block = FindHandle(handle);
  if (block == nullptr) return memoryError;
  u8* bytes = static_cast<u8*>(AllocateZeroed(static_cast<std::size_t>(block->size - count)));
  if (bytes == nullptr) return memoryError = memFullErr;
  std::memcpy(bytes, block->master, static_cast<std::size_t>(position));
  std::memcpy(bytes + position, block->master + position + count,
              static_cast<std::size_t>(block->size - position - count));
  std::free(block->master);
  block->master = bytes;
  block->size -= count;
  return memoryError = noErr;
}

void FailAllocation(i32 number) {
  const std::scoped_lock lock(memory.mutex);
  memory.allocationsUntilFailure = number;
}

void CountMemory(HostCounts& counts) {
  const std::scoped_lock lock(memory.mutex);
  counts.handles = static_cast<i32>(memory.handles.size());
  counts.blocks = static_cast<i32>(memory.blocks.size());
  counts.misuses = memory.misuses;
}

u64 BytesInUse() {
  const std::scoped_lock lock(memory.mutex);
  u64 bytes = 0;
  for (const auto& [handle, block] : memory.handles) bytes += static_cast<u64>(block->size);
  for (const auto& [block, size] : memory.blocks) bytes += size;
  return bytes;
}

void FreeAllMemory() {
  const std::scoped_lock lock(memory.mutex);
  for (const auto& [handle, block] : memory.handles) std::free(block->master);
  for (const auto& [block, size] : memory.blocks) std::free(block);
  memory.handles.clear();
  memory.blocks.clear();
  memory.allocationsUntilFailure = 0;
  memory.misuses = 0;
}

}  // namespace vorel::component::embedded
