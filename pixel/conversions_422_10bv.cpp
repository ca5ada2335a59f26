// Conversions between pictures and the frames of Y'CbCr 10bv 4:2:2.
#include "pixel/conversion_instances.h"

VOREL_INSTANTIATE_CONVERSIONS(YCbCr10bv422)
VOREL_INSTANTIATE_CONVERSIONS(YCbCrA10bv4224)
