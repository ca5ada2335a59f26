# Tables of docs/performance.md from what vorel-bench writes as JSON. `rows`, a string, has lines of
# "words of the first columns|MEMBER/PIXEL/GROUP" for $kind "every", or "PIXEL|GROUP|MEMBER MEMBER..." for the
# others: "class" makes the table of a class of samples, "points" lines for its plot.

include "numbers";

def row: "| " + join(" | ") + " |";

# Size of what a run made of a pixel.
def size: [(.ratio | fixed(2)), (8e-3 * .["MB/s"] * .["ns/px"] / .ratio | fixed(2))];

def speed($copy):
  [(.["MB/s"] | fixed(0)), (.["ns/px"] | fixed(2)), (.["cycles/px"] | fixed(1)), (.["MB/s"] / $copy["MB/s"] | fixed(3))];

def every($all):
  split("|") as [$head, $name]
  | $all["memcpy/\($name)"] as $copy
  | ($head | split(" ")) + ($all["encode/\($name)"] | size + speed($copy)) + ($all["decode/\($name)"] | speed($copy))
  | row;

# Our members and the peers that hold such samples, under the names that tables and plots give them.
def coders($all):
  split("|") as [$pixel, $group, $members]
  | [($members | split(" ")[] | {name: ., isOurs: true, key: "\(.)/\($pixel)/\($group)"}),
     ("qoi", "png1", "lz4", "zstd1", "jpeg-ls", "jpeg-xl", "htj2k"
      | {name: ., isOurs: false, key: "\(.)/\($pixel)/\($group)"})
     | . + {encode: $all["encode/\(.key)"], decode: $all["decode/\(.key)"]} | select(.encode)];

def class($all):
  coders($all) as $coders
  | $all["memcpy/\($coders[0].key)"] as $copy
  | ([$coders[] | select(.isOurs | not) | .encode["MB/s"]] | max) as $bestEncode
  | ([$coders[] | select(.isOurs | not) | .decode["MB/s"]] | max) as $bestDecode
  | ($coders[]
     | [if .isOurs then "**\(.name)**" else .name end] + (.encode | size + speed($copy) + [.["MB/s"] / $bestEncode | fixed(2)])
       + (.decode | speed($copy) + [.["MB/s"] / $bestDecode | fixed(2)])
     | row),
    (["memcpy", "1.00", ""] + ($copy | speed($copy) + [.["MB/s"] / $bestEncode | fixed(2)])
       + ($copy | speed($copy) + [.["MB/s"] / $bestDecode | fixed(2)]) | row);

def points($all):
  coders($all)[] | [.name, (.isOurs | if . then 1 else 0 end), .encode.ratio, .encode["MB/s"], .decode["MB/s"]] | @tsv;

([.benchmarks[] | {key: .name, value: .}] | from_entries) as $all
| $rows | split("\n")[] | select(. != "")
| if $kind == "every" then every($all) elif $kind == "class" then class($all) else points($all) end
