// The frame routines of YCbCr8bv444, progressive and interlaced.
#include "codec/frame_codec.h"

VOREL_DEFINE_MEMBERS(YCbCr8bv444)
