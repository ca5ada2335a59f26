#!/bin/bash
# Frames and pictures that routines make here and on Windows are the same, byte for byte, with every instruction set.
# Usage: check_same_frames.sh WINE PROGRAM_OF_WINDOWS PROGRAM_OF_THIS_SYSTEM
set -euo pipefail
[ -x "$3" ] || { echo "$3 is not there; build it: cmake --build --preset release --target frame_hashes" >&2; exit 1; }
here=$("$3" baseline)
lines=$(wc -l <<< "$here")
[ "$lines" -eq 1082 ] || { echo "$lines routines, not 1082"; exit 1; }

# Compares what a program makes with what was made first; without the instructions there is nothing to compare.
compare() {
  local status=0 made
  made=$("$@" | tr -d '\r') || status=$?
  if [ "$status" -eq 3 ]; then
    echo "NOT RUN: $*: this processor doesn't have these instructions"
    return
  fi
  [ "$status" -eq 0 ] || { echo "$*: exit status $status"; exit 1; }
  diff <(echo "$here") <(echo "$made")
  echo "$lines routines make the same: $*"
}
compare "$3" avx2
compare "$1" "$2" baseline
compare "$1" "$2" avx2
