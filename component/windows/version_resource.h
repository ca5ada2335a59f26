// The fixed part of a file's version resource.
#pragma once
#include <windows.h>

namespace vorel::component::windows {

// False for a file without one.
bool ReadVersionResource(const char* path, VS_FIXEDFILEINFO& version);

}  // namespace vorel::component::windows
