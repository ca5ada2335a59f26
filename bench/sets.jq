# The table of instruction sets from rounds of vorel-bench, as an array.
include "numbers";

def middle: sort | .[length / 2 | floor];

([.[].benchmarks[]] | group_by(.name) | map({key: .[0].name, value: map(.gain) | middle}) | from_entries) as $gains
| .[0].benchmarks[].name | select(startswith("sets/encode/")) | ltrimstr("sets/encode/") as $name
| ($name | split("/") | .[0:2]) + [("sets/encode/", "sets/decode/") + $name | $gains[.] | fixed(2)]
| "| " + join(" | ") + " |"
