// Where the host's library lies on this machine.
#pragma once
#include <windows.h>

#include <array>

#include "base/integers.h"

namespace vorel::component::windows {

// Its text ends in 0. A path that does not fit is no path.
struct PathText {
  std::array<char, MAX_PATH> text;
  std::size_t length;
};

// Folders of the host's library and of its extensions, with a separator at the end and room left for the
// library's name. False if none is found.
bool FindQuickTimeFolder(PathText& folder);
bool FindExtensionsFolder(PathText& folder);

// Loads the library from either folder; null if it is in none.
HMODULE LoadQuickTime();

}  // namespace vorel::component::windows
