// Conversions between pictures and the frames of RGB with 8 bits.
#include "pixel/conversion_instances.h"

VOREL_INSTANTIATE_CONVERSIONS(RGB8bf)
VOREL_INSTANTIATE_CONVERSIONS(RGBA8bf)
