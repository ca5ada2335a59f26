// The table of all frame routines, made from the catalogue, and the way from a pixel format and a tag to a
// routine.
#pragma once
#include <span>

#include "frame/frame_call.h"
#include "frame/frame_layout.h"
#include "frame/status.h"

namespace vorel {

enum class Direction : u8 { encode, decode };

struct FrameRoutine {
  const char* name;
  Direction direction;
  const FrameLayout* layout;
  Scan scan;
  u32 pixelFormat;
  bool takesColourStandard;
  bool takesScratch;
  Status (*run)(const FrameCall&);  // what the dispatch calls
  void (*exported)();               // the routine itself; its arguments follow from the columns above
};

// All routines, encoders first.
std::span<const FrameRoutine> AllRoutines();

// The routine for a pair, or null. `tag` is canonical.
const FrameRoutine* FindRoutine(Direction direction, u32 pixelFormat, u32 tag);

}  // namespace vorel
