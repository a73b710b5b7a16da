#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# reproducible.sh PROJECT PACKAGES ARCHITECTURE: the sources, copied to another folder and built there from nothing, give the
# libraries of the package, byte for byte.
set -eu
project=$1 packages=$2 architecture=$3
. "$(dirname "$0")/lib.sh"
packages_of "$architecture" >/dev/null || skip "there are no packages; scripts/packages makes them"
package=$(packages_of "$architecture" | grep '/libmoxboot1_')
preset=release
[ "$architecture" = amd64 ] || preset=release-armhf
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

mkdir -p "$work/a folder with another name/moxboot"
cd "$work/a folder with another name/moxboot"
cp -r "$project"/{CMakeLists.txt,CMakePresets.json,CHANGELOG.md,LICENSE,cmake,include,src,platform,completion,docs,man} .
libraries=(moxboot moxplatform drv_basic drv_secure nb_bsp moxpackage)
{ cmake --preset "$preset" -DMOXBOOT_VBOARD=OFF -DMOXBOOT_TOOLS=OFF \
    -DMOXBOOT_ARM_SYSROOT="$project/build/sysroot-armhf" &&
  cmake --build "build/$preset" -t "${libraries[@]}" &&
  cmake --install "build/$preset" --component runtime --strip --prefix "$work/elsewhere"; } >"$work/log" 2>&1 ||
  { tail -n 30 "$work/log"; exit 1; }

dpkg-deb -x "$package" "$work/packed"
same=0
while IFS= read -r library; do
  other=$(find "$work/elsewhere" -type f -name "${library##*/}")
  if cmp "$library" "$other"; then
    same=$((same + 1))
  else
    bad=1
  fi
done < <(find "$work/packed" -type f -name 'lib*.so*')
[ "$same" = "${#libraries[@]}" ] || complain "$same libraries are the same, not ${#libraries[@]}"
[ "$bad" = 1 ] || echo "$same libraries are the same, byte for byte"
exit "$bad"
