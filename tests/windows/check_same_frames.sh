#!/bin/bash
# Frames and pictures that routines make here and on Windows are the same, byte for byte.
# Usage: check_same_frames.sh WINE PROGRAM_OF_WINDOWS PROGRAM_OF_THIS_SYSTEM
set -euo pipefail
[ -x "$3" ] || { echo "$3 is not there; build it: cmake --build --preset release --target frame_hashes" >&2; exit 1; }
here=$("$3")
there=$("$1" "$2" | tr -d '\r')
lines=$(wc -l <<< "$here")
[ "$lines" -eq 1082 ] || { echo "$lines routines, not 1082"; exit 1; }
diff <(echo "$here") <(echo "$there")
echo "$lines routines make the same"
