// The frame routines of YCbCr8bv422, progressive and interlaced.
#include "codec/frame_codec.h"

VOREL_DEFINE_MEMBERS(YCbCr8bv422)
