// Pictures from PNG files.
#pragma once
#include "bench/pictures.h"

namespace vorel::bench {

// Every folder of `folder` that holds PNG files is a sequence. Throws std::runtime_error.
std::vector<Sequence> LoadFolder(const std::string& folder);

}  // namespace vorel::bench
