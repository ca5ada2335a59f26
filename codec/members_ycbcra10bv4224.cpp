// The frame routines of YCbCrA10bv4224, progressive and interlaced.
#include "codec/frame_codec.h"

VOREL_DEFINE_MEMBERS(YCbCrA10bv4224)
