// The frame routines of YCbCr8bw422, progressive and interlaced.
#include "codec/frame_codec.h"

VOREL_DEFINE_MEMBERS(YCbCr8bw422)
