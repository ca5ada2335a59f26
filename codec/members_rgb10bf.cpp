// The frame routines of RGB10bf, progressive and interlaced.
#include "codec/frame_codec.h"

VOREL_DEFINE_MEMBERS(RGB10bf)
