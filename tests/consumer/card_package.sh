#!/bin/bash
# The package for the card holds the library, under the name that callers load, for the card's architecture.
# card_package.sh BUILD_DIRECTORY WORK_DIRECTORY VERSION ARCHITECTURE
set -eu
build=$1 work=$2 version=$3 architecture=$4
package=$build/packages/libhal-switch-l3-mpls-encapsulation-ll-bcm1_${version}_$architecture.deb
rm -rf "$work" "$build/packages"

(cd "$build" && cpack -G DEB)
[ "$(ls "$build"/packages/*.deb)" = "$package" ]
[ "$(dpkg-deb --field "$package" Version Architecture)" = "Version: $version
Architecture: $architecture" ]
dpkg-deb --extract "$package" "$work"
(cd "$work" && find . -not -type d | sort) | diff - <(
  printf './usr/lib/libhal_switch_l3_mpls_encapsulation_ll_bcm.so%s\n' "" .${version%%.*} ".$version")
readelf --file-header "$work/usr/lib/libhal_switch_l3_mpls_encapsulation_ll_bcm.so" | grep -q 'ELF32'
