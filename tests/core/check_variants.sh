#!/bin/bash
# Objects compiled for another instruction set give nothing that the linker may take in place of the baseline's: every
# function in them bears the name of the set. Data is the same in both.
# Usage: check_variants.sh SET OBJECT...
set -euo pipefail
set=$1
shift
functions=$(nm -C --defined-only "$@" | awk -v set="vorel::$set::" '
  NF >= 3 && $2 ~ /^[TW]$/ { count++; if (index($0, set) == 0) print }
  END { if (count < 500) print "only " count + 0 " functions found" }')
[ -z "$functions" ] || { echo "without the name of $set:"; echo "$functions"; exit 1; }
