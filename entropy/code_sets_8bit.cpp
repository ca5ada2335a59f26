// The eight code sets of 256 symbols.
#include "entropy/code_tables.h"

namespace vorel {

VOREL_DEFINE_CODE_SET(kWide8Progressive, 256)
VOREL_DEFINE_CODE_SET(kWide8Interlaced, 256)
VOREL_DEFINE_CODE_SET(kVideo8Progressive422, 256)
VOREL_DEFINE_CODE_SET(kVideo8Interlaced422, 256)
VOREL_DEFINE_CODE_SET(kProgressive8b444, 256)
VOREL_DEFINE_CODE_SET(kInterlaced8b444, 256)
VOREL_DEFINE_CODE_SET(kRgb8Progressive, 256)
VOREL_DEFINE_CODE_SET(kRgb8Interlaced, 256)

}  // namespace vorel
