// What a component asks of its surroundings when it is opened: the application, the host's version, the
// processor. And the pixel formats that it makes known to a host that does not have them.
#pragma once
#include "component/host.h"

namespace vorel::component {

// This application is always given R'G'B'. Up to its version 7 it names pictures of little-endian words by the
// pixel format of big-endian ones, 'b64a'.
struct HostFacts {
  bool hostIsOldAfterEffects;
  bool hostIsAfterEffects;
  u32 quickTimeVersion;  // 0x06508000 is 6.5
};

inline constexpr u32 kQuickTime6 = 0x06000000;
inline constexpr u32 kQuickTime65 = 0x06500000;
inline constexpr u32 kQuickTime7 = 0x07000000;

bool HostIsAfterEffects();

bool HostIsOldAfterEffects();

// Asks all questions. A host without a version fails.
OSErr ProbeHost(HostFacts& facts);

// Make pixel formats known that the host doesn't know: all that there are, or one of them.
void RegisterPixelFormats(u32 quickTimeVersion);
void RegisterPixelFormat(OSType pixelFormat, u32 quickTimeVersion);

// The time that a frame takes, in the host's unit: by the depth of the component's subtype, the area in pixels
// and the processor's speed.
u32 CompressionTime(OSType subtype, i32 width, i32 height);

}  // namespace vorel::component
