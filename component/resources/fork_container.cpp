// A fork behind a library:
//
//   library | fork | zeros | 12 zeros | "data" 0 D | "rsrc" D R | signature
//
// D and R are the lengths of library and fork; the zeros make the whole a multiple of 512 bytes. The loader of
// the system ignores what stands behind the last section of a library.
#include <algorithm>
#include <limits>

#include "base/bytes.h"
#include "base/problem.h"
#include "component/resources/resource_bytes.h"
#include "component/resources/resource_fork.h"

namespace vorel::component {
namespace {

constexpr std::size_t kEntryBytes = 12;
constexpr std::size_t kDirectoryBytes = 4 * kEntryBytes;
constexpr std::size_t kBlockBytes = 512;
constexpr std::size_t kMostEntries = 64;  // that are looked at; a writer makes three
constexpr u8 kSignature[kEntryBytes] = {'m', 'k', 'Q', 'u', 'i', 'c', 'k', 'T', 'i', 'm', 'e', 0xAA};
constexpr u32 kForkEntry = FourCharacterCode("rsrc");
constexpr u32 kImageEntry = FourCharacterCode("data");

bool EndsWithSignature(const u8* file, std::size_t fileBytes) {
  return fileBytes >= kEntryBytes &&
         std::equal(kSignature, kSignature + kEntryBytes, file + fileBytes - kEntryBytes);
}

void PutEntry(Bytes& bytes, u32 type, std::size_t offset, std::size_t length) {
  Put32(bytes, type);
  Put32(bytes, static_cast<u32>(offset));
  Put32(bytes, static_cast<u32>(length));
}

}  // namespace

Bytes AppendFork(const Bytes& image, const Bytes& fork, const std::string& where) {
  if (EndsWithSignature(image.data(), image.size())) {
    throw Problem{"the file carries a resource fork already", where, "Append to the file as it was linked."};
  }
  if (u64{image.size()} + fork.size() > std::numeric_limits<u32>::max()) {
    throw Problem{"the file is longer than 4 GiB with its resource fork", where, "Link a smaller library."};
  }
  const std::size_t used = image.size() + fork.size() + kDirectoryBytes;
  Bytes file = image;
  file.reserve(used + kBlockBytes);
  file.insert(file.end(), fork.begin(), fork.end());
  PutZeros(file, kBlockBytes - used % kBlockBytes + kEntryBytes);
  PutEntry(file, kImageEntry, 0, image.size());
  PutEntry(file, kForkEntry, image.size(), fork.size());
  file.insert(file.end(), kSignature, kSignature + kEntryBytes);
  return file;
}

ForkPlace FindFork(const u8* file, std::size_t fileBytes, const std::string& where) {
  if (!EndsWithSignature(file, fileBytes)) {
    throw Problem{"the file carries no resource fork: its last 12 bytes are not the signature", where,
                  "Append the fork after the last change of the file."};
  }
  std::size_t at = fileBytes - kEntryBytes;
  for (std::size_t i = 0; i < kMostEntries && at >= kEntryBytes; ++i) {
    at -= kEntryBytes;
    const u32 type = LoadBig32(file + at);
    if (type == 0) break;
    if (type != kForkEntry) continue;
    const u64 offset = LoadBig32(file + at + 4);
    const u64 bytes = LoadBig32(file + at + 8);
    if (offset + bytes <= at) return {static_cast<std::size_t>(offset), static_cast<std::size_t>(bytes)};
    throw Problem{"the resource fork, " + std::to_string(bytes) + " bytes at " + std::to_string(offset) +
                      ", reaches beyond the directory of the file",
                  where, "The file is damaged; take another copy."};
  }
  throw Problem{"the directory of the file names no resource fork", where,
                "The file is damaged; take another copy."};
}

}  // namespace vorel::component
