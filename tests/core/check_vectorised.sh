#!/bin/bash
# The loops over strips hold packed instructions: nothing tells if the compiler stops making them, but the speed.
# Usage: check_vectorised.sh libvorel.a
set -euo pipefail
objdump -d -C --no-show-raw-insn "$1" | awk '
  # Loops over three-byte pixels, and those that store groups of v210, have functions of their own; a change of depth
  # alone may be a copy.
  function judge() {
    if (name == "" || name ~ /Px(RGB|BGR)[,)>]|Store<vorel::Pxv210/ || name ~ /ChangePlane<[0-9]+, vorel::(baseline|avx2)::RangeMap{0, 1, 0, 1,/) return
    checked++
    if (packed == 0) { print "no packed instruction in " name; bad = 1 }
  }
  /^[0-9a-f]+ <.*>:$/ {
    judge()
    name = ""
    packed = 0
    if ($0 ~ /vorel::(baseline|avx2)::(FullColourToYcc|VideoColourToYcc|YccToFullColour|YccToVideoColour|MapPlane|ChangePlane|FilterChroma|InterpolateChroma|DivideStrip|Load|Store|StoreGroups|StoreThreeBytes|SumFromLeft|RebuildLeftOnly|PredictPlane|PredictChroma|IndexPairs|PredictLeftOnly|PredictFromAbove|ChainColours)[<(]/)
      name = $0
    next
  }
  name != "" && $2 ~ /^v?(p(mul|madd|add|sub|srl|sra|sll|ack|unpck|and|or)|punpck)/ { packed++ }
  END {
    judge()
    if (checked < 150) { print "only " checked " loops found"; bad = 1 }
    print checked " loops looked at"
    exit bad
  }'
