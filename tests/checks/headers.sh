#!/bin/sh
# Compiles every exported and every platform header alone, as a caller of any age or taste may include it:
# headers.sh COMPILER PROJECT_DIRECTORY
set -eu
compiler=$1
cd "$2"

warnings="-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Werror"
for header in include/*.h platform/*/*.h; do
  for flags in -std=c++11 -std=c++17 "-std=c++11 -fno-rtti"; do
    "$compiler" $flags $warnings -Iinclude -Iplatform -fsyntax-only -include "$header" -x c++ /dev/null ||
      { echo "$header does not compile alone with $compiler $flags"; exit 1; }
  done
done
