#!/bin/bash
# Compiles the programs that the documents show, those that begin with their includes: examples.sh PROJECT_DIRECTORY
set -eu
cd "$1"

for document in README.md docs/integration.md; do
  program=$(awk '/^```cpp/ { block = ""; inside = 1; next }
                 /^```/ { if (inside && block ~ /^#include/) { print block; found = 1 } inside = 0 }
                 inside { block = block $0 "\n" }
                 END { exit !found }' "$document") || { echo "$document shows no program"; exit 1; }
  echo "$program" | c++ -std=c++11 -Wall -Wextra -Werror -Iinclude -Iplatform -fsyntax-only -x c++ - ||
    { echo "The program that $document shows does not compile."; exit 1; }
done
