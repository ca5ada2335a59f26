// The frame routines of RGBA8bf, progressive and interlaced.
#include "codec/frame_codec.h"

VOREL_DEFINE_MEMBERS(RGBA8bf)
