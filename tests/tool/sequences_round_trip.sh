#!/bin/bash
# PNG pictures of another program's making go into movies and back, and that program finds them unchanged.
# Usage: sequences_round_trip.sh VOREL
set -euo pipefail
vorel=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

# Pixels that differ; of those that are wholly transparent only alpha counts here.
differing() { compare -metric AE "$1" "$2" null: 2>&1 || true; }

# All samples, those below transparent pixels too.
same_samples() { cmp <(convert "$1" -depth 8 "$3:-") <(convert "$2" -depth 8 "$3:-"); }

round_trip() { # NAME, order of samples
  "$vorel" encode -q --conversion perfect "$1.%03d.png"
  "$vorel" verify -q "$1.mov" --against "$1.%03d.png"
  "$vorel" decode -q "$1.mov" -o "back.$1.%03d.png" --start 8
  for number in 008 009 010 011; do
    ours="back.$1.$number.png"
    [ "$(identify -format '%m %wx%h %[channels]' "$ours")" = "PNG 199x101 s$2" ] || { identify "$ours"; exit 1; }
    count=$(differing "$1.$number.png" "$ours")
    [ "$count" = 0 ] || { echo "$ours: $count pixels differ"; exit 1; }
    same_samples "$1.$number.png" "$ours" "$2"
  done
  [ "$(ls "back.$1".*.png | wc -l)" = 4 ]
  echo "$1: 4 pictures, none differs"
}

size=199x101
number=8
for source in plasma: gradient:red-blue "xc:grey +noise Random" rose:; do
  # shellcheck disable=SC2086  # a source may be several words
  convert -seed "$number" -size $size $source -resize "$size!" -depth 8 "png24:colour.$(printf %03d $number).png"
  convert "colour.$(printf %03d $number).png" \( -seed 5$number -size $size plasma: -colorspace gray \) -alpha off \
    -compose CopyOpacity -composite -depth 8 "png32:alpha.$(printf %03d $number).png"
  number=$((number + 1))
done
# What finds nothing must be able to find something.
[ "$(differing colour.008.png colour.009.png)" != 0 ]
[ "$(differing alpha.008.png alpha.009.png)" != 0 ]
[ "$(convert alpha.008.png -alpha extract -format %k info:)" -gt 50 ]

round_trip colour rgb
round_trip alpha rgba
