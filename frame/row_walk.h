// The way over the rows of a picture: in coding order, which is top row first for either sign of row bytes.
#pragma once
#include "base/instructions.h"
#include "base/integers.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Addresses are kept as numbers: the one behind the last row lies outside the picture, and is compared all
// the same.
struct RowWalk {
  std::uintptr_t row;    // address of the current row
  std::uintptr_t lower;  // where the next row may lie, both ends inclusive
  std::uintptr_t upper;
  std::intptr_t step;  // row bytes
};

inline RowWalk OpenRowWalk(const void* base, u32 height, i32 rowBytes) {
  const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(base);
  const std::intptr_t step = rowBytes;
  const std::uintptr_t bits = static_cast<std::uintptr_t>(step);
  const std::uintptr_t length = step < 0 ? 0 - bits : bits;
  RowWalk walk = {first, first + length, first + length * height, step};
  if (step < 0) {
    walk.row = first + length * (height - 1);
    walk.lower -= 2 * length;
    walk.upper -= 2 * length;
  }
  return walk;
}

inline u8* CurrentRow(const RowWalk& walk) {
  return reinterpret_cast<u8*>(walk.row);
}

// Goes on to the next row. False if that lies outside the picture; this cannot arise from arguments that
// passed the check and is a guard.
inline bool StepRow(RowWalk& walk) {
  walk.row += static_cast<std::uintptr_t>(walk.step);
  return walk.row >= walk.lower && walk.row <= walk.upper;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
