// The frame routines of YCbCr10bv444, progressive and interlaced.
#include "codec/frame_codec.h"

VOREL_DEFINE_MEMBERS(YCbCr10bv444)
