// Conversions between pictures and the frames of RGB with 10 bits.
#include "pixel/conversion_instances.h"

VOREL_INSTANTIATE_CONVERSIONS(RGB10bf)
VOREL_INSTANTIATE_CONVERSIONS(RGBA10bf)
