// Conversions between pictures and the frames of Y'CbCr 8bv 4:4:4.
#include "pixel/conversion_instances.h"

VOREL_INSTANTIATE_CONVERSIONS(YCbCr8bv444)
VOREL_INSTANTIATE_CONVERSIONS(YCbCrA8bv4444)
