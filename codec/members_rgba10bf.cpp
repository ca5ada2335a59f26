// The frame routines of RGBA10bf, progressive and interlaced.
#include "codec/frame_codec.h"

VOREL_DEFINE_MEMBERS(RGBA10bf)
