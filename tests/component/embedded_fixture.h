// A host for each test, with resources put together from literal bytes. Nothing may be in use at the end.
#pragma once
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/bytes.h"
#include "component/embedded/embedded_host.h"
#include "component/host_errors.h"
#include "component/selectors.h"

namespace vorel::component::embedded {

using Blob = std::string;

Blob Be16(u64 value);
Blob Be32(u64 value);
Blob PascalText(const std::string& text);

struct HandResource {
  std::string type;
  i16 id;
  Blob bytes;
};

// A fork as the platform's tools write it; resources of one type stand together.
Blob HandFork(const std::vector<HandResource>& resources);

// A 76-byte 'thng' and its 'dlle' of the same id.
std::vector<HandResource> HandComponent(i16 id, const std::string& codes, const std::string& entry);

inline std::span<const u8> BytesOf(const Blob& blob) {
  return {reinterpret_cast<const u8*>(blob.data()), blob.size()};
}

inline Blob TextOfHandle(Handle handle) {
  return {reinterpret_cast<const char*>(*handle), static_cast<std::size_t>(Host->GetHandleSize(handle))};
}

struct EmbeddedHostTest : testing::Test {
  void Start(const HostSettings& settings) { StartEmbeddedHost(settings); }

  // A test that is about misuse takes it into account here.
  HostCounts expectedAtEnd = {};

  void TearDown() override { EXPECT_EQ(StopEmbeddedHost(), expectedAtEnd); }
};

inline void PrintTo(const HostCounts& counts, std::ostream* out) {
  *out << counts.handles << " handles, " << counts.blocks << " blocks, " << counts.instances << " instances, "
       << counts.resourceFiles << " resource files, " << counts.dialogs << " dialogs, " << counts.misuses
       << " misuses";
}

}  // namespace vorel::component::embedded
