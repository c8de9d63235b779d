#!/bin/bash
# An installation, and Debian packages, as someone else's project uses them; and as it finds them when a part is missing.
# installed.sh BUILD_DIRECTORY WORK_DIRECTORY VERSION
set -u
build=$1 work=$2 version=$3
here=$(cd "$(dirname "$0")" && pwd)
package=hal_switch_l3_mpls_encapsulation_ll_bcm
library=lib$package.so
result="installed 0, 1 record, destroyed 0"
rm -rf "$work"
mkdir -p "$work"
cp -r "$here/app" "$work/app"
failures=0

fail() { echo "FAILED: $*"; failures=$((failures + 1)); }
must() { "$@" >"$work/output" 2>&1 || { fail "$*"; cat "$work/output"; }; }
same() { [ "$2" = "$3" ] || fail "$1: expected '$3', found '$2'"; }

configure_consumer() {
  local prefix=$1
  shift
  rm -rf "$work/by-cmake"
  cmake -S "$work/app" -B "$work/by-cmake" -G Ninja "-DCMAKE_PREFIX_PATH=$prefix" "$@"
}

consumers_of() {
  must configure_consumer "$1"
  must cmake --build "$work/by-cmake"
  same "consumer by CMake" "$("$work/by-cmake/consumer" 2>/dev/null)" "$result"

  export PKG_CONFIG_PATH=$1/lib/pkgconfig
  same "pkg-config's version" "$(pkg-config --modversion $package)" "$version"
  must c++ -std=c++11 "$work/app/main.cpp" -o "$work/by-pkg-config" $(pkg-config --cflags --libs $package) -lsoftcard
  same "consumer by pkg-config" "$(LD_LIBRARY_PATH=$1/lib "$work/by-pkg-config" 2>/dev/null)" "$result"

  same "the command's version" "$("$1/bin/softcard" --version)" "softcard $version"
  must "$1/bin/softcard" run --quiet "$1/share/softcard/scenarios/typical-request.scn"
}

refused() {
  local expected=$1
  shift
  configure_consumer "$@" >"$work/output" 2>&1 && fail "accepted: $expected"
  tr -s ' \n' ' ' <"$work/output" | grep -qF -- "$expected" || { fail "not said: $expected"; cat "$work/output"; }
}

prefix=$work/prefix
must cmake --install "$build" --prefix "$prefix"
consumers_of "$prefix"

refused "requested version \"2.0\"" "$prefix" -Dwanted_version=2.0
mv "$prefix/lib/libsoftcard.so" "$work/"
refused "libsoftcard.so is missing: install all of the package softcard." "$prefix"
mv "$work/libsoftcard.so" "$prefix/lib/"
rm "$prefix/lib/$library"
refused "$library is missing: install all of the package libhal-switch-l3-mpls-encapsulation-ll-bcm1." "$prefix"

must env -C "$build" cpack -G DEB
field() { dpkg-deb --field "$build/packages/$1_${version}_$(dpkg --print-architecture).deb" "$2"; }
for name in libhal-switch-l3-mpls-encapsulation-ll-bcm1 libhal-switch-l3-mpls-encapsulation-ll-bcm-dev softcard; do
  same "version of $name" "$(field $name Version)" "$version"
  must dpkg-deb --extract "$build/packages/${name}_${version}_$(dpkg --print-architecture).deb" "$work/root"
done
case "$(field libhal-switch-l3-mpls-encapsulation-ll-bcm1 Depends)" in
  *libc6*libstdc++6*) ;; *) fail "the library's package depends on no runtime" ;;
esac
case "$(field softcard Depends)" in
  *"libhal-switch-l3-mpls-encapsulation-ll-bcm1 (= $version)"*) ;; *) fail "softcard does not depend on the library" ;;
esac
must test -s "$work/root/usr/share/doc/softcard/copyright.CLI11"
readelf --sections "$work/root/usr/lib/$library" | grep -q debug_info && fail "the packaged library is not stripped"
readelf --dynamic "$work/root/usr/lib/$library" | grep -qE 'RPATH|RUNPATH' && fail "the packaged library names paths"
consumers_of "$work/root/usr"

exit $((failures > 0))
