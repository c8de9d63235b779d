#!/bin/bash
# What a card's engineer is told when the build is set up wrongly: each message names the thing and the remedy.
# configure_errors.sh PROJECT WORK_DIRECTORY WHOLE_LIBRARY INCOMPLETE_LIBRARY
set -u
project=$1 work=$2 whole=$3 incomplete=$4
headers=$project/tests/external/card
rm -rf "$work"
mkdir -p "$work"
failures=0

# refuses WHAT EXPECTED-LINE... -- CMAKE-OPTION...: configuring fails, and its output holds each of the lines.
refuses() {
  local what=$1 expected=()
  shift
  while [ "$1" != -- ]; do expected+=("$1"); shift; done
  shift
  if cmake -S "$project" -B "$work/build" -G Ninja -DHAL_PLATFORM=external "$@" >"$work/output" 2>&1; then
    echo "$what: accepted"
    failures=$((failures + 1))
  fi
  for line in "${expected[@]}"; do
    grep -qF -- "$line" "$work/output" && continue
    echo "$what: the output lacks: $line"
    cat "$work/output"
    failures=$((failures + 1))
  done
  rm -rf "$work/build"
}

refuses "no include directories" "set HAL_PLATFORM_INCLUDE_DIRS too" -- "-DHAL_PLATFORM_LIBRARIES=$whole"

refuses "a library that is not there" "HAL_PLATFORM_LIBRARIES names /nowhere/libcard.so, which does not exist" -- \
  "-DHAL_PLATFORM_INCLUDE_DIRS=$headers" -DHAL_PLATFORM_LIBRARIES=/nowhere/libcard.so

cp -r "$headers" "$work/headers"
cp "$whole" "$work/libcard.so"
object=src/CMakeFiles/encapsulation_objects.dir/encapsulation/LabelStack.cpp.o
(cd "$work" && cmake -S "$project" -B build -G Ninja -DHAL_PLATFORM=external -DHAL_PLATFORM_INCLUDE_DIRS=headers \
  -DHAL_PLATFORM_LIBRARIES="libcard.so;./libcard.so" && cmake build && cmake --build build --target $object) >"$work/output" 2>&1 ||
  { echo "paths from where the user stands: refused"; cat "$work/output"; failures=$((failures + 1)); }
rm -rf "$work/build"
refuses "a path as a text" "HAL_PLATFORM_INCLUDE_DIRS names card as a text, not as a path" -- \
  -DHAL_PLATFORM_INCLUDE_DIRS:STRING=card "-DHAL_PLATFORM_LIBRARIES=$whole"

rm "$work/headers/hal/fm.h" "$work/headers/bcm/switch.h"
refuses "headers that are not there" "HAL_PLATFORM_INCLUDE_DIRS holds no bcm/switch.h, hal/fm.h" -- \
  "-DHAL_PLATFORM_INCLUDE_DIRS=$work/headers" "-DHAL_PLATFORM_LIBRARIES=$whole"

cp "$headers"/bcm/switch.h "$work/headers/bcm/"
sed 's/fm_local_slot/fm_own_slot/' "$headers/hal/fm.h" >"$work/headers/hal/fm.h"
sed -i 's/^  int unit;/  long long serial; int unit;/' "$work/headers/hal/HalBcmCommon.h"
refuses "headers that declare otherwise" "The card's headers lack what the module needs" "fm_local_slot" \
  "HalBcmCommon has to begin with" -- \
  "-DHAL_PLATFORM_INCLUDE_DIRS=$work/headers" "-DHAL_PLATFORM_LIBRARIES=$whole"

refuses "a library without two functions" "The card's libraries do not define what the module calls" \
  "EgressManager::UpdateEgress(int, int, unsigned char*, unsigned short, int, int, unsigned int, bool, bool, ExpLabelControl)" \
  "MyStationManager::UpdateMyStationVlanEntry(unsigned int, unsigned int, unsigned char const*, unsigned int)" -- \
  "-DHAL_PLATFORM_INCLUDE_DIRS=$headers" "-DHAL_PLATFORM_LIBRARIES=$incomplete"

# The check knows every symbol that the module needs: against nothing it names them all.
libm=$(${CXX:-c++} -print-file-name=libm.so.6)
mapfile -t every <"$project/abi/platform-symbols.txt"
refuses "a library without anything" "${every[@]}" -- \
  "-DHAL_PLATFORM_INCLUDE_DIRS=$project/platform" "-DHAL_PLATFORM_LIBRARIES=$libm"

echo | i686-linux-gnu-g++ -x c++ -shared -nostdlib -o "$work/lib32.so" -
refuses "a library of another word size" \
  "$work/lib32.so is for ELF32, little endian, Intel 80386, but the compiler makes code for ELF64" \
  "set CMAKE_TOOLCHAIN_FILE" -- \
  "-DHAL_PLATFORM_INCLUDE_DIRS=$headers" "-DHAL_PLATFORM_LIBRARIES=$work/lib32.so"

exit $((failures > 0))
