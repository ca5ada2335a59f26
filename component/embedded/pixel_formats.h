// Pixel formats by number: those that the host knows by itself and those that components register.
#pragma once
#include <optional>

#include "component/embedded/embedded_host.h"

namespace vorel::component::embedded {

/// Bytes from the start of a row to a pixel; none if the format is unknown or no pixel can start there alone.
std::optional<i64> BytesToPixel(OSType pixelFormat, i32 pixel);

void ForgetPixelFormats();

}  // namespace vorel::component::embedded
