#!/bin/bash
# Runs every scenario on two builds of the command and compares what they print, but for the module's address.
# compare.sh SCENARIOS WORK_DIRECTORY NATIVE_COMMAND OTHER_COMMAND...
set -u
scenarios=$1 work=$2 native=$3
shift 3

if [ ! -x "$native" ]; then
  echo "$native is missing: build the release preset first."
  exit 1
fi
transcript() {
  "$@" 2>&1 | sed 's/this=0x[0-9A-F]\{8\}/this=ADDRESS/'
  echo "exit status ${PIPESTATUS[0]}"
}

compared=0 differences=0
while read -r scenario; do
  transcript "$native" run "$scenario" >"$work/native.txt"
  transcript "$@" run "$scenario" >"$work/other.txt"
  compared=$((compared + 1))
  diff "$work/native.txt" "$work/other.txt" >"$work/diff.txt" && continue
  echo "$scenario:"
  cat "$work/diff.txt"
  differences=$((differences + 1))
done < <(find "$scenarios" -name '*.scn' | sort)
echo "$compared transcripts compared, $differences differ"
[ $compared -gt 0 ] && [ $differences -eq 0 ]
