#!/bin/bash
# Programs by name and version: is it AfterFX, and one before version 8?
# Usage: check_host_names.sh WINE FOLDER
set -euo pipefail
failed=0
expect() {  # program, answers
  found=$("$1" "$2/$3" | tr -d '\r')
  [ "$found" = "$4" ] || { echo "$3 says '$found', not '$4'"; failed=1; }
}
expect "$1" "$2" product7_file9/AfterFX.exe '1 1'
expect "$1" "$2" product9_file7/AfterFX.exe '1 1'
expect "$1" "$2" product8_file8/AfterFX.exe '1 0'
expect "$1" "$2" no_version/AfterFX.exe '1 0'
expect "$1" "$2" product7_file9/MyAfterFX.exe '1 1'
expect "$1" "$2" product7_file9/afterfx.exe '0 0'
expect "$1" "$2" product7_file9/AfterFX2.exe '0 0'
exit $failed
