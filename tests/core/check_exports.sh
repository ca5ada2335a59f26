#!/bin/bash
# The shared library exports what the public headers declare, all of it and nothing else.
# Usage: check_exports.sh libvorel.so SOURCE_FOLDER
set -euo pipefail
exported=$(nm -D --defined-only "$1" | awk '$2 ~ /[TDRBVWi]/ { print $3 }' | sort)
declared=$(echo '#include "vorel/vorel.h"' | cc -E -P -I "$2/include" - | grep -oE '\bVorel[A-Za-z0-9_]+ *\(' | tr -d ' (' |
  grep -vE '^Vorel(Status|Family)$' | sort -u)
if [ "$exported" != "$declared" ]; then
  echo "exported and declared names differ (< only exported, > only declared):"
  diff <(echo "$exported") <(echo "$declared")
  exit 1
fi
[ "$(echo "$exported" | grep -c .)" -ge 32 ] || { echo "too few names: $exported"; exit 1; }
foreign=$(nm -D --undefined-only "$1" | awk '{ print $2 }' | grep -vE '^(mem(cpy|set|move|cmp)|__|_ITM_|_Unwind)' || true)
if [ -n "$foreign" ]; then
  echo "the core reaches outside for: $foreign"
  exit 1
fi
echo "$(echo "$exported" | wc -l) names exported"
