// Conversions between pictures and the frames of Y'CbCr 10bv 4:4:4.
#include "pixel/conversion_instances.h"

VOREL_INSTANTIATE_CONVERSIONS(YCbCr10bv444)
VOREL_INSTANTIATE_CONVERSIONS(YCbCrA10bv4444)
