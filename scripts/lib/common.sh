# scripts/lib/common.sh - what the scripts share: messages, packages, builds. Sourced, not run.
# shellcheck shell=bash
#   The caller is at `set -euo pipefail`; everything here works from any folder.

TAMU_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

# A line of progress.
say() { printf '== %s\n' "$*"; }

die() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

processors() { nproc 2>/dev/null || getconf _NPROCESSORS_ONLN 2>/dev/null || echo 1; }

# require_packages GROUP...: installs what the groups need and is missing.
require_packages() { "$TAMU_ROOT/scripts/install-packages" "$@"; }

# build_preset PRESET [CMAKE-OPTION...] [-- TARGET...]: configures and builds build/PRESET. Prints compiler messages
# and nothing else; the configuration's output is shown when it fails.
build_preset() {
  local preset=$1 started=$SECONDS log
  shift
  local options=() targets=()
  while (($#)) && [[ $1 != -- ]]; do
    options+=("$1")
    shift
  done
  (($# == 0)) || shift
  (($# == 0)) || targets=(--target "$@")
  say "Building build/$preset"
  mkdir -p "$TAMU_ROOT/build"
  log=$TAMU_ROOT/build/$preset-configure.log
  if ! (cd "$TAMU_ROOT" && cmake --preset "$preset" "${options[@]}") >"$log" 2>&1; then
    cat "$log" >&2
    return 1
  fi
  cmake --build "$TAMU_ROOT/build/$preset" --parallel "$(processors)" "${targets[@]}" -- --quiet || return 1
  say "Built build/$preset in $((SECONDS - started)) s"
}
