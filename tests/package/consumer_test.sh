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

# The example program takes the whole road over a device of its own, twice: what the first run adds, the second finds.
[[ $DEVICE == 1 ]] || { echo "this build has no device: examples/typical_road.c is not run"; exit 0; }
"$C_COMPILER" -std=c11 -Wall -Wextra -Wpedantic -Werror "${flags[@]}" "$EXAMPLES/typical_road.c" "${found[@]}" \
  -o "$root/typical_road"
# road NAME FILE: what the program prints, and the example it writes.
road() {
  TAMU_HOME=$root/device LD_LIBRARY_PATH=$libraries "$root/typical_road" "$EXAMPLES/$2" "$root/$1" >"$root/$1.said" || {
    cat "$root/$1.said" >&2
    exit 1
  }
}
# says NAME LINE: one of the lines that the program printed.
says() {
  grep -qxF "$2" "$root/$1.said" && return
  echo "typical_road did not print '$2' but:" >&2
  cat "$root/$1.said" >&2
  exit 1
}
road first.vcf irmc_luids.vcf
says first.vcf "3 added, 0 modified, 0 failed"
says first.vcf "object 00000003 written"
grep -q "^X-IRMC-LUID:00000003" "$root/first.vcf" || { echo "first.vcf has no identifier" >&2; exit 1; }
road second.vcf irmc_luids.vcf
says second.vcf "0 added, 3 modified, 0 failed"
cmp "$root/first.vcf" "$root/second.vcf"
road third.vcs appointments.vcs
says third.vcs "3 added, 0 modified, 0 failed"
grep -q "^BEGIN:VEVENT" "$root/third.vcs" || { echo "third.vcs has no event" >&2; exit 1; }
road note.vnt notes_japanese.vnt
says note.vnt "1 added, 0 modified, 0 failed"
