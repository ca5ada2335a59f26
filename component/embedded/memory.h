// Handles and blocks, counted, so that a test can demand that nothing is left and can let any allocation fail.
#pragma once
#include <span>

#include "component/embedded/embedded_host.h"

namespace vorel::component::embedded {

/// A new handle with a copy of `bytes`; null without memory.
Handle NewHandleOf(std::span<const u8> bytes);

/// Bytes of a live handle; empty for any other.
std::span<u8> HandleBytes(Handle handle);

/// Moves everything in the handle from `position` on by `count` bytes, which are zeros when bytes come in and are
/// lost when they go. Returns a host error, and changes nothing then.
OSErr InsertBytes(Handle handle, i32 position, i32 count);
OSErr RemoveBytes(Handle handle, i32 position, i32 count);

void CountMemory(HostCounts& counts);
void FreeAllMemory();

}  // namespace vorel::component::embedded
