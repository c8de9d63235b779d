#!/bin/bash
# The binary contract's checks notice what they are for: a copy of the module, broken in many ways at once, fails exactly
# the checks of these ways, and the comparison with the baseline names the operations that moved.
# contract_breaks.sh SOURCE_DIRECTORY WORK_DIRECTORY COMPILER BASELINE
set -eu
source=$1 work=$2 compiler=$3 baseline=$4
copy=$work/source build=$work/build
rm -rf "$work"
mkdir -p "$copy"
cp -r "$source"/{CMakeLists.txt,cmake,include,platform,src} "$copy"
mkdir "$copy/softcard" "$copy/console" "$copy/scenarios"
printf 'add_library(softcard_platform INTERFACE)\n' >"$copy/softcard/CMakeLists.txt"

failures=0
fail() { echo "FAILED: $*"; failures=$((failures + 1)); }

change() {
  local file=$copy/$1
  shift
  cp "$file" "$work/before"
  sed -i "$@" "$file"
  ! cmp -s "$file" "$work/before" || fail "this changes nothing any more: $*"
}
change CMakeLists.txt 's/^include(cmake.Packaging.cmake)//; s/VISIBILITY_PRESET hidden/VISIBILITY_PRESET default/'
change src/exports.map '/local:/d'
change src/CMakeLists.txt 's/-Wl,-z,now/-Wl,-z,lazy/'
change src/CMakeLists.txt 's/noexecstack/execstack/'
change src/CMakeLists.txt 's/-Wl,--as-needed/-Wl,--no-as-needed -lm/'
change src/CMakeLists.txt 's/-fstack-protector-strong/-fno-stack-protector/'
change src/CMakeLists.txt 's/_FORTIFY_SOURCE=2/_FORTIFY_SOURCE=1/'
change src/update/HalL3MplsEncapsulationUpd.cpp '$a void NoPlatformHasThis();\nvoid Call() { NoPlatformHasThis(); }'
change src/encapsulation/HalL3MplsEncapsulationBcm.h '/int mpls_ttl_/{h;d};/int vlan_mask_/G'
change include/DestinationIdCorrelator.h 's/int egress_id;/int egress_id; int more;/'
change include/HalL3MplsEncapsulationInterface.h 's/int InstallVrf/int TheOther/; s/int DestroyVrf/int InstallVrf/; s/int TheOther/int DestroyVrf/'

cmake -S "$copy" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" -DBUILD_TESTING=OFF >"$work/log" &&
  cmake --build "$build" --target hal_switch_l3_mpls_encapsulation_ll_bcm >>"$work/log" || { cat "$work/log"; exit 1; }
library=$build/src/libhal_switch_l3_mpls_encapsulation_ll_bcm.so

python3 "$(dirname "$0")/binary_contract.py" "$library" "$build/src/CMakeFiles/encapsulation_objects.dir" \
  "$source/abi/platform-symbols.txt" another-version 1000 >"$work/report" 2>&1 && fail "the broken contract is taken"
sed -n 's/^FAIL: \(test_[a-z0-9_]*\) .*/\1/p' "$work/report" | sort | diff - <(sort <<'END'
test_every_object_is_fortified
test_exports_are_the_two_entry_points_and_their_classes
test_module_members_follow_the_two_bases
test_module_slots
test_needs_the_language_runtimes_alone
test_nothing_is_writable_and_executable
test_record_has_12_bytes
test_relocations_are_read_only_from_the_start
test_soname_carries_the_major_version
test_stacks_are_protected
test_text_fits_the_card
test_undefined_symbols_are_the_platforms_and_the_runtimes
END
) || { fail "other checks notice than should"; cat "$work/report"; }

abidiff --exported-interfaces-only "$baseline" "$library" >"$work/report" 2>&1 && fail "the baseline is matched"
grep -q "vtable offset of method .*::InstallVrf(.* changed from 3 to 4" "$work/report" ||
  { fail "the report does not name the operation that moved"; cat "$work/report"; }

exit $((failures > 0))
