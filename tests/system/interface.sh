#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# interface.sh PROJECT LIBRARY: the library has the binary interface that was taken down for its release. The comparison is
# tried first on a dump that has lost a function and on one that has lost a parameter: it must notice. And the dump must know
# the type of everything exported: what is only seen as a declaration is not compared.
set -eu
project=$1 library=$2
kept=$project/packaging/abi/$("$project/packaging/abi/name" "$library")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$project/packaging/abi/dump" "$library" "$project/include/moxboot" >"$work/now.abi"

awk '/<elf-symbol name=.MOX_GetOsType. / { next }
     /<function-decl name=.MOX_GetOsType. / { inside = 1 } inside { if (/<\/function-decl>/) inside = 0; next } { print }' \
  "$work/now.abi" >"$work/function.abi"
awk '/<function-decl name=.MOX_GetBoardHardType./ { inside = 1 }
     inside && /<parameter/ { inside = 0; next } { print }' "$work/now.abi" >"$work/parameter.abi"
for changed in function parameter; do
  cmp -s "$work/now.abi" "$work/$changed.abi" && { echo "nothing was taken out of $changed.abi"; exit 1; }
  result=0
  abidiff "$work/$changed.abi" "$work/now.abi" >"$work/told" 2>&1 || result=$?
  # Bit 0 says that the comparison itself went wrong, bit 2 that something changed.
  if [ $((result & 5)) != 4 ]; then
    echo "the comparison does not notice a changed $changed ($result)"
    cat "$work/told"
    exit 1
  fi
done

# Short functions without parameters, which libabigail 2.2 does not tie to their symbols. That they are there is compared;
# their declarations are guarded by the change log's word for the headers.
untied='MOX_GetCpuCurrentTick drvboot_get_mftbu drvboot_impl_get_auto_upgrade_flag drvboot_impl_set_master_brd_enable
drvboot_impl_set_quick_start_flag setNotQuickstartFlag'
grep -oE "(elf-symbol-id|alias)='[^']*'" "$work/now.abi" | cut -d"'" -f2 | tr ',' '\n' | sort -u >"$work/known"
awk '/^[a-zA-Z_]/ { print $1 }' "$project/src/exported-symbols.txt" | sort -u | comm -23 - "$work/known" |
  grep -vxF -f <(tr ' ' '\n' <<<"$untied") >"$work/unknown" || true
[ ! -s "$work/unknown" ] || { echo "the dump does not know the types of:"; cat "$work/unknown"; exit 1; }

abidiff "$kept" "$work/now.abi" && exit 0
echo "The interface is not the one of ${kept##*/}. If that is intended: scripts/abi, and docs/versions.md for what is allowed."
exit 1
