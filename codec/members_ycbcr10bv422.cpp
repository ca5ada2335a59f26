// The frame routines of YCbCr10bv422, progressive and interlaced.
#include "codec/frame_codec.h"

VOREL_DEFINE_MEMBERS(YCbCr10bv422)
