# SPDX-License-Identifier: Apache-2.0
# What the scripts share: where the project lies, how it is configured and built. Sourced, not run.
set -eu
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$top"
jobs=$(nproc)
# What one build folder, or one clone, has compiled is there for the others.
export CCACHE_BASEDIR=$top CCACHE_NOHASHDIR=1

say() { printf '\n== %s\n' "$*"; }
die() { printf '%s: %s\n' "${0##*/}" "$*" >&2; exit 1; }

# build PRESET [TARGET...]: configures where needed and builds; quiet unless it fails.
build() {
  local preset=$1 log
  shift
  log=build/$preset.log
  mkdir -p build
  say "building $preset"
  if ! { { { [ -e "build/$preset/build.ninja" ] && [ -e "build/$preset/CMakeCache.txt" ]; } || cmake --preset "$preset"; } &&
         cmake --build "build/$preset" -j "$jobs" ${1:+-t "$@"}; } >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    die "the $preset build failed; the whole log is in $log"
  fi
  tail -n 1 "$log"
}
