// The frame routines of RGB8bf, progressive and interlaced.
#include "codec/frame_codec.h"

VOREL_DEFINE_MEMBERS(RGB8bf)
