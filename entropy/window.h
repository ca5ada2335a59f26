// The register that bits pass through, in either direction: 64 bits where that is one register, 32 elsewhere. Frames
// are the same.
#pragma once
#include <type_traits>

#include "base/integers.h"

namespace vorel {

using NativeWindow = std::conditional_t<sizeof(void*) == 8, u64, u32>;

template <typename Window>
inline constexpr u32 kWindowBits = sizeof(Window) * 8;

}  // namespace vorel
