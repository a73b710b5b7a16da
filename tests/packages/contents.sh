#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# contents.sh PROJECT PACKAGES ARCHITECTURE: each package holds what packaging/contents lists for it, each line there is met by
# some file, and it needs what it says: whatever library a program or library of it needs comes with a package that it depends
# on, or with itself.
set -eu
project=$1 packages=$2 architecture=$3
. "$(dirname "$0")/lib.sh"
files=$(packages_of "$architecture") || skip "there are no packages; scripts/packages makes them"
triplet=$(triplet_of "$architecture")
[ "$(wc -l <<<"$files")" = 4 ] || complain "not four packages: $files"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# A library's name, and the package that brings it.
bringers='
libc.so.6           libc6
libm.so.6           libc6
ld-linux-x86-64.so.2 libc6
ld-linux-armhf.so.3 libc6
libgcc_s.so.1       libgcc-s1
libstdc++.so.6      libstdc++6
libmbedcrypto.so.7  libmbedcrypto7
libarchive.so.13    libarchive13
libfuse3.so.3       libfuse3-3
libz.so.1           zlib1g
libtomlplusplus.so.3 libtomlplusplus3
libubootenv.so.0.1  libubootenv0.1
libubootenv.so.0    libubootenv0.1
libmoxboot.so.1     libmoxboot1
libmoxplatform.so.1 libmoxboot1
'

for file in $files; do
  package=$(dpkg-deb -f "$file" Package)
  depends=" $package $(dpkg-deb -f "$file" Depends | sed 's/([^)]*)//g; s/,/ /g') "
  list=$project/packaging/contents/$package.txt
  dpkg-deb -x "$file" "$work/$package"
  (cd "$work/$package" && find . ! -type d | sed 's|^\./||' | sort) >"$work/held"
  grep -v '^#' "$list" | sed "s/@TRIPLET@/$triplet/" >"$work/listed"
  while IFS= read -r path; do
    met=0
    while IFS= read -r pattern; do
      # shellcheck disable=SC2053
      [[ $path == $pattern ]] && met=1
    done <"$work/listed"
    [ "$met" = 1 ] || complain "$package: not listed: $path"
  done <"$work/held"
  while IFS= read -r pattern; do
    (cd "$work/$package" && compgen -G "$pattern" >/dev/null) || complain "$package: missing: $pattern"
  done <"$work/listed"
  for name in $(find "$work/$package" -type f -exec sh -c 'readelf -dW "$1" 2>/dev/null' _ {} \; |
                sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | sort -u); do
    bringer=$(awk -v name="$name" '$1 == name { print $2 }' <<<"$bringers")
    [[ -n $bringer && $depends == *" $bringer "* ]] || complain "$package: needs $name, but does not depend on ${bringer:-its package}"
  done
  [ "$(dpkg-deb -f "$file" Architecture)" = "$architecture" ] || complain "$package: of another architecture"
  [ -z "$(find "$work/$package" -perm /022 ! -type l)" ] || complain "$package: others may write into it"
  echo "$package: $(wc -l <"$work/held") files, $(stat -c %s "$file") bytes"
done
exit "$bad"
