// The table of all frame routines, made from the catalogue, and the way from a pixel format and a tag to a
// routine.
#pragma once
#include <span>

#include "frame/frame_call.h"
#include "frame/frame_layout.h"
#include "frame/status.h"

namespace vorel {

enum class Direction : u8 { encode, decode };

// A routine with the argument list that it is exported with: encoders and decoders, with a colour standard
// where a matrix is needed, with scratch where a progressive frame is decoded. Other lists do not compile.
union ExportedRoutine {
  using Encode = VorelStatus(u32, u32, i32, const void*, u32*, u32*, u32*);
  using MatrixEncode = VorelStatus(u32, u32, i32, const void*, u32, u32*, u32*, u32*);
  using Decode = VorelStatus(u32, u32, i32, void*, u32*, u32*, const u32*);
  using MatrixDecode = VorelStatus(u32, u32, i32, void*, u32, u32*, u32*, const u32*);
  using ScratchDecode = VorelStatus(u32, u32, i32, void*, u32*, u32*, const u32*, void*);
  using MatrixScratchDecode = VorelStatus(u32, u32, i32, void*, u32, u32*, u32*, const u32*, void*);

  constexpr ExportedRoutine(Encode* routine) : encode(routine) {}
  constexpr ExportedRoutine(MatrixEncode* routine) : matrixEncode(routine) {}
  constexpr ExportedRoutine(Decode* routine) : decode(routine) {}
  constexpr ExportedRoutine(MatrixDecode* routine) : matrixDecode(routine) {}
  constexpr ExportedRoutine(ScratchDecode* routine) : scratchDecode(routine) {}
  constexpr ExportedRoutine(MatrixScratchDecode* routine) : matrixScratchDecode(routine) {}

  Encode* encode;
  MatrixEncode* matrixEncode;
  Decode* decode;
  MatrixDecode* matrixDecode;
  ScratchDecode* scratchDecode;
  MatrixScratchDecode* matrixScratchDecode;
};

struct FrameRoutine {
  const char* name;
  Direction direction;
  const FrameLayout* layout;
  Scan scan;
  u32 pixelFormat;
  bool takesColourStandard;
  bool takesScratch;
  Status (*run)(const FrameCall&);  // what the dispatch calls
  ExportedRoutine exported;  // the routine itself; the columns above say which member of the union it is
};

// All routines, encoders first.
std::span<const FrameRoutine> AllRoutines();

// The routine for a pair, or null. `tag` is canonical.
const FrameRoutine* FindRoutine(Direction direction, u32 pixelFormat, u32 tag);

}  // namespace vorel
