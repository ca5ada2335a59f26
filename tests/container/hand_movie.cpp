#include "tests/container/hand_movie.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vorel::container {

namespace {

Blob BigEndian(u64 value, int bytes) {
  Blob blob;
  for (int i = bytes - 1; i >= 0; --i) blob += static_cast<char>(value >> (8 * i) & 0xFF);
  return blob;
}

const Blob kMatrix = Be32(0x10000) + Zeros(12) + Be32(0x10000) + Zeros(12) + Be32(0x40000000);

}  // namespace

Blob Be16(u64 value) {
  return BigEndian(value, 2);
}
Blob Be32(u64 value) {
  return BigEndian(value, 4);
}
Blob Be64(u64 value) {
  return BigEndian(value, 8);
}
Blob Zeros(std::size_t count) {
  return Blob(count, '\0');
}

Blob Atom(const std::string& type, const Blob& payload) {
  return Be32(payload.size() + 8) + type + payload;
}
Blob WideAtom(const std::string& type, const Blob& payload) {
  return Be32(1) + type + Be64(payload.size() + 16) + payload;
}
Blob OpenAtomToEnd(const std::string& type, const Blob& payload) {
  return Be32(0) + type + payload;
}

Blob Ftyp() {
  return Atom("ftyp", "qt  " + Be32(0x20050300) + "qt  ");
}

Blob Mvhd(u32 timescale, u32 duration, u32 nextTrackId) {
  return Atom("mvhd", Be32(0) + Be32(100) + Be32(100) + Be32(timescale) + Be32(duration) + Be32(0x10000) +
                          Be16(0x100) + Zeros(10) + kMatrix + Zeros(24) + Be32(nextTrackId));
}

Blob Tkhd(u32 id, u32 duration, u32 width, u32 height, u32 flags) {
  return Atom("tkhd", Be32(flags) + Be32(100) + Be32(100) + Be32(id) + Be32(0) + Be32(duration) + Zeros(8) +
                          Be16(0) + Be16(0) + Be16(0) + Be16(0) + kMatrix + Be32(u64{width} << 16) +
                          Be32(u64{height} << 16));
}

Blob Mdhd(u32 timescale, u32 duration) {
  return Atom("mdhd", Be32(0) + Be32(100) + Be32(100) + Be32(timescale) + Be32(duration) + Be16(0) + Be16(0));
}

Blob Hdlr(const std::string& kind, const std::string& type, const std::string& name) {
  return Atom("hdlr", Be32(0) + kind + type + Zeros(12) + static_cast<char>(name.size()) + name);
}

Blob SelfContainedDinf() {
  return Atom("dinf", Table("dref", 1, Atom("alis", Be32(1))));
}

Blob ImageDescription(const std::string& codec, u32 width, u32 height, const Blob& extensions) {
  return Atom(codec, Zeros(6) + Be16(1) + Be16(0) + Be16(0) + "Vorl" + Be32(0) + Be32(1024) + Be16(width) +
                         Be16(height) + Be32(72 << 16) + Be32(72 << 16) + Be32(0) + Be16(1) + "\x04Test" +
                         Zeros(27) + Be16(24) + Be16(0xFFFF) + extensions);
}

Blob Table(const std::string& type, u32 count, const Blob& entries) {
  return Atom(type, Be32(0) + Be32(count) + entries);
}

HandTables ThreeFrameTables(u32 offset) {
  HandTables tables;
  tables.stsd = Table("stsd", 1, ImageDescription("Vrl4", 640, 360));
  tables.stts = Table("stts", 1, Be32(3) + Be32(1001));
  tables.stsc = Table("stsc", 1, Be32(1) + Be32(3) + Be32(1));
  tables.stsz = Atom("stsz", Be32(0) + Be32(0) + Be32(3) + Be32(4) + Be32(5) + Be32(6));
  tables.stco = Table("stco", 1, Be32(offset));
  return tables;
}

Blob VideoTrak(const HandTables& tables, u32 id, u32 flags) {
  const Blob stbl =
      Atom("stbl", tables.stsd + tables.stts + tables.stsc + tables.stsz + tables.stco + tables.more);
  const Blob vmhd = Atom("vmhd", Be32(1) + Be16(0x40) + Be16(0x8000) + Be16(0x8000) + Be16(0x8000));
  const Blob minf =
      Atom("minf", vmhd + Hdlr("dhlr", "alis", "Alias Data Handler") + SelfContainedDinf() + stbl);
  const Blob mdia = Atom("mdia", Mdhd(24000, 3003) + Hdlr("mhlr", "vide", "Video Media Handler") + minf);
  const Blob edts = Atom("edts", Table("elst", 1, Be32(3003) + Be32(0) + Be32(0x10000)));
  return Atom("trak", Tkhd(id, 3003, 640, 360, flags) + edts + mdia);
}

Blob ThreeFrameMovie(const HandTables& tables) {
  return Ftyp() + Atom("mdat", kThreeFrames) + Atom("moov", Mvhd(24000, 3003) + VideoTrak(tables));
}

MemoryFile::MemoryFile(const Blob& bytes) : descriptor(memfd_create("movie", MFD_CLOEXEC)) {
  if (descriptor < 0 || write(descriptor, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
    throw std::runtime_error("no memory file");
  }
}

MemoryFile::~MemoryFile() {
  close(descriptor);
}

Blob Contents(int descriptor) {
  Blob bytes(static_cast<std::size_t>(lseek(descriptor, 0, SEEK_END)), '\0');
  if (pread(descriptor, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    throw std::runtime_error("cannot read back");
  }
  return bytes;
}

Blob ContentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TestFolder::TestFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "container_test_XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder");
  path = pattern;
}

TestFolder::~TestFolder() {
  std::filesystem::remove_all(path);
}

void StoreFile(const std::string& path, const Blob& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace vorel::container
