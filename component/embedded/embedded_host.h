// The host in a box: everything that components ask of a host, inside this process. It holds handles, process
// wide values, pixel formats, component resources, instances, a base image decompressor with threads of its
// own, and dialogs without a screen.
//
// One host runs at a time. All operations may be called from several threads at once; one handle, image
// description, dialog or instance belongs to one thread at a time.
#pragma once
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "component/entries.h"
#include "component/host.h"

namespace vorel::component::embedded {

/// Major numbers of the version resource of the program that components see around them.
struct ExecutableMajors {
  u32 product;
  u32 file;
};

inline constexpr i32 kLatestQuickTime = 0x07798000;  // 7.7.9, final

struct HostSettings {
  std::string executablePath = {};                        // empty: that of this process
  std::optional<ExecutableMajors> executableMajors = {};  // none: a program without a version resource
  std::optional<u32> processorMegahertz = {};             // none: what the machine says; 0: not known
  i32 quickTimeVersion = kLatestQuickTime;                // 0: the question for it fails
  std::optional<u32> baseThreads = {};       // none: one a processor; 0: all frames are synchronous
  std::span<const u8> resourceFork = {};     // of the components; only looked at during the start
  std::span<const NamedEntry> entries = {};  // what 'dlle' resources name; only looked at during the start
};

/// What is in use. `misuses` counts handles and blocks that were passed in and are not live: a second disposal,
/// or a stray pointer. They change nothing, but show a mistake in the caller.
struct HostCounts {
  i32 handles = 0;
  i32 blocks = 0;
  i32 instances = 0;
  i32 resourceFiles = 0;
  i32 dialogs = 0;
  i32 misuses = 0;
  bool operator==(const HostCounts&) const = default;
};

/// Starts the host and sets `Host`. Throws Problem when the resource fork is damaged, when one of its components
/// cannot be understood, or when a host runs already; `Host` is then as it was.
void StartEmbeddedHost(const HostSettings& settings);

/// Frees everything and unsets `Host`. Components that are still open are not called. Without a running host it
/// does nothing. Returns what was still in use.
HostCounts StopEmbeddedHost();

HostCounts CountsInUse();

/// Bytes of all handles and blocks in use.
u64 BytesInUse();

/// Lets the `number`-th allocation from now on fail, once; 1 is the next one. Handles that are made, copied or
/// resized count, and blocks. 0 takes it back.
void FailAllocation(i32 number);

/// Pixel formats that components have registered, in order.
std::vector<OSType> RegisteredPixelFormats();

// --- Components and calls ---

/// A component of the resource fork. `number` stands for it wherever a component is asked for: see AsComponent.
struct ComponentListing {
  u32 number;  // from 1
  i16 resource;
  OSType type;
  OSType subtype;
  OSType manufacturer;
  u32 version;
  u32 flags;
  std::string entry;        // name of the entry
  std::string name;         // UTF-8; empty without a 'strn'
  std::string information;  // UTF-8; empty without a 'stri'
};

/// All components that fit, in the order of the fork; 0 fits everything. The base image decompressor is not
/// listed, OpenADefaultComponent opens it.
std::vector<ComponentListing> FindComponents(OSType type, OSType subtype, OSType manufacturer);

/// A component where the host's operations take a component or an instance.
ComponentInstance AsComponent(u32 number);

/// Opens an instance of a component; Host->CloseComponent closes it. Returns what the component says to Open; the
/// instance is then null and gone, and the component is not called again. -3000 for a number that is no
/// component, or one whose entry was not given.
OSErr OpenComponent(u32 number, ComponentInstance* instance);

/// Calls a selector with at most kMostSlots slots.
ComponentResult CallWithSlots(ComponentInstance instance, i16 selector, std::span<const Slot> slots);

template <typename Argument>
Slot ToSlot(Argument argument) {
  if constexpr (std::is_pointer_v<Argument>) {
    return reinterpret_cast<Slot>(argument);
  } else if constexpr (std::is_null_pointer_v<Argument>) {
    return 0;
  } else {
    static_assert(std::is_integral_v<Argument> || std::is_enum_v<Argument>);
    static_assert(sizeof(Argument) <= sizeof(Slot));
    return static_cast<Slot>(argument);
  }
}

/// Calls a selector with numbers and pointers, each in a slot.
template <typename... Arguments>
ComponentResult CallSelector(ComponentInstance instance, i16 selector, Arguments... arguments) {
  static_assert(sizeof...(Arguments) <= kMostSlots);
  const Slot slots[sizeof...(Arguments) + 1] = {ToSlot(arguments)..., 0};
  return CallWithSlots(instance, selector, {slots, sizeof...(Arguments)});
}

// --- Image descriptions and pixel maps ---

/// A description without extensions: 72 dpi, one frame, no colour table, everything else 0. The caller disposes
/// of it. Null without memory.
ImageDescriptionHandle MakeImageDescription(OSType type, i16 width, i16 height);

/// All whole extensions as a movie file holds them: size, type and data, big-endian.
std::vector<u8> ExtensionBytes(ImageDescriptionHandle description);

/// Adds extensions in that form; up to three bytes, or zeros that close the list, may follow them. Returns 0,
/// -8969 for damaged bytes, or -108; the description is then as it was.
OSErr AddExtensionBytes(ImageDescriptionHandle description, std::span<const u8> bytes);

/// What a pixel map cannot hold itself. It lives as long as the map.
struct PixelMapExtension {
  i32 rowBytes;
  Fixed gammaLevel;  // 0: the platform's
};

/// Sets row bytes of any size and sign, and the gamma level, by way of `extension`.
void SetPixelMapRows(PixMap& map, PixelMapExtension& extension, i32 rowBytes, Fixed gammaLevel);

}  // namespace vorel::component::embedded
