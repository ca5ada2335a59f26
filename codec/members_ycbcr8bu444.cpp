// The frame routines of YCbCr8bu444, progressive and interlaced.
#include "codec/frame_codec.h"

VOREL_DEFINE_MEMBERS(YCbCr8bu444)
