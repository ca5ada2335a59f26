#!/bin/bash
# The finished component library as a file: what the loader of the system and the host's reader of resources see.
# Usage: check_library.sh BUILD_FOLDER MAKE_RESOURCES
set -euo pipefail
export LC_ALL=C  # bytes are bytes
library=$1/VorelVideo.qtx
linked=$1/component/windows/VorelVideo.qtx  # before the resources
make_resources=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "check_library: $library: $1" >&2; exit 1; }

i686-w64-mingw32-objdump -p "$library" > "$work/headers"
has() { grep -qE "$1" "$work/headers" || fail "$2"; }
has 'file format pei-i386' 'is not for 32-bit x86'
has '^Magic[[:space:]]+010b' 'has no 32-bit header'
has '^[[:space:]]+DLL$' 'is not a DLL'
has '^Entry 5 [0-9a-f]+ 0*[1-9a-f][0-9a-f]* Base Relocation' 'cannot be moved: it has no relocations'

# Exports: these names, plain, each a function of the code section.
expected=$(printf '%s\n' DllMain Qd_ Qd{0..6} Qe_ Qe{0..6} Qt{2..6} | LC_ALL=C sort)
exported=$(sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/p' "$work/headers" | awk '/\[ *[0-9]+\]/ { print $NF }' | LC_ALL=C sort)
[ "$exported" = "$expected" ] || fail "exports other names: $(diff <(echo "$expected") <(echo "$exported") || true)"
read -r text_size text_start < <(i686-w64-mingw32-objdump -h "$library" | awk '$2 == ".text" { print $3, $4 }')
base=$(awk '/^ImageBase/ { print $2 }' "$work/headers")
for address in $(awk '/Export RVA/ { print $(NF - 2) }' "$work/headers"); do
  (( 0x$address + 0x$base >= 0x$text_start && 0x$address + 0x$base < 0x$text_start + 0x$text_size )) ||
    fail "an export at $address is no function"
done

# Imports: libraries that every system has.
imported=$(awk '/DLL Name:/ { print toupper($3) }' "$work/headers" | LC_ALL=C sort | tr '\n' ' ')
[ "$imported" = "ADVAPI32.DLL KERNEL32.DLL MSVCRT.DLL VERSION.DLL " ] || fail "imports $imported"

# Names that are looked up when it runs.
for name in QuickTime.qts _CallComponentFunctionWithStorage _CallComponent theQuickTimeDispatcher; do
  grep -qaF "$name" "$linked" || fail "does not look for $name"
done

# The container: library, fork, directory of three entries.
size=$(stat -c %s "$library")
(( size % 512 == 0 )) || fail "is $size bytes long, no multiple of 512"
image=$(stat -c %s "$linked")
"$make_resources" "$work/fork"
fork=$(stat -c %s "$work/fork")
directory=$(tail -c 48 "$library" | od -An -v -tx1 | tr -d ' \n')
wanted=$(printf '%024d' 0; printf data | od -An -tx1 | tr -d ' \n'; printf '%08x%08x' 0 "$image"
         printf rsrc | od -An -tx1 | tr -d ' \n'; printf '%08x%08x' "$image" "$fork"
         printf 'mkQuickTime\xaa' | od -An -tx1 | tr -d ' \n')
[ "$directory" = "$wanted" ] || fail "ends in the directory $directory, not in $wanted"
cmp -n "$image" "$library" "$linked" || fail 'changed the library that was linked'
cmp -n "$fork" -i "$image:0" "$library" "$work/fork" || fail 'holds other resources'

# The version resource, as its three numbers stand in it.
grep -qaP '\xbd\x04\xef\xfe\x00\x00\x01\x00\x06\x00\x02\x00\x00\x00\x07\x00' "$linked" || fail 'is not version 2.6.7'
echo "VorelVideo.qtx: 22 exports, imports $imported, resources of $fork bytes behind $image bytes"
