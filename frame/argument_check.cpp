#include "frame/argument_check.h"

namespace vorel {
namespace {

bool IsMultipleOf4(const void* pointer) {
  return reinterpret_cast<std::uintptr_t>(pointer) % 4 == 0;
}

}  // namespace

Status CheckArguments(const FrameCall& call, u32 bitsPerPixel, [[maybe_unused]] const char* routineName) {
  const u32 rowLength =
      call.rowBytes < 0 ? 0 - static_cast<u32>(call.rowBytes) : static_cast<u32>(call.rowBytes);
  if (static_cast<i32>(call.width) < 1) return Status::badWidth;
  if (static_cast<i32>(call.height) < 1) return Status::badHeight;
  // Both products wrap in 32 bits and are compared as signed numbers.
  if (static_cast<i32>(rowLength * 8) < static_cast<i32>(bitsPerPixel * call.width))
    return Status::rowTooShort;
  if (call.base == nullptr) return Status::baseMissing;
  if (rowLength % 4 != 0 || !IsMultipleOf4(call.base)) return Status::pictureMisaligned;
  if (call.wordCursor == nullptr) return Status::wordCursorMissing;
  if (!IsMultipleOf4(call.wordCursor)) return Status::wordCursorMisaligned;
  if (call.bitCursor == nullptr) return Status::bitCursorMissing;
  if (!IsMultipleOf4(call.bitCursor)) return Status::bitCursorMisaligned;
  if (call.frame == nullptr) return Status::frameMissing;
  if (!IsMultipleOf4(call.frame)) return Status::frameMisaligned;
  return Status::complete;
}

}  // namespace vorel
