// The six code sets of 1,024 symbols.
#include "entropy/code_tables.h"

namespace vorel {

VOREL_DEFINE_CODE_SET(kVideo10Progressive422, 1024)
VOREL_DEFINE_CODE_SET(kVideo10Interlaced422, 1024)
VOREL_DEFINE_CODE_SET(kVideo10Progressive444, 1024)
VOREL_DEFINE_CODE_SET(kVideo10Interlaced444, 1024)
VOREL_DEFINE_CODE_SET(kRgb10Progressive, 1024)
VOREL_DEFINE_CODE_SET(kRgb10Interlaced, 1024)

}  // namespace vorel
