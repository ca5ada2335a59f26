// The base image decompressor, 'imdc' 'base': it schedules the frames of the component that has set itself as its
// target. Frames are begun and ended in calls into the base, one at a time and in the order in which they came;
// only drawing happens on threads. A frame whose band call has a completion procedure reports its result there
// and nowhere else, from within a later call: band, Busy, Flush or Close. A band call that returns an error has
// not begun its frame.
#pragma once
#include "base/bytes.h"
#include "component/entries.h"

namespace vorel::component::embedded {

inline constexpr OSType kBaseType = FourCharacterCode("imdc");
inline constexpr OSType kBaseSubtype = FourCharacterCode("base");

ComponentResult BaseDecompressorEntry(ComponentParameters* parameters, Handle storage);

/// What a base decompressor's work function is given beside its reference.
struct WorkFunctionHeader {
  u32 headerSize;
  u32 recordSize;
  u32 workFlags;
  u16 processorCount;
  u8 unused;
  u8 isRunning;
};
static_assert(sizeof(WorkFunctionHeader) == 16);

inline constexpr u32 kWorkDo = 1;
inline constexpr u32 kWorkGetProcessorCount = 16;
inline constexpr u32 kWorkGetIsRunning = 64;

}  // namespace vorel::component::embedded
