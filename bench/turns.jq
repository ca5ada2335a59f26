# A table of what vorel-bench measured in turns, from its JSON: $kind is "sets", "scans" or "share".
include "numbers";

(.benchmarks | map({key: .name, value: .["times as fast"]}) | from_entries) as $ratios
| "\($kind)/encode/" as $encode | "\($kind)/decode/" as $decode
| .benchmarks[].name | select(startswith($encode)) | ltrimstr($encode) as $name
| ($name | split("/") | .[0:2]) + [($encode, $decode) + $name | $ratios[.] | fixed(2)]
| "| " + join(" | ") + " |"
