#!/bin/bash
# Runs each test of a program in a process of its own.
# Usage: run_alone.sh WINE PROGRAM
set -euo pipefail
tests=$("$1" "$2" --gtest_list_tests | tr -d '\r' | awk '/^[^ ]/ { suite = $1; next } { print suite $1 }' | grep -v '^Running')
failed=0
count=0
for test in $tests; do
  output=$("$1" "$2" --gtest_filter="$test" --gtest_brief=1) || { echo "$output"; failed=1; }
  count=$((count + 1))
done
echo "$count tests, each in a process of its own"
[ "$count" -gt 20 ] && exit $failed
