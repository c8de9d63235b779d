#!/bin/sh
# Fails unless each sample output of the README stands, as it is, in what one of these scenarios prints.
set -eu
softcard=$1
project=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for scenario in typical-request packets; do "$softcard" run "$project/scenarios/$scenario.scn"; done >"$work/real"
blocks=$(awk -v work="$work" '/^```/ { if (inside) inside = 0; else { inside = 1; sample = $0 == "```"; if (sample) block++ } next }
                              inside && sample { print > (work "/shown" block) }
                              END { print block + 0 }' "$project/README.md")
[ "$blocks" -ge 2 ] || { echo "README.md: no two sample outputs found between lines of three backquotes"; exit 1; }
for block in $(seq "$blocks"); do
  shown=$work/shown$block
  first=$(head -n 1 "$shown")
  lines=$(wc -l <"$shown")
  place=$(grep -nxF -- "$first" "$work/real" | head -n 1) || { echo "README.md: no scenario prints: $first"; exit 1; }
  tail -n "+${place%%:*}" "$work/real" | head -n "$lines" | diff -u - "$shown" ||
    { echo "README.md: a sample output differs from the real one; paste that"; exit 1; }
done
