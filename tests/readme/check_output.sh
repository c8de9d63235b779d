#!/bin/sh
# Fails unless the README's sample output stands, as it is, in what the demo's first scenario prints.
set -eu
softcard=$1
project=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

awk '/^```$/ { fence++; next } fence == 1' "$project/README.md" >"$work/shown"
[ -s "$work/shown" ] || { echo "README.md: no sample output found between lines of three backquotes"; exit 1; }
"$softcard" run "$project/scenarios/typical-request.scn" >"$work/real"
first=$(head -n 1 "$work/shown")
lines=$(wc -l <"$work/shown")
grep -nxF -- "$first" "$work/real" >"$work/place" || { echo "README.md: the demo does not print: $first"; exit 1; }
tail -n "+$(cut -d: -f1 "$work/place")" "$work/real" | head -n "$lines" | diff -u - "$work/shown" ||
  { echo "README.md: the sample output differs from the demo's; paste the real one"; exit 1; }
