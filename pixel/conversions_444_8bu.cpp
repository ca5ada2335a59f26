// Conversions between pictures and the frames of Y'CbCr 8bu 4:4:4.
#include "pixel/conversion_instances.h"

VOREL_INSTANTIATE_CONVERSIONS(YCbCr8bu444)
VOREL_INSTANTIATE_CONVERSIONS(YCbCrA8bu4444)
