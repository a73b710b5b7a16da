#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# make.sh PYTHON SCDOC SOURCES INCLUDE VERSION OUT: makes all manual pages below OUT, and for each function of the library a page
# of its name that leads to the family's.
set -eu
python=$1 scdoc=$2 sources=$3 include=$4 version=$5 out=$6
# The date in the pages: the same for everybody who builds this version.
export SOURCE_DATE_EPOCH="${SOURCE_DATE_EPOCH:-1795219200}"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
rm -rf "$out/man1" "$out/man3"
mkdir -p "$out/man1" "$out/man3"
"$python" "$sources/reference.py" "$sources" "$include" "$version" "$work"
for source in "$work"/*.scd; do
  page=$(basename "$source" .scd)
  "$scdoc" <"$source" >"$work/page" || { echo "make.sh: $page.scd.in is not in order" >&2; exit 1; }
  # Names of functions must not be hyphenated: readers search for them. The title line switches hyphenation on.
  sed '/^\.TH/a .nh' "$work/page" >"$out/man${page##*.}/$page"
done
while read -r function page; do
  # What a platform supplies may have pages of its own elsewhere.
  [ "$page" != moxboot_platform.3 ] || continue
  echo ".so man3/$page" >"$out/man3/$function.3"
done <"$work/aliases"
