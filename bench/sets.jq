# The table of instruction sets from runs of vorel-bench with either, as an array.
include "numbers";

def fastest($set): [.[] | select(.context.instructions == $set) | .benchmarks[]]
  | group_by(.name) | map({key: .[0].name, value: (map(.["cycles/px"]) | min)}) | from_entries;

fastest("baseline") as $first | fastest("avx2") as $second
| .[0].benchmarks[].name | select(startswith("encode/")) | ltrimstr("encode/") as $name
| ($name | split("/") | .[0:2])
  + ([("encode", "decode") + "/" + $name | [$first[.], $second[.]] | (.[] | fixed(1)), (.[0] / .[1] | fixed(2))])
| "| " + join(" | ") + " |"
