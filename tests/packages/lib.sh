# SPDX-License-Identifier: Apache-2.0
# What the tests of the packages share. Sourced; $packages is the folder with the packages.
skip() { echo "skipped: $*"; exit 77; }
complain() { echo "$*"; bad=1; }
bad=0

# packages_of ARCHITECTURE: their files, at least the four that there are to be.
packages_of() {
  local found
  found=$(find "$packages" -name "*_$1.deb" 2>/dev/null | sort)
  [ -n "$found" ] || return 1
  printf '%s\n' "$found"
}

triplet_of() {
  case $1 in
  amd64) echo x86_64-linux-gnu ;;
  armhf) echo arm-linux-gnueabihf ;;
  esac
}
