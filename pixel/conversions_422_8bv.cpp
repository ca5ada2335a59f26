// Conversions between pictures and the frames of Y'CbCr 8bv and 8bw 4:2:2.
#include "pixel/conversion_instances.h"

VOREL_INSTANTIATE_CONVERSIONS(YCbCr8bv422)
VOREL_INSTANTIATE_CONVERSIONS(YCbCrA8bv4224)
VOREL_INSTANTIATE_CONVERSIONS(YCbCr8bw422)
