// Speed of the conversions between pictures and samples of frames, without any coding.
#pragma once

namespace vorel::bench {

// Registers convert/fill/LAYOUT/PIXEL and convert/drain/LAYOUT/PIXEL for every pair there is.
void RegisterConversions();

}  // namespace vorel::bench
