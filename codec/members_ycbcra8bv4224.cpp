// The frame routines of YCbCrA8bv4224, progressive and interlaced.
#include "codec/frame_codec.h"

VOREL_DEFINE_MEMBERS(YCbCrA8bv4224)
