// Routines of Y'CbCr 8bw 4:2:2 in both scans.
#include "codec422/pair_codec.h"
#include "frame/member_macros.h"

VOREL_DEFINE_MEMBERS(YCbCr8bw422)
