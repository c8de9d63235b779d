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
library=$work/usr/lib/libhal_switch_l3_mpls_encapsulation_ll_bcm.so
readelf --file-header "$library" | grep -q 'ELF32'

# The newest interfaces of the runtimes that the library calls, and the releases that brought them.
newest() { readelf --version-info "$library" | grep -o "\b$1_[0-9.]*" | sort --version-sort | tail -1; }
[ "$(newest GLIBC) $(newest GCC) $(newest GLIBCXX)" = "GLIBC_2.32 GCC_3.0 GLIBCXX_3.4.29" ]
[ "$(dpkg-deb --field "$package" Depends)" = "libc6 (>= 2.32), libgcc-s1 (>= 3.0), libstdc++6 (>= 11)" ]
