#include "component/scratch_pool.h"

#include <bit>

#include "component/host.h"

namespace vorel::component {

bool SizePool(ScratchPool& pool, u32 size) {
  if (pool.memory != nullptr && pool.blockSize >= size) return true;
  if (pool.usedBlocks != 0) return false;
  FreePool(pool);
  // Aligned starts and whole steps keep every block aligned.
  const std::size_t step =
      (std::size_t{size} + kScratchAlignment - 1) / kScratchAlignment * kScratchAlignment;
  const std::size_t most = static_cast<std::size_t>(-1) / kPoolBlocks - kScratchAlignment;
  if (step < size || step > most) return false;
  pool.memory = static_cast<u8*>(Host->Allocate(step * kPoolBlocks + kScratchAlignment));
  if (pool.memory == nullptr) return false;
  u8* block = AlignScratch(pool.memory);
  for (u8*& start : pool.blocks) {
    start = block;
    block += step;
  }
  pool.blockSize = size;
  return true;
}

i32 LendBlock(ScratchPool& pool) {
  const u32 block = static_cast<u32>(std::countr_one(pool.usedBlocks));
  if (block >= kPoolBlocks) return -1;
  pool.usedBlocks |= u32{1} << block;
  return static_cast<i32>(block);
}

void ReturnBlock(ScratchPool& pool, i32 block) {
  pool.usedBlocks &= ~(u32{1} << block);
}

void FreePool(ScratchPool& pool) {
  if (pool.memory != nullptr) Host->Free(pool.memory);
  pool = {};
}

u8* AlignScratch(u8* memory) {
  const std::uintptr_t over = reinterpret_cast<std::uintptr_t>(memory) % kScratchAlignment;
  return over == 0 ? memory : memory + (kScratchAlignment - over);
}

}  // namespace vorel::component
