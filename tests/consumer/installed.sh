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
# The program that docs/software-card.md shows is a consumer, too.
awk '/^```cpp/ { program = ""; inside = 1; next }
     /^```/ { if (inside && program ~ /int main/) printf "%s", program; inside = 0 }
     inside { program = program $0 "\n" }' "$here/../../docs/software-card.md" >"$work/app/shown.cpp"
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
  must "$work/by-cmake/shown"

  export PKG_CONFIG_PATH=$1/lib/pkgconfig
  same "pkg-config's version" "$(pkg-config --modversion $package)" "$version"
  must c++ -std=c++11 "$work/app/main.cpp" -o "$work/by-pkg-config" $(pkg-config --cflags --libs softcard)
  same "consumer by pkg-config" "$(LD_LIBRARY_PATH=$1/lib "$work/by-pkg-config" 2>/dev/null)" "$result"
  must c++ -std=c++17 "$work/app/shown.cpp" -o "$work/shown" $(pkg-config --cflags --libs softcard)
  must env "LD_LIBRARY_PATH=$1/lib" "$work/shown"
  same "empty directories" "$(find "$1" -type d -empty)" ""
  same "the software card's soname" \
    "$(readelf --dynamic "$1/lib/libsoftcard.so" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')" "libsoftcard.so.${version%%.*}"

  same "the command's version" "$("$1/bin/softcard" --version)" "softcard $version"
  must "$1/bin/softcard" run --quiet "$1/share/softcard/scenarios/typical-request.scn"
  must "$1/bin/softcard" run --quiet --record "$work/card.rec" "$1/share/softcard/scenarios/typical-request.scn"
  same "the replay" "$("$1/bin/softcard" replay "$work/card.rec")" "10 requests replayed, no differences"
  must test -s "$1/share/man/man1/softcard.1"
  must bash -n "$1/share/bash-completion/completions/softcard"
}

headers_alone() {
  (cd "$1" && find . -name '*.h' | sort | while read -r header; do
    c++ -std=c++17 -Wall -Wextra -Werror -fsyntax-only -I. -include "$header" -x c++ /dev/null >&2 || echo "$header"
  done)
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
same "headers that do not compile alone" "$(headers_alone "$prefix/include/$package")" ""

refused "requested version \"2.0\"" "$prefix" -Dwanted_version=2.0
refused "There is no component 'nonsense'" "$prefix" -Dwanted_component=nonsense
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
same "what the software card's package suggests" "$(field softcard Suggests)" \
  "libhal-switch-l3-mpls-encapsulation-ll-bcm-dev (= $version)"
readelf --sections "$work/root/usr/lib/$library" | grep -q debug_info && fail "the packaged library is not stripped"
readelf --dynamic "$work/root/usr/lib/$library" | grep -qE 'RPATH|RUNPATH' && fail "the packaged library names paths"
consumers_of "$work/root/usr"

exit $((failures > 0))
