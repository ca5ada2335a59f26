// Movies put together from literal bytes, without any code of the container: what the reader is tried on and
// the writer's output is compared with.
#pragma once
#include <string>
#include <vector>

#include "base/integers.h"

namespace vorel::container {

using Blob = std::string;

Blob Be16(u64 value);
Blob Be32(u64 value);
Blob Be64(u64 value);
Blob Zeros(std::size_t count);

// An atom with a 32-bit size, with a 64-bit size, and with size 0.
Blob Atom(const std::string& type, const Blob& payload);
Blob WideAtom(const std::string& type, const Blob& payload);
Blob OpenAtomToEnd(const std::string& type, const Blob& payload);

Blob Ftyp();
Blob Mvhd(u32 timescale, u32 duration, u32 nextTrackId = 2);
Blob Tkhd(u32 id, u32 duration, u32 width, u32 height, u32 flags = 15);
Blob Mdhd(u32 timescale, u32 duration);
Blob Hdlr(const std::string& kind, const std::string& type, const std::string& name);
Blob SelfContainedDinf();

// 86 bytes of image description and extensions.
Blob ImageDescription(const std::string& codec, u32 width, u32 height, const Blob& extensions = "");

// A table atom: version and flags 0, the count, the entries.
Blob Table(const std::string& type, u32 count, const Blob& entries);

// The parts of a video track's sample table; a test replaces what it is about.
struct HandTables {
  Blob stsd, stts, stsc, stsz, stco, more;
};

// Three frames of 4, 5 and 6 bytes in one chunk at `offset`, each 1001 units long.
HandTables ThreeFrameTables(u32 offset);

Blob VideoTrak(const HandTables& tables, u32 id = 1, u32 flags = 15);

// 'AAAA' 'BBBBB' 'CCCCCC'.
inline const Blob kThreeFrames = "AAAABBBBBCCCCCC";

// ftyp (20 bytes), mdat (8 + 15 bytes, frames at 28), moov at 43.
constexpr u32 kHandFrameOffset = 28;
constexpr u32 kHandMoovOffset = 43;
Blob ThreeFrameMovie(const HandTables& tables = ThreeFrameTables(kHandFrameOffset));

// A file of given bytes that has no name and goes away with the record.
struct MemoryFile {
  int descriptor;
  explicit MemoryFile(const Blob& bytes = "");
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile();
};

Blob Contents(int descriptor);
Blob ContentsOf(const std::string& path);

// A new empty folder that goes away with everything in it.
struct TestFolder {
  std::string path;
  TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;
  ~TestFolder();
};

void StoreFile(const std::string& path, const Blob& bytes);
std::vector<std::string> NamesIn(const std::string& folder);

}  // namespace vorel::container
