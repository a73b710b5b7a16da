#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# exported_symbols.sh NM LIBRARY LIST HEADERS: the library exports what the list says, and the headers declare just that.
set -eu
nm=$1 library=$2 list=$3 headers=$4
export LC_ALL=C
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

grep -E '^[a-zA-Z_]' "$list" | sort >"$work/listed"
"$nm" -D --defined-only "$library" | awk '
  { kind = $2 == "T" ? "function" : $2 == "W" || $2 == "V" ? "weak" : $2 ~ /^[BDRG]$/ ? "data" : "unexpected-" $2
    sub(/@.*/, "", $3); print $3, kind }' | sort >"$work/exported"
diff -u "$work/listed" "$work/exported" || { echo "the list and the library differ"; exit 1; }

# Declarations: every mark of an exported name is followed by that name, possibly on the next line.
for header in "$headers"/*.h; do
  case ${header##*/} in platform.h | types.h) continue ;; esac
  tr '\n' ' ' <"$header" | grep -oE 'MOXBOOT_API [^;]*;' | sed -E 's/ MOXBOOT_PRINTF\(.*/;/' |
    sed -nE 's/^MOXBOOT_API [^(;]*[ *]([A-Za-z_0-9]+)\(.*/\1/p; s/^MOXBOOT_API [^(;]*[ *]([A-Za-z_0-9]+)(\[[A-Z_0-9]+\])*;/\1/p'
done | sort >"$work/declared"
cut -d' ' -f1 "$work/listed" | sort | diff -u - "$work/declared" || { echo "the list and the headers differ"; exit 1; }
echo "$(wc -l <"$work/listed") symbols"
