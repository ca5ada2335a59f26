// Row stores for wide frames: 32 blocks of one size in one allocation. Frames of up to 4,100 pixels or so bring
// a store of their own and leave the pool alone.
#pragma once
#include <array>

#include "base/integers.h"

namespace vorel::component {

inline constexpr u32 kPoolBlocks = 32;
inline constexpr u32 kScratchAlignment = 16;

struct ScratchPool {
  u32 usedBlocks;  // bit n set: block n is lent
  u8* memory;      // null: there is no pool
  std::array<u8*, kPoolBlocks> blocks;
  u32 blockSize;
};

// Makes every block hold `size` bytes. A pool whose blocks do already is kept; another one is thrown away, so no
// block may be lent. False if there is no memory, with no pool left.
bool SizePool(ScratchPool& pool, u32 size);

// The first block that is free, aligned, marked as lent; -1 if all are lent.
i32 LendBlock(ScratchPool& pool);

void ReturnBlock(ScratchPool& pool, i32 block);

void FreePool(ScratchPool& pool);

// The next address that is aligned for a row store.
u8* AlignScratch(u8* memory);

}  // namespace vorel::component
