#!/usr/bin/env bash
# consumer_test.sh: installs the build into an empty folder and builds a C program against that copy twice, found by
# pkg-config and by CMake's find_package. Everything it needs comes in the environment, see CMakeLists.txt.
set -euo pipefail
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT

DESTDIR=$root "$CMAKE" --install "$BUILD_FOLDER" >"$root/install.log" || {
  cat "$root/install.log" >&2
  exit 1
}
prefix=$root$PREFIX
libraries=$root$LIBRARY_FOLDER
[[ -f $prefix/include/tamu/tamu.h ]] || { echo "tamu.h is not installed" >&2; exit 1; }
read -r -a flags <<<"$FLAGS"

# runs PROGRAM: what the consumer prints for an example must be the name of its contact.
runs() {
  local name
  name=$(LD_LIBRARY_PATH=$libraries "$1" "$EXAMPLES/simple.vcf")
  [[ $name == "OK: Nia Okafor" ]] || { echo "$1 printed '$name'" >&2; exit 1; }
}

command -v pkg-config >/dev/null || { echo "pkg-config is missing"; exit 77; }
export PKG_CONFIG_SYSROOT_DIR=$root PKG_CONFIG_LIBDIR=$libraries/pkgconfig
pkg-config --exists --print-errors tamu
read -r -a found < <(pkg-config --cflags --libs tamu)
"$C_COMPILER" -std=c11 "${flags[@]}" "$SOURCE_FOLDER/consumer.c" "${found[@]}" -o "$root/by_pkg_config"
runs "$root/by_pkg_config"

"$CMAKE" -S "$SOURCE_FOLDER" -B "$root/build" -G "$GENERATOR" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_C_COMPILER="$C_COMPILER" -DCMAKE_C_FLAGS="$FLAGS" -DCMAKE_BUILD_TYPE="$BUILD_TYPE" >"$root/cmake.log" &&
  "$CMAKE" --build "$root/build" >>"$root/cmake.log" || {
  cat "$root/cmake.log" >&2
  exit 1
}
runs "$root/build/by_cmake"
