# SPDX-License-Identifier: Apache-2.0
# Building what is released. Sourced after lib.sh.

# The packages of both architectures come to build/packages, and nothing else is left there.
build_packages() {
  local preset
  mkdir -p build/packages
  rm -f build/packages/*.deb
  for preset in release release-armhf; do
    build "$preset"
    say "packing $preset"
    (cd "build/$preset" && rm -rf packages && cpack >../packages/"$preset".log 2>&1) ||
      { tail -n 20 "build/packages/$preset.log" >&2; die "packing failed"; }
    mv "build/$preset"/packages/*.deb build/packages/
  done
}
