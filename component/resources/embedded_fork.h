// The resource fork of the components, made by the build and linked into libraries that carry it.
#pragma once
#include <cstddef>

namespace vorel::component {

extern const unsigned char kResourceFork[];
extern const std::size_t kResourceForkBytes;

}  // namespace vorel::component
