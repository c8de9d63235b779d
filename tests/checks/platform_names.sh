#!/bin/sh
# A card's headers may define any name that looks like the SDK's or the common library's, macros included: the module
# says only such names as platform/ declares.
# platform_names.sh PROJECT_DIRECTORY
set -eu
cd "$1"

names='\b(bcm|limid|fm|_shr|shr|soc|sal)_[A-Za-z0-9_]*'
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# What log lines and comments say is no name.
sed 's/"[^"]*"//g; s|//.*||' src/*/*.h src/*/*.cpp include/*.h >"$work/module"
grep -ohE "$names" "$work/module" | sort -u >"$work/said"
grep -ohE "$names" platform/*/*.h | sort -u >"$work/declared"
foreign=$(comm -23 "$work/said" "$work/declared")
if [ -n "$foreign" ]; then
  echo "names of the module that look like the platform's, and that platform/ does not declare:"
  echo "$foreign"
  exit 1
fi
echo "$(wc -l <"$work/said") names of the platform's kind, all of them declared"
[ -s "$work/said" ]
