// The eight code sets of 256 symbols, and the faster tables of those that row coders use.
#include "entropy/code_tables.h"
#include "entropy/symbol_groups.h"

namespace vorel {

VOREL_DEFINE_CODE_SET(kWide8Progressive, 256)
VOREL_DEFINE_CODE_SET(kWide8Interlaced, 256)
VOREL_DEFINE_CODE_SET(kVideo8Progressive422, 256)
VOREL_DEFINE_CODE_SET(kVideo8Interlaced422, 256)
VOREL_DEFINE_CODE_SET(kProgressive8b444, 256)
VOREL_DEFINE_CODE_SET(kInterlaced8b444, 256)
VOREL_DEFINE_CODE_SET(kRgb8Progressive, 256)
VOREL_DEFINE_CODE_SET(kRgb8Interlaced, 256)

#define VOREL_DEFINE_ROW_CODES(NAME)                                                      \
  static constinit const PairCodeTable NAME##Pairs = MakePairCodes(NAME##Checked);        \
  static constinit const SymbolGroupTable NAME##Groups = MakeSymbolGroups(NAME##Checked); \
  constinit const RowCodes8 NAME##Rows = {&NAME, &NAME##Pairs, &NAME##Groups};

VOREL_DEFINE_ROW_CODES(kWide8Progressive)
VOREL_DEFINE_ROW_CODES(kWide8Interlaced)

}  // namespace vorel
